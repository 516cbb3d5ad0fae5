// The lines that open every raw-mode element, the -tdelta timer rule and
// the hex dump of a packet.
#pragma once

#include <cstdint>

class Output;
class Packet;
struct StreamFile;

// "-tdelta": replaces the packet's timer by its difference to the file's
// previous timer and remembers the packet's own timer.
void applyTimeDelta(StreamFile& file, const Packet& packet);

// The "api" label of a client event type.
const char* clientApiLabel(std::uint32_t eventType);

// Writes "    {" and the header keys of a raw element; `file` may be null
// (then to standard output).
void writeRawEnvelope(StreamFile* file, const Packet& packet, const char* typeName);

// Writes a hex-dump element of the packet: as many bytes as its size word
// says, but never more than the packet holds. `file` may be null (then to
// standard output).
void writeHexDump(StreamFile* file, const Packet& packet);
