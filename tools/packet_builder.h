// Builds packets and captures byte by byte, for tests and the sample tool.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kSigV2 = 0x5A594E32;
constexpr std::uint32_t kSigV2a = 0x5A594E41;
constexpr std::uint32_t kSigV2b = 0x5A594E42;

// Type word: event type (bits 0-14), stream id (16-18), extra flag bits.
constexpr std::uint32_t typeWord(std::uint32_t eventType, std::uint32_t streamId = 0, std::uint32_t flags = 0)
{
    return (eventType & 0x7FFF) | (streamId & 7) << 16 | flags;
}
constexpr std::uint32_t kFirmwareStream = 0;
constexpr std::uint32_t kHostStream = 1;
constexpr std::uint32_t kClientStream = 2;

class PacketBuilder {
public:
    explicit PacketBuilder(std::uint32_t typeWord, std::uint32_t signature = kSigV2b);

    PacketBuilder& signature(std::uint32_t value);
    PacketBuilder& ordinal(std::uint32_t value);
    PacketBuilder& timer(std::uint64_t value);
    // Overrides the size word (otherwise header plus payload length).
    PacketBuilder& sizeWord(std::uint32_t value);

    // Payload fields, appended in order (offsets count from the payload start).
    PacketBuilder& u8(std::uint8_t value);
    PacketBuilder& u16(std::uint16_t value);
    PacketBuilder& u32(std::uint32_t value);
    PacketBuilder& u64(std::uint64_t value);
    PacketBuilder& i32(std::int32_t value) { return u32(static_cast<std::uint32_t>(value)); }
    PacketBuilder& u32s(std::initializer_list<std::uint32_t> values);
    // A text field of `width` bytes, NUL-padded (cut if longer).
    PacketBuilder& text(const std::string& value, std::size_t width);
    PacketBuilder& bytes(const Bytes& value);
    PacketBuilder& zeros(std::size_t count);
    // Pads with zeros up to the given payload offset.
    PacketBuilder& padTo(std::size_t payloadOffset);
    // Writes a u32 at a payload offset already appended (or pads up to it).
    PacketBuilder& putU32(std::size_t payloadOffset, std::uint32_t value);

    std::size_t payloadSize() const { return payload_.size(); }
    Bytes build() const;

private:
    std::uint32_t signature_;
    std::uint32_t typeWord_;
    std::uint32_t ordinal_ = 0;
    std::uint64_t timer_ = 0;
    bool sizeOverridden_ = false;
    std::uint32_t sizeWord_ = 0;
    Bytes payload_;
};

// A capture file: packets and the odd headers a damaged capture holds.
class Capture {
public:
    Capture& add(const Bytes& bytes);
    Capture& add(const PacketBuilder& packet) { return add(packet.build()); }
    Capture& add(const Capture& other) { return add(other.bytes()); }
    // Transport-layer header (8 bytes) of the given TL type and data length.
    Capture& tlHeader(std::uint8_t tlType, std::uint16_t dataLength);
    Capture& zeroHeader() { return add(Bytes(24, 0)); }
    Capture& zeros(std::size_t count) { return add(Bytes(count, 0)); }
    const Bytes& bytes() const { return bytes_; }

private:
    Bytes bytes_;
};

void appendU32(Bytes& bytes, std::uint32_t value);
