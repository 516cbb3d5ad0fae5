// The per-file record of a run: paths, open files, stream, counters, option
// flags, the chosen converters and the per-file conversion state.
#pragma once

#include <cstdint>
#include <string>

#include "json/output.h"
#include "stream/input_file.h"
#include "stream/packet.h"

struct StreamFile;

// A converter takes one complete packet (header and payload) and writes its
// JSON. Result: 1 for a packet handled, 0 for a packet whose content it
// rejects. The packet's bytes belong to the reader and are reused after the
// call: a converter that must keep a packet copies it (StoredPacket).
// Raw converters write one element (the reader wrote the separator);
// correlated converters write ",\n" themselves when needSeparator is set.
using Converter = std::uint32_t (*)(StreamFile& file, Packet& packet);

// What the driver selects from a file's detected stream.
struct StreamConverters {
    const char* streamName;          // "Firmware", "Host" or "Client"
    std::uint32_t progressInterval;  // packets between progress lines
    Converter correlatedConverter;
    Converter rawConverter;
    void (*beginFile)();             // empties the stream's correlation state
};

struct StreamFile {
    const char* streamName = nullptr;
    std::string binPath;
    std::string jsonPath;
    InputFile in;
    Output out;
    std::uint64_t prevTimer = 0;
    std::uint32_t lastOrdinal = 0xFFFFFFFF;
    std::uint32_t sequenceInterruptions = 0;
    std::uint32_t packetsProcessed = 0;
    std::uint32_t packetsRead = 0;
    std::uint32_t progressInterval = 0;
    std::uint8_t tlHeaderSeen = 0;
    std::uint8_t writeFailureReported = 0;
    Converter correlatedConverter = nullptr;
    Converter rawConverter = nullptr;
    std::uint32_t packetsDropped = 0;
    std::uint32_t oversizedPackets = 0;
    std::uint32_t packetsValidated = 0;
    std::uint32_t validationFailures = 0;
    std::uint8_t rawMode = 0;
    std::uint8_t hexDump = 0;
    std::uint8_t timeDelta = 0;
    std::uint8_t verbose = 0;

    // Correlated mode: a separator is due before the next element.
    bool needSeparator = false;
};
