#include "client/api/vulkan_flags.h"

namespace client {

namespace {

struct FlagName {
    std::uint32_t bit;
    const char* name;
};

// The name of the last set bit of `order`, or "" when none is set.
template <std::size_t N>
const char* lastSetName(std::uint32_t flags, const FlagName (&order)[N])
{
    const char* text = "";
    for (const FlagName& flag : order)
        if (flags & (1u << flag.bit)) text = flag.name;
    return text;
}

constexpr const char* kNoFlags = "00_Invalid";

} // namespace

// "Transforma" and the jumps in the numbering are part of the names.
static const FlagName kAccessFlags[] = {
    {0, "01_IndirectCommandRead | "}, {1, "02_IndexRead | "}, {2, "03_VertexAttributeRead | "},
    {3, "04_UniformRead | "}, {4, "05_InputAttachmentRead | "}, {5, "06_ShaderRead | "},
    {6, "07_ShaderWrite | "}, {7, "08_ColourAttachmentRead | "}, {8, "09_ColourAttachmentWrite | "},
    {9, "10_DepthStencilAttachmentRead | "}, {10, "11_DepthStencilAttachmentWrite | "},
    {11, "12_TransferRead | "}, {12, "13_TransferWrite | "}, {13, "14_HostRead | "}, {14, "15_HostWrite | "},
    {15, "16_MemoryRead | "}, {16, "17_MemoryWrite | "}, {25, "18_TransformFeedbackWrite | "},
    {26, "19_TransformaFeedbackCounterRead | "}, {27, "20_TransformFeedbackCounterWrite | "},
    {20, "21_ConditionalRenderingRead | "}, {19, "24_ColourAttachmentReadNonCoherentEXT | "},
    {21, "26_AccelerationStructureReadKHR | "}, {22, "27_AccelerationStructureWriteKHR | "},
    {23, "29_FragmentShadingRateAttachmentReadKHR"},
};

const char* vulkanAccessFlagsText(std::uint32_t flags)
{
    if (flags == 0) return kNoFlags;
    return lastSetName(flags, kAccessFlags);
}

// Bits examined only when the all-graphics bit (15) is clear.
static const FlagName kGraphicsStages[] = {
    {0, "01_TopOfPipe | "}, {1, "02_DrawIndirect | "}, {2, "03_VertexInput | "}, {3, "04_VertexShader | "},
    {4, "05_TessellationControlShader | "}, {5, "06_TessellationEvaluationShader | "},
    {6, "07_GeometryShader | "}, {7, "08_FragmentShader | "}, {8, "09_EarlyFragmentTests | "},
    {9, "10_LateFragmentTests | "}, {10, "11_ColourAttachmentOutput | "}, {13, "14_BottomOfPipe | "},
    {24, "18_TransformFeedbackEXT | "}, {18, "19_ConditionalRenderingEXT | "},
    {22, "27_FragmentShadingRateAttachmentBitKHR"},
};
// Bits examined in every case, after the graphics ones.
static const FlagName kOtherStages[] = {
    {11, "12_ComputeShader | "}, {12, "13_Transfer | "}, {14, "15_Host | "},
    {21, "22_RayTracingShaderKHR | "}, {25, "23_AccelerationStructureBuildKHR | "},
};
constexpr std::uint32_t kAllGraphicsStagesBit = 1u << 15;
constexpr std::uint32_t kAllCommandsStagesBit = 1u << 16;

const char* vulkanPipelineStageFlagsText(std::uint32_t flags)
{
    if (flags == 0) return kNoFlags;
    if (flags & kAllCommandsStagesBit) return "17_AllCommands";
    const char* text = (flags & kAllGraphicsStagesBit) ? "16_AllGraphics | " : lastSetName(flags, kGraphicsStages);
    const char* other = lastSetName(flags, kOtherStages);
    return *other != '\0' ? other : text;
}

static const FlagName kGraphicsShaderStages[] = {
    {0, "01_Vertex | "}, {1, "02_TessellationControl | "}, {2, "03_TessellationEvaluation | "},
    {3, "04_Geometry | "}, {4, "05_Fragment | "},
};
static const FlagName kOtherShaderStages[] = {
    {5, "07_Compute | "}, {8, "08_RaygenKHR | "}, {9, "09_AnyHitKHR | "}, {10, "10_ClosestHitKHR | "},
    {11, "11_MissKHR | "}, {12, "12_IntersectionKHR | "}, {13, "13_CallableKHR | "},
};
constexpr std::uint32_t kAllShaderStages = 0x7FFFFFFF;
constexpr std::uint32_t kAllGraphicsShaderStages = 0x1F;

const char* vulkanShaderStageFlagsText(std::uint32_t flags)
{
    if (flags == 0) return kNoFlags;
    if (flags == kAllShaderStages) return "16_All";
    const char* text = (flags & kAllGraphicsShaderStages) == kAllGraphicsShaderStages
                           ? "06_AllGraphics | "
                           : lastSetName(flags, kGraphicsShaderStages);
    const char* other = lastSetName(flags, kOtherShaderStages);
    return *other != '\0' ? other : text;
}

// "04_Storage| " has no blank before the bar, and the numbering jumps to 11.
static const FlagName kImageUsage[] = {
    {0, "01_TransferSource | "}, {1, "02_TransferDestination | "}, {2, "03_Sampled | "},
    {3, "04_Storage| "}, {4, "05_ColourAttachment | "}, {5, "06_DepthStencilAttachment | "},
    {6, "07_TransientAttachment | "}, {7, "08_InputAttachment | "},
    {8, "11_FragmentShadingRateAttachmentKHR"},
};

const char* vulkanImageUsageText(std::uint32_t flags)
{
    if (flags == 0) return kNoFlags;
    return lastSetName(flags, kImageUsage);
}

static const FlagName kBufferUsage[] = {
    {0, "01_TransferSource | "}, {1, "02_TransferDestination | "}, {2, "03_UniformTexelBuffer | "},
    {3, "04_StorageTexelBuffer | "}, {4, "05_UniformBuffer | "}, {5, "06_StorageBuffer | "},
    {6, "07_IndexBuffer | "}, {7, "08_VertexBuffer | "}, {8, "09_IndirectBuffer | "},
    {11, "10_TransformFeedbackBufferEXT | "}, {12, "11_TransformFeedbackCounterBufferEXT | "},
    {9, "12_ConditionalRenderingEXT | "}, {17, "14_ShaderDeviceAddressEXT | "},
    {19, "15_AccelerationStructureBuildInputReadOnlyKHR | "}, {20, "16_AccelerationStructureStorageKHR | "},
    {10, "17_ShaderBindingTableKHR"},
};

const char* vulkanBufferUsageText(std::uint32_t flags)
{
    if (flags == 0) return kNoFlags;
    return lastSetName(flags, kBufferUsage);
}

} // namespace client
