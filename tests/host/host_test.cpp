// Host captures converted whole, in raw and correlated mode, event by event.
#include <gtest/gtest.h>

#include "tool_runner.h"

namespace {

PacketBuilder host(std::uint32_t type, std::uint32_t ordinal = 0, std::uint64_t timer = 500, std::uint32_t flags = 0)
{
    return PacketBuilder(typeWord(type, kHostStream, flags)).ordinal(ordinal).timer(timer);
}

std::string envelope(const std::string& type, unsigned size, unsigned ordinal = 0, unsigned long long timer = 500)
{
    return "    {\n      \"sig\": \"0x5a594e42\",\n      \"size\": " + std::to_string(size) + ",\n      \"type\": \"" + type +
           "\",\n      \"thread\": 0,\n      \"osid\": 0,\n      \"ordinal\": " + std::to_string(ordinal) +
           ",\n      \"kortimer\": " + std::to_string(timer) + ",\n";
}

std::string head(const std::string& name, unsigned long long timer = 500)
{
    return "    {\n      \"start\": " + std::to_string(timer) + ",\n      \"end\": " + std::to_string(timer) +
           ",\n      \"name\": \"" + name + "\",\n      \"prop\": {\n";
}

struct Converted {
    ToolRun raw, correlated;
    std::string rawBody() { return arrayBody(raw.json["in.raw.json"]); }
    std::string correlatedBody() { return arrayBody(correlated.json["in.json"]); }
};

Converted convertBoth(const Capture& capture)
{
    return {convertCapture(capture, {"-raw"}), convertCapture(capture, {})};
}

// Enqueue: +24 kick type, +28 PID, +32/+36 job refs, +40 context, +48/+56
// fence UIDs, +64 deadline, +72 cycle estimate, +76/+80/+84 fence ids.
PacketBuilder enqueue(std::uint32_t kickType, unsigned size)
{
    PacketBuilder packet = host(1);
    packet.u32s({kickType, 77, 5, 6, 8, 0}).u64(11).u64(12).u64(13).u32(14).i32(-15).i32(16).i32(17);
    Bytes bytes = packet.build();
    bytes.resize(size);
    PacketBuilder cut = host(1);
    cut.bytes(Bytes(bytes.begin() + 24, bytes.end()));
    return cut;
}

TEST(HostEnqueue, KeysDependOnSizeAndKickType)
{
    Converted small = convertBoth(Capture().add(enqueue(10, 40)));
    EXPECT_EQ(small.rawBody(), envelope("01_ENQ_Work", 40) +
                                   "      \"enqueue\": {\n        \"PID\": 77,\n        \"ExtJobRef\": 5,\n"
                                   "        \"IntJobRef\": 6,\n        \"KickType\": \"LAST\"\n      }\n    }\n");
    EXPECT_EQ(small.correlatedBody(), head("ENQ") + "        \"PID\": 77,\n        \"ExtJobRef\": 5,\n"
                                                    "        \"IntJobRef\": 6,\n        \"KickType\": \"LAST\"\n      }\n    }");

    const std::string fences = "        \"Context\": 8,\n        \"CheckFenceID\": -15,\n        \"UpdateFenceID\": 16,\n"
                               "        \"UpdateTimelineID\": 17,\n        \"CheckFenceUID\": 11,\n        \"UpdateFenceUID\": 12,\n";
    Converted full = convertBoth(Capture().add(enqueue(21, 88)));
    EXPECT_EQ(full.rawBody(), envelope("01_ENQ_Work", 88) + "      \"enqueue\": {\n        \"PID\": 77,\n" + fences +
                                  "        \"Deadline\": 13,\n        \"CycleEstimate\": 14,\n        \"ExtJobRef\": 5,\n"
                                  "        \"IntJobRef\": 6,\n        \"KickType\": \"GEOM\"\n      }\n    }\n");

    // 64 bytes: the fence keys but no deadline, even for kick type 21.
    // The fence ids lie past a 64-byte packet and read as 0.
    Converted middle = convertBoth(Capture().add(enqueue(21, 64)));
    std::string cutFences = fences;
    cutFences.replace(cutFences.find("-15"), 3, "0").replace(cutFences.find("16"), 2, "0").replace(cutFences.find("17"), 2, "0");
    EXPECT_EQ(middle.correlatedBody(), head("ENQ") + "        \"PID\": 77,\n" + cutFences +
                                           "        \"ExtJobRef\": 5,\n        \"IntJobRef\": 6,\n"
                                           "        \"KickType\": \"GEOM\"\n      }\n    }");
}

TEST(HostEnqueue, KickTypeTableSharesTwoNumberings)
{
    Capture capture;
    for (std::uint32_t kickType : {12u, 17u, 25u}) capture.add(enqueue(kickType, 40));
    ToolRun run = convertCapture(capture, {"-raw"});
    const std::string& json = run.json["in.raw.json"];
    EXPECT_NE(json.find("\"KickType\": \"<UNKNOWN>\""), std::string::npos);
    EXPECT_NE(json.find("\"KickType\": \"TQ2D\""), std::string::npos);
    EXPECT_NE(json.find("\"KickType\": \"OUT_OF_BOUNDS\""), std::string::npos);
    EXPECT_NE(run.out.find("Warning: Zyntel packet unknown host kick type (25)!\n"), std::string::npos);
}

TEST(HostClockSync, MonotonicTimestampOnlyInFiftySixBytes)
{
    Converted short_ = convertBoth(Capture().add(host(4).u64(100).u64(200).u32(300).u32(0)));
    EXPECT_EQ(short_.rawBody(), envelope("04_CLK_SYNC", 48) +
                                    "      \"clksync\": {\n        \"speed\": 300,\n        \"crtimestamp\": 100,\n"
                                    "        \"ostimestamp\": 200\n      }\n    }");
    Converted long_ = convertBoth(Capture().add(host(4).u64(100).u64(200).u32(300).u32(0).u64(400)));
    EXPECT_EQ(long_.correlatedBody(), head("CLK_SYNC") + "        \"speed\": 300,\n        \"crtimestamp\": 100,\n"
                                                         "        \"ostimestamp\": 200,\n        \"osmonotimestamp\": 400\n"
                                                         "      }\n    }");
}

TEST(HostResources, AllocOfEveryResourceType)
{
    Capture capture;
    capture.add(host(3, 0).u32s({1, 0, 0x1000}).text("sync", 8));
    capture.add(host(3, 1).u32s({2, 0, 9, 0}).u64(33).text("timeline", 12));
    capture.add(host(3, 2).u32s({3, 0, 9, 0xFFFFFFFF, 0x2000}).text("klm", 8));
    capture.add(host(3, 3).u32s({4, 0, 0x3000, 7, 9, 8}).text("cp", 8));
    capture.add(host(3, 4).u32s({5, 0, 9, 10, 11, 0}).u64(44).text("sw", 8));
    capture.add(host(3, 5).u32s({6, 0}));
    Converted both = convertBoth(capture);
    EXPECT_EQ(both.rawBody(),
              envelope("03_HOST_Alloc", 44, 0) +
                  "      \"hostalloc\": {\n        \"Type:\": \"01_Sync\",\n        \"FWAddr\": \"4096 # 0x00001000\",\n"
                  "        \"Name\": \"sync\"\n      }\n    },\n" +
                  envelope("03_HOST_Alloc", 60, 1) +
                  "      \"hostalloc\": {\n        \"Type:\": \"02_Timeline\",\n        \"PID\": 9,\n"
                  "        \"TimelineID\": 33,\n        \"Name\": \"timeline\"\n      }\n    },\n" +
                  envelope("03_HOST_Alloc", 52, 2) +
                  "      \"hostalloc\": {\n        \"Type:\": \"03_FenceKLM\",\n        \"PID\": 9,\n        \"FenceID\": -1,\n"
                  "        \"CP_FWAddr\": 8192,\n        \"Name\": \"klm\"\n      }\n    },\n" +
                  envelope("03_HOST_Alloc", 56, 3) +
                  "      \"hostalloc\": {\n        \"Type:\": \"04_SyncCP\",\n        \"FWAddr\": 12288,\n"
                  "        \"TimelineID\": 7,\n        \"PID\": 9,\n        \"FenceID\": 8,\n        \"Name\": \"cp\"\n      }\n    },\n" +
                  envelope("03_HOST_Alloc", 64, 4) +
                  "      \"hostalloc\": {\n        \"Type:\": \"05_FenceSW\",\n        \"PID\": 9,\n        \"FenceID\": 10,\n"
                  "        \"TimelineID\": 11,\n        \"SyncPtIdx\": 44,\n        \"Name\": \"sw\"\n      }\n    },\n" +
                  envelope("03_HOST_Alloc", 32, 5) +
                  "      \"hostalloc\": {\n        \"Type:\": \"OUT_OF_BOUNDS\",\n      }\n    }");
    EXPECT_EQ(both.raw.err, "error: Invalid allocation type in HOST_ALLOC event\n");
    EXPECT_NE(both.raw.out.find("Warning: Zyntel packet unknown host free resource type (6)!\n"), std::string::npos);

    // Correlated mode: "Type" without the colon, "FenceID:" and plain addresses.
    std::string correlated = both.correlatedBody();
    EXPECT_NE(correlated.find(head("HOST_ALLOC") + "        \"Type\": \"01_Sync\",\n        \"FWAddr\": 4096,\n"
                                                   "        \"Name\": \"sync\"\n      }\n    }"),
              std::string::npos);
    EXPECT_NE(correlated.find("        \"Type\": \"03_FenceKLM\",\n        \"PID\": 9,\n        \"FenceID:\": -1,\n"
                              "        \"FWAddr\": 8192,\n        \"Name\": \"klm\"\n"),
              std::string::npos);
    EXPECT_EQ(both.correlated.err, "error: Invalid allocation type in HOST_ALLOC event\n");
}

TEST(HostResources, FreeAndModify)
{
    Capture capture;
    capture.add(host(5, 0).u32s({1, 0, 0x10}));
    capture.add(host(5, 1).u32s({2, 0, 9, 0}).u64(21));
    capture.add(host(5, 2).u32s({3, 0}).u64(22));
    capture.add(host(5, 3).u32s({4, 0, 0x20}));
    capture.add(host(5, 4).u32s({5, 0, 0}));
    capture.add(host(6, 5).u32s({3, 0}).u64(1).u64(2).u64(3).text("merged", 8));
    capture.add(host(6, 6).u32s({1, 0}));
    Converted both = convertBoth(capture);
    std::string raw = both.rawBody();
    for (const char* expected :
         {"\"hostfree\": {\n        \"Type:\": \"01_Sync\",\n        \"FWAddr\": \"16 # 0x00000010\"\n      }\n    }",
          "\"Type:\": \"02_Timeline\",\n        \"PID\": 9,\n        \"TimelineID\": 21\n      }",
          "\"Type:\": \"03_FenceKLM\",\n        \"FenceID\": 22\n      }",
          "\"Type:\": \"04_SyncCP\",\n        \"FWAddr\": 32\n      }",
          "\"hostfree\": {\n        \"Type:\": \"05_FenceSW\",\n      }\n    }",
          "\"hostmodify\": {\n        \"Type:\": \"03_FenceKLM\",\n        \"NewFenceID\": 1,\n        \"In1FenceID\": 2,\n"
          "        \"In2FenceID\": 3,\n        \"Name\": \"merged\"\n      }\n    }",
          "\"hostmodify\": {\n        \"Type:\": \"01_Sync\",\n      }\n    }"})
        EXPECT_NE(raw.find(expected), std::string::npos) << expected;
    EXPECT_EQ(both.raw.err, "error: Invalid allocation type in HOST_FREE event\n"
                            "error: Invalid allocation type in HOST_MODIFY event\n");
    EXPECT_NE(both.correlatedBody().find(head("HOST_FREE") + "        \"Type\": \"01_Sync\",\n        \"FWAddr\": 16\n"),
              std::string::npos);
}

TEST(HostDeviceInfo, HealthReasonsAndFeatures)
{
    Capture capture;
    capture.add(host(7, 0).u32s({0, 0, 1, 9}));
    capture.add(host(7, 1).u32s({0, 0, 5, 10}));
    Converted health = convertBoth(capture);
    EXPECT_EQ(health.rawBody(),
              envelope("07_HOST_DevInfo", 40, 0) +
                  "      \"deviceinfo\": {\n        \"Type\": \"00_DEVICE_INFO_EVENT_Health\",\n        \"devicestatus\": {\n"
                  "          \"Health Status\": \"01_STATUS_Ok\",\n          \"Health Reason\": \"LAST\"\n        }\n"
                  "      }\n    },\n" +
                  envelope("07_HOST_DevInfo", 40, 1) +
                  "      \"deviceinfo\": {\n        \"Type\": \"00_DEVICE_INFO_EVENT_Health\",\n        \"devicestatus\": {\n"
                  "          \"Health Status\": \"OUT_OF_BOUNDS\",\n          \"Health Reason\": \"OUT_OF_BOUNDS\"\n"
                  "        }\n      }\n    }");
    EXPECT_NE(health.raw.out.find("Warning: Zyntel packet unknown host device health status (5)!\n"
                                  "Warning: Zyntel packet unknown host device health reason (10)!\n"),
              std::string::npos);
    EXPECT_NE(health.correlatedBody().find("        \"Type\": \"00_DEVICE_INFO_EVENT_Health\",\n"
                                           "        \"Health Status\": \"01_STATUS_Ok\",\n"
                                           "        \"Health Reason\": \"LAST\"\n      }\n    }"),
              std::string::npos);

}

TEST(HostDeviceInfo, FeaturesWithAndWithoutTheCoreCount)
{
    // +32 BVNC, +56 feature list, +60 block count, +62 cores, +64 records.
    auto features = [](std::uint32_t flags) {
        return host(7, 0, 500, flags)
            .u32s({0, 1})
            .text("36.53.104.796", 24)
            .u32(0x1F)
            .u16(2)
            .u16(4)
            .u16(1).u16(6).u16(1).u16(0)
            .u16(0x8010).u16(12).u16(2).u16(0);
    };
    const std::string blocks = "        \"Blocks\": [\n"
                               "          {\n            \"BlockID\": \"1 # RASTER_Blk\",\n            \"NumCounters\": 6,\n"
                               "            \"NumBlocks\": 1\n          },\n"
                               "          {\n            \"BlockID\": \"32784 # TPU_DA0_Blk\",\n            \"NumCounters\": 12,\n"
                               "            \"NumBlocks\": 2\n          }\n        ]\n      }\n    }";
    const std::string bvnc = "        \"BVNC\": \"36.53.104.796\",\n        \"BVNCFeatureList\": \"31 # 0x0000001f\",\n";
    Converted plain = convertBoth(Capture().add(features(0)));
    EXPECT_EQ(plain.rawBody(), envelope("07_HOST_DevInfo", 80) +
                                   "      \"deviceinfo\": {\n        \"Type\": \"01_DEVICE_INFO_EVENT_Features\",\n" + bvnc +
                                   blocks);
    Converted cores = convertBoth(Capture().add(features(1u << 20)));
    EXPECT_EQ(cores.correlatedBody(), head("DEVICE_INFO") + "        \"Type\": \"01_DEVICE_INFO_EVENT_Features\",\n" + bvnc +
                                          "        \"NumGPUCores\": 4,\n" + blocks);
}

TEST(HostInfo, MemoryUsageRecordsNeverReadPastThePacket)
{
    // Event 0: the count (size - 24) / 12 = 2 claims one record more than
    // the 40-byte payload holds after its fields.
    Converted old = convertBoth(Capture().add(host(8).u32s({0, 0, 1000, 11, 22, 33})));
    EXPECT_EQ(old.rawBody(), envelope("08_HOST_Info", 48) +
                                 "        \"hostinfo\": {\n        \"Type\": \"00_MEM_INFO_EVENT_MemUsage_Deprecated\",\n"
                                 "        \"Total Mem Usage\": \"1000\",\n        \"PID\": \"11\",\n"
                                 "        \"Graphics Mem Usage\": \"33\",\n        \"Kernel Mem Usage\": \"22\"\n      }\n    }");
    // Event 1: (64 - 8) / 24 = 2 records claimed, one present.
    Converted current = convertBoth(Capture().add(host(8).u32s({0, 1}).u64(5000).u32s({44, 0}).u64(55).u64(66)));
    EXPECT_EQ(current.correlatedBody(),
              head("HOST_INFO") + "        \"Type\": \"01_MEM_INFO_EVENT_MemUsage\",\n        \"Total Mem Usage\": \"5000\",\n"
                                  "        \"PID\": \"44\",\n        \"Graphics Mem Usage\": \"66\",\n"
                                  "        \"Kernel Mem Usage\": \"55\"\n      }\n    }");
    Converted invalid = convertBoth(Capture().add(host(8).u32s({0, 2, 0, 0})));
    EXPECT_EQ(invalid.raw.err, "error: Invalid event type in MEMORY_INFO event\n");
}

TEST(HostFenceWait, BeginEndAndUnknownKind)
{
    Capture capture;
    capture.add(host(9, 0, 100).u32s({9, 3, 0, 250}));
    capture.add(host(9, 1, 200).u32s({9, 3, 1, 2}));
    capture.add(host(9, 2, 300).u32s({9, 3, 2, 0}));
    Converted both = convertBoth(capture);
    EXPECT_EQ(both.rawBody(),
              envelope("09_HOST_FenceWait", 40, 0, 100) +
                  "      \"begin\": {\n        \"PID\": 9,\n        \"FenceID\": 3,\n        \"TimeoutInMs\": 250\n      }\n    },\n" +
                  envelope("09_HOST_FenceWait", 40, 1, 200) +
                  "      \"end\": {\n        \"PID\": 9,\n        \"FenceID\": 3,\n        \"Result\": \"02_Passed\"\n      }\n    },\n" +
                  envelope("09_HOST_FenceWait", 40, 2, 300));
    EXPECT_NE(both.raw.out.find("Warning: Unknown sync fence-wait type (2) encountered in Zyntel host stream!\n"),
              std::string::npos);
    EXPECT_EQ(both.correlatedBody(),
              head("HOST_SYNC_WAIT", 100) + "        \"Type\": \"begin\",\n        \"PID\": 9,\n        \"FenceID\": 3,\n"
                                            "        \"TimeoutInMs\": 250\n      }\n    },\n" +
                  head("HOST_SYNC_WAIT", 200) + "        \"Type\": \"end\",\n        \"PID\": 9,\n        \"FenceID\": 3,\n"
                                                "        \"Result\": \"02_Passed\"\n      }\n    },\n"
                                                "      }\n    }"); // an unknown wait type has no head
}

TEST(HostTimelines, SoftwareTimelineAdvance)
{
    Converted both = convertBoth(Capture().add(host(10).u32s({9}).i32(-4).u64(77)));
    EXPECT_EQ(both.rawBody(), envelope("0A_HOST_SWTLAdvance", 40) +
                                  "      \"sw_tl_advance\": {\n        \"PID\": 9,\n        \"TimelineID\": -4,\n"
                                  "        \"SyncPtIdx\": 77\n      }\n    }");
    EXPECT_EQ(both.correlatedBody(), head("SW_TL_ADVANCE") + "        \"PID\": 9,\n        \"TimelineID\": -4,\n"
                                                             "        \"SyncPtIdx\": 77\n      }\n    }");
}

TEST(HostClientInfo, ProcessNamesStopAtThePacketEnd)
{
    // Count 3, but the third record's name would run past the packet.
    Capture capture;
    capture.add(host(11, 0).u32s({0, 1, 3}).u32s({100, 4}).text("app", 4).u32s({200, 8}).text("server", 8).u32s({300, 64}));
    capture.add(host(11, 1).u32s({0, 1, 0}));
    Converted both = convertBoth(capture);
    EXPECT_EQ(both.rawBody(),
              envelope("0B_HOST_ClientInfo", 72, 0) +
                  "        \"host_client_info\": {\n        \"Type\": \"01_CLIENT_INFO_EVENT_ProcessName\",\n"
                  "        \"Count\": \"3\",\n        \"PID\": \"100\",\n        \"Process Name\": \"app\",\n"
                  "        \"PID\": \"200\",\n        \"Process Name\": \"server\",\n"
                  "        \"PID\": \"300\",\n        \"Process Name\": \"\"\n      }\n    },\n" +
                  envelope("0B_HOST_ClientInfo", 36, 1) +
                  "        \"host_client_info\": {\n        \"Type\": \"01_CLIENT_INFO_EVENT_ProcessName\",\n"
                  "        \"Count\": \"0\"\n      }\n    }");
    EXPECT_NE(both.correlatedBody().find(head("HOST_CLIENT_INFO") + "        \"Type\": \"01_CLIENT_INFO_EVENT_ProcessName\",\n"
                                                                     "        \"Count\": \"3\",\n"),
              std::string::npos);
}

TEST(HostUfo, SyncOperationsListTheirRecords)
{
    // +28: records 8 bytes after byte 24, two of them.
    Converted both = convertBoth(Capture().add(host(2).u32s({3, 2u << 16 | 8, 0x100, 1, 2, 0x200, 3, 4})));
    const std::string records = "          {\n            \"FWAddr\": \"256 # 0x100\",\n            \"Value\": 1,\n"
                                "            \"Requires\": 2\n          },\n"
                                "          {\n            \"FWAddr\": \"512 # 0x200\",\n            \"Value\": 3,\n"
                                "            \"Requires\": 4\n          }\n";
    EXPECT_EQ(both.rawBody(), envelope("02_UFO_Info", 56) + "      \"syncop\": {\n        \"Event\": \"03_CheckFail\",\n"
                                                            "        \"UFOs\": [\n" + records + "        ]\n      }\n    }");
    EXPECT_EQ(both.correlatedBody(), head("UFO") + "        \"Event\": \"03_CheckFail\",\n        \"UFOs\": [\n" + records +
                                         "        ]\n      }\n    }");
}

TEST(HostUnknownTypes, AreDumpedInRawModeAndLeaveNoTraceInCorrelatedMode)
{
    Capture capture;
    capture.add(host(0, 0).u64(0));
    capture.add(host(12, 1).u64(0));
    capture.add(host(10, 2).u32s({1, 2}).u64(3));
    Converted both = convertBoth(capture);
    EXPECT_NE(both.raw.out.find("error: ZyntelHost packet type unknown (0), packet skipped\n"), std::string::npos);
    EXPECT_NE(both.raw.out.find("Warning: Zyntel packet unknown host event type (12)!\n"
                                "error: ZyntelHost packet type unknown (12), packet skipped\n"),
              std::string::npos);
    EXPECT_TRUE(both.rawBody().starts_with("    {\n      \"size\": 32,\n      \"ADDR\": \"42 4e 59 5a  20 00 00 00  00 00 01 00"));
    EXPECT_NE(both.raw.out.find("error: 2 unknown packet(s) detected, packet(s) read:3\n"), std::string::npos);
    EXPECT_NE(both.correlated.out.find("error: Host packet type unknown (0), packet skipped\n"), std::string::npos);
    EXPECT_NE(both.correlated.out.find("error: Host packet type unknown (12), packet skipped\n"), std::string::npos);
    EXPECT_TRUE(both.correlatedBody().starts_with(head("SW_TL_ADVANCE")));
}

TEST(HostOptions, TimeDeltaAndHexDump)
{
    Capture capture;
    capture.add(host(10, 0, 1000).u32s({1, 2}).u64(3));
    capture.add(host(10, 1, 1600).u32s({1, 2}).u64(3));
    ToolRun run = convertCapture(capture, {"-tdelta", "-hex"});
    std::string body = arrayBody(run.json["in.raw.json"]);
    EXPECT_NE(body.find("\"kortimer\": 1000,"), std::string::npos);
    EXPECT_NE(body.find("\"kortimer\": 600,"), std::string::npos);
    // The dump follows each element and shows the delta the envelope printed.
    EXPECT_NE(body.find("      }\n    },\n    {\n      \"size\": 40,\n"
                        "      \"ADDR\": \"42 4e 59 5a  28 00 00 00  0a 00 01 00  01 00 00 00\",\n"
                        "      \"ADDR\": \"58 02 00 00  00 00 00 00  01 00 00 00  02 00 00 00\",\n"),
              std::string::npos);
}

} // namespace
