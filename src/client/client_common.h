// Pieces of client packets that the raw and the correlated converter print
// alike: per-API name choices, shader ids of a draw end, GL/GLES shader
// invocation counts, the escaped shader source of a compile end, the OpenCL
// record layout and the kick-start texts.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class Output;
class Packet;

namespace client {

// GL/GLES function name of a packet of the given type: OpenGL ids carry a
// base of 256, OpenGL ES ids are used as they stand.
const char* glFamilyFunctionName(std::uint32_t type, std::uint32_t functionId);
const char* glFamilyMemoryResourceName(std::uint32_t type, std::uint32_t value);
const char* glFamilyTqReasonName(std::uint32_t type, std::uint32_t reason);

// The shader-id lines of a draw end: one ID line (and variant line) per
// stage present in the mask at 36, entries from offset 64.
void writeShaderIds(Output& out, const Packet& drawEnd);

// The GL/GLES invocation entries (count at 40, entries at 48), from
// "Shader Invocation Counts" to the close of the element.
void writeInvocationCounts(Output& out, const Packet& packet);

// Escapes the shader source of a compile end (length at 48, text at 52,
// whose last byte is forced to 0): newline, tab and double quote become
// backslash sequences. The result lives until the next call.
const char* escapedShaderSource(const Packet& compileEnd);

// OpenCL mark record: the thread-name hash, when the layout has one.
constexpr std::size_t kThreadNameHashOffset = 48;

// Where the parts of an OpenCL mark record lie; 0 for a part that is absent.
struct OpenClLayout {
    bool hasThreadNameHash = false;
    std::uint32_t infoOffset = 0;
    std::uint32_t dataOffset = 0;
};
OpenClLayout chooseOpenClLayout(const Packet& mark);

// The info text of an OpenCL mark; "(null)" when the layout has none.
const char* openClInfo(const Packet& mark, const OpenClLayout& layout);

// The draw-state and render-target texts of a kick start, built into
// buffers reused from one kick to the next.
struct KickTexts {
    const char* drawState;
    const char* renderTargets;
};
KickTexts formatKickTexts(std::uint32_t type, const Packet& kickStart);

} // namespace client
