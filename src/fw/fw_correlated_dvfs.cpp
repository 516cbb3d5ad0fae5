// Frequency scaling in correlated mode: proactive DVFS, DVFS and work
// estimates pair a begin sub-event with the next one; an operating-point
// update stands alone.
#include <cstdint>

#include "fw/fw_correlated_families.h"
#include "fw/fw_names.h"
#include "fw/fw_open_events.h"
#include "json/document.h"
#include "json/output.h"
#include "stream/stream_file.h"

namespace {

enum SubEvent : std::uint32_t {
    kProactiveBegin = 1,
    kProactiveEnd = 2,
    kDvfsBegin = 3,
    kDvfsEnd = 4,
    kWorkEstimateBegin = 5,
    kWorkEstimateEnd = 6,
    kOppUpdate = 7,
};

void writePair(StreamFile& file, const Packet& begin, const Packet& end, std::uint32_t beginSubEvent)
{
    const Packet first = begin.from(kFwPayload);
    const Packet last = end.from(kFwPayload);
    const auto start = static_cast<unsigned long long>(begin.timer());
    const auto finish = static_cast<unsigned long long>(end.timer());

    beginTimePeriod(file);
    if (beginSubEvent == kDvfsBegin)
        file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"DVFS\",\n"
                       "      \"prop\": {\n        \"osid\": %u,\n        \"Utilisation (%%)\": %u,\n"
                       "        \"Frequency (Hz)\": %u,\n        \"TXTACTCYC\": %u\n",
                       start, finish, FwOsId(begin), last.u32(12), last.u32(8), last.u32(16) - first.u32(16));
    else if (beginSubEvent == kWorkEstimateBegin)
        file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"WORKEST_%s\",\n"
                       "      \"prop\": {\n        \"osid\": %u,\n        \"Index\": %u,\n"
                       "        \"Cycle prediction\": %llu,\n        \"Cycles taken\": %llu,\n"
                       "        \"TXTACTCYC\": %u\n",
                       start, finish, FwDataMasterShortName(first.u32(16)), FwOsId(begin), last.u32(20),
                       static_cast<unsigned long long>(last.u32(8)), static_cast<unsigned long long>(last.u32(12)),
                       last.u32(24) - first.u32(24));
    else
        file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"Proactive DVFS\",\n"
                       "      \"prop\": {\n        \"osid\": %u,\n        \"Deadline (usec)\": %llu,\n"
                       "        \"Frequency (Hz)\": %u,\n        \"Workload Cycles\": %u,\n"
                       "        \"TXTACTCYC\": %u\n",
                       start, finish, FwOsId(begin), static_cast<unsigned long long>(last.u64(8)), last.u32(16),
                       last.u32(20), last.u32(24) - first.u32(24));
    file.out.print("      }\n    }");
}

} // namespace

void correlateFrequencyScaling(StreamFile& file, Packet& packet)
{
    const std::uint32_t subEvent = packet.u32(kFwPayload);
    if (subEvent == 0 || subEvent > kOppUpdate) {
        console().putLine("warning: Zyntel DVFS data corrupt, packet skipped");
        return;
    }
    if (subEvent == kOppUpdate) {
        beginTimePeriod(file);
        file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"OPP Update\",\n"
                       "      \"prop\": {\n        \"osid\": %u,\n        \"OPP\": %u\n",
                       static_cast<unsigned long long>(packet.timer()),
                       static_cast<unsigned long long>(packet.timer()), FwOsId(packet),
                       packet.u32(kFwPayload + 8));
        file.out.print("      }\n    }");
        return;
    }

    // Slots 0, 1, 2 hold the begins of sub-events 1, 3, 5.
    const std::uint32_t beginSubEvent = subEvent % 2 == 1 ? subEvent : subEvent - 1;
    StoredPacket& slot = fwOpenEvents().frequencyScaling[beginSubEvent / 2];
    if (subEvent == beginSubEvent) {
        slot.assign(packet);
        return;
    }
    if (slot.empty()) return;
    writePair(file, slot.view(), packet, beginSubEvent);
    slot.clear();
}
