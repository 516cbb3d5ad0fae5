// Client event types: the 15-bit type of a client packet, in blocks of 32
// per API sub-stream (Services 0, EGL 32, OpenGL ES 64, OpenCL 96,
// Vulkan 128, OpenGL 160). The OpenGL block repeats the OpenGL ES events at
// the same positions.
#pragma once

#include <cstdint>

namespace client {

constexpr std::uint32_t kLastEventType = 176;

constexpr std::uint32_t kEglBase = 32;
constexpr std::uint32_t kGlesBase = 64;
constexpr std::uint32_t kOpenClBase = 96;
constexpr std::uint32_t kVulkanBase = 128;
constexpr std::uint32_t kGlBase = 160;

// OpenGL function ids carry this base on top of the GL/GLES function table.
constexpr std::uint32_t kGlFunctionBase = 256;

enum EventType : std::uint32_t {
    // Services
    kKickStart = 1,
    kKickEnd = 2,
    kEnqueueWork = 3,
    kSyncAlloc = 4,
    kSyncFree = 5,
    kSyncFenceWait = 6,
    kSyncTimelineAdvance = 7,
    kSoftwareTqStart = 8, // named "08_undef" in the type table
    kSoftwareTqEnd = 9,   // named "09_undef"

    // EGL
    kEglMarkStart = 33,
    kEglMarkEnd = 34,
    kEglMemOpStart = 35,
    kEglMemOpEnd = 36,

    // OpenGL ES; the OpenGL type is the same plus (kGlBase - kGlesBase)
    kGlesMarkStart = 65,
    kGlesMarkStop = 66,
    kGlesMarkPoint = 67,
    kGlesKickStart = 68,
    kGlesKickEnd = 69,
    kGlesDrawStart = 70,
    kGlesDrawEnd = 71,
    kGlesShaderCompileStart = 72,
    kGlesShaderCompileEnd = 73,
    kGlesMemOpStart = 74,
    kGlesMemOpEnd = 75,
    kGlesComputeStart = 76,
    kGlesComputeEnd = 77,
    kGlesTqKickStart = 78,
    kGlesTqKickEnd = 79,
    kGlesShaderInvocations = 80,

    // OpenCL
    kOpenClMarkStart = 97,
    kOpenClMarkStop = 98,

    // Vulkan
    kVulkanMarkStart = 129,
    kVulkanMarkEnd = 130,
    kVulkanMarkPoint = 131,
    kVulkanSubCommandStart = 132,
    kVulkanSubCommandEnd = 133,
    kVulkanShaderInvocations = 134,
};

// True for the OpenGL block (161 to 176).
inline bool isGlType(std::uint32_t type) { return type > kGlBase && type <= kLastEventType; }

// The OpenGL ES type at the same position as a GL or GLES type, so that one
// switch serves both blocks.
inline std::uint32_t glesEquivalent(std::uint32_t type) { return isGlType(type) ? type - (kGlBase - kGlesBase) : type; }

// Function ids with a meaning of their own.
constexpr std::uint32_t kTqKickFunction = 16;            // "16_TQKick"
constexpr std::uint32_t kGlesInvocationOverflow = 41;    // "41_ShaderInvocationCountOverflow"
constexpr std::uint32_t kGlInvocationOverflow = 256 + 41;

// Vulkan pipeline types with invocation entries.
constexpr std::uint32_t kGraphicsPipeline = 5;
constexpr std::uint32_t kComputePipeline = 6;

} // namespace client
