#include "fw/fw_names.h"

// Type names carry their hexadecimal code as prefix; gaps keep their rows.
static const char* const kFwEventTypeNames[] = {
    "00_invalid", "01_FW_BG_Start", "02_FW_BG_End", "03_FW_IRQ_Start", "04_FW_IRQ_End", "05_FW_DBG_Start",
    "06_FW_DBG_End", "07_HW_PM_OOM_TA_Pause", "08_HW_TA_Kick", "09_HW_TA_Finished", "0A_HW_3D_TQ_Kick",
    "0B_HW_3D_Kick", "0C_HW_3D_Finished", "0D_HW_CDM_Kick", "0E_HW_CDM_Finished", "0F_HW_TLA_Kick",
    "10_HW_TLA_Finished", "11_HW_3D_SPM_Kick", "12_HW_Periodic", "13_HW_RTU_Kick", "14_HW_RTU_Finished",
    "15_HW_SHG_Kick", "16_HW_SHG_Finished", "17_HW_3D_TQ_Finished", "18_HW_3D_SPM_Finished",
    "19_HW_PM_OOM_TA_Resume", "1A_CLKS_CHG", "1B_GPU_STATE_CHG", "undef_1C", "undef_1D", "undef_1E", "undef_1F",
    "20_PWR_EST_REQUEST", "21_PWR_EST_READY", "22_PWR_EST_RESULT", "23_PWR_CHG", "undef_24", "undef_25",
    "undef_26", "undef_27", "28_HW_TDM_Kick", "29_HW_TDM_Finished", "2A_HW_Null_Kick", "2B_GPU_WORK_PERIOD",
    "undef_2C", "undef_2D", "undef_2E", "undef_2F", "30_CSW_Store", "31_CSW_Store_Complete", "32_DVFS_Activity",
    "undef_33", "undef_34", "undef_35", "undef_36", "undef_37", "38_UFO_info", "39_FW_Activity", "LAST",
};
// The "LAST" row is a valid display name here: rejected types are still named.
const NameTable FwEventTypeNames = makeNameTable(kFwEventTypeNames, "firmware event type");

// Row 7 of the raw table really is "01_TDM".
static const char* const kFwDataMasterNames[] = {
    "00_GP", "01_2D", "02_TA", "03_3D", "04_CDM", "05_RTU", "06_SHG", "01_TDM", "LAST",
};
const NameTable FwDataMasterNames = makeNameTable(kFwDataMasterNames, 7, "Data Master");

static const char* const kFwDataMasterShortNames[] = {
    "GP", "2D", "TA", "3D", "CDM", "RTU", "SHG", "TDM", "LAST",
};
const NameTable FwDataMasterShortNames = makeNameTable(kFwDataMasterShortNames, 7, "Data Master");

static const char* const kFwClockSourceNames[] = {"00_Invalid", "01_Core", "LAST"};
const NameTable FwClockSourceNames = makeNameTable(kFwClockSourceNames, 1, "clock source");

static const char* const kFwGpuStateNames[] = {"00_Idle", "01_Active", "02_Blocked", "LAST"};
const NameTable FwGpuStateNames = makeNameTable(kFwGpuStateNames, 2, "GPU state");

static const char* const kFwPowerChangeNames[] = {
    "00_Undefined", "01_PowerOn", "02_PowerOff", "03_PowerUp", "04_PowerDown", "05_PhrPartial",
    "06_PhrFull", "07_RDUp", "08_RDDown", "09_SPUUp", "10_SPUDown", "11_ClusterUp",
    "12_ClusterDown", "13_RACUp", "14_RACDown", "LAST",
};
const NameTable FwPowerChangeNames = makeNameTable(kFwPowerChangeNames, 14, "power change");

static const char* const kFwActivityEventNames[] = {
    "00_Invalid", "01_Regs_Programmed", "02_HWR_Detected", "03_HWR_Reset_Required", "04_HWR_Recovered",
    "05_HWR_Freelist_Ready", "06_KOR_Zyntel_Feature_Flags", "07_Zyntel_Filter_Set", "08_Kick_Cancel", "LAST",
};
const NameTable FwActivityEventNames = makeNameTable(kFwActivityEventNames, 8, "event type");

static const char* const kFwHwrReasonNames[] = {
    "00_Invalid", "01_Lockup", "02_PageFault", "03_PollFail", "04_DeadlineOverrun", "05_CswDeadlineOverrun", "LAST",
};
const NameTable FwHwrReasonNames = makeNameTable(kFwHwrReasonNames, 5, "HWR reason");

static const char* const kUfoEventNames[] = {
    "00_Update", "01_CheckSuccess", "02_PRCheckSuccess", "03_CheckFail", "04_PRCheckFail", "05_ForceUpdate", "LAST",
};
const NameTable UfoEventNames = makeNameTable(kUfoEventNames, 5, "UFO event type");

const char* FwDataMasterName(std::uint32_t dataMaster)
{
    return dataMaster == kFwNoDataMaster ? "1FFFFFFF_Invalid" : lookupName(FwDataMasterNames, dataMaster);
}

const char* FwDataMasterShortName(std::uint32_t dataMaster)
{
    return dataMaster == kFwNoDataMaster ? "Invalid" : lookupName(FwDataMasterShortNames, dataMaster);
}

bool FwIsRejectedType(std::uint32_t eventType)
{
    return eventType == 0 || (eventType >= 0x1C && eventType <= 0x1F) || (eventType >= 0x24 && eventType <= 0x27) ||
           (eventType >= 0x2C && eventType <= 0x2F) || (eventType >= 0x33 && eventType <= 0x37) ||
           eventType >= kFwLast;
}

bool FwIsHardwareType(std::uint32_t eventType)
{
    return (eventType >= kFwHwPmOomTaPause && eventType <= kFwHwPmOomTaResume) ||
           (eventType >= kFwHwTdmKick && eventType <= kFwHwNullKick);
}
