#include "fw/counter_blocks.h"

#include "fw/block_names.h"
#include "fw/counter_ids.h"
#include "fw/fw_payload.h"
#include "json/output.h"
#include "stream/packet.h"

// Each block starts with a header word h: bits 0-15 a counter mask or a
// value count, bits 16-31 the block id (bits 24-27 double as the GPU id).
// Counter-mask blocks hold one value per set mask bit 0-5, value-count
// blocks n values, custom blocks n (id, value) pairs.

namespace {

constexpr std::uint32_t kMaxBlocks = 60;
constexpr std::uint32_t kMaskBits = 6;

// The two read positions: begin's stream and, in step with it, end's.
struct Cursors {
    const Packet& begin;
    const Packet* end;
    std::uint64_t at;
    std::uint64_t endAt;

    std::uint32_t beginWord(std::uint64_t offset) const { return begin.u32(at + offset); }
    std::uint32_t endWord(std::uint64_t offset) const { return end ? end->u32(endAt + offset) : 0; }
    void advance(std::uint64_t bytes)
    {
        at += bytes;
        endAt += bytes;
    }
};

void printCustomBlock(Output& out, Cursors& cursor, std::uint32_t header, bool multiGpu)
{
    std::uint32_t number = (header >> 16) & 0xF;
    const char* suffix = number == 4 ? "_FW" : "";
    std::uint32_t pairs = header & 0xFFFF;
    if (multiGpu)
        out.print("          {\n            \"blkid\": \"CUSTOM_%d%s\",\n            \"gpuid\": %u,\n"
                  "            \"len\": %u,\n            \"counters\": [\n",
                  static_cast<int>(number), suffix, (header >> 24) & 0xF, pairs);
    else
        out.print("          {\n            \"blkid\": \"CUSTOM_%d%s\",\n            \"len\": %u,\n"
                  "            \"counters\": [\n",
                  static_cast<int>(number), suffix, pairs);

    std::uint32_t shown = cursor.begin.fitCount(cursor.at, pairs, 8);
    for (std::uint32_t i = 0; i < shown; ++i) {
        std::uint32_t id = cursor.beginWord(i * 8);
        std::uint32_t start = cursor.beginWord(i * 8 + 4);
        if (cursor.end) {
            std::uint32_t stop = cursor.endWord(i * 8 + 4);
            std::uint32_t difference = stop > start ? stop - start : start - stop;
            out.print("             {\n               \"ID\"          :\"0x%x\",\n"
                      "               \"value_start\" :  %u,\n               \"value_stop\"  :  %u,\n"
                      "               \"value\"       :  %u\n             }",
                      id, start, stop, difference);
        } else {
            out.print(
                "              {\n                \"ID\" : \"0x%x\",\n                \"value\" : %u\n              }",
                id, start);
        }
        out.write(i + 1 < shown ? ",\n" : "\n");
    }
    cursor.advance(static_cast<std::uint64_t>(pairs) * 8);
}

void printMaskValues(Output& out, Cursors& cursor, std::uint32_t mask)
{
    std::uint32_t wanted = 0;
    for (std::uint32_t bit = 0; bit < kMaskBits; ++bit)
        wanted += (mask >> bit) & 1;
    std::uint32_t present = cursor.begin.fitCount(cursor.at, wanted, 4);

    const char* prefix = "";
    std::uint32_t taken = 0;
    for (std::uint32_t bit = 0; bit < kMaskBits && taken < present; ++bit) {
        if (!(mask & (1u << bit))) continue;
        std::uint32_t value = cursor.beginWord(0);
        if (cursor.end) value = cursor.endWord(0) - value;
        out.print("%s              {\"count%u\": %u}", prefix, bit, value);
        prefix = ",\n";
        cursor.advance(4);
        ++taken;
    }
    out.write("\n");
}

void printCountedValues(Output& out, Cursors& cursor, std::uint32_t id, std::uint32_t count)
{
    const CounterIdTable& ids = counterIdTable();
    std::uint32_t shown = cursor.begin.fitCount(cursor.at, count, 4);
    for (std::uint32_t j = 0; j < shown; ++j) {
        std::uint32_t start = cursor.beginWord(j * 4);
        std::uint32_t stop = cursor.endWord(j * 4);
        if (ids.known) {
            std::uint32_t counterId = ids.get(id & 0x7FFF, j);
            if (cursor.end)
                out.print("             {\n               \"id\" : \"0x%-4x\",\n               \"value_start\" : %u,\n"
                          "               \"value_stop\" : %u,\n               \"value\" : %u\n             }",
                          counterId, start, stop, stop - start);
            else
                out.print(
                    "             {\n              \"id\" : \"0x%-4x\",\n              \"value\" : %u\n             }",
                    counterId, start);
        } else {
            if (cursor.end)
                out.print("               \"value_start%u\" : %u,\n               \"value_stop%u\" : %u,\n"
                          "               \"value%u\" : %u",
                          j, start, j, stop, j, stop - start);
            else
                out.print("               \"value%u\" : %u", j, start);
        }
        out.write(j + 1 < shown ? ",\n" : "\n");
    }
    cursor.advance(static_cast<std::uint64_t>(count) * 4);
}

} // namespace

void PrintCounterBlocks(Output& out, const Packet& begin, const Packet* end, std::uint32_t signature, bool multiGpu)
{
    FwBlockStream stream = FwLocateBlocks(begin, signature);
    std::uint32_t count = stream.count;
    if (count > kMaxBlocks) {
        out.print("          \"error\": \"Invalid number of blocks in counter block stream\",\n");
        return;
    }
    Cursors cursor{begin, end, stream.start, end ? FwLocateBlocks(*end, signature).start : 0};
    for (std::uint32_t k = 0; k < count && cursor.at < begin.size(); ++k) {
        std::uint32_t header = cursor.beginWord(0);
        cursor.advance(4);
        std::uint32_t id = header >> 16;
        const char* name = BlockIdName(static_cast<std::uint16_t>(id));

        if (((header >> 20) & 0x70F) == 0x70F) {
            printCustomBlock(out, cursor, header, multiGpu);
        } else {
            bool valueCount = (id & 0x8000) != 0;
            const char* key = valueCount ? "len" : "cntmask";
            std::uint32_t low = header & 0xFFFF;
            if (multiGpu)
                out.print("          {\n            \"blkid\": \"%s\",\n            \"gpuid\": \"%u\",\n"
                          "            \"%s\": \"0x%x\",\n            \"counters\": [\n",
                          name, (header >> 24) & 0xF, key, low);
            else
                out.print("          {\n            \"blkid\": \"%s\",\n            \"%s\": \"0x%x\",\n"
                          "            \"counters\": [\n",
                          name, key, low);
            if (valueCount)
                printCountedValues(out, cursor, id, low);
            else
                printMaskValues(out, cursor, low);
        }
        bool last = k + 1 == count || cursor.at >= begin.size();
        out.write(last ? "            ]\n          }\n" : "            ]\n          },\n");
    }
}
