#include "client/client_common.h"

#include "client/client_names.h"
#include "client/client_printers.h"
#include "client/client_types.h"
#include "json/output.h"
#include "stream/packet.h"

namespace client {

const char* glFamilyFunctionName(std::uint32_t type, std::uint32_t functionId)
{
    return glFunctionName(isGlType(type) ? functionId - kGlFunctionBase : functionId);
}

const char* glFamilyMemoryResourceName(std::uint32_t type, std::uint32_t value)
{
    return isGlType(type) ? glMemoryResourceName(value) : glesMemoryResourceName(value);
}

const char* glFamilyTqReasonName(std::uint32_t type, std::uint32_t reason)
{
    return isGlType(type) ? glTqReasonName(reason) : glesTqReasonName(reason);
}

// Draw-end record: shader mask at 36, packed entries from 64.
constexpr std::size_t kShaderMaskOffset = 36;
constexpr std::size_t kShaderEntriesOffset = 64;
constexpr std::uint32_t kShaderVariantsBit = 0x80000000u;
constexpr int kShaderStageCount = 6;

void writeShaderIds(Output& out, const Packet& drawEnd)
{
    // One format per stage, ID alone or ID and variant; the commas are those
    // of the formats, so the last present stage may keep its comma.
    static const char* const kIdFormats[kShaderStageCount] = {
        "        \"Vsh ID\": %llu,\n",
        "        \"Fsh ID\": %llu,\n",
        "        \"Csh ID\": %llu,\n",
        "        \"Gsh ID\": %llu,\n",
        "        \"TCsh ID\": %llu,\n",
        "        \"TEsh ID\": %llu\n",
    };
    static const char* const kIdVariantFormats[kShaderStageCount] = {
        "        \"Vsh ID\": %llu,\n        \"Vsh Variant\": %u,\n",
        "        \"Fsh ID\": %llu,\n        \"Fsh Variant\": %u,\n",
        "        \"Csh ID\": %llu,\n        \"Csh Variant\": %u,\n",
        "        \"Gsh ID\": %llu,\n        \"Gsh Variant\": %u,\n",
        "        \"TCsh ID\": %llu,\n        \"TCsh Variant\": %u,\n",
        "        \"TEsh ID\": %llu\n        \"TEsh Variant\": %u\n",
    };

    const std::uint32_t mask = drawEnd.u32(kShaderMaskOffset);
    const bool withVariants = (mask & kShaderVariantsBit) != 0;
    const std::size_t entrySize = withVariants ? 16 : 8;
    std::size_t entry = kShaderEntriesOffset;
    for (int stage = 0; stage < kShaderStageCount; ++stage) {
        if ((mask & (1u << stage)) == 0) continue;
        const unsigned long long shaderId = drawEnd.u64(entry);
        if (withVariants)
            out.print(kIdVariantFormats[stage], shaderId, drawEnd.u32(entry + 8));
        else
            out.print(kIdFormats[stage], shaderId);
        entry += entrySize;
    }
}

// Shader-invocation record: count at 40, 16-byte entries from 48.
constexpr std::size_t kInvocationCountOffset = 40;
constexpr std::size_t kInvocationEntriesOffset = 48;
constexpr std::size_t kInvocationEntrySize = 16;

void writeInvocationCounts(Output& out, const Packet& packet)
{
    const std::uint32_t count =
        packet.fitCount(kInvocationEntriesOffset, packet.u32(kInvocationCountOffset), kInvocationEntrySize);
    out.print("        \"Shader Invocation Counts\": {\n");
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t entry = kInvocationEntriesOffset + i * kInvocationEntrySize;
        out.print("          \"%llu (%u)\" : %u%s\n", static_cast<unsigned long long>(packet.u64(entry)),
                  packet.u32(entry + 12), packet.u32(entry + 8), i + 1 < count ? "," : "");
    }
    out.print("        }\n      }\n    }");
}

// Compile-end record: source length (with its NUL) at 48, source from 52.
constexpr std::size_t kSourceLengthOffset = 48;
constexpr std::size_t kSourceOffset = 52;

const char* escapedShaderSource(const Packet& compileEnd)
{
    static std::string escaped;
    const std::uint64_t length = compileEnd.u32(kSourceLengthOffset);
    if (length > 0) compileEnd.setU8(kSourceOffset + length - 1, 0);

    // The text ends at its first NUL, at the forced terminator or at the
    // packet's end, whichever comes first.
    const char* source = compileEnd.text(kSourceOffset);
    escaped.clear();
    for (const char* c = source; *c != '\0'; ++c) {
        switch (*c) {
        case '\n': escaped += "\\n"; break;
        case '\t': escaped += "\\t"; break;
        case '"': escaped += "\\\""; break;
        default: escaped += *c; break;
        }
    }
    return escaped.c_str();
}

// OpenCL mark record: function id at 44; with a thread-name hash the info
// text is at 56 and the data at 96, without it at 48 and 88.
constexpr std::size_t kOpenClFunctionOffset = 44;
constexpr std::uint32_t kHashedInfoOffset = 56;
constexpr std::uint32_t kHashedDataOffset = 96;
constexpr std::uint32_t kPlainInfoOffset = 48;
constexpr std::uint32_t kPlainDataOffset = 88;

// Size of the function-specific data of function F placed at `data`.
static std::uint32_t openClDataSize(const Packet& mark, std::uint32_t function, std::size_t data)
{
    switch (function) {
    case 60: case 141: case 300: case 302: return 16;
    case 161: case 304: return 36;
    case 86: case 301: return mark.u32(data + 4) + 8;
    case 158: case 303: return (mark.u32(data) + 1) * 4;
    default: return 0;
    }
}

// Functions that only ever come without a thread-name hash.
static bool isPlainOnly(std::uint32_t function)
{
    return function == 60 || function == 86 || function == 141 || function == 158 || function == 161;
}

// Packet size expected for data of `dataSize` bytes at `dataOffset`, as the
// 16-bit size field holds it.
static std::uint32_t expectedSize(std::uint32_t dataOffset, std::uint32_t dataSize)
{
    return (dataOffset + ((dataSize + 7) & ~7u)) & 0xFFFF;
}

OpenClLayout chooseOpenClLayout(const Packet& mark)
{
    const std::uint32_t function = mark.u32(kOpenClFunctionOffset);
    const std::uint32_t size = mark.size();
    const std::uint32_t hashedData = openClDataSize(mark, function, kHashedDataOffset);
    const std::uint32_t plainData = openClDataSize(mark, function, kPlainDataOffset);
    const std::uint32_t hashedSize = expectedSize(kHashedDataOffset, hashedData);
    const std::uint32_t plainSize = expectedSize(kPlainDataOffset, plainData);

    OpenClLayout layout;
    if (hashedData != 0 && !isPlainOnly(function) && size == hashedSize) {
        layout.hasThreadNameHash = true;
        layout.infoOffset = kHashedInfoOffset;
        layout.dataOffset = kHashedDataOffset;
        return layout;
    }

    // Functions of the second range never carry their data without the hash.
    const bool hashOnlyData = function == 300 || function == 302 || function == 301 || function == 303 ||
                              function == 304;
    if (!hashOnlyData && plainData != 0 && size == plainSize) layout.dataOffset = kPlainDataOffset;

    if (!isPlainOnly(function) && size == kHashedDataOffset) {
        layout.hasThreadNameHash = true;
        layout.infoOffset = kHashedInfoOffset;
    } else if (size == kPlainDataOffset || size == plainSize) {
        layout.infoOffset = kPlainInfoOffset;
    }
    return layout;
}

const char* openClInfo(const Packet& mark, const OpenClLayout& layout)
{
    return layout.infoOffset != 0 ? mark.text(layout.infoOffset) : "(null)";
}

} // namespace client

namespace client {

// Kick-start record: render-target count at 36. Each render target gets
// 512 bytes of text; the draw state (depth/stencil set-up) 512 in all.
constexpr std::size_t kRenderTargetCountOffset = 36;
constexpr std::size_t kRenderTargetsOffset = 80;
constexpr std::size_t kRenderTargetSize = 24;
constexpr std::size_t kTextPerRenderTarget = 512;
constexpr std::size_t kDrawStateTextSize = 512;

KickTexts formatKickTexts(std::uint32_t type, const Packet& kickStart)
{
    static std::vector<char> renderTargets;
    static char drawState[kDrawStateTextSize];

    // Only the entries that lie in the packet can produce text, so the
    // buffer is sized from those.
    std::size_t targets =
        kickStart.fitCount(kRenderTargetsOffset, kickStart.u32(kRenderTargetCountOffset), kRenderTargetSize);
    if (targets == 0) targets = 1;
    if (renderTargets.size() < targets * kTextPerRenderTarget) renderTargets.resize(targets * kTextPerRenderTarget);

    const Packet record = kickStart.from(24);
    formatRenderTargets(isGlType(type), renderTargets.data(), targets * kTextPerRenderTarget, record);
    formatZlsInfo(drawState, sizeof drawState, record);
    return KickTexts{drawState, renderTargets.data()};
}

} // namespace client
