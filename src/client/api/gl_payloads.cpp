// Details of GL and GLES events: draw parameters, the compute shader of a
// dispatch, the surfaces of a transfer-queue kick, and the "API Info" of EGL
// events. The GL variants differ from the GLES ones only where noted.
#include "client/client_printers.h"

#include "client/api/pixel_formats.h"
#include "json/names.h"
#include "json/output.h"
#include "stream/stream_file.h"
#include "stream/packet.h"

#include <iterator>

namespace client {

namespace {

using ULL = unsigned long long;

// GL function ids are the GLES ones plus this offset.
constexpr std::uint32_t kGlFunctionBase = 256;

// Draw record: function id at 0, six parameters from 16. Each draw function
// prints its own block, taking the parameters in order (the comma always
// follows: the shader lines come next); unused parameters are ignored.
constexpr std::size_t kDrawParamsOffset = 16;
constexpr std::uint32_t kFirstDrawFunction = 5;

static const char* const kDrawParamFormats[] = {
    // 05_DrawArrays
    "        \"Mode\": %u,\n        \"Index Count\": %u,\n        \"First\": %u,\n",
    // 06_DrawArraysInstanced
    "        \"Mode\": %u,\n        \"Index Count\": %u,\n        \"First\": %u,\n        \"Primitive Count\": %u,\n",
    // 07_DrawArraysIndirect
    "        \"Mode\": %u,\n",
    // 08_DrawElements
    "        \"Mode\": %u,\n        \"Element Count\": %u,\n        \"Type\": %u,\n",
    // 09_DrawElementsInstanced
    "        \"Mode\": %u,\n        \"Element Count\": %u,\n        \"Type\": %u,\n        \"Primitive Count\": %u,\n",
    // 10_DrawElementsIndirect
    "        \"Mode\": %u,\n        \"Type\": %u,\n",
    // 11_DrawRangeElements
    "        \"Mode\": %u,\n        \"Element Count\": %u,\n        \"Type\": %u,\n        \"Range Start\": %u,\n"
    "        \"Range End\": %u,\n",
    // 12_DrawElementsBaseVertex
    "        \"Mode\": %u,\n        \"Element Count\": %u,\n        \"Type\": %u,\n        \"Base Vertex\": %u,\n",
    // 13_DrawRangeElementsBaseVertex
    "        \"Mode\": %u,\n        \"Element Count\": %u,\n        \"Type\": %u,\n        \"Base Vertex\": %u,\n"
    "        \"Range Start\": %u,\n        \"Range End\": %u,\n",
    // 14_DrawElementsInstancedBaseVertex
    "        \"Mode\": %u,\n        \"Element Count\": %u,\n        \"Type\": %u,\n        \"Base Vertex\": %u,\n"
    "        \"Primitive Count\": %u,\n",
    // 15_MultiDrawElementsBaseVertex
    "        \"Mode\": %u,\n        \"Type\": %u,\n",
};

// Dispatch record: the compute shader behind the workgroup dimensions; the
// packet size tells which of its fields are present.
constexpr std::size_t kComputeShaderIdOffset = 64;
constexpr std::size_t kComputeShaderVariantOffset = 72;
constexpr std::uint32_t kDispatchWithoutShader = 88;
constexpr std::uint32_t kDispatchWithShaderId = 96;
constexpr std::uint32_t kDispatchWithVariant = 104;

// Surface entry: address, extent (24-bit width and height, 16-bit depth),
// flags, pixel format.
constexpr std::size_t kSurfaceSize = 24;
constexpr std::uint32_t kThreeDTwiddledLayout = 2;

const char* const kSurfaceMsaaNames[] = {"None", "2x", "4x", "8x"};
const NameTable SurfaceMsaaNames = makeNameTable(kSurfaceMsaaNames, "MSAA mode", "Unknown");

const char* const kMemoryLayoutNames[] = {"Strided", "Twiddled", "3D Twiddled", "Tiled", "Page Tiled",
                                          "Inverse N Twiddled"};
const NameTable MemoryLayoutNames = makeNameTable(kMemoryLayoutNames, "memory layout", "Unknown");

// EGL record: event type at 0; a created context has the shared context at
// 16 and its type in bits 0-2 of the word at 20.
constexpr std::uint32_t kCreateContextEvent = 45;
constexpr std::uint32_t kNoSharedContext = 0xFFFFFFFF;

const char* const kEglContextTypeNames[] = {"00_Invalid", "01_OpenGLES1", "02_OpenGLES3", "03_OpenGL"};
const NameTable EglContextTypeNames = makeNameTable(kEglContextTypeNames, "EGL context type", "Unknown");

} // namespace

void printDrawParams(bool openGl, StreamFile& file, const Packet& record)
{
    const std::uint32_t function = record.u32(0) - (openGl ? kGlFunctionBase : 0);
    const std::uint32_t row = function - kFirstDrawFunction;
    if (function < kFirstDrawFunction || row >= std::size(kDrawParamFormats)) return;
    const Packet p = record.from(kDrawParamsOffset);
    file.out.print(kDrawParamFormats[row], p.u32(0), p.u32(4), p.u32(8), p.u32(12), p.u32(16), p.u32(20));
}

void printDispatchData(bool openGl, StreamFile& file, const Packet& record, std::uint32_t packetSize)
{
    if (packetSize == kDispatchWithShaderId) {
        file.out.print("        \"Csh ID\": %llu,\n", static_cast<ULL>(record.u64(kComputeShaderIdOffset)));
        return;
    }
    if (packetSize == kDispatchWithVariant) {
        // The variant comes first here, unlike in the draw shader list.
        file.out.print("        \"Csh Variant\": %u,\n", record.u32(kComputeShaderVariantOffset));
        file.out.print("        \"Csh ID\": %llu,\n", static_cast<ULL>(record.u64(kComputeShaderIdOffset)));
        return;
    }
    if (packetSize != kDispatchWithoutShader) {
        const int surplus = static_cast<int>(packetSize - kDispatchWithoutShader);
        if (openGl)
            console().print("Warning: Zyntel GL dispatch event shader data invalid size: %d!\n", surplus);
        else
            console().print("Warning: Zyntel GLES dispatch event shader data invalid size: %d!\n", surplus);
    }
    file.out.print("        \"No shader data\",\n");
}

// Each surface object ends with a comma after its last member, and there is
// no comma between surfaces.
void printSurfaces(StreamFile& file, const Packet& firstSurface, std::uint32_t count)
{
    count = firstSurface.fitCount(0, count, kSurfaceSize);
    for (std::uint32_t n = 0; n < count; ++n) {
        const Packet surface = firstSurface.from(n * kSurfaceSize);
        const std::uint64_t extent = surface.u64(8);
        const std::uint32_t flags = surface.u32(16);
        const std::uint32_t layout = (flags >> 3) & 0xF;

        char depth[8] = "n/a";
        if (layout == kThreeDTwiddledLayout) formatBounded(depth, sizeof depth, "%d", surface.u16(14));
        const char* pixelFormat = pixelFormatName(surface.u32(20));
        const char* msaa = lookupName(SurfaceMsaaNames, flags & 7);
        const char* fbc = fbcModeName(static_cast<std::int32_t>(flags >> 24));
        const char* layoutName = lookupName(MemoryLayoutNames, layout);
        file.out.print("        \"surface %d\": {\n          \"Address\": \"0x%llX\",\n          \"width\": \"%d\",\n"
                       "          \"height\": \"%d\",\n          \"depth\": \"%s\",\n"
                       "          \"pixel format\": \"%s\",\n          \"MSAA mode\": \"%s\",\n"
                       "          \"FBC mode\": \"%s\",\n          \"memory layout\": \"%s\",\n        }\n",
                       n, static_cast<ULL>(surface.u64(0)), static_cast<int>(extent & 0xFFFFFF),
                       static_cast<int>((extent >> 24) & 0xFFFFFF), depth, pixelFormat, msaa, fbc, layoutName);
    }
}

void printEglApiInfo(StreamFile& file, const Packet& record)
{
    file.out.print("        \"API Info\": {\n");
    if (record.u32(0) == kCreateContextEvent) {
        // Both keys end with a colon inside the quotes.
        file.out.print("          \"EGL Context Type:\": \"%s\",\n", lookupName(EglContextTypeNames, record.u32(20) & 7));
        const std::uint32_t shared = record.u32(16);
        if (shared == kNoSharedContext)
            file.out.print("          \"Shared EGL Context ID:\": \"EGL_NO_CONTEXT\"\n");
        else
            file.out.print("          \"Shared EGL Context ID:\": %u\n", shared);
    }
    file.out.print("        }\n");
}

} // namespace client
