#include "fw/fw_raw.h"

#include "fw/fw_names.h"
#include "fw/fw_payload.h"
#include "fw/fw_raw_objects.h"
#include "fw/timer_check.h"
#include "json/envelope.h"
#include "json/output.h"
#include "stream/packet.h"
#include "stream/reader.h"
#include "stream/stream_file.h"

namespace {

void writePayloadObject(StreamFile& file, const Packet& packet, std::uint32_t type, const char* typeName)
{
    if (type == kFwDvfsActivity) {
        writeRawDvfs(file, packet, typeName);
        return;
    }
    writeRawEnvelope(&file, packet, typeName);
    if (type >= kFwBgStart && type <= kFwDbgEnd) writeRawSection(file, packet);
    else if (FwIsHardwareType(type)) writeRawHardware(file, packet);
    else if (type == kFwClockChange) writeRawClockChange(file, packet);
    else if (type == kFwGpuStateChange) writeRawGpuState(file, packet);
    else if (type >= kFwPowerEstRequest && type <= kFwPowerEstResult) writeRawPowerEstimate(file, packet);
    else if (type == kFwPowerChange) writeRawPowerChange(file, packet);
    else if (type == kFwGpuWorkPeriod) writeRawGpuWorkPeriod(file, packet);
    else if (type == kFwCswStore || type == kFwCswStoreComplete) writeRawContextSwitch(file, packet);
    else if (type == kFwUfoInfo) writeRawUfo(file, packet);
    else if (type == kFwActivity) writeRawActivity(file, packet);
}

} // namespace

std::uint32_t fwConvertRaw(StreamFile& file, Packet& packet)
{
    std::uint32_t type = packet.eventType();
    const char* typeName = lookupName(FwEventTypeNames, type);

    // The delta is computed against the previous timer value, which the
    // timer check below overwrites with the delta printed: deltas chain.
    if (file.timeDelta) applyTimeDelta(file, packet);

    if (FwIsRejectedType(type)) {
        console().print("error: Zyntel packet type unknown (%d), packet skipped\n", static_cast<int>(type));
        writeHexDump(&file, packet);
        return 0;
    }

    writePayloadObject(file, packet, type, typeName);

    if (file.hexDump) {
        file.out.write(",\n");
        writeHexDump(&file, packet);
    }
    file.lastOrdinal = checkOrdinal(file, packet.ordinal());
    file.prevTimer = CheckTimerContinuity(file, packet.from(kFwPayload), type, packet.timer());
    return 1;
}
