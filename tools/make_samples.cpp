// Writes small, valid sample captures of the three streams into a directory:
//   make_samples <directory>
// giving zyntel_fw_sample.bin, zyntel_host_sample.bin and
// zyntel_client_sample.bin, three frames of events each.
#include <cstdio>
#include <fstream>
#include <string>

#include "stream_events.h"

namespace {

bool writeCapture(const std::string& path, const Capture& capture)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(capture.bytes().data()),
               static_cast<std::streamsize>(capture.bytes().size()));
    return static_cast<bool>(file);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <directory>\n", argv[0]);
        return 1;
    }
    const SampleCaptures samples = sampleCaptures();
    std::string directory = argv[1];
    bool ok = writeCapture(directory + "/zyntel_fw_sample.bin", samples.firmware) &&
              writeCapture(directory + "/zyntel_host_sample.bin", samples.host) &&
              writeCapture(directory + "/zyntel_client_sample.bin", samples.client);
    if (!ok) std::fprintf(stderr, "make_samples: cannot write into %s\n", directory.c_str());
    return ok ? 0 : 1;
}
