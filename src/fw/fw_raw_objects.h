// The payload objects of the firmware raw converter, one per event family.
// Each writes the lines after the envelope, up to and including the
// element's closing "    }" (where the format closes it).
#pragma once

class Packet;
struct StreamFile;

void writeRawSection(StreamFile& file, const Packet& packet);
void writeRawHardware(StreamFile& file, const Packet& packet);
void writeRawClockChange(StreamFile& file, const Packet& packet);
void writeRawGpuState(StreamFile& file, const Packet& packet);
void writeRawPowerEstimate(StreamFile& file, const Packet& packet);
void writeRawPowerChange(StreamFile& file, const Packet& packet);
void writeRawGpuWorkPeriod(StreamFile& file, const Packet& packet);
void writeRawContextSwitch(StreamFile& file, const Packet& packet);
void writeRawUfo(StreamFile& file, const Packet& packet);
void writeRawActivity(StreamFile& file, const Packet& packet);

// Frequency scaling writes its own envelope, and only for a valid sub-event.
void writeRawDvfs(StreamFile& file, const Packet& packet, const char* typeName);
