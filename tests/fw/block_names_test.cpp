// Block-id names, and the hardware layout of the signature the reader
// never passes.
#include <gtest/gtest.h>

#include "fw/block_names.h"
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
