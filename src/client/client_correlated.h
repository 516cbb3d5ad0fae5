// Correlated-mode conversion of client packets: begin events wait in a
// pending table until their end arrives; each pair, and each point event,
// becomes one time period.
#pragma once

#include <cstdint>

class Packet;
struct StreamFile;

std::uint32_t clientConvertCorrelated(StreamFile& file, Packet& packet);

// Forgets every pending begin; called when a client file begins.
void clientBeginFile();
