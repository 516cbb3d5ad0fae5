// Firmware timers must not go backwards. The check reports a backward step,
// telling a power cycle and a counter overflow apart from plain disorder.
#pragma once

#include <cstdint>

class Packet;
struct StreamFile;

// Checks `timer` against the file's previous timer (the caller stores the
// result there; it is always `timer`). `payload` starts after the header.
// Call after the ordinal check: messages quote file.lastOrdinal.
std::uint64_t CheckTimerContinuity(StreamFile& file, const Packet& payload, std::uint32_t eventType,
                                   std::uint64_t timer);
