// Writes starting inputs for the fuzz targets, one folder per target:
//   make_fuzz_seeds <directory>
// giving <directory>/<target>/<seed>. Every target gets the sample captures
// and a capture with one packet of every event type of its stream (one past
// the last named type included); the stream targets also get each of those
// packets alone, the trace target the tool's correlated text of them. A campaign starts from these; libFuzzer's merge keeps only
// what adds coverage.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "client/client_types.h"
#include "driver/run.h"
#include "fw/fw_names.h"
#include "host/host_names.h"
#include "json/output.h"
#include "stream_events.h"

namespace {

struct StreamSeeds {
    Capture sample;
    std::vector<Bytes> packets; // one per event type, then the API detail packets
};

// A payload of small numbers, so that counts, indices and names found in it
// stay in range and the converters print their lists and nested objects.
PacketBuilder& smallNumbers(PacketBuilder& packet, std::size_t words)
{
    for (std::size_t i = 0; i < words; ++i) packet.u32(static_cast<std::uint32_t>(i % 4));
    return packet;
}

std::vector<Bytes> everyEventType(std::uint32_t streamId, std::uint32_t lastType)
{
    StreamWriter writer(streamId);
    std::vector<Bytes> packets;
    for (std::uint32_t type = 0; type <= lastType + 1; ++type) {
        PacketBuilder packet = writer.next(type, 10);
        packets.push_back(smallNumbers(packet, 40).build());
    }
    return packets;
}

// Client packets whose detail depends on the API function they carry: the
// Vulkan marks with every function that has an "API Info" detail, and the
// OpenCL calls with every function that has data of its own.
void addApiDetails(std::vector<Bytes>& packets)
{
    StreamWriter client(kClientStream);
    const std::uint32_t vulkanFunctions[] = {211, 213, 214, 217, 219, 222, 223, 224, 225, 226, 227, 228,
                                             229, 230, 235, 242, 243, 244, 245, 248, 249, 250, 251, 252};
    for (std::uint32_t function : vulkanFunctions)
        for (std::uint32_t type : {client::kVulkanMarkStart, client::kVulkanMarkEnd}) {
            PacketBuilder packet = client.next(type, 10).u32s({5, 1234, 0, 0, function}).text("vkCall", 44);
            packets.push_back(smallNumbers(packet, 60).build());
        }
    const std::uint32_t openClFunctions[] = {60, 141, 300, 302, 86, 301, 158, 303, 161, 304};
    for (std::uint32_t function : openClFunctions)
        for (std::uint32_t type : {client::kOpenClMarkStart, client::kOpenClMarkStop}) {
            PacketBuilder packet = client.next(type, 10).u32s({7, 3, 1234, 1, 0, function}).text("clCall", 40);
            packets.push_back(smallNumbers(packet, 60).build());
        }
}

void writeFile(const std::filesystem::path& path, const Bytes& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

// Every target reads a first byte that picks its options, then its input.
void writeSeed(const std::filesystem::path& path, std::uint8_t modeByte, const Bytes& body)
{
    Bytes seed{modeByte};
    seed.insert(seed.end(), body.begin(), body.end());
    writeFile(path, seed);
}

// The stream targets read a mode byte, then packets each preceded by its
// 16-bit length.
Bytes lengthPrefixed(const std::vector<Bytes>& packets)
{
    Bytes chunks;
    for (const Bytes& packet : packets) {
        chunks.push_back(static_cast<std::uint8_t>(packet.size()));
        chunks.push_back(static_cast<std::uint8_t>(packet.size() >> 8));
        chunks.insert(chunks.end(), packet.begin(), packet.end());
    }
    return chunks;
}

// The packets of a capture made by the packet builder: each one's size is
// in its header, and the capture holds nothing else.
std::vector<Bytes> packetsOf(const Capture& capture)
{
    const Bytes& bytes = capture.bytes();
    std::vector<Bytes> packets;
    for (std::size_t at = 0; at + 24 <= bytes.size();) {
        std::size_t size = bytes[at + 4] | bytes[at + 5] << 8;
        packets.emplace_back(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                             bytes.begin() + static_cast<std::ptrdiff_t>(at + size));
        at += size;
    }
    return packets;
}

// Mode bytes 0 and 0xFF: the plainest and the fullest options of a target.
void writeStreamTarget(const std::filesystem::path& folder, const StreamSeeds& seeds)
{
    std::filesystem::create_directories(folder);
    for (std::uint8_t mode : {0x00, 0xFF}) {
        writeSeed(folder / ("sample_" + std::to_string(mode)), mode, lengthPrefixed(packetsOf(seeds.sample)));
        writeSeed(folder / ("all_types_" + std::to_string(mode)), mode, lengthPrefixed(seeds.packets));
    }
    for (std::size_t i = 0; i < seeds.packets.size(); ++i)
        writeSeed(folder / ("packet_" + std::to_string(i)), 0, lengthPrefixed({seeds.packets[i]}));
}

Capture allTypesCapture(const StreamSeeds& seeds)
{
    Capture capture;
    for (const Bytes& packet : seeds.packets) capture.add(packet);
    return capture;
}

// The reader target reads a mode byte and then a capture file.
void writeReaderTarget(const std::filesystem::path& folder, const std::vector<StreamSeeds>& streams)
{
    std::filesystem::create_directories(folder);
    for (std::size_t s = 0; s < streams.size(); ++s) {
        const Capture allTypes = allTypesCapture(streams[s]);
        for (std::uint8_t mode : {0x00, 0x07}) {
            std::string suffix = std::to_string(s) + "_" + std::to_string(mode);
            writeSeed(folder / ("sample_" + suffix), mode, streams[s].sample.bytes());
            writeSeed(folder / ("all_types_" + suffix), mode, allTypes.bytes());
        }
    }
}

// The text the tool writes for a capture in correlated mode.
Bytes correlatedText(const std::filesystem::path& folder, const Capture& capture)
{
    const std::string input = (folder / "capture.bin").string();
    writeFile(input, capture.bytes());
    std::string console;
    Output quiet;
    quiet.attachString(&console);
    redirectConsole(&quiet, &quiet);
    const char* argv[] = {"zyntelbin2json", input.c_str()};
    runTool(2, argv, builtInStreams());
    redirectConsole(nullptr, nullptr);
    std::ifstream json(folder / "capture.json", std::ios::binary);
    Bytes text{std::istreambuf_iterator<char>(json), std::istreambuf_iterator<char>()};
    std::filesystem::remove(folder / "capture.bin");
    std::filesystem::remove(folder / "capture.json");
    return text;
}

// The trace target reads a stream byte (firmware, host, client) and then
// the text the correlated converter wrote.
void writeTraceTarget(const std::filesystem::path& folder, const std::vector<StreamSeeds>& streams)
{
    std::filesystem::create_directories(folder);
    for (std::uint8_t s = 0; s < streams.size(); ++s) {
        writeSeed(folder / ("sample_" + std::to_string(s)), s, correlatedText(folder, streams[s].sample));
        writeSeed(folder / ("all_types_" + std::to_string(s)), s, correlatedText(folder, allTypesCapture(streams[s])));
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <directory>\n", argv[0]);
        return 1;
    }
    const std::filesystem::path directory = argv[1];
    const SampleCaptures samples = sampleCaptures();
    const StreamSeeds fwSeeds{samples.firmware, everyEventType(kFirmwareStream, kFwLast)};
    const StreamSeeds hostSeeds{samples.host, everyEventType(kHostStream, kHostLastEventType)};
    StreamSeeds clientSeeds{samples.client, everyEventType(kClientStream, client::kLastEventType)};
    addApiDetails(clientSeeds.packets);
    writeReaderTarget(directory / "reader", {fwSeeds, hostSeeds, clientSeeds});
    writeTraceTarget(directory / "trace", {fwSeeds, hostSeeds, clientSeeds});
    writeStreamTarget(directory / "fw_raw", fwSeeds);
    writeStreamTarget(directory / "fw_correlated", fwSeeds);
    writeStreamTarget(directory / "host_raw", hostSeeds);
    writeStreamTarget(directory / "host_correlated", hostSeeds);
    writeStreamTarget(directory / "client_raw", clientSeeds);
    writeStreamTarget(directory / "client_correlated", clientSeeds);
    return 0;
}
