// Eight bytes of text at a time: the text's scanners look for the few bytes
// that matter (quotes, backslashes, control bytes, the end of indentation)
// a word at a time and pass over the bytes between them in one step.
//
// A mark is the high bit of a byte. In each test below the lowest marked
// byte is exact; bytes above it may be marked falsely (a borrow runs up),
// so only firstMarked() is ever asked.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

constexpr std::uint64_t kEveryByte = 0x0101010101010101;
constexpr std::uint64_t kHighBits = 0x8080808080808080;

// The first byte of the text is the word's lowest byte, whatever the
// machine's byte order, so that borrows run towards later bytes.
inline std::uint64_t loadWord(const char* at)
{
    std::uint64_t word;
    std::memcpy(&word, at, 8);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
    return word;
}

// Marks bytes below `limit` (limit at most 0x80).
constexpr std::uint64_t markBelow(std::uint64_t word, unsigned char limit)
{
    return (word - kEveryByte * limit) & ~word & kHighBits;
}

constexpr std::uint64_t markEqual(std::uint64_t word, unsigned char byte)
{
    return markBelow(word ^ (kEveryByte * byte), 1);
}

// Marks bytes other than `byte`, every one of them exactly.
constexpr std::uint64_t markOther(std::uint64_t word, unsigned char byte)
{
    std::uint64_t differ = word ^ (kEveryByte * byte);
    return (((differ & ~kHighBits) + ~kHighBits) | differ) & kHighBits;
}

// Marks bytes from 0x80 up.
constexpr std::uint64_t markHigh(std::uint64_t word) { return word & kHighBits; }

// Marks the bytes a JSON string cannot hold as they stand, or that this
// program writes otherwise: '"', '\\', control bytes, DEL and all bytes
// from 0x80 up.
constexpr std::uint64_t markNotPlain(std::uint64_t word)
{
    return markEqual(word, '"') | markEqual(word, '\\') | markBelow(word, 0x20) | markEqual(word, 0x7F) |
           markHigh(word);
}

// The index (0 to 7) of the first byte in text order that is marked, or 8.
inline std::size_t firstMarked(std::uint64_t marks)
{
    return static_cast<std::size_t>(std::countr_zero(marks)) / 8;
}

// The index of the first byte from `at` that is not white space (' ',
// '\t', '\r', '\n'; ',' too when `commas`), or the text's size: runs of
// spaces a word at a time, other bytes one by one.
inline std::size_t afterBlanks(std::string_view text, std::size_t at, bool commas)
{
    for (;;) {
        while (at + 8 <= text.size()) {
            std::size_t spaces = firstMarked(markOther(loadWord(text.data() + at), ' '));
            at += spaces;
            if (spaces < 8) break;
        }
        if (at >= text.size()) return at;
        char c = text[at];
        if (c != ' ' && c != '\n' && c != '\t' && c != '\r' && !(commas && c == ',')) return at;
        ++at;
    }
}

// True when text[at] is a line break followed by `indent` spaces and a
// quote: the next member of an object, one per line at one indentation.
inline bool startsIndentedName(std::string_view text, std::size_t at, std::size_t indent)
{
    std::size_t quote = at + 1 + indent;
    if (quote >= text.size() || text[at] != '\n' || text[quote] != '"') return false;
    for (std::size_t i = at + 1; i < quote; i += 8) {
        std::size_t count = quote - i < 8 ? quote - i : 8;
        if (i + 8 > text.size()) return text.substr(i, count).find_first_not_of(' ') == std::string_view::npos;
        std::uint64_t mask = count == 8 ? ~std::uint64_t{0} : (std::uint64_t{1} << (8 * count)) - 1;
        if ((loadWord(text.data() + i) ^ (kEveryByte * ' ')) & mask) return false;
    }
    return true;
}
