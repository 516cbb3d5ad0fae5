// Host payload lines that raw and correlated mode write alike. Offsets count
// from the packet's first byte.
#pragma once

class Output;
class Packet;

// The two modes write most host payloads alike; where they differ, the
// difference is kept here, next to the lines it changes.
enum class HostMode { Raw, Correlated };

// Enqueue lines from "PID" to "KickType" (the caller closes the object).
void printEnqueueLines(Output& out, const Packet& packet, HostMode mode);

// Clock-sync lines ("speed" to the OS timestamps).
void printClockSyncLines(Output& out, const Packet& packet);

// The resource lines of alloc, free and modify events after their "Type"
// line; invalid resource types report on standard error.
void printAllocRecord(Output& out, const Packet& packet, HostMode mode);
void printFreeRecord(Output& out, const Packet& packet, HostMode mode);
void printModifyRecord(Output& out, const Packet& packet);

// Device health (device info event 0): status at +32 and reason at +36,
// looked up in that order so that their warnings come in field order.
struct HealthNames {
    const char* status;
    const char* reason;
};
HealthNames lookUpHealth(const Packet& packet);

// Device features (device info event 1): BVNC, feature list, the core count
// when type-word bit 20 is set, and the counter block records.
void printDeviceFeatures(Output& out, const Packet& packet);

// Memory usage records of host info events 0 and 1; other events report on
// standard error.
void printMemoryUsage(Output& out, const Packet& packet, unsigned infoEvent);

// Process names of client info event 1; other events report on standard error.
void printClientInfo(Output& out, const Packet& packet, unsigned clientInfoEvent);
