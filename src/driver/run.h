// The run over the input files: banner, options, the files named or
// discovered, and per file: detect, convert, summarise.
#pragma once

#include "stream/stream_file.h"

// The converters of the three streams, selected per file from its first
// header: stream id 1 is Host, 2 is Client, anything else Firmware.
struct StreamTable {
    StreamConverters firmware;
    StreamConverters host;
    StreamConverters client;
};

// The converters built into the tool.
const StreamTable& builtInStreams();

// The stream of a file by the stream id of its first header.
const StreamConverters& chooseStream(const StreamTable& streams, std::uint32_t streamId);

// The summary printed after each file: unknown packets, losses, validation
// failures and the count of packets processed.
void printSummary(const StreamFile& file);

// Runs the tool; returns the exit status (usage and help give 1).
int runTool(int argc, const char* const* argv, const StreamTable& streams);

// The output name: the input name cut at its last dot, plus ".json" or
// ".raw.json".
std::string outputNameFor(const std::string& inputName, bool rawMode);
