#include "trace/trace_run.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "driver/discovery.h"
#include "driver/run.h"
#include "json/document.h"
#include "json/output.h"
#include "stream/header.h"
#include "stream/reader.h"
#include "stream/stream_file.h"
#include "trace/element_stream.h"
#include "trace/console_filter.h"
#include "trace/trace_export.h"
#include "trace/trace_options.h"

namespace {

// An input file as found before the conversion.
struct Input {
    std::string name;
    int pid = 0;
    std::uint32_t streamId = 0;
    StreamKind stream = StreamKind::Firmware;
};

// Reads the first header; the reason is set when the file is no capture.
bool inspectInput(Input& input, std::string& reason)
{
    struct stat status;
    if (::stat(input.name.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
        reason = "is a directory";
        return false;
    }
    auto file = std::make_unique<StreamFile>();
    if (!file->in.open(input.name.c_str())) {
        reason = std::strerror(errno);
        return false;
    }
    PacketHeader header;
    std::int64_t position = 0;
    std::int32_t result = readHeader(*file, header, position);
    if (result <= 0 || result == kCorruptHeader) {
        reason = result < 0 ? "empty or unreadable" : "no valid first header, not a capture";
        return false;
    }
    input.streamId = header.signature() == ZYNTEL_PACKET_V2B_SIG ? header.streamId() : 0;
    input.stream = input.streamId == 1 ? StreamKind::Host : input.streamId == 2 ? StreamKind::Client
                                                                               : StreamKind::Firmware;
    return true;
}

struct ElementTarget {
    TraceExport* trace;
    ProcessThreads* process;
    std::uint64_t events = 0;
};

void onElement(void* context, const Element& element)
{
    auto& target = *static_cast<ElementTarget*>(context);
    exportElement(*target.trace, *target.process, element);
    ++target.events;
}

// Runs the file through the reader and the correlated converter of its
// stream, the converter writing into the element stream.
TraceInput convertInput(const Input& input, TraceExport& trace, ConsoleFilter& filter, const TraceOptions& options)
{
    auto file = std::make_unique<StreamFile>();
    file->binPath = input.name;
    const StreamConverters& stream = chooseStream(builtInStreams(), input.streamId);
    file->streamName = stream.streamName;
    file->progressInterval = stream.progressInterval;
    file->correlatedConverter = stream.correlatedConverter;
    file->rawConverter = stream.rawConverter;

    ElementTarget target{&trace, &addProcess(trace, input.pid, input.stream, input.name)};
    auto elements = std::make_unique<ElementStream>();
    startElementStream(*elements, onElement, &target, elementHelpersForThisMachine());
    filter.warnings = 0;
    if (file->in.open(input.name.c_str())) {
        if (stream.beginFile) stream.beginFile();
        file->out.attachSink(writeToElementStream, elements.get());
        readPackets(*file, input.streamId);
        file->out.close();
        finishElementStream(*elements);
        printSummary(*file);
    } else {
        console().print("error: %s could not be opened again: %s\n", input.name.c_str(), std::strerror(errno));
    }
    flushConsoleFilter(filter);

    TraceInput summary{input.name, stream.streamName, file->packetsRead, file->packetsProcessed, filter.warnings};
    if (!options.quiet)
        filter.shown->print("%s: %s stream, %u packets read, %u converted, %llu events, %u warnings\n",
                            input.name.c_str(), stream.streamName, summary.packetsRead, summary.packetsConverted,
                            static_cast<unsigned long long>(target.events), summary.warnings);
    return summary;
}

// Nanoseconds as milliseconds with six decimals.
struct Milliseconds {
    char text[32];
    explicit Milliseconds(std::uint64_t nanoseconds)
    {
        formatBounded(text, sizeof text, "%llu.%06llu", static_cast<unsigned long long>(nanoseconds / 1000000),
                      static_cast<unsigned long long>(nanoseconds % 1000000));
    }
};

// Per thread: events, busy time and its share of the process's span.
void printThreadTable(Output& out, const TraceExport& trace)
{
    out.print("\n%-32s %10s %18s %7s\n", "thread", "events", "busy ms", "busy %");
    for (const ProcessThreads& process : trace.processes) {
        std::uint64_t span = process.lastTime - process.firstTime;
        out.print("%s (span %s ms)\n", process.name.c_str(), Milliseconds(span).text);
        for (const TraceThread& thread : process.threads) {
            out.print("  %-30s %10llu ", thread.name.c_str(), static_cast<unsigned long long>(thread.events));
            std::uint64_t tenths = span == 0 ? 0 : static_cast<std::uint64_t>(
                                                       static_cast<unsigned __int128>(thread.busy) * 1000 / span);
            out.print("%18s %5llu.%llu\n", Milliseconds(thread.busy).text, static_cast<unsigned long long>(tenths / 10),
                      static_cast<unsigned long long>(tenths % 10));
        }
    }
}

int streamOrder(StreamKind stream)
{
    // Client files first, then host, then firmware: each enqueue is known
    // before the work that it starts, so flows are drawn in one pass.
    return stream == StreamKind::Client ? 0 : stream == StreamKind::Host ? 1 : 2;
}

void failedWrite(void* context, int) { *static_cast<bool*>(context) = true; }

// The inputs that are captures; the others are named and skipped. What
// reading a file's first header printed (a zero header's warning) belongs to
// that file: it is shown before the file is named as skipped, and never
// counted among the warnings of the file converted next.
std::vector<Input> inspectInputs(const std::vector<std::string>& names, ConsoleFilter& filter)
{
    std::vector<Input> inputs;
    for (const std::string& name : names) {
        Input input{name, static_cast<int>(inputs.size()) + 1};
        std::string reason;
        bool isCapture = inspectInput(input, reason);
        flushConsoleFilter(filter);
        filter.shown->flush();
        if (isCapture)
            inputs.push_back(input);
        else
            errorConsole().print("%s: %s: %s, skipped\n", kTraceToolName, name.c_str(), reason.c_str());
    }
    return inputs;
}

void reportUnwritable(const char* outputName, int error)
{
    errorConsole().print("%s: %s: cannot be written: %s\n", kTraceToolName, outputName, std::strerror(error));
}

// Converts the inputs into the trace, under a temporary name that is
// renamed at the end; returns the exit status.
int exportTrace(const std::vector<Input>& inputs, const TraceOptions& options, ConsoleFilter& filter)
{
    bool toStandardOutput = std::strcmp(options.outputName, "-") == 0;
    std::string temporaryName = std::string(options.outputName) + ".partial";
    Output trace;
    if (toStandardOutput) {
        trace.attachDescriptor(STDOUT_FILENO, false);
    } else if (!trace.create(temporaryName.c_str())) {
        reportUnwritable(options.outputName, errno);
        return 2;
    }
    bool writeFailed = false;
    trace.setFailureHook(failedWrite, &writeFailed);

    auto exported = std::make_unique<TraceExport>();
    startTrace(*exported, trace);
    std::vector<TraceInput> summaries(inputs.size());
    resetBlankHeaderCount();
    for (int order = 0; order < 3; ++order)
        for (const Input& input : inputs)
            if (streamOrder(input.stream) == order)
                summaries[static_cast<std::size_t>(input.pid - 1)] = convertInput(input, *exported, filter, options);
    finishTrace(*exported, summaries);

    int error = trace.close() ? 0 : errno;
    if (!writeFailed && !toStandardOutput && std::rename(temporaryName.c_str(), options.outputName) != 0) {
        error = errno;
        writeFailed = true;
    }
    if (writeFailed) {
        reportUnwritable(options.outputName, error ? error : EIO);
        if (!toStandardOutput) ::unlink(temporaryName.c_str());
        return 2;
    }
    printThreadTable(*filter.shown, *exported);
    return 0;
}

} // namespace

int runTraceTool(int argc, const char* const* argv)
{
    TraceOptions options;
    switch (parseTraceOptions(argc, argv, options)) {
    case Parsed::Exit: return 0;
    case Parsed::Usage: errorConsole().print("%s", kTraceUsage); return 1;
    case Parsed::Run: break;
    }
    // The stream files of the current directory, as zyntelbin2json finds them.
    if (options.inputs.empty()) discoverStreamFiles(options.inputs);
    if (options.inputs.empty()) {
        errorConsole().print("%s: no capture files named and none found in the current directory\n",
                             kTraceToolName);
        return 2;
    }

    // Console lines go where the trace does not.
    Output shown;
    shown.attachDescriptor(std::strcmp(options.outputName, "-") == 0 ? STDERR_FILENO : STDOUT_FILENO, false);
    ConsoleFilter filter;
    startConsoleFilter(filter, shown);

    int status;
    std::vector<Input> inputs = inspectInputs(options.inputs, filter);
    if (inputs.empty()) {
        errorConsole().print("%s: none of the inputs could be read\n", kTraceToolName);
        status = 2;
    } else {
        status = exportTrace(inputs, options, filter);
    }
    stopConsoleFilter(filter);
    shown.flush();
    return status;
}
