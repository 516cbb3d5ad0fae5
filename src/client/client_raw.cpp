#include "client/client_raw.h"

#include "client/client_common.h"
#include "client/client_names.h"
#include "client/client_printers.h"
#include "client/client_types.h"
#include "json/envelope.h"
#include "json/output.h"
#include "stream/packet.h"
#include "stream/reader.h"
#include "stream/stream_file.h"

namespace client {
namespace {

// Closes the named object and the packet object together.
constexpr const char* kClose = "      }\n    }";

using ULL = unsigned long long;
using UL = unsigned long;

void writeKick(Output& out, const Packet& p)
{
    out.print("      \"korkick\": {\n        \"Type:\": \"%s\",\n        \"ExtJobRefID:\": %u\n", kickTypeName(p.u32(24)),
              p.u32(28));
    out.write(kClose);
}

void writeEnqueue(Output& out, const Packet& p)
{
    out.print("      \"enqueue\": {\n        \"Type:\": \"%s\",\n        \"PID:\": %u,\n        \"ExtJobRefID:\": %u,\n"
              "        \"WorkCtx:\": %llu,\n        \"WorkTarget:\": %u,\n        \"ClientFlags:\": %u\n",
              enqueueKickTypeName(p.u32(24)), p.u32(28), p.u32(32), static_cast<ULL>(p.u64(40)), p.u32(48), p.u32(52));
    out.write(kClose);
}

// Sync objects of an unknown resource type or wait phase stay open: only
// the warning is printed.
void writeSyncAlloc(Output& out, const Packet& p)
{
    const std::uint32_t resource = p.u32(24);
    switch (resource) {
    case 1:
        out.print("      \"timeline\": {\n        \"Name\": \"%s\",\n        \"PID\": %u,\n        \"TimelineID\": %d,\n"
                  "        \"Variant\": \"%s\"\n",
                  p.text(44), p.u32(32), p.i32(36), timelineVariantName(p.u32(40)));
        break;
    case 2:
        out.print("      \"sw_fence\": {\n        \"Name\": \"%s\",\n        \"PID\": %u,\n        \"FenceID\": %d,\n"
                  "        \"TimelineID\": %d,\n        \"SyncPtIdx\": %lu\n",
                  p.text(56), p.u32(32), p.i32(36), p.i32(40), static_cast<UL>(p.u64(48)));
        break;
    case 3:
        out.print("      \"fence_dup\": {\n        \"InputFenceID:\": %d,\n        \"OutputFenceID:\": %d,\n"
                  "        \"PID\": %u\n",
                  p.i32(36), p.i32(40), p.u32(32));
        break;
    case 4:
        out.print("      \"fence_merge\": {\n        \"InputFenceID1:\": %d,\n        \"InputFenceID2:\": %d,\n"
                  "        \"OutputFenceID:\": %d,\n        \"PID\": %u\n",
                  p.i32(36), p.i32(40), p.i32(44), p.u32(32));
        break;
    case 5:
        out.print("      \"export_fence\": {\n        \"Name\": \"%s\",\n        \"PID\": %u,\n        \"FenceID\": %d,\n"
                  "        \"SyncPtIdx\": %lu\n",
                  p.text(48), p.u32(32), p.i32(36), static_cast<UL>(p.u64(40)));
        break;
    default:
        console().print("Warning: Unknown sync resource type (%d) encountered in Zyntel client stream!\n",
                        static_cast<int>(resource));
        return;
    }
    out.write(kClose);
}

void writeSyncFree(Output& out, const Packet& p)
{
    const std::uint32_t resource = p.u32(24);
    switch (resource) {
    case 1:
        out.print("      \"timeline\": {\n        \"PID\": %u,\n        \"TimelineID\": %d\n", p.u32(28), p.i32(32));
        break;
    case 2:
    case 5:
        out.print("      \"fence\": {\n        \"PID\": %u,\n        \"FenceID\": %d\n", p.u32(28), p.i32(32));
        break;
    default:
        console().print("Warning: Unknown sync resource type (%d) encountered in Zyntel client stream!\n",
                        static_cast<int>(resource));
        return;
    }
    out.write(kClose);
}

void writeFenceWait(Output& out, const Packet& p)
{
    const std::uint32_t phase = p.u32(24);
    switch (phase) {
    case 0:
        out.print("      \"begin\": {\n        \"PID\": %u,\n        \"FenceID\": %d,\n        \"TimeoutInMs\": %u\n",
                  p.u32(28), p.i32(32), p.u32(36));
        break;
    case 1:
        out.print("      \"end\": {\n        \"PID\": %u,\n        \"FenceID\": %d,\n        \"Result\": \"%s\"\n",
                  p.u32(28), p.i32(32), fenceWaitResultName(p.u32(36)));
        break;
    default:
        console().print("Warning: Unknown sync fence-wait type (%d) encountered in Zyntel client stream!\n",
                        static_cast<int>(phase));
        return;
    }
    out.write(kClose);
}

void writeTimelineAdvance(Output& out, const Packet& p)
{
    out.print("      \"sw_tl_advance\": {\n        \"PID\": %u,\n        \"TimelineID\": %d,\n        \"SyncPtIdx\": %lu\n",
              p.u32(24), p.i32(28), static_cast<UL>(p.u64(32)));
    out.write(kClose);
}

void writeSoftwareTq(Output& out, const Packet& p)
{
    out.print("      \"korkick\": {\n        \"ExtJobRefID:\": %u\n", p.u32(24));
    out.write(kClose);
}

// An EGL mark of 40 bytes ends after the context id; a longer one carries
// the EGL/GLES API information.
constexpr std::uint32_t kPlainEglMarkSize = 40;

void writeEglMark(StreamFile& file, const Packet& p)
{
    file.out.print("      \"mark\": {\n        \"ID:\": \"%s\",\n        \"JobRef:\": %u,\n        \"ContextID:\": %u",
                   eglFunctionName(p.u32(24)), p.u32(28), p.u32(32));
    if (p.size() == kPlainEglMarkSize) {
        file.out.write("\n");
    } else {
        file.out.write(",\n");
        printEglApiInfo(file, p.from(24));
    }
    file.out.write(kClose);
}

void writeEglMemOpEnd(Output& out, const Packet& p)
{
    // Names are looked up in key order, so that their warnings come in that order.
    const char* function = eglFunctionName(p.u32(36));
    const char* resource = eglMemoryResourceName(p.u32(28));
    const char* operation = memoryOperationName(p.u32(32));
    out.print("      \"mark\": {\n        \"ID:\": \"%s\",\n        \"JobRef:\": %u,\n        \"Memory resource type\": \"%s\",\n"
              "        \"Op size\": %d,\n        \"Memory op type\": \"%s\"\n",
              function, p.u32(40), resource, p.i32(24), operation);
    out.write(kClose);
}

void writeGlMark(Output& out, std::uint32_t type, const Packet& p)
{
    out.print("      \"mark\": {\n        \"ID:\": \"%s\",\n        \"Info:\": \"%s\",\n        \"JobRef:\": %u,\n"
              "        \"Context ID\": %u\n",
              glFamilyFunctionName(type, p.u32(24)), p.text(36), p.u32(28), p.u32(32));
    out.write(kClose);
}

void writeMarkPoint(Output& out, const Packet& p)
{
    p.setU8(63, 0);
    out.print("      \"mark\": {\n        \"Msg:\": \"%s\",\n        \"JobRef:\": %u,\n        \"Context ID\": %u\n",
              p.text(24), p.u32(64), p.u32(68));
    out.write(kClose);
}

void writeKickStart(Output& out, std::uint32_t type, const Packet& p)
{
    const KickTexts texts = formatKickTexts(type, p);
    out.print("      \"mark\": {\n        \"ID:\": \"%s\",\n        \"JobRef:\": %u,\n        \"Context ID\": %u,\n"
              "        \"KickReason\": \"%s\",\n        \"Framebuffer ID\": \"%d\",\n%s%s",
              glFamilyFunctionName(type, p.u32(24)), p.u32(28), p.u32(32), kickReasonText(p.u32(68)), p.i32(72),
              texts.drawState, texts.renderTargets);
    out.write(kClose);
}

void writeKickEnd(Output& out, std::uint32_t type, const Packet& p)
{
    out.print("      \"mark\": {\n        \"ID:\": \"%s\",\n        \"JobRef:\": %u,\n        \"Context ID\": %u\n",
              glFamilyFunctionName(type, p.u32(24)), p.u32(28), p.u32(32));
    out.write(kClose);
}

void writeDrawStart(Output& out, std::uint32_t type, const Packet& p)
{
    out.print("      \"mark\": {\n        \"ID:\": \"%s\",\n        \"Context ID\": %u\n",
              glFamilyFunctionName(type, p.u32(24)), p.u32(32));
    out.write(kClose);
}

void writeDrawEnd(StreamFile& file, std::uint32_t type, const Packet& p)
{
    file.out.print("      \"mark\": {\n        \"ID:\": \"%s\",\n        \"JobRef:\": %u,\n        \"Context ID\": %u,\n",
                   glFamilyFunctionName(type, p.u32(24)), p.u32(32), p.u32(28));
    printDrawParams(isGlType(type), file, p.from(24));
    writeShaderIds(file.out, p);
    file.out.write(kClose);
}

void writeShaderCompileEnd(Output& out, std::uint32_t type, const Packet& p)
{
    const char* source = escapedShaderSource(p);
    const char* function = glFamilyFunctionName(type, p.u32(24));
    const char* shaderType = shaderTypeName(p.u32(28));
    out.print("      \"mark\": {\n        \"packet part\": %d,\n        \"ID:\": \"%s\",\n        \"Context ID\": %u,\n"
              "        \"shader ID\": %llu,\n        \"shader type\": \"%s\",\n        \"shader code\": \"%s\"\n",
              p.i32(44), function, p.u32(40), static_cast<ULL>(p.u64(32)), shaderType, source);
    out.write(kClose);
}

void writeGlMemOpEnd(Output& out, std::uint32_t type, const Packet& p)
{
    const char* function = glFamilyFunctionName(type, p.u32(36));
    const char* resource = glFamilyMemoryResourceName(type, p.u32(28));
    const char* operation = memoryOperationName(p.u32(32));
    out.print("      \"mark\": {\n        \"ID:\": \"%s\",\n        \"JobRef:\": %u,\n        \"Context ID\": %u,\n"
              "        \"Memory resource type\": \"%s\",\n        \"Op size\": %d,\n        \"Memory op type\": \"%s\",\n"
              "        \"Message\": \"%s\"\n",
              function, p.u32(40), p.u32(44), resource, p.i32(24), operation, p.text(48));
    out.write(kClose);
}

void writeComputeEnd(StreamFile& file, std::uint32_t type, const Packet& p)
{
    file.out.print("      \"mark\": {\n        \"ID:\": \"%s\",\n        \"JobRef:\": %u,\n        \"Context ID\": %u,\n"
                   "        \"Msg:\": \"%s\",\n        \"Workgroup dim X\": %d,\n        \"Workgroup dim Y\": %d,\n"
                   "        \"Workgroup dim Z\": %d,\n",
                   glFamilyFunctionName(type, p.u32(24)), p.u32(28), p.u32(32), p.text(36), p.i32(76), p.i32(80),
                   p.i32(84));
    printDispatchData(isGlType(type), file, p.from(24), p.size());
    file.out.write(kClose);
}

// A TQ kick start of exactly this size is a plain mark record.
constexpr std::uint32_t kTqKickMarkSize = 80;
constexpr std::size_t kSurfacesOffset = 40;

// The first format already closes both objects (after a stray comma); the
// surfaces follow and the close is written once more.
void writeTqKickStart(StreamFile& file, std::uint32_t type, const Packet& p)
{
    file.out.print("      \"mark\": {\n        \"ID:\": \"%s\",\n        \"JobRef:\": %u,\n        \"Context ID\": %u,\n"
                   "        \"Kick reason\": \"%s\",\n      }\n    }",
                   "16_TQKick", p.u32(24), p.u32(28), glFamilyTqReasonName(type, p.u16(32)));
    const std::uint32_t surfaces = p.u16(34);
    if (surfaces != 0) printSurfaces(file, p.from(kSurfacesOffset), surfaces);
    file.out.write(kClose);
}

void writeShaderInvocations(Output& out, std::uint32_t type, const Packet& p)
{
    const std::uint32_t function = p.u32(24);
    out.print("      \"mark\": {\n        \"ID:\": \"%s\",\n        \"JobRef:\": %u,\n        \"Context ID\": %u,\n",
              glFamilyFunctionName(type, function), p.u32(32), p.u32(28));
    if (function == kGlesInvocationOverflow || function == kGlInvocationOverflow)
        out.print("        \"Dropped Shader Inovcations\": %u\n      }\n    }", p.u32(40));
    else
        writeInvocationCounts(out, p);
}

void writeOpenClMark(StreamFile& file, const Packet& p)
{
    const OpenClLayout layout = chooseOpenClLayout(p);
    const std::uint32_t function = p.u32(44);
    file.out.print("      \"mark\": {\n        \"ID:\": \"%s\",\n        \"Info:\": \"%s\",\n        \"JobRef:\": %u,\n"
                   "        \"Context ID\": %u,\n        \"Object ID\": %u,\n        \"Thread ID\": %u",
                   openClFunctionName(function), openClInfo(p, layout), p.u32(36), p.u32(24), p.u32(28), p.u32(32));
    if (layout.hasThreadNameHash)
        file.out.print(",\n        \"ThreadNameHash\": \"0x%x\"", p.u32(kThreadNameHashOffset));
    if (layout.dataOffset != 0) {
        file.out.write(",\n");
        printOpenClData(file, function, p.from(layout.dataOffset));
    } else {
        file.out.write("\n");
    }
    file.out.write(kClose);
}

// A Vulkan mark of this size carries no object data.
constexpr std::uint32_t kPlainVulkanMarkSize = 88;

void writeVulkanMark(StreamFile& file, const Packet& p)
{
    file.out.print("      \"mark\": {\n        \"Object ID\": %d,\n        \"Thread ID\": %d,\n        \"ID:\": \"%s\",\n"
                   "        \"Info:\": \"%s\"\n",
                   p.i32(24), p.i32(28), vulkanFunctionName(p.u32(40)), p.text(44));
    if (p.size() != kPlainVulkanMarkSize) printVulkanApiInfo(file, p.from(24));
    file.out.write(kClose);
}

// Vulkan invocation record: pipeline type at 88, count at 92, 12-byte
// entries from 96.
void writeVulkanInvocations(Output& out, const Packet& p)
{
    const std::uint32_t pipelineType = p.u32(88);
    out.print("      \"mark\": {\n        \"Pipeline Type\": %s,\n        \"JobRef\": %u,\n"
              "        \"Shader Invocation Counts\": {\n",
              vulkanObjectTypeName(pipelineType), p.u32(32));
    const std::uint32_t count = p.fitCount(96, p.u32(92), 12);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t entry = 96 + i * 12;
        const char* separator = i + 1 < count ? "," : "";
        if (pipelineType == kGraphicsPipeline)
            out.print("        \"Vertex Shader Invocations   (Pipeline %u)\": %u,\n"
                      "        \"Fragment Shader Invocations (Pipeline %u)\": %u%s\n",
                      p.u32(entry), p.u32(entry + 4), p.u32(entry), p.u32(entry + 8), separator);
        else if (pipelineType == kComputePipeline)
            out.print("        \"Compute Shader Invocations (Pipeline %u)\": %u%s\n", p.u32(entry), p.u32(entry + 4),
                      separator);
    }
    out.print("        }\n      }\n    }");
}

// Writes the object of a known type; false for a type without one.
bool writeObject(StreamFile& file, std::uint32_t type, const Packet& p)
{
    Output& out = file.out;
    switch (type) {
    case kKickStart:
    case kKickEnd: writeKick(out, p); return true;
    case kEnqueueWork: writeEnqueue(out, p); return true;
    case kSyncAlloc: writeSyncAlloc(out, p); return true;
    case kSyncFree: writeSyncFree(out, p); return true;
    case kSyncFenceWait: writeFenceWait(out, p); return true;
    case kSyncTimelineAdvance: writeTimelineAdvance(out, p); return true;
    case kSoftwareTqStart:
    case kSoftwareTqEnd: writeSoftwareTq(out, p); return true;
    case kEglMarkStart:
    case kEglMarkEnd:
    case kEglMemOpStart: writeEglMark(file, p); return true;
    case kEglMemOpEnd: writeEglMemOpEnd(out, p); return true;
    case kOpenClMarkStart:
    case kOpenClMarkStop: writeOpenClMark(file, p); return true;
    case kVulkanMarkStart:
    case kVulkanMarkEnd:
    case kVulkanMarkPoint:
    case kVulkanSubCommandStart:
    case kVulkanSubCommandEnd: writeVulkanMark(file, p); return true;
    case kVulkanShaderInvocations: writeVulkanInvocations(out, p); return true;
    default: break;
    }

    if (type <= kGlesBase || type > kLastEventType) return false;
    switch (glesEquivalent(type)) {
    case kGlesMarkStart:
    case kGlesMarkStop:
    case kGlesShaderCompileStart:
    case kGlesMemOpStart:
    case kGlesComputeStart:
    case kGlesTqKickEnd: writeGlMark(out, type, p); return true;
    case kGlesMarkPoint: writeMarkPoint(out, p); return true;
    case kGlesKickStart: writeKickStart(out, type, p); return true;
    case kGlesKickEnd: writeKickEnd(out, type, p); return true;
    case kGlesDrawStart: writeDrawStart(out, type, p); return true;
    case kGlesDrawEnd: writeDrawEnd(file, type, p); return true;
    case kGlesShaderCompileEnd: writeShaderCompileEnd(out, type, p); return true;
    case kGlesMemOpEnd: writeGlMemOpEnd(out, type, p); return true;
    case kGlesComputeEnd: writeComputeEnd(file, type, p); return true;
    case kGlesTqKickStart:
        if (p.size() == kTqKickMarkSize)
            writeGlMark(out, type, p);
        else
            writeTqKickStart(file, type, p);
        return true;
    case kGlesShaderInvocations: writeShaderInvocations(out, type, p); return true;
    default: return false;
    }
}

} // namespace
} // namespace client

std::uint32_t clientConvertRaw(StreamFile& file, Packet& packet)
{
    const std::uint32_t type = packet.eventType();
    const char* typeName = client::eventTypeName(type);
    if (typeName == nullptr) {
        console().print("Warning: Unknown Client event type (%d)!\n", static_cast<int>(type));
        typeName = "OUT_OF_BOUNDS";
    }
    // The client stream applies -tdelta to every packet, skipped ones too.
    if (file.timeDelta) applyTimeDelta(file, packet);
    writeRawEnvelope(&file, packet, typeName);

    if (!client::writeObject(file, type, packet)) {
        console().print("error: ZyntelClient packet type unknown (%d), packet skipped\n", static_cast<int>(type));
        writeHexDump(&file, packet);
        return 0;
    }
    if (file.hexDump) {
        file.out.write(",\n");
        writeHexDump(&file, packet);
    }
    file.lastOrdinal = checkOrdinal(file, packet.ordinal());
    return 1;
}
