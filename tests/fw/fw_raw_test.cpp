// Raw conversion of the firmware stream, end to end: envelopes, payload
// objects by event family, rejected types, -tdelta and timer checks.
#include <gtest/gtest.h>

#include "raw_run.h"

namespace {

constexpr std::uint32_t kOsId7 = 7u << 24;

PacketBuilder gpuState(std::uint32_t ordinal, std::uint64_t timer, std::uint32_t state = 1)
{
    return PacketBuilder(typeWord(0x1B), kSigV2b).ordinal(ordinal).timer(timer).u32s({state, 0});
}

std::string gpuStateElement(std::uint32_t ordinal, std::uint64_t printedTimer)
{
    return fwEnvelope(kSigV2b, 32, "1B_GPU_STATE_CHG", ordinal, printedTimer) +
           "      \"gpustatedata\": {\n        \"osid\": 0,\n        \"state\": \"01_Active\"\n      }\n    }";
}

// The console lines that start with one of the prefixes, in order.
std::string linesStartingWith(const std::string& text, std::initializer_list<const char*> prefixes)
{
    std::string picked;
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t end = text.find('\n', at);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(at, end - at);
        for (const char* prefix : prefixes)
            if (line.rfind(prefix, 0) == 0) picked += line + "\n";
        at = end + 1;
    }
    return picked;
}

TEST(FwRawSections, SectionsAndContextSwitchesNameTheirDataMaster)
{
    Capture capture;
    capture.add(PacketBuilder(typeWord(0x01, 0, kOsId7), kSigV2b).ordinal(1).timer(1000).u32s({7, 11, 22, 33}));
    capture.add(PacketBuilder(typeWord(0x02), kSigV2b).ordinal(2).timer(2000).u32s({0x1FFFFFFF, 1, 2, 3}));
    capture.add(PacketBuilder(typeWord(0x30), kSigV2b).ordinal(3).timer(3000).u32s({9, 5, 6, 7, 8, 9}));
    RawRun run = convertFirmwareRaw(capture);

    std::string expected =
        fwEnvelope(kSigV2b, 40, "01_FW_BG_Start", 1, 1000, 7) +
        "      \"fwdata\": {\n        \"osid\": 7,\n        \"dm\": \"01_TDM\",\n        \"txtactcyc\": 11,\n"
        "        \"firmwareperfcount0\": 22,\n        \"firmwareperfcount1\": 33\n      }\n    },\n" +
        fwEnvelope(kSigV2b, 40, "02_FW_BG_End", 2, 2000) +
        "      \"fwdata\": {\n        \"osid\": 0,\n        \"dm\": \"1FFFFFFF_Invalid\",\n        \"txtactcyc\": 1,\n"
        "        \"firmwareperfcount0\": 2,\n        \"firmwareperfcount1\": 3\n      }\n    },\n" +
        fwEnvelope(kSigV2b, 48, "30_CSW_Store", 3, 3000) +
        "      \"cswdata\": {\n        \"osid\": 0,\n        \"dm\": \"OUT_OF_BOUNDS\",\n        \"frame\": 6,\n"
        "        \"Context\": 5,\n        \"txtactcyc\": 7,\n        \"perf_phase\": 9,\n        \"perf_cycle\": 8\n"
        "      }\n    }";
    EXPECT_EQ(run.elements, expected);
    EXPECT_NE(run.out.find("Warning: Zyntel packet unknown Data Master (9)!\n"), std::string::npos);
}

TEST(FwRawRejected, RejectedTypesAreDumpedWithoutOrdinalOrTimerChecks)
{
    Capture capture;
    capture.add(PacketBuilder(typeWord(0x00), kSigV2b).ordinal(1).timer(9000).u32s({0, 0}));
    capture.add(PacketBuilder(typeWord(0x1C), kSigV2b).ordinal(7).timer(9000).u32s({0, 0}));
    capture.add(PacketBuilder(typeWord(0x3A), kSigV2b).ordinal(8).timer(9000).u32s({0, 0}));
    capture.add(PacketBuilder(typeWord(0x3B), kSigV2b).ordinal(9).timer(9000).u32s({0, 0}));
    capture.add(gpuState(20, 10));
    RawRun run = convertFirmwareRaw(capture);

    EXPECT_EQ(linesStartingWith(run.out, {"error: Zyntel", "Warning: Zyntel", "warning: Zyntel"}),
              "error: Zyntel packet type unknown (0), packet skipped\n"
              "error: Zyntel packet type unknown (28), packet skipped\n"
              "error: Zyntel packet type unknown (58), packet skipped\n"
              "Warning: Zyntel packet unknown firmware event type (59)!\n"
              "error: Zyntel packet type unknown (59), packet skipped\n");

    std::string dump = "    {\n      \"size\": 32,\n      \"ADDR\": \"42 4e 59 5a  20 00 00 00  %s 00 00 00  %s 00 00 00\",\n"
                       "      \"ADDR\": \"28 23 00 00  00 00 00 00  00 00 00 00  00 00 00 00\"\n    }";
    auto dumpOf = [&](const char* type, const char* ordinal) {
        char text[400];
        std::snprintf(text, sizeof text, dump.c_str(), type, ordinal);
        return std::string(text);
    };
    EXPECT_EQ(run.elements, dumpOf("00", "01") + ",\n" + dumpOf("1c", "07") + ",\n" + dumpOf("3a", "08") + ",\n" +
                                dumpOf("3b", "09") + ",\n" + gpuStateElement(20, 10));
    EXPECT_NE(run.out.find("error: invalid packet content at file read position"), std::string::npos);
}

TEST(FwRawTimers, TimeDeltasChainAgainstThePrintedDelta)
{
    Capture capture;
    capture.add(gpuState(1, 100)).add(gpuState(2, 150)).add(gpuState(3, 400));
    RawRun run = convertFirmwareRaw(capture, {"-tdelta"});
    EXPECT_EQ(run.elements, gpuStateElement(1, 100) + ",\n" + gpuStateElement(2, 50) + ",\n" + gpuStateElement(3, 350));
    EXPECT_EQ(run.out.find("out-of-order"), std::string::npos);
}

TEST(FwRawTimers, BackwardTimersAreReportedByCause)
{
    auto powerChange = [](std::uint32_t ordinal, std::uint64_t timer, std::uint32_t change) {
        return PacketBuilder(typeWord(0x23), kSigV2b).ordinal(ordinal).timer(timer).u32s({change, 0});
    };
    Capture capture;
    capture.add(gpuState(1, 1000));
    capture.add(powerChange(2, 500, 1));  // power-on: a reset is expected
    capture.add(powerChange(3, 400, 2));  // power-off explains nothing
    capture.add(gpuState(4, 0x8000000000000005ull));
    capture.add(gpuState(5, 3));          // the timer wrapped
    capture.add(gpuState(6, 3));          // equal timers are in order
    capture.add(gpuState(7, 2));          // plain disorder, against the last value
    RawRun run = convertFirmwareRaw(capture);
    EXPECT_EQ(linesStartingWith(run.out, {"message:", "warning: Zyntel"}),
              "message: Power cycle detected, low KorTimer value [kortimer: 500] [ord: 2]\n"
              "warning: Zyntel packet has out-of-order kortimer values: previous: 500, current: 400. "
              "No PWR_CHG events seen. [ord: 3]\n"
              "message: Overflow might have occurred, previous: 9223372036854775813, current: 3. [ord: 5]\n"
              "warning: Zyntel packet has out-of-order kortimer values: previous: 9223372036854775813, current: 3. "
              "No PWR_CHG events seen. [ord: 5]\n"
              "warning: Zyntel packet has out-of-order kortimer values: previous: 3, current: 2. "
              "No PWR_CHG events seen. [ord: 7]\n");
}

TEST(FwRawPower, PowerEstimatesListTheirTuplesWithinThePacket)
{
    Capture capture;
    // Wrong version: the element is left open.
    capture.add(PacketBuilder(typeWord(0x20), kSigV2b).ordinal(1).timer(10).u32s({0x12345678, 0}));
    // Two tuples as stated.
    capture.add(PacketBuilder(typeWord(0x21, 0, 3u << 24), kSigV2b)
                    .ordinal(2).timer(20).u32s({0x5A504531, 16, 0x9A000123, 77, 0x00000001, 5}));
    // 100 tuples claimed, one present.
    capture.add(PacketBuilder(typeWord(0x22), kSigV2b).ordinal(3).timer(30).u32s({0x5A504531, 800, 0x2, 9}));
    RawRun run = convertFirmwareRaw(capture);

    std::string tuple1 = "          {\n           \"osid\": 3,\n           \"id\": \"0x123\",\n           \"highword\": 1,\n"
                         "           \"gpuid\": 1,\n           \"hwunit\": 10,\n           \"value\": \"77 # 0x0000004d\"\n"
                         "          },\n";
    std::string tuple2 = "          {\n           \"osid\": 3,\n           \"id\": \"0x1\",\n           \"highword\": 0,\n"
                         "           \"gpuid\": 0,\n           \"hwunit\": 0,\n           \"value\": \"5 # 0x00000005\"\n"
                         "          }\n";
    std::string tuple3 = "          {\n           \"osid\": 0,\n           \"id\": \"0x2\",\n           \"highword\": 0,\n"
                         "           \"gpuid\": 0,\n           \"hwunit\": 0,\n           \"value\": \"9 # 0x00000009\"\n"
                         "          }\n";
    std::string expected =
        fwEnvelope(kSigV2b, 32, "20_PWR_EST_REQUEST", 1, 10) + ",\n" +
        fwEnvelope(kSigV2b, 48, "21_PWR_EST_READY", 2, 20, 3) +
        "      \"pwrestdata\": {\n        \"version\": \"0x5a504531\",\n        \"size\": 16,\n        \"tuples\": 2,\n"
        "        \"counters\": [\n" + tuple1 + tuple2 + "        ]\n      }\n    },\n" +
        fwEnvelope(kSigV2b, 40, "22_PWR_EST_RESULT", 3, 30) +
        "      \"pwrestdata\": {\n        \"version\": \"0x5a504531\",\n        \"size\": 800,\n        \"tuples\": 100,\n"
        "        \"counters\": [\n" + tuple3 + "        ]\n      }\n    }";
    EXPECT_EQ(run.elements, expected);
    EXPECT_EQ(run.err, "error: Power estimate packet data not recognised\n");
}

TEST(FwRawPower, PowerChangesAndClockChangesAddTimestampsBySize)
{
    Capture capture;
    capture.add(PacketBuilder(typeWord(0x23), kSigV2b).ordinal(1).timer(1)
                    .u32s({1, 0xF0}).u64(111).u64(222).u32(333).u32(0).u64(444));  // 64 bytes
    capture.add(PacketBuilder(typeWord(0x23), kSigV2b).ordinal(2).timer(2)
                    .u32s({1, 0xF}).u64(111).u64(222).u32(333).u32(0));            // 56 bytes
    capture.add(PacketBuilder(typeWord(0x23), kSigV2b).ordinal(3).timer(3)
                    .u32s({2, 0xF}).u64(111).u64(222).u32(333).u32(0));            // not a power-on
    capture.add(PacketBuilder(typeWord(0x1A), kSigV2b).ordinal(4).timer(4)
                    .u64(1000).u32s({1, 0}).u64(11).u64(22).u64(33));               // 64 bytes
    capture.add(PacketBuilder(typeWord(0x1A), kSigV2b).ordinal(5).timer(5).u64(1000).u32s({2, 0}));
    RawRun run = convertFirmwareRaw(capture);

    std::string expected =
        fwEnvelope(kSigV2b, 64, "23_PWR_CHG", 1, 1) +
        "      \"pwrchg\": {\n        \"osid\": 0,\n        \"change\": \"01_PowerOn\",\n        \"domains\": \"0xf0\",\n"
        "        \"ostimestamp\": 444,\n        \"osmonotimestamp\": 111,\n        \"crtimestamp\": 222,\n"
        "        \"gpuclockspeed\": 333\n      }\n    },\n" +
        fwEnvelope(kSigV2b, 56, "23_PWR_CHG", 2, 2) +
        "      \"pwrchg\": {\n        \"osid\": 0,\n        \"change\": \"01_PowerOn\",\n        \"domains\": \"0xf\",\n"
        "        \"ostimestamp\": 111,\n        \"crtimestamp\": 222,\n        \"gpuclockspeed\": 333\n      }\n    },\n" +
        fwEnvelope(kSigV2b, 56, "23_PWR_CHG", 3, 3) +
        "      \"pwrchg\": {\n        \"osid\": 0,\n        \"change\": \"02_PowerOff\",\n        \"domains\": \"0xf\"\n"
        "      }\n    },\n" +
        fwEnvelope(kSigV2b, 64, "1A_CLKS_CHG", 4, 4) +
        "      \"clkschgdata\": {\n        \"name\": \"01_Core\",\n        \"osid\": 0,\n        \"speed\": 1000,\n"
        "        \"ostimestamp\": 33,\n        \"osmonotimestamp\": 11,\n        \"crtimestamp\": 22\n      }\n    },\n" +
        fwEnvelope(kSigV2b, 40, "1A_CLKS_CHG", 5, 5) +
        "      \"clkschgdata\": {\n        \"name\": \"OUT_OF_BOUNDS\",\n        \"osid\": 0,\n        \"speed\": 1000\n"
        "      }\n    }";
    EXPECT_EQ(run.elements, expected);
    EXPECT_NE(run.out.find("Warning: Zyntel packet unknown clock source (2)!\n"), std::string::npos);
}

TEST(FwRawWorkPeriods, OnlyTheFortyEightByteFormIsDecoded)
{
    Capture capture;
    capture.add(PacketBuilder(typeWord(0x2B), kSigV2b).ordinal(1).timer(0x300).u64(0x100).u32s({42, 0, 0, 0}));
    capture.add(PacketBuilder(typeWord(0x2B), kSigV2b).ordinal(2).timer(0x400).u64(0x100).u32s({42, 0}));
    RawRun run = convertFirmwareRaw(capture, {"-hex"});

    std::string expected =
        fwEnvelope(kSigV2b, 48, "2B_GPU_WORK_PERIOD", 1, 0x300) +
        "      \"gpuworkperiod\": {\n        \"start\": 65536,\n        \"end\": 196608,\n        \"osid\": 0,\n"
        "        \"uid\": 42,\n        \"cycles\": 131072\n      }\n    },\n";
    ASSERT_EQ(run.elements.substr(0, expected.size()), expected);
    // The -hex dump of the first packet, then the 40-byte packet: envelope,
    // its dump in place of the object, no closing brace, and the -hex dump.
    std::string rest = run.elements.substr(expected.size());
    std::string secondDump = "    {\n      \"size\": 40,\n"
                             "      \"ADDR\": \"42 4e 59 5a  28 00 00 00  2b 00 00 00  02 00 00 00\",\n"
                             "      \"ADDR\": \"00 04 00 00  00 00 00 00  00 01 00 00  00 00 00 00\",\n"
                             "      \"ADDR\": \"2a 00 00 00  00 00 00 00\"\n    }";
    std::string tail = fwEnvelope(kSigV2b, 40, "2B_GPU_WORK_PERIOD", 2, 0x400) + secondDump + ",\n" + secondDump;
    ASSERT_GE(rest.size(), tail.size());
    EXPECT_EQ(rest.substr(rest.size() - tail.size()), tail);
    EXPECT_EQ(rest.rfind("    {\n      \"size\": 48,\n", 0), 0u);
}

TEST(FwRawDvfs, EachSubEventHasItsOwnObject)
{
    Capture capture;
    capture.add(PacketBuilder(typeWord(0x32), kSigV2b).ordinal(1).timer(1).u32s({1, 0}).u64(5000).u32s({800, 70, 9}));
    capture.add(PacketBuilder(typeWord(0x32), kSigV2b).ordinal(2).timer(2).u32s({4, 0, 600, 55, 8}));
    capture.add(PacketBuilder(typeWord(0x32), kSigV2b).ordinal(3).timer(3).u32s({5, 0, 100, 90, 7, 3, 6}));
    capture.add(PacketBuilder(typeWord(0x32), kSigV2b).ordinal(4).timer(4).u32s({7, 0, 12}));
    capture.add(PacketBuilder(typeWord(0x32), kSigV2b).ordinal(5).timer(5).u32s({8, 0}));
    capture.add(gpuState(6, 6));
    RawRun run = convertFirmwareRaw(capture);

    std::string expected =
        fwEnvelope(kSigV2b, 52, "32_DVFS_Activity", 1, 1) +
        "      \"Proactive DVFS\": {\n        \"Frequency (Hz)\": 800,\n        \"Deadline (usec)\": \"5000\",\n"
        "        \"Workload cycles\": \"70\",\n        \"TxtActCyc\": 9,\n      }\n    },\n" +
        fwEnvelope(kSigV2b, 44, "32_DVFS_Activity", 2, 2) +
        "      \"DVFS\": {\n        \"Frequency (Hz)\": 600,\n        \"Utilisation (%)\": \"55\",\n"
        "        \"TxtActCyc\": 8,\n      }\n    },\n" +
        fwEnvelope(kSigV2b, 52, "32_DVFS_Activity", 3, 3) +
        "      \"Workest\": {\n        \"DM\": 01_TDM,\n        \"Index\": 3,\n        \"Cycle prediction\": 100,\n"
        "        \"Cycles taken\": 90,\n        \"TXTACTCYC\": 6,\n      }\n    },\n" +
        fwEnvelope(kSigV2b, 36, "32_DVFS_Activity", 4, 4) +
        "      \"OPP Update\": {\n        \"OPP\": 12,\n      }\n    },\n" +
        // Sub-event 8 writes nothing after the reader's separator.
        ",\n" + gpuStateElement(6, 6);
    EXPECT_EQ(run.elements, expected);
    EXPECT_NE(run.out.find("error: Zyntel DVFS packet type unknown (8), packet skipped\n"), std::string::npos);
}

} // namespace
