// Names of the counter blocks of the GPU, by 16-bit block id.
#pragma once

#include <cstdint>

// The display name of a block id: bit 15 selects the second ("DA") family;
// ids 0 to 111 index the block tables, group and custom ids are named by
// value. Any other id prints the unknown-block-id warning and gives
// "OUT_OF_BOUNDS"; ids 48 to 111 of the second family give "OUT_OF_BOUNDS"
// without a warning.
const char* BlockIdName(std::uint16_t id16);
