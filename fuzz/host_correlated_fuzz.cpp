// Feeds arbitrary packets to the host correlated converter. The first
// byte is not used; the rest is a packet sequence.
#include <cstddef>
#include <cstdint>

#include "fuzz_support.h"
#include "host/host_converters.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1) return 0;
    FuzzMode mode;
    mode.streamId = 1;
    fuzzConverter(data + 1, size - 1, hostConvertCorrelated, nullptr, mode);
    return 0;
}
