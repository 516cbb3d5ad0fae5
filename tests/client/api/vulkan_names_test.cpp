#include <gtest/gtest.h>

#include "client/api/pixel_formats.h"
#include "client/api/vulkan_flags.h"
#include "client/api/vulkan_names.h"
#include "printer_fixture.h"

using namespace client;

TEST(VulkanFlagTexts, NameOnlyTheLastSetBitInProcessingOrder)
{
    EXPECT_STREQ(vulkanAccessFlagsText(0x3), "02_IndexRead | ");
    EXPECT_STREQ(vulkanAccessFlagsText(0x800001), "29_FragmentShadingRateAttachmentReadKHR");
    EXPECT_STREQ(vulkanAccessFlagsText(0), "00_Invalid");
    EXPECT_STREQ(vulkanAccessFlagsText(0x20000), "");
    EXPECT_STREQ(vulkanAccessFlagsText(0x0C100000), "21_ConditionalRenderingRead | "); // bit 20 after 27

    EXPECT_STREQ(vulkanPipelineStageFlagsText(0x18000), "17_AllCommands");
    EXPECT_STREQ(vulkanPipelineStageFlagsText(0x8001), "16_AllGraphics | ");
    EXPECT_STREQ(vulkanPipelineStageFlagsText(0x8801), "12_ComputeShader | ");
    EXPECT_STREQ(vulkanPipelineStageFlagsText(0x01042000), "19_ConditionalRenderingEXT | ");

    EXPECT_STREQ(vulkanShaderStageFlagsText(0x1F), "06_AllGraphics | ");
    EXPECT_STREQ(vulkanShaderStageFlagsText(0x3F), "07_Compute | ");
    EXPECT_STREQ(vulkanShaderStageFlagsText(0x7FFFFFFF), "16_All");
    EXPECT_STREQ(vulkanShaderStageFlagsText(0xFFFFFFFF), "13_CallableKHR | ");
    EXPECT_STREQ(vulkanShaderStageFlagsText(0x0B), "04_Geometry | ");

    EXPECT_STREQ(vulkanImageUsageText(0x3), "02_TransferDestination | ");
    EXPECT_STREQ(vulkanImageUsageText(0), "00_Invalid");
    EXPECT_STREQ(vulkanImageUsageText(0x200), "");
    EXPECT_STREQ(vulkanImageUsageText(0x108), "11_FragmentShadingRateAttachmentKHR");
    EXPECT_STREQ(vulkanBufferUsageText((1u << 10) | (1u << 20)), "17_ShaderBindingTableKHR");
    EXPECT_STREQ(vulkanBufferUsageText((1u << 9) | (1u << 12)), "12_ConditionalRenderingEXT | ");
}

TEST(VulkanNames, RangesDifferFromTablesWhereTheFormatSaysSo)
{
    PrinterRun run;
    EXPECT_STREQ(lookupName(VulkanImageLayoutNames, 14), "14_ShadingRateOptimalNV");
    EXPECT_STREQ(lookupName(VulkanImageLayoutNames, 15), "OUT_OF_BOUNDS");
    EXPECT_STREQ(lookupName(VulkanBlendOpNames, 50), "50_BlueEXT");
    EXPECT_STREQ(lookupName(VulkanBlendOpNames, 51), "LAST");
    EXPECT_STREQ(lookupName(VulkanBlendOpNames, 52), "OUT_OF_BOUNDS");
    EXPECT_STREQ(vulkanObjectTypeName(28), "28_Swapchain");
    EXPECT_STREQ(vulkanObjectTypeName(29), "OUT_OF_BOUNDS");
    EXPECT_STREQ(lookupName(VulkanImageTilingNames, 4), "OUT_OF_BOUNDS");
    EXPECT_STREQ(vulkanFunctionName(204), "00_Invalid");
    EXPECT_STREQ(vulkanFunctionName(254), "50_ShaderInvocationCounts");
    EXPECT_STREQ(vulkanFunctionName(255), "OUT_OF_BOUNDS");
    EXPECT_STREQ(vulkanFunctionName(203), "OUT_OF_BOUNDS");
    EXPECT_EQ(run.console, "Warning: Zyntel packet unknown Vulkan image layout (15)!\n"
                           "Warning: Zyntel packet unknown Vulkan blend op (52)!\n"
                           "Warning: Zyntel packet unknown Vulkan object type (29)!\n"
                           "Warning: Zyntel packet unknown Vulkan image tiling type (4)!\n"
                           "Warning: Zyntel packet unknown event type (51)!\n"
                           "Warning: Zyntel packet unknown event type (-1)!\n");
}

TEST(PixelFormats, NamesAndCompressionModes)
{
    PrinterRun run;
    EXPECT_STREQ(pixelFormatName(0), "UNKNOWN");
    EXPECT_STREQ(pixelFormatName(32), "R8G8B8A8_UNORM");
    EXPECT_STREQ(pixelFormatName(338), "L16_SNORM");
    EXPECT_STREQ(pixelFormatName(339), "UNKNOWN");
    EXPECT_STREQ(pixelFormatName(0xFFFFFFFF), "UNKNOWN");
    EXPECT_STREQ(fbcModeName(7), "DL75_8x8");
    EXPECT_STREQ(fbcModeName(12), "DL75_32x2");
    EXPECT_STREQ(fbcModeName(14), "DL37_8x8");
    EXPECT_STREQ(fbcModeName(17), "DP_8x8");
    EXPECT_STREQ(fbcModeName(13), "Unknown");
    EXPECT_STREQ(fbcModeName(255), "Unknown");
    EXPECT_STREQ(fbcModeName(-1), "Unknown");
    EXPECT_EQ(run.console, "Warning: Zyntel packet unknown FBC mode (13)!\n"
                           "Warning: Zyntel packet unknown FBC mode (255)!\n"
                           "Warning: Zyntel packet unknown FBC mode (-1)!\n");
}
