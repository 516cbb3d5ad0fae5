// The event families of the firmware correlated converter. Each takes a
// packet whose timer is already scaled (x256) and writes its time periods.
#pragma once

#include <cstdint>

#include "stream/packet.h"

struct StreamFile;

constexpr std::uint32_t kFwPayloadOffset = 24;
constexpr std::uint32_t kFwMultiGpuFlag = 1u << 20;
constexpr std::uint32_t kFwCycleCountInvalidFlag = 1u << 21;
constexpr std::uint32_t kFwNoDataMaster = 0x1FFFFFFF;

inline std::uint32_t fwOsId(const Packet& packet) { return (packet.typeWord() >> 24) & 0x1F; }
inline std::uint32_t fwThreadFlag(const Packet& packet) { return (packet.typeWord() >> 15) & 1; }

// Data-master name of correlated mode: "Invalid" for 0x1FFFFFFF.
const char* fwShortDataMasterName(std::uint32_t dataMaster);

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

