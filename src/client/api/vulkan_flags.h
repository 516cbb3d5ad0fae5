// Texts of Vulkan flag sets. Each names one representative bit, not a list:
// of the set bits that have a name, the one processed last in the set's own
// order (which is not always bit order). A set of 0 is "00_Invalid"; a set
// with no named bit is "". The names keep their " | " tails.
#pragma once

#include <cstdint>

namespace client {

const char* vulkanAccessFlagsText(std::uint32_t flags);
const char* vulkanPipelineStageFlagsText(std::uint32_t flags);
const char* vulkanShaderStageFlagsText(std::uint32_t flags);
const char* vulkanImageUsageText(std::uint32_t flags);
const char* vulkanBufferUsageText(std::uint32_t flags);

} // namespace client
