// The event families of the firmware correlated converter. Each takes a
// packet whose timer is already scaled (x256) and writes its time periods.
#pragma once

#include <cstdint>

#include "fw/fw_payload.h"
#include "stream/packet.h"

struct StreamFile;

// Bytes after the header; 0 for a packet cut short inside its header.
inline std::uint32_t fwPayloadSize(const Packet& packet)
{
    return packet.size() > kFwPayload ? packet.size() - kFwPayload : 0;
}
inline std::uint32_t fwThreadFlag(const Packet& packet) { return (packet.typeWord() >> 15) & 1; }

// GPU a hardware packet pairs under: 0, except for multi-GPU TA kicks and
// finishes, where it is the lowest set bit of the GPU id mask.
std::uint32_t fwHardwareGpuId(const Packet& packet);

// Hardware kicks, finishes, periodic samples and null kicks.
void correlateHardware(StreamFile& file, Packet& packet);
void correlateSection(StreamFile& file, Packet& packet);
void correlateContextSwitch(StreamFile& file, Packet& packet);
void correlateFrequencyScaling(StreamFile& file, Packet& packet);
void writeClockChange(StreamFile& file, Packet& packet);
void writeGpuStateChange(StreamFile& file, Packet& packet);
void writePowerChange(StreamFile& file, Packet& packet);
void writePowerEstimate(StreamFile& file, Packet& packet);
void writeGpuWorkPeriod(StreamFile& file, Packet& packet);
void writeUfoPeriod(StreamFile& file, Packet& packet);
void writeActivityPeriod(StreamFile& file, Packet& packet);

