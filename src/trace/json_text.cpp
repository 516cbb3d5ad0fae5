#include "trace/json_text.h"

#include <cstring>

#include "trace/byte_words.h"

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

char* writeEscapedByte(char* at, unsigned char byte)
{
    std::memcpy(at, "\\u00", 4);
    at[4] = kHexDigits[byte >> 4];
    at[5] = kHexDigits[byte & 15];
    return at + 6;
}

// Length of the well-formed UTF-8 sequence at `at`, or 0.
std::size_t utf8Length(std::string_view text, std::size_t at)
{
    auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    unsigned char lead = byte(at);
    std::size_t length = lead >= 0xF0 && lead <= 0xF4 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 && lead < 0xE0 ? 2 : 0;
    if (length == 0 || lead > 0xF4 || at + length > text.size()) return 0;
    unsigned char second = byte(at + 1);
    // Overlong forms, surrogates and values above U+10FFFF.
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) || (lead == 0xF0 && second < 0x90) ||
        (lead == 0xF4 && second > 0x8F))
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(at + i) & 0xC0) != 0x80) return 0;
    return length;
}

} // namespace

namespace {

// Characters written as they stand.
bool isPlain(unsigned char c) { return c >= 0x20 && c < 0x7F && c != '"' && c != '\\'; }

} // namespace

char* writeJsonString(char* at, std::string_view text)
{
    *at++ = '"';
    const std::size_t size = text.size();
    for (std::size_t i = 0; i < size; ++i) {
        // Plain runs are copied a word at a time (the room always has the
        // word's eight bytes to spare).
        while (i + 8 <= size) {
            std::size_t plain = firstMarked(markNotPlain(loadWord(text.data() + i)));
            std::memcpy(at, text.data() + i, 8);
            at += plain;
            i += plain;
            if (plain < 8) break;
        }
        if (i >= size) break;
        auto byte = static_cast<unsigned char>(text[i]);
        if (isPlain(byte)) {
            *at++ = static_cast<char>(byte);
            continue;
        }
        if (byte == '\\') {
            char next = i + 1 < size ? text[i + 1] : '\0';
            bool pair = next == '"' || next == '\\' || next == '/' || next == 'b' || next == 'f' || next == 'n' ||
                        next == 'r' || next == 't';
            bool unicode = next == 'u' && i + 5 < size && isHexDigit(text[i + 2]) && isHexDigit(text[i + 3]) &&
                           isHexDigit(text[i + 4]) && isHexDigit(text[i + 5]);
            std::size_t kept = unicode ? 6 : pair ? 2 : 0;
            if (kept) {
                std::memcpy(at, text.data() + i, kept);
                at += kept;
                i += kept - 1;
            } else {
                *at++ = '\\';
                *at++ = '\\';
            }
        } else if (byte == '"') {
            *at++ = '\\';
            *at++ = '"';
        } else if (byte < 0x80) {
            at = writeEscapedByte(at, byte);
        } else if (std::size_t length = utf8Length(text, i)) {
            std::memcpy(at, text.data() + i, length);
            at += length;
            i += length - 1;
        } else {
            at = writeEscapedByte(at, byte);
        }
    }
    *at++ = '"';
    return at;
}

void appendJsonString(std::string& out, std::string_view text)
{
    std::size_t start = out.size();
    out.resize(start + kMostJsonStringBytes(text.size()));
    char* end = writeJsonString(out.data() + start, text);
    out.resize(static_cast<std::size_t>(end - out.data()));
}

bool isJsonNumber(std::string_view text)
{
    std::size_t i = 0, n = text.size();
    auto digits = [&] {
        std::size_t from = i;
        while (i < n && text[i] >= '0' && text[i] <= '9') ++i;
        return i > from;
    };
    if (i < n && text[i] == '-') ++i;
    if (i < n && text[i] == '0') {
        ++i;
    } else if (!digits()) {
        return false;
    }
    if (i < n && text[i] == '.') {
        ++i;
        if (!digits()) return false;
    }
    if (i < n && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        if (i < n && (text[i] == '+' || text[i] == '-')) ++i;
        if (!digits()) return false;
    }
    return i == n;
}

bool parseUnsigned(std::string_view text, std::uint64_t& value)
{
    if (text.empty() || text.size() > 20) return false;
    std::uint64_t result = 0;
    for (char c : text.substr(0, 19)) { // nineteen digits always fit
        if (c < '0' || c > '9') return false;
        result = result * 10 + static_cast<std::uint64_t>(c - '0');
    }
    if (text.size() == 20) {
        char c = text[19];
        if (c < '0' || c > '9') return false;
        std::uint64_t digit = static_cast<std::uint64_t>(c - '0');
        if (result > (UINT64_MAX - digit) / 10) return false;
        result = result * 10 + digit;
    }
    value = result;
    return true;
}

void appendNumber(std::string& out, std::uint64_t value)
{
    char digits[20];
    char* first = digits + sizeof digits;
    do {
        *--first = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    out.append(first, static_cast<std::size_t>(digits + sizeof digits - first));
}

void appendMicroseconds(std::string& out, std::uint64_t nanoseconds)
{
    appendNumber(out, nanoseconds / 1000);
    std::uint64_t fraction = nanoseconds % 1000;
    const char decimals[4] = {'.', static_cast<char>('0' + fraction / 100), static_cast<char>('0' + fraction / 10 % 10),
                              static_cast<char>('0' + fraction % 10)};
    out.append(decimals, 4);
}

bool isHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
