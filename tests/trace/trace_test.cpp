// zyntelbin2trace end to end: the trace parses as strict JSON, holds every
// element of the correlated conversion, nests properly per thread and links
// enqueues to work; plus the tolerant reading of the correlated text.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>

#include "stream_events.h"
#include "tool_runner.h"
#include "trace/element_stream.h"
#include "trace/trace_export.h"

using nlohmann::json;

namespace {

ToolRun runTrace(const ScratchDir& dir, const std::vector<std::string>& arguments)
{
    return runProgram(ZYNTEL_TRACE_PATH, dir, arguments);
}

// Element names of a correlated .json file, counted.
std::map<std::string, int> correlatedNames(const std::string& text)
{
    std::map<std::string, int> names;
    static const std::regex nameLine("\n      \"name\": \"([^\"]*)\",\n");
    for (auto match = std::sregex_iterator(text.begin(), text.end(), nameLine); match != std::sregex_iterator();
         ++match)
        ++names[(*match)[1]];
    return names;
}

// Threads of one process whose complete events overlap in part.
void expectProperNesting(const json& events)
{
    std::map<std::pair<int, int>, std::vector<std::pair<double, double>>> threads;
    for (const json& event : events)
        if (event["ph"] == "X")
            threads[{event["pid"], event["tid"]}].emplace_back(event["ts"], event["ts"].get<double>() + event["dur"].get<double>());
    for (auto& [thread, periods] : threads) {
        std::sort(periods.begin(), periods.end(),
                  [](auto& a, auto& b) { return a.first < b.first || (a.first == b.first && a.second > b.second); });
        std::vector<double> open;
        for (auto [start, end] : periods) {
            while (!open.empty() && open.back() <= start + 1e-9) open.pop_back();
            EXPECT_TRUE(open.empty() || end <= open.back() + 1e-9)
                << "pid " << thread.first << " tid " << thread.second << " at " << start;
            open.push_back(end);
        }
    }
}

class SampleSession : public ::testing::Test {
protected:
    void SetUp() override
    {
        StreamWriter fw(kFirmwareStream), host(kHostStream), client(kClientStream);
        firmwareStart(fw);
        hostStart(host);
        for (std::uint32_t frame = 1; frame <= 3; ++frame) {
            firmwareFrame(fw, frame, 2);
            hostFrame(host, frame);
            clientFrame(client, frame);
        }
        firmwareEnd(fw);
        client.capture.add(client.next(3, 10).u32s({0, 4242, 10, 0}).u64(99).u32(0).u32(0)); // as host enqueue 10
        dir.write("zyntel_fw_1.bin", fw.capture);
        dir.write("zyntel_host_1.bin", host.capture);
        dir.write("zyntel_client_1.bin", client.capture);
    }
    ScratchDir dir;
};

TEST_F(SampleSession, HoldsEveryElementOfTheCorrelatedConversionOnProperlyNestedThreads)
{
    ToolRun correlated = runBuiltTool(dir, {});
    ToolRun run = runTrace(dir, {});
    ASSERT_EQ(run.status, 0) << run.err;
    json trace = json::parse(dir.read("zyntel_trace.json"));
    const json& events = trace["traceEvents"];

    std::map<int, std::string> files;
    std::map<int, int> sortIndex;
    for (const json& event : events) {
        if (event["name"] == "process_name") files[event["pid"]] = event["args"]["name"];
        if (event["name"] == "process_sort_index") sortIndex[event["pid"]] = event["args"]["sort_index"];
    }
    EXPECT_EQ(files[1], "GPU firmware: zyntel_fw_1.bin");
    EXPECT_EQ(files[2], "Kernel driver: zyntel_host_1.bin");
    EXPECT_EQ(files[3], "API drivers: zyntel_client_1.bin");
    EXPECT_LT(sortIndex[1], sortIndex[2]);
    EXPECT_LT(sortIndex[2], sortIndex[3]);
    for (auto& [pid, process] : files) {
        std::string file = process.substr(process.find(": ") + 2);
        std::map<std::string, int> names;
        for (const json& event : events)
            if (event["pid"] == pid && (event["ph"] == "X" || event["ph"] == "i" || event["ph"] == "b"))
                ++names[event["name"]];
        std::string jsonName = file.substr(0, file.rfind('.')) + ".json";
        EXPECT_EQ(names, correlatedNames(correlated.json[jsonName])) << file;
    }
    expectProperNesting(events);

    std::map<std::string, int> flowEnds, counters;
    for (const json& event : events) {
        if (event["ph"] == "s" || event["ph"] == "f") flowEnds[event["id"].dump()] += event["ph"] == "s" ? 1 : 100;
        if (event["ph"] == "C") ++counters[event["name"]];
    }
    EXPECT_GE(flowEnds.size(), 3u); // client to host, and host to the firmware's work
    for (auto& [id, ends] : flowEnds) EXPECT_EQ(ends, 101) << "flow " << id;
    EXPECT_GT(counters["GPU clock speed"], 0);

    const json& inputs = trace["metadata"]["inputs"];
    ASSERT_EQ(inputs.size(), 3u);
    EXPECT_EQ(inputs[2]["stream"], "Client");
    EXPECT_EQ(inputs[2]["packets converted"], inputs[2]["packets read"]);
    EXPECT_EQ(trace["metadata"]["tool"], "zyntelbin2trace");
    EXPECT_NE(run.out.find("zyntel_fw_1.bin: Firmware stream"), std::string::npos);
    EXPECT_NE(run.out.find("\nGPU firmware: zyntel_fw_1.bin (span"), std::string::npos) << run.out;
    EXPECT_FALSE(std::filesystem::exists(dir.path() + "/zyntel_trace.json.partial"));
}

TEST_F(SampleSession, DamagedCaptureStillGivesValidJsonAndItsDamageReport)
{
    std::string bytes = dir.read("zyntel_fw_1.bin");
    bytes[bytes.size() / 2] ^= 0x5A; // a corrupt header or payload in the middle
    bytes.resize(bytes.size() - 7);  // and a packet cut short
    dir.write("zyntel_fw_1.bin", Bytes(bytes.begin(), bytes.end()));
    ToolRun run = runTrace(dir, {"-o", "-", "zyntel_fw_1.bin"});
    ASSERT_EQ(run.status, 0) << run.err;
    json trace = json::parse(run.out);
    EXPECT_GT(trace["traceEvents"].size(), 5u);
    EXPECT_NE(run.err.find("error: insufficient bytes read for packet data"), std::string::npos) << run.err;
    EXPECT_GT(trace["metadata"]["inputs"][0]["warnings"].get<int>(), 0);
}

TEST_F(SampleSession, CommandLineErrorsAndInputsThatAreNoCaptures)
{
    EXPECT_EQ(runTrace(dir, {"-x"}).status, 1);
    EXPECT_EQ(runTrace(dir, {"-o"}).status, 1);
    EXPECT_EQ(runTrace(dir, {"--version"}).status, 0);

    dir.write("notes.bin", Bytes{'n', 'o', 't', 'e', 's'});
    dir.write("zeros.bin", Bytes(4096, 0));
    std::filesystem::create_directory(dir.path() + "/folder.bin");
    ToolRun mixed = runTrace(dir, {"-q", "notes.bin", "zeros.bin", "folder.bin", "missing.bin", "zyntel_host_1.bin"});
    EXPECT_EQ(mixed.status, 0);
    for (const char* skipped : {"notes.bin: ", "folder.bin: is a directory", "missing.bin: No such file"})
        EXPECT_NE(mixed.err.find(skipped), std::string::npos) << skipped << "\n" << mixed.err;
    json inputs = json::parse(dir.read("zyntel_trace.json"))["metadata"]["inputs"];
    EXPECT_EQ(inputs.size(), 1u);
    EXPECT_EQ(inputs[0]["warnings"], 0) << "a skipped file's warning counted for the next";
    EXPECT_EQ(mixed.out.find("zyntel_host_1.bin: Host stream"), std::string::npos); // -q: no progress

    EXPECT_EQ(runTrace(dir, {"notes.bin"}).status, 2);
    ToolRun unwritable = runTrace(dir, {"-o", "no/such/folder/t.json", "zyntel_host_1.bin"});
    EXPECT_EQ(unwritable.status, 2);
    EXPECT_NE(unwritable.err.find("no/such/folder/t.json: cannot be written"), std::string::npos);
    ScratchDir empty;
    EXPECT_EQ(runTrace(empty, {}).status, 2);
}

// Elements written straight into the exporter, as the converters write them.
// The text goes to the exporter in blocks of `block` bytes; the elements
// are read on `helpers` threads besides this one.
std::string exportText(StreamKind stream, const std::string& correlated, std::size_t block = 1 << 16,
                       unsigned helpers = 0)
{
    std::string text;
    Output out;
    out.attachString(&text);
    TraceExport trace;
    startTrace(trace, out);
    struct Target {
        TraceExport* trace;
        ProcessThreads* process;
    } target{&trace, &addProcess(trace, 1, stream, "in.bin")};
    ElementStream elements;
    startElementStream(
        elements,
        [](void* context, const Element& element) {
            auto* t = static_cast<Target*>(context);
            exportElement(*t->trace, *t->process, element);
        },
        &target, helpers);
    for (std::size_t at = 0; at < correlated.size(); at += block)
        writeToElementStream(&elements, correlated.data() + at, std::min(block, correlated.size() - at));
    finishElementStream(elements);
    finishTrace(trace, {});
    return text;
}

json eventsNamed(const json& trace, const std::string& name)
{
    json found = json::array();
    for (const json& event : trace["traceEvents"])
        if (event["name"] == name) found.push_back(event);
    return found;
}

TEST(TraceExport, ReadsTheQuirksOfTheCorrelatedText)
{
    std::string quirks = "    {\n      \"start\": 1000060,\n      \"end\": 1000060,\n      \"name\": \"SWTQ\",\n"
                         "      \"prop\": {\n        \"JobRef\": 5,\n        \"JobRef\": 6,\n      }\n    },\n"
                         "    {\n      \"start\": 2000000,\n      \"end\": 2500001,\n"
                         "      \"name\": \"VULKAN_MARK\",\n      \"prop\": {\n"
                         "        \"end info\": \"say \"hi\" \\q\x01\xff\"\n"
                         "        \"Obj Type\": 05_GraphicsPipeline,\n        \"PID\": \"1\",\n"
                         "        \"PID\": \"2\",\n        \"FenceID:\": -3,\n"
                         "        \"list\": [\n          {\"a\": 0x10}\n        ]\n"
                         "    }      }\n    }\n"
                         "    {\n      \"start\": 3000000,\n      \"end\": 3000000,\n      \"name\": \"OPEN\",\n"
                         "      \"prop\": {\n        \"x\": {\n          \"y\": 1\n  ]\n}";
    std::string text = exportText(StreamKind::Client, quirks);
    for (std::size_t block : {1, 7, 100}) EXPECT_EQ(exportText(StreamKind::Client, quirks, block), text) << block;
    EXPECT_NE(text.find("\"ts\":1000.060,\"s\":\"t\""), std::string::npos) << text;
    json trace = json::parse(text);
    EXPECT_EQ(eventsNamed(trace, "SWTQ")[0]["args"], json::parse(R"j({"JobRef": 5, "JobRef (2)": 6})j"));
    json mark = eventsNamed(trace, "VULKAN_MARK")[0];
    EXPECT_EQ(mark["dur"].get<double>(), 500.001);
    EXPECT_EQ(mark["args"]["end info"], "say \"hi\" \\q\x01\xc3\xbf");
    EXPECT_EQ(mark["args"]["Obj Type"], "05_GraphicsPipeline");
    EXPECT_EQ(mark["args"]["PID (2)"], "2");
    EXPECT_EQ(mark["args"]["FenceID:"], -3);
    EXPECT_EQ(mark["args"]["list"][0]["a"], "0x10");
    EXPECT_EQ(eventsNamed(trace, "OPEN")[0]["args"]["x"]["y"], 1);
}

TEST_F(SampleSession, ElementsReadOnOtherThreadsAreExportedInTheirOrder)
{
    ToolRun correlated = runBuiltTool(dir, {});
    // Many batches of elements, one element larger than a batch among them.
    std::string periods, large = "\n    {\n      \"start\": 5,\n      \"end\": 6,\n      \"name\": \"LARGE\",\n"
                                 "      \"prop\": {\n        \"text\": \"" + std::string(600000, 'x') + "\"\n      }\n    },\n";
    for (int copy = 0; copy < 400; ++copy) {
        periods += correlated.json["zyntel_host_1.json"];
        if (copy == 200) periods += large;
    }
    ASSERT_GT(periods.size(), 2u << 20);
    std::string alone = exportText(StreamKind::Host, periods);
    EXPECT_NE(alone.find("\"name\":\"LARGE\""), std::string::npos);
    for (unsigned helpers : {1u, 3u}) EXPECT_EQ(exportText(StreamKind::Host, periods, 1 << 16, helpers), alone) << helpers;
}

// Texts are scanned a word at a time: every byte value, at every place of
// two words (a last backslash would escape the closing quote), comes out
// as the rules for single bytes say.
TEST(TraceExport, EscapesEveryByteWhereverItFallsInAWord)
{
    for (int byte = 0; byte < 256; ++byte)
        for (std::size_t at = 0; at < 16; ++at) {
            std::string value(17, 'a'), expected(1, static_cast<char>(byte));
            value[at] = static_cast<char>(byte);
            const char* hex = "0123456789abcdef";
            if (byte == '"' || byte == '\\') expected = "\\" + expected;
            if (byte < 0x20 || byte >= 0x7F) expected = std::string("\\u00") + hex[byte >> 4] + hex[byte & 15];
            std::string text = exportText(StreamKind::Host, "    {\n      \"start\": 1,\n      \"end\": 2,\n"
                                                            "      \"name\": \"N\",\n      \"prop\": {\n        \"k\": \"" +
                                                                value + "\"\n      }\n    }\n");
            std::string args = "\"args\":{\"k\":\"" + std::string(at, 'a') + expected + std::string(16 - at, 'a') + "\"}";
            EXPECT_NE(text.find(args), std::string::npos) << byte << " at " << at << "\n" << text;
        }
}

TEST(TraceExport, PartlyOverlappingPeriodsGoToOverflowThreads)
{
    std::string periods;
    for (auto [start, end] : {std::pair{100, 200}, {150, 250}, {160, 240}, {180, 245}, {300, 400}, {120, 380}})
        periods += "    {\n      \"start\": " + std::to_string(start) + ",\n      \"end\": " + std::to_string(end) +
                   ",\n      \"name\": \"3D\",\n      \"prop\": {}\n    }\n";
    json trace = json::parse(exportText(StreamKind::Firmware, periods));
    std::map<int, std::string> threadNames;
    for (const json& event : eventsNamed(trace, "thread_name")) threadNames[event["tid"]] = event["args"]["name"];
    std::vector<std::string> placed;
    for (const json& event : eventsNamed(trace, "3D")) placed.push_back(threadNames[event["tid"]]);
    EXPECT_EQ(placed, (std::vector<std::string>{"3D", "3D (2)", "3D (2)", "3D (3)", "3D", "3D (2)"}));
    expectProperNesting(trace["traceEvents"]);
}

} // namespace
