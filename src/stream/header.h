// The 24-byte packet header that starts every packet, the optional 8-byte
// transport-layer header in front of a packet, and header reading.
#pragma once

#include <cstdint>

struct StreamFile;

constexpr std::uint32_t ZYNTEL_PACKET_V2_SIG = 0x5A594E32;
constexpr std::uint32_t ZYNTEL_PACKET_V2A_SIG = 0x5A594E41;
constexpr std::uint32_t ZYNTEL_PACKET_V2B_SIG = 0x5A594E42;

constexpr std::uint32_t kHeaderSize = 24;
constexpr std::uint32_t kPacketSizeLimit = 3072;
constexpr std::uint32_t kHwPacketGuideSize = 2060;
constexpr std::uint32_t kSmallestPacketSize = 32;
constexpr std::uint32_t kTlMagic = 0x31504C54; // "TLP1"
constexpr std::uint32_t kTlHeaderSize = 8;

// readHeader's result for a header that is neither valid nor all zero.
constexpr std::int32_t kCorruptHeader = 2147483647;

struct PacketHeader {
    std::uint8_t bytes[kHeaderSize] = {};

    std::uint32_t word(int index) const
    {
        return static_cast<std::uint32_t>(bytes[index * 4]) | static_cast<std::uint32_t>(bytes[index * 4 + 1]) << 8 |
               static_cast<std::uint32_t>(bytes[index * 4 + 2]) << 16 |
               static_cast<std::uint32_t>(bytes[index * 4 + 3]) << 24;
    }
    std::uint32_t signature() const { return word(0); }
    std::uint32_t sizeWord() const { return word(1); }
    std::uint32_t size() const { return sizeWord() & 0xFFFF; }
    std::uint32_t typeWord() const { return word(2); }
    std::uint32_t streamId() const { return (typeWord() >> 16) & 0x7; }
    std::uint32_t ordinal() const { return word(3); }
};

// The reader's signature test: V2, V2a or V2b.
inline bool isPacketSignature(std::uint32_t word)
{
    return word == ZYNTEL_PACKET_V2_SIG || word - ZYNTEL_PACKET_V2A_SIG <= 1;
}

// The wider test of the hex dump and of body validation: also V2a plus 2.
inline bool isDumpableSignature(std::uint32_t word)
{
    return word == ZYNTEL_PACKET_V2_SIG || word - ZYNTEL_PACKET_V2A_SIG <= 2;
}

// Reads the next header from the file's input, skipping a transport-layer
// header in front of it. Result: > 0 bytes consumed for a valid header
// (copied into `header`), 0 for a zero header, kCorruptHeader for anything
// else (header left unchanged), < 0 at end of file or on a read error.
// `position` receives the file position of the packet header.
std::int32_t readHeader(StreamFile& file, PacketHeader& header, std::int64_t& position);
