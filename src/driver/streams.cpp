#include "driver/run.h"
#include "fw/fw_correlated.h"
#include "fw/fw_raw.h"
#include "host/host_converters.h"

// Streams whose converters are not part of this build are reported and
// skipped by the driver.
const StreamTable& builtInStreams()
{
    static const StreamTable table{
        {"Firmware", 5000, fwConvertCorrelated, fwConvertRaw, fwBeginFile},
        {"Host", 1000, hostConvertCorrelated, hostConvertRaw, nullptr},
        {"Client", 1000, nullptr, nullptr, nullptr},
    };
    return table;
}
