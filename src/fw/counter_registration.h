// The "01_Regs_Programmed" activity: the firmware reports, per counter
// block, the ids of the counters it programmed. Printing it also fills the
// run's CounterIdTable, which then labels later counter values.
#pragma once

class Packet;
struct StreamFile;

// Writes the "nBlocks" and "blocks" keys of the activity object and
// registers the ids. `invalidIdReported` is the caller's once-per-run flag
// for the invalid-block-id message (each converter keeps its own).
void PrintCounterIdRegistration(StreamFile& file, const Packet& packet, bool& invalidIdReported);
