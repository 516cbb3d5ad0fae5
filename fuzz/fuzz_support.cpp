#include "fuzz_support.h"

#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

#include "json/output.h"
#include "stream/header.h"

int silenceConsole()
{
    static int devNull = open("/dev/null", O_WRONLY);
    static Output quiet;
    static bool attached = false;
    if (!attached) {
        quiet.attachDescriptor(devNull, false);
        redirectConsole(&quiet, &quiet);
        attached = true;
    }
    return devNull;
}

void fuzzConverter(const std::uint8_t* data, std::size_t size, Converter converter, void (*beginFile)(),
                   const FuzzMode& mode)
{
    int devNull = silenceConsole();

    StreamFile file;
    file.streamName = "Fuzz";
    file.rawMode = mode.raw;
    file.hexDump = mode.hex;
    file.timeDelta = mode.timeDelta;
    file.verbose = mode.verbose;
    file.out.attachDescriptor(devNull, false);
    if (beginFile) beginFile();

    std::vector<std::uint8_t> buffer;
    while (size >= 2) {
        std::size_t length = static_cast<std::size_t>(data[0] | data[1] << 8) % (kPacketSizeLimit + 1);
        data += 2;
        size -= 2;
        if (length < kSmallestPacketSize) length = kSmallestPacketSize;
        if (length > size) length = size;
        if (length < kHeaderSize) break;
        // Exactly the packet's bytes plus the reader's zero padding.
        buffer.assign(data, data + length);
        buffer.resize(length + 8, 0);
        buffer[4] = static_cast<std::uint8_t>(length);
        buffer[5] = static_cast<std::uint8_t>(length >> 8);
        buffer[10] = static_cast<std::uint8_t>((buffer[10] & ~7u) | mode.streamId);
        Packet packet(buffer.data(), static_cast<std::uint32_t>(length));
        converter(file, packet);
        data += length;
        size -= length;
    }
    file.out.flush();
}
