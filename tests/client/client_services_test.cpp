// Services sub-stream: kicks, enqueues, sync objects, fence waits, the
// software transfer queue and unknown types, in both modes.
#include <gtest/gtest.h>

#include "client_fixture.h"

namespace {

TEST(ClientServices, KicksAndSoftwareTransferQueueInBothModes)
{
    Capture capture;
    capture.add(ClientPacket(1, 32).u32(24, 4).u32(28, 7).ordinal(0).timer(100))
        .add(ClientPacket(8, 32).u32(24, 21).ordinal(1).timer(110))
        .add(ClientPacket(9, 32).u32(24, 22).ordinal(2).timer(120))
        .add(ClientPacket(2, 32).u32(24, 4).u32(28, 7).ordinal(3).timer(150))
        .add(ClientPacket(2, 32).u32(24, 9).ordinal(4).timer(160));

    std::string console;
    EXPECT_EQ(rawElements(capture, &console),
              envelope(32, "01_KickStart", 0, 100, "Services") +
                  "      \"korkick\": {\n        \"Type:\": \"04_CDM\",\n        \"ExtJobRefID:\": 7\n      }\n    },\n" +
                  envelope(32, "08_undef", 1, 110, "Services") +
                  "      \"korkick\": {\n        \"ExtJobRefID:\": 21\n      }\n    },\n" +
                  envelope(32, "09_undef", 2, 120, "Services") +
                  "      \"korkick\": {\n        \"ExtJobRefID:\": 22\n      }\n    },\n" +
                  envelope(32, "02_KickEnd", 3, 150, "Services") +
                  "      \"korkick\": {\n        \"Type:\": \"04_CDM\",\n        \"ExtJobRefID:\": 7\n      }\n    },\n" +
                  envelope(32, "02_KickEnd", 4, 160, "Services") +
                  "      \"korkick\": {\n        \"Type:\": \"OUT_OF_BOUNDS\",\n        \"ExtJobRefID:\": 0\n      }\n    }");
    EXPECT_TRUE(contains(console, "Warning: Zyntel packet unknown event type (9)!\n"));

    // The kick end of an unknown kick type has no begin and is dropped.
    EXPECT_EQ(correlatedElements(capture),
              period(110, 120, "SWTQ") + "        \"JobRef\": 21,\n      }\n    },\n" + period(100, 150, "KORKICK") +
                  "        \"type\": \"04_CDM\"\n      }\n    }");
}

TEST(ClientServices, EnqueueWithTheWideKickTypeBound)
{
    Capture capture;
    for (std::uint32_t kickType : {12u, 17u, 25u})
        capture.add(ClientPacket(3, 56).u32(24, kickType).u32(28, 300).u32(32, 5).u64(40, 1ull << 40).u32(48, 2)
                        .u32(52, 3).ordinal(kickType).timer(kickType));
    std::string console;
    const std::string raw = rawElements(capture, &console);
    EXPECT_TRUE(contains(raw, envelope(56, "03_ENQ_Work", 12, 12, "Services") +
                                  "      \"enqueue\": {\n        \"Type:\": \"<UNKNOWN>\",\n        \"PID:\": 300,\n"
                                  "        \"ExtJobRefID:\": 5,\n        \"WorkCtx:\": 1099511627776,\n"
                                  "        \"WorkTarget:\": 2,\n        \"ClientFlags:\": 3\n      }\n    },\n"));
    EXPECT_TRUE(contains(raw, "\"Type:\": \"TQ2D\""));
    EXPECT_TRUE(contains(raw, "\"Type:\": \"OUT_OF_BOUNDS\""));
    EXPECT_TRUE(contains(console, "Warning: Zyntel packet unknown host kick type (25)!\n"));

    const std::string correlated = correlatedElements(capture);
    EXPECT_TRUE(contains(correlated, period(17, 17, "ENQ_CLIENT") +
                                         "        \"type\": \"TQ2D\",\n        \"PID\": 300,\n        \"JobRef\": 5,\n"
                                         "        \"WorkCtx\": 1099511627776,\n        \"WorkTarget\": 2,\n"
                                         "        \"ClientFlags\": 3\n      }\n    }"));
}

// One sync allocation of every resource type, including the export fence
// (5, raw only) and an unknown one (6).
Capture syncAllocations()
{
    Capture capture;
    capture.add(ClientPacket(4, 64).u32(24, 1).u32(32, 10).u32(36, 3).u32(40, 2).text(44, "tl").ordinal(0).timer(1))
        .add(ClientPacket(4, 72).u32(24, 2).u32(32, 10).u32(36, -4).u32(40, 3).u64(48, 99).text(56, "sw").ordinal(1)
                 .timer(2))
        .add(ClientPacket(4, 48).u32(24, 3).u32(32, 10).u32(36, 5).u32(40, 6).ordinal(2).timer(3))
        .add(ClientPacket(4, 48).u32(24, 4).u32(32, 10).u32(36, 5).u32(40, 6).u32(44, 7).ordinal(3).timer(4))
        .add(ClientPacket(4, 64).u32(24, 5).u32(32, 10).u32(36, 8).u64(40, 77).text(48, "ex").ordinal(4).timer(5))
        .add(ClientPacket(4, 48).u32(24, 6).ordinal(5).timer(6));
    return capture;
}

TEST(ClientServices, SyncAllocationsRaw)
{
    std::string console;
    EXPECT_EQ(rawElements(syncAllocations(), &console),
              envelope(64, "04_SyncAlloc", 0, 1, "Services") +
                  "      \"timeline\": {\n        \"Name\": \"tl\",\n        \"PID\": 10,\n        \"TimelineID\": 3,\n"
                  "        \"Variant\": \"02_SwTimeline\"\n      }\n    },\n" +
                  envelope(72, "04_SyncAlloc", 1, 2, "Services") +
                  "      \"sw_fence\": {\n        \"Name\": \"sw\",\n        \"PID\": 10,\n        \"FenceID\": -4,\n"
                  "        \"TimelineID\": 3,\n        \"SyncPtIdx\": 99\n      }\n    },\n" +
                  envelope(48, "04_SyncAlloc", 2, 3, "Services") +
                  "      \"fence_dup\": {\n        \"InputFenceID:\": 5,\n        \"OutputFenceID:\": 6,\n"
                  "        \"PID\": 10\n      }\n    },\n" +
                  envelope(48, "04_SyncAlloc", 3, 4, "Services") +
                  "      \"fence_merge\": {\n        \"InputFenceID1:\": 5,\n        \"InputFenceID2:\": 6,\n"
                  "        \"OutputFenceID:\": 7,\n        \"PID\": 10\n      }\n    },\n" +
                  envelope(64, "04_SyncAlloc", 4, 5, "Services") +
                  "      \"export_fence\": {\n        \"Name\": \"ex\",\n        \"PID\": 10,\n        \"FenceID\": 8,\n"
                  "        \"SyncPtIdx\": 77\n      }\n    },\n" +
                  envelope(48, "04_SyncAlloc", 5, 6, "Services"));
    EXPECT_TRUE(contains(console, "Warning: Unknown sync resource type (6) encountered in Zyntel client stream!\n"));
}

TEST(ClientServices, SyncAllocationsCorrelated)
{
    std::string console;
    EXPECT_EQ(correlatedElements(syncAllocations(), &console),
              period(1, 1, "SYNC_ALLOC") +
                  "        \"type\": \"timeline\",\n        \"Name\": \"tl\",\n        \"PID\": 10,\n"
                  "        \"TimelineID\": 3,\n        \"Variant\": \"02_SwTimeline\"\n      }\n    },\n" +
                  period(2, 2, "SYNC_ALLOC") +
                  "        \"type\": \"sw_fence\",\n        \"Name\": \"sw\",\n        \"PID\": 10,\n"
                  "        \"FenceID\": -4,\n        \"TimelineID\": 3,\n        \"SyncPtIdx\": 99\n      }\n    },\n" +
                  period(3, 3, "SYNC_ALLOC") +
                  "        \"type\": \"fence_dup\",\n        \"InputFenceID:\": 5,\n        \"OutputFenceID:\": 6,\n"
                  "        \"PID\": 10\n      }\n    },\n" +
                  period(4, 4, "SYNC_ALLOC") +
                  "        \"type\": \"fence_merge\",\n        \"InputFenceID1:\": 5,\n        \"InputFenceID2:\": 6,\n"
                  "        \"OutputFenceID:\": 7,\n        \"PID\": 10\n      }\n    },\n" +
                  period(5, 5, "SYNC_ALLOC") + "      }\n    },\n" + period(6, 6, "SYNC_ALLOC") + "      }\n    }");
    EXPECT_TRUE(contains(console, "Warning: Unknown sync resource type (5) encountered in Zyntel client stream!\n"));
    EXPECT_TRUE(contains(console, "Warning: Unknown sync resource type (6) encountered in Zyntel client stream!\n"));
}

TEST(ClientServices, SyncFreeFenceWaitAndTimelineAdvanceInBothModes)
{
    Capture capture;
    for (std::uint32_t resource = 1; resource <= 6; ++resource)
        capture.add(ClientPacket(5, 40).u32(24, resource).u32(28, 10).u32(32, resource * 10).ordinal(resource - 1)
                        .timer(resource));
    for (std::uint32_t phase = 0; phase <= 2; ++phase)
        capture.add(ClientPacket(6, 40).u32(24, phase).u32(28, 10).u32(32, 3).u32(36, phase == 0 ? 500 : 2)
                        .ordinal(6 + phase).timer(10 + phase));
    capture.add(ClientPacket(7, 40).u32(24, 10).u32(28, 4).u64(32, 12).ordinal(9).timer(20));

    std::string console;
    const std::string raw = rawElements(capture, &console);
    EXPECT_TRUE(contains(raw, envelope(40, "05_SyncFree", 0, 1, "Services") +
                                  "      \"timeline\": {\n        \"PID\": 10,\n        \"TimelineID\": 10\n      }\n    },\n" +
                                  envelope(40, "05_SyncFree", 1, 2, "Services") +
                                  "      \"fence\": {\n        \"PID\": 10,\n        \"FenceID\": 20\n      }\n    },\n"));
    // Resource 5 is a fence here; 3, 4 and 6 leave their objects open.
    EXPECT_TRUE(contains(raw, envelope(40, "05_SyncFree", 3, 4, "Services") + ",\n" +
                                  envelope(40, "05_SyncFree", 4, 5, "Services") +
                                  "      \"fence\": {\n        \"PID\": 10,\n        \"FenceID\": 50\n      }\n    },\n" +
                                  envelope(40, "05_SyncFree", 5, 6, "Services") + ",\n"));
    EXPECT_TRUE(contains(raw, envelope(40, "06_SyncFenceWait", 6, 10, "Services") +
                                  "      \"begin\": {\n        \"PID\": 10,\n        \"FenceID\": 3,\n"
                                  "        \"TimeoutInMs\": 500\n      }\n    },\n" +
                                  envelope(40, "06_SyncFenceWait", 7, 11, "Services") +
                                  "      \"end\": {\n        \"PID\": 10,\n        \"FenceID\": 3,\n"
                                  "        \"Result\": \"02_Passed\"\n      }\n    },\n" +
                                  envelope(40, "06_SyncFenceWait", 8, 12, "Services") + ",\n" +
                                  envelope(40, "07_SyncSWTLAdv", 9, 20, "Services") +
                                  "      \"sw_tl_advance\": {\n        \"PID\": 10,\n        \"TimelineID\": 4,\n"
                                  "        \"SyncPtIdx\": 12\n      }\n    }"));
    EXPECT_TRUE(contains(console, "Warning: Unknown sync fence-wait type (2) encountered in Zyntel client stream!\n"));

    const std::string correlated = correlatedElements(capture, &console);
    EXPECT_TRUE(contains(correlated, period(2, 2, "SYNC_FREE") +
                                         "        \"type\": \"fence\",\n        \"PID\": 10,\n        \"FenceID\": 20\n"
                                         "      }\n    },\n" +
                                         period(3, 3, "SYNC_FREE") + "      }\n    },\n"));
    EXPECT_TRUE(contains(correlated, period(5, 5, "SYNC_FREE") + "      }\n    },\n"));
    EXPECT_TRUE(contains(correlated, period(10, 10, "SYNC_FENCE_WAIT") +
                                         "        \"type\": \"begin\",\n        \"PID\": 10,\n        \"FenceID\": 3,\n"
                                         "        \"TimeoutInMs\": 500\n      }\n    },\n" +
                                         period(11, 11, "SYNC_FENCE_WAIT") +
                                         "        \"type\": \"end\",\n        \"PID\": 10,\n        \"FenceID\": 3,\n"
                                         "        \"Result\": \"02_Passed\"\n      }\n    },\n" +
                                         period(12, 12, "SYNC_FENCE_WAIT") + "      }\n    },\n" +
                                         period(20, 20, "SW_TIMELINE_ADV") +
                                         "        \"PID\": 10,\n        \"TimelineID\": 4,\n        \"SyncPtIdx\": 12\n"
                                         "      }\n    }"));
    EXPECT_TRUE(contains(console, "Warning: Unknown sync resource type (5) encountered in Zyntel client stream!\n"));
}

TEST(ClientServices, UnknownTypesAreSkippedWithTheirDump)
{
    Capture capture;
    capture.add(ClientPacket(20, 32).ordinal(0).timer(5)).add(ClientPacket(177, 32).ordinal(1).timer(6));
    std::string console;
    const std::string raw = rawElements(capture, &console);
    EXPECT_EQ(raw, envelope(32, "20_undef", 0, 5, "Invalid") +
                       "    {\n      \"size\": 32,\n      \"ADDR\": \"42 4e 59 5a  20 00 00 00  14 00 02 00  00 00 00 00\",\n"
                       "      \"ADDR\": \"05 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00\"\n    },\n" +
                       envelope(32, "OUT_OF_BOUNDS", 1, 6, "Invalid") +
                       "    {\n      \"size\": 32,\n      \"ADDR\": \"42 4e 59 5a  20 00 00 00  b1 00 02 00  01 00 00 00\",\n"
                       "      \"ADDR\": \"06 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00\"\n    }");
    EXPECT_TRUE(contains(console, "error: ZyntelClient packet type unknown (20), packet skipped\n"));
    EXPECT_TRUE(contains(console, "Warning: Unknown Client event type (177)!\n"));
    EXPECT_TRUE(contains(console, "error: ZyntelClient packet type unknown (177), packet skipped\n"));

    EXPECT_EQ(correlatedElements(capture, &console), "");
    EXPECT_TRUE(contains(console, "error: Client packet type unknown (20), packet skipped\n"));
    EXPECT_TRUE(contains(console, "error: Client packet type unknown (177), packet skipped\n"));
}

TEST(ClientServices, TimeDeltaCoversSkippedPackets)
{
    Capture capture;
    capture.add(ClientPacket(8, 32).ordinal(0).timer(1000))
        .add(ClientPacket(20, 32).ordinal(1).timer(1500))
        .add(ClientPacket(8, 32).ordinal(2).timer(1700));
    ToolRun run = convertCapture(capture, {"-raw", "-tdelta"});
    const std::string raw = elementsOf(run, "in.raw.json");
    EXPECT_TRUE(contains(raw, envelope(32, "08_undef", 0, 1000, "Services")));
    EXPECT_TRUE(contains(raw, envelope(32, "20_undef", 1, 500, "Invalid")));
    EXPECT_TRUE(contains(raw, envelope(32, "08_undef", 2, 200, "Services")));
}

} // namespace
