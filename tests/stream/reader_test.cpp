// The reading loop on whole captures: transport-layer headers, zero and
// corrupt headers, resynchronisation, size limits, truncation, validation.
#include <gtest/gtest.h>

#include "test_stream.h"
#include "tool_runner.h"

namespace {

PacketBuilder packet(std::uint32_t ordinal, std::uint32_t type = 1)
{
    return PacketBuilder(typeWord(type)).ordinal(ordinal).timer(1000 + ordinal).u32(ordinal).u32(0);
}

std::string element(std::uint32_t ordinal)
{
    std::string timer = std::to_string(1000 + ordinal);
    return "    {\n      \"start\": " + timer + ",\n      \"end\": " + timer + ",\n      \"name\": \"TEST\"\n    }";
}

std::string document(const std::string& elements)
{
    return "{\n  \"zyntelbin2json Info\": [\n    {\n      \"Packet version\": \"0x5a594e42\",\n"
           "      \"CL Version\": 6967606,\n      \"argv[0]\": \"zyntelbin2json\",\n"
           "      \"argv[1]\": \"in.bin\"\n    }\n  ],\n  \"timeperiods\": [\n" +
           elements + "\n  ]\n}";
}

// The console lines after the file's size line.
std::string afterSizeLine(const std::string& out)
{
    std::size_t at = out.find(", processing...\n");
    return at == std::string::npos ? "" : out.substr(at + 16);
}

ToolRun convert(const Capture& capture, std::vector<std::string> arguments = {"in.bin"})
{
    ScratchDir dir;
    dir.write("in.bin", capture);
    return runInProcess(dir, arguments, testStreams());
}

TEST(TransportLayer, TypeOneHeadersAreSkippedAndReportedOncePerFile)
{
    ToolRun run = convert(Capture().tlHeader(1, 32).add(packet(0)).tlHeader(1, 32).add(packet(1)));
    EXPECT_EQ(run.out.find("info: TL packet header found"), run.out.rfind("info: TL packet header found"));
    EXPECT_NE(run.out.find("info: TL packet header found (8 bytes), file is a raw TL binary file\n"
                           "info: detected Zyntel V2b data format"),
              std::string::npos);
    EXPECT_EQ(afterSizeLine(run.out), "info: NO Firmware packets lost\n\n"
                                      "info: 2 Zyntel Firmware packets processed, last ordinal was 1\n");
    EXPECT_EQ(run.json["in.json"], document(element(0) + ",\n" + element(1)));
}

TEST(TransportLayer, OtherTypesSkipTheirDataToo)
{
    Capture capture = Capture().add(packet(0)).tlHeader(2, 100).zeros(100).add(packet(1));
    ToolRun run = convert(capture);
    EXPECT_NE(run.out.find("info: TL packet header found (108 bytes), file is a raw TL binary file\n"),
              std::string::npos);
    EXPECT_EQ(run.json["in.json"], document(element(0) + ",\n" + element(1)));
}

TEST(TransportLayer, WordsThatOnlyLookLikeTransportHeadersAreJudgedAsPacketHeaders)
{
    for (std::uint8_t tlType : {0, 8}) {
        ToolRun run = convert(Capture().add(packet(0)).tlHeader(tlType, 0).add(packet(1)));
        EXPECT_EQ(run.out.find("TL packet header"), std::string::npos);
        EXPECT_NE(run.out.find("error: corrupt header #1 at file position: 32 (0x20)"), std::string::npos);
        EXPECT_NE(run.out.find("warning: file read position adjusted from 32 to 40 (8 bytes)\n"), std::string::npos);
    }
}

TEST(Resynchronisation, CorruptHeaderIsDumpedAndTheScanResumesAtTheNextSignature)
{
    Bytes garbage{1, 2, 3, 4, 5, 6, 7, 8};
    ToolRun run = convert(Capture().add(packet(0)).add(garbage).add(packet(1)));
    EXPECT_EQ(afterSizeLine(run.out),
              "error: corrupt header #1 at file position: 32 (0x20), hex values dumped in output file.\n"
              "warning: file read position adjusted from 32 to 40 (8 bytes)\n"
              "warning: at EOF, not all of the bytes in the input file were read as part of genuine packets, "
              "4 bytes ignored.\n"
              "info: NO Firmware packets lost\n\n"
              "info: 2 Zyntel Firmware packets processed, last ordinal was 1\n");
    // The dump shows the last valid header: the header of the packet before.
    EXPECT_EQ(run.json["in.json"],
              document(element(0) + ",\n    {\n      \"size\": 32,\n"
                                    "      \"ADDR\": \"42 4e 59 5a  20 00 00 00  01 00 00 00  00 00 00 00\",\n"
                                    "      \"ADDR\": \"e8 03 00 00  00 00 00 00\"\n    },\n" +
                       element(1)));
}

TEST(Resynchronisation, InRawModeTheDumpIsAnElementLikeAnyOther)
{
    Bytes garbage{1, 2, 3, 4, 5, 6, 7, 8};
    ToolRun run = convert(Capture().add(packet(0)).add(garbage).add(packet(1)), {"in.bin", "-raw"});
    const std::string& json = run.json["in.raw.json"];
    EXPECT_NE(json.find("      \"payload\": 0\n    },\n    {\n      \"size\": 32,\n"), std::string::npos);
    EXPECT_NE(json.find("00 00 00 00\"\n    },\n    {\n      \"sig\""), std::string::npos);
}

TEST(Resynchronisation, NoFurtherSignatureEndsTheFile)
{
    Bytes garbage(30, 0x11);
    ToolRun run = convert(Capture().add(packet(0)).add(garbage));
    EXPECT_EQ(afterSizeLine(run.out),
              "error: corrupt header #1 at file position: 32 (0x20), hex values dumped in output file.\n"
              "warning: end of file reached, could not find valid packet again (32-62)\n"
              "warning: at EOF, not all of the bytes in the input file were read as part of genuine packets, "
              "6 bytes ignored.\n"
              "info: NO Firmware packets lost\n\n"
              "info: 1 Zyntel Firmware packets processed, last ordinal was 0\n");
    EXPECT_TRUE(run.json["in.json"].ends_with("\"\n    }\n  ]\n}"));
}

TEST(Headers, ValidSignatureWithSizeBelow32IsCorrupt)
{
    Bytes small = PacketBuilder(typeWord(1)).ordinal(1).sizeWord(31).u32(0).u32(0).build();
    ToolRun run = convert(Capture().add(packet(0)).add(small).add(packet(2)));
    EXPECT_NE(run.out.find("error: corrupt header #1 at file position: 32"), std::string::npos);
    EXPECT_NE(run.out.find("warning: file read position adjusted from 32 to 64 (32 bytes)"), std::string::npos);
}

TEST(BlankHeaders, SixteenInARowEndTheFileAndFifteenDoNot)
{
    Capture fifteen = Capture().add(packet(0));
    for (int i = 0; i < 15; ++i) fifteen.zeroHeader();
    fifteen.add(packet(1));
    ToolRun run = convert(fifteen);
    EXPECT_EQ(run.json["in.json"], document(element(0) + ",\n" + element(1)));
    EXPECT_EQ(run.out.find("consecutive blank headers"), std::string::npos);

    Capture sixteen = Capture().add(packet(0));
    for (int i = 0; i < 16; ++i) sixteen.zeroHeader();
    sixteen.add(packet(1));
    run = convert(sixteen);
    EXPECT_EQ(run.json["in.json"], document(element(0)));
    EXPECT_NE(run.out.find("warning: detected a zero byte header at file position: 392 (0x188)\n"
                           "warning: encountered 16 consecutive blank headers in input file\n"
                           "warning: at EOF, not all of the bytes in the input file were read as part of genuine "
                           "packets, 416 bytes ignored.\n"),
              std::string::npos);
}

TEST(BlankHeaders, TheCountCarriesOverIntoTheNextFile)
{
    ScratchDir dir;
    Capture first = Capture().add(PacketBuilder(typeWord(kRejectedTestType)).ordinal(0).u32(0).u32(0));
    for (int i = 0; i < 15; ++i) first.zeroHeader();
    dir.write("zyntel_fw_1.bin", first);
    // The first packet of the next file is rejected, which leaves the count
    // as it was, so its single zero header makes sixteen.
    dir.write("zyntel_host_1.bin", Capture()
                                       .add(PacketBuilder(typeWord(kRejectedTestType, 1)).ordinal(0).u32(0).u32(0))
                                       .zeroHeader()
                                       .add(PacketBuilder(typeWord(1, 1)).ordinal(1).u32(0).u32(0)));
    ToolRun run = runInProcess(dir, {}, testStreams());
    std::size_t hostPart = run.out.find("zyntel_host_1.bin");
    ASSERT_NE(hostPart, std::string::npos);
    EXPECT_NE(run.out.find("warning: encountered 16 consecutive blank headers in input file\n", hostPart),
              std::string::npos);
}

TEST(PacketBodies, OversizedPacketEndsTheFile)
{
    Bytes big = PacketBuilder(typeWord(1)).ordinal(1).zeros(3073 - 24).build();
    ToolRun run = convert(Capture().add(packet(0)).add(big).add(packet(2)));
    EXPECT_EQ(afterSizeLine(run.out),
              "error: packet size (3073) larger than the maximum expected for this BVNC (3072)\n"
              "warning: at EOF, not all of the bytes in the input file were read as part of genuine packets, "
              "3081 bytes ignored.\n"
              "info: NO Firmware packets lost\n\n"
              "info: 1 Zyntel Firmware packets processed, last ordinal was 0\n");
    EXPECT_EQ(run.json["in.json"], document(element(0)));
}

TEST(PacketBodies, TruncatedLastPacketEndsTheFile)
{
    Bytes cut = packet(1).build();
    cut.resize(28);
    ToolRun run = convert(Capture().add(packet(0)).add(cut));
    EXPECT_EQ(afterSizeLine(run.out),
              "error: insufficient bytes read for packet data (4), expected size was 8 bytes, at file position 32\n"
              "warning: at EOF, not all of the bytes in the input file were read as part of genuine packets, "
              "4 bytes ignored.\n"
              "info: NO Firmware packets lost\n\n"
              "info: 1 Zyntel Firmware packets processed, last ordinal was 0\n");
}

TEST(PacketBodies, FirmwareBodyHoldingItsOwnSignatureIsReportedButConverted)
{
    Bytes body = PacketBuilder(typeWord(0x0B)).ordinal(0).timer(1000).u32(0x5A594E42).u32(0x1234).u32(0x0C).u32(9).build();
    ToolRun run = convert(Capture().add(body));
    EXPECT_EQ(afterSizeLine(run.out).substr(0, 205),
              "error: Incomplete packet found in stream: Ordinal 0/0, Value: 5a594e42, Type = 0xb\n"
              "error: Unexpected ordinal = 9/9, Type = 0xc\n"
              "error: Malformed packet ordinal 0 / 0 found:\n"
              "    {\n      \"size\": 40,\n"
              "      \"0x");
    EXPECT_NE(run.out.find("\n    }\nerror: invalid header contents ordinal 0 / 0\n"), std::string::npos);
    EXPECT_NE(run.out.find("error: 1/1 Zyntel Firmware packets validated, 1 failure\n"), std::string::npos);
    EXPECT_EQ(run.json["in.json"], document(element(0)));
}

TEST(Progress, RejectedFirstPacketPrintsTheLineForZero)
{
    ToolRun run = convert(Capture().add(packet(0, kRejectedTestType)).add(packet(1)));
    EXPECT_NE(run.out.find("error: invalid packet content at file read position 0\nFirmware packet 0...\n"),
              std::string::npos);
}

} // namespace
