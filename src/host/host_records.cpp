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

void printEnqueueLines(Output& out, const Packet& p, HostMode mode)
{
    // +24 kick type, +28 PID, +32/+36 job refs, +40 context, +48/+56 fence
    // UIDs, +64 deadline, +72 cycle estimate, +76/+80/+84 fence ids.
    std::uint32_t size = p.sizeWord();
    std::uint32_t kickType = p.u32(24);
    if (mode == HostMode::Raw)
        out.print("        \"PID\": %d,\n", p.i32(28));
    else
        out.print("        \"PID\": %u,\n", p.u32(28));
    if (size > 40) {
        if (mode == HostMode::Raw)
            out.print("        \"Context\": %d,\n", p.i32(40));
        else
            out.print("        \"Context\": %u,\n", p.u32(40));
        out.print("        \"CheckFenceID\": %d,\n        \"UpdateFenceID\": %d,\n        \"UpdateTimelineID\": %d,\n"
                  "        \"CheckFenceUID\": %lu,\n        \"UpdateFenceUID\": %lu,\n",
                  p.i32(76), p.i32(80), p.i32(84), static_cast<unsigned long>(p.u64(48)),
                  static_cast<unsigned long>(p.u64(56)));
    }
    if ((kickType == 21 || kickType == 22) && size > 64)
        out.print("        \"Deadline\": %lu,\n        \"CycleEstimate\": %u,\n", static_cast<unsigned long>(p.u64(64)),
                  p.u32(72));
    out.print("        \"ExtJobRef\": %d,\n        \"IntJobRef\": %d,\n        \"KickType\": \"%s\"\n", p.i32(32), p.i32(36),
              lookupName(HostKickTypeNames, kickType));
}

void printClockSyncLines(Output& out, const Packet& p)
{
    // +24 GPU timestamp, +32 OS timestamp, +40 clock speed, +48 OS
    // monotonic timestamp (56-byte packets only).
    out.print("        \"speed\": %u,\n        \"crtimestamp\": %lu,\n", p.u32(40), static_cast<unsigned long>(p.u64(24)));
    if (p.sizeWord() == 56)
        out.print("        \"ostimestamp\": %lu,\n        \"osmonotimestamp\": %lu\n", static_cast<unsigned long>(p.u64(32)),
                  static_cast<unsigned long>(p.u64(48)));
    else
        out.print("        \"ostimestamp\": %lu\n", static_cast<unsigned long>(p.u64(32)));
}

void printAllocRecord(Output& out, const Packet& p, HostMode mode)
{
    // Names are texts that run to the end of the payload.
    switch (p.u32(24)) {
    case 1:
        if (mode == HostMode::Raw)
            out.print("        \"FWAddr\": \"%u # 0x%08x\",\n        \"Name\": \"%s\"\n", p.u32(32), p.u32(32), p.text(36));
        else
            out.print("        \"FWAddr\": %u,\n        \"Name\": \"%s\"\n", p.u32(32), p.text(36));
        break;
    case 2:
        out.print("        \"PID\": %u,\n        \"TimelineID\": %lu,\n        \"Name\": \"%s\"\n", p.u32(32),
                  static_cast<unsigned long>(p.u64(40)), p.text(48));
        break;
    case 3:
        if (mode == HostMode::Raw)
            out.print("        \"PID\": %u,\n        \"FenceID\": %d,\n        \"CP_FWAddr\": %u,\n"
                      "        \"Name\": \"%s\"\n",
                      p.u32(32), p.i32(36), p.u32(40), p.text(44));
        else
            out.print("        \"PID\": %u,\n        \"FenceID:\": %d,\n        \"FWAddr\": %u,\n        \"Name\": \"%s\"\n",
                      p.u32(32), p.i32(36), p.u32(40), p.text(44));
        break;
    case 4:
        out.print("        \"FWAddr\": %u,\n        \"TimelineID\": %d,\n        \"PID\": %u,\n        \"FenceID\": %d,\n"
                  "        \"Name\": \"%s\"\n",
                  p.u32(32), p.i32(36), p.u32(40), p.i32(44), p.text(48));
        break;
    case 5:
        out.print("        \"PID\": %u,\n        \"FenceID\": %d,\n        \"TimelineID\": %d,\n        \"SyncPtIdx\": %lu,\n"
                  "        \"Name\": \"%s\"\n",
                  p.u32(32), p.i32(36), p.i32(40), static_cast<unsigned long>(p.u64(48)), p.text(56));
        break;
    default: errorConsole().print("error: Invalid allocation type in HOST_ALLOC event\n"); break;
    }
}

void printFreeRecord(Output& out, const Packet& p, HostMode mode)
{
    switch (p.u32(24)) {
    case 1:
        if (mode == HostMode::Raw)
            out.print("        \"FWAddr\": \"%u # 0x%08x\"\n", p.u32(32), p.u32(32));
        else
            out.print("        \"FWAddr\": %u\n", p.u32(32));
        break;
    case 2:
        out.print("        \"PID\": %u,\n        \"TimelineID\": %lu\n", p.u32(32), static_cast<unsigned long>(p.u64(40)));
        break;
    case 3: out.print("        \"FenceID\": %lu\n", static_cast<unsigned long>(p.u64(32))); break;
    case 4: out.print("        \"FWAddr\": %u\n", p.u32(32)); break;
    default: errorConsole().print("error: Invalid allocation type in HOST_FREE event\n"); break;
    }
}

void printModifyRecord(Output& out, const Packet& p)
{
    if (p.u32(24) == 3)
        out.print("        \"NewFenceID\": %lu,\n        \"In1FenceID\": %lu,\n        \"In2FenceID\": %lu,\n"
                  "        \"Name\": \"%s\"\n",
                  static_cast<unsigned long>(p.u64(32)), static_cast<unsigned long>(p.u64(40)),
                  static_cast<unsigned long>(p.u64(48)), p.text(56));
    else
        errorConsole().print("error: Invalid allocation type in HOST_MODIFY event\n");
}

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
