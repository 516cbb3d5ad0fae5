// Host event types and the name tables of the host stream's sub-types.
#pragma once

#include <cstdint>

#include "json/names.h"

enum HostEventType : std::uint32_t {
    kHostEnqueue = 1,
    kHostUfo = 2,
    kHostAlloc = 3,
    kHostClockSync = 4,
    kHostFree = 5,
    kHostModify = 6,
    kHostDeviceInfo = 7,
    kHostInfo = 8,
    kHostFenceWait = 9,
    kHostSwTimelineAdvance = 10,
    kHostClientInfo = 11,
};
constexpr std::uint32_t kHostLastEventType = kHostClientInfo;

extern const NameTable HostEventNames;
extern const NameTable HostKickTypeNames;
extern const NameTable HostResourceTypeNames; // alloc, free and modify alike
extern const NameTable HostDeviceInfoEventNames;
extern const NameTable HostHealthStatusNames;
extern const NameTable HostHealthReasonNames;
extern const NameTable HostInfoEventNames;
extern const NameTable HostClientInfoEventNames;
extern const NameTable HostFenceWaitResultNames;
