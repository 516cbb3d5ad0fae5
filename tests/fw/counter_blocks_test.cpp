// Counter-block printing on its own: block kinds, start/stop pairs of
// correlated periods, counter ids, and streams that claim more than the
// packet holds.
#include <gtest/gtest.h>

#include "fw/block_names.h"
#include "fw/counter_blocks.h"
#include "fw/counter_ids.h"
#include "fw/fw_raw.h"
#include "json/output.h"
#include "packet_builder.h"
#include "stream/packet.h"
#include "stream/stream_file.h"

namespace {

// A V2b hardware packet whose blocks start at payload offset 44.
Bytes hardwarePacket(std::uint16_t blockCount, std::initializer_list<std::uint32_t> blocks,
                     std::uint32_t signature = kSigV2b)
{
    return PacketBuilder(typeWord(0x0B), signature).u32s({0, 0, 0, 0, 0, 0, 0, 0}).u16(44).u16(blockCount)
        .u32s({0, 0}).u32s(blocks).build();
}

struct Printed {
    std::string text;
    std::string console;
};

Printed print(Bytes begin, Bytes* end = nullptr, bool multiGpu = false)
{
    Printed printed;
    Output out, consoleOut, consoleErr;
    out.attachString(&printed.text);
    consoleOut.attachString(&printed.console);
    consoleErr.attachString(&printed.console);
    redirectConsole(&consoleOut, &consoleErr);
    Packet beginPacket(begin.data(), static_cast<std::uint32_t>(begin.size()));
    Packet endPacket = end ? Packet(end->data(), static_cast<std::uint32_t>(end->size())) : Packet();
    PrintCounterBlocks(out, beginPacket, end ? &endPacket : nullptr, kSigV2b, multiGpu);
    out.flush();
    consoleOut.flush();
    redirectConsole(nullptr, nullptr);
    return printed;
}

TEST(CounterBlocks, SixtyOneBlocksPrintOnlyTheError)
{
    EXPECT_EQ(print(hardwarePacket(61, {0x00010001, 5})).text,
              "          \"error\": \"Invalid number of blocks in counter block stream\",\n");
    EXPECT_EQ(print(hardwarePacket(0, {0x00010001, 5})).text, "");
}

TEST(CounterBlocks, EndPacketsGiveStartStopAndDifference)
{
    counterIdTable() = CounterIdTable{};
    counterIdTable().known = true;
    counterIdTable().set(3, 0, 0xAB);
    Bytes begin = hardwarePacket(3, {0x000200C1, 10, 0x80030002, 100, 200, 0x70F40001, 0x55, 50});
    Bytes end = hardwarePacket(3, {0x000200C1, 15, 0x80030002, 150, 260, 0x70F40001, 0x55, 20});
    std::string expected =
        "          {\n            \"blkid\": \"HUB_Blk\",\n            \"cntmask\": \"0xc1\",\n            \"counters\": [\n"
        "              {\"count0\": 5}\n            ]\n          },\n"
        "          {\n            \"blkid\": \"undef\",\n            \"len\": \"0x2\",\n            \"counters\": [\n"
        "             {\n               \"id\" : \"0xab  \",\n               \"value_start\" : 100,\n"
        "               \"value_stop\" : 150,\n               \"value\" : 50\n             },\n"
        "             {\n               \"id\" : \"0x0   \",\n               \"value_start\" : 200,\n"
        "               \"value_stop\" : 260,\n               \"value\" : 60\n             }\n"
        "            ]\n          },\n"
        "          {\n            \"blkid\": \"CUSTOM_4_FW\",\n            \"len\": 1,\n            \"counters\": [\n"
        "             {\n               \"ID\"          :\"0x55\",\n               \"value_start\" :  50,\n"
        "               \"value_stop\"  :  20,\n               \"value\"       :  30\n             }\n"
        "            ]\n          }\n";
    EXPECT_EQ(print(begin, &end).text, expected);
    counterIdTable() = CounterIdTable{};
}

TEST(CounterBlocks, UnknownIdsWithoutEndAndMultiGpuKeys)
{
    counterIdTable() = CounterIdTable{};
    Bytes begin = hardwarePacket(1, {0x83030001, 9});
    Bytes end = hardwarePacket(1, {0x83030001, 4});
    EXPECT_EQ(print(begin, &end, true).text,
              "          {\n            \"blkid\": \"undef\",\n            \"gpuid\": \"3\",\n            \"len\": \"0x1\",\n"
              "            \"counters\": [\n"
              "               \"value_start0\" : 9,\n               \"value_stop0\" : 4,\n"
              "               \"value0\" : 4294967291\n            ]\n          }\n");
}

TEST(CounterBlocks, StreamsThatOverCountStopAtThePacketEnd)
{
    // Three blocks claimed, one present; its 1000 values are two.
    Printed counted = print(hardwarePacket(3, {0x800303E8, 1, 2}));
    EXPECT_EQ(counted.text, "          {\n            \"blkid\": \"undef\",\n            \"len\": \"0x3e8\",\n"
                            "            \"counters\": [\n               \"value0\" : 1,\n"
                            "               \"value1\" : 2\n            ]\n          }\n");
    // A mask of six counters with one value present.
    Printed masked = print(hardwarePacket(1, {0x0000003F, 7}));
    EXPECT_EQ(masked.text, "          {\n            \"blkid\": \"TA_Blk\",\n            \"cntmask\": \"0x3f\",\n"
                           "            \"counters\": [\n              {\"count0\": 7}\n            ]\n          }\n");
    // Custom pairs past the end are not read.
    Printed custom = print(hardwarePacket(1, {0x70F0FFFF, 0x1, 2}));
    EXPECT_EQ(custom.text, "          {\n            \"blkid\": \"CUSTOM_0\",\n            \"len\": 65535,\n"
                           "            \"counters\": [\n              {\n                \"ID\" : \"0x1\",\n"
                           "                \"value\" : 2\n              }\n            ]\n          }\n");
}

TEST(BlockNames, FamiliesGroupsAndUnknownIds)
{
    std::string console;
    Output consoleOut;
    consoleOut.attachString(&console);
    redirectConsole(&consoleOut, nullptr);
    EXPECT_STREQ(BlockIdName(0x0060), "PBE_0_Blk");
    EXPECT_STREQ(BlockIdName(0x806F), "OUT_OF_BOUNDS");
    EXPECT_STREQ(BlockIdName(0x802F), "USC_DA15_Blk");
    EXPECT_STREQ(BlockIdName(0xC010), "TPU_DA_ALL");
    EXPECT_STREQ(BlockIdName(0xC030), "TEXAS_ALL");
    EXPECT_STREQ(BlockIdName(0x7AF4), "Custom_4_FW"); // GPU id bits are not part of the id
    EXPECT_STREQ(BlockIdName(0x0070), "OUT_OF_BOUNDS");
    consoleOut.flush();
    redirectConsole(nullptr, nullptr);
    EXPECT_EQ(console, "Warning: Zyntel packet unknown block id (112)!\n");
}

// The fourth signature value cannot pass the reader; the converter is
// called directly to show its hardware layout.
TEST(FwRawHardware, V2aPlus2UsesTheV2bBlockLayoutButPrintsOnlyNumblks)
{
    Bytes bytes = hardwarePacket(1, {0x00000001, 42}, kSigV2a + 2);
    StreamFile file;
    std::string text, console;
    Output consoleOut;
    consoleOut.attachString(&console);
    redirectConsole(&consoleOut, nullptr);
    file.out.attachString(&text);
    Packet packet(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    EXPECT_EQ(fwConvertRaw(file, packet), 1u);
    file.out.flush();
    redirectConsole(nullptr, nullptr);
    std::string tail = "        \"WorkTarget\": 0,\n        \"numblks\": 1,\n        \"blocks\": [\n"
                       "          {\n            \"blkid\": \"TA_Blk\",\n            \"cntmask\": \"0x1\",\n"
                       "            \"counters\": [\n              {\"count0\": 42}\n            ]\n          }\n"
                       "        ]\n      }\n    }";
    ASSERT_GE(text.size(), tail.size());
    EXPECT_EQ(text.substr(text.size() - tail.size()), tail);
}

} // namespace
