// Damaged captures, converted by both programs' own runs in this process:
// every sample capture cut at every byte, and with every byte set to 0x00,
// 0xFF or its complement. None may crash, hang or upset the sanitizers.
// Once the first header has given the version, zyntelbin2json must end each
// output, in every mode, with the array closing, exactly once, and
// zyntelbin2trace must write valid JSON; a file whose version cannot be
// told gets no output at all.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

#include "driver/run.h"
#include "json/output.h"
#include "stream_events.h"
#include "tool_runner.h"
#include "trace/trace_run.h"

namespace {

const std::vector<std::string> kModes[] = {{}, {"-raw"}, {"-raw", "-hex"}, {"-tdelta"}, {"-v"}, {"-raw", "-v"}};
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
        std::filesystem::current_path(dir_.path()); // the runs also list the current directory
    }
    void TearDown() override { std::filesystem::current_path(previousDirectory_); }

    void sweep(const Capture& sample, const std::string& name)
    {
        const Bytes& bytes = sample.bytes();
        for (std::size_t at = 0; at < bytes.size(); at += kStride) {
            const std::string where = name + " at byte " + std::to_string(at);
            if (!survives(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(at)), where + " cut"))
                return;
            for (int replacement : {0x00, 0xFF, ~bytes[at] & 0xFF}) {
                Bytes changed = bytes;
                changed[at] = static_cast<std::uint8_t>(replacement);
                if (!survives(changed, where + " set to " + std::to_string(replacement))) return;
            }
        }
    }

    // zyntelbin2json in every mode, then zyntelbin2trace; false on failure.
    bool survives(const Bytes& capture, const std::string& what)
    {
        dir_.write("in.bin", capture);
        bool detected = false;
        for (const std::vector<std::string>& options : kModes) {
            std::vector<const char*> argv{"zyntelbin2json", "in.bin"};
            for (const std::string& option : options) argv.push_back(option.c_str());
            const char* output = options.empty() || options[0] == "-v" ? "in.json" : "in.raw.json";
            std::filesystem::remove(output);
            consoleText_.clear();
            redirectConsole(&console_, &console_);
            runTool(static_cast<int>(argv.size()), argv.data(), builtInStreams());
            redirectConsole(nullptr, nullptr);
            detected = consoleText_.find("info: detected Zyntel") != std::string::npos;
            const std::string text = dir_.read(output); // a written output holds at least the head
            if (detected == text.empty() || (detected && text.find(kClosing) != text.size() - kClosing.size()))
                return fails(what + ", options " + ::testing::PrintToString(options), text);
        }
        std::filesystem::remove("trace.json");
        runTraceQuietly();
        const std::string trace = dir_.read("trace.json");
        if (detected == trace.empty() || (detected && !nlohmann::json::accept(trace)))
            return fails(what + ", trace", trace);
        return true;
    }

    bool fails(const std::string& what, const std::string& output)
    {
        ADD_FAILURE() << what << ": output " << (output.empty() ? "not written" : "written") << "\n--- console:\n"
                      << consoleText_ << "\n--- output end:\n" << output.substr(output.size() > 300 ? output.size() - 300 : 0);
        return false;
    }

    // zyntelbin2trace prints its thread table straight to standard output.
    static void runTraceQuietly()
    {
        const int standardOutput = dup(STDOUT_FILENO), devNull = open("/dev/null", O_WRONLY);
        dup2(devNull, STDOUT_FILENO);
        const char* argv[] = {"zyntelbin2trace", "-q", "-o", "trace.json", "in.bin"};
        runTraceTool(5, argv);
        dup2(standardOutput, STDOUT_FILENO);
        close(standardOutput);
        close(devNull);
    }

    const SampleCaptures samples_ = sampleCaptures();
    ScratchDir dir_;
    const std::filesystem::path previousDirectory_ = std::filesystem::current_path();
    std::string consoleText_;
    Output console_;
};

TEST_F(DamageSweep, FirmwareSample) { sweep(samples_.firmware, "firmware"); }
TEST_F(DamageSweep, HostSample) { sweep(samples_.host, "host"); }
TEST_F(DamageSweep, ClientSample) { sweep(samples_.client, "client"); }

} // namespace
