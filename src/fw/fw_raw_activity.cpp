// Raw objects of the synchronisation-object ("syncop") and firmware
// activity ("fwactdata") packets.
#include "fw/core_config.h"
#include "fw/counter_registration.h"
#include "fw/fw_names.h"
#include "fw/fw_payload.h"
#include "fw/fw_raw_objects.h"
#include "fw/ufo_list.h"
#include "json/envelope.h"
#include "json/output.h"
#include "stream/packet.h"
#include "stream/stream_file.h"

namespace {

// Payload size of the full HWR form: event, data master, reason, context,
// and one word more.
constexpr std::uint32_t kHwrFullSize = 20;

// The raw converter's own once-per-run flag for invalid block ids.
bool gInvalidBlockIdReported = false;

void writeHwrFields(StreamFile& file, const Packet& packet, std::uint32_t event)
{
    const char* dataMaster = FwDataMasterName(packet.u32(kFwPayload + 4));
    const char* reason = lookupName(FwHwrReasonNames, packet.u32(kFwPayload + 8));
    file.out.write(",\n");
    std::uint32_t payloadSize = packet.size() - kFwPayload;
    if (payloadSize < kHwrFullSize) {
        // The short form: every word after the event word, as it stands.
        int words = packet.size() >= 28 ? static_cast<int>((packet.size() - 28) / 4) : 0;
        for (int i = 0; i < words; ++i)
            file.out.print(i + 1 < words ? "        \"dword%d\": %u,\n" : "        \"dword%d\": %u", i,
                           packet.u32(kFwPayload + 4 + 4 * i));
        return;
    }
    if (payloadSize > kHwrFullSize) console().putLine("warning: Detected newer format of the Zyntel FWACT packet.");
    if (event == kFwActHwrDetected)
        file.out.print("        \"dm\": \"%s\",\n        \"reason\": \"%s\",\n        \"Context\": %u", dataMaster,
                       reason, packet.u32(kFwPayload + 12));
    else
        file.out.print("        \"dm\": \"%s\",\n        \"Context\": %u", dataMaster, packet.u32(kFwPayload + 12));
}

} // namespace

// Synchronisation objects: 0 UFO event, 8 pid, 12 extJobRef, 16 intJobRef,
// 20 context, 24 u16 record offset, 26 u16 record count, 28 data master.
void writeRawUfo(StreamFile& file, const Packet& packet)
{
    std::uint32_t ufoEvent = packet.u32(kFwPayload);
    const char* eventName = lookupName(UfoEventNames, ufoEvent);
    const char* dataMaster = FwDataMasterName(packet.u32(kFwPayload + 28));
    std::uint32_t ufoOffset = packet.u16(kFwPayload + 24);
    std::uint32_t ufoCount = packet.u16(kFwPayload + 26);
    std::uint32_t packetSize = packet.size();
    std::uint32_t maxRecords = UfoMaxRecords(packetSize, ufoEvent);

    if (UfoListTooLarge(packetSize, ufoCount, maxRecords)) {
        console().print("%s: packet # %u / %x too large. NumUFOs = %u, Max # UFOs = %u, Packet size = %u\n",
                        "PrintRawZyntelPacketUFO", packet.ordinal(), packet.ordinal(), ufoCount, maxRecords,
                        packetSize);
        if (file.verbose) {
            file.out.write("      \"RawPacket\":\n");
            writeHexDump(&file, packet);
            file.out.write("\n    }");
            file.out.flush();
        }
        ++file.oversizedPackets;
        return;
    }
    file.out.print("      \"syncop\": {\n        \"osid\": %u,\n        \"PID\": %u,\n        \"DM\": \"%s\",\n"
                   "        \"ExtJobRef\": %u,\n        \"IntJobRef\": %u,\n        \"Event\": \"%s\",\n"
                   "        \"Context\": %u,\n        \"UFOs\": [\n",
                   FwOsId(packet), packet.u32(kFwPayload + 8), dataMaster, packet.u32(kFwPayload + 12),
                   packet.u32(kFwPayload + 16), eventName, packet.u32(kFwPayload + 20));
    PrintUFOList(file.out, ufoEvent, packet.from(kFwPayload + ufoOffset), ufoCount);
    file.out.write("        ]\n      }\n    }");
}

// Firmware activity: the event word at 0 selects what follows.
void writeRawActivity(StreamFile& file, const Packet& packet)
{
    std::uint32_t event = packet.u32(kFwPayload);
    file.out.print("      \"fwactdata\": {\n        \"osid\": %u,\n        \"event\": \"%s\"", FwOsId(packet),
                   lookupName(FwActivityEventNames, event));
    if (event >= kFwActHwrDetected && event <= kFwActHwrFreelistReady) {
        writeHwrFields(file, packet, event);
    } else if (event == kFwActFilterSet) {
        file.out.print(",\n        \"EventMask\": \"0x%08x%08x\"\n", packet.u32(kFwPayload + 8),
                       packet.u32(kFwPayload + 4));
    } else if (event == kFwActFeatureFlags) {
        file.out.write(",\n");
        PrintCoreConfiguration(file, packet);
    } else if (event == kFwActRegsProgrammed) {
        file.out.write(",\n");
        if (packet.size() - kFwPayload >= 8) PrintCounterIdRegistration(file, packet, gInvalidBlockIdReported);
    }
    file.out.write("      }\n    }");
}
