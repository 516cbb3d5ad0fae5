// The counter-block stream at the end of firmware hardware packets.
#pragma once

#include <cstdint>

class Output;
class Packet;

// Writes the elements of a "blocks" array from `begin`'s counter-block
// stream, laid out for `signature` (V2, V2a, or V2b and V2a+2). With an end
// packet (correlated pairs) each value is printed as start, stop and
// difference, the end's stream read in step with the begin's; without one
// (raw mode, periodic samples) the begin's values alone. `multiGpu` adds
// the per-block "gpuid". Counter ids registered in counterIdTable() label
// value-count blocks once known. Blocks and values that start past the end
// of the begin packet are not printed.
void PrintCounterBlocks(Output& out, const Packet& begin, const Packet* end, std::uint32_t signature, bool multiGpu);
