#include "client/client_correlated.h"

#include "client/client_common.h"
#include "client/client_names.h"
#include "client/client_printers.h"
#include "client/client_types.h"
#include "json/document.h"
#include "json/output.h"
#include "stream/packet.h"
#include "stream/reader.h"
#include "stream/stream_file.h"

namespace client {
namespace {

using ULL = unsigned long long;
using UL = unsigned long;

// Function ids of all APIs occupy disjoint ranges below this bound (EGL
// 43-48, GLES 0-41, OpenCL 50-203 and 299-305, Vulkan 204-254, GL 256-297),
// so one table keyed by the function id pairs the begins of every API.
constexpr std::uint32_t kPendingSlots = 308;
constexpr std::uint32_t kKickSlots = 6;
constexpr std::uint32_t kGlesTqKickSlot = kTqKickFunction;
constexpr std::uint32_t kGlTqKickSlot = kGlFunctionBase + kTqKickFunction;

struct PairingState {
    StoredPacket pending[kPendingSlots];
    StoredPacket kicks[kKickSlots];
    StoredPacket softwareTq;
};

PairingState& pairing()
{
    static PairingState state;
    return state;
}

// The stored begin of a slot, or null for an empty or out-of-range slot.
StoredPacket* pendingSlot(std::uint32_t slot)
{
    return slot < kPendingSlots ? &pairing().pending[slot] : nullptr;
}

constexpr const char* kClose = "      }\n    }";

// Separator, then the element's opening up to the first "prop" key.
void writeHead(StreamFile& file, std::uint64_t start, std::uint64_t end, const char* name)
{
    beginTimePeriod(file);
    file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"%s\",\n      \"prop\": {\n",
                   static_cast<ULL>(start), static_cast<ULL>(end), name);
}

void writePointHead(StreamFile& file, const Packet& packet, const char* name)
{
    writeHead(file, packet.timer(), packet.timer(), name);
}

// ---- Point events ----

void writeEnqueue(StreamFile& file, const Packet& p)
{
    writePointHead(file, p, "ENQ_CLIENT");
    file.out.print("        \"type\": \"%s\",\n        \"PID\": %u,\n        \"JobRef\": %u,\n        \"WorkCtx\": %llu,\n"
                   "        \"WorkTarget\": %u,\n        \"ClientFlags\": %u\n",
                   enqueueKickTypeName(p.u32(24)), p.u32(28), p.u32(32), static_cast<ULL>(p.u64(40)), p.u32(48),
                   p.u32(52));
    file.out.write(kClose);
}

// Sync objects of an unknown resource type or wait phase get an empty
// "prop" after the warning.
void writeSyncAlloc(StreamFile& file, const Packet& p)
{
    writePointHead(file, p, "SYNC_ALLOC");
    const std::uint32_t resource = p.u32(24);
    switch (resource) {
    case 1:
        file.out.print("        \"type\": \"timeline\",\n        \"Name\": \"%s\",\n        \"PID\": %u,\n"
                       "        \"TimelineID\": %d,\n        \"Variant\": \"%s\"\n",
                       p.text(44), p.u32(32), p.i32(36), timelineVariantName(p.u32(40)));
        break;
    case 2:
        file.out.print("        \"type\": \"sw_fence\",\n        \"Name\": \"%s\",\n        \"PID\": %u,\n"
                       "        \"FenceID\": %d,\n        \"TimelineID\": %d,\n        \"SyncPtIdx\": %lu\n",
                       p.text(56), p.u32(32), p.i32(36), p.i32(40), static_cast<UL>(p.u64(48)));
        break;
    case 3:
        file.out.print("        \"type\": \"fence_dup\",\n        \"InputFenceID:\": %d,\n        \"OutputFenceID:\": %d,\n"
                       "        \"PID\": %u\n",
                       p.i32(36), p.i32(40), p.u32(32));
        break;
    case 4:
        file.out.print("        \"type\": \"fence_merge\",\n        \"InputFenceID1:\": %d,\n        \"InputFenceID2:\": %d,\n"
                       "        \"OutputFenceID:\": %d,\n        \"PID\": %u\n",
                       p.i32(36), p.i32(40), p.i32(44), p.u32(32));
        break;
    default:
        console().print("Warning: Unknown sync resource type (%d) encountered in Zyntel client stream!\n",
                        static_cast<int>(resource));
        break;
    }
    file.out.write(kClose);
}

void writeSyncFree(StreamFile& file, const Packet& p)
{
    writePointHead(file, p, "SYNC_FREE");
    const std::uint32_t resource = p.u32(24);
    switch (resource) {
    case 1:
        file.out.print("        \"type\": \"timeline\",\n        \"PID\": %u,\n        \"TimelineID\": %d\n", p.u32(28),
                       p.i32(32));
        break;
    case 2:
        file.out.print("        \"type\": \"fence\",\n        \"PID\": %u,\n        \"FenceID\": %d\n", p.u32(28),
                       p.i32(32));
        break;
    default:
        console().print("Warning: Unknown sync resource type (%d) encountered in Zyntel client stream!\n",
                        static_cast<int>(resource));
        break;
    }
    file.out.write(kClose);
}

void writeFenceWait(StreamFile& file, const Packet& p)
{
    writePointHead(file, p, "SYNC_FENCE_WAIT");
    const std::uint32_t phase = p.u32(24);
    switch (phase) {
    case 0:
        file.out.print("        \"type\": \"begin\",\n        \"PID\": %u,\n        \"FenceID\": %d,\n"
                       "        \"TimeoutInMs\": %u\n",
                       p.u32(28), p.i32(32), p.u32(36));
        break;
    case 1:
        file.out.print("        \"type\": \"end\",\n        \"PID\": %u,\n        \"FenceID\": %d,\n        \"Result\": \"%s\"\n",
                       p.u32(28), p.i32(32), fenceWaitResultName(p.u32(36)));
        break;
    default:
        console().print("Warning: Unknown sync fence-wait type (%d) encountered in Zyntel client stream!\n",
                        static_cast<int>(phase));
        break;
    }
    file.out.write(kClose);
}

void writeTimelineAdvance(StreamFile& file, const Packet& p)
{
    writePointHead(file, p, "SW_TIMELINE_ADV");
    file.out.print("        \"PID\": %u,\n        \"TimelineID\": %d,\n        \"SyncPtIdx\": %lu\n", p.u32(24), p.i32(28),
                   static_cast<UL>(p.u64(32)));
    file.out.write(kClose);
}

void writeMarkPoint(StreamFile& file, const Packet& p)
{
    p.setU8(63, 0);
    writePointHead(file, p, "MARK_POINT");
    file.out.print("        \"message\": \"%s\",\n        \"jobref\": %u,\n        \"context ID\": %u\n", p.text(24),
                   p.u32(64), p.u32(68));
    file.out.write(kClose);
}

void writeShaderInvocations(StreamFile& file, std::uint32_t type, const Packet& p)
{
    const std::uint32_t function = p.u32(24);
    writePointHead(file, p, "SHADER_INVOC_POINT");
    file.out.print("        \"type\": \"%s\",\n        \"jobref\": %u,\n        \"context ID\": %u,\n",
                   glFamilyFunctionName(type, function), p.u32(32), p.u32(28));
    if (function == kGlesInvocationOverflow)
        file.out.print("        \"Dropped Shader Inovcations\": %u\n      }\n    }", p.u32(40));
    else if (function == kGlInvocationOverflow)
        file.out.print("        \"Dropped Shader Invocations\": %u\n      }\n    }", p.u32(40));
    else
        writeInvocationCounts(file.out, p);
}

// Vulkan invocation record: pipeline type at 88, count at 92, 12-byte
// entries from 96.
void writeVulkanInvocations(StreamFile& file, const Packet& p)
{
    const std::uint32_t pipelineType = p.u32(88);
    writePointHead(file, p, "SHADER_INVOC_POINT");
    // Names are looked up in key order, so that their warnings come in that order.
    const char* function = vulkanFunctionName(p.u32(40));
    const char* pipelineName = vulkanObjectTypeName(pipelineType);
    file.out.print("        \"thread ID\": %u,\n        \"type\": \"%s\",\n        \"jobref\": %u,\n"
                   "        \"Pipeline Type\": %s,\n        \"Shader Invocation Counts\": {\n",
                   p.u32(28), function, p.u32(32), pipelineName);
    const std::uint32_t count = p.fitCount(96, p.u32(92), 12);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t entry = 96 + i * 12;
        const char* separator = i + 1 < count ? "," : "";
        if (pipelineType == kGraphicsPipeline)
            file.out.print("          \"Vertex Shader Invocations   (Pipeline %u)\": %u,\n"
                           "          \"Fragment Shader Invocations (Pipeline %u)\": %u%s\n",
                           p.u32(entry), p.u32(entry + 4), p.u32(entry), p.u32(entry + 8), separator);
        else if (pipelineType == kComputePipeline)
            file.out.print("          \"Compute Shader Invocations (Pipeline %u)\": %u%s\n", p.u32(entry),
                           p.u32(entry + 4), separator);
    }
    file.out.print("        }\n      }\n    }");
}

// ---- Pairs: `begin` is the stored begin, `end` the current packet ----

void writeKorKick(StreamFile& file, Packet begin, const Packet& end)
{
    writeHead(file, begin.timer(), end.timer(), "KORKICK");
    file.out.print("        \"type\": \"%s\"\n", kickTypeName(begin.u32(24)));
    file.out.write(kClose);
}

void writeSoftwareTq(StreamFile& file, Packet begin, const Packet& end)
{
    writeHead(file, begin.timer(), end.timer(), "SWTQ");
    file.out.print("        \"JobRef\": %u,\n      }\n    }", begin.u32(24));
}

// An EGL mark of 40 bytes carries no API information.
constexpr std::uint32_t kPlainEglMarkSize = 40;

void writeEglScope(StreamFile& file, Packet begin, const Packet& end)
{
    writeHead(file, begin.timer(), end.timer(), "EGL_SCOPE");
    file.out.print("        \"type\": \"%s\",\n        \"jobref\": %u,\n        \"context ID\": %u",
                   eglFunctionName(begin.u32(24)), begin.u32(28), begin.u32(32));
    if (begin.size() != kPlainEglMarkSize) {
        file.out.write(",\n");
        printEglApiInfo(file, begin.from(24));
    }
    if (end.size() != kPlainEglMarkSize) {
        file.out.write(",\n");
        printEglApiInfo(file, end.from(24));
    }
    if (begin.size() == kPlainEglMarkSize && end.size() == kPlainEglMarkSize) file.out.write("\n");
    file.out.write(kClose);
}

void writeEglMemOp(StreamFile& file, Packet begin, const Packet& end)
{
    writeHead(file, begin.timer(), end.timer(), "MEMORY_OP_POINT");
    const char* function = eglFunctionName(begin.u32(24));
    const char* resource = eglMemoryResourceName(end.u32(28));
    const char* operation = memoryOperationName(end.u32(32));
    file.out.print("        \"type\": \"%s\",\n        \"jobref\": %u,\n        \"memory resource type\": \"%s\",\n"
                   "        \"op size\": %d,\n        \"memory op type\": \"%s\"\n",
                   function, begin.u32(28), resource, end.i32(24), operation);
    file.out.write(kClose);
}

// The GL/GLES mark pair looks the begin's function up without removing the
// OpenGL base, so OpenGL pairs show "OUT_OF_BOUNDS".
void writeFuncScope(StreamFile& file, Packet begin, const Packet& end)
{
    writeHead(file, begin.timer(), end.timer(), "FUNC_SCOPE");
    file.out.print("        \"type\": \"%s\",\n        \"info\": \"%s\",\n        \"jobref\": %u,\n        \"context ID\": %u\n",
                   glFunctionName(begin.u32(24)), begin.text(36), begin.u32(28), begin.u32(32));
    file.out.write(kClose);
}

constexpr std::size_t kSurfacesOffset = 40;

void writeTqKickScope(StreamFile& file, std::uint32_t type, Packet begin, const Packet& end)
{
    writeHead(file, begin.timer(), end.timer(), "TQ_KICK_SCOPE");
    file.out.print("        \"type\": \"%s\",\n        \"jobref\": %u,\n        \"context ID\": %u,\n        \"kick reason\": \"%s\",\n",
                   "16_TQKick", begin.u32(24), begin.u32(28), glFamilyTqReasonName(type, begin.u16(32)));
    const std::uint32_t surfaces = begin.u16(34);
    if (surfaces != 0) printSurfaces(file, begin.from(kSurfacesOffset), surfaces);
    file.out.write(kClose);
}

void writeKickScope(StreamFile& file, std::uint32_t type, Packet begin, const Packet& end)
{
    writeHead(file, begin.timer(), end.timer(), "KICK_SCOPE");
    const KickTexts texts = formatKickTexts(type, begin);
    file.out.print("        \"type\": \"%s\",\n        \"jobref\": %u,\n        \"context ID\": %u,\n"
                   "        \"kickreason\": \"%s\",\n        \"Framebuffer ID\": \"%d\",\n%s%s",
                   glFamilyFunctionName(type, begin.u32(24)), begin.u32(28), begin.u32(32),
                   kickReasonText(begin.u32(68)), begin.i32(72), texts.drawState, texts.renderTargets);
    file.out.write(kClose);
}

// A stored GL/GLES begin's 40-byte info text ends at byte 75 at the latest.
constexpr std::size_t kBeginInfoEnd = 75;
// A memory-operation end's 40-byte message ends at byte 87 at the latest.
constexpr std::size_t kMemOpMessageEnd = 87;

void writeDrawScope(StreamFile& file, std::uint32_t type, Packet begin, const Packet& end)
{
    begin.setU8(kBeginInfoEnd, 0);
    writeHead(file, begin.timer(), end.timer(), "DRAW_SCOPE");
    file.out.print("        \"type\": \"%s\",\n        \"jobref\": %u,\n        \"context ID\": %u,\n",
                   glFamilyFunctionName(type, begin.u32(24)), end.u32(32), begin.u32(32));
    printDrawParams(isGlType(type), file, end.from(24));
    writeShaderIds(file.out, end);
    file.out.write(kClose);
}

void writeCompileShader(StreamFile& file, std::uint32_t type, Packet begin, const Packet& end)
{
    begin.setU8(kBeginInfoEnd, 0);
    const char* source = escapedShaderSource(end);
    const char* function = glFamilyFunctionName(type, begin.u32(24));
    const char* shaderType = shaderTypeName(end.u32(28));
    writeHead(file, begin.timer(), end.timer(), "COMPILE_SHADER_POINT");
    file.out.print("        \"packet part\": %d,\n        \"message\": \"%s\",\n        \"type\": \"%s\",\n"
                   "        \"context ID\": %u,\n        \"shader ID\": %llu,\n        \"shader type\": \"%s\",\n"
                   "        \"shader code\": \"%s\"\n",
                   end.i32(44), begin.text(36), function, end.u32(40), static_cast<ULL>(end.u64(32)), shaderType,
                   source);
    file.out.write(kClose);
}

void writeGlMemOp(StreamFile& file, std::uint32_t type, Packet begin, const Packet& end)
{
    begin.setU8(kBeginInfoEnd, 0);
    end.setU8(kMemOpMessageEnd, 0);
    const char* function = glFamilyFunctionName(type, begin.u32(24));
    const char* resource = glFamilyMemoryResourceName(type, end.u32(28));
    const char* operation = memoryOperationName(end.u32(32));
    writeHead(file, begin.timer(), end.timer(), "MEMORY_OP_POINT");
    file.out.print("        \"type\": \"%s\",\n        \"jobref\": %u,\n        \"context ID\": %u,\n"
                   "        \"memory resource type\": \"%s\",\n        \"op size\": %d,\n        \"memory op type\": \"%s\",\n"
                   "        \"message\": \"%s\"\n",
                   function, end.u32(40), end.u32(44), resource, end.i32(24), operation, end.text(48));
    file.out.write(kClose);
}

void writeDispatchScope(StreamFile& file, std::uint32_t type, Packet begin, const Packet& end)
{
    begin.setU8(kBeginInfoEnd, 0);
    writeHead(file, begin.timer(), end.timer(), "DISPATCH_COMPUTE_SCOPE");
    file.out.print("        \"type\": \"%s\",\n        \"jobref\": %u,\n        \"context ID\": %u,\n        \"message\": \"%s\",\n"
                   "        \"Workgroup dim X\": %d,\n        \"Workgroup dim Y\": %d,\n        \"Workgroup dim Z\": %d,\n",
                   glFamilyFunctionName(type, begin.u32(24)), end.u32(28), begin.u32(32), begin.text(36), end.i32(76),
                   end.i32(80), end.i32(84));
    printDispatchData(isGlType(type), file, end.from(24), end.size());
    file.out.write(kClose);
}

// The OpenCL pair closes its object, then writes the function data of both
// packets behind it and closes once more.
void writeOpenClScope(StreamFile& file, Packet begin, const Packet& end)
{
    const OpenClLayout beginLayout = chooseOpenClLayout(begin);
    const OpenClLayout endLayout = chooseOpenClLayout(end);
    writeHead(file, begin.timer(), end.timer(), "FUNC_SCOPE");
    file.out.print("        \"type\": \"%s\",\n        \"info\": \"%s\",\n        \"jobref\": %u,\n        \"context ID\": %u,\n"
                   "        \"object ID\": %u,\n        \"thread ID\": %u",
                   openClFunctionName(begin.u32(44)), openClInfo(begin, beginLayout), begin.u32(36), begin.u32(24),
                   begin.u32(28), begin.u32(32));
    if (beginLayout.hasThreadNameHash)
        file.out.print(",\n        \"threadnamehash\": \"0x%x\"", begin.u32(kThreadNameHashOffset));
    file.out.write("\n      }\n    }");
    if (beginLayout.dataOffset != 0) {
        console().putLine("Printing start packet");
        printOpenClData(file, begin.u32(44), begin.from(beginLayout.dataOffset));
    }
    if (endLayout.dataOffset != 0) {
        console().putLine("Printing end packet");
        printOpenClData(file, end.u32(44), end.from(endLayout.dataOffset));
    }
    file.out.write(kClose);
}

// A Vulkan mark of this size carries no object data.
constexpr std::uint32_t kPlainVulkanMarkSize = 88;

void writeVulkanScope(StreamFile& file, Packet begin, const Packet& end)
{
    writeHead(file, begin.timer(), end.timer(), "VULKAN_MARK");
    file.out.print("        \"object ID\": %d,\n        \"thread ID\": %d,\n        \"type\": \"%s\",\n"
                   "        \"start info\": \"%s\",\n        \"end info\": \"%s\"\n",
                   begin.i32(24), begin.i32(28), vulkanFunctionName(begin.u32(40)), begin.text(44), end.text(44));
    if (begin.size() != kPlainVulkanMarkSize) printVulkanApiInfo(file, begin.from(24));
    if (end.size() != kPlainVulkanMarkSize) printVulkanApiInfo(file, end.from(24));
    file.out.write(kClose);
}

// ---- Dispatch ----

// Where a begin of this type waits; null for a type that is no begin.
// `isBegin` tells begins (stored even if the slot is out of range, which
// ignores them) from other types.
StoredPacket* beginSlot(std::uint32_t type, const Packet& p, bool& isBegin)
{
    isBegin = true;
    switch (type) {
    case kKickStart: {
        const std::uint32_t kickType = p.u32(24);
        return kickType < kKickSlots ? &pairing().kicks[kickType] : nullptr;
    }
    case kSoftwareTqStart: return &pairing().softwareTq;
    case kEglMarkStart:
    case kEglMemOpStart: return pendingSlot(p.u32(24));
    case kGlesTqKickStart: return pendingSlot(kGlesTqKickSlot);
    case kGlesTqKickStart + (kGlBase - kGlesBase): return pendingSlot(kGlTqKickSlot);
    case kOpenClMarkStart: return pendingSlot(p.u32(44));
    case kVulkanMarkStart:
    case kVulkanSubCommandStart: return pendingSlot(p.u32(40));
    default: break;
    }
    switch (glesEquivalent(type)) {
    case kGlesMarkStart:
    case kGlesKickStart:
    case kGlesDrawStart:
    case kGlesShaderCompileStart:
    case kGlesMemOpStart:
    case kGlesComputeStart:
        if (type > kGlesBase) return pendingSlot(p.u32(24));
        break;
    default: break;
    }
    isBegin = false;
    return nullptr;
}

// Writes the pair of an end whose begin is stored in `slot`, then empties
// the slot. Nothing happens when the slot is empty.
template <typename Write>
void closePair(StoredPacket* slot, Write write)
{
    if (slot == nullptr || slot->empty()) return;
    write(slot->view());
    slot->clear();
}

// Handles end and point events; false for a type the stream does not know.
bool convertEndOrPoint(StreamFile& file, std::uint32_t type, const Packet& p)
{
    switch (type) {
    case kKickEnd: {
        const std::uint32_t kickType = p.u32(24);
        if (kickType < kKickSlots)
            closePair(&pairing().kicks[kickType], [&](Packet begin) { writeKorKick(file, begin, p); });
        return true;
    }
    case kSoftwareTqEnd:
        closePair(&pairing().softwareTq, [&](Packet begin) { writeSoftwareTq(file, begin, p); });
        return true;
    case kEnqueueWork: writeEnqueue(file, p); return true;
    case kSyncAlloc: writeSyncAlloc(file, p); return true;
    case kSyncFree: writeSyncFree(file, p); return true;
    case kSyncFenceWait: writeFenceWait(file, p); return true;
    case kSyncTimelineAdvance: writeTimelineAdvance(file, p); return true;
    case kEglMarkEnd:
        closePair(pendingSlot(p.u32(24)), [&](Packet begin) { writeEglScope(file, begin, p); });
        return true;
    case kEglMemOpEnd:
        closePair(pendingSlot(p.u32(36)), [&](Packet begin) { writeEglMemOp(file, begin, p); });
        return true;
    case kOpenClMarkStop:
        closePair(pendingSlot(p.u32(44)), [&](Packet begin) { writeOpenClScope(file, begin, p); });
        return true;
    case kVulkanMarkEnd:
    case kVulkanSubCommandEnd:
        closePair(pendingSlot(p.u32(40)), [&](Packet begin) { writeVulkanScope(file, begin, p); });
        return true;
    case kVulkanShaderInvocations: writeVulkanInvocations(file, p); return true;
    default: break;
    }

    if (type <= kGlesBase || type > kLastEventType) return false;
    const std::uint32_t function = p.u32(24);
    switch (glesEquivalent(type)) {
    case kGlesMarkStop: {
        // A mark stop of the TQ-kick function closes the TQ kick start.
        const std::uint32_t tqSlot = isGlType(type) ? kGlTqKickSlot : kGlesTqKickSlot;
        if (function == tqSlot)
            closePair(pendingSlot(tqSlot), [&](Packet begin) { writeTqKickScope(file, type, begin, p); });
        else
            closePair(pendingSlot(function), [&](Packet begin) { writeFuncScope(file, begin, p); });
        return true;
    }
    case kGlesTqKickEnd:
        closePair(pendingSlot(function), [&](Packet begin) { writeFuncScope(file, begin, p); });
        return true;
    case kGlesKickEnd:
        closePair(pendingSlot(function), [&](Packet begin) { writeKickScope(file, type, begin, p); });
        return true;
    case kGlesDrawEnd:
        closePair(pendingSlot(function), [&](Packet begin) { writeDrawScope(file, type, begin, p); });
        return true;
    case kGlesShaderCompileEnd:
        closePair(pendingSlot(function), [&](Packet begin) { writeCompileShader(file, type, begin, p); });
        return true;
    case kGlesMemOpEnd:
        closePair(pendingSlot(p.u32(36)), [&](Packet begin) { writeGlMemOp(file, type, begin, p); });
        return true;
    case kGlesComputeEnd:
        closePair(pendingSlot(function), [&](Packet begin) { writeDispatchScope(file, type, begin, p); });
        return true;
    case kGlesMarkPoint: writeMarkPoint(file, p); return true;
    case kGlesShaderInvocations: writeShaderInvocations(file, type, p); return true;
    default: return false;
    }
}

} // namespace
} // namespace client

void clientBeginFile()
{
    client::PairingState& state = client::pairing();
    for (StoredPacket& slot : state.pending) slot.clear();
    for (StoredPacket& slot : state.kicks) slot.clear();
    state.softwareTq.clear();
}

std::uint32_t clientConvertCorrelated(StreamFile& file, Packet& packet)
{
    const std::uint32_t type = packet.eventType();
    bool isBegin = false;
    StoredPacket* slot = client::beginSlot(type, packet, isBegin);
    if (isBegin) {
        if (slot != nullptr) slot->assign(packet);
    } else if (!client::convertEndOrPoint(file, type, packet)) {
        console().print("error: %s packet type unknown (%d), packet skipped\n", file.streamName,
                        static_cast<int>(type));
        return 0;
    }
    file.lastOrdinal = checkOrdinal(file, packet.ordinal());
    return 1;
}
