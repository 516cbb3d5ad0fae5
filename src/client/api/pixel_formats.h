// Pixel formats and frame-buffer compression (FBC) modes, shared by render
// targets, surfaces and Vulkan images.
#pragma once

#include <cstdint>

namespace client {

// Name of a pixel format index; "UNKNOWN" for index 0 and past the table.
const char* pixelFormatName(std::uint32_t index);

// Name of an FBC mode; code 13, negative codes and codes above 17 print
// "Warning: Zyntel packet unknown FBC mode (%d)!" and yield "Unknown".
const char* fbcModeName(std::int32_t code);

} // namespace client
