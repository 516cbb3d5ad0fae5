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
#include "trace/line_cutter.h"
#include "trace/trace_export.h"

namespace {

constexpr const char* kDefaultTraceName = "zyntel_trace.json";

const char* const kUsage = "Usage: zyntelbin2trace [-o OUT] [-q] [FILE...]\n";
const char* const kHelp =
    "Converts captures of the firmware, host and client streams into one trace of the Trace Event\n"
    "Format, for timeline viewers.\n"
    "\n"
    "  -o OUT     write the trace to OUT (default zyntel_trace.json); '-' writes it to standard\n"
    "             output and the console lines to standard error\n"
    "  -q         no progress lines\n"
    "  --help     this text\n"
    "  --version  the version\n"
    "\n"
    "Without FILE the stream files of the current directory are converted: zyntel_fw_*.bin,\n"
    "zyntel_host_*.bin, zyntel_client_*.bin.\n";

struct TraceOptions {
    const char* outputName = kDefaultTraceName;
    bool quiet = false;
    std::vector<std::string> inputs;
};

enum class Parsed { Run, Exit, Usage };

Parsed parseTraceOptions(int argc, const char* const* argv, TraceOptions& options)
{
    bool optionsEnded = false;
    for (int i = 1; i < argc; ++i) {
        std::string_view argument = argv[i];
        if (optionsEnded || argument.empty() || argument[0] != '-' || argument == "-") {
            options.inputs.emplace_back(argument);
        } else if (argument == "--") {
            optionsEnded = true;
        } else if (argument == "--help" || argument == "-h") {
            console().print("%s\n%s", kUsage, kHelp);
            return Parsed::Exit;
        } else if (argument == "--version") {
            console().print("%s %s (converters of zyntelbin2json version %u)\n", kTraceToolName, kTraceToolVersion,
                            kToolVersion);
            return Parsed::Exit;
        } else if (argument == "-q") {
            options.quiet = true;
        } else if (argument == "-o") {
            if (++i == argc) {
                errorConsole().print("%s: -o needs a file name\n", kTraceToolName);
                return Parsed::Usage;
            }
            options.outputName = argv[i];
        } else {
            errorConsole().print("%s: unknown option '%s'\n", kTraceToolName, argv[i]);
            return Parsed::Usage;
        }
    }
    return Parsed::Run;
}

// The stream files of the current directory, firmware first, then host,
// then client, as zyntelbin2json finds them.
void discoverInputs(std::vector<std::string>& inputs)
{
    const char* prefixes[] = {kFirmwarePrefix, kHostPrefix, kClientPrefix};
    StreamFileListing listing;
    if (!listing.isOpen()) return;
    for (const char* prefix : prefixes) {
        std::int32_t count = countStreamFiles(prefix);
        listing.rewind();
        for (std::int32_t i = 0; i < count; ++i) {
            const char* name = listing.next(prefix);
            if (!name) break;
            inputs.emplace_back(name);
        }
    }
}

// Console lines of the converters pass through here: progress and
// information lines are left out, the damage reports are counted and kept.
struct ConsoleFilter {
    Output* shown = nullptr;
    LineCutter lines;
    std::uint32_t warnings = 0;
};

bool startsWith(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }

bool isProgressLine(std::string_view line)
{
    for (const char* stream : {"Firmware packet ", "Host packet ", "Client packet "})
        if (startsWith(line, stream) && line.size() > 3 && line.substr(line.size() - 3) == "...") return true;
    return line.empty() || startsWith(line, "info: ") || startsWith(line, "Printing start packet") ||
           startsWith(line, "Printing end packet");
}

void onConsoleLine(void* context, std::string_view line)
{
    auto& filter = *static_cast<ConsoleFilter*>(context);
    if (isProgressLine(line)) return;
    if (startsWith(line, "warning") || startsWith(line, "Warning") || startsWith(line, "error") ||
        startsWith(line, "Error"))
        ++filter.warnings;
    filter.shown->write(line);
    filter.shown->write("\n");
}

void writeToConsoleFilter(void* context, const char* text, std::size_t length)
{
    cutLines(static_cast<ConsoleFilter*>(context)->lines, text, length);
}

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
    startElementStream(*elements, onElement, &target);
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
    console().flush();
    finishLines(filter.lines);

    TraceInput summary{input.name, stream.streamName, file->packetsRead, file->packetsProcessed, filter.warnings};
    if (!options.quiet)
        filter.shown->print("%s: %s stream, %u packets read, %u converted, %llu events, %u warnings\n",
                            input.name.c_str(), stream.streamName, summary.packetsRead, summary.packetsConverted,
                            static_cast<unsigned long long>(target.events), summary.warnings);
    return summary;
}

void printMilliseconds(Output& out, std::uint64_t nanoseconds)
{
    out.print("%llu.%06llu", static_cast<unsigned long long>(nanoseconds / 1000000),
              static_cast<unsigned long long>(nanoseconds % 1000000));
}

// Per thread: events, busy time and its share of the process's span.
void printThreadTable(Output& out, const TraceExport& trace)
{
    out.print("\n%-32s %10s %18s %7s\n", "thread", "events", "busy ms", "busy %");
    for (const ProcessThreads& process : trace.processes) {
        std::uint64_t span = process.lastTime - process.firstTime;
        out.print("%s (span ", process.name.c_str());
        printMilliseconds(out, span);
        out.write(" ms)\n");
        for (const TraceThread& thread : process.threads) {
            out.print("  %-30s %10llu ", thread.name.c_str(), static_cast<unsigned long long>(thread.events));
            char busy[32];
            formatBounded(busy, sizeof busy, "%llu.%06llu", static_cast<unsigned long long>(thread.busy / 1000000),
                          static_cast<unsigned long long>(thread.busy % 1000000));
            std::uint64_t tenths = span == 0 ? 0 : static_cast<std::uint64_t>(
                                                       static_cast<unsigned __int128>(thread.busy) * 1000 / span);
            out.print("%18s %5llu.%llu\n", busy, static_cast<unsigned long long>(tenths / 10),
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

} // namespace

int runTraceTool(int argc, const char* const* argv)
{
    TraceOptions options;
    switch (parseTraceOptions(argc, argv, options)) {
    case Parsed::Exit: return 0;
    case Parsed::Usage: errorConsole().print("%s", kUsage); return 1;
    case Parsed::Run: break;
    }
    if (options.inputs.empty()) discoverInputs(options.inputs);
    if (options.inputs.empty()) {
        errorConsole().print("%s: no capture files named and none found in the current directory\n",
                             kTraceToolName);
        return 2;
    }

    // Console lines go where the trace does not.
    bool toStandardOutput = std::strcmp(options.outputName, "-") == 0;
    Output shown;
    shown.attachDescriptor(toStandardOutput ? STDERR_FILENO : STDOUT_FILENO, false);
    ConsoleFilter filter;
    filter.shown = &shown;
    filter.lines.onLine = onConsoleLine;
    filter.lines.context = &filter;
    Output filtered;
    filtered.attachSink(writeToConsoleFilter, &filter);
    redirectConsole(&filtered, nullptr);

    std::vector<Input> inputs;
    for (const std::string& name : options.inputs) {
        Input input{name, static_cast<int>(inputs.size()) + 1};
        std::string reason;
        if (inspectInput(input, reason))
            inputs.push_back(input);
        else
            errorConsole().print("%s: %s: %s, skipped\n", kTraceToolName, name.c_str(), reason.c_str());
    }

    int status = 0;
    if (inputs.empty()) {
        errorConsole().print("%s: none of the inputs could be read\n", kTraceToolName);
        status = 2;
    }

    std::string temporaryName = std::string(options.outputName) + ".partial";
    Output trace;
    bool writeFailed = false;
    if (status == 0) {
        if (toStandardOutput) {
            trace.attachDescriptor(STDOUT_FILENO, false);
        } else if (!trace.create(temporaryName.c_str())) {
            errorConsole().print("%s: %s: cannot be written: %s\n", kTraceToolName, options.outputName,
                                 std::strerror(errno));
            status = 2;
        }
    }
    if (status == 0) {
        trace.setFailureHook(failedWrite, &writeFailed);
        auto exported = std::make_unique<TraceExport>();
        startTrace(*exported, trace);
        std::vector<TraceInput> summaries(inputs.size());
        resetBlankHeaderCount();
        for (int order = 0; order < 3; ++order)
            for (const Input& input : inputs)
                if (streamOrder(input.stream) == order)
                    summaries[static_cast<std::size_t>(input.pid - 1)] =
                        convertInput(input, *exported, filter, options);
        finishTrace(*exported, summaries);
        int closeError = 0;
        if (!trace.close()) closeError = errno;
        if (writeFailed) {
            errorConsole().print("%s: %s: cannot be written: %s\n", kTraceToolName, options.outputName,
                                 std::strerror(closeError ? closeError : EIO));
            if (!toStandardOutput) ::unlink(temporaryName.c_str());
            status = 2;
        } else if (!toStandardOutput && std::rename(temporaryName.c_str(), options.outputName) != 0) {
            errorConsole().print("%s: %s: cannot be written: %s\n", kTraceToolName, options.outputName,
                                 std::strerror(errno));
            ::unlink(temporaryName.c_str());
            status = 2;
        }
        if (status == 0) printThreadTable(shown, *exported);
    }
    filtered.close();
    redirectConsole(nullptr, nullptr);
    shown.flush();
    return status;
}
