// The command line of zyntelbin2trace and the input files it names or,
// when it names none, the stream files of the current directory.
#pragma once

#include <string>
#include <vector>

constexpr const char* kTraceUsage = "Usage: zyntelbin2trace [-o OUT] [-q] [FILE...]\n";

struct TraceOptions {
    const char* outputName = "zyntel_trace.json";
    bool quiet = false;
    std::vector<std::string> inputs;
};

enum class Parsed { Run, Exit, Usage };

// --help and --version print their text and give Exit; an error prints its
// line on standard error and gives Usage.
Parsed parseTraceOptions(int argc, const char* const* argv, TraceOptions& options);

