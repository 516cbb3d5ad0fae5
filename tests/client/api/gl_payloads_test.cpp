#include <gtest/gtest.h>

#include "client/client_printers.h"
#include "printer_fixture.h"

using namespace client;

namespace {

// Kick record: render-target count 12, framebuffer flags 16, ZLS flags 20,
// load address 24, store address 32, ZLS size 40, targets of 24 bytes at 56.
Record kickRecord(std::uint32_t targets)
{
    Record kick(56 + 24 * targets);
    kick.u32(12, targets);
    return kick;
}

void setTarget(Record& kick, std::uint32_t index, std::uint64_t address, std::uint32_t size, std::uint32_t format,
               std::uint32_t flags)
{
    const std::size_t at = 56 + 24 * index;
    kick.u64(at, address).u32(at + 8, size).u32(at + 12, format).u32(at + 16, flags);
}

std::string renderTargets(bool openGl, Record& kick, std::size_t capacity)
{
    std::string text(capacity + 1, '#');
    formatRenderTargets(openGl, text.data(), capacity, kick.packet());
    return text.substr(0, text.find('\0'));
}

std::string zlsInfo(Record& kick)
{
    char text[512];
    formatZlsInfo(text, sizeof text, kick.packet());
    return text;
}

const char* const kNoFlagsLines = "        \"DefaultFB\": \"N\",\n        \"ZOnly\": \"N\",\n        \"Invalidate\": \"N\",\n"
                                  "        \"Kick3D\": \"N\",\n        \"MSAA Mode\": \"None\",\n";

} // namespace

TEST(RenderTargets, FramebufferFlagsAndTargetsOfEachKind)
{
    Record empty = kickRecord(0);
    EXPECT_EQ(renderTargets(false, empty, 512), std::string(kNoFlagsLines) + "        \"SurfaceCount\":0\n");

    // Flags: default FB and 3D kick, 4x MSAA. A colour target (dithering,
    // rotation 180, layout 3, compression 2) and a depth target.
    Record kick = kickRecord(2);
    kick.u32(16, 0x29);
    setTarget(kick, 0, 0xABC000, (600u << 16) | 800, 32, 0x00020231);
    setTarget(kick, 1, 0xDEF000, (16u << 16) | 32, 338, 0x00051000);
    const std::string expected = "        \"DefaultFB\": \"Y\",\n        \"ZOnly\": \"N\",\n        \"Invalidate\": \"N\",\n"
                                 "        \"Kick3D\": \"Y\",\n        \"MSAA Mode\": \"4x\",\n"
                                 "        \"RenderTarget0\": {\n           \"Type\": \"Colour\",\n"
                                 "           \"Address\": \"0xABC000\",\n           \"Size\":\"800 x 600\",\n"
                                 "           \"QTXPixFmt\":\"R8G8B8A8_UNORM\",\n           \"CompressionFmt\": \"2\",\n"
                                 "           \"MemLayout\": \"3\",\n           \"Rotation\": \"180\",\n"
                                 "           \"Downscale\": \"N\",\n           \"EnableDithering\": \"Y\"\n        },\n"
                                 "        \"RenderTarget1\": {\n           \"Type\": \"Depth\",\n"
                                 "           \"Address\": \"DEF000\",\n           \"Size\":\"32 x 16\",\n"
                                 "           \"QTXPixFmt\":\"L16_SNORM\",\n           \"CompressionFmt\": \"0\",\n"
                                 "           \"MemLayout\": \"0\",\n           \"Rotation\": \"Bad\"\n        }\n";
    EXPECT_EQ(renderTargets(false, kick, 1024), expected);

    // The buffer is cut where it ends, like a bounded print.
    EXPECT_EQ(renderTargets(false, kick, 300), expected.substr(0, 299));
}

TEST(RenderTargets, TypeNamesFollowTheDecisionOrderAndTheApiVariant)
{
    Record kick = kickRecord(5);
    const std::uint32_t types[] = {5, 4, 3, 2, 9};
    for (std::uint32_t i = 0; i < 5; ++i) setTarget(kick, i, 0, 0, 0, types[i] << 12);
    auto typeLines = [](const std::string& text) {
        std::string lines;
        for (std::size_t at = text.find("\"Type\""); at != std::string::npos; at = text.find("\"Type\"", at + 1))
            lines += text.substr(at, text.find('\n', at) - at) + "\n";
        return lines;
    };
    const char* const rest = "\"Type\": \"MSAAScratch\",\n\"Type\": \"DepthStencil\",\n\"Type\": \"Stencil\",\n"
                             "\"Type\": \"Unknown\",\n";
    EXPECT_EQ(typeLines(renderTargets(true, kick, 2560)), std::string("\"Type\": \"Accumulate\",\n") + rest);
    EXPECT_EQ(typeLines(renderTargets(false, kick, 2560)), std::string("\"Type\": \"Accum\",\n") + rest);
}

TEST(RenderTargets, OnlyTargetsInsideTheRecordArePrinted)
{
    Record kick = kickRecord(1);
    kick.u32(12, 1000);
    const std::string text = renderTargets(false, kick, 4096);
    EXPECT_NE(text.find("\"RenderTarget0\""), std::string::npos);
    EXPECT_EQ(text.find("\"RenderTarget1\""), std::string::npos);
    EXPECT_TRUE(text.ends_with("        }\n")) << text;
}

TEST(ZlsInfo, LoadAndStoreLinesFollowTheFlags)
{
    Record kick = kickRecord(0);
    kick.u64(24, 0x1000).u64(32, 0x2000).u32(40, (480u << 16) | 640);
    EXPECT_EQ(zlsInfo(kick), "");

    kick.u32(20, 0x10);
    EXPECT_EQ(zlsInfo(kick), "        \"ZLSSize\": \"640 x 480\",\n");

    kick.u32(20, 0x4);
    EXPECT_EQ(zlsInfo(kick), "         \"SLoad\": \"Y\",\n        \"ZLSLoadAddress\": \"0x1000\",\n"
                             "        \"ZLoadCompressedFormat\": \"NONE\",\n        \"ZLSSize\": \"640 x 480\",\n");

    // Depth load/store and stencil store; load format 2, store format 5.
    kick.u32(20, 0xA4B);
    EXPECT_EQ(zlsInfo(kick), "        \"ZLoad\": \"Y\",\n        \"ZLSLoadAddress\": \"0x1000\",\n"
                             "        \"ZLoadCompressedFormat\": \"I24\",\n        \"ZStore\": \"Y\",\n"
                             "        \"SStore\": \"Y\",\n        \"ZLSStoreAddress\": \"0x2000\",\n"
                             "        \"ZStoreCompressedFormat\": \"Unknown\",\n        \"ZLSSize\": \"640 x 480\",\n");
}

TEST(DrawParams, KeysTakeTheParametersInOrderForTheApisOwnIds)
{
    Record draw(64);
    draw.u32s(16, {4, 36, 5123, 7, 100, 200});

    PrinterRun gles;
    draw.u32(0, 13);
    printDrawParams(false, gles.file, draw.packet());
    draw.u32(0, 10);
    printDrawParams(false, gles.file, draw.packet());
    draw.u32(0, 266); // a GL id means nothing to GLES
    printDrawParams(false, gles.file, draw.packet());
    EXPECT_EQ(gles.json, "        \"Mode\": 4,\n        \"Element Count\": 36,\n        \"Type\": 5123,\n"
                         "        \"Base Vertex\": 7,\n        \"Range Start\": 100,\n        \"Range End\": 200,\n"
                         "        \"Mode\": 4,\n        \"Type\": 36,\n");

    PrinterRun gl;
    printDrawParams(true, gl.file, draw.packet());
    draw.u32(0, 261);
    printDrawParams(true, gl.file, draw.packet());
    draw.u32(0, 272);
    printDrawParams(true, gl.file, draw.packet());
    EXPECT_EQ(gl.json, "        \"Mode\": 4,\n        \"Type\": 36,\n"
                       "        \"Mode\": 4,\n        \"Index Count\": 36,\n        \"First\": 5123,\n");
}

TEST(DispatchData, ShaderFieldsDependOnThePacketSize)
{
    Record dispatch(80);
    dispatch.u64(64, 0x123456789).u32(72, 3);
    PrinterRun run;
    for (std::uint32_t size : {88u, 96u, 100u, 104u}) printDispatchData(false, run.file, dispatch.packet(), size);
    printDispatchData(true, run.file, dispatch.packet(), 100);
    EXPECT_EQ(run.json, "        \"No shader data\",\n"
                        "        \"Csh ID\": 4886718345,\n"
                        "        \"No shader data\",\n"
                        "        \"Csh Variant\": 3,\n        \"Csh ID\": 4886718345,\n"
                        "        \"No shader data\",\n");
    EXPECT_EQ(run.console, "Warning: Zyntel GLES dispatch event shader data invalid size: 12!\n"
                           "Warning: Zyntel GL dispatch event shader data invalid size: 12!\n");
}

TEST(Surfaces, NamesDepthAndWarningsPerSurface)
{
    // Surface 0: 3D twiddled with depth 6, FBC 13, MSAA 5; surface 1: layout
    // 9, FBC 255, 2x MSAA. The count claims a third that is not there.
    Record tq(48);
    tq.u64(0, 0xF000).u64(8, (6ull << 48) | (64ull << 24) | 128).u32(16, (13u << 24) | (2u << 3) | 5).u32(20, 86);
    tq.u64(24, 0xE000).u64(32, (9ull << 48) | (2ull << 24) | 4).u32(40, (255u << 24) | (9u << 3) | 1).u32(44, 400);
    PrinterRun run;
    printSurfaces(run.file, tq.packet(), 3);
    EXPECT_EQ(run.json, "        \"surface 0\": {\n          \"Address\": \"0xF000\",\n          \"width\": \"128\",\n"
                        "          \"height\": \"64\",\n          \"depth\": \"6\",\n"
                        "          \"pixel format\": \"B5G6R5_UNORM\",\n          \"MSAA mode\": \"Unknown\",\n"
                        "          \"FBC mode\": \"Unknown\",\n          \"memory layout\": \"3D Twiddled\",\n        }\n"
                        "        \"surface 1\": {\n          \"Address\": \"0xE000\",\n          \"width\": \"4\",\n"
                        "          \"height\": \"2\",\n          \"depth\": \"n/a\",\n"
                        "          \"pixel format\": \"UNKNOWN\",\n          \"MSAA mode\": \"2x\",\n"
                        "          \"FBC mode\": \"Unknown\",\n          \"memory layout\": \"Unknown\",\n        }\n");
    EXPECT_EQ(run.console, "Warning: Zyntel packet unknown MSAA mode (5)!\n"
                           "Warning: Zyntel packet unknown FBC mode (13)!\n"
                           "Warning: Zyntel packet unknown FBC mode (255)!\n"
                           "Warning: Zyntel packet unknown memory layout (9)!\n");
}

TEST(EglApiInfo, CreateContextTypeAndSharedContext)
{
    Record create(24);
    create.u32(0, 45).u32(16, 0xFFFFFFFF).u32(20, 0xF5);
    PrinterRun run;
    printEglApiInfo(run.file, create.packet());
    create.u32(16, 7).u32(20, 2);
    printEglApiInfo(run.file, create.packet());
    create.u32(0, 44);
    printEglApiInfo(run.file, create.packet());
    EXPECT_EQ(run.json, "        \"API Info\": {\n          \"EGL Context Type:\": \"Unknown\",\n"
                        "          \"Shared EGL Context ID:\": \"EGL_NO_CONTEXT\"\n        }\n"
                        "        \"API Info\": {\n          \"EGL Context Type:\": \"02_OpenGLES3\",\n"
                        "          \"Shared EGL Context ID:\": 7\n        }\n"
                        "        \"API Info\": {\n        }\n");
    EXPECT_EQ(run.console, "Warning: Zyntel packet unknown EGL context type (5)!\n");
}
