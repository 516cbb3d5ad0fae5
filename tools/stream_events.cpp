#include "stream_events.h"

namespace {

constexpr std::uint32_t kPid = 4242;
constexpr std::uint32_t kContext = 7;

// Firmware hardware packet (V2b): the fixed part, then the counter blocks at
// payload offset 44; each block has block id 0..n-1 and a counter mask of 0x3F.
PacketBuilder hardwarePacket(StreamWriter& fw, std::uint32_t type, std::uint64_t advance, std::uint32_t dmCycles,
                             std::uint32_t frame, std::uint32_t jobRef, std::uint32_t counterBase,
                             std::uint32_t counterBlocks)
{
    PacketBuilder packet = fw.next(type, advance);
    packet.u32s({dmCycles, frame, kPid, kContext, 0, jobRef, jobRef + 100000, 0});
    packet.u16(44).u16(static_cast<std::uint16_t>(counterBlocks)).u32s({3, 0});
    for (std::uint32_t block = 0; block < counterBlocks; ++block) {
        packet.u32(block << 16 | 0x3F);
        for (std::uint32_t i = 0; i < 6; ++i) packet.u32(counterBase + 1000 * i + block);
    }
    return packet;
}

} // namespace

void firmwareStart(StreamWriter& fw)
{
    fw.capture.add(fw.next(0x1A, 10).u64(800000000).u32(1).u32(0)); // clock change: 800 MHz, core clock
    fw.capture.add(fw.next(0x1B, 10).u32(1).u32(0));                 // GPU state: active
}

void firmwareFrame(StreamWriter& fw, std::uint32_t frame, std::uint32_t counterBlocks)
{
    struct Work {
        std::uint32_t kick, finish;
    };
    const Work work[] = {{0x08, 0x09}, {0x0B, 0x0C}, {0x0D, 0x0E}, {0x28, 0x29}}; // TA, 3D, CDM, TDM
    std::uint32_t dmCycles = 5000 + frame * 100000;
    for (const Work& w : work) {
        std::uint32_t jobRef = frame * 10 + w.kick;
        fw.capture.add(hardwarePacket(fw, w.kick, 40, dmCycles, frame, jobRef, 100 * frame, counterBlocks));
        dmCycles += 20000 + 10 * (frame % 100);
        fw.capture.add(hardwarePacket(fw, w.finish, 80, dmCycles, frame, jobRef, 100 * frame + 5000, counterBlocks));
    }
    fw.capture.add(fw.next(0x30, 30).u32s({3, kContext, frame, 100, 200, 1})); // context switch store
    fw.capture.add(fw.next(0x31, 30).u32s({3, kContext, frame, 160, 260, 2})); // ... complete
    // UFO update of one synchronisation word: records at payload offset 32.
    fw.capture.add(fw.next(0x38, 10)
                       .u32s({0, 0, kPid, frame, 100000 + frame, kContext})
                       .u16(32)
                       .u16(1)
                       .u32(3)
                       .u32s({0x80001000, frame, frame + 1}));
}

void firmwareEnd(StreamWriter& fw) { fw.capture.add(fw.next(0x1B, 10).u32(0).u32(0)); }

void hostStart(StreamWriter& host)
{
    host.capture.add(host.next(4, 10).u64(1000000).u64(1700000000000ull).u32(800000000).u32(0).u64(123456789));
}

void hostFrame(StreamWriter& host, std::uint32_t frame)
{
    for (std::uint32_t job = 0; job < 3; ++job) {
        std::uint32_t jobRef = frame * 10 + job;
        host.capture.add(host.next(1, 50)
                             .u32s({job, kPid, jobRef, jobRef + 100000, kContext, 0})
                             .u64(jobRef)
                             .u64(jobRef + 1)
                             .u64(0)
                             .u32(5000)
                             .i32(-1)
                             .i32(static_cast<std::int32_t>(jobRef))
                             .i32(2));
    }
    // UFO check success: records 8 bytes after offset 24.
    host.capture.add(host.next(2, 10).u32(1).u32(1u << 16 | 8).u32s({0x80001000, frame}));
    host.capture.add(host.next(9, 10).u32s({kPid, frame, 0, 100})); // fence wait begin, 100 ms timeout
    host.capture.add(host.next(9, 30).u32s({kPid, frame, 1, 2}));   // fence wait end: passed
    host.capture.add(host.next(11, 10).u32(0).u32(1).u32(1).u32(kPid).u32(8).text("viewer", 8)); // process name
}

void clientFrame(StreamWriter& client, std::uint32_t frame)
{
    client.capture.add(client.next(3, 10).u32s({0, kPid, frame, 0}).u64(99).u32(0).u32(0)); // enqueue TA3D
    client.capture.add(client.next(33, 10).u32s({43, frame, kContext}).padTo(16));          // EGL mark start
    client.capture.add(client.next(34, 20).u32s({43, frame, kContext}).padTo(16));          // EGL mark end
    for (std::uint32_t draw = 0; draw < 3; ++draw) {
        client.capture.add(client.next(70, 15).u32s({13, 0, kContext}).padTo(16)); // GLES draw start
        client.capture.add(client.next(71, 25).u32s({13, kContext, frame, 0}).padTo(64)); // draw end
    }
    client.capture.add(client.next(67, 5).text("frame done", 40).u32(frame).u32(kContext)); // GLES mark point
    client.capture.add(client.next(97, 10).u32s({kContext, 3, 1234, frame, 0, 60}).text("clFinish", 40));
    client.capture.add(client.next(98, 30).u32s({kContext, 3, 1234, frame, 0, 60}).text("clFinish", 40));
    client.capture.add(client.next(129, 10).i32(5).i32(1234).u32s({0, 0, 205}).text("vkQueueSubmit", 44));
    client.capture.add(client.next(130, 40).i32(5).i32(1234).u32s({0, 0, 205}).text("vkQueueSubmit", 44));
    // Binding a graphics pipeline (object 7, type 5) carries the object behind the mark.
    for (std::uint32_t type : {129u, 130u})
        client.capture.add(client.next(type, 5).i32(5).i32(1234).u32s({0, 0, 242}).text("vkCmdBindPipeline", 44).u32s({7, 5}));
}

SampleCaptures sampleCaptures()
{
    StreamWriter fw(kFirmwareStream), host(kHostStream), client(kClientStream);
    firmwareStart(fw);
    hostStart(host);
    for (std::uint32_t frame = 1; frame <= 3; ++frame) {
        firmwareFrame(fw, frame, 1);
        hostFrame(host, frame);
        clientFrame(client, frame);
    }
    firmwareEnd(fw);
    return {fw.capture, host.capture, client.capture};
}
