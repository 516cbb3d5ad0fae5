// Raw conversion of firmware activity packets: HWR payload forms, event
// masks, counter-id registration and core-configuration layouts.
#include <gtest/gtest.h>

#include "raw_run.h"

namespace {

PacketBuilder activity(std::uint32_t ordinal, std::uint32_t event, std::uint32_t flags = 0)
{
    return PacketBuilder(typeWord(0x39, 0, flags), kSigV2b).ordinal(ordinal).timer(ordinal * 10).u32(event);
}

std::string activityHead(std::uint32_t size, std::uint32_t ordinal, const std::string& event)
{
    return fwEnvelope(kSigV2b, size, "39_FW_Activity", ordinal, ordinal * 10) +
           "      \"fwactdata\": {\n        \"osid\": 0,\n        \"event\": \"" + event + "\"";
}

const std::string kClose = "      }\n    }";

TEST(FwRawActivity, HwrPayloadsShortExactAndLong)
{
    Capture capture;
    capture.add(activity(1, 2).u32s({3, 2, 77, 0}));          // exactly 20 bytes
    capture.add(activity(2, 3).u32s({3, 9}));                 // 12 bytes: word by word
    capture.add(activity(3, 4).u32s({0x1FFFFFFF, 1, 55, 0, 0})); // 24 bytes: newer form
    capture.add(activity(4, 5).u32s({0, 0, 8, 0}));
    RawRun run = convertFirmwareRaw(capture);

    std::string expected =
        activityHead(44, 1, "02_HWR_Detected") +
        ",\n        \"dm\": \"03_3D\",\n        \"reason\": \"02_PageFault\",\n        \"Context\": 77" + kClose + ",\n" +
        activityHead(36, 2, "03_HWR_Reset_Required") + ",\n        \"dword0\": 3,\n        \"dword1\": 9" + kClose + ",\n" +
        activityHead(48, 3, "04_HWR_Recovered") + ",\n        \"dm\": \"1FFFFFFF_Invalid\",\n        \"Context\": 55" +
        kClose + ",\n" +
        activityHead(44, 4, "05_HWR_Freelist_Ready") + ",\n        \"dm\": \"00_GP\",\n        \"Context\": 8" + kClose;
    EXPECT_EQ(run.elements, expected);
    EXPECT_NE(run.out.find("Warning: Zyntel packet unknown HWR reason (9)!\n"), std::string::npos);
    EXPECT_NE(run.out.find("warning: Detected newer format of the Zyntel FWACT packet.\n"), std::string::npos);
}

TEST(FwRawActivity, EventsWithoutFieldsMasksAndUnknownEvents)
{
    Capture capture;
    capture.add(activity(1, 0).u32(0));
    capture.add(activity(2, 7).u32s({0x89ABCDEF, 0x01234567}));
    capture.add(activity(3, 8).u32(0));
    capture.add(activity(4, 9).u32(0));
    RawRun run = convertFirmwareRaw(capture);

    std::string expected = activityHead(32, 1, "00_Invalid") + kClose + ",\n" + activityHead(36, 2, "07_Zyntel_Filter_Set") +
                           ",\n        \"EventMask\": \"0x0123456789abcdef\"\n" + kClose + ",\n" +
                           activityHead(32, 3, "08_Kick_Cancel") + kClose + ",\n" +
                           activityHead(32, 4, "OUT_OF_BOUNDS") + kClose;
    EXPECT_EQ(run.elements, expected);
    EXPECT_NE(run.out.find("Warning: Zyntel packet unknown event type (9)!\n"), std::string::npos);
}

TEST(FwRawActivity, RegistrationListsIdsAndFillsTheCounterIdTable)
{
    forgetCounterIds();
    Capture capture;
    capture.add(activity(1, 1).u32s({2, 0x20, 2, 0xA, 0xB, 0x8010, 1, 0xC}));
    capture.add(activity(2, 1).u32(0));
    RawRun run = convertFirmwareRaw(capture);

    std::string expected =
        activityHead(60, 1, "01_Regs_Programmed") +
        ",\n        \"nBlocks\": 2,\n        \"blocks\": [\n"
        "          {\n            \"blkid\": \"32 # USC_0_Blk\",\n            \"len\": 2,\n"
        "            \"id0\": \"0000000a\",\n            \"id1\": \"0000000b\"\n          },\n"
        "          {\n            \"blkid\": \"32784 # TPU_DA0_Blk\",\n            \"len\": 1,\n"
        "            \"id0\": \"0000000c\"\n          }\n        ]\n" + kClose + ",\n" +
        activityHead(32, 2, "01_Regs_Programmed") + ",\n        \"nBlocks\": 0\n" + kClose;
    EXPECT_EQ(run.elements, expected);
    const CounterIdTable& ids = counterIdTable();
    EXPECT_TRUE(ids.known);
    EXPECT_EQ(ids.get(0x20, 0), 0xAu);
    EXPECT_EQ(ids.get(0x20, 1), 0xBu);
    EXPECT_EQ(ids.get(0x10, 0), 0xCu);
    EXPECT_EQ(ids.get(0x20, 2), 0u);
    EXPECT_EQ(ids.get(200, 0), 0u);
    EXPECT_EQ(run.out.find("Potentially corrupted"), std::string::npos);
}

TEST(FwRawActivity, RegistrationStaysInsideThePacket)
{
    forgetCounterIds();
    Capture capture;
    // Five blocks claimed; the first claims 1000 ids, of which two exist.
    capture.add(activity(1, 1).u32s({5, 0x1234, 1000, 0xA, 0xB}));
    // An invalid block id is reported once per run.
    capture.add(activity(2, 1).u32s({1, 0x1234, 1, 0xD}));
    RawRun run = convertFirmwareRaw(capture);

    std::string expected =
        activityHead(48, 1, "01_Regs_Programmed") +
        ",\n        \"nBlocks\": 5,\n        \"blocks\": [\n"
        "          {\n            \"blkid\": \"4660 # OUT_OF_BOUNDS\",\n            \"len\": 1000,\n"
        "            \"id0\": \"0000000a\",\n            \"id1\": \"0000000b\"\n          }\n        ]\n" +
        kClose + ",\n" + activityHead(44, 2, "01_Regs_Programmed") +
        ",\n        \"nBlocks\": 1,\n        \"blocks\": [\n"
        "          {\n            \"blkid\": \"4660 # OUT_OF_BOUNDS\",\n            \"len\": 1,\n"
        "            \"id0\": \"0000000d\"\n          }\n        ]\n" + kClose;
    EXPECT_EQ(run.elements, expected);
    std::string out = run.out;
    std::size_t first = out.find("error: INVALID Block-ID 0x1234 found! Packet (0)\n");
    EXPECT_NE(first, std::string::npos);
    EXPECT_EQ(out.find("error: INVALID Block-ID", first + 1), std::string::npos);
    EXPECT_NE(out.find("error: Potentially corrupted data stream\n"), std::string::npos);
    EXPECT_EQ(counterIdTable().get(0x1234 & 0x7FFF, 0), 0u);
}

// Feature flags: the BVNC text, feature list, counts and block records.
PacketBuilder featureFlags(std::uint32_t ordinal, std::uint32_t flags = 0)
{
    PacketBuilder packet = activity(ordinal, 6, flags);
    packet.text("4.40.2.51", 24).u32(0x1F);
    return packet;
}

std::string bvncHead(bool multiGpu, std::uint32_t cores = 0)
{
    std::string text = ",\n        \"BVNC\": \"4.40.2.51\",\n        \"BVNCFeatureList\": \"31 # 0x0000001f\",\n";
    if (multiGpu) text += "        \"NumGPUCores\": " + std::to_string(cores) + ",\n";
    return text + "        \"blocks\": [\n";
}

std::string blockRecord(std::uint32_t id, const char* name, std::uint32_t counters, std::uint32_t blocks, bool last)
{
    return "          {\n            \"BlockID\": \"" + std::to_string(id) + " # " + name +
           "\",\n            \"NumCounters\": " + std::to_string(counters) + ",\n            \"NumBlocks\": " +
           std::to_string(blocks) + "\n          }" + (last ? "" : ",") + "\n";
}

TEST(FwRawActivity, FeatureFlagsChooseTheLayoutBySize)
{
    constexpr std::uint32_t kMultiGpu = 1u << 20;
    Capture capture;
    capture.add(activity(1, 6).u32(0x1F));                                         // 8 bytes
    capture.add(featureFlags(2).u8(1).u8(2).u8(3).padTo(40));                  // Pre9
    capture.add(featureFlags(3).u16(2).u16(0x20).u16(4).u16(2).u16(0)         // records from 34
                    .u16(0x8010).u16(6).u16(1).u16(0).padTo(160));
    capture.add(featureFlags(4, kMultiGpu).u16(1).u16(2).u16(1).u16(4).u16(3).u16(0).padTo(168));
    capture.add(featureFlags(5).u16(1).u16(2).u16(1).u16(5).u16(3).u16(0).padTo(200)); // 5 counters: from 34
    capture.add(featureFlags(6).u16(1).u16(2).u16(1).u16(6).u16(3).u16(0).padTo(232));
    RawRun run = convertFirmwareRaw(capture);
    const std::string& elements = run.elements;

    std::string eightBytes = activityHead(32, 1, "06_KOR_Zyntel_Feature_Flags") +
                             ",\n        \"BVNCFeatureList\": \"31 # 0x0000001f\",\n        \"Raw-Packet\":    {\n"
                             "      \"size\": 32,\n"
                             "      \"ADDR\": \"42 4e 59 5a  20 00 00 00  39 00 00 00  01 00 00 00\",\n"
                             "      \"ADDR\": \"0a 00 00 00  00 00 00 00  06 00 00 00  1f 00 00 00\"\n    }" +
                             kClose;
    std::string pre9 = activityHead(64, 2, "06_KOR_Zyntel_Feature_Flags") +
                       ",\n        \"BVNC\": \"4.40.2.51\",\n        \"BVNCFeatureList\": \"31 # 0x0000001f\",\n"
                       "        \"IndirectByPhantom\": 1,\n        \"PhantomIndirectByDust\": 2,\n"
                       "        \"PhantomIndirectByCluster\": 3\n" + kClose;
    std::string bvnc9 = activityHead(184, 3, "06_KOR_Zyntel_Feature_Flags") + bvncHead(false) +
                        blockRecord(0x20, "USC_0_Blk", 4, 2, false) + blockRecord(0x8010, "TPU_DA0_Blk", 6, 1, true) +
                        "        ]\n" + kClose;
    std::string bvnc19 = fwEnvelope(kSigV2b, 192, "39_FW_Activity", 4, 40) +
                         "      \"fwactdata\": {\n        \"osid\": 0,\n        \"event\": \"06_KOR_Zyntel_Feature_Flags\"" +
                         bvncHead(true, 2) + blockRecord(1, "RASTER_Blk", 4, 3, true) + "        ]\n" + kClose;
    // The first record's counter count is not 4 or 6: records start at 34,
    // where the core count reads as the block id.
    std::string current = activityHead(224, 5, "06_KOR_Zyntel_Feature_Flags") + bvncHead(false) +
                          blockRecord(2, "HUB_Blk", 1, 5, true) + "        ]\n" + kClose;
    std::string newer = activityHead(256, 6, "06_KOR_Zyntel_Feature_Flags") + bvncHead(false) +
                        blockRecord(1, "RASTER_Blk", 6, 3, true) + "        ]\n        \"Raw-Packet\":    {\n"
                        "      \"size\": 256,\n";

    std::string expectedStart = eightBytes + ",\n" + pre9 + ",\n" + bvnc9 + ",\n" + bvnc19 + ",\n" + current + ",\n" + newer;
    ASSERT_GE(elements.size(), expectedStart.size());
    EXPECT_EQ(elements.substr(0, expectedStart.size()), expectedStart);
    std::string lastRow = "      \"ADDR\": \"00 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00\"\n    }" + kClose;
    EXPECT_EQ(elements.substr(elements.size() - lastRow.size()), lastRow);

    EXPECT_NE(run.out.find("warning: Detected older format of the Zyntel FWACT packet.\nBVNC: Expected 200 bytes got 8.\n"),
              std::string::npos);
    EXPECT_NE(run.out.find("BVNC: Expected 200 bytes got 168.\n"), std::string::npos);
    EXPECT_NE(run.out.find("warning: Detected newer format of the Zyntel FWACT packet.\nBVNC: Expected 200 bytes got 232.\n"),
              std::string::npos);
    EXPECT_EQ(run.out.find("got 200"), std::string::npos);
}

TEST(FwRawActivity, VerboseLayoutChoiceReportsTheHighestMatchingIndex)
{
    Capture capture;
    capture.add(featureFlags(1).u16(0).u16(0).padTo(168));
    RawRun run = convertFirmwareRaw(capture, {"-v"});
    EXPECT_NE(run.out.find("info: Number of supported BVNC types = 8\ninfo: BVNC_7 Size = 200\n"
                           "info: Matched Expected size (200) with BVNC_7\n"),
              std::string::npos);
    EXPECT_NE(run.out.find("info: BVNC_5 Size = 168\ninfo: Matched actual data size (168) with BVNC_5\n"
                           "info: BVNC_4 Size = 168\n"),
              std::string::npos);
    EXPECT_NE(run.out.find("info: BVNC_0 Size = 0\ninfo: WARNING - different sized data detected!\n"), std::string::npos);
    EXPECT_NE(run.out.find("info: BVNC - DisplayBVNC_19 ("), std::string::npos);
    EXPECT_NE(run.out.find(", False)\ninfo: Unexpected Number of Counters at block 0 - 4 or 6 expected\n"),
              std::string::npos);
}

} // namespace
