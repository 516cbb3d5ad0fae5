// Client packets and expected texts for the client stream tests.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

#include "packet_builder.h"
#include "tool_runner.h"

// A client packet of a fixed size whose fields are set by their offset
// from the packet's first byte (as the record layouts are written).
class ClientPacket {
public:
    ClientPacket(std::uint32_t type, std::size_t packetSize) : type_(type), payload_(packetSize - 24, 0) {}

    ClientPacket& u16(std::size_t offset, std::uint16_t value) { return put(offset, value, 2); }
    ClientPacket& u32(std::size_t offset, std::uint32_t value) { return put(offset, value, 4); }
    ClientPacket& u64(std::size_t offset, std::uint64_t value) { return put(offset, value, 8); }
    ClientPacket& text(std::size_t offset, const std::string& value)
    {
        std::memcpy(payload_.data() + offset - 24, value.data(), value.size());
        return *this;
    }
    ClientPacket& ordinal(std::uint32_t value) { ordinal_ = value; return *this; }
    ClientPacket& timer(std::uint64_t value) { timer_ = value; return *this; }

    PacketBuilder build() const
    {
        return PacketBuilder(typeWord(type_, kClientStream)).ordinal(ordinal_).timer(timer_).bytes(payload_);
    }
    operator PacketBuilder() const { return build(); }

private:
    ClientPacket& put(std::size_t offset, std::uint64_t value, int width)
    {
        for (int i = 0; i < width; ++i) payload_.at(offset - 24 + i) = static_cast<std::uint8_t>(value >> (8 * i));
        return *this;
    }

    std::uint32_t type_;
    std::uint32_t ordinal_ = 0;
    std::uint64_t timer_ = 0;
    Bytes payload_;
};

// The elements of the output array: the text between the array opener and
// the closing "\n  ]\n}" (empty when the frame is not found).
inline std::string elementsOf(const ToolRun& run, const std::string& jsonName)
{
    auto file = run.json.find(jsonName);
    if (file == run.json.end()) return "<no " + jsonName + ">";
    const std::string& text = file->second;
    for (const char* opener : {"\n  \"zyntel_packets\": [\n", "\n  \"timeperiods\": [\n"}) {
        std::size_t start = text.find(opener);
        const std::string closing = "\n  ]\n}";
        if (start == std::string::npos || text.size() < closing.size() ||
            text.compare(text.size() - closing.size(), closing.size(), closing) != 0)
            continue;
        start += std::strlen(opener);
        return text.substr(start, text.size() - closing.size() - start);
    }
    return "<no array in " + jsonName + ">";
}

inline std::string rawElements(const Capture& capture, std::string* console = nullptr)
{
    ToolRun run = convertCapture(capture, {"-raw"});
    if (console) *console = run.out;
    return elementsOf(run, "in.raw.json");
}

inline std::string correlatedElements(const Capture& capture, std::string* console = nullptr)
{
    ToolRun run = convertCapture(capture, {});
    if (console) *console = run.out;
    return elementsOf(run, "in.json");
}

// The envelope lines of a raw element of a client packet.
inline std::string envelope(std::uint32_t size, const std::string& typeName, std::uint32_t ordinal,
                            std::uint64_t timer, const std::string& api)
{
    return "    {\n      \"sig\": \"0x5a594e42\",\n      \"size\": " + std::to_string(size) + ",\n      \"type\": \"" +
           typeName + "\",\n      \"thread\": 0,\n      \"osid\": 0,\n      \"ordinal\": " + std::to_string(ordinal) +
           ",\n      \"kortimer\": " + std::to_string(timer) + ",\n      \"api\": \"" + api + "\",\n";
}

// The head of a correlated element, up to the first "prop" key.
inline std::string period(std::uint64_t start, std::uint64_t end, const std::string& name)
{
    return "    {\n      \"start\": " + std::to_string(start) + ",\n      \"end\": " + std::to_string(end) +
           ",\n      \"name\": \"" + name + "\",\n      \"prop\": {\n";
}

inline bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
