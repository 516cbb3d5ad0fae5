// Client packets through the raw converter; the first byte picks -hex and
// -tdelta.
#include "fuzz_support.h"

#include "client/client_raw.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1) return 0;
    FuzzMode mode;
    mode.raw = true;
    mode.hex = (data[0] & 1) != 0;
    mode.timeDelta = (data[0] & 2) != 0;
    mode.streamId = 2;
    fuzzConverter(data + 1, size - 1, clientConvertRaw, nullptr, mode);
    return 0;
}
