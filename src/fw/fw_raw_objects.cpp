// Raw payload objects of the firmware sections, hardware work, clock, state,
// power, work-period, context-switch and frequency-scaling packets. Field
// offsets are written as kFwPayload plus the offset within the payload.
#include "fw/counter_blocks.h"
#include "fw/fw_names.h"
#include "fw/fw_payload.h"
#include "fw/fw_raw_objects.h"
#include "json/envelope.h"
#include "json/output.h"
#include "stream/packet.h"
#include "stream/stream_file.h"

namespace {

using ull = unsigned long long;
using ul = unsigned long;

constexpr std::uint32_t kPowerEstimateVersion = 0x5A504531;

} // namespace

// Firmware sections: 0 dataMaster, 4 txtActCyc, 8 perfCount0, 12 perfCount1.
void writeRawSection(StreamFile& file, const Packet& packet)
{
    file.out.print("      \"fwdata\": {\n        \"osid\": %u,\n        \"dm\": \"%s\",\n        \"txtactcyc\": %u,\n"
                   "        \"firmwareperfcount0\": %u,\n        \"firmwareperfcount1\": %u\n      }\n",
                   FwOsId(packet), FwDataMasterName(packet.u32(kFwPayload)), packet.u32(kFwPayload + 4),
                   packet.u32(kFwPayload + 8), packet.u32(kFwPayload + 12));
    file.out.write("    }");
}

void writeRawHardware(StreamFile& file, const Packet& packet)
{
    using F = FwHardwareFields;
    std::uint32_t dmCyc = FwCycleCountInvalid(packet) ? 0 : packet.u32(F::dmCyc);
    file.out.print("      \"hwdata\": {\n        \"osid\": %u,\n        \"dmcyc\": %u,\n        \"frame\": %u,\n"
                   "        \"PID\": %u,\n        \"Context\": %u,\n        \"WorkTarget\": %u,\n",
                   FwOsId(packet), dmCyc, packet.u32(F::frame), packet.u32(F::pid), packet.u32(F::context),
                   packet.u32(F::workTarget));

    std::uint32_t signature = packet.signature();
    bool multiGpu = FwIsMultiGpu(packet);
    std::uint32_t blocks = FwLocateBlocks(packet, signature).count;
    if (signature == ZYNTEL_PACKET_V2B_SIG) {
        std::uint32_t blocksOffset = packet.u16(F::blocksOffset);
        if (multiGpu)
            file.out.print("        \"ExtJobRef\": %u,\n        \"IntJobRef\": %u,\n        \"TimeCorrIndex\": %u,\n"
                           "        \"numblks\": %u,\n        \"blksoff\": %u,\n        \"WorkCtx\": %u,\n"
                           "        \"CtxPriority\": %u,\n        \"GPUIdMask\": %u,\n        \"blocks\": [\n",
                           packet.u32(F::extJobRef), packet.u32(F::intJobRef), packet.u32(F::timeCorrIndex), blocks,
                           blocksOffset, packet.u32(F::workCtx), packet.u32(F::ctxPriority), packet.u32(F::gpuIdMask));
        else
            file.out.print("        \"ExtJobRef\": %u,\n        \"IntJobRef\": %u,\n        \"TimeCorrIndex\": %u,\n"
                           "        \"numblks\": %u,\n        \"blksoff\": %u,\n        \"WorkCtx\": %u,\n"
                           "        \"CtxPriority\": %u,\n        \"blocks\": [\n",
                           packet.u32(F::extJobRef), packet.u32(F::intJobRef), packet.u32(F::timeCorrIndex), blocks,
                           blocksOffset, packet.u32(F::workCtx), packet.u32(F::ctxPriority));
    } else if (signature == ZYNTEL_PACKET_V2A_SIG) {
        file.out.print("        \"ExtJobRef\": %u,\n        \"IntJobRef\": %u,\n        \"numblks\": %u,\n"
                       "        \"blocks\": [\n",
                       packet.u32(F::extJobRef), packet.u32(F::intJobRef), blocks);
    } else {
        file.out.print("        \"numblks\": %u,\n        \"blocks\": [\n", blocks);
    }
    PrintCounterBlocks(file.out, packet, nullptr, signature, multiGpu);
    file.out.write("        ]\n      }\n    }");
}

// Clock change: 0 u64 speed, 8 clock source; by packet size 56 or 64 the
// OS and correlation timestamps follow.
void writeRawClockChange(StreamFile& file, const Packet& packet)
{
    file.out.print("      \"clkschgdata\": {\n        \"name\": \"%s\",\n        \"osid\": %u,\n",
                   lookupName(FwClockSourceNames, packet.u32(kFwPayload + 8)), FwOsId(packet));
    ull speed = packet.u64(kFwPayload);
    if (packet.size() == 64)
        file.out.print("        \"speed\": %llu,\n        \"ostimestamp\": %llu,\n        \"osmonotimestamp\": %llu,\n"
                       "        \"crtimestamp\": %llu\n",
                       speed, ull(packet.u64(kFwPayload + 32)), ull(packet.u64(kFwPayload + 16)),
                       ull(packet.u64(kFwPayload + 24)));
    else if (packet.size() == 56)
        file.out.print("        \"speed\": %llu,\n        \"ostimestamp\": %llu,\n        \"crtimestamp\": %llu\n",
                       speed, ull(packet.u64(kFwPayload + 16)), ull(packet.u64(kFwPayload + 24)));
    else
        file.out.print("        \"speed\": %llu\n", speed);
    file.out.write("      }\n    }");
}

void writeRawGpuState(StreamFile& file, const Packet& packet)
{
    file.out.print("      \"gpustatedata\": {\n        \"osid\": %u,\n        \"state\": \"%s\"\n      }\n",
                   FwOsId(packet), lookupName(FwGpuStateNames, packet.u32(kFwPayload)));
    file.out.write("    }");
}

// Power estimate: 0 version, 4 data size, 8 tuples of (descriptor, value).
// A wrong version leaves the element open.
void writeRawPowerEstimate(StreamFile& file, const Packet& packet)
{
    std::uint32_t version = packet.u32(kFwPayload);
    if (version != kPowerEstimateVersion) {
        errorConsole().print("error: Power estimate packet data not recognised\n");
        return;
    }
    std::uint32_t dataSize = packet.u32(kFwPayload + 4);
    std::uint32_t tuples = dataSize / 8;
    file.out.print(
        "      \"pwrestdata\": {\n        \"version\": \"0x%x\",\n        \"size\": %u,\n        \"tuples\": %u,\n"
        "        \"counters\": [\n",
        version, dataSize, tuples);
    std::uint32_t shown = packet.fitCount(kFwPayload + 8, tuples, 8);
    for (std::uint32_t i = 0; i < shown; ++i) {
        std::uint32_t descriptor = packet.u32(kFwPayload + 8 + i * 8);
        std::uint32_t value = packet.u32(kFwPayload + 12 + i * 8);
        file.out.print(
            "          {\n           \"osid\": %u,\n           \"id\": \"0x%x\",\n           \"highword\": %u,\n"
            "           \"gpuid\": %u,\n           \"hwunit\": %u,\n           \"value\": \"%u # 0x%08x\"\n"
            "          %s\n",
            FwOsId(packet), descriptor & 0xFFFF, descriptor >> 31, (descriptor >> 28) & 0x7, (descriptor >> 24) & 0xF,
            value, value, i + 1 < shown ? "}," : "}");
    }
    file.out.write("        ]\n      }\n");
    file.out.write("    }");
}

// Power change: 0 change, 4 domains; a power-on of packet size 56 or 64
// adds OS and correlation timestamps and the GPU clock speed.
void writeRawPowerChange(StreamFile& file, const Packet& packet)
{
    std::uint32_t change = packet.u32(kFwPayload);
    file.out.print("      \"pwrchg\": {\n        \"osid\": %u,\n        \"change\": \"%s\",\n", FwOsId(packet),
                   lookupName(FwPowerChangeNames, change));
    std::uint32_t domains = packet.u32(kFwPayload + 4);
    if (change == kFwPowerOn && packet.size() == 64)
        file.out.print(
            "        \"domains\": \"0x%x\",\n        \"ostimestamp\": %llu,\n        \"osmonotimestamp\": %llu,\n"
            "        \"crtimestamp\": %llu,\n        \"gpuclockspeed\": %u\n",
            domains, ull(packet.u64(kFwPayload + 32)), ull(packet.u64(kFwPayload + 8)),
            ull(packet.u64(kFwPayload + 16)), packet.u32(kFwPayload + 24));
    else if (change == kFwPowerOn && packet.size() == 56)
        file.out.print(
            "        \"domains\": \"0x%x\",\n        \"ostimestamp\": %llu,\n        \"crtimestamp\": %llu,\n"
            "        \"gpuclockspeed\": %u\n",
            domains, ull(packet.u64(kFwPayload + 8)), ull(packet.u64(kFwPayload + 16)), packet.u32(kFwPayload + 24));
    else
        file.out.print("        \"domains\": \"0x%x\"\n", domains);
    file.out.write("      }\n    }");
}

// GPU work period: 0 u64 start in timer units / 256, 8 uid; the end is the
// header's timer. Only the 48-byte form is decoded; others are dumped and
// the element is left open.
void writeRawGpuWorkPeriod(StreamFile& file, const Packet& packet)
{
    if (packet.size() != 48) {
        writeHexDump(&file, packet);
        return;
    }
    std::uint64_t startTimer = packet.u64(kFwPayload);
    std::uint64_t timer = packet.timer();
    file.out.print("      \"gpuworkperiod\": {\n        \"start\": %lu,\n        \"end\": %lu,\n        \"osid\": %u,\n"
                   "        \"uid\": %u,\n        \"cycles\": %lu\n      }\n",
                   ul(startTimer << 8), ul(timer << 8), FwOsId(packet), packet.u32(kFwPayload + 8),
                   ul((timer - startTimer) << 8));
    file.out.write("    }");
}

// Context switch: 0 dataMaster, 4 context, 8 frame, 12 txtActCyc,
// 16 perfCycle, 20 perfPhase.
void writeRawContextSwitch(StreamFile& file, const Packet& packet)
{
    file.out.print("      \"cswdata\": {\n        \"osid\": %u,\n        \"dm\": \"%s\",\n        \"frame\": %u,\n"
                   "        \"Context\": %u,\n        \"txtactcyc\": %u,\n        \"perf_phase\": %u,\n"
                   "        \"perf_cycle\": %u\n      }\n",
                   FwOsId(packet), FwDataMasterName(packet.u32(kFwPayload)), packet.u32(kFwPayload + 8),
                   packet.u32(kFwPayload + 4), packet.u32(kFwPayload + 12), packet.u32(kFwPayload + 20),
                   packet.u32(kFwPayload + 16));
    file.out.write("    }");
}

// Frequency scaling: the sub-event at 0 selects the fields.
void writeRawDvfs(StreamFile& file, const Packet& packet, const char* typeName)
{
    std::uint32_t subEvent = packet.u32(kFwPayload);
    if (subEvent == 0 || subEvent > 7) {
        console().print("error: Zyntel DVFS packet type unknown (%d), packet skipped\n", static_cast<int>(subEvent));
        return;
    }
    writeRawEnvelope(&file, packet, typeName);
    switch (subEvent) {
    case 1:
    case 2: // proactive DVFS: 8 u64 deadline, 16 frequency, 20 workload cycles, 24 txtActCyc
        file.out.print(
            "      \"Proactive DVFS\": {\n        \"Frequency (Hz)\": %u,\n        \"Deadline (usec)\": \"%llu\",\n"
            "        \"Workload cycles\": \"%u\",\n        \"TxtActCyc\": %u,\n",
            packet.u32(kFwPayload + 16), ull(packet.u64(kFwPayload + 8)), packet.u32(kFwPayload + 20),
            packet.u32(kFwPayload + 24));
        break;
    case 3:
    case 4: // DVFS: 8 frequency, 12 utilisation, 16 txtActCyc
        file.out.print("      \"DVFS\": {\n        \"Frequency (Hz)\": %u,\n        \"Utilisation (%%)\": \"%u\",\n"
                       "        \"TxtActCyc\": %u,\n",
                       packet.u32(kFwPayload + 8), packet.u32(kFwPayload + 12), packet.u32(kFwPayload + 16));
        break;
    case 5:
    case 6: // work estimate: 8 prediction, 12 cycles taken, 16 data master, 20 index, 24 txtActCyc
        file.out.print(
            "      \"Workest\": {\n        \"DM\": %s,\n        \"Index\": %u,\n        \"Cycle prediction\": %llu,\n"
            "        \"Cycles taken\": %llu,\n        \"TXTACTCYC\": %u,\n",
            FwDataMasterName(packet.u32(kFwPayload + 16)), packet.u32(kFwPayload + 20), ull(packet.u32(kFwPayload + 8)),
            ull(packet.u32(kFwPayload + 12)), packet.u32(kFwPayload + 24));
        break;
    default: // 7: operating point update
        file.out.print("      \"OPP Update\": {\n        \"OPP\": %u,\n", packet.u32(kFwPayload + 8));
        break;
    }
    file.out.write("      }\n    }");
}
