#include "json/format.h"

#include "json/format_writer.h"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

struct Spec {
    bool left = false, plus = false, space = false, alternate = false, zero = false;
    int width = 0;
    int precision = -1; // none
    char length = 0;    // 'H' hh, 'h', 'l', 'L' ll, 'z', 'j', 't'
    char conversion = 0;
};

// Writes prefix, zero padding to the precision and the digits, padded to
// the width, as printf does for integer conversions.
void emitNumber(FormatWriter& out, const Spec& spec, const char* prefix, const char* digits, int digitCount)
{
    if (spec.width == 0 && spec.precision < 0 && prefix[0] == '\0') {
        out.text(digits, static_cast<std::size_t>(digitCount));
        return;
    }
    int prefixLength = static_cast<int>(std::strlen(prefix));
    int precisionZeros = spec.precision > digitCount ? spec.precision - digitCount : 0;
    int body = prefixLength + precisionZeros + digitCount;
    int pad = spec.width > body ? spec.width - body : 0;
    bool zeroPad = spec.zero && !spec.left && spec.precision < 0;
    if (!spec.left && !zeroPad) out.repeat(' ', pad);
    out.text(prefix, static_cast<std::size_t>(prefixLength));
    if (zeroPad) out.repeat('0', pad);
    out.repeat('0', precisionZeros);
    out.text(digits, static_cast<std::size_t>(digitCount));
    if (spec.left) out.repeat(' ', pad);
}

void emitUnsigned(FormatWriter& out, const Spec& spec, std::uintmax_t value)
{
    char buffer[72];
    char* end = buffer + sizeof buffer;
    unsigned base = spec.conversion == 'o' ? 8 : (spec.conversion == 'x' || spec.conversion == 'X') ? 16 : 10;
    char* start = digitsOf(value, base, spec.conversion == 'X', end);
    int count = static_cast<int>(end - start);
    if (value == 0 && spec.precision == 0) count = 0; // "%.0u" of 0 prints nothing
    const char* prefix = "";
    if (spec.alternate && value != 0 && base == 16) prefix = spec.conversion == 'X' ? "0X" : "0x";
    Spec adjusted = spec;
    if (spec.alternate && base == 8) {
        // The octal alternate form guarantees one leading zero.
        if (count == 0 || start[0] != '0') adjusted.precision = spec.precision > count + 1 ? spec.precision : count + 1;
    }
    emitNumber(out, adjusted, prefix, end - count, count);
}

void emitSigned(FormatWriter& out, const Spec& spec, std::intmax_t value)
{
    char buffer[72];
    char* end = buffer + sizeof buffer;
    std::uintmax_t magnitude = value < 0 ? 0 - static_cast<std::uintmax_t>(value) : static_cast<std::uintmax_t>(value);
    char* start = digitsOf(magnitude, 10, false, end);
    int count = static_cast<int>(end - start);
    if (magnitude == 0 && spec.precision == 0) count = 0;
    const char* prefix = value < 0 ? "-" : spec.plus ? "+" : spec.space ? " " : "";
    emitNumber(out, spec, prefix, end - count, count);
}

void emitString(FormatWriter& out, const Spec& spec, const char* text)
{
    if (!text) text = (spec.precision < 0 || spec.precision >= 6) ? "(null)" : "";
    std::size_t length = spec.precision < 0 ? std::strlen(text) : strnlen(text, static_cast<std::size_t>(spec.precision));
    int pad = spec.width > static_cast<int>(length) ? spec.width - static_cast<int>(length) : 0;
    if (!spec.left) out.repeat(' ', pad);
    out.text(text, length);
    if (spec.left) out.repeat(' ', pad);
}

std::intmax_t signedArgument(const Spec& spec, va_list& args)
{
    switch (spec.length) {
    case 'H': return static_cast<signed char>(va_arg(args, int));
    case 'h': return static_cast<short>(va_arg(args, int));
    case 'l': return va_arg(args, long);
    case 'L': return va_arg(args, long long);
    case 'z': return va_arg(args, std::ptrdiff_t); // the signed type of size_t's width
    case 'j': return va_arg(args, std::intmax_t);
    case 't': return va_arg(args, std::ptrdiff_t);
    default: return va_arg(args, int);
    }
}

std::uintmax_t unsignedArgument(const Spec& spec, va_list& args)
{
    switch (spec.length) {
    case 'H': return static_cast<unsigned char>(va_arg(args, unsigned));
    case 'h': return static_cast<unsigned short>(va_arg(args, unsigned));
    case 'l': return va_arg(args, unsigned long);
    case 'L': return va_arg(args, unsigned long long);
    case 'z': return va_arg(args, std::size_t);
    case 'j': return va_arg(args, std::uintmax_t);
    case 't': return static_cast<std::uintmax_t>(va_arg(args, std::ptrdiff_t));
    default: return va_arg(args, unsigned);
    }
}

// Formats one floating-point conversion through the C library.
void emitFloating(FormatWriter& out, const char* specStart, const char* specEnd, va_list& args)
{
    char format[32];
    std::size_t length = static_cast<std::size_t>(specEnd - specStart);
    if (length >= sizeof format) return;
    std::memcpy(format, specStart, length);
    format[length] = '\0';
    char text[512];
    int written = std::snprintf(text, sizeof text, format, va_arg(args, double));
    if (written > 0) out.text(text, std::strlen(text));
}

// The conversions the tool writes most, without flags, width or precision:
// %u, %d, %s, %x, %llu and %lu. Returns false for anything else.
bool emitPlain(FormatWriter& out, const char*& at, va_list& args)
{
    char buffer[24];
    char* end = buffer + sizeof buffer;
    switch (at[0]) {
    case 'u': {
        char* start = digitsOf(va_arg(args, unsigned), 10, false, end);
        out.text(start, static_cast<std::size_t>(end - start));
        at += 1;
        return true;
    }
    case 'x': {
        char* start = digitsOf(va_arg(args, unsigned), 16, false, end);
        out.text(start, static_cast<std::size_t>(end - start));
        at += 1;
        return true;
    }
    case 'd': {
        int value = va_arg(args, int);
        std::uintmax_t magnitude = value < 0 ? 0 - static_cast<std::uintmax_t>(value) : static_cast<std::uintmax_t>(value);
        char* start = digitsOf(magnitude, 10, false, end);
        if (value < 0) *--start = '-';
        out.text(start, static_cast<std::size_t>(end - start));
        at += 1;
        return true;
    }
    case 's': {
        const char* text = va_arg(args, const char*);
        if (!text) text = "(null)";
        out.text(text, std::strlen(text));
        at += 1;
        return true;
    }
    case 'l': {
        bool twice = at[1] == 'l';
        if (at[twice ? 2 : 1] != 'u') return false;
        std::uintmax_t value = twice ? va_arg(args, unsigned long long) : va_arg(args, unsigned long);
        char* start = digitsOf(value, 10, false, end);
        out.text(start, static_cast<std::size_t>(end - start));
        at += twice ? 3 : 2;
        return true;
    }
    default: return false;
    }
}

} // namespace

int formatText(FormatTarget& target, const char* format, va_list incoming)
{
    va_list args;
    va_copy(args, incoming);
    FormatWriter out(target);
    const char* at = format;
    while (*at) {
        const char* percent = std::strchr(at, '%');
        if (!percent) {
            out.text(at, std::strlen(at));
            break;
        }
        out.text(at, static_cast<std::size_t>(percent - at));
        const char* specStart = percent;
        at = percent + 1;
        if (emitPlain(out, at, args)) continue;

        Spec spec;
        for (;; ++at) {
            if (*at == '-') spec.left = true;
            else if (*at == '+') spec.plus = true;
            else if (*at == ' ') spec.space = true;
            else if (*at == '#') spec.alternate = true;
            else if (*at == '0') spec.zero = true;
            else break;
        }
        if (*at == '*') {
            spec.width = va_arg(args, int);
            if (spec.width < 0) {
                spec.left = true;
                spec.width = -spec.width;
            }
            ++at;
        } else {
            while (*at >= '0' && *at <= '9') spec.width = spec.width * 10 + (*at++ - '0');
        }
        if (*at == '.') {
            ++at;
            spec.precision = 0;
            if (*at == '*') {
                spec.precision = va_arg(args, int);
                if (spec.precision < 0) spec.precision = -1;
                ++at;
            } else {
                while (*at >= '0' && *at <= '9') spec.precision = spec.precision * 10 + (*at++ - '0');
            }
        }
        if (at[0] == 'h' && at[1] == 'h') spec.length = 'H', at += 2;
        else if (at[0] == 'l' && at[1] == 'l') spec.length = 'L', at += 2;
        else if (*at == 'h' || *at == 'l' || *at == 'z' || *at == 'j' || *at == 't' || *at == 'L') spec.length = *at++;
        spec.conversion = *at;
        if (*at) ++at;

        switch (spec.conversion) {
        case 'd':
        case 'i': emitSigned(out, spec, signedArgument(spec, args)); break;
        case 'u':
        case 'x':
        case 'X':
        case 'o': emitUnsigned(out, spec, unsignedArgument(spec, args)); break;
        case 'c': {
            char c = static_cast<char>(va_arg(args, int));
            int pad = spec.width > 1 ? spec.width - 1 : 0;
            if (!spec.left) out.repeat(' ', pad);
            out.text(&c, 1);
            if (spec.left) out.repeat(' ', pad);
            break;
        }
        case 's': emitString(out, spec, va_arg(args, const char*)); break;
        case 'p': {
            const void* pointer = va_arg(args, const void*);
            if (!pointer) {
                Spec text = spec;
                text.precision = -1;
                emitString(out, text, "(nil)");
            } else {
                Spec hex = spec;
                hex.conversion = 'x';
                hex.alternate = true;
                emitUnsigned(out, hex, reinterpret_cast<std::uintptr_t>(pointer));
            }
            break;
        }
        case '%': out.text("%", 1); break;
        case 'f':
        case 'F':
        case 'e':
        case 'E':
        case 'g':
        case 'G':
        case 'a':
        case 'A': emitFloating(out, specStart, at, args); break;
        default: out.text(specStart, static_cast<std::size_t>(at - specStart)); break;
        }
    }
    va_end(args);
    return out.total() > INT_MAX ? -1 : static_cast<int>(out.total());
}
