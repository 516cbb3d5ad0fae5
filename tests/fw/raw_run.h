// Runs firmware captures through the raw converter in-process and returns
// the elements of "zyntel_packets" as written, with the console text.
#pragma once

#include <string>
#include <vector>

#include "driver/run.h"
#include "fw/counter_ids.h"
#include "fw/fw_raw.h"
#include "packet_builder.h"
#include "tool_runner.h"

struct RawRun {
    std::string elements; // between the array's opening line and its closing
    std::string out;
    std::string err;
};

inline RawRun convertFirmwareRaw(const Capture& capture, const std::vector<std::string>& options = {})
{
    static const StreamTable table{
        {"Firmware", 5000, fwConvertRaw, fwConvertRaw, nullptr},
        {"Host", 1000, nullptr, nullptr, nullptr},
        {"Client", 1000, nullptr, nullptr, nullptr},
    };
    ScratchDir dir;
    dir.write("in.bin", capture);
    std::vector<std::string> arguments{"in.bin", "-raw"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    ToolRun run = runInProcess(dir, arguments, table);

    RawRun result{"", run.out, run.err};
    const std::string& json = run.json["in.raw.json"];
    const std::string opener = "\"zyntel_packets\": [\n";
    std::size_t begin = json.find(opener);
    std::size_t end = json.rfind("\n  ]\n}");
    if (begin != std::string::npos && end != std::string::npos && end >= begin + opener.size())
        result.elements = json.substr(begin + opener.size(), end - begin - opener.size());
    return result;
}

// The envelope lines every firmware element starts with.
inline std::string fwEnvelope(std::uint32_t signature, std::uint32_t size, const std::string& type,
                              std::uint32_t ordinal, std::uint64_t timer, std::uint32_t osid = 0)
{
    char text[400];
    std::snprintf(text, sizeof text,
                  "    {\n      \"sig\": \"0x%x\",\n      \"size\": %u,\n      \"type\": \"%s\",\n      \"thread\": 0,\n"
                  "      \"osid\": %u,\n      \"ordinal\": %u,\n      \"kortimer\": %llu,\n",
                  signature, size, type.c_str(), osid, ordinal, static_cast<unsigned long long>(timer));
    return text;
}

// Counter ids live for the whole run; tests that depend on them start clean.
inline void forgetCounterIds() { counterIdTable() = CounterIdTable{}; }
