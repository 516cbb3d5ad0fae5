// Feeds fuzzer bytes to the firmware correlated converter. The first byte
// chooses verbose mode; the rest are packets.
#include <cstddef>
#include <cstdint>

#include "fuzz_support.h"
#include "fw/fw_correlated.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    FuzzMode mode;
    mode.verbose = (data[0] & 1) != 0;
    fuzzConverter(data + 1, size - 1, fwConvertCorrelated, fwBeginFile, mode);
    return 0;
}
