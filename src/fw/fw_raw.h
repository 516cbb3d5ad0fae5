// Raw mode of the firmware stream: every packet becomes one element of
// "zyntel_packets", the common envelope followed by a payload object.
#pragma once

#include <cstdint>

class Packet;
struct StreamFile;

// The Firmware stream's raw converter. Returns 1 for a handled packet, 0
// for a rejected type (written as a hex dump instead of an object).
std::uint32_t fwConvertRaw(StreamFile& file, Packet& packet);
