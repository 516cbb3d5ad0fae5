#include <gtest/gtest.h>

#include "client/client_printers.h"
#include "printer_fixture.h"

using namespace client;

namespace {

// A Vulkan mark record of `size` bytes (from the first byte after the
// packet header) for the event type; detail records start at 64.
Record vulkanRecord(std::uint32_t type, std::size_t size)
{
    Record record(size);
    record.u32(16, type);
    return record;
}

std::string apiInfo(Record& record, std::string* console = nullptr)
{
    PrinterRun run;
    printVulkanApiInfo(run.file, record.packet());
    if (console) *console = run.console;
    return run.json;
}

std::string wrapped(const std::string& detail) { return "        \"API Info\": {\n" + detail + "        }"; }

std::string reference(int id, const char* type, const char* indent = "            ")
{
    return std::string(indent) + "\"Attached Vulkan Obj ID\": " + std::to_string(id) + ",\n" + indent +
           "\"Attached Vulkan Obj Type\": " + type + ",\n";
}

} // namespace

TEST(VulkanApiInfo, EventsWithoutDetailAndReferenceLists)
{
    Record draw = vulkanRecord(212, 96);
    EXPECT_EQ(apiInfo(draw), wrapped(""));
    Record noSubmission = vulkanRecord(217, 68);
    EXPECT_EQ(apiInfo(noSubmission), wrapped(""));

    // Two submissions of one and two command buffers; the second group
    // starts 12 bytes after the first.
    Record submit = vulkanRecord(217, 100);
    submit.u32s(64, {2, 1, 11, 1, 2, 12, 1, 13, 29});
    std::string console;
    EXPECT_EQ(apiInfo(submit, &console),
              wrapped("          \"Queue Submission\": {\n" + reference(11, "01_CommandBuffer") + "          }\n" +
                      "          \"Queue Submission\": {\n" + reference(12, "01_CommandBuffer") +
                      reference(13, "OUT_OF_BOUNDS") + "          }\n"));
    EXPECT_EQ(console, "Warning: Zyntel packet unknown Vulkan object type (29)!\n");

    Record bind = vulkanRecord(244, 84);
    bind.u32s(64, {2, 4, 13, 5, 13});
    EXPECT_EQ(apiInfo(bind), wrapped("          \"Bind Descriptor Set\": {\n" + reference(4, "13_DescriptorSet") +
                                     "          }\n          \"Bind Descriptor Set\": {\n" +
                                     reference(5, "13_DescriptorSet") + "          }\n"));

    Record pass = vulkanRecord(211, 88);
    pass.u32s(64, {1920, 1080, 3, 17, 0xFFFFFFFF, 16});
    EXPECT_EQ(apiInfo(pass), wrapped("          \"Render Pass Record\": {\n            \"Render Area Width\": 1920,\n"
                                     "            \"Render Area Height\": 1080,\n" +
                                     reference(3, "17_RenderPass") + reference(-1, "16_Framebuffer") +
                                     "          }\n"));
}

TEST(VulkanApiInfo, GraphicsPipelineWithStencilBlendObjectsAndStages)
{
    // Flags: depth test and stencil test. Cull mode 7 is unknown.
    Record pipeline = vulkanRecord(214, 136 + 28 + 8 + 12);
    pipeline.u32s(64, {0x12, 7, 2, 4, 3, 2, 4});
    pipeline.u32s(92, {1, 2, 3, 8, 9, 1, 1, 1});
    pipeline.u32s(124, {1, 1, 1});
    pipeline.u32s(136, {0x101, 7, 8, 51, 2, 1, 52});
    pipeline.u32s(164, {21, 5});
    pipeline.u32s(172, {0x1F, 22, 7});
    std::string console;
    EXPECT_EQ(apiInfo(pipeline, &console),
              wrapped("          \"Create Graphics Pipeline\": {\n            \"Cull Mode\": OUT_OF_BOUNDS,\n"
                      "            \"Front Face\": 02_Clockwise,\n            \"Primitive Topology\": 04_TriangleList,\n"
                      "            \"Raster Samples\": 03_4,\n            \"Depth Compare Op\": 02_Less,\n"
                      "            \"Blend Logic Op\": 04_Copy,\n            \"Rasterizer Discard\": false,\n"
                      "            \"Depth Test Enabled\": true,\n            \"Depth Write Enabled\": false,\n"
                      "            \"Depth Bounds Enabled\": false,\n            \"Stencil Test Enabled\": true,\n"
                      "            \"Blend Logic Op Enabled\": false,\n"
                      "            \"Stencil State\": Front {\n              \"Fail Op\": 01_Keep,\n"
                      "              \"Pass Op\": 02_Zero,\n              \"Depth Fail Op\": 03_Replace,\n"
                      "              \"Compare Op\": 08_Always,\n            }\n"
                      "            \"Stencil State\": Back {\n              \"Fail Op\": OUT_OF_BOUNDS,\n"
                      "              \"Pass Op\": 01_Keep,\n              \"Depth Fail Op\": 01_Keep,\n"
                      "              \"Compare Op\": 01_Never,\n            }\n"
                      "            \"Colour Attachment Blend State\": {\n              \"Enabled\": true,\n"
                      "              \"Source Colour Blend Factor\": 07_SourceAlpha,\n"
                      "              \"Destination Colour Blend Factor\": 08_OneMinusSourceAlpha,\n"
                      "              \"Colour Blend Op\": LAST,\n              \"Source Alpha Blend Factor\": 02_One,\n"
                      "              \"Destination Alpha Blend Factor\": 01_Zero,\n"
                      "              \"Alpha Blend Op\": OUT_OF_BOUNDS,\n            }\n" +
                      reference(21, "05_GraphicsPipeline") +
                      "            \"Shader Stage\": 06_AllGraphics |  {\n              \"Attached Vulkan Obj ID\": 22,\n"
                      "              \"Attached Vulkan Obj Type\": 07_ShaderModule,\n            }\n"
                      "          }\n"));
    EXPECT_EQ(console, "Warning: Zyntel packet unknown Vulkan cull mode (7)!\n"
                       "Warning: Zyntel packet unknown Vulkan stencil op (9)!\n"
                       "Warning: Zyntel packet unknown Vulkan blend op (52)!\n");
}

TEST(VulkanApiInfo, RenderPassWalksItsSubpassesToTheDependencies)
{
    // One attachment at 76, subpasses at 108 (one reference) and 128 (three),
    // the dependency at 172.
    Record pass = vulkanRecord(219, 196);
    pass.u32s(64, {1, 2, 1});
    pass.u32s(76, {32, 1, 2, 1, 3, 2, 1, 3});
    pass.u32s(108, {1, 1, 0, 3, 1});
    pass.u32s(128, {1, 3, 0xFFFFFFFF, 4, 4, 1, 6, 3, 2, 15, 2});
    pass.u32s(172, {0xFFFFFFFF, 0, 0x8001, 0x18000, 0x3, 0});
    std::string console;
    EXPECT_EQ(apiInfo(pass, &console),
              wrapped("          \"Create Renderpass\": {\n"
                      "            \"Attachment Description\": {\n              \"Pixel Format\": R8G8B8A8_UNORM,\n"
                      "              \"Samples\": 01_1,\n              \"Load Op\": 02_Clear,\n"
                      "              \"Store Op\": 01_Store,\n              \"Stencil Load Op\": 03_DontCare,\n"
                      "              \"Stencil Store Op\": 02_DontCare,\n"
                      "              \"Initial Image Layout\": 01_Undefined,\n"
                      "              \"Final Image Layout\": 03_ColourAttachmentOptimal,\n            }\n"
                      "            \"Subpass\": {\n              \"Pipeline Bind Point\": 01_Graphics,\n"
                      "              \"Attachment Reference\": {\n                \"Attachment\": 0,\n"
                      "                \"Image Layout\": 03_ColourAttachmentOptimal,\n"
                      "                \"Attachment Type\": 01_Colour,\n              }\n            }\n"
                      "            \"Subpass\": {\n              \"Pipeline Bind Point\": 01_Graphics,\n"
                      "              \"Attachment Reference\": {\n                \"Attachment\": -1,\n"
                      "                \"Image Layout\": 04_DepthStencilAttachmentOptimal,\n"
                      "                \"Attachment Type\": 04_DepthStencil,\n              }\n"
                      "              \"Attachment Reference\": {\n                \"Attachment\": 1,\n"
                      "                \"Image Layout\": 06_ShaderReadOnlyOptimal,\n"
                      "                \"Attachment Type\": 03_Input,\n              }\n"
                      "              \"Attachment Reference\": {\n                \"Attachment\": 2,\n"
                      "                \"Image Layout\": OUT_OF_BOUNDS,\n"
                      "                \"Attachment Type\": 02_Resolve,\n              }\n            }\n"
                      "            \"Subpass Dependency\": {\n              \"Source Subpass\": -1,\n"
                      "              \"Destination Subpass\": 0,\n"
                      "              \"Source Pipeline Stages\": 16_AllGraphics | ,\n"
                      "              \"Destination Pipeline Stages\": 17_AllCommands,\n"
                      "              \"Source Access\": 02_IndexRead | ,\n"
                      "              \"Destination Access\": 00_Invalid,\n            }\n"
                      "          }\n"));
    EXPECT_EQ(console, "Warning: Zyntel packet unknown Vulkan image layout (15)!\n");
}

TEST(VulkanApiInfo, DescriptorWritesSizeTheirItemsByDescriptorType)
{
    // Type 1: one image item (20 bytes); type 7: two buffer items (8 bytes
    // each); type 13: one item without content (which, taking no bytes,
    // still has to start inside the record).
    Record update = vulkanRecord(230, 144);
    update.u32s(64, {3});
    update.u32s(68, {1, 5, 1, 6, 40, 12, 41, 11});
    update.u32s(100, {7, 6, 2, 50, 18, 51, 18});
    update.u32s(128, {13, 7, 1});
    std::string console;
    const char* item = "                ";
    EXPECT_EQ(apiInfo(update, &console),
              wrapped("          \"Update Descriptor Set\": {\n"
                      "            \"Descriptor Set Write\": {\n              \"Descriptor Object ID\": 5,\n"
                      "              \"Descriptor Type\": 01_Sampler,\n              {\n"
                      "                \"Image Layout\": 06_ShaderReadOnlyOptimal,\n" +
                      reference(40, "12_Sampler", item) + reference(41, "11_ImageView", item) +
                      "              }\n            }\n"
                      "            \"Descriptor Set Write\": {\n              \"Descriptor Object ID\": 6,\n"
                      "              \"Descriptor Type\": 07_UniformBuffer,\n              {\n" +
                      reference(50, "18_Buffer", item) + "              }\n              {\n" +
                      reference(51, "18_Buffer", item) + "              }\n            }\n" +
                      "            \"Descriptor Set Write\": {\n              \"Descriptor Object ID\": 7,\n"
                      "              \"Descriptor Type\": 13_AccelerationStructureNV,\n"
                      "              {\n              }\n            }\n"
                      "          }\n"));
    EXPECT_EQ(console, "Warning: Zyntel packet unknown Vulkan descriptor type (13)!\n");
}

TEST(VulkanApiInfo, ImagesAndBuffersNameTheirUsageByTheLastBit)
{
    Record image = vulkanRecord(226, 112);
    image.u32s(64, {256, 128, 1, 9, 6, 0x3, 32, 2, 3, 1, 15, 13});
    std::string console;
    EXPECT_EQ(apiInfo(image, &console),
              wrapped("          \"Create Image\": {\n            \"Width\": 256,\n            \"Height\": 128,\n"
                      "            \"Depth\": 1,\n            \"Pixel Format\": R8G8B8A8_UNORM,\n"
                      "            \"Type\": 02_2D,\n            \"Usage Flags\": 02_TransferDestination | ,\n"
                      "            \"MipMap Levels\": 9,\n            \"Array Layers\": 6,\n"
                      "            \"Samples\": 03_4,\n            \"Tiling Type\": 01_Optimal,\n"
                      "            \"Initial Layout\": OUT_OF_BOUNDS,\n            \"FBC Type\": Unknown,\n"
                      "          }\n"));
    EXPECT_EQ(console, "Warning: Zyntel packet unknown Vulkan image layout (15)!\n"
                       "Warning: Zyntel packet unknown FBC mode (13)!\n");

    Record buffer = vulkanRecord(235, 80);
    buffer.u32(64, (1u << 10) | (1u << 20)).u64(72, 1ull << 33);
    EXPECT_EQ(apiInfo(buffer), wrapped("          \"Create Buffer\": {\n            \"Usage\": 17_ShaderBindingTableKHR,\n"
                                       "            \"Size\": 8589934592,\n          }\n"));
}

TEST(VulkanApiInfo, SamplersLayoutsFramebuffersAndViews)
{
    Record sampler = vulkanRecord(227, 96);
    sampler.u32s(64, {2, 1, 2, 1, 3, 6, 4, 0x5});
    Record layout = vulkanRecord(228, 100);
    layout.u32s(64, {2, 0, 1, 0x10, 1, 1, 4, 0x20, 14});
    std::string console;
    EXPECT_EQ(apiInfo(sampler, &console),
              wrapped("          \"Create Sampler\": {\n            \"Magnification Filter\": 02_Linear,\n"
                      "            \"Minification Filter\": 01_Nearest,\n            \"MipMap Mode\": 02_Linear,\n"
                      "            \"Address Mode U\": 01_Repeat,\n            \"Address Mode V\": 03_ClampToEdge,\n"
                      "            \"Address Mode W\": OUT_OF_BOUNDS,\n            \"Compare Op\": 04_LessOrEqual,\n"
                      "            \"Anisotropic Filtering Enabled\": true,\n            \"Compare Op Enabled\": false,\n"
                      "            \"Un-normalized Co-ordinates Enabled\": true,\n          }\n"));
    EXPECT_EQ(console, "Warning: Zyntel packet unknown Vulkan sampler address mode (6)!\n");
    EXPECT_EQ(apiInfo(layout, &console),
              wrapped("          \"Create Descriptor Set Layout\": {\n            \"Binding\": 0,\n"
                      "            \"Descriptor Count\": 1,\n            \"Descriptor Type\": 01_Sampler,\n"
                      "            \"Shader Stages\": 05_Fragment | ,\n          }\n"
                      "          \"Create Descriptor Set Layout\": {\n            \"Binding\": 1,\n"
                      "            \"Descriptor Count\": 4,\n            \"Descriptor Type\": OUT_OF_BOUNDS,\n"
                      "            \"Shader Stages\": 07_Compute | ,\n          }\n"));
    EXPECT_EQ(console, "Warning: Zyntel packet unknown Vulkan descriptor type (14)!\n");

    Record framebuffer = vulkanRecord(224, 88);
    framebuffer.u32s(64, {800, 600, 1, 1, 11, 11});
    Record view = vulkanRecord(225, 84);
    view.u32s(64, {2, 32, 1, 10, 10});
    EXPECT_EQ(apiInfo(framebuffer) + apiInfo(view),
              wrapped("          \"Create Framebuffer\": {\n            \"Framebuffer Width\": 800,\n"
                      "            \"Framebuffer Height\": 600,\n            \"Framebuffer Layers\": 1,\n" +
                      reference(11, "11_ImageView") + "          }\n") +
                  wrapped("          \"Create Image View\": {\n            \"Type\": 02_2D,\n"
                          "            \"Pixel Format\": R8G8B8A8_UNORM,\n" +
                          reference(10, "10_Image") + "          }\n"));
}

TEST(VulkanApiInfo, CopiesNameTheLayoutOfTheImageSide)
{
    Record toImage = vulkanRecord(251, 84);
    toImage.u32s(64, {1, 18, 2, 10, 8});
    Record toBuffer = vulkanRecord(252, 84);
    toBuffer.u32s(64, {2, 10, 1, 18, 7});
    EXPECT_EQ(apiInfo(toImage) + apiInfo(toBuffer),
              wrapped("          \"Copy From 18_Buffer To 10_Image\": {\n            \"Source Vulkan Obj ID\": 1,\n"
                      "            \"Destination Vulkan Obj ID\": 2,\n"
                      "            \"Destination Image Layout\": 08_TransferDestinationOptimal,\n          }\n") +
                  wrapped("          \"Copy From 10_Image To 18_Buffer\": {\n            \"Source Vulkan Obj ID\": 2,\n"
                          "            \"Destination Vulkan Obj ID\": 1,\n"
                          "            \"Source Image Layout\": 07_TransferSourceOptimal,\n          }\n"));

    Record blit = vulkanRecord(250, 92);
    blit.u32s(64, {3, 10, 4, 10, 7, 8, 2});
    EXPECT_EQ(apiInfo(blit),
              wrapped("          \"Blit Image\": {\n            \"Filter\": 02_Linear,\n"
                      "            \"Source Vulkan Obj ID\": 3,\n            \"Source Vulkan Obj Type\": 10_Image,\n"
                      "            \"Source Image Layout\": 07_TransferSourceOptimal,\n"
                      "            \"Destination Vulkan Obj ID\": 4,\n            \"Destination Vulkan Obj Type\": 10_Image,\n"
                      "            \"Destination Image Layout\": 08_TransferDestinationOptimal,\n          }\n"));
}

TEST(VulkanApiInfo, ListsEndWhereTheRecordEnds)
{
    // Counts that claim far more than the records hold.
    Record submit = vulkanRecord(217, 80);
    submit.u32s(64, {0xFFFFFFFF, 0xFFFFFFFF, 7, 1});
    EXPECT_EQ(apiInfo(submit), wrapped("          \"Queue Submission\": {\n" + reference(7, "01_CommandBuffer") +
                                       "          }\n"));

    // Items without bytes keep their count whatever room is left (30 items
    // with 20 bytes behind the write's head), up to 1024 for a hostile count.
    Record update = vulkanRecord(230, 100);
    update.u32s(64, {1, 12, 9, 30});
    std::string console, items, warnings;
    for (int i = 0; i < 30; ++i) {
        items += "              {\n              }\n";
        warnings += "Warning: Zyntel packet unknown Vulkan descriptor type (12)!\n";
    }
    EXPECT_EQ(apiInfo(update, &console),
              wrapped("          \"Update Descriptor Set\": {\n"
                      "            \"Descriptor Set Write\": {\n              \"Descriptor Object ID\": 9,\n"
                      "              \"Descriptor Type\": 12_InlineUniformBlock,\n" +
                      items + "            }\n          }\n"));
    EXPECT_EQ(console, warnings);
    Record hostile = vulkanRecord(230, 80);
    hostile.u32s(64, {1, 13, 9, 0xFFFFFFFF});
    const std::string flood = apiInfo(hostile);
    std::size_t pairs = 0;
    for (std::size_t at = flood.find("              {\n"); at != std::string::npos; at = flood.find("              {\n", at + 1))
        ++pairs;
    EXPECT_EQ(pairs, 1024u);

    Record pass = vulkanRecord(219, 84);
    pass.u32s(64, {0, 0xFFFFFFFF, 0xFFFFFFFF, 1, 0xFFFFFFFF});
    EXPECT_EQ(apiInfo(pass), wrapped("          \"Create Renderpass\": {\n"
                                     "            \"Subpass\": {\n              \"Pipeline Bind Point\": 01_Graphics,\n"
                                     "            }\n          }\n"));
}
