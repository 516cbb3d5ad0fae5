#include "fw/fw_names.h"
#include "fw/ufo_list.h"
#include "host/host_converters.h"
#include "host/host_names.h"
#include "host/host_records.h"
#include "json/document.h"
#include "json/output.h"
#include "stream/packet.h"
#include "stream/reader.h"
#include "stream/stream_file.h"

// Correlated mode differs from raw mode on purpose: "Type" instead of
// "Type:", plain firmware addresses, unsigned enqueue ids, and no nested
// "devicestatus" object.

namespace {

void writeHead(Output& out, const Packet& p, const char* name)
{
    unsigned long long timer = p.timer();
    out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"%s\",\n      \"prop\": {\n", timer,
              timer, name);
}

void writeEnqueue(Output& out, const Packet& p)
{
    writeHead(out, p, "ENQ");
    printEnqueueLines(out, p, HostMode::Correlated);
}

void writeUfo(Output& out, const Packet& p)
{
    std::uint32_t event = p.u32(24);
    std::uint32_t placement = p.u32(28);
    writeHead(out, p, "UFO");
    out.print("        \"Event\": \"%s\",\n        \"UFOs\": [\n", lookupName(UfoEventNames, event));
    PrintUFOList(out, event, p.from(24 + (placement & 0xFFFF)), placement >> 16);
    out.print("        ]\n");
}

void writeAlloc(Output& out, const Packet& p)
{
    writeHead(out, p, "HOST_ALLOC");
    out.print("        \"Type\": \"%s\",\n", lookupName(HostResourceTypeNames, p.u32(24)));
    printAllocRecord(out, p, HostMode::Correlated);
}

void writeClockSync(Output& out, const Packet& p)
{
    writeHead(out, p, "CLK_SYNC");
    printClockSyncLines(out, p);
}

void writeFree(Output& out, const Packet& p)
{
    writeHead(out, p, "HOST_FREE");
    out.print("        \"Type\": \"%s\",\n", lookupName(HostResourceTypeNames, p.u32(24)));
    printFreeRecord(out, p, HostMode::Correlated);
}

void writeModify(Output& out, const Packet& p)
{
    writeHead(out, p, "HOST_MODIFY");
    out.print("        \"Type\": \"%s\",\n", lookupName(HostResourceTypeNames, p.u32(24)));
    printModifyRecord(out, p);
}

void writeDeviceInfo(Output& out, const Packet& p)
{
    std::uint32_t event = p.u32(28);
    writeHead(out, p, "DEVICE_INFO");
    out.print("        \"Type\": \"%s\",\n", lookupName(HostDeviceInfoEventNames, event));
    if (event == 0) {
        HealthNames health = lookUpHealth(p);
        out.print("        \"Health Status\": \"%s\",\n        \"Health Reason\": \"%s\"\n", health.status, health.reason);
    }
    else if (event == 1)
        printDeviceFeatures(out, p);
    else
        errorConsole().print("error: Invalid event type in DEVICE_INFO event\n");
}

void writeHostInfo(Output& out, const Packet& p)
{
    std::uint32_t event = p.u32(28);
    writeHead(out, p, "HOST_INFO");
    out.print("        \"Type\": \"%s\",\n", lookupName(HostInfoEventNames, event));
    printMemoryUsage(out, p, event);
}

// The head belongs to the two known wait types only: a wait of another type
// leaves just the warning and the element's closing.
void writeFenceWait(Output& out, const Packet& p)
{
    std::uint32_t waitType = p.u32(32);
    if (waitType == 0) {
        writeHead(out, p, "HOST_SYNC_WAIT");
        out.print("        \"Type\": \"begin\",\n        \"PID\": %u,\n        \"FenceID\": %d,\n        \"TimeoutInMs\": %u\n",
                  p.u32(24), p.i32(28), p.u32(36));
    } else if (waitType == 1) {
        writeHead(out, p, "HOST_SYNC_WAIT");
        out.print("        \"Type\": \"end\",\n        \"PID\": %u,\n        \"FenceID\": %d,\n        \"Result\": \"%s\"\n",
                  p.u32(24), p.i32(28), lookupName(HostFenceWaitResultNames, p.u32(36)));
    } else {
        console().print("Warning: Unknown sync fence-wait type (%d) encountered in Zyntel host stream!\n",
                        static_cast<int>(waitType));
    }
}

void writeClientInfo(Output& out, const Packet& p)
{
    std::uint32_t event = p.u32(28);
    writeHead(out, p, "HOST_CLIENT_INFO");
    out.print("        \"Type\": \"%s\",\n", lookupName(HostClientInfoEventNames, event));
    printClientInfo(out, p, event);
}

using PeriodWriter = void (*)(Output&, const Packet&);

// Indexed by host event type; the software timeline advance is written
// whole by the converter.
const PeriodWriter kPeriodWriters[] = {
    nullptr,     writeEnqueue,    writeUfo,      writeAlloc,     writeClockSync, writeFree,
    writeModify, writeDeviceInfo, writeHostInfo, writeFenceWait, nullptr,        writeClientInfo,
};

} // namespace

std::uint32_t hostConvertCorrelated(StreamFile& file, Packet& packet)
{
    std::uint32_t type = packet.eventType();
    if (type == 0 || type > kHostLastEventType) {
        console().print("error: %s packet type unknown (%d), packet skipped\n", file.streamName, static_cast<int>(type));
        return 0;
    }
    beginTimePeriod(file);
    Output& out = file.out;
    if (type == kHostSwTimelineAdvance) {
        unsigned long long timer = packet.timer();
        out.print("    {\n      \"start\": %llu,\n      \"end\": %llu,\n      \"name\": \"SW_TL_ADVANCE\",\n      \"prop\": {\n"
                  "        \"PID\": %u,\n        \"TimelineID\": %d,\n        \"SyncPtIdx\": %lu\n      }\n    }",
                  timer, timer, packet.u32(24), packet.i32(28), static_cast<unsigned long>(packet.u64(32)));
    } else {
        kPeriodWriters[type](out, packet);
        out.print("      }\n    }");
    }
    file.lastOrdinal = checkOrdinal(file, packet.ordinal());
    return 1;
}
