#include "fw/block_names.h"

#include "json/output.h"

namespace {

// Counter-block ids 0 to 111; unused ids keep a row so that the id indexes
// the table directly.
static const char* const kBlockNames[] = {
    "TA_Blk", "RASTER_Blk", "HUB_Blk", "TORNADO_Blk", // 0x00
    "JONES_Blk", "BF_Blk", "BT_Blk", "RT_Blk", // 0x04
    "SH_Blk", "undef", "undef", "undef", // 0x08
    "undef", "undef", "undef", "undef", // 0x0c
    "TPU_MCU_0_Blk", "TPU_MCU_1_Blk", "TPU_MCU_2_Blk", "TPU_MCU_3_Blk", // 0x10
    "TPU_MCU_4_Blk", "TPU_MCU_5_Blk", "TPU_MCU_6_Blk", "TPU_MCU_7_Blk", // 0x14
    "undef", "undef", "undef", "undef", // 0x18
    "undef", "undef", "undef", "undef", // 0x1c
    "USC_0_Blk", "USC_1_Blk", "USC_2_Blk", "USC_3_Blk", // 0x20
    "USC_4_Blk", "USC_5_Blk", "USC_6_Blk", "USC_7_Blk", // 0x24
    "USC_8_Blk", "USC_9_Blk", "USC_10_Blk", "USC_11_Blk", // 0x28
    "USC_12_Blk", "USC_13_Blk", "USC_14_Blk", "USC_15_Blk", // 0x2c
    "TEXAS_0_Blk", "TEXAS_1_Blk", "TEXAS_2_Blk", "TEXAS_3_Blk", // 0x30
    "TEXAS_4_Blk", "TEXAS_5_Blk", "TEXAS_6_Blk", "TEXAS_7_Blk", // 0x34
    "undef", "undef", "undef", "undef", // 0x38
    "undef", "undef", "undef", "undef", // 0x3c
    "RASTER_0_Blk", "RASTER_1_Blk", "RASTER_2_Blk", "RASTER_3_Blk", // 0x40
    "undef", "undef", "undef", "undef", // 0x44
    "undef", "undef", "undef", "undef", // 0x48
    "undef", "undef", "undef", "undef", // 0x4c
    "BLACKPEARL_0_Blk", "BLACKPEARL_1_Blk", "BLACKPEARL_2_Blk", "BLACKPEARL_3_Blk", // 0x50
    "undef", "undef", "undef", "undef", // 0x54
    "undef", "undef", "undef", "undef", // 0x58
    "undef", "undef", "undef", "undef", // 0x5c
    "PBE_0_Blk", "PBE_1_Blk", "PBE_2_Blk", "PBE_3_Blk", // 0x60
    "PBE_4_Blk", "PBE_5_Blk", "PBE_6_Blk", "PBE_7_Blk", // 0x64
    "PBE_8_Blk", "PBE_9_Blk", "PBE_10_Blk", "PBE_11_Blk", // 0x68
    "PBE_12_Blk", "PBE_13_Blk", "PBE_14_Blk", "PBE_15_Blk", // 0x6c
};

// The second family (bit 15 of the id set): ids 0 to 47.
static const char* const kBlockNamesDA[] = {
    "undef", "undef", "undef", "undef", // 0x00
    "undef", "undef", "undef", "undef", // 0x04
    "undef", "undef", "undef", "undef", // 0x08
    "undef", "undef", "undef", "undef", // 0x0c
    "TPU_DA0_Blk", "TPU_DA1_Blk", "TPU_DA2_Blk", "TPU_DA3_Blk", // 0x10
    "TPU_DA4_Blk", "TPU_DA5_Blk", "TPU_DA6_Blk", "TPU_DA7_Blk", // 0x14
    "undef", "undef", "undef", "undef", // 0x18
    "undef", "undef", "undef", "undef", // 0x1c
    "USC_DA0_Blk", "USC_DA1_Blk", "USC_DA2_Blk", "USC_DA3_Blk", // 0x20
    "USC_DA4_Blk", "USC_DA5_Blk", "USC_DA6_Blk", "USC_DA7_Blk", // 0x24
    "USC_DA8_Blk", "USC_DA9_Blk", "USC_DA10_Blk", "USC_DA11_Blk", // 0x28
    "USC_DA12_Blk", "USC_DA13_Blk", "USC_DA14_Blk", "USC_DA15_Blk", // 0x2c
};

// Group ids that address every block of a kind, and the custom blocks.
struct GroupName {
    std::uint16_t value;
    const char* name;
    const char* nameDA; // the name when bit 15 is set, or null for the same name
};

const GroupName kGroupNames[] = {
    {0x4010, "TPU_MCU_ALL", "TPU_DA_ALL"},
    {0x4020, "USC_ALL", "USC_DA_ALL"},
    {0x4030, "TEXAS_ALL", nullptr},
    {0x4040, "RASTER_ALL", nullptr},
    {0x4050, "BLACKPEARL_ALL", nullptr},
    {0x4060, "PBE_ALL", nullptr},
    {0x4070, "BX_TU_ALL", nullptr},
    {0x70F0, "Custom_0", nullptr},
    {0x70F1, "Custom_1", nullptr},
    {0x70F2, "Custom_2", nullptr},
    {0x70F3, "Custom_3", nullptr},
    {0x70F4, "Custom_4_FW", nullptr},
};

} // namespace

const char* BlockIdName(std::uint16_t id16)
{
    bool secondFamily = (id16 & 0x8000) != 0;
    std::uint32_t value = id16 & 0x70FF;
    if (value < 112) {
        if (!secondFamily) return kBlockNames[value];
        return value < 48 ? kBlockNamesDA[value] : "OUT_OF_BOUNDS";
    }
    for (const GroupName& group : kGroupNames)
        if (group.value == value) return secondFamily && group.nameDA ? group.nameDA : group.name;
    console().print("Warning: Zyntel packet unknown block id (%d)!\n", static_cast<int>(value));
    return "OUT_OF_BOUNDS";
}
