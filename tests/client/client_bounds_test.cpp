// Pairing state across files, and packets whose lengths, counts and slots
// point outside the packet or the tables.
#include <gtest/gtest.h>

#include "client_fixture.h"

namespace {

TEST(ClientPairing, PendingBeginDoesNotReachTheNextClientFile)
{
    ScratchDir dir;
    Capture first;
    first.add(ClientPacket(70, 80).u32(24, 5).ordinal(0).timer(100))
        .add(ClientPacket(8, 32).ordinal(1).timer(110))
        .add(ClientPacket(1, 32).u32(24, 1).ordinal(2).timer(120));
    Capture second;
    second.add(ClientPacket(71, 80).u32(24, 5).ordinal(0).timer(200))
        .add(ClientPacket(9, 32).ordinal(1).timer(210))
        .add(ClientPacket(2, 32).u32(24, 1).ordinal(2).timer(220))
        .add(ClientPacket(65, 80).u32(24, 3).ordinal(3).timer(230))
        .add(ClientPacket(66, 80).u32(24, 3).ordinal(4).timer(240));
    dir.write("zyntel_client_a.bin", first);
    dir.write("zyntel_client_b.bin", second);
    ToolRun run = runBuiltTool(dir, {});
    EXPECT_EQ(elementsOf(run, "zyntel_client_a.json"), "");
    EXPECT_EQ(elementsOf(run, "zyntel_client_b.json"),
              period(230, 240, "FUNC_SCOPE") + "        \"type\": \"03_WaitForHWQ\",\n        \"info\": \"\",\n"
                                               "        \"jobref\": 0,\n        \"context ID\": 0\n      }\n    }");
}

TEST(ClientPairing, SlotsOutsideTheTablesAreIgnored)
{
    Capture capture;
    for (std::uint32_t function : {308u, 0xFFFFFFFFu}) {
        capture.add(ClientPacket(65, 80).u32(24, function).ordinal(0).timer(1))
            .add(ClientPacket(66, 80).u32(24, function).ordinal(1).timer(2))
            .add(ClientPacket(97, 88).u32(44, function).ordinal(2).timer(3))
            .add(ClientPacket(98, 88).u32(44, function).ordinal(3).timer(4))
            .add(ClientPacket(129, 88).u32(40, function).ordinal(4).timer(5))
            .add(ClientPacket(130, 88).u32(40, function).ordinal(5).timer(6))
            .add(ClientPacket(75, 88).u32(36, function).ordinal(6).timer(7));
    }
    capture.add(ClientPacket(1, 32).u32(24, 6).ordinal(7).timer(8)).add(ClientPacket(2, 32).u32(24, 6).ordinal(8).timer(9));
    ToolRun run = convertCapture(capture, {});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(elementsOf(run, "in.json"), "");
}

TEST(ClientBounds, LengthsAndCountsBeyondThePacketStopAtItsEnd)
{
    // Shader source length far beyond the packet and a source without NUL.
    Capture capture;
    capture.add(ClientPacket(72, 80).u32(24, 17).ordinal(0).timer(1))
        .add(ClientPacket(73, 60).u32(24, 17).u32(48, 0xFFFFFFF0).text(52, "abc\"defg").ordinal(1).timer(2))
        // Invocation entries: a count of 2^32-1 with one entry present.
        .add(ClientPacket(80, 64).u32(24, 40).u32(40, 0xFFFFFFFF).u64(48, 9).u32(56, 1).u32(60, 2).ordinal(2).timer(3))
        .add(ClientPacket(134, 108).u32(88, 6).u32(92, 0xFFFFFFFF).u32(96, 4).u32(100, 40).ordinal(3).timer(4))
        // A mark point whose message fills the packet without a NUL.
        .add(ClientPacket(67, 40).text(24, "0123456789abcdef").ordinal(4).timer(5));
    ToolRun run = convertCapture(capture, {});
    const std::string correlated = elementsOf(run, "in.json");
    EXPECT_TRUE(contains(correlated, "        \"shader code\": \"abc\\\"defg\"\n      }\n    },\n"));
    EXPECT_TRUE(contains(correlated, "        \"Shader Invocation Counts\": {\n          \"9 (2)\" : 1\n        }\n"));
    EXPECT_TRUE(contains(correlated, "          \"Compute Shader Invocations (Pipeline 4)\": 40\n        }\n"));
    EXPECT_TRUE(contains(correlated, "        \"message\": \"0123456789abcdef\",\n"));

    run = convertCapture(capture, {"-raw"});
    const std::string raw = elementsOf(run, "in.raw.json");
    EXPECT_TRUE(contains(raw, "        \"shader code\": \"abc\\\"defg\"\n      }\n    },\n"));
    EXPECT_TRUE(contains(raw, "        \"Shader Invocation Counts\": {\n          \"9 (2)\" : 1\n        }\n"));
    EXPECT_TRUE(contains(raw, "        \"Compute Shader Invocations (Pipeline 4)\": 40\n        }\n"));
}

TEST(ClientBounds, ApiTailsOfShortPacketsReadAsZero)
{
    // Every API tail cut off right after the fixed fields: the printers see
    // zeros, and huge counts stay within the packet.
    Capture capture;
    capture.add(ClientPacket(68, 80).u32(24, 4).u32(36, 0xFFFFFFFF).u32(44, 0xF).ordinal(0).timer(1))
        .add(ClientPacket(69, 40).u32(24, 4).ordinal(1).timer(2))
        .add(ClientPacket(78, 40).u16(34, 0xFFFF).ordinal(2).timer(3))
        .add(ClientPacket(66, 40).u32(24, 16).ordinal(3).timer(4))
        // OpenCL data whose kernel-name length and command count wrap the
        // 16-bit expected size back to the packet's true size.
        .add(ClientPacket(97, 104).u32(44, 301).u32(100, 0x10000).ordinal(4).timer(5))
        .add(ClientPacket(98, 104).u32(44, 301).u32(100, 0x10000).ordinal(5).timer(6))
        .add(ClientPacket(97, 104).u32(44, 303).u32(96, 16385).ordinal(6).timer(7))
        .add(ClientPacket(129, 92).u32(40, 213).u32(88, 0xFFFFFFFF).ordinal(7).timer(8))
        .add(ClientPacket(71, 40).u32(24, 5).u32(36, 0x8000003F).ordinal(8).timer(9))
        .add(ClientPacket(77, 40).u32(24, 38).ordinal(9).timer(10));
    for (const char* mode : {"", "-raw"}) {
        std::vector<std::string> options;
        if (*mode) options.push_back(mode);
        ToolRun run = convertCapture(capture, options);
        EXPECT_EQ(run.status, 0) << mode;
        EXPECT_TRUE(contains(run.out, "info: 10 Zyntel Client packets processed")) << mode << run.out;
    }
}

} // namespace
