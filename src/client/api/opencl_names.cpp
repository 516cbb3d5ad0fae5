#include "client/client_printers.h"

#include "json/output.h"

#include <iterator>

namespace client {

// One table for two id ranges: ids 50 to 203 are rows 0 to 153 (203 reaches
// the "LAST" row), ids 299 to 305 are rows 154 to 160 and repeat four calls
// of the first range under new numbers.
static const char* const kOpenClFunctionNames[] = {
    "000_Invalid", "001_clGetPlatformIDs", "002_clGetPlatformInfo", "003_clGetDeviceIDs", "004_clGetDeviceInfo",
    "005_clCreateContext", "006_clCreateContextFromType", "007_clRetainContext", "008_clReleaseContext",
    "009_clGetContextInfo", "010_clCreateCommandQueue", "011_clRetainCommandQueue", "012_clReleaseCommandQueue",
    "013_clGetCommandQueueInfo", "014_clSetCommandQueueProperty", "015_clCreateBuffer", "016_clCreateImage",
    "017_clCreateImage2D", "018_clCreateImage3D", "019_clRetainMemObject", "020_clReleaseMemObject",
    "021_clGetSupportedImageFormats", "022_clGetMemObjectInfo", "023_clGetImageInfo", "024_clCreateSampler",
    "025_clRetainSampler", "026_clReleaseSampler", "027_clGetSamplerInfo", "028_clCreateProgramWithSource",
    "029_clCreateProgramWithBinary", "030_clRetainProgram", "031_clReleaseProgram", "032_clBuildProgram",
    "033_clUnloadCompiler", "034_clGetProgramInfo", "035_clGetProgramBuildInfo", "036_clCreateKernel",
    "037_clCreateKernelsInProgram", "038_clRetainKernel", "039_clReleaseKernel", "040_clSetKernelArg",
    "041_clGetKernelInfo", "042_clGetKernelWorkGroupInfo", "043_clWaitForEvents", "044_clGetEventInfo",
    "045_clRetainEvent", "046_clReleaseEvent", "047_clGetEventProfilingInfo", "048_clFlush", "049_clFinish",
    "050_clEnqueueReadBuffer", "051_clEnqueueWriteBuffer", "052_clEnqueueCopyBuffer", "053_clEnqueueReadImage",
    "054_clEnqueueWriteImage", "055_clEnqueueCopyImage", "056_clEnqueueCopyImageToBuffer",
    "057_clEnqueueCopyBufferToImage", "058_clEnqueueMapBuffer", "059_clEnqueueMapImage", "060_clEnqueueFillImage",
    "061_clEnqueueUnmapMemObject", "062_clEnqueueNDRangeKernel", "063_clEnqueueTask", "064_clEnqueueNativeKernel",
    "065_clEnqueueMarker", "066_clEnqueueWaitForEvents", "067_clEnqueueBarrier", "068_clCreateSubBuffer",
    "069_clEnqueueReadBufferRect", "070_clEnqueueWriteBufferRect", "071_clEnqueueCopyBufferRect",
    "072_clSetUserEventStatus", "073_clEnqueueFillBuffer", "074_clEnqueueMigrateMemObjects",
    "075_clCreateSubDevices", "076_clRetainDevice", "077_clReleaseDevice", "078_clEnqueueMarkerWithWaitList",
    "079_clEnqueueBarrierWithWaitList", "080_clCreateProgramWithBuiltInKernels", "081_clCompileProgram",
    "082_clLinkProgram", "083_clUnloadPlatformCompiler", "084_clGetKernelArgInfo", "085_clCreateFromEGLImageKHR",
    "086_clEnqueueAcquireEGLObjectsKHR", "087_clEnqueueReleaseEGLObjectsKHR", "088_clCreateSamplerWithProperties",
    "089_clEnqueueAcquireGrallocObjectsQTX", "090_clEnqueueReleaseGrallocObjectsQTX",
    "091_clCreateCommandQueueWithProperties", "092_clCreatePipe", "093_clGetPipeInfo", "094_clEnqueueSVMFree",
    "095_clEnqueueSVMMap", "096_clEnqueueSVMUnmap", "097_clEnqueueSVMMemcpy", "098_clEnqueueSVMMemFill",
    "099_clSetKernelArgSVMPointer", "100_clEnqueueGenerateMipmapQTX", "101_clSetEventCallback",
    "102_clCreateProgramWithIL", "103_clSetProgramSpecializationConstant", "104_WaitForSyncObjectOrSyncPrim",
    "105_RecompileGetKernel", "106_RecompileGetCachedKernel", "107_FlushCommand", "108_KORKickCDM",
    "109_EventUpdateRoutine", "110_GPUEventForwardRoutine", "111_SubmitComputeTask", "112_clGetKernelSubGroupInfo",
    "113_clCreateSemaphore", "114_clCreateFromExternalSemaphore", "115_clEnqueueWaitForSemaphores",
    "116_clEnqueueSignalSemaphores", "117_clReleaseSemaphore", "118_clImportMemoryARM",
    "119_OCL_FreeUnusedCommandBuffer", "120_OCL_FreeUnusedCommandQueue", "121_OCL_FreeUnusedEvent",
    "122_OCL_FreeUnusedKernel", "123_OCL_FreeUnusedSVMAllocation", "124_OCL_FreeUnusedMemObj",
    "125_OCL_FreeUnusedProgram", "126_OCL_FreeUnusedSampler", "127_OCL_FreeUnusedSemaphore",
    "128_OCL_RecompileKernelCallback", "129_OCL_TQWatchdog", "130_OCL_CDMWatchdog", "131_OCL_AsynchronousFlush",
    "132_OCL_EventCallbackWrapper", "133_clEnqueueAcquireExternalMemObjectsKHR",
    "134_clEnqueueReleaseExternalMemObjectsKHR", "135_clCancelCommandsQTX", "136_clGetImageRequirementsInfoEXT",
    "137_OCL_FlushCommandBuffer", "138_OCL_AddRecordedCommandToGraph", "139_OCL_CommandBufferWatchdog",
    "140_OCL_CommandBufferPerLevelCDMKickWatchdog", "141_clCreateCommandBufferKHR",
    "142_clFinalizeCommandBufferKHR", "143_clEnqueueCommandBufferKHR", "144_clCommandNDRangeKernelKHR",
    "145_clCommandBarrierWithWaitListKHR", "146_clCommandCopyBufferKHR", "147_clCommandCopyBufferRectKHR",
    "148_clCommandCopyImageKHR", "149_clCommandCopyBufferToImageKHR", "150_clCommandCopyImageToBufferKHR",
    "151_clCommandFillImageKHR", "152_clCommandFillBufferKHR",
    "LAST", "153_Invalid", "154_clCreateCommandQueue", "155_clCreateKernel", "156_clCreateCommandQueueWithProperties",
    "157_KORKickCDM", "158_OCL_SubmitComputeTask", "LAST_R2",
};
constexpr std::uint32_t kFirstRangeStart = 50;
constexpr std::uint32_t kFirstRangeEnd = 203;
constexpr std::uint32_t kSecondRangeStart = 299;
constexpr std::uint32_t kSecondRangeEnd = 305;
constexpr std::uint32_t kSecondRangeFirstRow = kFirstRangeEnd - kFirstRangeStart + 1;
static_assert(std::size(kOpenClFunctionNames) == kSecondRangeFirstRow + kSecondRangeEnd - kSecondRangeStart + 1);

const char* openClFunctionName(std::uint32_t functionId)
{
    if (functionId >= kFirstRangeStart && functionId <= kFirstRangeEnd)
        return kOpenClFunctionNames[functionId - kFirstRangeStart];
    if (functionId >= kSecondRangeStart && functionId <= kSecondRangeEnd)
        return kOpenClFunctionNames[functionId - kSecondRangeStart + kSecondRangeFirstRow];
    console().print("Warning: Zyntel packet unknown event type (%d)!\n", static_cast<int>(functionId));
    return "OUT_OF_BOUNDS";
}

} // namespace client
