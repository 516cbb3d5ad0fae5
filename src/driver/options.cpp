#include "driver/options.h"

#include <cstring>

#include "json/output.h"
#include "stream/header.h"

ParseResult parseOptions(int argc, const char* const* argv, Options& options)
{
    if (argc < 2) return ParseResult::Run;
    if (std::strcmp(argv[1], "-h") == 0 || std::strcmp(argv[1], "--help") == 0 || argc > 5) return ParseResult::Help;

    for (int i = 1; i < argc; ++i) {
        const char* argument = argv[i];
        bool isOption = argument[0] == '-' || argument[0] == '\0';
        if (!isOption) {
            if (options.fileName) return ParseResult::Usage;
            options.fileName = argument;
        } else if (std::strcmp(argument, "-raw") == 0) {
            options.rawMode = true;
        } else if (std::strcmp(argument, "-hex") == 0) {
            options.hexDump = options.rawMode = true;
        } else if (std::strcmp(argument, "-tdelta") == 0) {
            options.timeDelta = options.rawMode = true;
        } else if (std::strcmp(argument, "-wa-v1cntids") == 0) {
            // accepted for old scripts; it changes nothing
        } else if (std::strcmp(argument, "-v") == 0) {
            options.verbose = true;
        } else {
            return ParseResult::Usage;
        }
    }
    return ParseResult::Run;
}

void printCapabilityReport()
{
    Output& out = console();
    out.putLine("Tool supports following V2 packet versions");
    out.print("ZYNTEL_PACKET_V2_SIG       : 0x%x\n", ZYNTEL_PACKET_V2_SIG);
    out.print("ZYNTEL_PACKET_V2A_SIG      : 0x%x\n", ZYNTEL_PACKET_V2A_SIG);
    out.print("ZYNTEL_PACKET_V2B_SIG      : 0x%x\n", ZYNTEL_PACKET_V2B_SIG);
    out.print("Zyntel V2 HDR packet size      : %zu\n", static_cast<std::size_t>(kHeaderSize));
    out.print("Zyntel V2 Packet size limit    : %u\n", kPacketSizeLimit);
    out.print("Zyntel V2 HW Packet guide size : %u\n", kHwPacketGuideSize);

    // The filter masks a user sets to capture each group of events.
    out.putLine("\nVorne FW Event stream masks (ZyntelFilter0 & ZyntelFilter1):");
    out.print("Begin/end FW event mask    : 0x%08x %08x\n", 0x00000000u, 0x0000007eu);
    out.print("Synch. FW event mask       : 0x%08x %08x\n", 0x01000000u, 0x00000000u);
    out.print("CtxSw. FW event mask       : 0x%08x %08x\n", 0x00030000u, 0x00000000u);
    out.print("All FW event mask          : 0x%08x %08x\n", 0x01030000u, 0x0000007eu);
    out.print("Kick/finish HW event mask  : 0x%08x %08x\n", 0x00000700u, 0x03fbff80u);
    out.print("Periodic HW event mask     : 0x%08x %08x\n", 0x00000000u, 0x00040000u);
    out.print("All HW event mask          : 0x%08x %08x\n", 0x00000700u, 0x03ffff80u);
    out.print("Power/clock/gpu event mask : 0x%08x %08x\n", 0x00000008u, 0x0c000000u);
    out.print("Power estimate event mask  : 0x%08x %08x\n", 0x00000007u, 0x00000000u);

    out.putLine("\nVorne HOST Event stream masks (ZyntelHostFilter):");
    out.print("Host Work Enqueue event mask  : 0x%08x\n", 0x2u);
    out.print("Host Synch. event mask        : 0x%08x\n", 0x4u);
    out.print("Host Clock event mask         : 0x%08x\n", 0x10u);
    out.putLine("");
}

void printUsage(const char* programName)
{
    Output& out = console();
    out.print("Usage: %s [filename] [-raw [-hex] [-tdelta]]\n\n", programName);
    out.putLine("Converts a Zyntel binary data file to a JSON text file called 'filename.json'\n"
                "containing correlated event data, start events are paired with end events.");
    out.putLine("Options: filename - name of binary data file containing Zyntel packets\n"
                "         -raw     - raw mode, convert packets 1:1, no correlation\n"
                "         -hex     - in raw mode also include a hex dump of the packet\n"
                "         -tdelta  - in raw mode print kortimer as a delta to last packet");
    out.putLine("When no options are supplied it attempts to read zyntel.bin in\n"
                "the CWD to produce a JSON file to the CWD.\n");
}
