#include "driver/run.h"

#include <deque>

#include "driver/discovery.h"
#include "driver/options.h"
#include "json/document.h"
#include "json/output.h"
#include "stream/header.h"
#include "stream/reader.h"

namespace {

constexpr const char* kBvnc = "36.53.104.796";

void setUpRecord(std::deque<StreamFile>& files, const char* inputName, const Options& options)
{
    StreamFile& file = files.emplace_back();
    file.binPath = inputName;
    file.jsonPath = outputNameFor(file.binPath, options.rawMode);
    file.rawMode = options.rawMode;
    file.hexDump = options.hexDump;
    file.timeDelta = options.timeDelta;
    file.verbose = options.verbose;
}

void countClientFilesForWarning()
{
    if (countStreamFiles(kClientPrefix) < 0) console().putLine("warning: unable to discover client stream files.");
}

} // namespace

void printSummary(const StreamFile& file)
{
    Output& out = console();
    if (file.packetsRead != file.packetsProcessed)
        out.print("error: %d unknown packet(s) detected, packet(s) read:%d\n",
                  static_cast<int>(file.packetsRead - file.packetsProcessed), static_cast<int>(file.packetsRead));
    if (file.packetsProcessed == 0) return;
    if (file.sequenceInterruptions != 0) {
        out.print("error: %u Packet sequence interruptions in Zyntel %s packet stream\n", file.sequenceInterruptions,
                  file.streamName);
        out.print("error: %u Packets dropped in total\n", file.packetsDropped);
    } else {
        out.print("info: NO %s packets lost\n\n", file.streamName);
    }
    if (file.oversizedPackets != 0)
        out.print("error: %d over-sized packet(s) detected\n", static_cast<int>(file.oversizedPackets));
    if (file.validationFailures != 0)
        out.print("error: %u/%u Zyntel %s packets validated, %u failure%s\n", file.packetsValidated,
                  file.packetsProcessed, file.streamName, file.validationFailures,
                  file.validationFailures == 1 ? "" : "s");
    out.print("info: %u Zyntel %s packets processed, last ordinal was %u\n", file.packetsProcessed, file.streamName,
              file.lastOrdinal);
}

namespace {

const char* versionMessage(std::uint32_t signature)
{
    switch (signature) {
    case ZYNTEL_PACKET_V2_SIG: return "info: detected Zyntel V2 data format in binary file";
    case ZYNTEL_PACKET_V2A_SIG: return "info: detected Zyntel V2a data format in binary file";
    case ZYNTEL_PACKET_V2B_SIG: return "info: detected Zyntel V2b data format in binary file";
    default: return nullptr;
    }
}

} // namespace

const StreamConverters& chooseStream(const StreamTable& streams, std::uint32_t streamId)
{
    if (streamId == 1) return streams.host;
    if (streamId == 2) return streams.client;
    return streams.firmware;
}

namespace {

enum class FileOutcome { Done, StopRun };

// Opens, detects, converts and closes one file; the summary follows.
FileOutcome convertFile(StreamFile& file, const StreamTable& streams, int argc, const char* const* argv,
                        int& status)
{
    Output& out = console();
    out.print("info: processing BINARY file : %s\n", file.binPath.c_str());
    out.print("info: output to JSON file    : %s\n", file.jsonPath.c_str());
    if (!file.in.open(file.binPath.c_str())) {
        out.putLine("warning: binary file could not be opened!");
        return FileOutcome::Done;
    }

    out.putLine("info: binary file found, detecting version...");
    PacketHeader header;
    std::int64_t position = 0;
    std::int32_t result = readHeader(file, header, position);
    if (result < 0) {
        out.putLine("error: system error unable to read valid Zyntel packet header");
        return FileOutcome::Done;
    }
    if (result == 0) {
        out.print("\nwarning: detected a zero byte header at file position: %ld (%#lx), file could be all zero bytes "
                  "from this point on, will stop.\nA non-zero file position indicates packets have been converted. "
                  "A zero file position suggests the file contains no Zyntel packets. Was the event filter set "
                  "correctly in DebugFS (DL) or out2.txt file (Simrec)?\n",
                  static_cast<long>(position), static_cast<unsigned long>(position));
        return FileOutcome::Done;
    }
    if (result == kCorruptHeader) {
        out.print("error: unable to determine the version of Zyntel packet data in '%s', rc=%d, stopping.\n",
                  file.binPath.c_str(), kCorruptHeader);
        status = 2;
        return FileOutcome::Done;
    }
    const char* version = versionMessage(header.signature());
    if (!version) {
        out.putLine("error: Unsupported Zyntel version detected in binary file");
        status = 2;
        return FileOutcome::StopRun;
    }
    out.putLine(version);

    std::uint32_t streamId = header.signature() == ZYNTEL_PACKET_V2B_SIG ? header.streamId() : 0;
    const StreamConverters& stream = chooseStream(streams, streamId);
    file.streamName = stream.streamName;
    file.progressInterval = stream.progressInterval;
    file.correlatedConverter = stream.correlatedConverter;
    file.rawConverter = stream.rawConverter;
    if (stream.beginFile) stream.beginFile();

    out.print("info: binary file size is %lu, processing...\n", static_cast<unsigned long>(file.in.size()));
    file.in.seek(0);

    if (!file.out.create(file.jsonPath.c_str())) {
        out.print("error: %s couldn't be created!\n", file.binPath.c_str());
        return FileOutcome::Done;
    }
    writeDocumentHead(file, header.signature(), argc, argv);
    watchWriteFailures(file);
    readPackets(file, streamId);
    return FileOutcome::Done;
}

} // namespace

std::string outputNameFor(const std::string& inputName, bool rawMode)
{
    std::string::size_type lastDot = inputName.rfind('.');
    std::string name = lastDot == std::string::npos ? inputName : inputName.substr(0, lastDot);
    return name + (rawMode ? ".raw.json" : ".json");
}

int runTool(int argc, const char* const* argv, const StreamTable& streams)
{
    Output& out = console();
    out.putLine("\nZyntel binary data to text conversion tool");
    out.print("(version %d; built for BVNC: %s)\n\n", static_cast<int>(kToolVersion), kBvnc);

    resetBlankHeaderCount();
    Options options;
    if (argc < 2) {
        countClientFilesForWarning();
    } else {
        switch (parseOptions(argc, argv, options)) {
        case ParseResult::Help:
            printCapabilityReport();
            printUsage(argv[0]);
            return 1;
        case ParseResult::Usage:
            printUsage(argv[0]);
            return 1;
        case ParseResult::Run:
            break;
        }
        out.putLine(options.rawMode ? "info: raw one to one packet conversion enabled"
                                    : "info: correlated begin/end two to one packet conversion enabled");
        countClientFilesForWarning();
    }

    std::deque<StreamFile> files; // records stay in place: their outputs point at them
    if (options.fileName) {
        setUpRecord(files, options.fileName, options);
    } else {
        std::vector<std::string> names;
        if (!discoverStreamFiles(names)) {
            out.putLine("Error: Could not discover client stream bin files.");
            return 0;
        }
        for (const std::string& name : names) setUpRecord(files, name.c_str(), options);
    }

    int status = 0;
    for (StreamFile& file : files) {
        FileOutcome outcome = convertFile(file, streams, argc, argv, status);
        file.out.close();
        file.in.close();
        if (outcome == FileOutcome::StopRun) break;
        printSummary(file);
    }
    return status;
}
