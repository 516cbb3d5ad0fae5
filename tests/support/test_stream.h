// A minimal stream used to test the driver and the reading loop on their
// own: every packet becomes a small element naming its ordinal, packets of
// event type 0x7FFF are rejected and packets of type 0x7FFE count as
// over-sized.
#pragma once

#include "driver/run.h"

constexpr std::uint32_t kRejectedTestType = 0x7FFF;
constexpr std::uint32_t kOversizedTestType = 0x7FFE;

// The same converters for all three streams, named as the driver names them.
const StreamTable& testStreams();
