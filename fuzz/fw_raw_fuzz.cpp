// Feeds arbitrary packets to the firmware raw converter. The first byte
// picks the options (-hex, -tdelta, -v); the rest is a packet sequence.
#include <cstddef>
#include <cstdint>

#include "fuzz_support.h"
#include "fw/fw_raw.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1) return 0;
    FuzzMode mode;
    mode.raw = true;
    mode.hex = (data[0] & 1) != 0;
    mode.timeDelta = (data[0] & 2) != 0;
    mode.verbose = (data[0] & 4) != 0;
    mode.streamId = 0;
    fuzzConverter(data + 1, size - 1, fwConvertRaw, nullptr, mode);
    return 0;
}
