#include "client/client_names.h"

#include "json/names.h"
#include "json/output.h"

namespace client {
namespace {

// Six blocks of 32, one per API sub-stream; positions without an event keep
// a filler row so that the type indexes the table directly. Types 8 and 9
// are in use under their filler names.
const char* const kEventTypeNames[] = {
    // Services (base 0)
    "00_Invalid", "01_KickStart", "02_KickEnd", "03_ENQ_Work", "04_SyncAlloc", "05_SyncFree",
    "06_SyncFenceWait", "07_SyncSWTLAdv", "08_undef", "09_undef", "10_undef", "11_undef",
    "12_undef", "13_undef", "14_undef", "15_undef", "16_undef", "17_undef",
    "18_undef", "19_undef", "20_undef", "21_undef", "22_undef", "23_undef",
    "24_undef", "25_undef", "26_undef", "27_undef", "28_undef", "29_undef",
    "30_undef", "31_undef",
    // EGL (base 32)
    "00_Invalid", "01_MarkStart", "02_MarkEnd", "03_MemOpStart", "04_MemOpEnd", "05_undef",
    "06_undef", "07_undef", "08_undef", "09_undef", "10_undef", "11_undef",
    "12_undef", "13_undef", "14_undef", "15_undef", "16_undef", "17_undef",
    "18_undef", "19_undef", "20_undef", "21_undef", "22_undef", "23_undef",
    "24_undef", "25_undef", "26_undef", "27_undef", "28_undef", "29_undef",
    "30_undef", "31_undef",
    // OpenGL ES (base 64)
    "00_Invalid", "01_MarkStart", "02_MarkStop", "03_MarkPoint", "04_KickStart", "05_KickEnd",
    "06_DrawStart", "07_DrawEnd", "08_ShaderCompileStart", "09_ShaderCompileEnd", "10_MemOpStart", "11_MemOpEnd",
    "12_ComputeStart", "13_ComputeEnd", "14_TQKickStart", "15_TQKickEnd", "16_ShaderInvocPoint", "17_undef",
    "18_undef", "19_undef", "20_undef", "21_undef", "22_undef", "23_undef",
    "24_undef", "25_undef", "26_undef", "27_undef", "28_undef", "29_undef",
    "30_undef", "31_undef",
    // OpenCL (base 96)
    "00_Invalid", "01_MarkStart", "02_MarkStop", "03_undef", "04_undef", "05_undef",
    "06_undef", "07_undef", "08_undef", "09_undef", "10_undef", "11_undef",
    "12_undef", "13_undef", "14_undef", "15_undef", "16_undef", "17_undef",
    "18_undef", "19_undef", "20_undef", "21_undef", "22_undef", "23_undef",
    "24_undef", "25_undef", "26_undef", "27_undef", "28_undef", "29_undef",
    "30_undef", "31_undef",
    // Vulkan (base 128)
    "00_Invalid", "01_MarkStart", "02_MarkEnd", "03_MarkPoint", "04_MarkStartSubCommand", "05_MarkEndSubCommand",
    "06_ShaderInvocPoint", "07_undef", "08_undef", "09_undef", "10_undef", "11_undef",
    "12_undef", "13_undef", "14_undef", "15_undef", "16_undef", "17_undef",
    "18_undef", "19_undef", "20_undef", "21_undef", "22_undef", "23_undef",
    "24_undef", "25_undef", "26_undef", "27_undef", "28_undef", "29_undef",
    "30_undef", "31_undef",
    // OpenGL (base 160)
    "00_Invalid", "01_MarkStart", "02_MarkStop", "03_MarkPoint", "04_KickStart", "05_KickEnd",
    "06_DrawStart", "07_DrawEnd", "08_ShaderCompileStart", "09_ShaderCompileEnd", "10_MemOpStart", "11_MemOpEnd",
    "12_ComputeStart", "13_ComputeEnd", "14_TQKickStart", "15_TQKickEnd", "16_ShaderInvocPoint", "17_undef",
    "18_undef", "19_undef", "20_undef", "21_undef", "22_undef", "23_undef",
    "24_undef", "25_undef", "26_undef", "27_undef", "28_undef", "29_undef",
    "30_undef", "31_undef",
};

const char* const kKickTypeNames[] = {"00_Invalid", "01_TA", "02_VRDM", "03_RS", "04_CDM", "05_SYNC"};

// Accepts 25 values although its own list ends with "LAST" at 10: values 11
// to 24 show the rows stored after it.
const char* const kEnqueueKickTypeNames[] = {
    "TA3D", "TQ2D", "TQ3D", "CDM", "RS", "VRDM", "TQTDM", "SYNC", "TA", "3D", "LAST",
    "<UNKNOWN>", "<UNKNOWN>", "<UNKNOWN>", "<UNKNOWN>", "<UNKNOWN>", "<UNKNOWN>",
    "TQ2D", "TQ3D", "TQTDM", "CDM", "GEOM", "3D", "SYNC", "RS",
};

const char* const kTimelineVariantNames[] = {"00_Invalid", "01_GpuTimeline", "02_SwTimeline"};

const char* const kFenceWaitResultNames[] = {"00_Invalid", "01_Timeout", "02_Passed", "03_Errored"};

const char* const kEglFunctionNames[] = {
    "00_Invalid", "01_SwapBuffers", "02_CreateContext", "03_DestroyContext", "04_MakeCurrent", "05_MemOp",
};

const char* const kEglMemoryResourceNames[] = {
    "00_Invalid", "01_PixelBuffer", "02_YUVCoefficients", "03_Image", "04_FBCDescriptor",
};

const char* const kMemoryOperationNames[] = {
    "00_Invalid", "01_DeviceMemoryAllocation", "02_DeviceMemoryDeallocation", "03_DeviceMemoryCopy",
};

const char* const kGlesTqReasonNames[] = {
    "00_Unknown", "01_Blit", "02_BlitSurface", "03_BlitFramebuffer", "04_BlitTextureLevel", "05_CopyBuffer",
    "06_CopyImage", "07_MipGen", "08_MipGen_TwoLevels", "09_MipGen_RenderTotexture",
    "10_MipGen_TwoLevels_RenderToTexture", "11_RevertMipGenOptimisation", "12_ClearTexImage",
    "13_InitShadowBuffer", "14_DeInitShadowBuffer", "15_UploadTexture", "16_ConvertEGLImageFormat",
};

const char* const kGlTqReasonNames[] = {
    "00_Unknown", "01_BlitFramebuffer", "02_BlitTextureLevel", "03_ReadPixels", "04_CopyTexture",
    "05_CopyCompressedTexture", "06_CopyCompressed3DTexture", "07_MipGen", "08_SetupScratch",
    "09_PostRenderToScratch", "10_CreateDrawtexture", "11_UploadTexture", "12_ReadTexture",
    "13_RecreateTextureObject", "14_RecreateMipMapLevel", "15_Preparebuffer", "16_FlushBuffer", "17_CopyBuffer",
};

// The last two rows lie beyond the bound of 5 and are never printed.
const char* const kShaderTypeNames[] = {
    "01_Vsh", "02_Fsh", "03_Csh", "04_Gsh", "05_TCsh", "06_TEsh", "07_Raysh", "08_Framesh",
};

// The one GL memory resource type (47) shows this row.
const char* const kGlMemoryResourceNames[] = {"00_Invalid"};
constexpr std::uint32_t kGlMemoryResourceType = 47;

const char* const kGlesMemoryResourceNames[] = {
    "00_Invalid", "01_BufferObject", "02_ArrayBufferObject", "03_ElementArrayBufferObject",
    "04_UniformBufferObject", "05_PixelPackBufferObject", "06_PixelUnpackBufferObject",
    "07_CopyReadBufferObject", "08_CopyWriteBufferObject", "09_ShaderStorageBufferObject",
    "10_DispatchIndirectBufferObject", "11_DrawIndirectBufferObject", "12_TextureBufferObject",
    "13_AtomicCounterBufferObject", "14_TransformFeedbackBufferObject", "15_TextureImage", "16_Texture2D",
    "17_TextureCEM", "18_TextureExternal", "19_Texture3D", "20_Texture2DArray", "21_Texture2DMultisample",
    "22_Texture2DMultisampleArray", "23_BorderColourTable", "24_RenderSurface", "25_RenderBufferStorage",
    "26_RenderBufferStorageMultisample", "27_ZStencilBuffer", "28_Shader", "29_TileBuffers",
    "30_OcculsionQueryVisibilityBuffer", "31_MultiviewDrawIndirectBuffer", "32_SamplerObject",
    "33_CircularBuffer", "34_InternalBuffer", "35_ContextSharedRobustnessBuffer",
};

const char* const kGlFunctionNames[] = {
    "00_Invalid", "01_TAKick", "02_ReadPixels", "03_WaitForHWQ", "04_BindFB", "05_DrawArrays",
    "06_DrawArraysInstanced", "07_DrawArraysIndirect", "08_DrawElements", "09_DrawElementsInstanced",
    "10_DrawElementsIndirect", "11_DrawRangeElements", "12_DrawElementsBaseVertex",
    "13_DrawRangeElementsBaseVertex", "14_DrawElementsInstancedBaseVertex", "15_MultiDrawElementsBaseVertex",
    "16_TQKick", "17_CompileShader", "18_CDMKick", "19_Mipgen", "20_Teximage2d", "21_Texsubimage2d",
    "22_CopyTexImage2d", "23_CopyTexSubImage2d", "24_GhostTexture", "25_GlFinish", "26_GlFlush",
    "27_CopyTextureData", "28_TextureMakeResident", "29_UnloadinConsistentTexture", "30_ValidateState",
    "31_TexStorage", "32_BufferData", "33_BufferSubdata", "34_CopyBufferSubData", "35_BindTexture",
    "36_Clear", "37_MemOp", "38_DispatchCompute", "39_DispatchComputeIndirect", "40_ShaderInvocationCount",
    "41_ShaderInvocationCountOverflow",
};

// Kick reasons: the reason number equals the row index; only the text is
// printed. The flag is carried as recorded and not used.
struct KickReason {
    std::uint32_t reason;
    std::uint32_t flag;
    const char* key;
    const char* text;
};

const KickReason kKickReasons[] = {
    {0, 0, "REASON_BARRIER", "Barrier"},
    {1, 1, "REASON_BINDFRAMEBUFFER", "Bind Framebuffer"},
    {2, 0, "REASON_CDMVALIDATEANDEMIT", "CDM Validate and Emit"},
    {3, 0, "REASON_CHECKPIXELLOCALSTORAGESETUP", "Check Pixel Local Storage Setup"},
    {4, 1, "REASON_COPYIMAGE", "CopyImage"},
    {5, 0, "REASON_DESTROYVERTEXVARIANTS", "Destroy Vertex Variants"},
    {6, 0, "REASON_DISPATCHCOMPUTEINDIRECT", "Dispatch Compute Indirect"},
    {7, 1, "REASON_DOCLEAR", "Do Clear"},
    {8, 0, "REASON_FLUSH_3D", "Flush 3D"},
    {9, 0, "REASON_FLUSHBUFFERS", "Flush Buffers"},
    {10, 1, "REASON_FLUSHFOR_ATTACHTEXFORRENDER", "Flush for Attach Tex for Render"},
    {11, 0, "REASON_FLUSHFOR_AUTOPLS", "Flush for Auto PLS merged render"},
    {12, 0, "REASON_FLUSHFOR_BARRIER", "Flush for Barrier"},
    {13, 1, "REASON_FLUSHFOR_BINDFB", "Flush for Bind Framebuffer"},
    {14, 0, "REASON_FLUSHFOR_BORDERCOLORDESTROY", "Flush for Destroy Border Color Table"},
    {15, 0, "REASON_FLUSHFOR_BORDERCOLORMAKERESIDENT", "Flush for Make Border Color Table resident"},
    {16, 1, "REASON_FLUSHFOR_CLEARTEXIMAGE", "Flush for glClearTex(Sub)Image"},
    {17, 1, "REASON_FLUSHFOR_COPYIMAGESUBDATA", "Flush for Copy Image Sub Data"},
    {18, 1, "REASON_FLUSHFOR_COPYTEXTUREDATA", "Flush for Copy texture data"},
    {19, 0, "REASON_FLUSHFOR_DESTROYFBO", "Flush for Destroy FBO"},
    {20, 0, "REASON_FLUSHFOR_DETATCHFB", "Flush for Detach Framebuffer"},
    {21, 0, "REASON_FLUSHFOR_EGLIMAGE", "Flush for EGL Image operation"},
    {22, 1, "REASON_FLUSHFOR_FLUSHBUFFERS", "Flush for Flush buffers"},
    {23, 1, "REASON_FLUSHFOR_FLUSHSOURCETEXTURES", "Flush for Flush source textures"},
    {24, 1, "REASON_FLUSHFOR_FRAMEBUFFERRB", "Flush for FramebufferRenderbuffer"},
    {25, 1, "REASON_FLUSHFOR_FRAMEBUFFERTEXTURE2D", "Flush for FramebufferTexture2D"},
    {26, 0, "REASON_FLUSHFOR_FREESAMPLER", "Flush for Free Sampler Object"},
    {27, 0, "REASON_FLUSHFOR_FREETEXTURE", "Flush for Free Texture"},
    {28, 0, "REASON_FLUSHFOR_GETFRAGCBUFS", "Flush for Get Fragment CBuff from pool"},
    {29, 0, "REASON_FLUSHFOR_GETRENDERTARGET", "Flush for Get RenderTarget"},
    {30, 0, "REASON_FLUSHFOR_GHOSTTEXTURE", "Flush for Ghost Texture"},
    {31, 1, "REASON_FLUSHFOR_GLFINISH", "Flush for glFinish"},
    {32, 1, "REASON_FLUSHFOR_GLFLUSH", "Flush for glFlush"},
    {33, 0, "REASON_FLUSHFOR_INVALIDATEFB", "Flush for Invalidate Framebuffer"},
    {34, 1, "REASON_FLUSHFOR_MAKEMIMPMAP", "Flush for Make MipMap"},
    {35, 0, "REASON_FLUSHFOR_MARKASINVALID", "Flush for Mark as Invalid"},
    {36, 0, "REASON_FLUSHFOR_OQ", "Flush for Occlusion Query"},
    {37, 1, "REASON_FLUSHFOR_RBSTORAGE", "Flush for RenderBuffer Storage"},
    {38, 1, "REASON_FLUSHFOR_READBACK_FOR_MAKEMIMPMAP", "Flush for Readback Texture for MakeMipmap"},
    {39, 1, "REASON_FLUSHFOR_READPIXELS", "Flush for Read Pixels"},
    {40, 1, "REASON_FLUSHFOR_TEXALLOC", "Flush for Texture Allocation"},
    {41, 1, "REASON_FLUSHFOR_TEXLOAD", "Flush for Texture Load operation"},
    {42, 1, "REASON_FLUSHFOR_TEXTUREMAKERESIDENT", "Flush for Texture Make Resident"},
    {43, 1, "REASON_FLUSHFOR_UNFLUSHEDRENDERS", "Flush for Unflushed Renders"},
    {44, 0, "REASON_FLUSHFOR_UNLOADINCONSISTENT", "Flush for Unload Inconsistent Texture"},
    {45, 0, "REASON_FLUSHFOR_UPDATECBUF", "Flush for Update CBuff position"},
    {46, 0, "REASON_FLUSHFOR_WAITFORRESOURCENOTUSED", "Flush for Wait for Resource NotUsed"},
    {47, 0, "REASON_FLUSH_FS_CLEAR", "Flush FS Clear"},
    {48, 1, "REASON_FLUSHRENDERSURFACE", "Flush RenderSurface"},
    {49, 0, "REASON_FLUSH_TE_GS", "Flush TE GS"},
    {50, 0, "REASON_FREELISTOFVTXGSTESSUSEVARIANTS", "Free List of Vtx USE Variants"},
    {51, 0, "REASON_FREEVERTEXPDSCOMMONSTORELOADCODES", "Free Vertex PDS CommonStore Load Code"},
    {52, 0, "REASON_GETVERTEXINDEXBUFFERSPACE", "Get Vertex Index Buffer Space"},
    {53, 1, "REASON_GLBLITFRAMEBUFFER", "glBlitFramebuffer"},
    {54, 1, "REASON_GLBUFFERDATA", "glBufferData"},
    {55, 1, "REASON_GLBUFFERSUBDATA", "glBufferSubData"},
    {56, 0, "REASON_GLDISPATCHRAYS", "glDispatchRays"},
    {57, 1, "REASON_GLFINISH", "glFinish"},
    {58, 1, "REASON_GLFLUSH", "glFlush"},
    {59, 0, "REASON_KICKLIMIT_SCHEDULETA", "Vertex/Index buffer full"},
    {60, 0, "REASON_MARKRENDERSURFACEASINVALID", "Mark RenderSurface as Invalid"},
    {61, 0, "REASON_PICKDRAWELEMENTSPROC", "Pick DrawElements Proc"},
    {62, 0, "REASON_PRIMITIVEQUERYGETRESULT", "PrimitiveQuery GetResult"},
    {63, 0, "REASON_REUSECROSSPDSSYNCMEMPOOL", "Reuse Cross PDS Sync MemPool"},
    {64, 0, "REASON_SWITCH_CLIP_DEPTH_MODE", "Switch ClipDepth Mode"},
    {65, 0, "REASON_TOOMUCHTEXGHOST", "Too many Texture Ghosts"},
    {66, 0, "REASON_WAITUNTILBUFOBJNOTUSED", "Wait until BufObj not used"},
    {67, 0, "REASON_WAITUNTILTAKRMRESOURCENOTUSEDINTA", "Wait until TA RM Resource not used in TA"},
    {68, 0, "REASON_WAITUNTILVAONOTUSED", "Wait until VAO not used"},
    {69, 0, "REASON_FLUSHFOR_FBCDESCRIPTOR", "Flush FBC descriptor"},
    {70, 0, "REASON_FLUSHFOR_ATTACHRBFORRENDER", "Flush for Attach RB for Render"},
    {71, 0, "REASON_FLUSHFOR_DITHER_CHANGED", "Flush for Dither State Changed"},
    {72, 0, "REASON_SWITCH_GS_AND_NON_GS", "Flush for switch between GS and non-GS"},
    {73, 0, "REASON_OUTOFTABUFFERSETS", "Flush to release TA buffer set"},
    {74, 0, "REASON_DISCARD_UNUSED_RENDER", "Discard unused render"},
};

const NameTable kEventTypes = makeNameTable(kEventTypeNames, 176, "event type");
const NameTable kKickTypes = makeNameTable(kKickTypeNames, "event type");
const NameTable kEnqueueKickTypes = makeNameTable(kEnqueueKickTypeNames, "host kick type");
const NameTable kTimelineVariants = makeNameTable(kTimelineVariantNames, "fence sync timeline type");
const NameTable kFenceWaitResults = makeNameTable(kFenceWaitResultNames, "fence sync wait result type");
const NameTable kEglFunctions = makeNameTable(kEglFunctionNames, "event type");
const NameTable kEglMemoryResources = makeNameTable(kEglMemoryResourceNames, "EGL memory resource type");
const NameTable kMemoryOperations = makeNameTable(kMemoryOperationNames, "memory operation type");
const NameTable kGlesTqReasons = makeNameTable(kGlesTqReasonNames, "GLES TQ kick reason");
const NameTable kGlTqReasons = makeNameTable(kGlTqReasonNames, "OGL TQ kick reason");
const NameTable kShaderTypes = makeNameTable(kShaderTypeNames, 5, "shader type");
const NameTable kGlMemoryResources = makeNameTable(kGlMemoryResourceNames, "GL memory resource type");
const NameTable kGlesMemoryResources = makeNameTable(kGlesMemoryResourceNames, "GLES memory resource type");
const NameTable kGlFunctions = makeNameTable(kGlFunctionNames, "event type");

constexpr std::uint32_t kFirstEglFunction = 43;
constexpr std::uint32_t kFirstEglMemoryResource = 37;

} // namespace

const char* eventTypeName(std::uint32_t type)
{
    return type <= kEventTypes.lastValid ? kEventTypes.rows[type] : nullptr;
}

const char* kickTypeName(std::uint32_t kickType) { return lookupName(kKickTypes, kickType); }
const char* enqueueKickTypeName(std::uint32_t kickType) { return lookupName(kEnqueueKickTypes, kickType); }
const char* timelineVariantName(std::uint32_t variant) { return lookupName(kTimelineVariants, variant); }
const char* fenceWaitResultName(std::uint32_t result) { return lookupName(kFenceWaitResults, result); }
const char* eglFunctionName(std::uint32_t functionId) { return lookupName(kEglFunctions, functionId - kFirstEglFunction); }
const char* memoryOperationName(std::uint32_t operation) { return lookupName(kMemoryOperations, operation); }
const char* glesTqReasonName(std::uint32_t reason) { return lookupName(kGlesTqReasons, reason); }
const char* glTqReasonName(std::uint32_t reason) { return lookupName(kGlTqReasons, reason); }
const char* shaderTypeName(std::uint32_t shaderType) { return lookupName(kShaderTypes, shaderType); }
const char* glesMemoryResourceName(std::uint32_t value) { return lookupName(kGlesMemoryResources, value); }
const char* glFunctionName(std::uint32_t index) { return lookupName(kGlFunctions, index); }

const char* eglMemoryResourceName(std::uint32_t value)
{
    return lookupName(kEglMemoryResources, value - kFirstEglMemoryResource);
}

const char* glMemoryResourceName(std::uint32_t value)
{
    if (value == kGlMemoryResourceType) return kGlMemoryResources.rows[0];
    console().print("Warning: Zyntel packet unknown %s (%d)!\n", kGlMemoryResources.kind, static_cast<int>(value));
    return kGlMemoryResources.substitute;
}

const char* kickReasonText(std::uint32_t reason)
{
    constexpr std::uint32_t count = sizeof kKickReasons / sizeof kKickReasons[0];
    return reason < count ? kKickReasons[reason].text : "Unknown Kick Reason";
}

} // namespace client
