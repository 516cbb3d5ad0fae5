// Firmware sections (background, interrupt, debug) and context switches in
// correlated mode: both pair a start with an end under the data master.
#include <cstdint>

#include "fw/fw_correlated_families.h"
#include "fw/fw_names.h"
#include "fw/fw_open_events.h"
#include "json/document.h"
#include "json/output.h"
#include "stream/stream_file.h"

namespace {

// The texture-active cycle counter is 24 bits wide.
constexpr std::uint32_t kActiveCycleWrap = 0x1000000;

const char* const kSectionKinds[] = {"BG", "IRQ", "DBG"};

void writeSection(StreamFile& file, const Packet& start, const Packet& end, unsigned kind)
{
    const Packet first = start.from(kFwPayload);
    const Packet last = end.from(kFwPayload);
    const std::uint32_t startActive = first.u32(4);
    std::uint32_t endActive = last.u32(4);
    if (startActive > endActive) endActive += kActiveCycleWrap;

    beginTimePeriod(file);
    file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"T%u %s %s\",\n"
                   "      \"prop\": {\n        \"osid\": %u,\n        \"actcyc_end\": %u,\n"
                   "        \"actcyc_start\": %u,\n        \"metacount0\": %u,\n        \"metacount1\": %u\n"
                   "      }\n    }",
                   static_cast<unsigned long long>(start.timer()), static_cast<unsigned long long>(end.timer()),
                   fwThreadFlag(start), kSectionKinds[kind], FwDataMasterShortName(first.u32(0)), FwOsId(start),
                   endActive, startActive, last.u32(8) - first.u32(8), last.u32(12) - first.u32(12));
}

} // namespace

void correlateSection(StreamFile& file, Packet& packet)
{
    // Types 1/2 background, 3/4 interrupt, 5/6 debug; odd types start.
    const std::uint32_t type = packet.eventType();
    const unsigned kind = (type - 1) / 2;
    const std::uint32_t dataMaster = packet.u32(kFwPayload);
    if (dataMaster >= kFwDataMasterCount) return;

    StoredPacket& slot = fwOpenEvents().sections[kind][dataMaster];
    if (type % 2 == 1) {
        slot.assign(packet);
        return;
    }
    if (slot.empty()) return;
    writeSection(file, slot.view(), packet, kind);
    slot.clear();
}

void correlateContextSwitch(StreamFile& file, Packet& packet)
{
    const std::uint32_t dataMaster = packet.u32(kFwPayload);
    if (dataMaster >= kFwDataMasterCount) return;

    StoredPacket& slot = fwOpenEvents().contextSwitches[dataMaster];
    if (packet.eventType() == 0x30) {
        slot.assign(packet);
        return;
    }
    if (slot.empty()) return;

    const Packet store = slot.view();
    const Packet stored = store.from(kFwPayload);
    const Packet completed = packet.from(kFwPayload);
    if (store.timer() > packet.timer())
        console().print("warning: Zyntel packet (%u) has invalid timestamps (start: %llu, end: %llu)\n",
                        store.ordinal(), static_cast<unsigned long long>(store.timer()),
                        static_cast<unsigned long long>(packet.timer()));
    // The surname follows the hardware rule, which gives nothing for a store.
    beginTimePeriod(file);
    file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"CSW_%s\",\n"
                   "      \"surname\": \"%s\",\n      \"prop\": {\n        \"osid\": %u,\n        \"frame\": %u,\n"
                   "        \"Context\": %u,\n        \"Phase\": %u,\n        \"Cycle\": %u\n      }\n    }",
                   static_cast<unsigned long long>(store.timer()), static_cast<unsigned long long>(packet.timer()),
                   FwDataMasterShortName(dataMaster), "", FwOsId(store), stored.u32(8), stored.u32(4),
                   stored.u32(20), completed.u32(16) - stored.u32(16));
    slot.clear();
}
