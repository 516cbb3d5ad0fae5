// The API payload printers as the client converters call them: each takes
// the record from offset 24 of the packet (the first byte after the header)
// unless stated otherwise, and writes into the file's JSON output.
#pragma once

#include <cstddef>
#include <cstdint>

class Packet;
struct StreamFile;

namespace client {

// EGL/GLES API information of an EGL mark.
void printEglApiInfo(StreamFile& file, const Packet& record);

// Kick start: framebuffer flags and render targets (GL or GLES variant), and
// the depth/stencil (ZLS) lines, each into a caller-owned text buffer.
void formatRenderTargets(bool openGl, char* buffer, std::size_t capacity, const Packet& record);
void formatZlsInfo(char* buffer, std::size_t capacity, const Packet& record);

// Draw end: the draw parameters (GL or GLES variant).
void printDrawParams(bool openGl, StreamFile& file, const Packet& record);

// Compute end: the dispatch shader data, which depend on the packet size.
void printDispatchData(bool openGl, StreamFile& file, const Packet& record, std::uint32_t packetSize);

// TQ kick start: the surface entries starting at `firstSurface`.
void printSurfaces(StreamFile& file, const Packet& firstSurface, std::uint32_t count);

// OpenCL: the function name (ids 50 to 203 and 299 to 305, otherwise the
// unknown-event-type warning and "OUT_OF_BOUNDS") and the function-specific
// data starting at `data`.
const char* openClFunctionName(std::uint32_t functionId);
void printOpenClData(StreamFile& file, std::uint32_t functionId, const Packet& data);

// Vulkan: function names (ids 204 to 254), object type names (0 to 28) and
// the object data of a mark.
const char* vulkanFunctionName(std::uint32_t functionId);
const char* vulkanObjectTypeName(std::uint32_t objectType);
void printVulkanApiInfo(StreamFile& file, const Packet& record);

} // namespace client
