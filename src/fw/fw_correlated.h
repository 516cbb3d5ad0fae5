// The firmware stream's correlated converter: begin events (kicks, section
// starts, context-switch stores, frequency-scaling begins) wait in
// FwOpenEvents until their end arrives, and each pair, or each event that
// stands alone, becomes one object of the "timeperiods" array.
#pragma once

#include <cstdint>

class Packet;
struct StreamFile;

std::uint32_t fwConvertCorrelated(StreamFile& file, Packet& packet);

// Empties the pairing state; called when a firmware file begins.
void fwBeginFile();
