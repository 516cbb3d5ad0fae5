#include "stream/reader.h"

#include <cstring>

#include "json/document.h"
#include "json/envelope.h"
#include "json/output.h"
#include "stream/header.h"
#include "stream/packet.h"
#include "stream/stream_file.h"

namespace {

std::uint32_t blankHeaders = 0;

// Loop state of the file being read.
struct ReadState {
    StreamFile& file;
    std::uint32_t streamId;
    std::uint64_t remaining;  // bytes not yet accounted to genuine packets
    std::int32_t corruptHeaders = 0;
    bool firstElement = true; // raw mode: no element written yet
    PacketHeader header;      // the last valid header read
    std::int64_t position = 0;
};

// One buffer for every packet of the run, with zero padding after the packet.
std::uint8_t packetBuffer[kPacketSizeLimit + 8];

bool isValidatedType(std::uint32_t type)
{
    return (type >= 1 && type <= 25) || (type >= 40 && type <= 42) || type == 56 || type == 57;
}

// Firmware bodies must not contain their own signature: a hit means a packet
// was cut short and the next one begins inside it.
void validateBody(ReadState& state, const Packet& packet)
{
    StreamFile& file = state.file;
    if (!isValidatedType(packet.eventType())) return;
    std::uint32_t signature = packet.signature();
    std::uint32_t ordinal = packet.ordinal();
    if (!isDumpableSignature(signature)) {
        console().print("error: Unsupported Packet Version '%x' found: Ordinal %u/%x\n", signature, ordinal, ordinal);
        ++file.packetsValidated;
        ++file.validationFailures;
        console().print("error: invalid header contents ordinal %x / %u\n", ordinal, ordinal);
        return;
    }
    ++file.packetsValidated;
    std::uint32_t size = packet.size();
    if (size == kHeaderSize) return;
    bool hit = false;
    for (std::uint32_t offset = kHeaderSize; offset + 4 <= size; offset += 4) {
        if (packet.u32(offset) != signature) continue;
        hit = true;
        console().print("error: Incomplete packet found in stream: Ordinal %u/%x, Value: %x, Type = 0x%x\n", ordinal,
                        ordinal, signature, packet.typeWord());
        std::uint32_t embeddedOrdinal = packet.u32(offset + 12);
        console().print("error: Unexpected ordinal = %u/%x, Type = 0x%x\n", embeddedOrdinal, embeddedOrdinal,
                        packet.u32(offset + 8));
    }
    if (!hit) return;
    ++file.validationFailures;
    console().print("error: Malformed packet ordinal %u / %x found:\n", ordinal, ordinal);
    writeHexDump(nullptr, packet);
    console().write("\n");
    console().print("error: invalid header contents ordinal %x / %u\n", ordinal, ordinal);
}

// Writes the separator that precedes an element the reader writes itself.
void separateElement(ReadState& state)
{
    StreamFile& file = state.file;
    if (file.rawMode) {
        if (!state.firstElement) file.out.write(",\n");
        state.firstElement = false;
    } else if (file.needSeparator) {
        file.out.write(",\n");
    }
    file.needSeparator = true;
}

// After a corrupt header: dump the last valid header, then scan forward in
// 4-byte steps from the corrupt header's start for the next signature.
bool resynchronise(ReadState& state)
{
    StreamFile& file = state.file;
    ++state.corruptHeaders;
    console().print("error: corrupt header #%d at file position: %ld (0x%lx), hex values dumped in output file.\n",
                    state.corruptHeaders, static_cast<long>(state.position),
                    static_cast<unsigned long>(state.position));
    separateElement(state);
    writeHexDump(&file, Packet(state.header.bytes, kHeaderSize));

    if (!file.in.seek(state.position + 4)) {
        console().print("error: adjusting stream pointer to %ld offset from start of file\n",
                        static_cast<long>(state.position));
        return false;
    }
    for (;;) {
        std::uint8_t word[4];
        if (file.in.read(word, 4) < 4) {
            if (file.in.atEnd())
                console().print("warning: end of file reached, could not find valid packet again (%ld-%ld)\n",
                                static_cast<long>(state.position), static_cast<long>(file.in.tell()));
            return false;
        }
        std::uint32_t value = static_cast<std::uint32_t>(word[0]) | static_cast<std::uint32_t>(word[1]) << 8 |
                              static_cast<std::uint32_t>(word[2]) << 16 | static_cast<std::uint32_t>(word[3]) << 24;
        if (!isPacketSignature(value)) {
            state.remaining -= 4;
            continue;
        }
        std::int64_t found = file.in.tell() - 4;
        if (!file.in.seek(found)) {
            console().putLine("error: adjusting stream pointer");
            state.remaining -= 4;
            return false;
        }
        console().print("warning: file read position adjusted from %ld to %ld (%ld bytes)\n",
                        static_cast<long>(state.position), static_cast<long>(found),
                        static_cast<long>(found - state.position));
        blankHeaders = 0;
        return true;
    }
}

enum class Ending { Normal, Fatal, Closed };

Ending readLoop(ReadState& state)
{
    StreamFile& file = state.file;
    for (;;) {
        if (file.in.atEnd()) return Ending::Normal;

        std::int32_t result = readHeader(file, state.header, state.position);
        if (result < 0) return Ending::Normal;
        if (result == 0) {
            if (++blankHeaders <= kBlankHeaderLimit - 1) continue;
            writeDocumentClose(file);
            console().print("warning: encountered %u consecutive blank headers in input file\n", blankHeaders);
            return Ending::Closed;
        }
        if (result == kCorruptHeader) {
            if (!resynchronise(state)) return Ending::Fatal;
            continue;
        }

        state.remaining -= static_cast<std::uint64_t>(result);
        std::uint32_t size = state.header.size();
        if (size > kPacketSizeLimit) {
            console().print("error: packet size (%zu) larger than the maximum expected for this BVNC (%d)\n",
                            static_cast<std::size_t>(size), static_cast<int>(kPacketSizeLimit));
            return Ending::Fatal;
        }

        // The packet fills [0, size); the eight bytes after it are zero.
        std::memcpy(packetBuffer, state.header.bytes, kHeaderSize);
        std::memset(packetBuffer + size, 0, 8);
        std::size_t expected = size - kHeaderSize;
        std::size_t got = file.in.read(packetBuffer + kHeaderSize, expected);
        if (got < expected) {
            console().print("error: insufficient bytes read for packet data (%zu), expected size was %zu bytes, "
                            "at file position %ld\n",
                            got, expected, static_cast<long>(state.position));
            return Ending::Fatal;
        }
        state.remaining -= expected;

        Packet packet(packetBuffer, size);
        if (state.streamId == 0) validateBody(state, packet);
        ++file.packetsRead;

        std::uint32_t handled;
        if (file.rawMode) {
            if (!state.firstElement) file.out.write(",\n");
            state.firstElement = false;
            handled = file.rawConverter(file, packet);
        } else {
            handled = file.correlatedConverter(file, packet);
        }
        if (handled == 0)
            console().print("error: invalid packet content at file read position %ld\n",
                            static_cast<long>(state.position));

        file.packetsProcessed += handled;
        if (file.packetsProcessed % file.progressInterval == 0) {
            console().print("%s packet %d...\n", file.streamName, static_cast<int>(file.packetsProcessed));
            continue;
        }
        blankHeaders = 0;
    }
}

} // namespace

void resetBlankHeaderCount() { blankHeaders = 0; }

void readPackets(StreamFile& file, std::uint32_t streamId)
{
    std::int64_t size = file.in.size();
    ReadState state{file, streamId, static_cast<std::uint64_t>(size < 0 ? 0 : size), 0, true, {}, 0};
    file.needSeparator = false;

    switch (readLoop(state)) {
    case Ending::Normal:
        writeDocumentClose(file);
        if (blankHeaders > kBlankHeaderLimit - 1)
            console().print("warning: encountered %u consecutive blank headers in input file\n", blankHeaders);
        break;
    case Ending::Fatal:
        blankHeaders = 0;
        writeDocumentClose(file);
        break;
    case Ending::Closed:
        break;
    }

    if (state.remaining != 0)
        console().print("warning: at EOF, not all of the bytes in the input file were read as part of genuine "
                        "packets, %llu bytes ignored.\n",
                        static_cast<unsigned long long>(state.remaining));
    if (file.packetsProcessed == 0)
        console().putLine("error: the input data was empty or invalid (maybe Zyntel logging wasn't enabled?).");
}
