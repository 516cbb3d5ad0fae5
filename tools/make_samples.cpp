// Writes small, valid sample captures of the three streams into a directory:
//   make_samples <directory>
// zyntel_fw_sample.bin      firmware: kicks and finishes of several data
//                           masters with counter blocks, a clock change, a
//                           GPU state change, a context switch, a UFO update
// zyntel_host_sample.bin    host: enqueues, a clock sync, a UFO check, a
//                           fence wait, a client process name
// zyntel_client_sample.bin  client: GLES draws and a mark point, an EGL
//                           mark, an OpenCL call, a Vulkan mark, an enqueue
#include <cstdio>
#include <fstream>
#include <string>

#include "packet_builder.h"

namespace {

// Each stream numbers its packets from 0 and keeps time moving forward.
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

// Firmware hardware packet (V2b): fixed part, then one counter block of six
// counters (block id 0, "TA_Blk") at payload offset 44.
PacketBuilder hardwarePacket(StreamWriter& fw, std::uint32_t type, std::uint64_t advance, std::uint32_t dmCycles,
                             std::uint32_t frame, std::uint32_t jobRef, std::uint32_t counterBase)
{
    PacketBuilder packet = fw.next(type, advance);
    packet.u32s({dmCycles, frame, 4242, 7, 0, jobRef, jobRef + 100000, 0});
    packet.u16(44).u16(1).u32s({3, 0});
    packet.u32(0x0000003F);
    for (std::uint32_t i = 0; i < 6; ++i) packet.u32(counterBase + 1000 * i);
    return packet;
}

Capture firmwareSample()
{
    StreamWriter fw(kFirmwareStream);
    fw.capture.add(fw.next(0x1A, 10).u64(800000000).u32(1).u32(0));  // clock change: 800 MHz, core clock
    fw.capture.add(fw.next(0x1B, 10).u32(1).u32(0));                 // GPU state: active
    struct Work {
        std::uint32_t kick, finish;
    };
    const Work work[] = {{0x08, 0x09}, {0x0B, 0x0C}, {0x0D, 0x0E}, {0x28, 0x29}}; // TA, 3D, CDM, TDM
    std::uint32_t dmCycles = 5000;
    for (std::uint32_t frame = 1; frame <= 3; ++frame) {
        for (const Work& w : work) {
            std::uint32_t jobRef = frame * 10 + w.kick;
            fw.capture.add(hardwarePacket(fw, w.kick, 40, dmCycles, frame, jobRef, 100 * frame));
            dmCycles += 20000 + 1000 * frame;
            fw.capture.add(hardwarePacket(fw, w.finish, 80, dmCycles, frame, jobRef, 100 * frame + 5000));
        }
    }
    fw.capture.add(fw.next(0x30, 30).u32s({3, 7, 3, 100, 200, 1})); // context switch store
    fw.capture.add(fw.next(0x31, 30).u32s({3, 7, 3, 160, 260, 2})); // ... complete
    // UFO update of one synchronisation word.
    fw.capture.add(fw.next(0x38, 10).u32s({0, 0, 4242, 33, 100033, 7}).u16(32).u16(1).u32(3).u32s({0x80001000, 5, 6}));
    fw.capture.add(fw.next(0x1B, 10).u32(0).u32(0)); // GPU state: idle
    return fw.capture;
}

Capture hostSample()
{
    StreamWriter host(kHostStream);
    host.capture.add(host.next(4, 10).u64(1000000).u64(1700000000000ull).u32(800000000).u32(0).u64(123456789));
    for (std::uint32_t job = 1; job <= 3; ++job) {
        host.capture.add(host.next(1, 50)
                             .u32s({0, 4242, job * 10, job * 10 + 100000, 7, 0})
                             .u64(job)
                             .u64(job + 1)
                             .u64(0)
                             .u32(5000)
                             .i32(-1)
                             .i32(static_cast<std::int32_t>(job))
                             .i32(2));
    }
    host.capture.add(host.next(2, 10).u32(1).u32(1u << 16 | 8).u32s({0x80001000, 6}));    // UFO check success
    host.capture.add(host.next(9, 10).u32s({0, 4242, 12, 100}));                           // fence wait begin
    host.capture.add(host.next(9, 30).u32s({1, 4242, 12, 2}));                             // fence wait end
    host.capture.add(host.next(11, 10).u32(0).u32(1).u32(1).u32(4242).u32(8).text("viewer", 8)); // process name
    return host.capture;
}

Capture clientSample()
{
    StreamWriter client(kClientStream);
    client.capture.add(client.next(3, 10).u32s({0, 4242, 11, 0}).u64(99).u32(0).u32(0)); // enqueue TA3D
    client.capture.add(client.next(33, 10).u32s({43, 1, 7}).padTo(16));                   // EGL mark start
    client.capture.add(client.next(34, 20).u32s({43, 1, 7}).padTo(16));                   // EGL mark end
    for (std::uint32_t draw = 0; draw < 3; ++draw) {
        client.capture.add(client.next(70, 15).u32s({13, 0, 7}).padTo(16)); // GLES draw start (glDrawArrays)
        client.capture.add(client.next(71, 25).u32s({13, 7, 20 + draw, 0}).padTo(64)); // draw end
    }
    client.capture.add(client.next(67, 5).text("frame done", 40).u32(21).u32(7)); // GLES mark point
    client.capture.add(client.next(97, 10).u32s({7, 3, 1234, 30, 0, 60}).text("clFinish", 40));  // OpenCL start
    client.capture.add(client.next(98, 30).u32s({7, 3, 1234, 30, 0, 60}).text("clFinish", 40));  // OpenCL stop
    client.capture.add(client.next(129, 10).i32(5).i32(1234).u32s({0, 0, 205}).text("vkQueueSubmit", 44)); // Vulkan
    client.capture.add(client.next(130, 40).i32(5).i32(1234).u32s({0, 0, 205}).text("vkQueueSubmit", 44));
    return client.capture;
}

bool writeCapture(const std::string& path, const Capture& capture)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(capture.bytes().data()), static_cast<std::streamsize>(capture.bytes().size()));
    return static_cast<bool>(file);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <directory>\n", argv[0]);
        return 1;
    }
    std::string directory = argv[1];
    bool ok = writeCapture(directory + "/zyntel_fw_sample.bin", firmwareSample()) &&
              writeCapture(directory + "/zyntel_host_sample.bin", hostSample()) &&
              writeCapture(directory + "/zyntel_client_sample.bin", clientSample());
    if (!ok) std::fprintf(stderr, "make_samples: cannot write into %s\n", directory.c_str());
    return ok ? 0 : 1;
}
