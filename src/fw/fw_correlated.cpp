#include "fw/fw_correlated.h"

#include "fw/fw_correlated_families.h"
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

namespace {

// Codes that name no firmware event: 0, the undef_NN gaps and LAST onwards.
bool isUndefinedType(std::uint32_t type)
{
    return type == 0 || (type >= 0x1C && type <= 0x1F) || (type >= 0x24 && type <= 0x27) ||
           (type >= 0x2C && type <= 0x2F) || (type >= 0x33 && type <= 0x37) || type > 0x39;
}

bool isHardwareType(std::uint32_t type)
{
    return (type >= 0x07 && type <= 0x19) || (type >= 0x28 && type <= 0x2A);
}

} // namespace

std::uint32_t fwConvertCorrelated(StreamFile& file, Packet& packet)
{
    // Every time written in correlated mode is the firmware timer x256; the
    // timer check still sees the timer as read.
    const std::uint64_t timerAsRead = packet.timer();
    packet.setTimer(timerAsRead << 8);

    const std::uint32_t type = packet.eventType();
    if ((type == 0x08 || type == 0x09) && fwHardwareGpuId(packet) >= kFwGpuCount) {
        console().putLine("warning: GEOM GPU Id too high, packet skipped");
        return 0;
    }
    if (isUndefinedType(type)) {
        console().print("error: %s packet type unknown (%d), packet skipped\n", "Firmware", static_cast<int>(type));
        return 0;
    }

    if (type <= 0x06)
        correlateSection(file, packet);
    else if (isHardwareType(type))
        correlateHardware(file, packet);
    else if (type == 0x1A)
        writeClockChange(file, packet);
    else if (type == 0x1B)
        writeGpuStateChange(file, packet);
    else if (type >= 0x20 && type <= 0x22)
        writePowerEstimate(file, packet);
    else if (type == 0x23)
        writePowerChange(file, packet);
    else if (type == 0x2B)
        writeGpuWorkPeriod(file, packet);
    else if (type == 0x30 || type == 0x31)
        correlateContextSwitch(file, packet);
    else if (type == 0x32)
        correlateFrequencyScaling(file, packet);
    else if (type == 0x38)
        writeUfoPeriod(file, packet);
    else if (type == 0x39)
        writeActivityPeriod(file, packet);

    file.lastOrdinal = checkOrdinal(file, packet.ordinal());
    file.prevTimer = CheckTimerContinuity(file, packet.from(kFwPayloadOffset), type, timerAsRead);
    return 1;
}
