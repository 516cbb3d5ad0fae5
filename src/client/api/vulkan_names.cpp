#include "client/api/vulkan_names.h"

#include "json/output.h"

namespace client {

static const char* const kVulkanCullModeNames[] = {
    "00_Invalid", "01_None", "02_Front", "03_Back", "04_FrontAndBack", "LAST",
};
const NameTable VulkanCullModeNames = makeNameTable(kVulkanCullModeNames, 4, "Vulkan cull mode");

static const char* const kVulkanFrontFaceNames[] = {
    "00_Invalid", "01_CounterClockwise", "02_Clockwise", "LAST",
};
const NameTable VulkanFrontFaceNames = makeNameTable(kVulkanFrontFaceNames, 2, "Vulkan front face");

static const char* const kVulkanPrimitiveTopologyNames[] = {
    "00_Invalid", "01_PointList", "02_LineList", "03_LineStrip", "04_TriangleList", "05_TriangleStrip",
    "06_TriangleFan", "07_LineListWithAdjacency", "08_LineStripWithAdjacency", "09_TriangleListWithAdjacency",
    "10_TriangleStripWithAdjacency", "11_PatchList", "LAST",
};
const NameTable VulkanPrimitiveTopologyNames =
    makeNameTable(kVulkanPrimitiveTopologyNames, 11, "Vulkan primitive topology");

static const char* const kVulkanSampleCountNames[] = {
    "00_Invalid", "01_1", "02_2", "03_4", "04_8", "05_16", "06_32", "07_64", "LAST",
};
const NameTable VulkanSampleCountNames = makeNameTable(kVulkanSampleCountNames, 7, "Vulkan sample count");

static const char* const kVulkanCompareOpNames[] = {
    "00_Invalid", "01_Never", "02_Less", "03_Equal", "04_LessOrEqual", "05_Greater", "06_NotEqual",
    "07_GreaterOrEqual", "08_Always", "LAST",
};
const NameTable VulkanCompareOpNames = makeNameTable(kVulkanCompareOpNames, 8, "Vulkan compare op");

static const char* const kVulkanLogicOpNames[] = {
    "00_Invalid", "01_Clear", "02_And", "03_AndReverse", "04_Copy", "05_AndInverted", "06_NoOp", "07_XOr", "08_Or",
    "09_NOr", "10_Equivalent", "11_Invert", "12_OrReverse", "13_CopyInverted", "14_OrInverted", "15_NAnd",
    "16_Set", "LAST",
};
const NameTable VulkanLogicOpNames = makeNameTable(kVulkanLogicOpNames, 16, "Vulkan logic op");

static const char* const kVulkanStencilOpNames[] = {
    "00_Invalid", "01_Keep", "02_Zero", "03_Replace", "04_IncrementAndClamp", "05_DecrementAndClamp", "06_Invert",
    "07_IncrementAndWrap", "08_DecrementAndWrap", "LAST",
};
const NameTable VulkanStencilOpNames = makeNameTable(kVulkanStencilOpNames, 8, "Vulkan stencil op");

static const char* const kVulkanBlendFactorNames[] = {
    "00_Invalid", "01_Zero", "02_One", "03_SourceColour", "04_OneMinusSourceColour", "05_DestinationColour",
    "06_OneMinusDestinationColour", "07_SourceAlpha", "08_OneMinusSourceAlpha", "09_DestinationAlpha",
    "10_OneMinusDestinationAlpha", "11_ConstantColour", "12_OneMinusConstantColour", "13_ConstantAlpha",
    "14_OneMinusConstantAlpha", "15_SourceAlphaSaturate", "16_Source1Colour", "17_OneMinusSource1Colour",
    "18_Source1Alpha", "19_OneMinusSource1Alpha", "LAST",
};
const NameTable VulkanBlendFactorNames = makeNameTable(kVulkanBlendFactorNames, 19, "Vulkan blend factor");

// 51 is accepted, so it prints the end marker "LAST".
static const char* const kVulkanBlendOpNames[] = {
    "00_Invalid", "01_Add", "02_Subtract", "03_ReverseSubtract", "04_Min", "05_Max", "06_ZeroEXT", "07_SourceEXT",
    "08_DestinationEXT", "09_SourceOverEXT", "10_DestinationOverEXT", "11_SourceInEXT", "12_DestinationInEXT",
    "13_SourceOutEXT", "14_DestinationOutEXT", "15_SourceATopEXT", "16_DestinationATopEXT", "17_XOrEXT",
    "18_MultiplyEXT", "19_ScreenEXT", "20_OverlayEXT", "21_DarkenEXT", "22_LightenEXT", "23_ColourDodgeEXT",
    "24_ColourBurnEXT", "25_HardLightEXT", "26_SoftLightEXT", "27_DifferenceEXT", "28_ExclusionEXT",
    "29_InvertEXT", "30_InvertRGBEXT", "31_LinearDodgeEXT", "32_LinearBurnEXT", "33_VividLightEXT",
    "34_LinearLightEXT", "35_PinLightEXT", "36_HardMixEXT", "37_HSLHueEXT", "38_HSLSaturationEXT",
    "39_HSLLuminosityEXT", "40_PlusEXT", "41_PlusClampedEXT", "42_PlusClampedAlphaEXT", "43_PlusDarkerEXT",
    "44_MinusEXT", "45_MinusClampedEXT", "46_ContrastEXT", "47_InvertOvgEXT", "48_RedEXT", "49_GreenEXT",
    "50_BlueEXT", "LAST",
};
const NameTable VulkanBlendOpNames = makeNameTable(kVulkanBlendOpNames, 51, "Vulkan blend op");

static const char* const kVulkanAttachmentLoadOpNames[] = {
    "00_Invalid", "01_Load", "02_Clear", "03_DontCare", "LAST",
};
const NameTable VulkanAttachmentLoadOpNames =
    makeNameTable(kVulkanAttachmentLoadOpNames, 3, "Vulkan attachment load op");

static const char* const kVulkanAttachmentStoreOpNames[] = {
    "00_Invalid", "01_Store", "02_DontCare", "LAST",
};
const NameTable VulkanAttachmentStoreOpNames =
    makeNameTable(kVulkanAttachmentStoreOpNames, 2, "Vulkan attachment store op");

// Row 15 has a name but lies outside the accepted range 0-14.
static const char* const kVulkanImageLayoutNames[] = {
    "00_Invalid", "01_Undefined", "02_General", "03_ColourAttachmentOptimal", "04_DepthStencilAttachmentOptimal",
    "05_DepthStencilReadOnlyOptimal", "06_ShaderReadOnlyOptimal", "07_TransferSourceOptimal",
    "08_TransferDestinationOptimal", "09_Preinitialised", "10_DepthReadOnlyStencilAttachmentOptimal",
    "11_DepthAttachmentStencilReadOnlyOptimal", "12_PresentSourceKHR", "13_SharedPresentKHR",
    "14_ShadingRateOptimalNV", "15_FragmentDensityMapOptimalEXT", "LAST",
};
const NameTable VulkanImageLayoutNames = makeNameTable(kVulkanImageLayoutNames, 14, "Vulkan image layout");

static const char* const kVulkanPipelineBindPointNames[] = {
    "00_Invalid", "01_Graphics", "02_Compute", "LAST",
};
const NameTable VulkanPipelineBindPointNames = makeNameTable(kVulkanPipelineBindPointNames, 2, "Vulkan bind point");

static const char* const kVulkanAttachmentReferenceTypeNames[] = {
    "00_Invalid", "01_Colour", "02_Resolve", "03_Input", "04_DepthStencil", "LAST",
};
const NameTable VulkanAttachmentReferenceTypeNames =
    makeNameTable(kVulkanAttachmentReferenceTypeNames, 4, "Vulkan attachment reference type");

static const char* const kVulkanImageViewTypeNames[] = {
    "00_Invalid", "01_1D", "02_2D", "03_3D", "04_Cube", "05_1DArray", "06_2DArray", "07_CubeArray", "LAST",
};
const NameTable VulkanImageViewTypeNames = makeNameTable(kVulkanImageViewTypeNames, 7, "Vulkan image view type");

static const char* const kVulkanImageTypeNames[] = {
    "00_Invalid", "01_1D", "02_2D", "03_3D", "LAST",
};
const NameTable VulkanImageTypeNames = makeNameTable(kVulkanImageTypeNames, 3, "Vulkan image type");

static const char* const kVulkanImageTilingNames[] = {
    "00_Invalid", "01_Optimal", "02_Linear", "03_DRMFormatModifierEXT", "LAST",
};
const NameTable VulkanImageTilingNames = makeNameTable(kVulkanImageTilingNames, 3, "Vulkan image tiling type");

static const char* const kVulkanFilterNames[] = {
    "00_Invalid", "01_Nearest", "02_Linear", "03_CubicQTX", "LAST",
};
const NameTable VulkanFilterNames = makeNameTable(kVulkanFilterNames, 3, "Vulkan filter");

static const char* const kVulkanSamplerMipMapModeNames[] = {
    "00_Invalid", "01_Nearest", "02_Linear", "LAST",
};
const NameTable VulkanSamplerMipMapModeNames =
    makeNameTable(kVulkanSamplerMipMapModeNames, 2, "Vulkan sampler mip map mode");

static const char* const kVulkanSamplerAddressModeNames[] = {
    "00_Invalid", "01_Repeat", "02_MirroredRepeat", "03_ClampToEdge", "04_ClampToBorder", "05_MirrorClampToEdge",
    "LAST",
};
const NameTable VulkanSamplerAddressModeNames =
    makeNameTable(kVulkanSamplerAddressModeNames, 5, "Vulkan sampler address mode");

static const char* const kVulkanDescriptorTypeNames[] = {
    "00_Invalid", "01_Sampler", "02_CombinedImageSampler", "03_SampledImage", "04_StorageImage",
    "05_UniformTexelBuffer", "06_StorageTexelBuffer", "07_UniformBuffer", "08_StorageBuffer",
    "09_UniformBufferDynamic", "10_StorageBufferDynamic", "11_InputAttachment", "12_InlineUniformBlock",
    "13_AccelerationStructureNV", "LAST",
};
const NameTable VulkanDescriptorTypeNames = makeNameTable(kVulkanDescriptorTypeNames, 13, "Vulkan descriptor type");

static const char* const kVulkanObjectTypeNames[] = {
    "00_Invalid", "01_CommandBuffer", "02_CommandPool", "03_Device", "04_Queue", "05_GraphicsPipeline",
    "06_ComputePipeline", "07_ShaderModule", "08_MemoryAllocation", "09_DisplayAllocation", "10_Image",
    "11_ImageView", "12_Sampler", "13_DescriptorSet", "14_Fence", "15_QueryPool", "16_Framebuffer",
    "17_RenderPass", "18_Buffer", "19_BufferView", "20_DescriptorPool", "21_SetLayout", "22_PipelineLayout",
    "23_Event", "24_Instance", "25_PipelineCache", "26_Semaphore", "27_Surface", "28_Swapchain", "LAST",
};
const NameTable VulkanObjectTypeNames = makeNameTable(kVulkanObjectTypeNames, 28, "Vulkan object type");

const char* vulkanObjectTypeName(std::uint32_t objectType)
{
    return lookupName(VulkanObjectTypeNames, objectType);
}

// Indexed by the function id minus 204.
static const char* const kVulkanEventNames[] = {
    "00_Invalid", "01_WaitQueueIdle", "02_WaitForFences", "03_SetEvent",
    "04_ResetEvent", "05_RecordCommandbufferPrimary", "06_RecordCommandbufferSecondary", "07_RecordRenderpass",
    "08_RecordDraw", "09_ExecuteSecondaryCommandbuffer", "10_CreateGraphicsPipeline", "11_CreateDevice",
    "12_CompileShader", "13_QueueSubmit", "14_SubmitSubCommand", "15_CreateRenderpass", "16_UserDebugMark",
    "17_QueuePresent", "18_CreateComputePipeline", "19_CreatePipelineLayout", "20_CreateFramebuffer",
    "21_CreateImageView", "22_CreateImage", "23_CreateSampler", "24_CreateDescriptorSetLayout",
    "25_CreateDescriptorSet", "26_UpdateDescriptorSets", "27_CreateShaderModule", "28_ShaderCodePart",
    "29_CreatePrimaryCommandBuffer", "30_CreateSecondaryCommandBuffer", "31_CreateBuffer",
    "32_SubmitGraphicsSubCommand", "33_SubmitComputeSubCommand", "34_SubmitTransferSubCommand",
    "35_SubmitOcclusionQuerySubCommand", "36_SubmitEventSubCommand", "37_SubmitDebugMarkerSubCommand",
    "38_BindGraphicsPipeline", "39_BindComputePipeline", "40_BindGraphicsDescriptorSets",
    "41_BindComputeDescriptorSets", "42_RecordDispatchCommand", "43_RecordDispatchIndirectCommand",
    "44_RecordCopyBufferCommand", "45_RecordCopyImageCommand", "46_RecordBlitImageCommand",
    "47_RecordCopyBufferToImageCommand", "48_RecordCopyImageToBufferCommand", "49_SetObjectName",
    "50_ShaderInvocationCounts", "LAST",
};
constexpr std::uint32_t kFirstVulkanFunction = 204;
const NameTable VulkanEventNames = makeNameTable(kVulkanEventNames, 50, "event type");

// An id below 204 wraps around and so warns with a negative index.
const char* vulkanFunctionName(std::uint32_t functionId)
{
    return lookupName(VulkanEventNames, functionId - kFirstVulkanFunction);
}

} // namespace client
