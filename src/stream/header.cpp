#include "stream/header.h"

#include <cstring>

#include "json/output.h"
#include "stream/stream_file.h"

namespace {

bool isTransportLayerHeader(const std::uint8_t* bytes)
{
    std::uint8_t tlType = bytes[3];
    std::uint32_t magic = static_cast<std::uint32_t>(bytes[4]) | static_cast<std::uint32_t>(bytes[5]) << 8 |
                          static_cast<std::uint32_t>(bytes[6]) << 16 | static_cast<std::uint32_t>(bytes[7]) << 24;
    return tlType >= 1 && tlType <= 7 && magic == kTlMagic;
}

} // namespace

std::int32_t readHeader(StreamFile& file, PacketHeader& header, std::int64_t& position)
{
    std::uint8_t bytes[kHeaderSize];
    position = file.in.tell();
    if (file.in.read(bytes, kHeaderSize) < kHeaderSize) return -1;

    std::int32_t skipped = 0;
    if (isTransportLayerHeader(bytes)) {
        std::uint32_t dataLength = static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8;
        std::int64_t next = position + kTlHeaderSize + (bytes[3] == 1 ? 0 : dataLength);
        if (!file.in.seek(next)) {
            console().putLine("error: fseek failed when adjusting file position to skip TL packet header");
            return -1;
        }
        skipped = static_cast<std::int32_t>(next - position);
        if (!file.tlHeaderSeen) {
            console().print("info: TL packet header found (%ld bytes), file is a raw TL binary file\n",
                            static_cast<long>(skipped));
            file.tlHeaderSeen = 1;
        }
        position = next;
        if (file.in.read(bytes, kHeaderSize) < kHeaderSize) return -1;
    }

    PacketHeader candidate;
    std::memcpy(candidate.bytes, bytes, kHeaderSize);
    if (isPacketSignature(candidate.signature()) && candidate.size() >= kSmallestPacketSize) {
        header = candidate;
        return static_cast<std::int32_t>(kHeaderSize) + skipped;
    }

    static const std::uint8_t zeros[kHeaderSize] = {};
    if (std::memcmp(bytes, zeros, kHeaderSize) == 0) {
        console().print("warning: detected a zero byte header at file position: %ld (0x%lx)\n",
                        static_cast<long>(position), static_cast<unsigned long>(position));
        return 0;
    }
    return kCorruptHeader;
}
