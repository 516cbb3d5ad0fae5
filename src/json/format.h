// printf-style formatting without the C library's stream machinery: the
// formats the tool writes (%d %i %u %x %X %o %c %s %p %%, with flags, width,
// precision and length modifiers) are formatted here; anything else (floating
// point) is handed to vsnprintf. Results are exactly the C library's.
#pragma once

#include <cstdarg>
#include <cstddef>

// Receives the formatted text piece by piece.
struct FormatSink {
    void (*append)(void* context, const char* text, std::size_t length);
    void* context;
};

// Formats into the sink; returns the length of the whole text.
int formatText(const FormatSink& sink, const char* format, va_list args);
