#include "driver/run.h"
#include "client/client_correlated.h"
#include "client/client_raw.h"
#include "fw/fw_correlated.h"
#include "fw/fw_raw.h"
#include "host/host_converters.h"

// The converters of each stream; the driver picks a row by the stream id of
// a file's first header.
const StreamTable& builtInStreams()
{
    static const StreamTable table{
        {"Firmware", 5000, fwConvertCorrelated, fwConvertRaw, fwBeginFile},
        {"Host", 1000, hostConvertCorrelated, hostConvertRaw, nullptr},
        {"Client", 1000, clientConvertCorrelated, clientConvertRaw, clientBeginFile},
    };
    return table;
}
