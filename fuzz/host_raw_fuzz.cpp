// Feeds arbitrary packets to the host raw converter. The first byte
// picks the options (-hex, -tdelta); the rest is a packet sequence.
#include <cstddef>
#include <cstdint>

#include "fuzz_support.h"
#include "host/host_converters.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1) return 0;
    FuzzMode mode;
    mode.raw = true;
    mode.hex = (data[0] & 1) != 0;
    mode.timeDelta = (data[0] & 2) != 0;
    mode.streamId = 1;
    fuzzConverter(data + 1, size - 1, hostConvertRaw, nullptr, mode);
    return 0;
}
