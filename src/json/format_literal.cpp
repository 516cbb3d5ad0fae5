// Formats kept by address. Every print of the tool uses a string literal,
// and most of them hold only plain conversions (%u %d %s %x %X and their
// long forms, and %08x): such a format becomes a list of pieces, each a literal text
// followed by one conversion, built the first time the format is used.
#include "json/format.h"

#include "json/format_writer.h"

#include <climits>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

namespace {

enum class Conversion : std::uint8_t {
    None, Unsigned, Signed, String, Hex, HexUpper, HexEightDigits, UnsignedLong, SignedLong, HexLong, HexUpperLong,
    Percent
};

struct Piece {
    const char* literal;
    std::uint32_t literalLength;
    std::uint32_t paddedLength; // of the kept copy: whole blocks, at least two
    Conversion conversion;
};

// How a conversion is spelled after the '%'; longest spellings first.
struct Spelling {
    const char* text;
    Conversion conversion;
};
constexpr Spelling kSpellings[] = {
    {"llu", Conversion::UnsignedLong}, {"lld", Conversion::SignedLong},    {"llx", Conversion::HexLong},
    {"llX", Conversion::HexUpperLong}, {"08x", Conversion::HexEightDigits}, {"lu", Conversion::UnsignedLong},
    {"ld", Conversion::SignedLong},    {"lx", Conversion::HexLong},         {"lX", Conversion::HexUpperLong},
    {"u", Conversion::Unsigned},       {"d", Conversion::Signed},           {"i", Conversion::Signed},
    {"s", Conversion::String},         {"x", Conversion::Hex},              {"X", Conversion::HexUpper},
    {"%", Conversion::Percent},
};
static_assert(sizeof(long) == sizeof(long long), "the long forms share one conversion");

// Splits a format into pieces; false if it holds a conversion with flags,
// width, precision or a type not listed above.
bool compile(const char* format, std::vector<Piece>& pieces)
{
    const char* literal = format;
    const char* at = format;
    while (*at) {
        if (*at != '%') {
            ++at;
            continue;
        }
        const Spelling* found = nullptr;
        for (const Spelling& spelling : kSpellings) {
            const std::size_t length = std::strlen(spelling.text);
            if (std::strncmp(at + 1, spelling.text, length) == 0) {
                found = &spelling;
                break;
            }
        }
        if (!found) return false;
        pieces.push_back({literal, static_cast<std::uint32_t>(at - literal), 0, found->conversion});
        at += 1 + std::strlen(found->text);
        literal = at;
    }
    pieces.push_back({literal, static_cast<std::uint32_t>(at - literal), 0, Conversion::None});
    return true;
}

struct CompiledFormat {
    const char* format = nullptr; // the key; null for a free slot
    bool plain = false;           // false: use formatText
    std::unique_ptr<Piece[]> pieces;
    // Copies of the literal pieces, each padded to at least two whole
    // 16-byte blocks, so that they can be copied a block at a time and most
    // of them with no loop at all.
    std::unique_ptr<char[]> literals;
};

constexpr std::size_t kBlock = 16;
std::uint32_t paddedLengthOf(std::uint32_t length)
{
    const std::uint32_t blocks = (length + kBlock - 1) / kBlock;
    return static_cast<std::uint32_t>((blocks < 2 ? 2 : blocks) * kBlock);
}

// Moves the literal pieces of `pieces` into `entry`'s padded copies.
void keepLiterals(CompiledFormat& entry, const std::vector<Piece>& pieces)
{
    std::size_t total = 0;
    for (const Piece& piece : pieces) total += paddedLengthOf(piece.literalLength);
    entry.literals = std::make_unique<char[]>(total); // zeroed
    entry.pieces = std::make_unique<Piece[]>(pieces.size());
    char* copy = entry.literals.get();
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        std::memcpy(copy, pieces[i].literal, pieces[i].literalLength);
        const std::uint32_t padded = paddedLengthOf(pieces[i].literalLength);
        entry.pieces[i] = {copy, pieces[i].literalLength, padded, pieces[i].conversion};
        copy += padded;
    }
}

// Writes a padded literal: whole blocks when the window has room for them
// (the bytes past the literal are overwritten by what follows).
void emitLiteral(FormatWriter& out, const Piece& piece)
{
    char* at = out.reserve(piece.paddedLength);
    if (!at) {
        out.text(piece.literal, piece.literalLength);
        return;
    }
    std::memcpy(at, piece.literal, 2 * kBlock);
    for (std::size_t i = 2 * kBlock; i < piece.paddedLength; i += kBlock) std::memcpy(at + i, piece.literal + i, kBlock);
    out.commit(piece.literalLength);
}

// Out of line: it runs once per format, and the printing loop stays small.
[[gnu::noinline]] void keepFormat(CompiledFormat& entry, const char* format)
{
    std::vector<Piece> pieces;
    entry.format = format;
    entry.plain = compile(format, pieces);
    if (entry.plain) keepLiterals(entry, pieces);
}

// Open addressing by address. The tool has a few hundred formats, so the
// table never fills; if it did, the remaining formats would go the slow way.
constexpr std::size_t kSlots = 4096;
CompiledFormat slots[kSlots];

const CompiledFormat* compiledFormatOf(const char* format)
{
    std::size_t slot = (reinterpret_cast<std::uintptr_t>(format) * 0x9E3779B97F4A7C15ull) >> 52;
    for (std::size_t probe = 0; probe < kSlots; ++probe, slot = (slot + 1) % kSlots) {
        CompiledFormat& entry = slots[slot];
        if (entry.format == format) return &entry;
        if (entry.format != nullptr) continue;
        keepFormat(entry, format);
        return &entry;
    }
    return nullptr;
}

// Numbers are written straight into the output window, their length
// counted first. (Digits built in a scratch buffer and then copied in wide
// moves make the processor wait for the narrow stores to land.)
constexpr std::size_t kLongestNumber = 21; // a sign and 20 digits

// Near the end of the window: digits built apart and written in pieces.
template <unsigned Base, bool Upper, typename Value>
[[gnu::noinline]] void emitDigitsApart(FormatWriter& out, Value value, bool negative)
{
    char buffer[kLongestNumber];
    char* end = buffer + sizeof buffer;
    char* start = digitsOf(value, Base, Upper, end);
    if (negative) *--start = '-';
    out.text(start, static_cast<std::size_t>(end - start));
}

template <unsigned Base, bool Upper = false, typename Value>
void emitDigits(FormatWriter& out, Value value, bool negative = false)
{
    char* at = out.reserve(kLongestNumber);
    if (!at) return emitDigitsApart<Base, Upper>(out, value, negative);
    if (negative) *at = '-';
    const std::size_t length = digitCount<Base>(value) + negative;
    digitsOf(value, Base, Upper, at + length);
    out.commit(length);
}

template <typename Value>
void emitSignedDigits(FormatWriter& out, Value value)
{
    using Magnitude = std::make_unsigned_t<Value>;
    const Magnitude magnitude = value < 0 ? 0 - static_cast<Magnitude>(value) : static_cast<Magnitude>(value);
    emitDigits<10>(out, magnitude, value < 0);
}

} // namespace

static_assert(sizeof(std::uintmax_t) == 8, "digit buffers hold 20 decimal digits");

// The arguments are read from the caller's list directly: a copy of it
// costs more than the conversions of a short format.
int formatLiteral(FormatTarget& target, const char* format, va_list args)
{
    const CompiledFormat* compiled = compiledFormatOf(format);
    if (!compiled || !compiled->plain) return formatText(target, format, args);

    FormatWriter out(target);
    for (const Piece* piece = compiled->pieces.get();; ++piece) {
        emitLiteral(out, *piece);
        switch (piece->conversion) {
        case Conversion::None: break;
        case Conversion::Unsigned: emitDigits<10>(out, va_arg(args, unsigned)); continue;
        case Conversion::Signed: emitSignedDigits(out, va_arg(args, int)); continue;
        case Conversion::Hex: emitDigits<16>(out, va_arg(args, unsigned)); continue;
        case Conversion::HexUpper: emitDigits<16, true>(out, va_arg(args, unsigned)); continue;
        case Conversion::HexEightDigits: {
            // Shifting in a 1 above the eight digits pads them with zeros.
            char buffer[16];
            char* end = buffer + sizeof buffer;
            digitsOf((std::uint64_t{1} << 32) | va_arg(args, unsigned), 16, false, end);
            out.text(end - 8, 8);
            continue;
        }
        case Conversion::UnsignedLong: emitDigits<10>(out, va_arg(args, unsigned long long)); continue;
        case Conversion::SignedLong: emitSignedDigits(out, va_arg(args, long long)); continue;
        case Conversion::HexLong: emitDigits<16>(out, va_arg(args, unsigned long long)); continue;
        case Conversion::HexUpperLong: emitDigits<16, true>(out, va_arg(args, unsigned long long)); continue;
        case Conversion::Percent: out.text("%", 1); continue;
        case Conversion::String: {
            const char* text = va_arg(args, const char*);
            if (!text) text = "(null)";
            out.text(text, std::strlen(text));
            continue;
        }
        }
        break;
    }
    return out.total() > INT_MAX ? -1 : static_cast<int>(out.total());
}
