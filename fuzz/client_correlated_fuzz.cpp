// Client packets through the correlated converter, pairing state emptied
// for every input as at the start of a client file.
#include "fuzz_support.h"

#include "client/client_correlated.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzMode mode;
    mode.streamId = 2;
    fuzzConverter(data, size, clientConvertCorrelated, clientBeginFile, mode);
    return 0;
}
