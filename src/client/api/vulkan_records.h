// Pieces shared by the Vulkan "API Info" printers. Records are read from the
// first byte after the packet header; an object reference is an object id
// (printed signed) followed by its object type.
#pragma once

#include <cstddef>
#include <cstdint>

class Output;
class Packet;

namespace client {

// The two indentations at which object references are printed.
enum class ReferenceDepth { Member, Item };

void printReference(Output& out, const Packet& record, std::size_t offset,
                    ReferenceDepth depth = ReferenceDepth::Member);

// A count at `countOffset` followed by that many references; only those
// that start inside the record are printed.
void printReferenceList(Output& out, const Packet& record, std::size_t countOffset);

const char* trueOrFalse(std::uint32_t flags, int bit);

void printGraphicsPipeline(Output& out, const Packet& record);
void printRenderPass(Output& out, const Packet& record);
void printDescriptorUpdates(Output& out, const Packet& record);

} // namespace client
