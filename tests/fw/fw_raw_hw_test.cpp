// Raw conversion of hardware packets (fixed part by signature, counter
// blocks of the packet alone) and of synchronisation-object packets.
#include <gtest/gtest.h>

#include "raw_run.h"

namespace {

constexpr std::uint32_t kMultiGpu = 1u << 20;
constexpr std::uint32_t kCycleCountInvalid = 1u << 21;

const std::string kHwHead = "      \"hwdata\": {\n        \"osid\": 0,\n        \"dmcyc\": %u,\n        \"frame\": 2,\n"
                            "        \"PID\": 3,\n        \"Context\": 4,\n        \"WorkTarget\": %u,\n";

std::string hwHead(std::uint32_t dmCyc, std::uint32_t workTarget)
{
    char text[300];
    std::snprintf(text, sizeof text, kHwHead.c_str(), dmCyc, workTarget);
    return text;
}

TEST(FwRawHardware, V2bPacketsWithAndWithoutMultiGpu)
{
    Capture capture;
    // 0x0B 3D kick: blocks at payload 44, one counter-mask block of two values.
    capture.add(PacketBuilder(typeWord(0x0B), kSigV2b).ordinal(1).timer(1)
                    .u32s({100, 2, 3, 4, 5, 6, 7, 8}).u16(44).u16(1).u32s({9, 10})
                    .u32s({0x00010003, 10, 20}));
    // TA kick with multi-GPU and an invalid cycle count; a custom block on GPU 3.
    capture.add(PacketBuilder(typeWord(0x08, 0, kMultiGpu | kCycleCountInvalid), kSigV2b).ordinal(2).timer(2)
                    .u32s({100, 2, 3, 4, 5, 6, 7, 8}).u16(48).u16(1).u32s({9, 10, 0xC})
                    .u32s({0x73F40002, 0x11, 100, 0x22, 200}));
    RawRun run = convertFirmwareRaw(capture);

    std::string expected =
        fwEnvelope(kSigV2b, 80, "0B_HW_3D_Kick", 1, 1) + hwHead(100, 5) +
        "        \"ExtJobRef\": 6,\n        \"IntJobRef\": 7,\n        \"TimeCorrIndex\": 8,\n        \"numblks\": 1,\n"
        "        \"blksoff\": 44,\n        \"WorkCtx\": 9,\n        \"CtxPriority\": 10,\n        \"blocks\": [\n"
        "          {\n            \"blkid\": \"RASTER_Blk\",\n            \"cntmask\": \"0x3\",\n            \"counters\": [\n"
        "              {\"count0\": 10},\n              {\"count1\": 20}\n"
        "            ]\n          }\n        ]\n      }\n    },\n" +
        fwEnvelope(kSigV2b, 92, "08_HW_TA_Kick", 2, 2) + hwHead(0, 5) +
        "        \"ExtJobRef\": 6,\n        \"IntJobRef\": 7,\n        \"TimeCorrIndex\": 8,\n        \"numblks\": 1,\n"
        "        \"blksoff\": 48,\n        \"WorkCtx\": 9,\n        \"CtxPriority\": 10,\n        \"GPUIdMask\": 12,\n"
        "        \"blocks\": [\n"
        "          {\n            \"blkid\": \"CUSTOM_4_FW\",\n            \"gpuid\": 3,\n            \"len\": 2,\n"
        "            \"counters\": [\n"
        "              {\n                \"ID\" : \"0x11\",\n                \"value\" : 100\n              },\n"
        "              {\n                \"ID\" : \"0x22\",\n                \"value\" : 200\n              }\n"
        "            ]\n          }\n        ]\n      }\n    }";
    EXPECT_EQ(run.elements, expected);
}

TEST(FwRawHardware, V2AndV2aReadTheirBlockCountsAtOddOffsets)
{
    forgetCounterIds();
    Capture capture;
    // V2: bytes 17 and 18 of the work target say two blocks; blocks at 24.
    capture.add(PacketBuilder(typeWord(0x0C), kSigV2).ordinal(1).timer(1)
                    .u32s({100, 2, 3, 4, 0x200, 0, 0x1, 7, 0x80030002, 1, 2}));
    // V2a: bytes 19 and 20 say one block; blocks at 32; mask 0xC1 has one value.
    capture.add(PacketBuilder(typeWord(0x29), kSigV2a).ordinal(2).timer(2)
                    .u32s({100, 2, 3, 4, 0x01000000, 0x100, 7, 0, 0x000200C1, 5, 99}));
    RawRun run = convertFirmwareRaw(capture);

    std::string expected =
        fwEnvelope(kSigV2, 68, "0C_HW_3D_Finished", 1, 1) + hwHead(100, 0x200) +
        "        \"numblks\": 2,\n        \"blocks\": [\n"
        "          {\n            \"blkid\": \"TA_Blk\",\n            \"cntmask\": \"0x1\",\n            \"counters\": [\n"
        "              {\"count0\": 7}\n            ]\n          },\n"
        "          {\n            \"blkid\": \"undef\",\n            \"len\": \"0x2\",\n            \"counters\": [\n"
        "               \"value0\" : 1,\n               \"value1\" : 2\n            ]\n          }\n"
        "        ]\n      }\n    },\n" +
        fwEnvelope(kSigV2a, 68, "29_HW_TDM_Finished", 2, 2) + hwHead(100, 0x01000000) +
        "        \"ExtJobRef\": 256,\n        \"IntJobRef\": 7,\n        \"numblks\": 1,\n        \"blocks\": [\n"
        "          {\n            \"blkid\": \"HUB_Blk\",\n            \"cntmask\": \"0xc1\",\n            \"counters\": [\n"
        "              {\"count0\": 5}\n            ]\n          }\n        ]\n      }\n    }";
    EXPECT_EQ(run.elements, expected);
}

// Synchronisation objects: eight fixed words, then the records.
PacketBuilder ufoPacket(std::uint32_t ordinal, std::uint32_t event, std::uint16_t offset, std::uint16_t count)
{
    return PacketBuilder(typeWord(0x38), kSigV2b).ordinal(ordinal).timer(ordinal)
        .u32s({event, 0, 11, 12, 13, 14}).u16(offset).u16(count).u32(7);
}

std::string syncopHead(const std::string& event)
{
    return "      \"syncop\": {\n        \"osid\": 0,\n        \"PID\": 11,\n        \"DM\": \"01_TDM\",\n"
           "        \"ExtJobRef\": 12,\n        \"IntJobRef\": 13,\n        \"Event\": \"" + event +
           "\",\n        \"Context\": 14,\n        \"UFOs\": [\n";
}

std::string checkRecord(std::uint32_t address, std::uint32_t value, bool last)
{
    char text[200];
    std::snprintf(text, sizeof text,
                  "          {\n            \"FWAddr\": \"%u # 0x%x\",\n            \"Value\": %u\n          }%s", address,
                  address, value, last ? "\n" : ",\n");
    return text;
}

TEST(FwRawUfo, RecordCountsAreLimitedByThePacketSize)
{
    Capture capture;
    // 80 bytes with event 1 hold three 8-byte records.
    capture.add(ufoPacket(1, 1, 32, 3).u32s({0x100, 1, 0x200, 2, 0x300, 3}));
    capture.add(ufoPacket(2, 1, 32, 4).u32s({0x100, 1, 0x200, 2, 0x300, 3}));
    // Failed checks and updates use three words.
    capture.add(ufoPacket(3, 3, 32, 2).u32s({0x100, 1, 2, 0x200, 3, 4}));
    capture.add(ufoPacket(4, 5, 32, 1).u32s({0x100, 1, 2}));
    // Event 6 has no record form: the maximum is 0.
    capture.add(ufoPacket(5, 6, 32, 1).u32s({0x100, 1}));
    // Records that would start past the packet are not read.
    capture.add(ufoPacket(6, 1, 50, 3).u32s({0, 0, 0, 0, 0, 0}));
    RawRun run = convertFirmwareRaw(capture);

    std::string expected =
        fwEnvelope(kSigV2b, 80, "38_UFO_info", 1, 1) + syncopHead("01_CheckSuccess") + checkRecord(0x100, 1, false) +
        checkRecord(0x200, 2, false) + checkRecord(0x300, 3, true) + "        ]\n      }\n    },\n" +
        fwEnvelope(kSigV2b, 80, "38_UFO_info", 2, 2) + ",\n" +
        fwEnvelope(kSigV2b, 80, "38_UFO_info", 3, 3) + syncopHead("03_CheckFail") +
        "          {\n            \"FWAddr\": \"256 # 0x100\",\n            \"Value\": 1,\n            \"Requires\": 2\n"
        "          },\n"
        "          {\n            \"FWAddr\": \"512 # 0x200\",\n            \"Value\": 3,\n            \"Requires\": 4\n"
        "          }\n        ]\n      }\n    },\n" +
        fwEnvelope(kSigV2b, 68, "38_UFO_info", 4, 4) + syncopHead("05_ForceUpdate") +
        "          {\n            \"FWAddr\": \"256 # 0x100\",\n            \"Old value\": 1,\n"
        "            \"Update value\": 2\n          }\n        ]\n      }\n    },\n" +
        fwEnvelope(kSigV2b, 64, "38_UFO_info", 5, 5) + ",\n" +
        fwEnvelope(kSigV2b, 80, "38_UFO_info", 6, 6) + syncopHead("01_CheckSuccess") + checkRecord(0, 0, true) +
        "        ]\n      }\n    }";
    EXPECT_EQ(run.elements, expected);
    EXPECT_NE(run.out.find("PrintRawZyntelPacketUFO: packet # 2 / 2 too large. NumUFOs = 4, Max # UFOs = 3, "
                           "Packet size = 80\n"),
              std::string::npos);
    EXPECT_NE(run.out.find("Warning: Zyntel packet unknown UFO event type (6)!\nerror: Unknown event type 6\n"
                           "PrintRawZyntelPacketUFO: packet # 5 / 5 too large. NumUFOs = 1, Max # UFOs = 0, "
                           "Packet size = 64\n"),
              std::string::npos);
}

TEST(FwRawUfo, VerboseModeDumpsAnOversizedPacketAndClosesIt)
{
    Capture capture;
    capture.add(ufoPacket(1, 1, 32, 9).u32s({0, 0}));
    RawRun run = convertFirmwareRaw(capture, {"-v"});
    std::string expected = fwEnvelope(kSigV2b, 64, "38_UFO_info", 1, 1) + "      \"RawPacket\":\n    {\n      \"size\": 64,\n";
    EXPECT_EQ(run.elements.substr(0, expected.size()), expected);
    EXPECT_EQ(run.elements.substr(run.elements.size() - 11), "    }\n    }");
}

} // namespace
