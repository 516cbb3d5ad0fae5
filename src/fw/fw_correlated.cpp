#include "fw/fw_correlated.h"

#include "fw/fw_correlated_families.h"
#include "fw/fw_names.h"
#include "fw/fw_open_events.h"
#include "fw/timer_check.h"
#include "json/output.h"
#include "stream/reader.h"
#include "stream/stream_file.h"

FwOpenEvents& fwOpenEvents()
{
    static FwOpenEvents events;
    return events;
}

void fwBeginFile()
{
    FwOpenEvents& events = fwOpenEvents();
    for (StoredPacket& slot : events.hardware) slot.clear();
    for (auto& kind : events.sections)
        for (StoredPacket& slot : kind) slot.clear();
    for (StoredPacket& slot : events.contextSwitches) slot.clear();
    for (StoredPacket& slot : events.frequencyScaling) slot.clear();
}

std::uint32_t fwConvertCorrelated(StreamFile& file, Packet& packet)
{
    // Every time written in correlated mode is the firmware timer x256; the
    // timer check still sees the timer as read.
    const std::uint64_t timerAsRead = packet.timer();
    packet.setTimer(timerAsRead << 8);

    const std::uint32_t type = packet.eventType();
    if ((type == kFwHwTaKick || type == kFwHwTaFinished) && fwHardwareGpuId(packet) >= kFwGpuCount) {
        console().putLine("warning: GEOM GPU Id too high, packet skipped");
        return 0;
    }
    if (FwIsRejectedType(type)) {
        console().print("error: %s packet type unknown (%d), packet skipped\n", "Firmware", static_cast<int>(type));
        return 0;
    }

    if (type <= kFwDbgEnd)
        correlateSection(file, packet);
    else if (FwIsHardwareType(type))
        correlateHardware(file, packet);
    else if (type == kFwClockChange)
        writeClockChange(file, packet);
    else if (type == kFwGpuStateChange)
        writeGpuStateChange(file, packet);
    else if (type >= kFwPowerEstRequest && type <= kFwPowerEstResult)
        writePowerEstimate(file, packet);
    else if (type == kFwPowerChange)
        writePowerChange(file, packet);
    else if (type == kFwGpuWorkPeriod)
        writeGpuWorkPeriod(file, packet);
    else if (type == kFwCswStore || type == kFwCswStoreComplete)
        correlateContextSwitch(file, packet);
    else if (type == kFwDvfsActivity)
        correlateFrequencyScaling(file, packet);
    else if (type == kFwUfoInfo)
        writeUfoPeriod(file, packet);
    else if (type == kFwActivity)
        writeActivityPeriod(file, packet);

    file.lastOrdinal = checkOrdinal(file, packet.ordinal());
    file.prevTimer = CheckTimerContinuity(file, packet.from(kFwPayload), type, timerAsRead);
    return 1;
}
