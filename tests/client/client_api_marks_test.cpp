// EGL, OpenCL and Vulkan marks with their API tails, in both modes.
#include <gtest/gtest.h>

#include "client_fixture.h"

namespace {

TEST(ClientEgl, MarksWithAndWithoutApiInfo)
{
    // A CreateContext start with its API information, ended by a plain
    // 40-byte mark; then a plain pair.
    Capture capture;
    capture.add(ClientPacket(33, 48).u32(24, 45).u32(28, 1).u32(32, 2).u32(40, 0xFFFFFFFF).u32(44, 2).ordinal(0).timer(10))
        .add(ClientPacket(34, 40).u32(24, 45).ordinal(1).timer(20))
        .add(ClientPacket(33, 40).u32(24, 44).u32(28, 3).u32(32, 4).ordinal(2).timer(30))
        .add(ClientPacket(34, 40).u32(24, 44).ordinal(3).timer(40));
    const std::string apiInfo = "        \"API Info\": {\n          \"EGL Context Type:\": \"02_OpenGLES3\",\n"
                                "          \"Shared EGL Context ID:\": \"EGL_NO_CONTEXT\"\n        }\n";
    EXPECT_EQ(correlatedElements(capture),
              period(10, 20, "EGL_SCOPE") + "        \"type\": \"02_CreateContext\",\n        \"jobref\": 1,\n"
                                            "        \"context ID\": 2,\n" + apiInfo + "      }\n    },\n" +
                  period(30, 40, "EGL_SCOPE") + "        \"type\": \"01_SwapBuffers\",\n        \"jobref\": 3,\n"
                                                "        \"context ID\": 4\n      }\n    }");

    const std::string raw = rawElements(capture);
    EXPECT_TRUE(contains(raw, envelope(48, "01_MarkStart", 0, 10, "EGL") +
                                  "      \"mark\": {\n        \"ID:\": \"02_CreateContext\",\n        \"JobRef:\": 1,\n"
                                  "        \"ContextID:\": 2,\n" + apiInfo + "      }\n    },\n"));
    EXPECT_TRUE(contains(raw, envelope(40, "01_MarkStart", 2, 30, "EGL") +
                                  "      \"mark\": {\n        \"ID:\": \"01_SwapBuffers\",\n        \"JobRef:\": 3,\n"
                                  "        \"ContextID:\": 4\n      }\n    },\n"));
}

// An OpenCL mark: context 1, object 2, thread 3, job 4.
ClientPacket openClMark(std::uint32_t type, std::uint32_t function, std::size_t size)
{
    return ClientPacket(type, size).u32(24, 1).u32(28, 2).u32(32, 3).u32(36, 4).u32(44, function);
}

std::string commandQueue(const char* host, const char* properties)
{
    return std::string("        \"API Info\": {\n          \"Create Command Queue\": {\n            \"bHostQueue\": ") +
           host + ",\n            \"bfProperties\": " + properties + "\n          }\n        }\n";
}

const std::string kOpenClKeys = "        \"jobref\": 4,\n        \"context ID\": 1,\n        \"object ID\": 2,\n"
                                "        \"thread ID\": 3";

TEST(ClientOpenCl, PairWithoutThreadNameHashAndDataOnBothSides)
{
    // Function 60 only comes without hash: info at 48, data at 88.
    Capture capture;
    capture.add(openClMark(97, 60, 104).text(48, "q").u32(88, 1).u64(96, 2).ordinal(0).timer(10))
        .add(openClMark(98, 60, 104).u32(88, 0).ordinal(1).timer(20));
    std::string console;
    EXPECT_EQ(correlatedElements(capture, &console),
              period(10, 20, "FUNC_SCOPE") + "        \"type\": \"010_clCreateCommandQueue\",\n        \"info\": \"q\",\n" +
                  kOpenClKeys + "\n      }\n    }" + commandQueue("true", "0x2") + commandQueue("false", "0") +
                  "      }\n    }");
    EXPECT_TRUE(contains(console, "Printing start packet\nPrinting end packet\n"));

    EXPECT_TRUE(contains(rawElements(capture),
                         envelope(104, "01_MarkStart", 0, 10, "OpenCL") +
                             "      \"mark\": {\n        \"ID:\": \"010_clCreateCommandQueue\",\n        \"Info:\": \"q\",\n"
                             "        \"JobRef:\": 4,\n        \"Context ID\": 1,\n        \"Object ID\": 2,\n"
                             "        \"Thread ID\": 3,\n" + commandQueue("true", "0x2") + "      }\n    },\n"));
}

TEST(ClientOpenCl, PairWithThreadNameHash)
{
    // Function 300: hash at 48, info at 56, data at 96; the 96-byte end has
    // the hash and no data.
    Capture capture;
    capture.add(openClMark(97, 300, 112).u32(48, 0xBEEF).text(56, "h").u32(96, 1).u64(104, 0x10).ordinal(0).timer(10))
        .add(openClMark(98, 300, 96).u32(48, 0xCAFE).text(56, "e").ordinal(1).timer(20))
        .add(openClMark(97, 50, 92).ordinal(2).timer(30));
    std::string console;
    EXPECT_EQ(correlatedElements(capture, &console),
              period(10, 20, "FUNC_SCOPE") + "        \"type\": \"154_clCreateCommandQueue\",\n        \"info\": \"h\",\n" +
                  kOpenClKeys + ",\n        \"threadnamehash\": \"0xbeef\"\n      }\n    }" +
                  commandQueue("true", "0x10") + "      }\n    }");
    EXPECT_TRUE(contains(console, "Printing start packet\n"));
    EXPECT_FALSE(contains(console, "Printing end packet"));

    const std::string raw = rawElements(capture);
    EXPECT_TRUE(contains(raw, "        \"Thread ID\": 3,\n        \"ThreadNameHash\": \"0xbeef\",\n" +
                                  commandQueue("true", "0x10") + "      }\n    },\n"));
    EXPECT_TRUE(contains(raw, "        \"Info:\": \"e\",\n        \"JobRef:\": 4,\n        \"Context ID\": 1,\n"
                              "        \"Object ID\": 2,\n        \"Thread ID\": 3,\n"
                              "        \"ThreadNameHash\": \"0xcafe\"\n      }\n    },\n"));
    // A size that fits no layout has neither hash nor info.
    EXPECT_TRUE(contains(raw, "        \"ID:\": \"000_Invalid\",\n        \"Info:\": \"(null)\",\n"));
}

// A Vulkan mark that binds pipeline `pipeline` (its object data).
ClientPacket vulkanMark(std::uint32_t type, const char* info, std::int32_t pipeline)
{
    return ClientPacket(type, 96).u32(24, -1).u32(28, 7).u32(40, 242).text(44, info).u32(88, pipeline).u32(92, 5);
}

std::string bindPipeline(int id)
{
    return "        \"API Info\": {\n          \"Bind Pipeline\": {\n            \"Attached Vulkan Obj ID\": " +
           std::to_string(id) + ",\n            \"Attached Vulkan Obj Type\": 05_GraphicsPipeline,\n          }\n        }";
}

TEST(ClientVulkan, MarkPairWithDetailOnBothSides)
{
    Capture capture;
    capture.add(vulkanMark(129, "vs", 5).ordinal(0).timer(10))
        .add(vulkanMark(130, "ve", 6).ordinal(1).timer(20))
        .add(vulkanMark(131, "vp", 7).ordinal(2).timer(30));
    std::string console;
    EXPECT_EQ(correlatedElements(capture, &console),
              period(10, 20, "VULKAN_MARK") +
                  "        \"object ID\": -1,\n        \"thread ID\": 7,\n        \"type\": \"38_BindGraphicsPipeline\",\n"
                  "        \"start info\": \"vs\",\n        \"end info\": \"ve\"\n" +
                  bindPipeline(5) + bindPipeline(6) + "      }\n    }");
    EXPECT_TRUE(contains(console, "error: Client packet type unknown (131), packet skipped\n"));

    EXPECT_TRUE(contains(rawElements(capture),
                         envelope(96, "03_MarkPoint", 2, 30, "Vulkan") +
                             "      \"mark\": {\n        \"Object ID\": -1,\n        \"Thread ID\": 7,\n"
                             "        \"ID:\": \"38_BindGraphicsPipeline\",\n        \"Info:\": \"vp\"\n" +
                             bindPipeline(7) + "      }\n    }"));
}

TEST(ClientVulkan, ShaderInvocationsOfGraphicsAndComputePipelines)
{
    Capture capture;
    capture.add(ClientPacket(134, 120).u32(28, 7).u32(32, 8).u32(40, 254).u32(88, 5).u32(92, 2)
                    .u32(96, 1).u32(100, 10).u32(104, 20).u32(108, 2).u32(112, 11).u32(116, 21).ordinal(0).timer(5))
        .add(ClientPacket(134, 112).u32(40, 254).u32(88, 6).u32(92, 1).u32(96, 3).u32(100, 30).ordinal(1).timer(6));
    EXPECT_EQ(rawElements(capture),
              envelope(120, "06_ShaderInvocPoint", 0, 5, "Vulkan") +
                  "      \"mark\": {\n        \"Pipeline Type\": 05_GraphicsPipeline,\n        \"JobRef\": 8,\n"
                  "        \"Shader Invocation Counts\": {\n"
                  "        \"Vertex Shader Invocations   (Pipeline 1)\": 10,\n"
                  "        \"Fragment Shader Invocations (Pipeline 1)\": 20,\n"
                  "        \"Vertex Shader Invocations   (Pipeline 2)\": 11,\n"
                  "        \"Fragment Shader Invocations (Pipeline 2)\": 21\n        }\n      }\n    },\n" +
                  envelope(112, "06_ShaderInvocPoint", 1, 6, "Vulkan") +
                  "      \"mark\": {\n        \"Pipeline Type\": 06_ComputePipeline,\n        \"JobRef\": 0,\n"
                  "        \"Shader Invocation Counts\": {\n"
                  "        \"Compute Shader Invocations (Pipeline 3)\": 30\n        }\n      }\n    }");

    EXPECT_EQ(correlatedElements(capture),
              period(5, 5, "SHADER_INVOC_POINT") +
                  "        \"thread ID\": 7,\n        \"type\": \"50_ShaderInvocationCounts\",\n        \"jobref\": 8,\n"
                  "        \"Pipeline Type\": 05_GraphicsPipeline,\n        \"Shader Invocation Counts\": {\n"
                  "          \"Vertex Shader Invocations   (Pipeline 1)\": 10,\n"
                  "          \"Fragment Shader Invocations (Pipeline 1)\": 20,\n"
                  "          \"Vertex Shader Invocations   (Pipeline 2)\": 11,\n"
                  "          \"Fragment Shader Invocations (Pipeline 2)\": 21\n        }\n      }\n    },\n" +
                  period(6, 6, "SHADER_INVOC_POINT") +
                  "        \"thread ID\": 0,\n        \"type\": \"50_ShaderInvocationCounts\",\n        \"jobref\": 0,\n"
                  "        \"Pipeline Type\": 06_ComputePipeline,\n        \"Shader Invocation Counts\": {\n"
                  "          \"Compute Shader Invocations (Pipeline 3)\": 30\n        }\n      }\n    }");
}

} // namespace
