// The trace file: {"traceEvents": [...], "metadata": {...}}, written as a
// stream through an Output. Each element of the correlated text becomes one
// event on the thread of its kind; counters and flows are added where the
// element carries their values.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "json/output.h"
#include "trace/element.h"
#include "trace/flows.h"
#include "trace/threads.h"

constexpr const char* kTraceToolName = "zyntelbin2trace";
constexpr const char* kTraceToolVersion = "1.0";

// What the metadata tells of one input file.
struct TraceInput {
    std::string name;
    const char* streamName = ""; // "Firmware", "Host" or "Client"
    std::uint32_t packetsRead = 0;
    std::uint32_t packetsConverted = 0;
    std::uint32_t warnings = 0;
};

struct TraceExport {
    Output* out = nullptr;
    bool anyEvent = false;
    std::deque<ProcessThreads> processes;
    RecentFlowEnds clientEnqueues; // by PID and job reference
    RecentFlowEnds hostEnqueues;   // by internal job reference
    std::uint64_t nextFlowId = 1;
    std::uint64_t nextAsyncId = 1;
    std::string event; // the event being built
};

void startTrace(TraceExport& trace, Output& out);

// A process for one input file, named after its stream and the file.
ProcessThreads& addProcess(TraceExport& trace, int pid, StreamKind stream, const std::string& fileName);

void exportElement(TraceExport& trace, ProcessThreads& process, const Element& element);

// Closes the events and writes the metadata.
void finishTrace(TraceExport& trace, const std::vector<TraceInput>& inputs);
