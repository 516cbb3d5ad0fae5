#include "host/host_records.h"

#include <cstring>

#include "fw/block_names.h"
#include "host/host_names.h"
#include "json/output.h"
#include "stream/packet.h"

namespace {
constexpr unsigned kNumGpuCoresFlag = 1u << 20;
constexpr unsigned kBvncTextSize = 24;
} // namespace

HealthNames lookUpHealth(const Packet& packet)
{
    const char* status = lookupName(HostHealthStatusNames, packet.u32(32));
    const char* reason = lookupName(HostHealthReasonNames, packet.u32(36));
    return {status, reason};
}

void printDeviceFeatures(Output& out, const Packet& packet)
{
    // +32 BVNC text of 24 bytes, +56 feature list, +60 block count,
    // +62 GPU cores, +64 block records of 8 bytes.
    char bvnc[kBvncTextSize + 1] = {};
    std::strncpy(bvnc, packet.text(32), kBvncTextSize);
    std::uint32_t features = packet.u32(56);
    out.print("        \"BVNC\": \"%s\",\n        \"BVNCFeatureList\": \"%u # 0x%08x\",\n", bvnc, features, features);
    if (packet.typeWord() & kNumGpuCoresFlag) out.print("        \"NumGPUCores\": %u,\n", packet.u16(62));
    out.print("        \"Blocks\": [\n");
    std::uint32_t blocks = packet.fitCount(64, packet.u16(60), 8);
    for (std::uint32_t i = 0; i < blocks; ++i) {
        std::size_t at = 64 + 8 * i;
        std::uint16_t id = packet.u16(at);
        out.print("          {\n            \"BlockID\": \"%u # %s\",\n            \"NumCounters\": %u,\n"
                  "            \"NumBlocks\": %u\n          }%s\n",
                  id, BlockIdName(id), packet.u16(at + 2), packet.u16(at + 4), i + 1 < blocks ? "," : "");
    }
    out.print("        ]\n");
}

void printMemoryUsage(Output& out, const Packet& packet, unsigned infoEvent)
{
    // The record counts are taken over the whole payload, so they can claim
    // one record more than the packet holds; only records that start inside
    // the packet are read.
    if (infoEvent == 0) {
        out.print("        \"Total Mem Usage\": \"%u\",\n", packet.u32(32));
        std::uint32_t records = packet.fitCount(36, (packet.sizeWord() - 24u) / 12u, 12);
        for (std::uint32_t i = 0; i < records; ++i) {
            std::size_t at = 36 + 12 * i;
            out.print("        \"PID\": \"%u\",\n        \"Graphics Mem Usage\": \"%u\",\n"
                      "        \"Kernel Mem Usage\": \"%u\"%s\n",
                      packet.u32(at), packet.u32(at + 8), packet.u32(at + 4), i + 1 < records ? "," : "");
        }
    } else if (infoEvent == 1) {
        out.print("        \"Total Mem Usage\": \"%lu\",\n", static_cast<unsigned long>(packet.u64(32)));
        std::uint32_t records = packet.fitCount(40, (packet.sizeWord() - 8u) / 24u, 24);
        for (std::uint32_t i = 0; i < records; ++i) {
            std::size_t at = 40 + 24 * i;
            out.print("        \"PID\": \"%u\",\n        \"Graphics Mem Usage\": \"%lu\",\n"
                      "        \"Kernel Mem Usage\": \"%lu\"%s\n",
                      packet.u32(at), static_cast<unsigned long>(packet.u64(at + 16)),
                      static_cast<unsigned long>(packet.u64(at + 8)), i + 1 < records ? "," : "");
        }
    } else {
        errorConsole().print("error: Invalid event type in MEMORY_INFO event\n");
    }
}

void printClientInfo(Output& out, const Packet& packet, unsigned clientInfoEvent)
{
    if (clientInfoEvent != 1) {
        errorConsole().print("error: Invalid event type in HOST_CLIENT_INFO event\n");
        return;
    }
    // +32 count, then records from +36: u32 PID, u32 name length L, L bytes
    // of name; the next record starts 8 + L bytes further.
    std::uint32_t count = packet.u32(32);
    out.print("        \"Count\": \"%d\"%s\n", static_cast<int>(count), count != 0 ? "," : "");
    std::uint32_t present = 0;
    for (std::uint64_t at = 36; present < count && at < packet.size(); at += 8 + std::uint64_t{packet.u32(at + 4)})
        ++present;
    std::uint64_t at = 36;
    for (std::uint32_t i = 0; i < present; ++i) {
        out.print("        \"PID\": \"%d\",\n        \"Process Name\": \"%s\"%s\n", packet.i32(at), packet.text(at + 8),
                  i + 1 < present ? "," : "");
        at += 8 + std::uint64_t{packet.u32(at + 4)};
    }
}
