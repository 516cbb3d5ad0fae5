// Kick start of GL and GLES: the framebuffer flags with one object per
// render target, and the depth/stencil load/store (ZLS) lines. Both are
// formatted into caller-owned buffers of fixed size and cut where the
// buffer ends; the converter prints them inside its own mark object.
#include "client/client_printers.h"

#include "client/api/pixel_formats.h"
#include "json/output.h"
#include "stream/packet.h"

#include <iterator>

namespace client {

namespace {

// Kick record, from the first byte after the packet header.
constexpr std::size_t kRenderTargetCountOffset = 12;
constexpr std::size_t kFramebufferFlagsOffset = 16;
constexpr std::size_t kZlsFlagsOffset = 20;
constexpr std::size_t kZlsLoadAddressOffset = 24;
constexpr std::size_t kZlsStoreAddressOffset = 32;
constexpr std::size_t kZlsSizeOffset = 40;
constexpr std::size_t kRenderTargetsOffset = 56;
constexpr std::size_t kRenderTargetSize = 24;

using ULL = unsigned long long;

const char* yesNo(std::uint32_t flags, int bit) { return (flags >> bit) & 1 ? "Y" : "N"; }

const char* msaaModeName(std::uint32_t mode)
{
    static const char* const kNames[] = {"None", "2x", "4x", "8x"};
    return kNames[mode & 3];
}

const char* rotationName(std::uint32_t rotation)
{
    static const char* const kNames[] = {"None", "90", "180", "270", "FlipY"};
    return rotation < std::size(kNames) ? kNames[rotation] : "Bad";
}

// Type 0 (colour) has its own format, so it needs no name here.
const char* targetTypeName(bool openGl, std::uint32_t type)
{
    if (type == 3) return "DepthStencil";
    if ((type & 0xC) != 0) {
        if (type == 4) return "MSAAScratch";
        if (type == 5) return openGl ? "Accumulate" : "Accum";
        return "Unknown";
    }
    return type == 1 ? "Depth" : "Stencil";
}

const char* compressedFormatName(std::uint32_t format)
{
    static const char* const kNames[] = {"NONE", "F32", "I24", "I16", "F64"};
    return format < std::size(kNames) ? kNames[format] : "Unknown";
}

} // namespace

void formatRenderTargets(bool openGl, char* buffer, std::size_t capacity, const Packet& record)
{
    TextBuffer text(buffer, capacity);
    if (capacity == 0) return;

    // The order is not the bit order.
    const std::uint32_t flags = record.u32(kFramebufferFlagsOffset);
    text.append("        \"DefaultFB\": \"%s\",\n", yesNo(flags, 0));
    text.append("        \"ZOnly\": \"%s\",\n", yesNo(flags, 2));
    text.append("        \"Invalidate\": \"%s\",\n", yesNo(flags, 1));
    text.append("        \"Kick3D\": \"%s\",\n", yesNo(flags, 3));
    text.append("        \"MSAA Mode\": \"%s\",\n", msaaModeName(flags >> 4));

    const std::uint32_t count =
        record.fitCount(kRenderTargetsOffset, record.u32(kRenderTargetCountOffset), kRenderTargetSize);
    if (count == 0) {
        text.append("        \"SurfaceCount\":0\n");
        return;
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        const Packet target = record.from(kRenderTargetsOffset + i * kRenderTargetSize);
        const ULL address = target.u64(0);
        const std::uint32_t size = target.u32(8);
        const char* pixelFormat = pixelFormatName(target.u32(12));
        const std::uint32_t targetFlags = target.u32(16);
        const std::uint32_t memoryLayout = (targetFlags >> 4) & 0xF;
        const std::uint32_t compression = (targetFlags >> 8) & 0xF;
        const std::uint32_t type = (targetFlags >> 12) & 0xF;
        const char* rotation = rotationName((targetFlags >> 16) & 0xF);
        const char* separator = i + 1 < count ? "," : "";
        // Only a colour target's address has the "0x" prefix.
        if (type == 0)
            text.append("        \"RenderTarget%u\": {\n           \"Type\": \"Colour\",\n"
                        "           \"Address\": \"0x%llX\",\n           \"Size\":\"%u x %u\",\n"
                        "           \"QTXPixFmt\":\"%s\",\n           \"CompressionFmt\": \"%u\",\n"
                        "           \"MemLayout\": \"%u\",\n           \"Rotation\": \"%s\",\n"
                        "           \"Downscale\": \"%s\",\n           \"EnableDithering\": \"%s\"\n        }%s\n",
                        i, address, size & 0xFFFF, size >> 16, pixelFormat, compression, memoryLayout, rotation,
                        yesNo(targetFlags, 1), yesNo(targetFlags, 0), separator);
        else
            text.append("        \"RenderTarget%u\": {\n           \"Type\": \"%s\",\n"
                        "           \"Address\": \"%llX\",\n           \"Size\":\"%u x %u\",\n"
                        "           \"QTXPixFmt\":\"%s\",\n           \"CompressionFmt\": \"%u\",\n"
                        "           \"MemLayout\": \"%u\",\n           \"Rotation\": \"%s\"\n        }%s\n",
                        i, targetTypeName(openGl, type), address, size & 0xFFFF, size >> 16, pixelFormat,
                        compression, memoryLayout, rotation, separator);
    }
}

void formatZlsInfo(char* buffer, std::size_t capacity, const Packet& record)
{
    TextBuffer text(buffer, capacity);
    const std::uint32_t flags = record.u32(kZlsFlagsOffset);
    if (flags == 0) return;

    constexpr std::uint32_t kDepthLoad = 1u << 0, kDepthStore = 1u << 1;
    constexpr std::uint32_t kStencilLoad = 1u << 2, kStencilStore = 1u << 3;
    if (flags & (kDepthLoad | kStencilLoad)) {
        if (flags & kDepthLoad) text.append("        \"ZLoad\": \"Y\",\n");
        // Nine blanks before this key.
        if (flags & kStencilLoad) text.append("         \"SLoad\": \"Y\",\n");
        text.append("        \"ZLSLoadAddress\": \"0x%llX\",\n", static_cast<ULL>(record.u64(kZlsLoadAddressOffset)));
        text.append("        \"ZLoadCompressedFormat\": \"%s\",\n", compressedFormatName((flags >> 5) & 7));
    }
    if (flags & (kDepthStore | kStencilStore)) {
        if (flags & kDepthStore) text.append("        \"ZStore\": \"Y\",\n");
        if (flags & kStencilStore) text.append("        \"SStore\": \"Y\",\n");
        text.append("        \"ZLSStoreAddress\": \"0x%llX\",\n", static_cast<ULL>(record.u64(kZlsStoreAddressOffset)));
        text.append("        \"ZStoreCompressedFormat\": \"%s\",\n", compressedFormatName((flags >> 9) & 7));
    }
    const std::uint32_t size = record.u32(kZlsSizeOffset);
    text.append("        \"ZLSSize\": \"%u x %u\",\n", size & 0xFFFF, size >> 16);
}

} // namespace client
