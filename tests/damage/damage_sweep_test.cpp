// Damaged captures, converted by the tool's own run in this process: every
// sample capture cut at every byte, and with every byte set to 0x00, 0xFF
// or its complement, in every mode. None may crash, hang or upset the
// sanitizers, and each file's output must be framed for the way it ended:
// once the first header has given the version, the document ends with the
// array closing, exactly once; a file whose version cannot be told gets no
// output file at all.
#include <gtest/gtest.h>

#include <filesystem>

#include "driver/run.h"
#include "json/output.h"
#include "stream_events.h"
#include "tool_runner.h"

namespace {

struct Mode {
    std::vector<std::string> options;
    std::string output;
};
const Mode kModes[] = {{{}, "in.json"},        {{"-raw"}, "in.raw.json"}, {{"-raw", "-hex"}, "in.raw.json"},
                       {{"-tdelta"}, "in.raw.json"}, {{"-v"}, "in.json"},   {{"-raw", "-v"}, "in.raw.json"}};
const std::string kClosing = "\n  ]\n}";

// The sanitizer build runs several times slower: it damages every third
// byte only (3 is prime to the 4-byte word, so every place in a word is
// still hit).
#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t kStride = 3;
#else
constexpr std::size_t kStride = 1;
#endif

class DamageSweep : public ::testing::Test {
protected:
    void SetUp() override
    {
        console_.attachString(&consoleText_);
        redirectConsole(&console_, &console_);
        std::filesystem::current_path(dir_.path()); // the run also lists the current directory
    }
    void TearDown() override
    {
        std::filesystem::current_path(previousDirectory_);
        redirectConsole(nullptr, nullptr);
    }

    // Converts the capture in every mode; false after the first failure.
    bool convertsFramed(const Bytes& capture, const std::string& what)
    {
        dir_.write("in.bin", capture);
        for (const Mode& mode : kModes) {
            std::vector<const char*> argv{"zyntelbin2json", "in.bin"};
            for (const std::string& option : mode.options) argv.push_back(option.c_str());
            std::filesystem::remove(mode.output);
            consoleText_.clear();
            runTool(static_cast<int>(argv.size()), argv.data(), builtInStreams());
            console_.flush();
            const bool detected = consoleText_.find("info: detected Zyntel") != std::string::npos;
            const std::string json = dir_.read(mode.output);
            const bool written = !json.empty(); // a written output holds at least the head
            if (detected != written || (written && json.find(kClosing) != json.size() - kClosing.size())) {
                ADD_FAILURE() << what << ", options " << ::testing::PrintToString(mode.options) << ": output "
                              << (written ? "written" : "not written") << "\n--- console:\n" << consoleText_
                              << "\n--- output end:\n" << json.substr(json.size() > 300 ? json.size() - 300 : 0);
                return false;
            }
        }
        return true;
    }

    void sweep(const Capture& sample, const std::string& name)
    {
        const Bytes& bytes = sample.bytes();
        for (std::size_t position = 0; position < bytes.size(); position += kStride) {
            const std::string where = name + " at byte " + std::to_string(position);
            if (!convertsFramed(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(position)), where + ", cut"))
                return;
            for (int replacement : {0x00, 0xFF, ~bytes[position] & 0xFF}) {
                Bytes changed = bytes;
                changed[position] = static_cast<std::uint8_t>(replacement);
                if (!convertsFramed(changed, where + ", set to " + std::to_string(replacement))) return;
            }
        }
    }

    ScratchDir dir_;
    const std::filesystem::path previousDirectory_ = std::filesystem::current_path();
    std::string consoleText_;
    Output console_;
};

TEST_F(DamageSweep, FirmwareSample) { sweep(sampleCaptures().firmware, "firmware"); }
TEST_F(DamageSweep, HostSample) { sweep(sampleCaptures().host, "host"); }
TEST_F(DamageSweep, ClientSample) { sweep(sampleCaptures().client, "client"); }

} // namespace
