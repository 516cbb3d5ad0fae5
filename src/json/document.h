// The frame of every output file: the information block, the one array of
// packets or time periods, its closing, and the write-failure report.
#pragma once

#include <cstdint>

struct StreamFile;

constexpr unsigned kToolVersion = 6967606;

// Writes the information block and opens the array. Falls back to a fresh
// opener when a write fails.
void writeDocumentHead(StreamFile& file, std::uint32_t firstSignature, int argc, const char* const* argv);

// Closes the array and the document: "\n  ]\n}", no final line feed.
void writeDocumentClose(StreamFile& file);

// Routes every later failed write to file.out into reportWriteFailure.
void watchWriteFailures(StreamFile& file);

// The converters' write-failure report: once per file, on standard error.
void reportWriteFailure(StreamFile& file, int result);

// Correlated mode: writes ",\n" when an element was written before, and
// notes that the next element needs one.
void beginTimePeriod(StreamFile& file);
