#include "driver/run.h"
#include "fw/fw_correlated.h"
#include "fw/fw_raw.h"
#include "host/host_converters.h"

// The converters of each stream; the driver picks a row by the stream id of
// a file's first header and skips a stream whose converters are missing.
const StreamTable& builtInStreams()
{
    static const StreamTable table{
        {"Firmware", 5000, fwConvertCorrelated, fwConvertRaw, fwBeginFile},
        {"Host", 1000, hostConvertCorrelated, hostConvertRaw, nullptr},
        // The client converters (src/client) join when their API payload
        // printers exist; until then the driver skips client files.
        {"Client", 1000, nullptr, nullptr, nullptr},
    };
    return table;
}
