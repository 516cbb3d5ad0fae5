// The command line as a user meets it: banner, help, usage, modes and the
// names of the output files.
#include <gtest/gtest.h>

#include "driver/run.h"
#include "test_stream.h"
#include "tool_runner.h"

namespace {

const std::string kBanner = "\nZyntel binary data to text conversion tool\n"
                            "(version 6967606; built for BVNC: 36.53.104.796)\n\n";

const std::string kCapabilityReport = "Tool supports following V2 packet versions\n"
                                      "ZYNTEL_PACKET_V2_SIG       : 0x5a594e32\n"
                                      "ZYNTEL_PACKET_V2A_SIG      : 0x5a594e41\n"
                                      "ZYNTEL_PACKET_V2B_SIG      : 0x5a594e42\n"
                                      "Zyntel V2 HDR packet size      : 24\n"
                                      "Zyntel V2 Packet size limit    : 3072\n"
                                      "Zyntel V2 HW Packet guide size : 2060\n"
                                      "\nVorne FW Event stream masks (ZyntelFilter0 & ZyntelFilter1):\n"
                                      "Begin/end FW event mask    : 0x00000000 0000007e\n"
                                      "Synch. FW event mask       : 0x01000000 00000000\n"
                                      "CtxSw. FW event mask       : 0x00030000 00000000\n"
                                      "All FW event mask          : 0x01030000 0000007e\n"
                                      "Kick/finish HW event mask  : 0x00000700 03fbff80\n"
                                      "Periodic HW event mask     : 0x00000000 00040000\n"
                                      "All HW event mask          : 0x00000700 03ffff80\n"
                                      "Power/clock/gpu event mask : 0x00000008 0c000000\n"
                                      "Power estimate event mask  : 0x00000007 00000000\n"
                                      "\nVorne HOST Event stream masks (ZyntelHostFilter):\n"
                                      "Host Work Enqueue event mask  : 0x00000002\n"
                                      "Host Synch. event mask        : 0x00000004\n"
                                      "Host Clock event mask         : 0x00000010\n"
                                      "\n";

std::string usageFor(const std::string& program)
{
    return "Usage: " + program + " [filename] [-raw [-hex] [-tdelta]]\n\n"
           "Converts a Zyntel binary data file to a JSON text file called 'filename.json'\n"
           "containing correlated event data, start events are paired with end events.\n"
           "Options: filename - name of binary data file containing Zyntel packets\n"
           "         -raw     - raw mode, convert packets 1:1, no correlation\n"
           "         -hex     - in raw mode also include a hex dump of the packet\n"
           "         -tdelta  - in raw mode print kortimer as a delta to last packet\n"
           "When no options are supplied it attempts to read zyntel.bin in\n"
           "the CWD to produce a JSON file to the CWD.\n\n";
}

Capture onePacket(std::uint64_t timer = 100)
{
    return Capture().add(PacketBuilder(typeWord(1)).ordinal(0).timer(timer).u32(7).u32(0));
}

TEST(CommandLine, HelpPrintsCapabilityReportAndUsage)
{
    ScratchDir dir;
    for (std::vector<std::string> arguments : {std::vector<std::string>{"-h"}, {"--help"}, {"-raw", "a", "b", "c", "d"},
                                               {"-raw", "-raw", "-raw", "-raw", "-raw"}}) {
        ToolRun run = runBuiltTool(dir, arguments);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, kBanner + kCapabilityReport + usageFor(ZYNTEL_TOOL_NAME));
        EXPECT_EQ(run.err, "");
    }
}

TEST(CommandLine, UnknownOptionOrSecondFileNamePrintsUsage)
{
    ScratchDir dir;
    for (std::vector<std::string> arguments :
         {std::vector<std::string>{"-x"}, {"a.bin", "b.bin"}, {"-raw", ""}, {"-RAW"}}) {
        ToolRun run = runBuiltTool(dir, arguments);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, kBanner + usageFor(ZYNTEL_TOOL_NAME)) << arguments[0];
        EXPECT_TRUE(run.json.empty());
    }
    // "-h" anywhere but first is an unknown option, not help.
    ToolRun run = runBuiltTool(dir, {"-raw", "-h"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, kBanner + usageFor(ZYNTEL_TOOL_NAME));
}

TEST(CommandLine, NoArgumentsInAnEmptyDirectoryPrintsOnlyTheBanner)
{
    ScratchDir dir;
    ToolRun run = runBuiltTool(dir, {});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, kBanner);
}

TEST(CommandLine, ModesChooseTheOutputNameAndArray)
{
    struct Case {
        std::vector<std::string> arguments;
        std::string jsonName;
        std::string modeLine;
        std::string array;
    };
    const std::string raw = "info: raw one to one packet conversion enabled\n";
    const std::string correlated = "info: correlated begin/end two to one packet conversion enabled\n";
    for (const Case& c : {
             Case{{"in.bin"}, "in.json", correlated, "timeperiods"},
             Case{{"in.bin", "-raw"}, "in.raw.json", raw, "zyntel_packets"},
             Case{{"-raw", "in.bin"}, "in.raw.json", raw, "zyntel_packets"},
             Case{{"-hex", "in.bin"}, "in.raw.json", raw, "zyntel_packets"},
             Case{{"in.bin", "-tdelta"}, "in.raw.json", raw, "zyntel_packets"},
             Case{{"-v", "-wa-v1cntids", "in.bin"}, "in.json", correlated, "timeperiods"},
         }) {
        ScratchDir dir;
        dir.write("in.bin", onePacket());
        ToolRun run = runInProcess(dir, c.arguments, testStreams());
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.out.substr(kBanner.size(), c.modeLine.size()), c.modeLine);
        ASSERT_EQ(run.json.count(c.jsonName), 1u) << c.jsonName;
        EXPECT_NE(run.json[c.jsonName].find("\"" + c.array + "\": [\n"), std::string::npos);
    }
}

TEST(CommandLine, HexAndTimeDeltaSwitchRawModeOnByThemselves)
{
    ScratchDir dir;
    dir.write("in.bin", Capture().add(onePacket(100)).add(PacketBuilder(typeWord(1)).ordinal(1).timer(150).u32(8).u32(0)));
    ToolRun run = runInProcess(dir, {"in.bin", "-tdelta"}, testStreams());
    const std::string& json = run.json["in.raw.json"];
    EXPECT_NE(json.find("\"kortimer\": 100,"), std::string::npos);
    EXPECT_NE(json.find("\"kortimer\": 50,"), std::string::npos);

    run = runInProcess(dir, {"-hex", "in.bin"}, testStreams());
    EXPECT_NE(run.json["in.raw.json"].find("\"ADDR\": \"42 4e 59 5a"), std::string::npos);
}

TEST(CommandLine, OutputNameIsCutAtTheLastDotOfTheWholePath)
{
    EXPECT_EQ(outputNameFor("a.b/c", false), "a.json");
    EXPECT_EQ(outputNameFor("a.b/c", true), "a.raw.json");
    EXPECT_EQ(outputNameFor("capture", false), "capture.json");
    EXPECT_EQ(outputNameFor("x.y.bin", true), "x.y.raw.json");
    EXPECT_EQ(outputNameFor("./in.bin", false), "./in.json");
}

} // namespace
