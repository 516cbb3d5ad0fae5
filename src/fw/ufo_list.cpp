#include "fw/ufo_list.h"

#include "json/output.h"
#include "stream/packet.h"

namespace {

// Header (24 bytes) plus the eight fixed words of the payload.
constexpr std::uint32_t kUfoFixedBytes = 56;

} // namespace

std::uint32_t UfoRecordSize(std::uint32_t ufoEvent)
{
    switch (ufoEvent) {
    case 0: case 3: case 4: case 5: return 12;
    case 1: case 2: return 8;
    default: return 0;
    }
}

void PrintUFOList(Output& out, std::uint32_t ufoEvent, const Packet& records, std::uint32_t count)
{
    std::uint32_t recordSize = UfoRecordSize(ufoEvent);
    if (recordSize == 0) return;
    std::uint32_t shown = records.fitCount(0, count, recordSize);
    for (std::uint32_t i = 0; i < shown; ++i) {
        std::uint32_t at = i * recordSize;
        std::uint32_t address = records.u32(at);
        const char* tail = i + 1 < shown ? ",\n" : "\n";
        switch (ufoEvent) {
        case 0:
        case 5:
            out.print("          {\n            \"FWAddr\": \"%u # 0x%x\",\n            \"Old value\": %u,\n"
                      "            \"Update value\": %u\n          }%s",
                      address, address, records.u32(at + 4), records.u32(at + 8), tail);
            break;
        case 1:
        case 2:
            out.print("          {\n            \"FWAddr\": \"%u # 0x%x\",\n            \"Value\": %u\n          }%s",
                      address, address, records.u32(at + 4), tail);
            break;
        default: // 3, 4
            out.print("          {\n            \"FWAddr\": \"%u # 0x%x\",\n            \"Value\": %u,\n"
                      "            \"Requires\": %u\n          }%s",
                      address, address, records.u32(at + 4), records.u32(at + 8), tail);
            break;
        }
    }
}

std::uint32_t UfoMaxRecords(std::uint32_t packetSize, std::uint32_t ufoEvent)
{
    std::uint32_t recordSize = UfoRecordSize(ufoEvent);
    if (recordSize == 0) {
        console().print("error: Unknown event type %u\n", ufoEvent);
        return 0;
    }
    // Signed, like the size arithmetic it stands for: a packet smaller than
    // the fixed part allows no record.
    std::int64_t room = static_cast<std::int64_t>(packetSize) - kUfoFixedBytes;
    return room > 0 ? static_cast<std::uint32_t>(room / recordSize) : 0;
}
