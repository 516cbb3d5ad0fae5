// The core configuration carried by the "06_KOR_Zyntel_Feature_Flags"
// activity: the BVNC identifier, the feature list and the counter blocks the
// core has. Its layout changed over firmware versions; the payload size
// tells them apart.
#pragma once

#include <cstdint>

class Packet;
struct StreamFile;

// Each display operation writes the core-configuration keys of one layout
// into the open activity object. `packet` is the whole activity packet.
using BvncDisplay = void (*)(StreamFile& file, const Packet& packet, bool multiGpu);

void DisplayBVNC_Pre9(StreamFile& file, const Packet& packet, bool multiGpu);
void DisplayBVNC_9(StreamFile& file, const Packet& packet, bool multiGpu);
void DisplayBVNC_13(StreamFile& file, const Packet& packet, bool multiGpu);
void DisplayBVNC_17(StreamFile& file, const Packet& packet, bool multiGpu);
void DisplayBVNC_19(StreamFile& file, const Packet& packet, bool multiGpu);
void DisplayBVNC_75(StreamFile& file, const Packet& packet, bool multiGpu);
// The current layout (200 bytes); also used for larger, newer payloads.
void DisplayBVNC_Current(StreamFile& file, const Packet& packet, bool multiGpu);

struct BvncLayout {
    std::uint32_t index;
    std::uint32_t payloadSize;
    BvncDisplay display; // null for index 0
};

constexpr std::uint32_t kBvncLayoutCount = 8;
constexpr std::uint32_t kBvncCurrentSize = 200;
extern const BvncLayout BvncLayoutTable[kBvncLayoutCount];

// Chooses the layout by payload size and writes the core-configuration keys
// (or the feature list alone for an 8-byte payload), followed by a
// "Raw-Packet" dump when no layout fits or the payload is newer than known.
// Used by both firmware converters for the feature-flags activity.
void PrintCoreConfiguration(StreamFile& file, const Packet& packet);
