// The command line: modes, options and the input file name.
#pragma once

struct Options {
    bool rawMode = false;
    bool hexDump = false;
    bool timeDelta = false;
    bool verbose = false;
    const char* fileName = nullptr; // none: discover the stream files
};

enum class ParseResult { Run, Help, Usage };

ParseResult parseOptions(int argc, const char* const* argv, Options& options);

void printCapabilityReport();
void printUsage(const char* programName);
