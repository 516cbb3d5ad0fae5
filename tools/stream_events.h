// Realistic event sequences of the three streams, built frame by frame, for
// the sample captures and the benchmark captures.
#pragma once

#include <cstdint>

#include "packet_builder.h"

// Numbers a stream's packets from 0 and keeps its timer moving forward.
class StreamWriter {
public:
    explicit StreamWriter(std::uint32_t streamId) : streamId_(streamId) {}

    PacketBuilder next(std::uint32_t eventType, std::uint64_t advance, std::uint32_t flags = 0)
    {
        timer_ += advance;
        return PacketBuilder(typeWord(eventType, streamId_, flags)).ordinal(ordinal_++).timer(timer_);
    }
    Capture capture;

private:
    std::uint32_t streamId_;
    std::uint32_t ordinal_ = 0;
    std::uint64_t timer_ = 1000000;
};

// Firmware: a clock change and the GPU going active.
void firmwareStart(StreamWriter& fw);
// Firmware: kick and finish of the TA, 3D, CDM and TDM data masters, each
// hardware packet with `counterBlocks` blocks of six counters; a context
// switch and a UFO update.
void firmwareFrame(StreamWriter& fw, std::uint32_t frame, std::uint32_t counterBlocks);
// Firmware: the GPU going idle.
void firmwareEnd(StreamWriter& fw);

// Host: a clock sync, then per frame enqueues, a UFO check, a fence wait and
// a process name.
void hostStart(StreamWriter& host);
void hostFrame(StreamWriter& host, std::uint32_t frame);

// Client: per frame an enqueue, an EGL mark pair, GLES draws, a mark point,
// an OpenCL call and a Vulkan mark pair.
void clientFrame(StreamWriter& client, std::uint32_t frame);

// The sample captures: three frames of each stream's events.
struct SampleCaptures {
    Capture firmware, host, client;
};
SampleCaptures sampleCaptures();
