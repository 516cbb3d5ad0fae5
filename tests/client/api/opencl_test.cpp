#include <gtest/gtest.h>

#include "client/client_printers.h"
#include "printer_fixture.h"

using namespace client;

TEST(OpenClNames, TwoIdRangesShareOneTable)
{
    PrinterRun run;
    EXPECT_STREQ(openClFunctionName(50), "000_Invalid");
    EXPECT_STREQ(openClFunctionName(60), "010_clCreateCommandQueue");
    EXPECT_STREQ(openClFunctionName(202), "152_clCommandFillBufferKHR");
    EXPECT_STREQ(openClFunctionName(203), "LAST");
    EXPECT_STREQ(openClFunctionName(299), "153_Invalid");
    EXPECT_STREQ(openClFunctionName(300), "154_clCreateCommandQueue");
    EXPECT_STREQ(openClFunctionName(305), "LAST_R2");
    EXPECT_STREQ(openClFunctionName(204), "OUT_OF_BOUNDS");
    EXPECT_STREQ(openClFunctionName(298), "OUT_OF_BOUNDS");
    EXPECT_STREQ(openClFunctionName(49), "OUT_OF_BOUNDS");
    EXPECT_EQ(run.console, "Warning: Zyntel packet unknown event type (204)!\n"
                           "Warning: Zyntel packet unknown event type (298)!\n"
                           "Warning: Zyntel packet unknown event type (49)!\n");
}

TEST(OpenClApiInfo, CommandQueuesAndSubmittedKernels)
{
    PrinterRun run;
    Record queue(16);
    queue.u32(0, 1).u64(8, 0x1a);
    printOpenClData(run.file, 300, queue.packet());
    queue.u32(0, 0).u64(8, 0);
    printOpenClData(run.file, 60, queue.packet());
    Record kernel(36);
    kernel.u32s(0, {17, 3, 8, 4, 1, 1024, 768, 1, 24576});
    printOpenClData(run.file, 304, kernel.packet());
    printOpenClData(run.file, 62, kernel.packet());
    EXPECT_EQ(run.json, "        \"API Info\": {\n          \"Create Command Queue\": {\n"
                        "            \"bHostQueue\": true,\n            \"bfProperties\": 0x1a\n          }\n        }\n"
                        "        \"API Info\": {\n          \"Create Command Queue\": {\n"
                        "            \"bHostQueue\": false,\n            \"bfProperties\": 0\n          }\n        }\n"
                        "        \"API Info\": {\n          \"Kernel\": {\n            \"ObjectID\": 17\n          },\n"
                        "          \"KernelCmd\": {\n            \"WorkDimensions\": 3,\n"
                        "            \"LocalWGS\": [8,4,1],\n            \"GlobalWGS\": [1024,768,1],\n"
                        "            \"NumWorkGroups\": 24576\n          }\n        }\n"
                        "        \"API Info\": {\n        }\n");
}

TEST(OpenClApiInfo, KernelNamesAndTheEmptyNameReport)
{
    PrinterRun run;
    run.file.lastOrdinal = 41;
    Record unnamed(8);
    unnamed.u32(0, 2);
    printOpenClData(run.file, 86, unnamed.packet());
    printOpenClData(run.file, 301, unnamed.packet()); // reported once per file
    Record named(16);
    named.u32(0, 2).u32(4, 5).text(8, "saxpyXYZ");
    printOpenClData(run.file, 301, named.packet());
    named.u32(4, 100); // the name runs to the record's end
    printOpenClData(run.file, 86, named.packet());
    EXPECT_EQ(run.json, "        \"API Info\": {\n        }\n        \"API Info\": {\n        }\n"
                        "        \"API Info\": {\n          \"Create Kernel\": {\n            \"Name\": \"saxpy\",\n"
                        "            \"NumArguments\": 2\n          }\n        }\n"
                        "        \"API Info\": {\n          \"Create Kernel\": {\n            \"Name\": \"saxpyXYZ\",\n"
                        "            \"NumArguments\": 2\n          }\n        }\n");
    EXPECT_EQ(run.errors, "warning: failed to fprintf to JSON file, error (-1)"
                          "warning: last packet ordinal written was 41");
    EXPECT_EQ(run.file.writeFailureReported, 1);
}

TEST(OpenClApiInfo, KernelCommandsKeepTheirCountInTheKey)
{
    PrinterRun run;
    Record none(4);
    printOpenClData(run.file, 158, none.packet());
    // Three ids announced, two present: the last present one has no comma.
    Record commands(12);
    commands.u32(0, 3).u32(4, 7).u32(8, 0xFFFFFFFF);
    printOpenClData(run.file, 303, commands.packet());
    EXPECT_EQ(run.json, "        \"API Info\": {\n          \"KernelCmds[0]\": {\n          }\n        }\n"
                        "        \"API Info\": {\n          \"KernelCmds[3]\": {\n"
                        "            \"Attached OpenCL KernelCmd ID\": 7,\n"
                        "            \"Attached OpenCL KernelCmd ID\": -1\n          }\n        }\n");
}
