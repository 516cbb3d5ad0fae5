// Firmware activity in correlated mode: one instant "FW_ACTIVITY" object
// whose keys depend on the activity event.
#include <cstdint>

#include "fw/core_config.h"
#include "fw/counter_registration.h"
#include "fw/fw_correlated_families.h"
#include "fw/fw_names.h"
#include "json/document.h"
#include "json/names.h"
#include "json/output.h"
#include "stream/stream_file.h"

namespace {

// The full recovery record is 20 payload bytes; older firmware sent fewer
// words, which are shown one by one.
constexpr std::uint32_t kHwrPayloadSize = 20;

// Per run: the invalid block-id message of correlated mode is printed once.
bool invalidBlockIdReported = false;

void writeRecovery(StreamFile& file, const Packet& packet, std::uint32_t event)
{
    const Packet payload = packet.from(kFwPayload);
    const char* dataMaster = FwDataMasterShortName(payload.u32(4));
    const char* reason = lookupName(FwHwrReasonNames, payload.u32(8));
    file.out.print(",\n");
    const std::uint32_t payloadSize = fwPayloadSize(packet);
    if (payloadSize < kHwrPayloadSize) {
        // The words after the event word.
        const int words = static_cast<int>(payloadSize < 4 ? 0 : (payloadSize - 4) / 4);
        for (int i = 0; i < words; ++i)
            file.out.print(i + 1 < words ? "        \"dword%d\": %u,\n" : "        \"dword%d\": %u", i,
                           payload.u32(4 + 4 * i));
        return;
    }
    if (payloadSize > kHwrPayloadSize) console().putLine("warning: Detected newer format of the Zyntel FWACT packet.");
    if (event == kFwActHwrDetected)
        file.out.print("        \"DM\": \"%s\",\n        \"Reason\": \"%s\",\n        \"Context\": %u", dataMaster, reason,
                       payload.u32(12));
    else
        file.out.print("        \"DM\": \"%s\",\n        \"Context\": %u", dataMaster, payload.u32(12));
}

} // namespace

void writeActivityPeriod(StreamFile& file, Packet& packet)
{
    const Packet payload = packet.from(kFwPayload);
    const std::uint32_t event = payload.u32(0);
    beginTimePeriod(file);
    file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"FW_ACTIVITY\",\n"
                   "      \"prop\": {\n        \"osid\": %u,\n        \"Event\": \"%s\"",
                   static_cast<unsigned long long>(packet.timer()), static_cast<unsigned long long>(packet.timer()),
                   FwOsId(packet), lookupName(FwActivityEventNames, event));

    if (event >= kFwActHwrDetected && event <= kFwActHwrFreelistReady) {
        writeRecovery(file, packet, event);
    } else if (event == kFwActFilterSet) {
        file.out.print(",\n        \"EventMask\": \"0x%08x%08x\"\n", payload.u32(8), payload.u32(4));
    } else if (event == kFwActFeatureFlags) {
        file.out.print(",\n");
        PrintCoreConfiguration(file, packet);
    } else if (event == kFwActRegsProgrammed) {
        const std::uint32_t payloadSize = fwPayloadSize(packet);
        if (file.verbose)
            console().print("%s: Expected Size %u, actual size %u\n", "PrintFWACTPacket", 8u, payloadSize);
        file.out.print(",\n");
        if (payloadSize >= 8) PrintCounterIdRegistration(file, packet, invalidBlockIdReported);
    }
    file.out.print("      }\n    }");
}
