// printf-style formatting without the C library's stream machinery: the
// formats the tool writes (%d %i %u %x %X %o %c %s %p %%, with flags, width,
// precision and length modifiers) are formatted here; anything else (floating
// point) is handed to vsnprintf. Results are exactly the C library's.
#pragma once

#include <cstdarg>
#include <cstddef>

// Where formatted text goes: the formatter fills the window [at, end) and,
// when it is full, calls refill, which must make room (flush it, say) and
// set a new, non-empty window.
struct FormatTarget {
    char* at;
    char* end;
    void (*refill)(FormatTarget& target);
    void* context;
};

// Formats into the target; returns the length of the whole text.
int formatText(FormatTarget& target, const char* format, va_list args);

// As formatText, for formats that never change while the program runs
// (string literals): each such format is taken apart once and kept by its
// address, so later calls copy its literal pieces and convert its arguments
// without reading the format again. Formats with conversions other than the
// plain ones the tool writes most go through formatText. The arguments are
// taken from `args` itself, so the caller may only end the list afterwards.
int formatLiteral(FormatTarget& target, const char* format, va_list args);
