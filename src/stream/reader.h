// The reading loop of one file: headers, size check, packet bodies, body
// validation of firmware streams, resynchronisation after corrupt headers,
// the counters, progress lines and the closing of the JSON array.
#pragma once

#include <cstdint>

struct StreamFile;

constexpr std::uint32_t kBlankHeaderLimit = 16;

// Reads every packet of the file from its start and hands each to the
// file's converter for the mode in force. `streamId` 0 turns on body
// validation.
void readPackets(StreamFile& file, std::uint32_t streamId);

// The ordinal sequence check every converter calls for every packet it
// accepts; returns the ordinal, which the converter stores as lastOrdinal.
std::uint32_t checkOrdinal(StreamFile& file, std::uint32_t ordinal);

// Consecutive zero headers; carried from one file to the next, deliberately.
void resetBlankHeaderCount();
