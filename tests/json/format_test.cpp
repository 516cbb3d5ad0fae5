// The output layer formats without the C library, so every conversion it
// handles is compared with the C library's own result.
#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstdint>
#include <string>

#include "json/output.h"

#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wformat-truncation"

namespace {

template <typename... Args>
std::string ours(const char* format, Args... args)
{
    std::string text;
    Output out;
    out.attachString(&text);
    int length = out.print(format, args...);
    EXPECT_EQ(length, static_cast<int>(text.size())) << format;
    return text;
}

template <typename... Args>
std::string library(const char* format, Args... args)
{
    char text[1024];
    int length = std::snprintf(text, sizeof text, format, args...);
    return std::string(text, static_cast<std::size_t>(length));
}

TEST(Format, IntegerConversionsMatchTheCLibrary)
{
    const char* signedFormats[] = {"%d", "%i", "%5d", "%-5d|", "%05d", "%+d", "% d", "%.3d", "%8.3d", "%-8.3d|",
                                   "%08.3d", "%.0d", "%x", "%X", "%#x", "%#X", "%08x", "%#010x", "%-4x|", "%o",
                                   "%#o", "%#.0o", "%u", "%3u", "%c", "%3c", "%-3c|", "%%"};
    const int values[] = {0, 1, -1, 7, 42, -42, 255, 4096, INT_MAX, INT_MIN};
    for (const char* format : signedFormats)
        for (int value : values) EXPECT_EQ(ours(format, value), library(format, value)) << format << " " << value;

    const char* longFormats[] = {"%ld", "%lu", "%lx", "%#lx", "%llu", "%lld", "%llx", "%zu", "%20llu", "%-20lld|"};
    const long long wide[] = {0, 1, -1, LLONG_MAX, LLONG_MIN, 0x123456789abcdefLL};
    for (const char* format : longFormats)
        for (long long value : wide) EXPECT_EQ(ours(format, value), library(format, value)) << format << " " << value;

    // Every digit count, on both sides of each power of ten and of the
    // 32-bit boundary where the wide conversions change arithmetic.
    unsigned long long power = 1;
    for (int digits = 1; digits <= 20; ++digits, power *= 10) {
        for (unsigned long long value : {power - 1, power, power + 1, power * 3 + 7}) {
            EXPECT_EQ(ours("[%llu|%lld]", value, -static_cast<long long>(value)),
                      library("[%llu|%lld]", value, -static_cast<long long>(value)));
            EXPECT_EQ(ours("[%u|%d]", static_cast<unsigned>(value), static_cast<int>(value)),
                      library("[%u|%d]", static_cast<unsigned>(value), static_cast<int>(value)));
        }
        if (power > ULLONG_MAX / 10) break;
    }
    for (unsigned long long value : {0xFFFFFFFFull, 0x100000000ull, ULLONG_MAX, ULLONG_MAX - 1})
        EXPECT_EQ(ours("%lu", value), library("%lu", value));

    // A format is taken apart once and reused: the second use must convert
    // its own arguments.
    for (unsigned long long value : {0x1ABCull, 77ull})
        EXPECT_EQ(ours("  \"Target%u\": \"0x%llX\",%s|%d%%%lu%x%X%lld%08x\n", 3u, value, "s", -9, 10ul, 255u, 255u, -5ll, 0xA7u),
                  library("  \"Target%u\": \"0x%llX\",%s|%d%%%lu%x%X%lld%08x\n", 3u, value, "s", -9, 10ul, 255u, 255u,
                          -5ll, 0xA7u));
    EXPECT_EQ(ours("%hhu %hu %hhd %hd", 0x1FF, 0x1FFFF, 0xFF, 0xFFFF), library("%hhu %hu %hhd %hd", 0x1FF, 0x1FFFF, 0xFF, 0xFFFF));
    EXPECT_EQ(ours("%*d|%-*d|%.*d", 6, 5, 6, 5, 4, 5), library("%*d|%-*d|%.*d", 6, 5, 6, 5, 4, 5));
}

TEST(Format, StringsPointersAndFloatsMatchTheCLibrary)
{
    const char* formats[] = {"%s", "%10s|", "%-10s|", "%.2s", "%5.1s|", "\"%s\": %s,\n"};
    for (const char* format : formats) EXPECT_EQ(ours(format, "text", "more"), library(format, "text", "more")) << format;
    // Texts of every length up to past the short-copy sizes.
    const std::string letters = "abcdefghijklmnopqrstuvwxyz";
    for (std::size_t length = 0; length <= letters.size(); ++length) {
        const std::string text = letters.substr(0, length);
        EXPECT_EQ(ours("<%s>", text.c_str()), "<" + text + ">");
    }
    const char* none = nullptr;
    EXPECT_EQ(ours("%s", none), "(null)");
    EXPECT_EQ(ours("%.3s|", none), library("%.3s|", none));
    int object = 0;
    EXPECT_EQ(ours("%p", static_cast<void*>(&object)), library("%p", static_cast<void*>(&object)));
    EXPECT_EQ(ours("%p", static_cast<void*>(nullptr)), "(nil)");
    EXPECT_EQ(ours("%.2f %e %g", 3.14159, 1e10, 0.5), library("%.2f %e %g", 3.14159, 1e10, 0.5));
}

TEST(Format, BoundedFormattingCutsLikeSnprintf)
{
    char ours[8];
    char theirs[8];
    int ourLength = formatBounded(ours, sizeof ours, "%s-%u", "abcdef", 1234u);
    int theirLength = std::snprintf(theirs, sizeof theirs, "%s-%u", "abcdef", 1234u);
    EXPECT_EQ(ourLength, theirLength);
    EXPECT_STREQ(ours, theirs);
    EXPECT_EQ(formatBounded(ours, 1, "%d", 5), 1);
    EXPECT_STREQ(ours, "");
}

TEST(Format, NumbersNearTheEndOfTheWindowMatchTheCLibrary)
{
    // A text of every length up to past the output's formatting window
    // (512 bytes) puts the numbers after it at every distance from its end.
    for (std::size_t length = 400; length <= 600; ++length) {
        const std::string padding(length, '.');
        for (long long value : {-1234567LL, -9LL, 0LL, 4294967295LL, -1099511627775LL}) {
            const char* format = "%s%d|%lld|%u|%x|%llu\n";
            const int narrow = static_cast<int>(value);
            EXPECT_EQ(ours(format, padding.c_str(), narrow, value, static_cast<unsigned>(value),
                           static_cast<unsigned>(value), static_cast<unsigned long long>(value)),
                      library(format, padding.c_str(), narrow, value, static_cast<unsigned>(value),
                              static_cast<unsigned>(value), static_cast<unsigned long long>(value)))
                << length;
        }
    }
}

TEST(Format, LongTextsPassThroughTheBufferWhole)
{
    std::string big(200000, 'x');
    EXPECT_EQ(ours("[%s]", big.c_str()), "[" + big + "]");
}

} // namespace
