#include "trace/trace_options.h"

#include <string_view>

#include "json/document.h"
#include "json/output.h"
#include "trace/trace_export.h"

namespace {

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

} // namespace

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
            console().print("%s\n%s", kTraceUsage, kHelp);
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
