#include "fw/block_names.h"
#include "fw/fw_names.h"
#include "fw/ufo_list.h"
#include "host/host_converters.h"
#include "host/host_names.h"
#include "host/host_records.h"
#include "json/envelope.h"
#include "json/output.h"
#include "stream/packet.h"
#include "stream/reader.h"
#include "stream/stream_file.h"

namespace {

void writeEnqueue(Output& out, const Packet& p)
{
    out.print("      \"enqueue\": {\n");
    printEnqueueLines(out, p, HostMode::Raw);
    out.print("      }\n    }\n"); // this element alone ends with a line feed
}

void writeUfo(Output& out, const Packet& p)
{
    // +28: the records' offset from byte 24 (low 16 bits) and their count.
    std::uint32_t event = p.u32(24);
    std::uint32_t placement = p.u32(28);
    out.print("      \"syncop\": {\n        \"Event\": \"%s\",\n        \"UFOs\": [\n", lookupName(UfoEventNames, event));
    PrintUFOList(out, event, p.from(24 + (placement & 0xFFFF)), placement >> 16);
    out.print("        ]\n      }\n    }");
}

void writeAlloc(Output& out, const Packet& p)
{
    out.print("      \"hostalloc\": {\n        \"Type:\": \"%s\",\n", lookupName(HostResourceTypeNames, p.u32(24)));
    printAllocRecord(out, p, HostMode::Raw);
    out.print("      }\n    }");
}

void writeClockSync(Output& out, const Packet& p)
{
    out.print("      \"clksync\": {\n");
    printClockSyncLines(out, p);
    out.print("      }\n    }");
}

void writeFree(Output& out, const Packet& p)
{
    out.print("      \"hostfree\": {\n        \"Type:\": \"%s\",\n", lookupName(HostResourceTypeNames, p.u32(24)));
    printFreeRecord(out, p, HostMode::Raw);
    out.print("      }\n    }");
}

void writeModify(Output& out, const Packet& p)
{
    out.print("      \"hostmodify\": {\n        \"Type:\": \"%s\",\n", lookupName(HostResourceTypeNames, p.u32(24)));
    printModifyRecord(out, p);
    out.print("      }\n    }");
}

void writeDeviceInfo(Output& out, const Packet& p)
{
    std::uint32_t event = p.u32(28);
    out.print("      \"deviceinfo\": {\n        \"Type\": \"%s\",\n", lookupName(HostDeviceInfoEventNames, event));
    if (event == 0) {
        HealthNames health = lookUpHealth(p);
        out.print("        \"devicestatus\": {\n          \"Health Status\": \"%s\",\n          \"Health Reason\": \"%s\"\n"
                  "        }\n",
                  health.status, health.reason);
    }
    else if (event == 1)
        printDeviceFeatures(out, p);
    else
        errorConsole().print("error: Invalid event type in DEVICE_INFO event\n");
    out.print("      }\n    }");
}

void writeHostInfo(Output& out, const Packet& p)
{
    std::uint32_t event = p.u32(28);
    // The key line is indented like the lines inside it.
    out.print("        \"hostinfo\": {\n        \"Type\": \"%s\",\n", lookupName(HostInfoEventNames, event));
    printMemoryUsage(out, p, event);
    out.print("      }\n    }");
}

void writeFenceWait(Output& out, const Packet& p)
{
    std::uint32_t waitType = p.u32(32);
    if (waitType == 0)
        out.print("      \"begin\": {\n        \"PID\": %u,\n        \"FenceID\": %d,\n        \"TimeoutInMs\": %u\n      }\n    }",
                  p.u32(24), p.i32(28), p.u32(36));
    else if (waitType == 1)
        out.print("      \"end\": {\n        \"PID\": %u,\n        \"FenceID\": %d,\n        \"Result\": \"%s\"\n      }\n    }",
                  p.u32(24), p.i32(28), lookupName(HostFenceWaitResultNames, p.u32(36)));
    else // the element stays open
        console().print("Warning: Unknown sync fence-wait type (%d) encountered in Zyntel host stream!\n",
                        static_cast<int>(waitType));
}

void writeTimelineAdvance(Output& out, const Packet& p)
{
    out.print("      \"sw_tl_advance\": {\n        \"PID\": %u,\n        \"TimelineID\": %d,\n        \"SyncPtIdx\": %lu\n"
              "      }\n    }",
              p.u32(24), p.i32(28), static_cast<unsigned long>(p.u64(32)));
}

void writeClientInfo(Output& out, const Packet& p)
{
    std::uint32_t event = p.u32(28);
    out.print("        \"host_client_info\": {\n        \"Type\": \"%s\",\n", lookupName(HostClientInfoEventNames, event));
    printClientInfo(out, p, event);
    out.print("      }\n    }");
}

using PayloadWriter = void (*)(Output&, const Packet&);

// Indexed by host event type.
const PayloadWriter kPayloadWriters[] = {
    nullptr,     writeEnqueue,   writeUfo,        writeAlloc,     writeClockSync,       writeFree,
    writeModify, writeDeviceInfo, writeHostInfo, writeFenceWait, writeTimelineAdvance, writeClientInfo,
};

} // namespace

std::uint32_t hostConvertRaw(StreamFile& file, Packet& packet)
{
    std::uint32_t type = packet.eventType();
    const char* name = lookupName(HostEventNames, type);
    if (file.timeDelta) applyTimeDelta(file, packet);
    if (type == 0 || type > kHostLastEventType) {
        console().print("error: ZyntelHost packet type unknown (%d), packet skipped\n", static_cast<int>(type));
        writeHexDump(&file, packet);
        return 0;
    }
    writeRawEnvelope(&file, packet, name);
    kPayloadWriters[type](file.out, packet);
    if (file.hexDump) {
        file.out.write(",\n");
        writeHexDump(&file, packet);
    }
    file.lastOrdinal = checkOrdinal(file, packet.ordinal());
    return 1;
}
