// End-to-end tests of the firmware correlated converter: whole captures are
// converted by the driver and the "timeperiods" array is compared as text.
#include <gtest/gtest.h>

#include <string>

#include "driver/run.h"
#include "fw/fw_correlated.h"
#include "packet_builder.h"
#include "tool_runner.h"

namespace {

constexpr std::uint32_t kMultiGpu = 1u << 20;
constexpr std::uint32_t kCycleCountInvalid = 1u << 21;

const StreamTable& correlatedOnly()
{
    static const StreamTable table{
        {"Firmware", 5000, fwConvertCorrelated, fwConvertCorrelated, fwBeginFile},
        {"Host", 1000, nullptr, nullptr, nullptr},
        {"Client", 1000, nullptr, nullptr, nullptr},
    };
    return table;
}

struct Converted {
    std::string periods; // the text between the array's opener and its closing
    std::string console;
};

Converted convert(const Capture& capture, const std::vector<std::string>& options = {})
{
    ScratchDir dir;
    dir.write("zyntel_fw_0.bin", capture);
    std::vector<std::string> arguments{"zyntel_fw_0.bin"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    ToolRun run = runInProcess(dir, arguments, correlatedOnly());
    const std::string& json = run.json["zyntel_fw_0.json"];
    const std::string opener = "\n  \"timeperiods\": [\n";
    const std::string closing = "\n  ]\n}";
    Converted result;
    result.console = run.out;
    const std::size_t begin = json.find(opener);
    if (begin == std::string::npos || json.size() < begin + opener.size() + closing.size()) {
        ADD_FAILURE() << "no time-period array in:\n" << json;
        return result;
    }
    EXPECT_EQ(json.substr(json.size() - closing.size()), closing);
    result.periods = json.substr(begin + opener.size(), json.size() - closing.size() - begin - opener.size());
    return result;
}

int nextOrdinal = 0;

// A V2b hardware packet with frame 1, pid 2, context 3, work target 4,
// job refs 5 and 6, work context 7, priority 8 and no counter blocks.
PacketBuilder hardware(std::uint32_t type, std::uint64_t timer, std::uint32_t dmCyc, std::uint32_t flags = 0,
                       std::uint32_t gpuMask = 0)
{
    PacketBuilder packet(typeWord(type, kFirmwareStream, flags));
    packet.ordinal(nextOrdinal++).timer(timer);
    packet.u32s({dmCyc, 1, 2, 3, 4, 5, 6, 0}).u16(48).u16(0).u32s({7, 8, gpuMask});
    return packet;
}

const std::string kJobKeys = "        \"ExtJobRef\": 5,\n        \"IntJobRef\": 6,\n        \"WorkCtx\": 7,\n"
                             "        \"CtxPriority\": 8,\n";

std::string hardwarePeriod(unsigned long long kicked, unsigned long long end, unsigned long long processed,
                           const std::string& name, const std::string& surname, const std::string& jobKeys = kJobKeys,
                           const std::string& blocks = "")
{
    return "    {\n      \"kicked\": " + std::to_string(kicked) + ",\n      \"start\": " + std::to_string(kicked) +
           ",\n      \"end\": " + std::to_string(end) + ",\n      \"processed\": " + std::to_string(processed) +
           ",\n      \"name\": \"" + name + "\",\n      \"surname\": \"" + surname +
           "\",\n      \"prop\": {\n        \"osid\": 0,\n        \"frame\": 1,\n        \"PID\": 2,\n"
           "        \"Context\": 3,\n        \"WorkTarget\": 4,\n        \"Cycles\": " +
           std::to_string(end - kicked) + ",\n" + jobKeys + "        \"blocks\": [\n" + blocks +
           "        ]\n      }\n    }";
}

PacketBuilder gpuState(std::uint64_t timer, std::uint32_t state)
{
    PacketBuilder packet(typeWord(0x1B));
    packet.ordinal(nextOrdinal++).timer(timer).u32(state).u32(0);
    return packet;
}

std::string gpuStatePeriod(unsigned long long time, const std::string& state)
{
    return "    {\n      \"start\": " + std::to_string(time) + ",\n      \"end\": " + std::to_string(time) +
           ",\n      \"name\": \"GPUSTATECHG\",\n      \"prop\": {\n        \"osid\": 0,\n        \"state\": \"" +
           state + "\"\n      }\n    }";
}

class FwCorrelated : public ::testing::Test {
protected:
    void SetUp() override { nextOrdinal = 0; }
};

TEST_F(FwCorrelated, NewestKickWinsAndUnmatchedFinishWritesNothing)
{
    Capture capture;
    capture.add(hardware(0x0C, 50, 0))   // 3D finish with no kick: no output, no separator
        .add(hardware(0x08, 100, 0))
        .add(hardware(0x08, 200, 0))     // replaces the first kick
        .add(hardware(0x09, 300, 0))
        .add(hardware(0x09, 400, 0))     // the slot is empty again
        .add(gpuState(500, 1));
    Converted out = convert(capture);
    EXPECT_EQ(out.periods, hardwarePeriod(200 * 256, 300 * 256, 300 * 256, "TA", "") + ",\n" +
                               gpuStatePeriod(500 * 256, "01_Active"));
}

TEST_F(FwCorrelated, AnyEndOfADataMasterClosesItsKickWithTheBeginsSurname)
{
    Capture capture;
    capture.add(hardware(0x0B, 10, 0)).add(hardware(0x17, 20, 0))   // 3D kick, TQ finish
        .add(hardware(0x0A, 30, 0)).add(hardware(0x0C, 40, 0))       // TQ kick, 3D finish
        .add(hardware(0x11, 50, 0)).add(hardware(0x18, 60, 0))       // SPM
        .add(hardware(0x19, 70, 0)).add(hardware(0x07, 80, 0))       // TA resume, out-of-memory pause
        .add(hardware(0x28, 90, 0)).add(hardware(0x29, 95, 0));
    Converted out = convert(capture);
    EXPECT_EQ(out.periods, hardwarePeriod(2560, 5120, 5120, "3D", "") + ",\n" +
                               hardwarePeriod(7680, 10240, 10240, "3D", "TQ") + ",\n" +
                               hardwarePeriod(12800, 15360, 15360, "3D", "SPM") + ",\n" +
                               hardwarePeriod(17920, 20480, 20480, "TA", "PMOOM_TAPAUSE") + ",\n" +
                               hardwarePeriod(23040, 24320, 24320, "TDM", ""));
}

TEST_F(FwCorrelated, EndFromCycleCountsSteppedBelowTheFinish)
{
    // Cycles 10 at the kick and 5 at the finish: the counter wrapped, so the
    // work took 2^32 - 5 cycles, then as many further 2^32 steps as fit.
    const unsigned long long kicked = 1000 * 256;
    const unsigned long long base = kicked + 4294967291ull;
    Capture capture;
    capture.add(hardware(0x0D, 1000, 10)).add(hardware(0x0E, 0x3000000, 5));
    capture.add(hardware(0x0D, 1000, 10)).add(hardware(0x0E, 2000, 5));      // end beyond the finish
    capture.add(hardware(0x0D, 1000, 0)).add(hardware(0x0E, 2000, 300));     // no start count
    capture.add(hardware(0x0D, 1000, 7)).add(hardware(0x0E, 2000, 99, kCycleCountInvalid));
    capture.add(hardware(0x0D, 3000, 7)).add(hardware(0x0E, 2000, 7));       // finish before kick
    Converted out = convert(capture);
    EXPECT_EQ(out.periods, hardwarePeriod(kicked, base + (1ull << 32), 0x300000000ull, "CDM", "") + ",\n" +
                               hardwarePeriod(kicked, base, 512000, "CDM", "") + ",\n" +
                               hardwarePeriod(kicked, kicked + 300, 512000, "CDM", "") + ",\n" +
                               hardwarePeriod(kicked, 512000, 512000, "CDM", "") + ",\n" +
                               hardwarePeriod(768000, 512000, 512000, "CDM", ""));
    EXPECT_EQ(out.console.find("warning: Zyntel packet (0) has invalid timestamps"), std::string::npos);
    EXPECT_NE(out.console.find("warning: Zyntel packet (2) has invalid timestamps (kicked: 256000, start: 256000, "
                               "end: 4295223291, processed: 512000)\n"),
              std::string::npos);
    EXPECT_NE(out.console.find("warning: Zyntel packet (8) has invalid timestamps (kicked: 768000, start: 768000, "
                               "end: 512000, processed: 512000)\n"),
              std::string::npos);
}

TEST_F(FwCorrelated, PeriodicSampleAndNullKickStandAlone)
{
    // One counter-mask block of TA_Blk with counters 0 and 2.
    auto withBlock = [](PacketBuilder packet) { return packet.putU32(32, 48 | 1u << 16).u32s({5, 11, 22}); };
    Capture capture;
    capture.add(withBlock(hardware(0x12, 10, 3))).add(withBlock(hardware(0x2A, 20, 3)));
    Converted out = convert(capture);
    const std::string blockHead = "          {\n            \"blkid\": \"TA_Blk\",\n            \"cntmask\": \"0x5\",\n"
                                  "            \"counters\": [\n";
    EXPECT_EQ(out.periods,
              hardwarePeriod(2560, 2560, 2560, "PERIODIC", "", kJobKeys,
                             blockHead + "              {\"count0\": 11},\n              {\"count2\": 22}\n"
                                         "            ]\n          }\n") +
                  ",\n" +
                  hardwarePeriod(5120, 5120, 5120, "GP", "", kJobKeys,
                                 blockHead + "              {\"count0\": 0},\n              {\"count2\": 0}\n"
                                             "            ]\n          }\n"));
}

TEST_F(FwCorrelated, CounterBlocksShowStartStopDifferences)
{
    // A mask block and a custom block (id 0x70F4, one id/value pair).
    auto withBlocks = [](PacketBuilder packet, std::uint32_t first, std::uint32_t value) {
        return packet.putU32(32, 48 | 2u << 16).u32s({0x1, first, 0x70F40001, 0x55, value});
    };
    Capture capture;
    capture.add(withBlocks(hardware(0x13, 10, 0), 100, 130)).add(withBlocks(hardware(0x14, 20, 0), 90, 100));
    Converted out = convert(capture);
    EXPECT_EQ(out.periods,
              hardwarePeriod(2560, 5120, 5120, "RTU", "", kJobKeys,
                             "          {\n            \"blkid\": \"TA_Blk\",\n            \"cntmask\": \"0x1\",\n"
                             "            \"counters\": [\n              {\"count0\": 4294967286}\n"
                             "            ]\n          },\n"
                             "          {\n            \"blkid\": \"CUSTOM_4_FW\",\n            \"len\": 1,\n"
                             "            \"counters\": [\n"
                             "             {\n               \"ID\"          :\"0x55\",\n"
                             "               \"value_start\" :  130,\n               \"value_stop\"  :  100,\n"
                             "               \"value\"       :  30\n             }\n"
                             "            ]\n          }\n"));
}

TEST_F(FwCorrelated, MultiGpuTaPairsByTheMaskAndRejectsHighGpus)
{
    const std::string multiGpuKeys = "        \"ExtJobRef\": 5,\n        \"IntJobRef\": 6,\n        \"WorkCtx\": 7,\n"
                                     "        \"CtxPriority\": 8,\n        \"GPUIdMask\": 4,\n";
    Capture capture;
    capture.add(hardware(0x08, 10, 0, kMultiGpu, 0x4))    // GPU 2
        .add(hardware(0x08, 20, 0, kMultiGpu, 0x2))       // GPU 1
        .add(hardware(0x08, 25, 0, kMultiGpu, 0x10))      // GPU 4: rejected
        .add(hardware(0x09, 30, 0, kMultiGpu, 0xC))       // lowest bit: GPU 2
        .add(hardware(0x09, 40, 0, 0, 0x2));              // no flag: GPU 0, nothing open
    Converted out = convert(capture);
    EXPECT_EQ(out.periods, hardwarePeriod(2560, 7680, 7680, "TA", "", multiGpuKeys));
    EXPECT_NE(out.console.find("warning: GEOM GPU Id too high, packet skipped\n"), std::string::npos);
}

TEST_F(FwCorrelated, GpuKickIdAndOlderSignatures)
{
    PacketBuilder kick = hardware(0x0B, 10, 0, kMultiGpu, 1);
    kick.putU32(32, 49).u8(9);
    PacketBuilder v2aKick(typeWord(0x0B), kSigV2a);
    // The V2a block count sits at the odd offset 19, so ExtJobRef's low byte is its high byte.
    v2aKick.ordinal(nextOrdinal++).timer(30).u32s({0, 1, 2, 3, 4, 0x500, 6, 0});
    PacketBuilder v2aFinish(typeWord(0x0C), kSigV2a);
    v2aFinish.ordinal(nextOrdinal++).timer(40).u32s({0, 1, 2, 3, 4, 0x500, 6, 0});
    PacketBuilder v2Kick(typeWord(0x0D), kSigV2);
    v2Kick.ordinal(nextOrdinal++).timer(50).u32s({0, 1, 2, 3, 4, 0});
    PacketBuilder v2Finish(typeWord(0x0E), kSigV2);
    v2Finish.ordinal(nextOrdinal++).timer(60).u32s({0, 1, 2, 3, 4, 0});
    Capture capture;
    capture.add(kick).add(hardware(0x0C, 20, 0, kMultiGpu)).add(v2aKick).add(v2aFinish).add(v2Kick).add(v2Finish);
    Converted out = convert(capture);
    EXPECT_EQ(out.periods,
              hardwarePeriod(2560, 5120, 5120, "3D", "",
                             "        \"ExtJobRef\": 5,\n        \"IntJobRef\": 6,\n        \"WorkCtx\": 7,\n"
                             "        \"CtxPriority\": 8,\n        \"GPUIdMask\": 1,\n        \"GPUKickId\": 9,\n") +
                  ",\n" +
                  hardwarePeriod(7680, 10240, 10240, "3D", "", "        \"ExtJobRef\": 1280,\n        \"IntJobRef\": 6,\n") +
                  ",\n" + hardwarePeriod(12800, 15360, 15360, "CDM", "", ""));
}

PacketBuilder section(std::uint32_t type, std::uint64_t timer, std::uint32_t dataMaster, std::uint32_t active,
                      std::uint32_t perf0, std::uint32_t perf1, std::uint32_t flags = 0)
{
    PacketBuilder packet(typeWord(type, kFirmwareStream, flags));
    packet.ordinal(nextOrdinal++).timer(timer).u32s({dataMaster, active, perf0, perf1});
    return packet;
}

TEST_F(FwCorrelated, SectionsCorrectOneActiveCycleWrap)
{
    Capture capture;
    capture.add(section(0x01, 10, 0x1FFFFFFF, 0, 0, 0))       // no data master: ignored
        .add(section(0x03, 10, 3, 0xFFFFF0, 10, 20, 0x8000 | 2u << 24))
        .add(section(0x02, 15, 0x1FFFFFFF, 0, 0, 0))
        .add(section(0x04, 20, 3, 0x10, 15, 5))
        .add(section(0x05, 30, 7, 1, 0, 0))
        .add(section(0x06, 40, 7, 2, 0, 0));
    Converted out = convert(capture);
    EXPECT_EQ(out.periods,
              "    {\n      \"start\": 2560,\n      \"end\": 5120,\n      \"name\": \"T1 IRQ 3D\",\n      \"prop\": {\n"
              "        \"osid\": 2,\n        \"actcyc_end\": 16777232,\n        \"actcyc_start\": 16777200,\n"
              "        \"metacount0\": 5,\n        \"metacount1\": 4294967281\n      }\n    },\n"
              "    {\n      \"start\": 7680,\n      \"end\": 10240,\n      \"name\": \"T0 DBG TDM\",\n      \"prop\": {\n"
              "        \"osid\": 0,\n        \"actcyc_end\": 2,\n        \"actcyc_start\": 1,\n"
              "        \"metacount0\": 0,\n        \"metacount1\": 0\n      }\n    }");
}

TEST_F(FwCorrelated, ContextSwitchPairsStoreWithCompletion)
{
    auto csw = [](std::uint32_t type, std::uint64_t timer, std::uint32_t cycle) {
        PacketBuilder packet(typeWord(type));
        packet.ordinal(nextOrdinal++).timer(timer).u32s({2, 11, 12, 13, cycle, 14});
        return packet;
    };
    Capture capture;
    capture.add(csw(0x30, 50, 100)).add(csw(0x31, 40, 150));
    Converted out = convert(capture);
    EXPECT_EQ(out.periods, "    {\n      \"start\": 12800,\n      \"end\": 10240,\n      \"name\": \"CSW_TA\",\n"
                           "      \"surname\": \"\",\n      \"prop\": {\n        \"osid\": 0,\n        \"frame\": 12,\n"
                           "        \"Context\": 11,\n        \"Phase\": 14,\n        \"Cycle\": 50\n      }\n    }");
    EXPECT_NE(out.console.find("warning: Zyntel packet (0) has invalid timestamps (start: 12800, end: 10240)\n"),
              std::string::npos);
}

PacketBuilder dvfs(std::uint64_t timer, std::initializer_list<std::uint32_t> words)
{
    PacketBuilder packet(typeWord(0x32));
    packet.ordinal(nextOrdinal++).timer(timer).u32s(words);
    return packet;
}

TEST_F(FwCorrelated, FrequencyScalingPairsAndOperatingPoints)
{
    Capture capture;
    capture.add(dvfs(1, {3, 0, 500, 10, 100}))
        .add(dvfs(2, {4, 0, 600, 80, 160}))
        .add(dvfs(3, {5, 0, 1, 2, 3, 4, 1000}))
        .add(dvfs(4, {6, 0, 70, 80, 3, 9, 1010}))
        .add(dvfs(5, {1, 0, 0, 0, 1, 2, 300}))
        .add(dvfs(6, {2, 0, 1000, 0, 2000, 3000, 333}))
        .add(dvfs(7, {7, 0, 12}))
        .add(dvfs(8, {9, 0}));
    Converted out = convert(capture);
    EXPECT_EQ(out.periods,
              "    {\n      \"start\": 256,\n      \"end\": 512,\n      \"name\": \"DVFS\",\n      \"prop\": {\n"
              "        \"osid\": 0,\n        \"Utilisation (%)\": 80,\n        \"Frequency (Hz)\": 600,\n"
              "        \"TXTACTCYC\": 60\n      }\n    },\n"
              "    {\n      \"start\": 768,\n      \"end\": 1024,\n      \"name\": \"WORKEST_3D\",\n      \"prop\": {\n"
              "        \"osid\": 0,\n        \"Index\": 9,\n        \"Cycle prediction\": 70,\n"
              "        \"Cycles taken\": 80,\n        \"TXTACTCYC\": 10\n      }\n    },\n"
              "    {\n      \"start\": 1280,\n      \"end\": 1536,\n      \"name\": \"Proactive DVFS\",\n"
              "      \"prop\": {\n        \"osid\": 0,\n        \"Deadline (usec)\": 1000,\n"
              "        \"Frequency (Hz)\": 2000,\n        \"Workload Cycles\": 3000,\n        \"TXTACTCYC\": 33\n"
              "      }\n    },\n"
              "    {\n      \"start\": 1792,\n      \"end\": 1792,\n      \"name\": \"OPP Update\",\n      \"prop\": {\n"
              "        \"osid\": 0,\n        \"OPP\": 12\n      }\n    }");
    EXPECT_NE(out.console.find("warning: Zyntel DVFS data corrupt, packet skipped\n"), std::string::npos);
}

TEST_F(FwCorrelated, GpuWorkPeriodDoesNotAskForASeparator)
{
    PacketBuilder period(typeWord(0x2B));
    period.ordinal(nextOrdinal++).timer(10).u64(20).u32(77).u32(0);
    Capture capture;
    capture.add(period).add(gpuState(30, 0)).add(gpuState(40, 2));
    Converted out = convert(capture);
    EXPECT_EQ(out.periods, "    {\n      \"start\": 5120,\n      \"end\": 2560,\n      \"name\": \"GPUWORKPERIOD\",\n"
                           "      \"prop\": {\n        \"osid\": 0,\n        \"UID\": 77,\n"
                           "        \"Cycles\": 18446744073709549056\n      }\n    }" +
                               gpuStatePeriod(7680, "00_Idle") + ",\n" + gpuStatePeriod(10240, "02_Blocked"));
    EXPECT_NE(out.console.find("warning: GPU work period zyntel packet (0) has invalid timestamps (start: 5120, "
                               "end: 2560)\n"),
              std::string::npos);
}

TEST_F(FwCorrelated, InstantClockPowerAndEstimateEvents)
{
    PacketBuilder clock(typeWord(0x1A, kFirmwareStream, 1u << 24));
    clock.ordinal(nextOrdinal++).timer(1).u64(900).u32(1).u32(0).u64(11).u64(22);   // size 56
    PacketBuilder power(typeWord(0x23));
    power.ordinal(nextOrdinal++).timer(2).u32(1).u32(0xF).u64(31).u64(32).u32(33).u32(0).u64(34);   // size 64
    PacketBuilder estimate(typeWord(0x21));
    estimate.ordinal(nextOrdinal++).timer(3).u32(0x5A504531).u32(16).u32s({0x85020007, 40, 0x3, 41});
    Capture capture;
    capture.add(clock).add(power).add(estimate).add(gpuState(4, 1));
    Converted out = convert(capture);
    EXPECT_EQ(out.periods,
              "    {\n      \"start\": 256,\n      \"end\": 256,\n      \"name\": \"CLKCHG\",\n      \"prop\": {\n"
              "        \"osid\": 1,\n        \"name\": \"01_Core\",\n        \"speed\": 900,\n"
              "        \"ostimestamp\": 11,\n        \"crtimestamp\": 22\n      }\n    },\n"
              "    {\n      \"start\": 512,\n      \"end\": 512,\n      \"name\": \"PWRCHG\",\n      \"prop\": {\n"
              "        \"osid\": 0,\n        \"change\": \"01_PowerOn\",\n        \"domains\": \"0xf\",\n"
              "        \"ostimestamp\": 34,\n        \"osmonotimestamp\": 31,\n        \"crtimestamp\": 32,\n"
              "        \"gpuclockspeed\": 33\n\n      }\n    },\n"
              "    {\n      \"start\": 768,\n      \"end\": 768,\n      \"name\": \"PWREST_READY\",\n"
              "      \"pwrestdata\": {\n        \"tuples\": \"2\",\n        \"counters\": [\n"
              "          {\n           \"id\": 7,\n           \"highword\": 1,\n           \"gpuid\": 0,\n"
              "           \"hwunit\": 5,\n           \"value\": 40\n          },\n"
              "          {\n           \"id\": 3,\n           \"highword\": 0,\n           \"gpuid\": 0,\n"
              "           \"hwunit\": 0,\n           \"value\": 41\n          }\n"
              "        ]\n      }\n    }\n,\n" +
                  gpuStatePeriod(1024, "01_Active"));
}

PacketBuilder ufo(std::uint32_t event, std::uint32_t count)
{
    PacketBuilder packet(typeWord(0x38));
    packet.ordinal(nextOrdinal++).timer(5).u32s({event, 0, 10, 11, 12, 13}).u16(32).u16(count).u32(4);
    packet.u32s({0x100, 1, 0x200, 2, 0x300, 3});   // three address/value records: 80 bytes in all
    return packet;
}

TEST_F(FwCorrelated, UfoListsAndTheirSizeLimit)
{
    Capture capture;
    capture.add(ufo(1, 3)).add(ufo(1, 4));
    Converted out = convert(capture);
    std::string records;
    for (int i = 1; i <= 3; ++i)
        records += "          {\n            \"FWAddr\": \"" + std::to_string(i * 256) + " # 0x" + std::to_string(i) +
                   "00\",\n            \"Value\": " + std::to_string(i) + "\n          }" + (i < 3 ? ",\n" : "\n");
    EXPECT_EQ(out.periods, "    {\n      \"start\": 1280,\n      \"end\": 1280,\n      \"name\": \"UFO\",\n"
                           "      \"prop\": {\n        \"osid\": 0,\n        \"PID\": 10,\n        \"DM\": \"CDM\",\n"
                           "        \"ExtJobRef\": 11,\n        \"IntJobRef\": 12,\n"
                           "        \"Event\": \"01_CheckSuccess\",\n        \"Context\": 13,\n        \"UFOs\": [\n" +
                               records + "        ]\n      }\n    },\n");
    EXPECT_NE(out.console.find("PrintUFOPacket: packet # 1 / 1 too large. NumUFOs = 4, Max #UFOs = 3, "
                               "Packet size = 80\n"),
              std::string::npos);
}

TEST_F(FwCorrelated, TimerChecksSeeTheUnscaledTimer)
{
    Capture capture;
    capture.add(gpuState(100, 0)).add(gpuState(50, 0)).add(gpuState(50, 0));
    Converted out = convert(capture);
    EXPECT_NE(out.console.find("warning: Zyntel packet has out-of-order kortimer values: previous: 100, current: 50. "
                               "No PWR_CHG events seen. [ord: 1]\n"),
              std::string::npos);
    EXPECT_EQ(out.console.find("[ord: 2]"), std::string::npos);
}

PacketBuilder activity(std::initializer_list<std::uint32_t> words)
{
    PacketBuilder packet(typeWord(0x39));
    packet.ordinal(nextOrdinal++).timer(1).u32s(words);
    return packet;
}

TEST_F(FwCorrelated, ActivityEvents)
{
    Capture capture;
    capture.add(activity({2, 0x1FFFFFFF, 1, 42, 0}))   // full recovery record
        .add(activity({3, 4, 9}))                      // older, shorter record
        .add(activity({7, 0x89ABCDEF, 0x01234567}))
        .add(activity({8, 0}));
    Converted out = convert(capture);
    const std::string head = "    {\n      \"start\": 256,\n      \"end\": 256,\n      \"name\": \"FW_ACTIVITY\",\n"
                             "      \"prop\": {\n        \"osid\": 0,\n        \"Event\": ";
    EXPECT_EQ(out.periods, head + "\"02_HWR_Detected\",\n        \"DM\": \"Invalid\",\n"
                                  "        \"Reason\": \"01_Lockup\",\n        \"Context\": 42      }\n    },\n" +
                               head + "\"03_HWR_Reset_Required\",\n        \"dword0\": 4,\n        \"dword1\": 9"
                                      "      }\n    },\n" +
                               head + "\"07_Zyntel_Filter_Set\",\n        \"EventMask\": \"0x0123456789abcdef\"\n"
                                      "      }\n    },\n" +
                               head + "\"08_Kick_Cancel\"      }\n    }");
}

TEST_F(FwCorrelated, RegisteredCounterIdsLabelLaterValueCounts)
{
    // Block 32 programs counters 0xA1 and 0xA2; a later value-count block of
    // the same row (id 0x8020) prints its values under those ids.
    auto withValues = [](PacketBuilder packet, std::uint32_t first, std::uint32_t second) {
        return packet.putU32(32, 48 | 1u << 16).u32s({0x80200002, first, second});
    };
    Capture capture;
    capture.add(activity({1, 0}))
        .add(activity({1, 1, 32, 2, 0xA1, 0xA2}))
        .add(withValues(hardware(0x15, 10, 0), 5, 7))
        .add(withValues(hardware(0x16, 20, 0), 8, 7));
    Converted out = convert(capture, {"-v"});
    EXPECT_EQ(out.periods.substr(0, out.periods.find("},\n") + 3),
              "    {\n      \"start\": 256,\n      \"end\": 256,\n      \"name\": \"FW_ACTIVITY\",\n"
              "      \"prop\": {\n        \"osid\": 0,\n        \"Event\": \"01_Regs_Programmed\",\n"
              "        \"nBlocks\": 0\n      }\n    },\n");
    EXPECT_NE(out.periods.find("            \"blkid\": \"USC_DA0_Blk\",\n            \"len\": \"0x2\",\n"
                               "            \"counters\": [\n"
                               "             {\n               \"id\" : \"0xa1  \",\n"
                               "               \"value_start\" : 5,\n               \"value_stop\" : 8,\n"
                               "               \"value\" : 3\n             },\n"
                               "             {\n               \"id\" : \"0xa2  \",\n"
                               "               \"value_start\" : 7,\n               \"value_stop\" : 7,\n"
                               "               \"value\" : 0\n             }\n"),
              std::string::npos)
        << out.periods;
    EXPECT_NE(out.console.find("PrintFWACTPacket: Expected Size 8, actual size 8\n"), std::string::npos);
}

TEST_F(FwCorrelated, UnknownTypesAreRejectedAndPendingBeginsEndWithTheFile)
{
    PacketBuilder undefined(typeWord(0x1C));
    undefined.ordinal(nextOrdinal++).timer(1).u32(0).u32(0);
    Capture first;
    first.add(undefined).add(hardware(0x08, 2, 0));
    Converted out = convert(first);
    EXPECT_EQ(out.periods, "");
    EXPECT_NE(out.console.find("error: Firmware packet type unknown (28), packet skipped\n"), std::string::npos);

    // A new file starts with no open kick.
    Capture second;
    second.add(hardware(0x09, 3, 0));
    EXPECT_EQ(convert(second).periods, "");
}

} // namespace
