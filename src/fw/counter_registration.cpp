#include "fw/counter_registration.h"

#include <cstring>

#include "fw/block_names.h"
#include "fw/counter_ids.h"
#include "fw/fw_payload.h"
#include "json/output.h"
#include "stream/packet.h"
#include "stream/stream_file.h"

// Payload: 0 event word, 4 block count, then per block: u32 block id,
// u32 id count n, n u32 counter ids.
void PrintCounterIdRegistration(StreamFile& file, const Packet& packet, bool& invalidIdReported)
{
    CounterIdTable& table = counterIdTable();
    table.known = true;
    std::uint32_t payloadSize = packet.size() - kFwPayload;
    std::uint32_t blocks = packet.u32(kFwPayload + 4);
    file.out.print("        \"nBlocks\": %u%s\n", blocks, blocks != 0 ? "," : "");
    if (blocks == 0) return;
    file.out.print("        \"blocks\": [\n");

    std::uint64_t cursor = kFwPayload + 8;
    for (std::uint32_t k = 0; k < blocks && cursor < packet.size(); ++k) {
        file.out.print("          {\n");
        std::uint32_t id = packet.u32(cursor);
        std::uint32_t count = packet.u32(cursor + 4);
        const char* name = BlockIdName(static_cast<std::uint16_t>(id));
        file.out.print("            \"blkid\": \"%u # %s\",\n            \"len\": %u%s\n", id, name, count,
                       count != 0 ? "," : "");

        // The id list is bounded by the payload size as counted from offset 8
        // for every block, and by the bytes that exist after this block's header.
        std::uint32_t position = 8;
        bool cutShort = false;
        if (count != 0 && payloadSize > 8) {
            std::uint32_t byPosition = (payloadSize - 8 + 3) / 4;
            std::uint32_t wanted = count < byPosition ? count : byPosition;
            std::uint32_t shown = packet.fitCount(cursor + 8, wanted, 4);
            cutShort = shown < wanted;
            bool valid = std::strcmp(name, "OUT_OF_BOUNDS") != 0;
            for (std::uint32_t j = 0; j < shown; ++j, position += 4) {
                std::uint32_t counterId = packet.u32(cursor + 8 + 4 * static_cast<std::uint64_t>(j));
                file.out.print("            \"id%u\": \"%08x\"%s\n", j, counterId, j + 1 < shown ? "," : "");
                if (valid) {
                    // Only bit 15 (the second family) is dropped: a word with
                    // higher bits set names no row of the table.
                    table.set(id & ~0x8000u, j, counterId);
                } else if (!invalidIdReported) {
                    invalidIdReported = true;
                    console().print("error: INVALID Block-ID 0x%x found! Packet (%u)\n", id, file.packetsProcessed);
                }
            }
        }
        cursor += (2 + static_cast<std::uint64_t>(count)) * 4;
        bool last = k + 1 == blocks || cursor >= packet.size();
        file.out.print("          }%s", last ? "\n        ]\n" : ",\n");
        // An id list that runs past the packet's end is as corrupt as one past the payload size.
        if (position >= payloadSize || cutShort) {
            console().putLine("error: Potentially corrupted data stream");
            return;
        }
    }
}
