// Arbitrary bytes as a capture file: header reading, version detection, the
// reading loop, resynchronisation and validation, with the small test
// converters standing in for the streams. The first byte picks the mode.
#include <cstdint>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include "fuzz_support.h"
#include "json/document.h"
#include "json/output.h"
#include "stream/header.h"
#include "stream/reader.h"
#include "test_stream.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    int devNull = silenceConsole();
    if (size < 1) return 0;
    std::uint8_t mode = data[0];

    int capture = memfd_create("capture", 0);
    if (capture < 0) return 0;
    for (std::size_t written = 1; written < size;) {
        ssize_t done = write(capture, data + written, size - written);
        if (done <= 0) break;
        written += static_cast<std::size_t>(done);
    }
    lseek(capture, 0, SEEK_SET);

    StreamFile file;
    file.in.adoptDescriptor(capture);
    file.rawMode = mode & 1;
    file.hexDump = (mode >> 1) & 1;
    file.timeDelta = (mode >> 2) & 1;
    file.out.attachDescriptor(devNull, false);

    PacketHeader header;
    std::int64_t position = 0;
    if (readHeader(file, header, position) > 0) {
        std::uint32_t streamId = header.signature() == ZYNTEL_PACKET_V2B_SIG ? header.streamId() : 0;
        const StreamTable& streams = testStreams();
        const StreamConverters& stream = streamId == 1 ? streams.host : streamId == 2 ? streams.client : streams.firmware;
        file.streamName = stream.streamName;
        file.progressInterval = stream.progressInterval;
        file.correlatedConverter = stream.correlatedConverter;
        file.rawConverter = stream.rawConverter;
        file.in.seek(0);
        writeDocumentHead(file, header.signature(), 0, nullptr);
        readPackets(file, streamId);
    }
    file.out.flush();
    return 0;
}
