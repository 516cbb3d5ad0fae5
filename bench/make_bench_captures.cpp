// Writes large captures for the throughput benchmark:
//   make_bench_captures <directory> <firmware MiB> <host MiB> <client MiB>
// giving zyntel_fw_bench.bin (kick/finish pairs with counter blocks),
// zyntel_host_bench.bin and zyntel_client_bench.bin, each at least the size
// asked for. Memory stays small: frames are written out as they are built.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "stream_events.h"

namespace {

constexpr std::uint32_t kCounterBlocks = 4;

template <typename AddFrame>
bool writeLargeCapture(const std::string& path, std::uint64_t minimumBytes, StreamWriter& writer, AddFrame addFrame)
{
    std::ofstream file(path, std::ios::binary);
    std::uint64_t written = 0;
    for (std::uint32_t frame = 1; written < minimumBytes; ++frame) {
        addFrame(writer, frame);
        const Bytes& bytes = writer.capture.bytes();
        if (bytes.size() >= (1u << 20) || written + bytes.size() >= minimumBytes) {
            file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
            written += bytes.size();
            writer.capture = Capture();
        }
    }
    return static_cast<bool>(file);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 5) {
        std::fprintf(stderr, "usage: %s <directory> <firmware MiB> <host MiB> <client MiB>\n", argv[0]);
        return 1;
    }
    std::string directory = argv[1];
    auto mebibytes = [](const char* text) { return std::strtoull(text, nullptr, 10) << 20; };

    StreamWriter fw(kFirmwareStream), host(kHostStream), client(kClientStream);
    firmwareStart(fw);
    hostStart(host);
    bool ok = writeLargeCapture(directory + "/zyntel_fw_bench.bin", mebibytes(argv[2]), fw,
                                [](StreamWriter& w, std::uint32_t frame) { firmwareFrame(w, frame, kCounterBlocks); }) &&
              writeLargeCapture(directory + "/zyntel_host_bench.bin", mebibytes(argv[3]), host, hostFrame) &&
              writeLargeCapture(directory + "/zyntel_client_bench.bin", mebibytes(argv[4]), client, clientFrame);
    if (!ok) std::fprintf(stderr, "make_bench_captures: cannot write into %s\n", directory.c_str());
    return ok ? 0 : 1;
}
