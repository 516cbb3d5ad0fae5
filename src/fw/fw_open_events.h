// The pairing state of the firmware correlated converter: one slot per
// pairing key, each holding a copy of the newest open begin packet or
// nothing. There are no queues: a newer begin replaces an older one.
#pragma once

#include "stream/packet.h"

constexpr unsigned kFwDataMasterCount = 8;
constexpr unsigned kFwGpuCount = 4;

struct FwOpenEvents {
    // Hardware work, by data-master index * 4 + GPU id.
    StoredPacket hardware[kFwDataMasterCount * kFwGpuCount];
    // Firmware sections by kind (background, interrupt, debug), then data master.
    StoredPacket sections[3][kFwDataMasterCount];
    // Context-switch stores, by data master.
    StoredPacket contextSwitches[kFwDataMasterCount];
    // Frequency-scaling begins: proactive DVFS, DVFS, work estimate
    // (sub-events 1, 3, 5).
    StoredPacket frequencyScaling[3];
};

// The one state of the run, emptied by fwBeginFile().
FwOpenEvents& fwOpenEvents();
