#include "json/document.h"

#include "json/output.h"
#include "stream/stream_file.h"

namespace {

void onWriteFailure(void* context, int result)
{
    reportWriteFailure(*static_cast<StreamFile*>(context), result);
}

} // namespace

void writeDocumentHead(StreamFile& file, std::uint32_t firstSignature, int argc, const char* const* argv)
{
    Output& out = file.out;
    const char* opener = file.rawMode ? "\n  \"zyntel_packets\": [\n" : "\n  \"timeperiods\": [\n";

    int result = out.print("{\n  \"zyntelbin2json Info\": [\n    {\n      \"Packet version\": \"0x%08x\",\n"
                           "      \"CL Version\": %u,\n",
                           firstSignature, kToolVersion);
    for (int i = 0; i < argc && result > 0; ++i) {
        if (i + 1 < argc)
            result = out.print("      \"argv[%d]\": \"%s\",\n", i, argv[i]);
        else
            result = out.print("      \"argv[%d]\": \"%s\"\n    }\n  ],", i, argv[i]);
    }
    if (result > 0) {
        result = out.print("%s", opener);
    } else {
        errorConsole().print("warning: failed to fprintf to JSON file, error (%d)\n", result);
        result = out.print("%s", file.rawMode ? "{\n  \"zyntel_packets\": [\n" : "{\n  \"timeperiods\": [\n");
    }
    if (result <= 0) {
        errorConsole().print("warning: failed to fprintf to JSON file, error (%d)\n", result);
        errorConsole().print("warning: no packets processed for file \"%s\" yet\n", file.binPath.c_str());
    }
}

void writeDocumentClose(StreamFile& file)
{
    file.out.write("\n  ]\n}");
}

void watchWriteFailures(StreamFile& file)
{
    file.out.setFailureHook(onWriteFailure, &file);
}

void reportWriteFailure(StreamFile& file, int result)
{
    if (result >= 1 || file.writeFailureReported) return;
    errorConsole().print("warning: failed to fprintf to JSON file, error (%d)", result);
    errorConsole().print("warning: last packet ordinal written was %d", static_cast<int>(file.lastOrdinal));
    file.writeFailureReported = 1;
}

void beginTimePeriod(StreamFile& file)
{
    if (file.needSeparator) file.out.write(",\n");
    file.needSeparator = true;
}
