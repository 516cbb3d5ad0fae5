// UFO records: firmware addresses of synchronisation words with their
// values, as carried by the firmware's "38_UFO_info" packets and the host
// stream's equivalent.
#pragma once

#include <cstdint>

class Output;
class Packet;

// Bytes per record for a UFO event: 12 for updates (0, 5) and failed checks
// (3, 4), 8 for successful checks (1, 2), 0 for any other event.
std::uint32_t UfoRecordSize(std::uint32_t ufoEvent);

// Writes the elements of a "UFOs" array: one object per record, separated
// by ",\n", the last followed by "\n". `records` is a view that starts at
// the first record; only records that start inside it are printed. Events
// without a record form write nothing.
void PrintUFOList(Output& out, std::uint32_t ufoEvent, const Packet& records, std::uint32_t count);

// The largest record count a firmware packet of `packetSize` bytes (header
// included) can hold: the size less the header and the eight fixed payload
// words, divided by the record size. An unknown event prints
// "error: Unknown event type %u\n" and allows 0.
std::uint32_t UfoMaxRecords(std::uint32_t packetSize, std::uint32_t ufoEvent);

// The firmware size limit: a count of at least the packet size, or above
// the maximum, is too large.
inline bool UfoListTooLarge(std::uint32_t packetSize, std::uint32_t ufoCount, std::uint32_t maxRecords)
{
    return ufoCount >= packetSize || ufoCount > maxRecords;
}
