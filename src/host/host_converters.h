// The host stream's converters. Host events are instantaneous: correlated
// mode writes one time period per packet.
#pragma once

#include <cstdint>

class Packet;
struct StreamFile;

std::uint32_t hostConvertRaw(StreamFile& file, Packet& packet);
std::uint32_t hostConvertCorrelated(StreamFile& file, Packet& packet);
