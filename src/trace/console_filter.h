// The converters' console lines on their way to the console: progress and
// information lines are left out (the trace tool prints its own), the
// damage reports are counted and shown.
#pragma once

#include <cstdint>
#include <string_view>

#include "json/output.h"
#include "trace/line_cutter.h"

struct ConsoleFilter {
    Output* shown = nullptr;
    LineCutter lines;
    std::uint32_t warnings = 0; // lines that begin with "warning" or "error"
    Output input;               // what console() is redirected to
};

// Sets up the filter in front of `shown` and redirects the console to it.
void startConsoleFilter(ConsoleFilter& filter, Output& shown);

// Passes on what the converters wrote since the last call.
void flushConsoleFilter(ConsoleFilter& filter);

// Ends the redirection.
void stopConsoleFilter(ConsoleFilter& filter);
