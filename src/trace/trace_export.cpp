#include "trace/trace_export.h"

#include <cstring>

#include "json/document.h"
#include "trace/json_text.h"

namespace {

struct StreamLabel {
    const char* processPrefix;
    int sortIndex;
};

StreamLabel labelOf(StreamKind stream)
{
    switch (stream) {
    case StreamKind::Firmware: return {"GPU firmware: ", 0};
    case StreamKind::Host: return {"Kernel driver: ", 1};
    case StreamKind::Client: return {"API drivers: ", 2};
    }
    return {"", 3};
}

// Values plotted as counters: the element, the value and the counter's name
// and unit (the unit names the counter's series).
struct CounterRule {
    StreamKind stream;
    std::string_view elementName;
    PropKey value;
    const char* counter;
    const char* unit;
};

const CounterRule kCounterRules[] = {
    {StreamKind::Firmware, "CLKCHG", kSpeed, "GPU clock speed", "Hz"},
    {StreamKind::Host, "CLK_SYNC", kSpeed, "GPU clock speed", "Hz"},
    {StreamKind::Firmware, "DVFS", kFrequency, "DVFS frequency", "Hz"},
    {StreamKind::Firmware, "Proactive DVFS", kFrequency, "DVFS frequency", "Hz"},
    {StreamKind::Firmware, "DVFS", kUtilisation, "GPU utilisation", "%"},
    {StreamKind::Host, "HOST_INFO", kTotalMemory, "Total memory usage", "bytes"},
};

// Firmware hardware work, the targets of flows from the host's enqueues.
constexpr std::string_view kHardwareWork[] = {"2D", "TA", "3D", "CDM", "RTU", "SHG", "TDM", "GP"};

bool isHardwareWork(std::string_view name)
{
    for (std::string_view work : kHardwareWork)
        if (name == work) return true;
    return false;
}

// Every event goes through here: separators between events, one per line.
// The event is trace.event followed by `rest`.
void writeEvent(TraceExport& trace, std::string_view rest = {})
{
    trace.out->write(trace.anyEvent ? ",\n" : "\n");
    trace.out->write(trace.event);
    if (!rest.empty()) trace.out->write(rest);
    trace.anyEvent = true;
}

// Starts an event: {"name":...,"ph":"<phase>","pid":<pid>
void beginEvent(TraceExport& trace, std::string_view name, const char* phase, int pid)
{
    std::string& e = trace.event;
    e.assign("{\"name\":");
    appendJsonString(e, name);
    e += ",\"ph\":\"";
    e += phase;
    e += "\",\"pid\":";
    appendNumber(e, static_cast<std::uint64_t>(pid));
}

void addTid(std::string& e, int tid)
{
    e += ",\"tid\":";
    appendNumber(e, static_cast<std::uint64_t>(tid));
}

void addTime(std::string& e, const char* key, std::uint64_t nanoseconds)
{
    e += ",\"";
    e += key;
    e += "\":";
    appendMicroseconds(e, nanoseconds);
}

void writeMetadataEvent(TraceExport& trace, const char* name, int pid, int tid, const char* key,
                        std::string_view text, bool quoted)
{
    beginEvent(trace, name, "M", pid);
    if (tid > 0) addTid(trace.event, tid);
    trace.event += ",\"args\":{\"";
    trace.event += key;
    trace.event += "\":";
    if (quoted)
        appendJsonString(trace.event, text);
    else
        trace.event += text;
    trace.event += "}}";
    writeEvent(trace);
}

void nameThread(TraceExport& trace, const ProcessThreads& process, const TraceThread& thread)
{
    writeMetadataEvent(trace, "thread_name", process.pid, thread.tid, "name", thread.name, true);
    writeMetadataEvent(trace, "thread_sort_index", process.pid, thread.tid, "sort_index",
                       std::to_string(thread.tid), false);
}

void writeFlow(TraceExport& trace, const FlowEnd& from, const FlowEnd& to)
{
    std::uint64_t id = trace.nextFlowId++;
    for (const FlowEnd* end : {&from, &to}) {
        beginEvent(trace, "job", end == &from ? "s" : "f", end->pid);
        std::string& e = trace.event;
        if (end == &to) e += ",\"bp\":\"e\"";
        e += ",\"cat\":\"job\",\"id\":";
        appendNumber(e, id);
        addTid(e, end->tid);
        addTime(e, "ts", end->time);
        e += '}';
        writeEvent(trace);
    }
}

void writeCounters(TraceExport& trace, const ProcessThreads& process, const Element& element)
{
    for (const CounterRule& rule : kCounterRules) {
        if (rule.stream != process.stream || element.name != rule.elementName || !element.has(rule.value)) continue;
        std::uint64_t value;
        if (!parseUnsigned(element.props[rule.value], value)) continue;
        beginEvent(trace, rule.counter, "C", process.pid);
        std::string& e = trace.event;
        addTime(e, "ts", element.end);
        e += ",\"args\":{\"";
        e += rule.unit;
        e += "\":";
        appendNumber(e, value);
        e += "}}";
        writeEvent(trace);
    }
}

// Client enqueue -> host enqueue (same PID and external job reference) ->
// firmware hardware work (same internal job reference).
void linkWork(TraceExport& trace, const ProcessThreads& process, const Element& element, const FlowEnd& here)
{
    std::uint32_t pid, reference;
    if (process.stream == StreamKind::Client && element.name == "ENQ_CLIENT") {
        if (parseReference(element.props[kPid], pid) && parseReference(element.props[kJobRef], reference))
            remember(trace.clientEnqueues, std::uint64_t{pid} << 32 | reference, here);
    } else if (process.stream == StreamKind::Host && element.name == "ENQ") {
        if (parseReference(element.props[kPid], pid) && parseReference(element.props[kExtJobRef], reference))
            if (const FlowEnd* client = find(trace.clientEnqueues, std::uint64_t{pid} << 32 | reference))
                writeFlow(trace, *client, here);
        if (parseReference(element.props[kIntJobRef], reference)) remember(trace.hostEnqueues, reference, here);
    } else if (process.stream == StreamKind::Firmware && isHardwareWork(element.name)) {
        if (parseReference(element.props[kIntJobRef], reference))
            if (const FlowEnd* host = find(trace.hostEnqueues, reference)) writeFlow(trace, *host, here);
    }
}

// A period no thread of its kind can take without breaking the nesting is
// written as an async slice of the process instead.
void writeAsync(TraceExport& trace, const ProcessThreads& process, const char* kind, const Element& element)
{
    std::uint64_t id = trace.nextAsyncId++;
    for (const char* phase : {"b", "e"}) {
        beginEvent(trace, element.name, phase, process.pid);
        std::string& e = trace.event;
        e += ",\"cat\":";
        appendJsonString(e, kind);
        e += ",\"id\":";
        appendNumber(e, id);
        addTime(e, "ts", *phase == 'b' ? element.start : element.end);
        if (*phase == 'b') {
            e += ",\"args\":";
            e += element.args;
        }
        e += '}';
        writeEvent(trace);
    }
}

} // namespace

void startTrace(TraceExport& trace, Output& out)
{
    trace.out = &out;
    out.write("{\"traceEvents\": [");
}

ProcessThreads& addProcess(TraceExport& trace, int pid, StreamKind stream, const std::string& fileName)
{
    ProcessThreads& process = trace.processes.emplace_back();
    process.pid = pid;
    process.stream = stream;
    StreamLabel label = labelOf(stream);
    process.name = label.processPrefix + fileName;
    writeMetadataEvent(trace, "process_name", pid, 0, "name", process.name, true);
    writeMetadataEvent(trace, "process_sort_index", pid, 0, "sort_index",
                       std::to_string(label.sortIndex * 1000 + pid), false);
    return process;
}

void exportElement(TraceExport& trace, ProcessThreads& process, const Element& element)
{
    if (!element.hasStart || !element.hasEnd || element.name.data() == nullptr) return;
    // A period that ends before it starts is shown as a point at its start.
    std::uint64_t end = element.end < element.start ? element.start : element.end;
    const char* kind = threadKindOf(process.stream, element);
    bool created;
    TraceThread* thread = placeEvent(process, kind, element.start, end, created);
    if (!thread) {
        writeAsync(trace, process, kind, element);
    } else {
        if (created) nameThread(trace, process, *thread);
        bool point = element.start == end;
        beginEvent(trace, element.name, point ? "i" : "X", process.pid);
        std::string& e = trace.event;
        addTid(e, thread->tid);
        addTime(e, "ts", element.start);
        if (point)
            e += ",\"s\":\"t\"";
        else
            addTime(e, "dur", end - element.start);
        e += ",\"args\":";
        writeEvent(trace, element.args);
        trace.out->write("}");
        linkWork(trace, process, element, FlowEnd{element.start, process.pid, thread->tid});
    }
    writeCounters(trace, process, element);

    if (!process.anyTime || element.start < process.firstTime) process.firstTime = element.start;
    if (!process.anyTime || end > process.lastTime) process.lastTime = end;
    process.anyTime = true;
}

void finishTrace(TraceExport& trace, const std::vector<TraceInput>& inputs)
{
    std::string& m = trace.event;
    m.assign("\n],\n\"metadata\": {\"tool\":");
    appendJsonString(m, kTraceToolName);
    m += ",\"version\":";
    appendJsonString(m, kTraceToolVersion);
    m += ",\"converter version\":";
    appendNumber(m, kToolVersion);
    m += ",\"inputs\":[";
    for (const TraceInput& input : inputs) {
        if (&input != &inputs.front()) m += ',';
        m += "\n{\"file\":";
        appendJsonString(m, input.name);
        m += ",\"stream\":";
        appendJsonString(m, input.streamName);
        m += ",\"packets read\":";
        appendNumber(m, input.packetsRead);
        m += ",\"packets converted\":";
        appendNumber(m, input.packetsConverted);
        m += ",\"warnings\":";
        appendNumber(m, input.warnings);
        m += '}';
    }
    m += "]}}\n";
    trace.out->write(m);
}
