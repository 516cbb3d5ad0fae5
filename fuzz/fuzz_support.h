// Feeds fuzzer bytes to a converter as a sequence of packets, the way the
// reading loop would: each packet is one chunk whose 16-bit size field is
// set to its true length (32 to 3072 bytes). All output goes to /dev/null.
#pragma once

#include <cstddef>
#include <cstdint>

#include "stream/stream_file.h"

struct FuzzMode {
    bool raw = false;
    bool hex = false;
    bool timeDelta = false;
    bool verbose = false;
    std::uint32_t streamId = 0; // forced into every packet's type word
};

// Sends console output to /dev/null; returns a descriptor of /dev/null.
int silenceConsole();

// The first two bytes of each chunk give its length; the rest is the packet.
void fuzzConverter(const std::uint8_t* data, std::size_t size, Converter converter, void (*beginFile)(),
                   const FuzzMode& mode);
