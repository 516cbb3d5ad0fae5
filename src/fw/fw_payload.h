// Byte layout of firmware payloads. Offsets count from the first byte after
// the 24-byte header; the helpers take the whole packet.
#pragma once

#include <cstdint>

#include "stream/header.h"
#include "stream/packet.h"

constexpr std::uint32_t kFwPayload = kHeaderSize;

// The fourth signature value that the wider signature test admits; its
// hardware packets are laid out like V2b.
constexpr std::uint32_t kSigV2aPlus2 = ZYNTEL_PACKET_V2A_SIG + 2;

// Type-word flags of hardware packets.
constexpr std::uint32_t kFwMultiGpuFlag = 1u << 20;
constexpr std::uint32_t kFwCycleCountInvalidFlag = 1u << 21;

inline bool FwIsMultiGpu(const Packet& packet) { return (packet.typeWord() & kFwMultiGpuFlag) != 0; }
inline bool FwCycleCountInvalid(const Packet& packet) { return (packet.typeWord() & kFwCycleCountInvalidFlag) != 0; }
inline std::uint32_t FwOsId(const Packet& packet) { return (packet.typeWord() >> 24) & 0x1F; }

// Hardware payload fields common to all signatures.
struct FwHardwareFields {
    static constexpr std::uint32_t dmCyc = kFwPayload + 0;
    static constexpr std::uint32_t frame = kFwPayload + 4;
    static constexpr std::uint32_t pid = kFwPayload + 8;
    static constexpr std::uint32_t context = kFwPayload + 12;
    static constexpr std::uint32_t workTarget = kFwPayload + 16;
    static constexpr std::uint32_t extJobRef = kFwPayload + 20; // V2a, V2b
    static constexpr std::uint32_t intJobRef = kFwPayload + 24; // V2a, V2b
    static constexpr std::uint32_t timeCorrIndex = kFwPayload + 28; // V2b
    static constexpr std::uint32_t blocksOffset = kFwPayload + 32;  // V2b: u16
    static constexpr std::uint32_t blockCount = kFwPayload + 34;    // V2b: u16
    static constexpr std::uint32_t workCtx = kFwPayload + 36;
    static constexpr std::uint32_t ctxPriority = kFwPayload + 40;
    static constexpr std::uint32_t gpuIdMask = kFwPayload + 44; // multi-GPU only
    static constexpr std::uint32_t gpuKickId = kFwPayload + 48; // u8, blocksOffset >= 49
};

// Where a hardware packet's counter-block stream lies. V2 keeps its block
// count at payload offset 17 and V2a at 19 (unaligned, overlapping the
// work target); V2b and V2a+2 give count and offset in the word at 32.
struct FwBlockStream {
    std::uint32_t count;  // blocks as the packet states it
    std::uint32_t start;  // offset of the first block header from the packet start
};

inline bool FwHasV2bLayout(std::uint32_t signature)
{
    return signature == ZYNTEL_PACKET_V2B_SIG || signature == kSigV2aPlus2;
}

// `signature` decides the layout (a correlated pair uses its begin's for both).
inline FwBlockStream FwLocateBlocks(const Packet& packet, std::uint32_t signature)
{
    if (FwHasV2bLayout(signature)) {
        std::uint32_t word = packet.u32(FwHardwareFields::blocksOffset);
        return {word >> 16, kFwPayload + (word & 0xFFFF)};
    }
    if (signature == ZYNTEL_PACKET_V2_SIG) return {packet.u16(kFwPayload + 17), kFwPayload + 24};
    return {packet.u16(kFwPayload + 19), kFwPayload + 32};
}
