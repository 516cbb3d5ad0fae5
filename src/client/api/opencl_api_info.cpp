// The "API Info" of OpenCL marks: the detail records of command-queue
// creation, kernel creation, the kernel commands of a compute kick and a
// submitted kernel. Each call has two ids, one per id range.
#include "client/client_printers.h"

#include "json/document.h"
#include "json/output.h"
#include "stream/packet.h"
#include "stream/stream_file.h"

#include <string>

namespace client {

namespace {

enum class OpenClDetail { None, CreateCommandQueue, CreateKernel, KernelCommands, SubmittedKernel };

OpenClDetail detailOf(std::uint32_t functionId)
{
    switch (functionId) {
    case 60: case 141: case 300: case 302: return OpenClDetail::CreateCommandQueue;
    case 86: case 301: return OpenClDetail::CreateKernel;
    case 158: case 303: return OpenClDetail::KernelCommands;
    case 161: case 304: return OpenClDetail::SubmittedKernel;
    default: return OpenClDetail::None;
    }
}

// Command queue: host-queue word at 0, property bits (u64) at 8.
void printCreateCommandQueue(Output& out, const Packet& data)
{
    out.print("          \"Create Command Queue\": {\n            \"bHostQueue\": %s,\n            \"bfProperties\": %#lx\n"
              "          }\n",
              data.u32(0) != 0 ? "true" : "false", static_cast<unsigned long>(data.u64(8)));
}

// Kernel: argument count at 0, name length at 4, the name (not terminated)
// from 8. A kernel without a name is reported like a failed write.
void printCreateKernel(StreamFile& file, const Packet& data)
{
    const std::uint32_t nameLength = data.u32(4);
    if (nameLength == 0) {
        reportWriteFailure(file, -1);
        return;
    }
    // Only the name bytes inside the packet exist.
    static std::string name;
    name.assign(data.text(8), data.fitCount(8, nameLength, 1));
    file.out.print("          \"Create Kernel\": {\n            \"Name\": \"%s\",\n            \"NumArguments\": %u\n"
                   "          }\n",
                   name.c_str(), data.u32(0));
}

// Kernel commands: a count at 0, then the command ids; the count is part of
// the key.
void printKernelCommands(Output& out, const Packet& data)
{
    const std::uint32_t declared = data.u32(0);
    const std::uint32_t count = data.fitCount(4, declared, 4);
    out.print("          \"KernelCmds[%d]\": {\n", static_cast<int>(declared));
    for (std::uint32_t i = 0; i < count; ++i)
        out.print("            \"Attached OpenCL KernelCmd ID\": %d%s\n", data.i32(4 + 4 * i), i + 1 < count ? "," : "");
    out.print("          }\n");
}

// Submitted kernel: object id, work dimensions, local and global sizes,
// number of work groups.
void printSubmittedKernel(Output& out, const Packet& data)
{
    out.print("          \"Kernel\": {\n            \"ObjectID\": %u\n          },\n          \"KernelCmd\": {\n"
              "            \"WorkDimensions\": %u,\n            \"LocalWGS\": [%u,%u,%u],\n"
              "            \"GlobalWGS\": [%u,%u,%u],\n            \"NumWorkGroups\": %u\n          }\n",
              data.u32(0), data.u32(4), data.u32(8), data.u32(12), data.u32(16), data.u32(20), data.u32(24),
              data.u32(28), data.u32(32));
}

} // namespace

void printOpenClData(StreamFile& file, std::uint32_t functionId, const Packet& data)
{
    file.out.print("        \"API Info\": {\n");
    switch (detailOf(functionId)) {
    case OpenClDetail::CreateCommandQueue: printCreateCommandQueue(file.out, data); break;
    case OpenClDetail::CreateKernel: printCreateKernel(file, data); break;
    case OpenClDetail::KernelCommands: printKernelCommands(file.out, data); break;
    case OpenClDetail::SubmittedKernel: printSubmittedKernel(file.out, data); break;
    case OpenClDetail::None: break;
    }
    file.out.print("        }\n");
}

} // namespace client
