// The event sequences behind the sample and benchmark captures must be
// captures the tool converts cleanly: no warning, no error, every packet.
#include <gtest/gtest.h>

#include "stream_events.h"
#include "tool_runner.h"

namespace {

void expectClean(const ToolRun& run, const std::string& stream, int packets)
{
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.find("arning"), std::string::npos) << run.out;
    EXPECT_EQ(run.out.find("rror"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("info: " + std::to_string(packets) + " Zyntel " + stream + " packets processed"),
              std::string::npos)
        << run.out;
    EXPECT_EQ(run.err, "");
}

TEST(SampleCaptures, FirmwareAndHostConvertCleanlyInBothModes)
{
    StreamWriter fw(kFirmwareStream), host(kHostStream);
    firmwareStart(fw);
    hostStart(host);
    for (std::uint32_t frame = 1; frame <= 2; ++frame) {
        firmwareFrame(fw, frame, 4);
        hostFrame(host, frame);
    }
    firmwareEnd(fw);
    for (std::vector<std::string> options : {std::vector<std::string>{}, {"-raw"}}) {
        expectClean(convertCapture(fw.capture, options), "Firmware", 2 + 2 * 11 + 1);
        expectClean(convertCapture(host.capture, options), "Host", 1 + 2 * 7);
    }
}

TEST(SampleCaptures, ClientConvertsCleanlyInBothModes)
{
    StreamWriter client(kClientStream);
    for (std::uint32_t frame = 1; frame <= 2; ++frame) clientFrame(client, frame);
    for (std::vector<std::string> options : {std::vector<std::string>{}, {"-raw"}})
        expectClean(convertCapture(client.capture, options), "Client", 2 * 16);
}

} // namespace
