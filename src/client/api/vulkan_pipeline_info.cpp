// The larger Vulkan detail records: graphics pipelines, render passes and
// descriptor set updates. Their lists follow one another, so each list
// starts where the counts of the earlier ones put it; a list holds only the
// elements that start inside the record.
#include "client/api/pixel_formats.h"
#include "client/api/vulkan_flags.h"
#include "client/api/vulkan_names.h"
#include "client/api/vulkan_records.h"
#include "json/output.h"
#include "stream/packet.h"

namespace client {

namespace {

// Stencil state: fail, pass and depth-fail ops, compare op.
void printStencilState(Output& out, const Packet& state, const char* face)
{
    const char* fail = lookupName(VulkanStencilOpNames, state.u32(0));
    const char* pass = lookupName(VulkanStencilOpNames, state.u32(4));
    const char* depthFail = lookupName(VulkanStencilOpNames, state.u32(8));
    const char* compare = lookupName(VulkanCompareOpNames, state.u32(12));
    out.print("            \"Stencil State\": %s {\n              \"Fail Op\": %s,\n              \"Pass Op\": %s,\n"
              "              \"Depth Fail Op\": %s,\n              \"Compare Op\": %s,\n            }\n",
              face, fail, pass, depthFail, compare);
}

// Blend attachment of 28 bytes: enabled (low byte), then colour source,
// destination and op, alpha source, destination and op.
void printBlendAttachment(Output& out, const Packet& blend)
{
    const char* colourSource = lookupName(VulkanBlendFactorNames, blend.u32(4));
    const char* colourDestination = lookupName(VulkanBlendFactorNames, blend.u32(8));
    const char* colourOp = lookupName(VulkanBlendOpNames, blend.u32(12));
    const char* alphaSource = lookupName(VulkanBlendFactorNames, blend.u32(16));
    const char* alphaDestination = lookupName(VulkanBlendFactorNames, blend.u32(20));
    const char* alphaOp = lookupName(VulkanBlendOpNames, blend.u32(24));
    out.print("            \"Colour Attachment Blend State\": {\n              \"Enabled\": %s,\n"
              "              \"Source Colour Blend Factor\": %s,\n              \"Destination Colour Blend Factor\": %s,\n"
              "              \"Colour Blend Op\": %s,\n              \"Source Alpha Blend Factor\": %s,\n"
              "              \"Destination Alpha Blend Factor\": %s,\n              \"Alpha Blend Op\": %s,\n"
              "            }\n",
              blend.u8(0) != 0 ? "true" : "false", colourSource, colourDestination, colourOp, alphaSource,
              alphaDestination, alphaOp);
}

// Attachment description of 32 bytes.
void printAttachmentDescription(Output& out, const Packet& a)
{
    const char* samples = lookupName(VulkanSampleCountNames, a.u32(4));
    const char* loadOp = lookupName(VulkanAttachmentLoadOpNames, a.u32(8));
    const char* storeOp = lookupName(VulkanAttachmentStoreOpNames, a.u32(12));
    const char* stencilLoadOp = lookupName(VulkanAttachmentLoadOpNames, a.u32(16));
    const char* stencilStoreOp = lookupName(VulkanAttachmentStoreOpNames, a.u32(20));
    const char* initialLayout = lookupName(VulkanImageLayoutNames, a.u32(24));
    const char* finalLayout = lookupName(VulkanImageLayoutNames, a.u32(28));
    out.print("            \"Attachment Description\": {\n              \"Pixel Format\": %s,\n"
              "              \"Samples\": %s,\n              \"Load Op\": %s,\n              \"Store Op\": %s,\n"
              "              \"Stencil Load Op\": %s,\n              \"Stencil Store Op\": %s,\n"
              "              \"Initial Image Layout\": %s,\n              \"Final Image Layout\": %s,\n            }\n",
              pixelFormatName(a.u32(0)), samples, loadOp, storeOp, stencilLoadOp, stencilStoreOp, initialLayout,
              finalLayout);
}

// Subpass: bind point, reference count, references of 12 bytes (attachment,
// image layout, reference type). Returns the subpass's size.
std::uint64_t printSubpass(Output& out, const Packet& subpass)
{
    const char* bindPoint = lookupName(VulkanPipelineBindPointNames, subpass.u32(0));
    out.print("            \"Subpass\": {\n              \"Pipeline Bind Point\": %s,\n", bindPoint);
    const std::uint32_t declared = subpass.u32(4);
    const std::uint32_t references = subpass.fitCount(8, declared, 12);
    for (std::uint32_t i = 0; i < references; ++i) {
        const Packet reference = subpass.from(8 + 12 * std::size_t{i});
        const char* layout = lookupName(VulkanImageLayoutNames, reference.u32(4));
        const char* type = lookupName(VulkanAttachmentReferenceTypeNames, reference.u32(8));
        out.print("              \"Attachment Reference\": {\n                \"Attachment\": %d,\n"
                  "                \"Image Layout\": %s,\n                \"Attachment Type\": %s,\n              }\n",
                  reference.i32(0), layout, type);
    }
    out.print("            }\n");
    return 8 + 12 * std::uint64_t{declared};
}

// Subpass dependency of 24 bytes.
void printSubpassDependency(Output& out, const Packet& d)
{
    const char* sourceStages = vulkanPipelineStageFlagsText(d.u32(8));
    const char* destinationStages = vulkanPipelineStageFlagsText(d.u32(12));
    const char* sourceAccess = vulkanAccessFlagsText(d.u32(16));
    const char* destinationAccess = vulkanAccessFlagsText(d.u32(20));
    out.print("            \"Subpass Dependency\": {\n              \"Source Subpass\": %d,\n"
              "              \"Destination Subpass\": %d,\n              \"Source Pipeline Stages\": %s,\n"
              "              \"Destination Pipeline Stages\": %s,\n              \"Source Access\": %s,\n"
              "              \"Destination Access\": %s,\n            }\n",
              d.i32(0), d.i32(4), sourceStages, destinationStages, sourceAccess, destinationAccess);
}

// Size of one item of a descriptor write, by descriptor type; 0 for types
// whose items carry nothing.
std::size_t descriptorItemSize(std::uint32_t type)
{
    if ((type >= 1 && type <= 4) || type == 11) return 20; // image layout and two references
    if (type >= 5 && type <= 10) return 8;                // one reference
    return 0;
}

// Descriptor write: type, object id, item count, items. Returns its size.
std::uint64_t printDescriptorWrite(Output& out, const Packet& write)
{
    const std::uint32_t type = write.u32(0);
    out.print("            \"Descriptor Set Write\": {\n              \"Descriptor Object ID\": %d,\n"
              "              \"Descriptor Type\": %s,\n",
              write.i32(4), lookupName(VulkanDescriptorTypeNames, type));
    const std::size_t itemSize = descriptorItemSize(type);
    const std::uint32_t declared = write.u32(8);
    const std::uint32_t items = write.fitCount(12, declared, itemSize);
    for (std::uint32_t i = 0; i < items; ++i) {
        const std::size_t at = 12 + itemSize * i;
        out.print("              {\n");
        if (itemSize == 20) {
            out.print("                \"Image Layout\": %s,\n", lookupName(VulkanImageLayoutNames, write.u32(at)));
            printReference(out, write, at + 4, ReferenceDepth::Item);
            printReference(out, write, at + 12, ReferenceDepth::Item);
        } else if (itemSize == 8) {
            printReference(out, write, at, ReferenceDepth::Item);
        } else {
            console().print("Warning: Zyntel packet unknown Vulkan descriptor type (%d)!\n", type);
        }
        out.print("              }\n");
    }
    out.print("            }\n");
    return 12 + itemSize * std::uint64_t{declared};
}

} // namespace

// Flags at 64, six names from 68, stencil states at 92 and 108, list counts
// at 124 (blend attachments), 128 (objects) and 132 (shader stages), the
// lists from 136.
void printGraphicsPipeline(Output& out, const Packet& r)
{
    const char* cullMode = lookupName(VulkanCullModeNames, r.u32(68));
    const char* frontFace = lookupName(VulkanFrontFaceNames, r.u32(72));
    const char* topology = lookupName(VulkanPrimitiveTopologyNames, r.u32(76));
    const char* samples = lookupName(VulkanSampleCountNames, r.u32(80));
    const char* depthCompare = lookupName(VulkanCompareOpNames, r.u32(84));
    const char* logicOp = lookupName(VulkanLogicOpNames, r.u32(88));
    const std::uint32_t flags = r.u32(64);
    out.print("          \"Create Graphics Pipeline\": {\n            \"Cull Mode\": %s,\n            \"Front Face\": %s,\n"
              "            \"Primitive Topology\": %s,\n            \"Raster Samples\": %s,\n"
              "            \"Depth Compare Op\": %s,\n            \"Blend Logic Op\": %s,\n"
              "            \"Rasterizer Discard\": %s,\n            \"Depth Test Enabled\": %s,\n"
              "            \"Depth Write Enabled\": %s,\n            \"Depth Bounds Enabled\": %s,\n"
              "            \"Stencil Test Enabled\": %s,\n            \"Blend Logic Op Enabled\": %s,\n",
              cullMode, frontFace, topology, samples, depthCompare, logicOp, trueOrFalse(flags, 0),
              trueOrFalse(flags, 1), trueOrFalse(flags, 2), trueOrFalse(flags, 3), trueOrFalse(flags, 4),
              trueOrFalse(flags, 5));
    printStencilState(out, r.from(92), "Front");
    printStencilState(out, r.from(108), "Back");

    const std::uint32_t blendCount = r.u32(124), objectCount = r.u32(128), stageCount = r.u32(132);
    const std::uint64_t blendsAt = 136;
    const std::uint64_t objectsAt = blendsAt + 28 * std::uint64_t{blendCount};
    const std::uint64_t stagesAt = objectsAt + 8 * std::uint64_t{objectCount};

    const std::uint32_t blends = r.fitCount(blendsAt, blendCount, 28);
    for (std::uint32_t i = 0; i < blends; ++i) printBlendAttachment(out, r.from(blendsAt + 28 * std::size_t{i}));
    const std::uint32_t objects = r.fitCount(objectsAt, objectCount, 8);
    for (std::uint32_t i = 0; i < objects; ++i) printReference(out, r, objectsAt + 8 * std::size_t{i});
    // Shader stage of 12 bytes: stage flags, object id, object type.
    const std::uint32_t stages = r.fitCount(stagesAt, stageCount, 12);
    for (std::uint32_t i = 0; i < stages; ++i) {
        const Packet stage = r.from(stagesAt + 12 * std::size_t{i});
        const char* stageText = vulkanShaderStageFlagsText(stage.u32(0));
        const char* type = vulkanObjectTypeName(stage.u32(8));
        out.print("            \"Shader Stage\": %s {\n              \"Attached Vulkan Obj ID\": %d,\n"
                  "              \"Attached Vulkan Obj Type\": %s,\n            }\n",
                  stageText, stage.i32(4), type);
    }
    out.print("          }\n");
}

// Counts at 64 (attachments), 68 (subpasses) and 72 (dependencies); the
// attachments from 76, then the subpasses, then the dependencies.
void printRenderPass(Output& out, const Packet& r)
{
    out.print("          \"Create Renderpass\": {\n");
    const std::uint32_t attachmentCount = r.u32(64), subpassCount = r.u32(68), dependencyCount = r.u32(72);
    const std::uint32_t attachments = r.fitCount(76, attachmentCount, 32);
    for (std::uint32_t i = 0; i < attachments; ++i) printAttachmentDescription(out, r.from(76 + 32 * std::size_t{i}));

    // A walk that leaves the record leaves the dependencies outside it too.
    std::uint64_t offset = 76 + 32 * std::uint64_t{attachmentCount};
    for (std::uint32_t s = 0; s < subpassCount && offset < r.size(); ++s) offset += printSubpass(out, r.from(offset));
    const std::uint32_t dependencies = r.fitCount(offset, dependencyCount, 24);
    for (std::uint32_t i = 0; i < dependencies; ++i) printSubpassDependency(out, r.from(offset + 24 * std::size_t{i}));
    out.print("          }\n");
}

// Write count at 64, the writes from 68.
void printDescriptorUpdates(Output& out, const Packet& r)
{
    out.print("          \"Update Descriptor Set\": {\n");
    const std::uint32_t writes = r.u32(64);
    std::uint64_t offset = 68;
    for (std::uint32_t w = 0; w < writes && offset < r.size(); ++w) offset += printDescriptorWrite(out, r.from(offset));
    out.print("          }\n");
}

} // namespace client
