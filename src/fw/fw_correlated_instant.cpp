// Firmware events that stand alone in correlated mode: clock, GPU state and
// power changes, power estimates, GPU work periods, synchronisation objects.
// Each is one object whose start equals its end (except work periods, which
// carry their own start).
#include <cstdint>

#include "fw/fw_correlated_families.h"
#include "fw/fw_names.h"
#include "fw/ufo_list.h"
#include "json/document.h"
#include "json/envelope.h"
#include "json/names.h"
#include "json/output.h"
#include "stream/stream_file.h"

namespace {

constexpr std::uint32_t kPowerEstimateVersion = 0x5A504531;

unsigned long long timeOf(const Packet& packet) { return packet.timer(); }

} // namespace

void writeClockChange(StreamFile& file, Packet& packet)
{
    const Packet payload = packet.from(kFwPayload);
    beginTimePeriod(file);
    file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"CLKCHG\",\n"
                   "      \"prop\": {\n        \"osid\": %u,\n        \"name\": \"%s\",\n",
                   timeOf(packet), timeOf(packet), FwOsId(packet), lookupName(FwClockSourceNames, payload.u32(8)));
    const auto speed = static_cast<unsigned long long>(payload.u64(0));
    const std::uint32_t size = packet.size();
    if (size == 64)
        file.out.print("        \"speed\": %llu,\n        \"ostimestamp\": %llu,\n        \"osmonotimestamp\": %llu,\n"
                       "        \"crtimestamp\": %llu\n",
                       speed, static_cast<unsigned long long>(payload.u64(32)),
                       static_cast<unsigned long long>(payload.u64(16)),
                       static_cast<unsigned long long>(payload.u64(24)));
    else if (size == 56)
        file.out.print("        \"speed\": %llu,\n        \"ostimestamp\": %llu,\n        \"crtimestamp\": %llu\n",
                       speed, static_cast<unsigned long long>(payload.u64(16)),
                       static_cast<unsigned long long>(payload.u64(24)));
    else
        file.out.print("        \"speed\": %llu\n", speed);
    file.out.print("      }\n    }");
}

void writeGpuStateChange(StreamFile& file, Packet& packet)
{
    beginTimePeriod(file);
    file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"GPUSTATECHG\",\n"
                   "      \"prop\": {\n        \"osid\": %u,\n        \"state\": \"%s\"\n      }\n    }",
                   timeOf(packet), timeOf(packet), FwOsId(packet),
                   lookupName(FwGpuStateNames, packet.u32(kFwPayload)));
}

void writePowerChange(StreamFile& file, Packet& packet)
{
    const Packet payload = packet.from(kFwPayload);
    const std::uint32_t change = payload.u32(0);
    beginTimePeriod(file);
    file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"PWRCHG\",\n"
                   "      \"prop\": {\n        \"osid\": %u,\n        \"change\": \"%s\",\n",
                   timeOf(packet), timeOf(packet), FwOsId(packet), lookupName(FwPowerChangeNames, change));
    const std::uint32_t size = packet.size();
    if (change == kFwPowerOn && size == 64)
        file.out.print("        \"domains\": \"0x%x\",\n        \"ostimestamp\": %llu,\n"
                       "        \"osmonotimestamp\": %llu,\n        \"crtimestamp\": %llu,\n"
                       "        \"gpuclockspeed\": %u\n",
                       payload.u32(4), static_cast<unsigned long long>(payload.u64(32)),
                       static_cast<unsigned long long>(payload.u64(8)),
                       static_cast<unsigned long long>(payload.u64(16)), payload.u32(24));
    else if (change == kFwPowerOn && size == 56)
        file.out.print("        \"domains\": \"0x%x\",\n        \"ostimestamp\": %llu,\n        \"crtimestamp\": %llu,\n"
                       "        \"gpuclockspeed\": %u\n",
                       payload.u32(4), static_cast<unsigned long long>(payload.u64(8)),
                       static_cast<unsigned long long>(payload.u64(16)), payload.u32(24));
    else
        file.out.print("        \"domains\": \"0x%x\"\n", payload.u32(4));
    file.out.print("\n      }\n    }");
}

void writePowerEstimate(StreamFile& file, Packet& packet)
{
    static const char* const kEstimateNames[] = {"PWREST_REQUEST", "PWREST_READY", "PWREST_RESULT"};
    const Packet payload = packet.from(kFwPayload);
    beginTimePeriod(file);
    if (payload.u32(0) != kPowerEstimateVersion) {
        errorConsole().print("error: Power estimate packet data not recognised\n");
        return;
    }
    const std::uint32_t tuples = payload.u32(4) / 8;
    file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"%s\",\n",
                   timeOf(packet), timeOf(packet), kEstimateNames[packet.eventType() - kFwPowerEstRequest]);
    file.out.print("      \"pwrestdata\": {\n        \"tuples\": \"%u\",\n        \"counters\": [\n", tuples);
    const std::uint32_t present = payload.fitCount(8, tuples, 8);
    for (std::uint32_t i = 0; i < present; ++i) {
        const std::uint32_t descriptor = payload.u32(8 + i * 8);
        file.out.print("          {\n           \"id\": %u,\n           \"highword\": %u,\n           \"gpuid\": %u,\n"
                       "           \"hwunit\": %u,\n           \"value\": %u\n          %s\n",
                       descriptor & 0xFFFF, descriptor >> 31, (descriptor >> 28) & 0x7, (descriptor >> 24) & 0xF,
                       payload.u32(8 + i * 8 + 4), i + 1 < present ? "}," : "}");
    }
    file.out.print("        ]\n      }\n");
    file.out.print("    }\n");
}

void writeGpuWorkPeriod(StreamFile& file, Packet& packet)
{
    const Packet payload = packet.from(kFwPayload);
    const auto start = static_cast<unsigned long>(payload.u64(0) << 8);
    const auto end = static_cast<unsigned long>(packet.timer());
    if (start > end)
        console().print("warning: GPU work period zyntel packet (%u) has invalid timestamps (start: %lu, end: %lu)\n",
                        packet.ordinal(), start, end);
    // A work period writes its separator but does not ask for one after it.
    if (file.needSeparator) file.out.write(",\n");
    file.out.print("    {\n      \"start\": %lu,\n      \"end\": %lu,\n      \"name\": \"GPUWORKPERIOD\",\n"
                   "      \"prop\": {\n        \"osid\": %u,\n        \"UID\": %u,\n        \"Cycles\": %lu\n"
                   "      }\n    }",
                   start, end, FwOsId(packet), payload.u32(8), end - start);
}

void writeUfoPeriod(StreamFile& file, Packet& packet)
{
    const Packet payload = packet.from(kFwPayload);
    const std::uint32_t ufoEvent = payload.u32(0);
    const char* eventName = lookupName(UfoEventNames, ufoEvent);
    const char* dataMasterName = FwDataMasterShortName(payload.u32(28));
    const std::uint32_t ufoCount = payload.u16(26);
    const std::uint32_t maximum = UfoMaxRecords(packet.size(), ufoEvent);

    beginTimePeriod(file);
    if (UfoListTooLarge(packet.size(), ufoCount, maximum)) {
        console().print("%s: packet # %u / %x too large. NumUFOs = %u, Max #UFOs = %u, Packet size = %u\n",
                        "PrintUFOPacket", packet.ordinal(), packet.ordinal(), ufoCount, maximum, packet.size());
        if (file.verbose) {
            file.out.print("    {\n        \"Raw-Packet\":");
            writeHexDump(&file, packet);
            file.out.print("\n    }");
            file.out.flush();
        }
        ++file.oversizedPackets;
        return;
    }
    file.out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"UFO\",\n"
                   "      \"prop\": {\n        \"osid\": %u,\n        \"PID\": %u,\n        \"DM\": \"%s\",\n"
                   "        \"ExtJobRef\": %u,\n        \"IntJobRef\": %u,\n        \"Event\": \"%s\",\n"
                   "        \"Context\": %u,\n        \"UFOs\": [\n",
                   timeOf(packet), timeOf(packet), FwOsId(packet), payload.u32(8), dataMasterName, payload.u32(12),
                   payload.u32(16), eventName, payload.u32(20));
    PrintUFOList(file.out, ufoEvent, payload.from(payload.u16(24)), ufoCount);
    file.out.print("        ]\n      }\n    }");
}
