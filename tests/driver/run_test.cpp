// The run over the files: discovery, per-file detection and the summary.
#include <gtest/gtest.h>

#include <filesystem>

#include "test_stream.h"
#include "tool_runner.h"

namespace {

PacketBuilder packet(std::uint32_t ordinal, std::uint32_t streamId = 0, std::uint32_t signature = kSigV2b)
{
    return PacketBuilder(typeWord(1, streamId), signature).ordinal(ordinal).timer(1000 + ordinal).u32(ordinal).u32(0);
}

// The console lines of one file, between its "processing" line and the next.
std::string fileSection(const std::string& out, const std::string& name)
{
    std::string start = "info: processing BINARY file : " + name + "\n";
    std::size_t from = out.find(start);
    if (from == std::string::npos) return "";
    std::size_t to = out.find("info: processing BINARY file", from + start.size());
    return out.substr(from, to == std::string::npos ? std::string::npos : to - from);
}

TEST(Discovery, TakesFirmwareThenHostThenClientFilesByNameRules)
{
    ScratchDir dir;
    Capture capture = Capture().add(packet(0));
    for (const char* name : {"zyntel_client_a.bin", "zyntel_host_a.bin", "zyntel_fw_.bin", "zyntel_fw_a.BIN",
                             "zyntel_fw_b.bin.old", "zyntel_fw_0.x.bin", "zyntel_fw_c", "other.bin"})
        dir.write(name, capture);
    std::filesystem::create_directory(dir.path() + "/zyntel_host_x.bin");

    ToolRun run = runInProcess(dir, {}, testStreams());
    EXPECT_EQ(run.status, 0);
    std::vector<std::string> processed;
    for (std::size_t at = run.out.find("processing BINARY file : "); at != std::string::npos;
         at = run.out.find("processing BINARY file : ", at + 1)) {
        std::size_t start = at + 25;
        processed.push_back(run.out.substr(start, run.out.find('\n', start) - start));
    }
    ASSERT_EQ(processed.size(), 4u);
    EXPECT_EQ(processed[0], "zyntel_fw_.bin");
    // Host files come in directory order, then the client file.
    EXPECT_TRUE((processed[1] == "zyntel_host_a.bin" && processed[2] == "zyntel_host_x.bin") ||
                (processed[1] == "zyntel_host_x.bin" && processed[2] == "zyntel_host_a.bin"));
    EXPECT_EQ(processed[3], "zyntel_client_a.bin");
    EXPECT_EQ(fileSection(run.out, "zyntel_host_x.bin"),
              "info: processing BINARY file : zyntel_host_x.bin\n"
              "info: output to JSON file    : zyntel_host_x.json\n"
              "info: binary file found, detecting version...\n"
              "error: system error unable to read valid Zyntel packet header\n");
    // Without options the files convert in correlated mode.
    EXPECT_EQ(run.json.count("zyntel_fw_.json"), 1u);
    EXPECT_EQ(run.json.count("zyntel_client_a.json"), 1u);
}

TEST(Discovery, OptionsWithoutFileNameApplyToEveryDiscoveredFile)
{
    ScratchDir dir;
    dir.write("zyntel_fw_1.bin", Capture().add(packet(0)));
    dir.write("zyntel_host_1.bin", Capture().add(packet(0, 1)));
    ToolRun run = runInProcess(dir, {"-raw"}, testStreams());
    EXPECT_EQ(run.json.count("zyntel_fw_1.raw.json"), 1u);
    EXPECT_EQ(run.json.count("zyntel_host_1.raw.json"), 1u);
}

TEST(Run, StreamAndVersionComeFromTheFirstHeader)
{
    struct Case {
        std::uint32_t signature, streamId;
        std::string version, stream;
    };
    for (const Case& c : {Case{kSigV2, 1, "V2", "Firmware"}, Case{kSigV2a, 2, "V2a", "Firmware"},
                          Case{kSigV2b, 0, "V2b", "Firmware"}, Case{kSigV2b, 1, "V2b", "Host"},
                          Case{kSigV2b, 2, "V2b", "Client"}, Case{kSigV2b, 3, "V2b", "Firmware"}}) {
        ScratchDir dir;
        dir.write("in.bin", Capture().add(packet(0, c.streamId, c.signature)));
        ToolRun run = runInProcess(dir, {"in.bin"}, testStreams());
        EXPECT_NE(run.out.find("info: detected Zyntel " + c.version + " data format in binary file\n"),
                  std::string::npos);
        EXPECT_NE(run.out.find("info: 1 Zyntel " + c.stream + " packets processed, last ordinal was 0\n"),
                  std::string::npos)
            << run.out;
    }
}

TEST(Run, SummaryOfACleanFile)
{
    ScratchDir dir;
    dir.write("in.bin", Capture().add(packet(5)).add(packet(6)));
    ToolRun run = runInProcess(dir, {"in.bin"}, testStreams());
    EXPECT_EQ(fileSection(run.out, "in.bin"), "info: processing BINARY file : in.bin\n"
                                              "info: output to JSON file    : in.json\n"
                                              "info: binary file found, detecting version...\n"
                                              "info: detected Zyntel V2b data format in binary file\n"
                                              "info: binary file size is 64, processing...\n"
                                              "info: NO Firmware packets lost\n\n"
                                              "info: 2 Zyntel Firmware packets processed, last ordinal was 6\n");
}

TEST(Run, SummaryReportsUnknownPacketsGapsAndDrops)
{
    ScratchDir dir;
    dir.write("in.bin", Capture()
                            .add(packet(5))
                            .add(packet(6))
                            .add(PacketBuilder(typeWord(kRejectedTestType)).ordinal(7).u32(0).u32(0))
                            .add(packet(9)));
    ToolRun run = runInProcess(dir, {"in.bin"}, testStreams());
    EXPECT_EQ(fileSection(run.out, "in.bin"),
              "info: processing BINARY file : in.bin\n"
              "info: output to JSON file    : in.json\n"
              "info: binary file found, detecting version...\n"
              "info: detected Zyntel V2b data format in binary file\n"
              "info: binary file size is 128, processing...\n"
              "error: invalid packet content at file read position 64\n"
              "warning: Zyntel packet ordinal out of sequence at file position 128; last: 6, current: 9\n"
              "error: 1 unknown packet(s) detected, packet(s) read:4\n"
              "error: 1 Packet sequence interruptions in Zyntel Firmware packet stream\n"
              "error: 2 Packets dropped in total\n"
              "info: 3 Zyntel Firmware packets processed, last ordinal was 9\n");
}

TEST(Run, SummaryCountsOversizedPackets)
{
    ScratchDir dir;
    dir.write("in.bin", Capture().add(packet(0)).add(packet(1)).add(PacketBuilder(typeWord(kOversizedTestType)).ordinal(2).u64(0)));
    ToolRun run = runInProcess(dir, {"in.bin"}, testStreams());
    EXPECT_NE(run.out.find("info: NO Firmware packets lost\n\n"
                           "error: 1 over-sized packet(s) detected\n"
                           "info: 3 Zyntel Firmware packets processed, last ordinal was 2\n"),
              std::string::npos);
}

TEST(Run, OrdinalResetIsNotAnInterruption)
{
    ScratchDir dir;
    dir.write("in.bin", Capture().add(packet(5)).add(packet(0xFFFFFFFF)).add(packet(0)));
    ToolRun run = runInProcess(dir, {"in.bin"}, testStreams());
    EXPECT_NE(run.out.find("info: Zyntel packet ordinal reset after ordinal 5\n"), std::string::npos);
    EXPECT_NE(run.out.find("info: NO Firmware packets lost\n\ninfo: 3 Zyntel Firmware packets processed, last "
                           "ordinal was 0\n"),
              std::string::npos);
}

TEST(Run, BackwardOrdinalWrapsTheDroppedCount)
{
    ScratchDir dir;
    dir.write("in.bin", Capture().add(packet(5)).add(packet(3)));
    ToolRun run = runInProcess(dir, {"in.bin"}, testStreams());
    EXPECT_NE(run.out.find("error: 4294967293 Packets dropped in total\n"), std::string::npos);
}

TEST(Run, CorruptFirstHeaderGivesStatusTwoAndTheNextFileIsStillConverted)
{
    ScratchDir dir;
    Bytes corrupt(24, 0);
    corrupt[23] = 1;
    dir.write("zyntel_fw_1.bin", Capture().add(corrupt).add(packet(0)));
    dir.write("zyntel_host_1.bin", Capture().zeroHeader().add(packet(0, 1)));
    dir.write("zyntel_client_1.bin", Capture().add(packet(0, 2)));
    ToolRun run = runInProcess(dir, {}, testStreams());
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(fileSection(run.out, "zyntel_fw_1.bin")
                  .find("error: unable to determine the version of Zyntel packet data in 'zyntel_fw_1.bin', "
                        "rc=2147483647, stopping.\n"),
              std::string::npos);
    EXPECT_EQ(fileSection(run.out, "zyntel_host_1.bin"),
              "info: processing BINARY file : zyntel_host_1.bin\n"
              "info: output to JSON file    : zyntel_host_1.json\n"
              "info: binary file found, detecting version...\n"
              "warning: detected a zero byte header at file position: 0 (0x0)\n"
              "\nwarning: detected a zero byte header at file position: 0 (0), file could be all zero bytes from "
              "this point on, will stop.\nA non-zero file position indicates packets have been converted. A zero "
              "file position suggests the file contains no Zyntel packets. Was the event filter set correctly in "
              "DebugFS (DL) or out2.txt file (Simrec)?\n");
    EXPECT_NE(run.out.find("info: 1 Zyntel Client packets processed"), std::string::npos);
    EXPECT_EQ(run.json.count("zyntel_fw_1.json"), 0u);
    EXPECT_EQ(run.json.count("zyntel_client_1.json"), 1u);
}

TEST(Run, MissingInputIsReportedAndTheRunGoesOn)
{
    ScratchDir dir;
    ToolRun run = runInProcess(dir, {"missing.bin"}, testStreams());
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("info: output to JSON file    : missing.json\n"
                           "warning: binary file could not be opened!\n"),
              std::string::npos);
}

} // namespace
