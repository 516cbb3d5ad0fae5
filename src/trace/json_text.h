// Pieces of strictly valid JSON text: string escaping, the number test for
// unquoted values, numbers and times.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Appends `text` as a quoted JSON string. Valid escape pairs are kept, a
// lone backslash, a quote, control characters and bytes that are not UTF-8
// are escaped (a stray byte as the code point of the same value).
void appendJsonString(std::string& out, std::string_view text);

// The same into room for at least kMostJsonStringBytes(text.size()) bytes;
// returns the end of what it wrote.
char* writeJsonString(char* at, std::string_view text);
constexpr std::size_t kMostJsonStringBytes(std::size_t textLength) { return textLength * 6 + 2; }

// True when `text` is a JSON number exactly as it stands.
bool isJsonNumber(std::string_view text);

// Reads unsigned decimal digits (a quoted value's content too); false for
// anything else or a value above 2^64 - 1.
bool parseUnsigned(std::string_view text, std::uint64_t& value);

// Where the tolerant reading of the correlated text ends a quoted text (a
// quote followed by anything else is part of the text: values are written
// without escaping) and an unquoted value.
inline bool endsQuotedText(char c) { return c == ',' || c == ':' || c == '}' || c == ']' || c == '\n' || c == '\r'; }
inline bool endsBareValue(char c) { return c == ',' || c == '}' || c == ']' || c == '\n' || c == '\r'; }

// Appends unsigned decimal digits.
void appendNumber(std::string& out, std::uint64_t value);

// Appends nanoseconds as microseconds with exactly three decimals.
void appendMicroseconds(std::string& out, std::uint64_t nanoseconds);

bool isHexDigit(char c);
