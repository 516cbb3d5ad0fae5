#include "host/host_names.h"

namespace {

const char* const kEventNames[] = {
    "00_invalid",      "01_ENQ_Work",  "02_UFO_Info",       "03_HOST_Alloc",       "04_CLK_SYNC",
    "05_HOST_Free",    "06_HOST_Modify", "07_HOST_DevInfo", "08_HOST_Info",        "09_HOST_FenceWait",
    "0A_HOST_SWTLAdvance", "0B_HOST_ClientInfo", "LAST",
};

// Two numbering schemes share this table, so "LAST" and "<UNKNOWN>" rows
// lie inside its bound and are printed as they stand.
const char* const kKickTypeNames[] = {
    "TA3D",      "TQ2D",      "TQ3D",      "CDM",       "RS",        "VRDM", "TQTDM", "SYNC", "TA",
    "3D",        "LAST",      "<UNKNOWN>", "<UNKNOWN>", "<UNKNOWN>", "<UNKNOWN>", "<UNKNOWN>", "<UNKNOWN>",
    "TQ2D",      "TQ3D",      "TQTDM",     "CDM",       "GEOM",      "3D",   "SYNC",  "RS",
};

const char* const kResourceTypeNames[] = {
    "00_Invalid", "01_Sync", "02_Timeline", "03_FenceKLM", "04_SyncCP", "05_FenceSW", "LAST",
};

const char* const kDeviceInfoEventNames[] = {
    "00_DEVICE_INFO_EVENT_Health", "01_DEVICE_INFO_EVENT_Features", "LAST",
};

const char* const kHealthStatusNames[] = {
    "00_STATUS_Invalid", "01_STATUS_Ok", "02_STATUS_Responding", "03_STATUS_Dead", "04_STATUS_Fault", "LAST",
};

const char* const kHealthReasonNames[] = {
    "00_REASON_Invalid",    "01_REASON_None",         "02_REASON_Asserted",      "03_REASON_PollFailing",
    "04_REASON_Timeouts",   "05_REASON_QueueCorrupt", "06_REASON_QueueStalled", "07_REASON_Idling",
    "08_REASON_Restarting", "LAST",
};

const char* const kInfoEventNames[] = {
    "00_MEM_INFO_EVENT_MemUsage_Deprecated", "01_MEM_INFO_EVENT_MemUsage", "LAST",
};

const char* const kClientInfoEventNames[] = {
    "00_CLIENT_INFO_EVENT_Invalid", "01_CLIENT_INFO_EVENT_ProcessName", "LAST",
};

const char* const kFenceWaitResultNames[] = {"00_Invalid", "01_Timeout", "02_Passed", "03_Errored", "LAST"};

} // namespace

const NameTable HostEventNames = makeNameTable(kEventNames, kHostLastEventType, "host event type");
const NameTable HostKickTypeNames = makeNameTable(kKickTypeNames, 24, "host kick type");
const NameTable HostResourceTypeNames = makeNameTable(kResourceTypeNames, 5, "host free resource type");
const NameTable HostDeviceInfoEventNames = makeNameTable(kDeviceInfoEventNames, 1, "host device info event");
const NameTable HostHealthStatusNames = makeNameTable(kHealthStatusNames, 4, "host device health status");
// Reason 9 is the "LAST" row, which this table admits; 10 is out of range.
const NameTable HostHealthReasonNames = makeNameTable(kHealthReasonNames, 9, "host device health reason");
const NameTable HostInfoEventNames = makeNameTable(kInfoEventNames, 1, "host info event");
const NameTable HostClientInfoEventNames = makeNameTable(kClientInfoEventNames, 1, "host client info event");
const NameTable HostFenceWaitResultNames = makeNameTable(kFenceWaitResultNames, 3, "fence sync wait result type");
