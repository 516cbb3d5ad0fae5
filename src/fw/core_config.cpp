#include "fw/core_config.h"

#include <cstring>

#include "fw/block_names.h"
#include "fw/fw_payload.h"
#include "json/envelope.h"
#include "json/output.h"
#include "stream/packet.h"
#include "stream/stream_file.h"

// Feature-flags payload (offsets from the payload start; the activity event
// word is at 0): 4 BVNC text (24 bytes), 28 feature list; Pre9: three u8
// phantom/dust/cluster fields at 32; later layouts: 32 u16 block count,
// 34 u16 GPU cores, then 8-byte block records (u16 id, u16 counters,
// u16 blocks, u16 unused) from 34 or 36.

namespace {

constexpr std::uint32_t kBvncText = kFwPayload + 4;
constexpr std::size_t kBvncTextSize = 24;
constexpr std::uint32_t kFeatureList = kFwPayload + 28;
constexpr std::uint32_t kBlockRecordCount = kFwPayload + 32;
constexpr std::uint32_t kNumGpuCores = kFwPayload + 34;
constexpr std::uint32_t kRecordSize = 8;

// The BVNC text, cut at its 24 bytes even when its NUL is missing.
struct BvncText {
    char text[kBvncTextSize + 1] = {};
    explicit BvncText(const Packet& packet)
    {
        for (std::size_t i = 0; i < kBvncTextSize; ++i)
            text[i] = static_cast<char>(packet.u8(kBvncText + i));
    }
};

void announce(StreamFile& file, const char* name, const Packet& packet, bool multiGpu)
{
    if (file.verbose)
        console().print("info: BVNC - %s (%p, %s)\n", name, static_cast<const void*>(packet.bytes() + kFwPayload),
                        multiGpu ? "True" : "False");
}

// The layouts after Pre9 differ only in where their block records start.
void displayBlocks(StreamFile& file, const Packet& packet, bool multiGpu, std::uint32_t recordOffset)
{
    BvncText bvnc(packet);
    std::uint32_t features = packet.u32(kFeatureList);
    if (multiGpu)
        file.out.print("        \"BVNC\": \"%s\",\n        \"BVNCFeatureList\": \"%u # 0x%08x\",\n"
                       "        \"NumGPUCores\": %u,\n        \"blocks\": [\n",
                       bvnc.text, features, features, packet.u16(kNumGpuCores));
    else
        file.out.print(
            "        \"BVNC\": \"%s\",\n        \"BVNCFeatureList\": \"%u # 0x%08x\",\n        \"blocks\": [\n",
            bvnc.text, features, features);

    std::uint32_t first = kFwPayload + recordOffset;
    std::uint32_t records = packet.fitCount(first, packet.u16(kBlockRecordCount), kRecordSize);
    for (std::uint32_t i = 0; i < records; ++i) {
        std::uint32_t at = first + i * kRecordSize;
        std::uint16_t id = packet.u16(at);
        file.out.print("          {\n            \"BlockID\": \"%u # %s\",\n            \"NumCounters\": %u,\n"
                       "            \"NumBlocks\": %u\n          }%s\n",
                       id, BlockIdName(id), packet.u16(at + 2), packet.u16(at + 4), i + 1 < records ? "," : "");
    }
    file.out.print("        ]%s\n", "");
}

// The current layout starts its records at 36 when the first record's
// counter count looks right (4 or 6), else at 34.
void displayCurrentLayout(StreamFile& file, const Packet& packet, bool multiGpu)
{
    std::uint32_t counters = packet.u16(kFwPayload + 38);
    std::uint32_t recordOffset = 36;
    if (counters != 4 && counters != 6) {
        if (file.verbose)
            console().print("info: Unexpected Number of Counters at block %u - 4 or 6 expected\n",
                            packet.u16(kFwPayload + 36));
        recordOffset = 34;
    }
    displayBlocks(file, packet, multiGpu, recordOffset);
}

} // namespace

void DisplayBVNC_Pre9(StreamFile& file, const Packet& packet, bool multiGpu)
{
    announce(file, "DisplayBVNC_Pre9", packet, multiGpu);
    BvncText bvnc(packet);
    std::uint32_t features = packet.u32(kFeatureList);
    file.out.print("        \"BVNC\": \"%s\",\n        \"BVNCFeatureList\": \"%u # 0x%08x\",\n"
                   "        \"IndirectByPhantom\": %u,\n        \"PhantomIndirectByDust\": %u,\n"
                   "        \"PhantomIndirectByCluster\": %u\n",
                   bvnc.text, features, features, packet.u8(kFwPayload + 32), packet.u8(kFwPayload + 33),
                   packet.u8(kFwPayload + 34));
}

void DisplayBVNC_9(StreamFile& file, const Packet& packet, bool multiGpu)
{
    announce(file, "DisplayBVNC_9", packet, multiGpu);
    displayBlocks(file, packet, multiGpu, 34);
}

void DisplayBVNC_13(StreamFile& file, const Packet& packet, bool multiGpu)
{
    announce(file, "DisplayBVNC_13", packet, multiGpu);
    displayBlocks(file, packet, multiGpu, 34);
}

void DisplayBVNC_17(StreamFile& file, const Packet& packet, bool multiGpu)
{
    announce(file, "DisplayBVNC_17", packet, multiGpu);
    displayBlocks(file, packet, multiGpu, 36);
}

void DisplayBVNC_19(StreamFile& file, const Packet& packet, bool multiGpu)
{
    announce(file, "DisplayBVNC_19", packet, multiGpu);
    displayCurrentLayout(file, packet, multiGpu);
}

void DisplayBVNC_75(StreamFile& file, const Packet& packet, bool multiGpu)
{
    announce(file, "DisplayBVNC_75", packet, multiGpu);
    displayBlocks(file, packet, multiGpu, 36);
}

void DisplayBVNC_Current(StreamFile& file, const Packet& packet, bool multiGpu)
{
    announce(file, "DisplayBVNC_Current", packet, multiGpu);
    displayCurrentLayout(file, packet, multiGpu);
}

const BvncLayout BvncLayoutTable[kBvncLayoutCount] = {
    {0, 0, nullptr},
    {1, 40, DisplayBVNC_Pre9},
    {2, 160, DisplayBVNC_9},
    {3, 168, DisplayBVNC_13},
    {4, 168, DisplayBVNC_17},
    {5, 168, DisplayBVNC_19},
    {6, 200, DisplayBVNC_75},
    {7, 200, DisplayBVNC_Current},
};

void PrintCoreConfiguration(StreamFile& file, const Packet& packet)
{
    constexpr std::uint32_t kNoLayout = kBvncLayoutCount;
    std::uint32_t payloadSize = packet.size() - kFwPayload;
    bool multiGpu = FwIsMultiGpu(packet);
    if (file.verbose) console().print("info: Number of supported BVNC types = %u\n", kBvncLayoutCount);

    // The highest index of a matching size wins.
    std::uint32_t expected = kNoLayout;
    std::uint32_t actual = kNoLayout;
    for (std::uint32_t i = kBvncLayoutCount; i-- > 0;) {
        const BvncLayout& layout = BvncLayoutTable[i];
        if (file.verbose) console().print("info: BVNC_%u Size = %u\n", layout.index, layout.payloadSize);
        if (expected == kNoLayout && layout.payloadSize == kBvncCurrentSize) {
            expected = i;
            if (file.verbose)
                console().print("info: Matched Expected size (%u) with BVNC_%u\n", layout.payloadSize, layout.index);
        }
        if (actual == kNoLayout && layout.payloadSize == payloadSize) {
            actual = i;
            if (file.verbose)
                console().print("info: Matched actual data size (%u) with BVNC_%u\n", payloadSize, layout.index);
        }
    }
    if (file.verbose && expected != actual) console().putLine("info: WARNING - different sized data detected!");

    if (payloadSize < kBvncCurrentSize) {
        console().putLine("warning: Detected older format of the Zyntel FWACT packet.");
        console().print("BVNC: Expected %u bytes got %u.\n", kBvncCurrentSize, payloadSize);
        if (packet.size() == 32) {
            std::uint32_t features = packet.u32(kFwPayload + 4);
            file.out.print("        \"BVNCFeatureList\": \"%u # 0x%08x\",\n", features, features);
        } else if (actual != kNoLayout && BvncLayoutTable[actual].display) {
            BvncLayoutTable[actual].display(file, packet, multiGpu);
            return;
        }
    } else if (payloadSize == kBvncCurrentSize) {
        DisplayBVNC_Current(file, packet, multiGpu);
        return;
    } else {
        console().putLine("warning: Detected newer format of the Zyntel FWACT packet.");
        console().print("BVNC: Expected %u bytes got %u.\n", kBvncCurrentSize, payloadSize);
        DisplayBVNC_Current(file, packet, multiGpu);
    }
    file.out.print("        \"Raw-Packet\":");
    writeHexDump(&file, packet);
}
