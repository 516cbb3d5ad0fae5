// Cuts text that arrives in blocks of any size into lines.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

struct LineCutter {
    using LineHandler = void (*)(void* context, std::string_view line);

    LineHandler onLine = nullptr;
    void* context = nullptr;
    std::string partial; // the start of a line whose end has not arrived
};

// Hands every complete line of the block to the handler, without its line
// feed. A line longer than 1 MiB is handed over in pieces of that size.
void cutLines(LineCutter& cutter, const char* text, std::size_t length);

// Hands over what is left after the last line feed, if anything.
void finishLines(LineCutter& cutter);
