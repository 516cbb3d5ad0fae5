// OpenGL ES and OpenGL sub-streams: pairing by function id, kicks with
// render targets, draws, TQ kicks, shader compiles, memory operations,
// dispatches and invocation counts, in both modes.
#include <gtest/gtest.h>

#include "client_fixture.h"

namespace {

constexpr std::uint32_t kGl = 96; // OpenGL types repeat the GLES ones 96 higher

ClientPacket drawStart(std::uint32_t function, std::uint32_t ordinal, std::uint64_t timer)
{
    return ClientPacket(70, 80).u32(24, function).u32(32, 3).ordinal(ordinal).timer(timer);
}

// A DrawArrays end: context 3, job 9, vertex and fragment shaders.
ClientPacket drawEnd(std::uint32_t ordinal, std::uint64_t timer)
{
    return ClientPacket(71, 80).u32(24, 5).u32(28, 3).u32(32, 9).u32(36, 0x3).u32(40, 4).u32(44, 6).u32(48, 0)
        .u64(64, 11).u64(72, 12).ordinal(ordinal).timer(timer);
}

const std::string kDrawTail = "        \"Mode\": 4,\n        \"Index Count\": 6,\n        \"First\": 0,\n"
                              "        \"Vsh ID\": 11,\n        \"Fsh ID\": 12,\n      }\n    }";

TEST(ClientGl, DrawPairsByFunctionId)
{
    // A pair, a second end without begin, then two begins before one end.
    Capture capture;
    capture.add(drawStart(5, 0, 100)).add(drawEnd(1, 200)).add(drawEnd(2, 250))
        .add(drawStart(5, 3, 300)).add(drawStart(5, 4, 350)).add(drawEnd(5, 400));
    EXPECT_EQ(correlatedElements(capture),
              period(100, 200, "DRAW_SCOPE") +
                  "        \"type\": \"05_DrawArrays\",\n        \"jobref\": 9,\n        \"context ID\": 3,\n" + kDrawTail +
                  ",\n" + period(350, 400, "DRAW_SCOPE") +
                  "        \"type\": \"05_DrawArrays\",\n        \"jobref\": 9,\n        \"context ID\": 3,\n" + kDrawTail);

    Capture one;
    one.add(drawStart(5, 0, 100)).add(drawEnd(1, 200));
    EXPECT_EQ(rawElements(one),
              envelope(80, "06_DrawStart", 0, 100, "OpenGLES") +
                  "      \"mark\": {\n        \"ID:\": \"05_DrawArrays\",\n        \"Context ID\": 3\n      }\n    },\n" +
                  envelope(80, "07_DrawEnd", 1, 200, "OpenGLES") +
                  "      \"mark\": {\n        \"ID:\": \"05_DrawArrays\",\n        \"JobRef:\": 9,\n        \"Context ID\": 3,\n" +
                  kDrawTail);
}

TEST(ClientGl, DrawEndOfOpenGlWithShaderVariants)
{
    // Vertex and tessellation-evaluation shaders, each with its variant.
    Capture capture;
    capture.add(ClientPacket(71 + kGl, 96).u32(24, 269).u32(28, 3).u32(32, 9).u32(36, 0x80000021)
                    .u32(40, 4).u32(44, 6).u32(48, 5123).u32(52, 7).u32(56, 100).u32(60, 200)
                    .u64(64, 21).u32(72, 1).u64(80, 22).u32(88, 2));
    EXPECT_EQ(rawElements(capture),
              envelope(96, "07_DrawEnd", 0, 0, "OpenGL") +
                  "      \"mark\": {\n        \"ID:\": \"13_DrawRangeElementsBaseVertex\",\n        \"JobRef:\": 9,\n"
                  "        \"Context ID\": 3,\n        \"Mode\": 4,\n        \"Element Count\": 6,\n"
                  "        \"Type\": 5123,\n        \"Base Vertex\": 7,\n        \"Range Start\": 100,\n"
                  "        \"Range End\": 200,\n        \"Vsh ID\": 21,\n        \"Vsh Variant\": 1,\n"
                  "        \"TEsh ID\": 22\n        \"TEsh Variant\": 2\n      }\n    }");
}

TEST(ClientGl, OpenGlMarkPairLooksUpTheRawFunctionId)
{
    Capture capture;
    capture.add(ClientPacket(65 + kGl, 80).u32(24, 257).u32(28, 8).u32(32, 2).text(36, "gl").ordinal(0).timer(10))
        .add(ClientPacket(66 + kGl, 80).u32(24, 257).ordinal(1).timer(20));
    std::string console;
    EXPECT_EQ(correlatedElements(capture, &console),
              period(10, 20, "FUNC_SCOPE") + "        \"type\": \"OUT_OF_BOUNDS\",\n        \"info\": \"gl\",\n"
                                             "        \"jobref\": 8,\n        \"context ID\": 2\n      }\n    }");
    EXPECT_TRUE(contains(console, "Warning: Zyntel packet unknown event type (257)!\n"));

    EXPECT_EQ(rawElements(capture),
              envelope(80, "01_MarkStart", 0, 10, "OpenGL") +
                  "      \"mark\": {\n        \"ID:\": \"01_TAKick\",\n        \"Info:\": \"gl\",\n        \"JobRef:\": 8,\n"
                  "        \"Context ID\": 2\n      }\n    },\n" +
                  envelope(80, "02_MarkStop", 1, 20, "OpenGL") +
                  "      \"mark\": {\n        \"ID:\": \"01_TAKick\",\n        \"Info:\": \"\",\n        \"JobRef:\": 0,\n"
                  "        \"Context ID\": 0\n      }\n    }");
}

// A GLES TQ kick start with one surface of 64 x 32 pixels.
ClientPacket tqKickStart(std::uint32_t ordinal, std::uint64_t timer, std::uint16_t surfaces)
{
    return ClientPacket(78, 64).u32(24, 4).u32(28, 5).u16(32, 3).u16(34, surfaces).u64(40, 0x1000)
        .u64(48, 64 | 32ull << 24).u32(56, 0).u32(60, 2).ordinal(ordinal).timer(timer);
}

const std::string kSurface = "        \"surface 0\": {\n          \"Address\": \"0x1000\",\n          \"width\": \"64\",\n"
                             "          \"height\": \"32\",\n          \"depth\": \"n/a\",\n"
                             "          \"pixel format\": \"R32G32B32A32_FLOAT\",\n          \"MSAA mode\": \"None\",\n"
                             "          \"FBC mode\": \"None\",\n          \"memory layout\": \"Strided\",\n        }\n";

TEST(ClientGl, TqKickStartClosedByMarkStopOrTqKickEnd)
{
    Capture capture;
    capture.add(tqKickStart(0, 10, 1)).add(ClientPacket(66, 80).u32(24, 16).ordinal(1).timer(20))
        .add(tqKickStart(2, 30, 0)).add(ClientPacket(79, 80).u32(24, 16).ordinal(3).timer(40));
    EXPECT_EQ(correlatedElements(capture),
              period(10, 20, "TQ_KICK_SCOPE") +
                  "        \"type\": \"16_TQKick\",\n        \"jobref\": 4,\n        \"context ID\": 5,\n"
                  "        \"kick reason\": \"03_BlitFramebuffer\",\n" +
                  kSurface + "      }\n    },\n" + period(30, 40, "FUNC_SCOPE") +
                  "        \"type\": \"04_BindFB\",\n        \"info\": \"\",\n        \"jobref\": 5,\n"
                  "        \"context ID\": 3\n      }\n    }");

    // Raw: the object is closed inside the first format and once more after
    // the surfaces; an 80-byte TQ kick start is a plain mark.
    Capture raw;
    raw.add(tqKickStart(0, 10, 1)).add(ClientPacket(78 + kGl, 80).u32(24, 16 + 256).text(36, "m").ordinal(1).timer(20));
    EXPECT_EQ(rawElements(raw),
              envelope(64, "14_TQKickStart", 0, 10, "OpenGLES") +
                  "      \"mark\": {\n        \"ID:\": \"16_TQKick\",\n        \"JobRef:\": 4,\n        \"Context ID\": 5,\n"
                  "        \"Kick reason\": \"03_BlitFramebuffer\",\n      }\n    }" +
                  kSurface + "      }\n    },\n" + envelope(80, "14_TQKickStart", 1, 20, "OpenGL") +
                  "      \"mark\": {\n        \"ID:\": \"16_TQKick\",\n        \"Info:\": \"m\",\n        \"JobRef:\": 0,\n"
                  "        \"Context ID\": 0\n      }\n    }");
}

// A BindFB kick with one colour render target and depth load and store.
ClientPacket kickStart(std::uint32_t type, std::uint32_t function)
{
    return ClientPacket(type, 104).u32(24, function).u32(28, 1).u32(32, 2).u32(36, 1).u32(40, 0x19)
        .u32(44, 0x423).u64(48, 0x1000).u64(56, 0x2000).u32(64, 640 | 480 << 16).u32(68, 7).u32(72, -1)
        .u64(80, 0xABC0).u32(88, 640 | 480 << 16).u32(92, 2).u32(96, 0x10131).ordinal(0).timer(10);
}

const std::string kKickTexts =
    "        \"ZLoad\": \"Y\",\n        \"ZLSLoadAddress\": \"0x1000\",\n        \"ZLoadCompressedFormat\": \"F32\",\n"
    "        \"ZStore\": \"Y\",\n        \"ZLSStoreAddress\": \"0x2000\",\n        \"ZStoreCompressedFormat\": \"I24\",\n"
    "        \"ZLSSize\": \"640 x 480\",\n"
    "        \"DefaultFB\": \"Y\",\n        \"ZOnly\": \"N\",\n        \"Invalidate\": \"N\",\n        \"Kick3D\": \"Y\",\n"
    "        \"MSAA Mode\": \"2x\",\n"
    "        \"RenderTarget0\": {\n           \"Type\": \"Colour\",\n           \"Address\": \"0xABC0\",\n"
    "           \"Size\":\"640 x 480\",\n           \"QTXPixFmt\":\"R32G32B32A32_FLOAT\",\n"
    "           \"CompressionFmt\": \"1\",\n           \"MemLayout\": \"3\",\n           \"Rotation\": \"90\",\n"
    "           \"Downscale\": \"N\",\n           \"EnableDithering\": \"Y\"\n        }\n"
    "      }\n    }";

TEST(ClientGl, KickStartWithRenderTargetsAndZls)
{
    Capture raw;
    raw.add(kickStart(68 + kGl, 256 + 4));
    EXPECT_EQ(rawElements(raw), envelope(104, "04_KickStart", 0, 10, "OpenGL") +
                                    "      \"mark\": {\n        \"ID:\": \"04_BindFB\",\n        \"JobRef:\": 1,\n"
                                    "        \"Context ID\": 2,\n        \"KickReason\": \"Do Clear\",\n"
                                    "        \"Framebuffer ID\": \"-1\",\n" +
                                    kKickTexts);

    Capture pair;
    pair.add(kickStart(68, 4)).add(ClientPacket(69, 40).u32(24, 4).ordinal(1).timer(90));
    EXPECT_EQ(correlatedElements(pair), period(10, 90, "KICK_SCOPE") +
                                            "        \"type\": \"04_BindFB\",\n        \"jobref\": 1,\n"
                                            "        \"context ID\": 2,\n        \"kickreason\": \"Do Clear\",\n"
                                            "        \"Framebuffer ID\": \"-1\",\n" +
                                            kKickTexts);
}

TEST(ClientGl, ShaderCompileEscapesItsSourceAndPairsEachPartOnItsOwn)
{
    const std::string source = "a\tb\"c\nd";
    auto compileEnd = [&](std::int32_t part, std::uint32_t ordinal, std::uint64_t timer) {
        return ClientPacket(73, 64).u32(24, 17).u32(28, 1).u64(32, 77).u32(40, 3).u32(44, part)
            .u32(48, source.size() + 1).text(52, source).ordinal(ordinal).timer(timer);
    };
    Capture capture;
    capture.add(ClientPacket(72, 80).u32(24, 17).text(36, "compile").ordinal(0).timer(5))
        .add(compileEnd(0, 1, 6)).add(compileEnd(1, 2, 7));
    const std::string escaped = "a\\tb\\\"c\\nd";
    EXPECT_EQ(correlatedElements(capture),
              period(5, 6, "COMPILE_SHADER_POINT") +
                  "        \"packet part\": 0,\n        \"message\": \"compile\",\n        \"type\": \"17_CompileShader\",\n"
                  "        \"context ID\": 3,\n        \"shader ID\": 77,\n        \"shader type\": \"02_Fsh\",\n"
                  "        \"shader code\": \"" + escaped + "\"\n      }\n    }");

    const std::string raw = rawElements(capture);
    EXPECT_TRUE(contains(raw, envelope(64, "09_ShaderCompileEnd", 2, 7, "OpenGLES") +
                                  "      \"mark\": {\n        \"packet part\": 1,\n        \"ID:\": \"17_CompileShader\",\n"
                                  "        \"Context ID\": 3,\n        \"shader ID\": 77,\n        \"shader type\": \"02_Fsh\",\n"
                                  "        \"shader code\": \"" + escaped + "\"\n      }\n    }"));
}

TEST(ClientGl, MemoryOperationsOfEglGlesAndGl)
{
    auto memOpEnd = [](std::uint32_t type, std::uint32_t function, std::uint32_t resource, std::uint32_t ordinal) {
        return ClientPacket(type, 88).u32(24, 4096).u32(28, resource).u32(32, 1).u32(36, function).u32(40, 5)
            .u32(44, 6).text(48, "upload").ordinal(ordinal).timer(ordinal * 10);
    };
    Capture capture;
    capture.add(ClientPacket(35, 40).u32(24, 48).u32(28, 5).u32(32, 6).ordinal(0).timer(0))
        .add(memOpEnd(36, 48, 39, 1))
        .add(ClientPacket(74, 80).u32(24, 37).u32(28, 5).ordinal(2).timer(20))
        .add(memOpEnd(75, 37, 16, 3))
        .add(ClientPacket(74 + kGl, 80).u32(24, 256 + 37).u32(28, 5).ordinal(4).timer(40))
        .add(memOpEnd(75 + kGl, 256 + 37, 47, 5))
        .add(memOpEnd(75 + kGl, 256 + 37, 1, 6));
    std::string console;
    EXPECT_EQ(correlatedElements(capture, &console),
              period(0, 10, "MEMORY_OP_POINT") +
                  "        \"type\": \"05_MemOp\",\n        \"jobref\": 5,\n        \"memory resource type\": \"02_YUVCoefficients\",\n"
                  "        \"op size\": 4096,\n        \"memory op type\": \"01_DeviceMemoryAllocation\"\n      }\n    },\n" +
                  period(20, 30, "MEMORY_OP_POINT") +
                  "        \"type\": \"37_MemOp\",\n        \"jobref\": 5,\n        \"context ID\": 6,\n"
                  "        \"memory resource type\": \"16_Texture2D\",\n        \"op size\": 4096,\n"
                  "        \"memory op type\": \"01_DeviceMemoryAllocation\",\n        \"message\": \"upload\"\n      }\n    },\n" +
                  period(40, 50, "MEMORY_OP_POINT") +
                  "        \"type\": \"37_MemOp\",\n        \"jobref\": 5,\n        \"context ID\": 6,\n"
                  "        \"memory resource type\": \"00_Invalid\",\n        \"op size\": 4096,\n"
                  "        \"memory op type\": \"01_DeviceMemoryAllocation\",\n        \"message\": \"upload\"\n      }\n    }");

    const std::string raw = rawElements(capture, &console);
    EXPECT_TRUE(contains(raw, envelope(88, "04_MemOpEnd", 1, 10, "EGL") +
                                  "      \"mark\": {\n        \"ID:\": \"05_MemOp\",\n        \"JobRef:\": 5,\n"
                                  "        \"Memory resource type\": \"02_YUVCoefficients\",\n        \"Op size\": 4096,\n"
                                  "        \"Memory op type\": \"01_DeviceMemoryAllocation\"\n      }\n    }"));
    EXPECT_TRUE(contains(raw, envelope(88, "11_MemOpEnd", 6, 60, "OpenGL") +
                                  "      \"mark\": {\n        \"ID:\": \"37_MemOp\",\n        \"JobRef:\": 5,\n"
                                  "        \"Context ID\": 6,\n        \"Memory resource type\": \"OUT_OF_BOUNDS\",\n"
                                  "        \"Op size\": 4096,\n        \"Memory op type\": \"01_DeviceMemoryAllocation\",\n"
                                  "        \"Message\": \"upload\"\n      }\n    }"));
    EXPECT_TRUE(contains(console, "Warning: Zyntel packet unknown GL memory resource type (1)!\n"));
}

TEST(ClientGl, ComputeEndPrintsItsDispatchShader)
{
    Capture capture;
    capture.add(ClientPacket(76, 80).u32(24, 38).u32(32, 2).text(36, "cs").ordinal(0).timer(1))
        .add(ClientPacket(77, 96).u32(24, 38).u32(28, 7).u32(76, 8).u32(80, 4).u32(84, 1).u64(88, 55).ordinal(1).timer(2));
    const std::string tail = "        \"Workgroup dim X\": 8,\n        \"Workgroup dim Y\": 4,\n        \"Workgroup dim Z\": 1,\n"
                             "        \"Csh ID\": 55,\n      }\n    }";
    EXPECT_EQ(correlatedElements(capture), period(1, 2, "DISPATCH_COMPUTE_SCOPE") +
                                               "        \"type\": \"38_DispatchCompute\",\n        \"jobref\": 7,\n"
                                               "        \"context ID\": 2,\n        \"message\": \"cs\",\n" + tail);
    EXPECT_TRUE(contains(rawElements(capture), "      \"mark\": {\n        \"ID:\": \"38_DispatchCompute\",\n"
                                               "        \"JobRef:\": 7,\n        \"Context ID\": 0,\n"
                                               "        \"Msg:\": \"\",\n" + tail));
}

TEST(ClientGl, ShaderInvocationCountsAndDroppedInvocations)
{
    Capture capture;
    capture.add(ClientPacket(80, 80).u32(24, 40).u32(28, 2).u32(32, 3).u32(40, 2).u64(48, 100).u32(56, 7).u32(60, 1)
                    .u64(64, 101).u32(72, 8).u32(76, 0).ordinal(0).timer(1))
        .add(ClientPacket(80, 48).u32(24, 41).u32(40, 12).ordinal(1).timer(2))
        .add(ClientPacket(80 + kGl, 48).u32(24, 297).u32(40, 13).ordinal(2).timer(3));
    EXPECT_EQ(correlatedElements(capture),
              period(1, 1, "SHADER_INVOC_POINT") +
                  "        \"type\": \"40_ShaderInvocationCount\",\n        \"jobref\": 3,\n        \"context ID\": 2,\n"
                  "        \"Shader Invocation Counts\": {\n          \"100 (1)\" : 7,\n          \"101 (0)\" : 8\n"
                  "        }\n      }\n    },\n" +
                  period(2, 2, "SHADER_INVOC_POINT") +
                  "        \"type\": \"41_ShaderInvocationCountOverflow\",\n        \"jobref\": 0,\n        \"context ID\": 0,\n"
                  "        \"Dropped Shader Inovcations\": 12\n      }\n    },\n" +
                  period(3, 3, "SHADER_INVOC_POINT") +
                  "        \"type\": \"41_ShaderInvocationCountOverflow\",\n        \"jobref\": 0,\n        \"context ID\": 0,\n"
                  "        \"Dropped Shader Invocations\": 13\n      }\n    }");

    const std::string raw = rawElements(capture);
    EXPECT_TRUE(contains(raw, "        \"Context ID\": 2,\n        \"Shader Invocation Counts\": {\n"
                              "          \"100 (1)\" : 7,\n          \"101 (0)\" : 8\n        }\n      }\n    },\n"));
    EXPECT_TRUE(contains(raw, "        \"Dropped Shader Inovcations\": 12\n      }\n    },\n"));
    EXPECT_TRUE(contains(raw, "        \"Dropped Shader Inovcations\": 13\n      }\n    }"));
}

} // namespace
