// Event types of the firmware stream and the name tables of its payloads.
#pragma once

#include <cstdint>

#include "json/names.h"

// Firmware event types (type word bits 0 to 14).
enum FwEventType : std::uint32_t {
    kFwBgStart = 0x01,
    kFwDbgEnd = 0x06,
    kFwHwPmOomTaPause = 0x07,
    kFwHwTaKick = 0x08,
    kFwHwTaFinished = 0x09,
    kFwHw3dTqKick = 0x0A,
    kFwHw3dSpmKick = 0x11,
    kFwHwPeriodic = 0x12,
    kFwHwPmOomTaResume = 0x19,
    kFwClockChange = 0x1A,
    kFwGpuStateChange = 0x1B,
    kFwPowerEstRequest = 0x20,
    kFwPowerEstResult = 0x22,
    kFwPowerChange = 0x23,
    kFwHwTdmKick = 0x28,
    kFwHwNullKick = 0x2A,
    kFwGpuWorkPeriod = 0x2B,
    kFwCswStore = 0x30,
    kFwCswStoreComplete = 0x31,
    kFwDvfsActivity = 0x32,
    kFwUfoInfo = 0x38,
    kFwActivity = 0x39,
    kFwLast = 0x3A,
};

// Activity events of "39_FW_Activity".
enum FwActivityEvent : std::uint32_t {
    kFwActRegsProgrammed = 1,
    kFwActHwrDetected = 2,
    kFwActHwrFreelistReady = 5,
    kFwActFeatureFlags = 6,
    kFwActFilterSet = 7,
};

// The data-master value that means "no data master".
constexpr std::uint32_t kFwNoDataMaster = 0x1FFFFFFF;
// The one power change that explains a timer reset.
constexpr std::uint32_t kFwPowerOn = 1;

extern const NameTable FwEventTypeNames;      // up to and including "LAST"
extern const NameTable FwDataMasterNames;     // raw mode: "00_GP" ...
extern const NameTable FwDataMasterShortNames; // correlated mode: "GP" ...
extern const NameTable FwClockSourceNames;
extern const NameTable FwGpuStateNames;
extern const NameTable FwPowerChangeNames;
extern const NameTable FwActivityEventNames;
extern const NameTable FwHwrReasonNames;
extern const NameTable UfoEventNames;

// Data-master names with the "no data master" value: "1FFFFFFF_Invalid"
// (raw) or "Invalid" (correlated) for 0x1FFFFFFF, otherwise the table's name.
const char* FwDataMasterName(std::uint32_t dataMaster);
const char* FwDataMasterShortName(std::uint32_t dataMaster);

// Types that no firmware converter handles: 0, the undefined codes, and
// 0x3A ("LAST") and above.
bool FwIsRejectedType(std::uint32_t eventType);
// Hardware kicks, finishes, periodic samples and null kicks.
bool FwIsHardwareType(std::uint32_t eventType);
