// Name tables of the client stream. Each look-up applies its table's bound:
// a value outside it prints the table's "Warning: Zyntel packet unknown ..."
// line and yields "OUT_OF_BOUNDS".
#pragma once

#include <cstdint>

namespace client {

// Event type name, or null for a type above 176 (the converters print their
// own warning for those).
const char* eventTypeName(std::uint32_t type);

const char* kickTypeName(std::uint32_t kickType);
const char* enqueueKickTypeName(std::uint32_t kickType);
const char* timelineVariantName(std::uint32_t variant);
const char* fenceWaitResultName(std::uint32_t result);
const char* eglFunctionName(std::uint32_t functionId);        // ids 43 to 48
const char* eglMemoryResourceName(std::uint32_t value);       // values 37 to 41
const char* memoryOperationName(std::uint32_t operation);
const char* glesTqReasonName(std::uint32_t reason);
const char* glTqReasonName(std::uint32_t reason);
const char* shaderTypeName(std::uint32_t shaderType);
const char* glMemoryResourceName(std::uint32_t value);        // only 47 is known
const char* glesMemoryResourceName(std::uint32_t value);
// The GL/GLES function table indexed as given (OpenGL callers subtract 256).
const char* glFunctionName(std::uint32_t index);
// Display text of a kick reason; "Unknown Kick Reason" above 74.
const char* kickReasonText(std::uint32_t reason);

} // namespace client
