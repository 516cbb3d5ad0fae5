// Raw-mode conversion of client packets: the envelope and one named object
// per packet, with the API-specific tails.
#pragma once

#include <cstdint>

class Packet;
struct StreamFile;

std::uint32_t clientConvertRaw(StreamFile& file, Packet& packet);
