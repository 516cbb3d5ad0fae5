// The "API Info" object of Vulkan marks: one detail record per event type,
// from offset 64 of the record. Enumeration, object type and flag names are
// printed without quotes; most objects keep a comma after their last member.
// Names are looked up in the record's field order before the print that
// uses them, so that their warnings come in that order.
#include "client/client_printers.h"

#include "client/api/pixel_formats.h"
#include "client/api/vulkan_flags.h"
#include "client/api/vulkan_names.h"
#include "client/api/vulkan_records.h"
#include "json/output.h"
#include "stream/packet.h"
#include "stream/stream_file.h"

namespace client {

namespace {

constexpr std::size_t kEventTypeOffset = 16;
constexpr std::uint32_t kImageObjectType = 10;

void printRenderPassRecord(Output& out, const Packet& r)
{
    out.print("          \"Render Pass Record\": {\n            \"Render Area Width\": %d,\n"
              "            \"Render Area Height\": %d,\n",
              r.i32(64), r.i32(68));
    printReference(out, r, 72);
    printReference(out, r, 80);
    out.print("          }\n");
}

void printFramebuffer(Output& out, const Packet& r)
{
    out.print("          \"Create Framebuffer\": {\n            \"Framebuffer Width\": %d,\n"
              "            \"Framebuffer Height\": %d,\n            \"Framebuffer Layers\": %d,\n",
              r.i32(64), r.i32(68), r.i32(72));
    printReferenceList(out, r, 76);
    out.print("          }\n");
}

void printImageView(Output& out, const Packet& r)
{
    const char* viewType = lookupName(VulkanImageViewTypeNames, r.u32(64));
    out.print("          \"Create Image View\": {\n            \"Type\": %s,\n            \"Pixel Format\": %s,\n",
              viewType, pixelFormatName(r.u32(68)));
    printReferenceList(out, r, 72);
    out.print("          }\n");
}

void printImage(Output& out, const Packet& r)
{
    const char* usage = vulkanImageUsageText(r.u32(84));
    const char* imageType = lookupName(VulkanImageTypeNames, r.u32(92));
    const char* samples = lookupName(VulkanSampleCountNames, r.u32(96));
    const char* tiling = lookupName(VulkanImageTilingNames, r.u32(100));
    const char* initialLayout = lookupName(VulkanImageLayoutNames, r.u32(104));
    const char* fbc = fbcModeName(r.i32(108));
    out.print("          \"Create Image\": {\n            \"Width\": %d,\n            \"Height\": %d,\n"
              "            \"Depth\": %d,\n            \"Pixel Format\": %s,\n            \"Type\": %s,\n"
              "            \"Usage Flags\": %s,\n            \"MipMap Levels\": %d,\n            \"Array Layers\": %d,\n"
              "            \"Samples\": %s,\n            \"Tiling Type\": %s,\n            \"Initial Layout\": %s,\n"
              "            \"FBC Type\": %s,\n          }\n",
              r.i32(64), r.i32(68), r.i32(72), pixelFormatName(r.u32(88)), imageType, usage, r.i32(76), r.i32(80),
              samples, tiling, initialLayout, fbc);
}

void printSampler(Output& out, const Packet& r)
{
    const char* magnification = lookupName(VulkanFilterNames, r.u32(64));
    const char* minification = lookupName(VulkanFilterNames, r.u32(68));
    const char* mipMapMode = lookupName(VulkanSamplerMipMapModeNames, r.u32(72));
    const char* addressU = lookupName(VulkanSamplerAddressModeNames, r.u32(76));
    const char* addressV = lookupName(VulkanSamplerAddressModeNames, r.u32(80));
    const char* addressW = lookupName(VulkanSamplerAddressModeNames, r.u32(84));
    const char* compareOp = lookupName(VulkanCompareOpNames, r.u32(88));
    const std::uint32_t flags = r.u32(92);
    out.print("          \"Create Sampler\": {\n            \"Magnification Filter\": %s,\n"
              "            \"Minification Filter\": %s,\n            \"MipMap Mode\": %s,\n"
              "            \"Address Mode U\": %s,\n            \"Address Mode V\": %s,\n"
              "            \"Address Mode W\": %s,\n            \"Compare Op\": %s,\n"
              "            \"Anisotropic Filtering Enabled\": %s,\n            \"Compare Op Enabled\": %s,\n"
              "            \"Un-normalized Co-ordinates Enabled\": %s,\n          }\n",
              magnification, minification, mipMapMode, addressU, addressV, addressW, compareOp, trueOrFalse(flags, 0),
              trueOrFalse(flags, 1), trueOrFalse(flags, 2));
}

// Bindings of 16 bytes: binding, descriptor count, shader stages, descriptor
// type. The key repeats once per binding.
void printDescriptorSetLayout(Output& out, const Packet& r)
{
    const std::uint32_t bindings = r.fitCount(68, r.u32(64), 16);
    for (std::uint32_t i = 0; i < bindings; ++i) {
        const Packet binding = r.from(68 + 16 * std::size_t{i});
        const char* descriptorType = lookupName(VulkanDescriptorTypeNames, binding.u32(12));
        out.print("          \"Create Descriptor Set Layout\": {\n            \"Binding\": %d,\n"
                  "            \"Descriptor Count\": %d,\n            \"Descriptor Type\": %s,\n"
                  "            \"Shader Stages\": %s,\n          }\n",
                  binding.i32(0), binding.i32(4), descriptorType, vulkanShaderStageFlagsText(binding.u32(8)));
    }
}

// Submission groups: a count, then that many references.
void printQueueSubmissions(Output& out, const Packet& r)
{
    const std::uint32_t groups = r.u32(64);
    std::uint64_t offset = 68;
    for (std::uint32_t g = 0; g < groups && offset < r.size(); ++g) {
        out.print("          \"Queue Submission\": {\n");
        printReferenceList(out, r, offset);
        out.print("          }\n");
        offset += 4 + 8 * std::uint64_t{r.u32(offset)};
    }
}

void printCopyBuffer(Output& out, const Packet& r)
{
    const char* sourceType = vulkanObjectTypeName(r.u32(68));
    const char* destinationType = vulkanObjectTypeName(r.u32(76));
    out.print("          \"Copy Buffer\": {\n            \"Source Vulkan Obj ID\": %d,\n"
              "            \"Source Vulkan Obj Type\": %s,\n            \"Destination Vulkan Obj ID\": %d,\n"
              "            \"Destination Vulkan Obj Type\": %s,\n          }\n",
              r.i32(64), sourceType, r.i32(72), destinationType);
}

// Copy and blit of images: references at 64 and 72, layouts at 80 and 84,
// the blit's filter at 88.
void printCopyImage(Output& out, const Packet& r, bool blit)
{
    const char* sourceType = vulkanObjectTypeName(r.u32(68));
    const char* destinationType = vulkanObjectTypeName(r.u32(76));
    const char* sourceLayout = lookupName(VulkanImageLayoutNames, r.u32(80));
    const char* destinationLayout = lookupName(VulkanImageLayoutNames, r.u32(84));
    if (blit)
        out.print("          \"Blit Image\": {\n            \"Filter\": %s,\n            \"Source Vulkan Obj ID\": %d,\n"
                  "            \"Source Vulkan Obj Type\": %s,\n            \"Source Image Layout\": %s,\n"
                  "            \"Destination Vulkan Obj ID\": %d,\n            \"Destination Vulkan Obj Type\": %s,\n"
                  "            \"Destination Image Layout\": %s,\n          }\n",
                  lookupName(VulkanFilterNames, r.u32(88)), r.i32(64), sourceType, sourceLayout, r.i32(72),
                  destinationType, destinationLayout);
    else
        out.print("          \"Copy Image\": {\n            \"Source Vulkan Obj ID\": %d,\n"
                  "            \"Source Vulkan Obj Type\": %s,\n            \"Source Image Layout\": %s,\n"
                  "            \"Destination Vulkan Obj ID\": %d,\n            \"Destination Vulkan Obj Type\": %s,\n"
                  "            \"Destination Image Layout\": %s,\n          }\n",
                  r.i32(64), sourceType, sourceLayout, r.i32(72), destinationType, destinationLayout);
}

// Copies between a buffer and an image: the one layout belongs to the side
// that is the image.
void printBufferImageCopy(Output& out, const Packet& r)
{
    const std::uint32_t sourceTypeValue = r.u32(68);
    const char* sourceType = vulkanObjectTypeName(sourceTypeValue);
    const char* destinationType = vulkanObjectTypeName(r.u32(76));
    const char* layout = lookupName(VulkanImageLayoutNames, r.u32(80));
    out.print("          \"Copy From %s To %s\": {\n            \"Source Vulkan Obj ID\": %d,\n"
              "            \"Destination Vulkan Obj ID\": %d,\n            \"%s Image Layout\": %s,\n          }\n",
              sourceType, destinationType, r.i32(64), r.i32(72),
              sourceTypeValue == kImageObjectType ? "Source" : "Destination", layout);
}

} // namespace

void printReference(Output& out, const Packet& record, std::size_t offset, ReferenceDepth depth)
{
    const char* type = vulkanObjectTypeName(record.u32(offset + 4));
    if (depth == ReferenceDepth::Member)
        out.print("            \"Attached Vulkan Obj ID\": %d,\n            \"Attached Vulkan Obj Type\": %s,\n",
                  record.i32(offset), type);
    else
        out.print("                \"Attached Vulkan Obj ID\": %d,\n                \"Attached Vulkan Obj Type\": %s,\n",
                  record.i32(offset), type);
}

void printReferenceList(Output& out, const Packet& record, std::size_t countOffset)
{
    const std::uint32_t count = record.fitCount(countOffset + 4, record.u32(countOffset), 8);
    for (std::uint32_t i = 0; i < count; ++i) printReference(out, record, countOffset + 4 + 8 * std::size_t{i});
}

const char* trueOrFalse(std::uint32_t flags, int bit) { return (flags >> bit) & 1 ? "true" : "false"; }

void printVulkanApiInfo(StreamFile& file, const Packet& record)
{
    Output& out = file.out;
    const Packet& r = record;
    out.print("        \"API Info\": {\n");
    switch (r.u32(kEventTypeOffset)) {
    case 211: printRenderPassRecord(out, r); break;
    case 213:
        out.print("          \"Execute Commands\": {\n");
        printReferenceList(out, r, 64);
        out.print("          }\n");
        break;
    case 214: printGraphicsPipeline(out, r); break;
    case 217: printQueueSubmissions(out, r); break;
    case 219: printRenderPass(out, r); break;
    case 222:
        out.print("          \"Create Compute Pipeline\": {\n");
        printReference(out, r, 64);
        printReference(out, r, 72);
        out.print("          }\n");
        break;
    case 223:
        out.print("          \"Create Pipeline Layout\": {\n");
        printReferenceList(out, r, 64);
        out.print("          }\n");
        break;
    case 224: printFramebuffer(out, r); break;
    case 225: printImageView(out, r); break;
    case 226: printImage(out, r); break;
    case 227: printSampler(out, r); break;
    case 228: printDescriptorSetLayout(out, r); break;
    case 229:
        out.print("          \"Create Descriptor Set\": {\n            \"Attached Vulkan Obj ID\": %d,\n"
                  "            \"Attached Vulkan Obj Type\": %s,\n          }\n",
                  r.i32(64), vulkanObjectTypeName(r.u32(68)));
        break;
    case 230: printDescriptorUpdates(out, r); break;
    case 235: {
        const char* usage = vulkanBufferUsageText(r.u32(64));
        out.print("          \"Create Buffer\": {\n            \"Usage\": %s,\n            \"Size\": %llu,\n          }\n", usage,
                  static_cast<unsigned long long>(r.u64(72)));
        break;
    }
    case 242:
    case 243:
        out.print("          \"Bind Pipeline\": {\n            \"Attached Vulkan Obj ID\": %d,\n"
                  "            \"Attached Vulkan Obj Type\": %s,\n          }\n",
                  r.i32(64), vulkanObjectTypeName(r.u32(68)));
        break;
    case 244:
    case 245: {
        // One object per descriptor set.
        const std::uint32_t count = r.fitCount(68, r.u32(64), 8);
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::size_t at = 68 + 8 * std::size_t{i};
            out.print("          \"Bind Descriptor Set\": {\n            \"Attached Vulkan Obj ID\": %d,\n"
                      "            \"Attached Vulkan Obj Type\": %s,\n          }\n",
                      r.i32(at), vulkanObjectTypeName(r.u32(at + 4)));
        }
        break;
    }
    case 248: printCopyBuffer(out, r); break;
    case 249: printCopyImage(out, r, false); break;
    case 250: printCopyImage(out, r, true); break;
    case 251:
    case 252: printBufferImageCopy(out, r); break;
    default: break; // events without detail
    }
    // The converter continues this line.
    out.print("        }");
}

} // namespace client
