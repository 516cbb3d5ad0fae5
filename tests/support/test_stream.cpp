#include "test_stream.h"

#include "json/document.h"
#include "json/envelope.h"
#include "stream/reader.h"

namespace {

std::uint32_t convertRaw(StreamFile& file, Packet& packet)
{
    if (file.timeDelta) applyTimeDelta(file, packet);
    if (packet.eventType() == kRejectedTestType) {
        writeHexDump(&file, packet);
        return 0;
    }
    writeRawEnvelope(&file, packet, "TEST");
    file.out.print("      \"payload\": %u\n    }", packet.u32(24));
    if (file.hexDump) {
        file.out.write(",\n");
        writeHexDump(&file, packet);
    }
    file.lastOrdinal = checkOrdinal(file, packet.ordinal());
    return 1;
}

std::uint32_t convertCorrelated(StreamFile& file, Packet& packet)
{
    if (packet.eventType() == kRejectedTestType) return 0;
    if (packet.eventType() == kOversizedTestType) ++file.oversizedPackets;
    beginTimePeriod(file);
    file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"TEST\"\n    }",
                   static_cast<unsigned long long>(packet.timer()), static_cast<unsigned long long>(packet.timer()));
    file.lastOrdinal = checkOrdinal(file, packet.ordinal());
    return 1;
}

} // namespace

const StreamTable& testStreams()
{
    static const StreamTable table{
        {"Firmware", 5000, convertCorrelated, convertRaw, nullptr},
        {"Host", 1000, convertCorrelated, convertRaw, nullptr},
        {"Client", 1000, convertCorrelated, convertRaw, nullptr},
    };
    return table;
}
