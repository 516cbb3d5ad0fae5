#include "client/client_correlated.h"
#include "client/client_raw.h"
#include "driver/run.h"

// Streams whose converters are not part of this build are reported and
// skipped by the driver.
const StreamTable& builtInStreams()
{
    static const StreamTable table{
        {"Firmware", 5000, nullptr, nullptr, nullptr},
        {"Host", 1000, nullptr, nullptr, nullptr},
        {"Client", 1000, clientConvertCorrelated, clientConvertRaw, clientBeginFile},
    };
    return table;
}
