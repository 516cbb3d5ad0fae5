// Display names of the Vulkan enumerations, object types and client events.
// A value outside a table's accepted range prints
//   "Warning: Zyntel packet unknown Vulkan <kind> (<value>)!"
// and yields "OUT_OF_BOUNDS" (look up with lookupName).
#pragma once

#include "json/names.h"

#include <cstdint>

namespace client {

extern const NameTable VulkanCullModeNames;
extern const NameTable VulkanFrontFaceNames;
extern const NameTable VulkanPrimitiveTopologyNames;
extern const NameTable VulkanSampleCountNames;
extern const NameTable VulkanCompareOpNames;
extern const NameTable VulkanLogicOpNames;
extern const NameTable VulkanStencilOpNames;
extern const NameTable VulkanBlendFactorNames;
extern const NameTable VulkanBlendOpNames;
extern const NameTable VulkanAttachmentLoadOpNames;
extern const NameTable VulkanAttachmentStoreOpNames;
extern const NameTable VulkanImageLayoutNames;
extern const NameTable VulkanPipelineBindPointNames;
extern const NameTable VulkanAttachmentReferenceTypeNames;
extern const NameTable VulkanImageViewTypeNames;
extern const NameTable VulkanImageTypeNames;
extern const NameTable VulkanImageTilingNames;
extern const NameTable VulkanFilterNames;
extern const NameTable VulkanSamplerMipMapModeNames;
extern const NameTable VulkanSamplerAddressModeNames;
extern const NameTable VulkanDescriptorTypeNames;
extern const NameTable VulkanObjectTypeNames;

// Client event name of a Vulkan function id (204 to 254); other ids print the
// unknown-event-type warning with the index (id - 204) and yield
// "OUT_OF_BOUNDS".
const char* vulkanFunctionName(std::uint32_t functionId);

// Object type name (0 to 28).
const char* vulkanObjectTypeName(std::uint32_t objectType);

} // namespace client
