// Hardware work in correlated mode: a kick waits in the slot of its data
// master and GPU until a finish of the same data master closes it; periodic
// samples and null kicks are periods of their own.
#include <cstdint>

#include "fw/counter_blocks.h"
#include "fw/fw_correlated_families.h"
#include "fw/fw_names.h"
#include "fw/fw_open_events.h"
#include "json/document.h"
#include "json/output.h"
#include "stream/header.h"
#include "stream/stream_file.h"

namespace {

constexpr std::uint64_t kCycleCountStep = 1ull << 32;

enum class HardwareRole { Begin, End, Alone };

struct HardwareEvent {
    HardwareRole role;
    std::uint32_t dataMasterIndex;
};

// Which data master a hardware type belongs to and whether it opens or
// closes work there. A TA out-of-memory resume opens TA work, a pause ends it.
HardwareEvent hardwareEvent(std::uint32_t type)
{
    switch (type) {
    case 0x0F: return {HardwareRole::Begin, 1};
    case 0x10: return {HardwareRole::End, 1};
    case 0x08: case 0x19: return {HardwareRole::Begin, 2};
    case 0x09: case 0x07: return {HardwareRole::End, 2};
    case 0x0A: case 0x0B: case 0x11: return {HardwareRole::Begin, 3};
    case 0x0C: case 0x17: case 0x18: return {HardwareRole::End, 3};
    case 0x0D: return {HardwareRole::Begin, 4};
    case 0x0E: return {HardwareRole::End, 4};
    case 0x13: return {HardwareRole::Begin, 5};
    case 0x14: return {HardwareRole::End, 5};
    case 0x15: return {HardwareRole::Begin, 6};
    case 0x16: return {HardwareRole::End, 6};
    case 0x28: return {HardwareRole::Begin, 7};
    case 0x29: return {HardwareRole::End, 7};
    default: return {HardwareRole::Alone, 0}; // periodic sample, null kick
    }
}

const char* const kHardwareNames[] = {"GP", "2D", "TA", "3D", "CDM", "RTU", "SHG", "TDM"};

const char* hardwareSurname(std::uint32_t beginType, std::uint32_t endType)
{
    if (beginType == kFwHw3dTqKick) return "TQ";
    if (beginType == kFwHw3dSpmKick) return "SPM";
    if (endType == kFwHwPmOomTaPause) return "PMOOM_TAPAUSE";
    return "";
}

// The end of the work: the kick time plus the cycles the data master counted,
// taken in 2^32 steps as close below the finish time as they go. Without a
// usable cycle count the finish time itself.
std::uint64_t workEnd(const Packet& begin, const Packet& end, bool& computed)
{
    const std::uint64_t kicked = begin.timer();
    const std::uint64_t processed = end.timer();
    computed = false;
    if (FwCycleCountInvalid(end)) return processed;

    const std::uint32_t beginCycles = begin.u32(FwHardwareFields::dmCyc);
    const std::uint32_t endCycles = end.u32(FwHardwareFields::dmCyc);
    std::uint64_t base;
    if (beginCycles != 0 && beginCycles != endCycles)
        base = kicked + static_cast<std::uint32_t>(endCycles - beginCycles);
    else if (beginCycles == 0 && endCycles != 0)
        base = kicked + endCycles;
    else
        return processed;

    computed = true;
    // Computed rather than stepped: a capture may put the finish far after the kick.
    if (base < processed && processed - base > kCycleCountStep)
        base += (processed - base - 1) / kCycleCountStep * kCycleCountStep;
    return base;
}

void writeJobKeys(Output& out, const Packet& begin, const Packet& end)
{
    using F = FwHardwareFields;
    const std::uint32_t signature = begin.signature();
    if (FwHasV2bLayout(signature)) {
        const std::uint32_t extJobRef = begin.u32(F::extJobRef);
        const std::uint32_t intJobRef = begin.u32(F::intJobRef);
        const std::uint32_t workCtx = begin.u32(F::workCtx);
        const std::uint32_t ctxPriority = begin.u32(F::ctxPriority);
        if (!FwIsMultiGpu(end))
            out.print("        \"ExtJobRef\": %u,\n        \"IntJobRef\": %u,\n        \"WorkCtx\": %u,\n"
                      "        \"CtxPriority\": %u,\n        \"blocks\": [\n",
                      extJobRef, intJobRef, workCtx, ctxPriority);
        else if (begin.u16(F::blocksOffset) >= 49)
            out.print("        \"ExtJobRef\": %u,\n        \"IntJobRef\": %u,\n        \"WorkCtx\": %u,\n"
                      "        \"CtxPriority\": %u,\n        \"GPUIdMask\": %u,\n        \"GPUKickId\": %u,\n"
                      "        \"blocks\": [\n",
                      extJobRef, intJobRef, workCtx, ctxPriority, begin.u32(F::gpuIdMask), begin.u8(F::gpuKickId));
        else
            out.print("        \"ExtJobRef\": %u,\n        \"IntJobRef\": %u,\n        \"WorkCtx\": %u,\n"
                      "        \"CtxPriority\": %u,\n        \"GPUIdMask\": %u,\n        \"blocks\": [\n",
                      extJobRef, intJobRef, workCtx, ctxPriority, begin.u32(F::gpuIdMask));
    } else if (signature == ZYNTEL_PACKET_V2A_SIG) {
        out.print("        \"ExtJobRef\": %u,\n        \"IntJobRef\": %u,\n        \"blocks\": [\n",
                  begin.u32(F::extJobRef), begin.u32(F::intJobRef));
    } else {
        out.print("        \"blocks\": [\n");
    }
}

// One hardware period from its begin and end packets (the same packet for
// periodic samples and null kicks). `stop` gives the counter blocks' stop
// values, or is null for single values.
void writeHardwarePeriod(StreamFile& file, const Packet& begin, const Packet& end, const Packet* stop,
                         std::uint32_t dataMasterIndex)
{
    const std::uint64_t kicked = begin.timer();
    const std::uint64_t processed = end.timer();
    bool computed = false;
    const std::uint64_t endTime = workEnd(begin, end, computed);
    const bool invalid = computed ? (endTime < kicked || endTime > processed) : kicked > processed;
    if (invalid)
        console().print("warning: Zyntel packet (%u) has invalid timestamps (kicked: %llu, start: %llu, end: %llu, "
                        "processed: %llu)\n",
                        begin.ordinal(), static_cast<unsigned long long>(kicked),
                        static_cast<unsigned long long>(kicked), static_cast<unsigned long long>(endTime),
                        static_cast<unsigned long long>(processed));

    const std::uint32_t beginType = begin.eventType();
    const char* name = beginType == kFwHwPeriodic ? "PERIODIC" : kHardwareNames[dataMasterIndex];
    using F = FwHardwareFields;

    beginTimePeriod(file);
    file.out.print("    {\n      \"kicked\": %llu,\n      \"start\": %llu,\n      \"end\": %llu,\n"
                   "      \"processed\": %llu,\n      \"name\": \"%s\",\n      \"surname\": \"%s\",\n"
                   "      \"prop\": {\n        \"osid\": %u,\n        \"frame\": %u,\n        \"PID\": %u,\n"
                   "        \"Context\": %u,\n        \"WorkTarget\": %u,\n        \"Cycles\": %llu,\n",
                   static_cast<unsigned long long>(kicked), static_cast<unsigned long long>(kicked),
                   static_cast<unsigned long long>(endTime), static_cast<unsigned long long>(processed), name,
                   hardwareSurname(beginType, end.eventType()), FwOsId(begin), begin.u32(F::frame), begin.u32(F::pid),
                   begin.u32(F::context), begin.u32(F::workTarget), static_cast<unsigned long long>(endTime - kicked));
    writeJobKeys(file.out, begin, end);
    PrintCounterBlocks(file.out, begin, stop, begin.signature(), FwIsMultiGpu(end));
    file.out.print("        ]\n      }\n    }");
}

} // namespace

std::uint32_t fwHardwareGpuId(const Packet& packet)
{
    const std::uint32_t type = packet.eventType();
    if ((type != kFwHwTaKick && type != kFwHwTaFinished) || !FwIsMultiGpu(packet)) return 0;
    const std::uint32_t mask = packet.u32(FwHardwareFields::gpuIdMask);
    if (mask == 0) return 0;
    std::uint32_t gpu = 0;
    while (!(mask & (1u << gpu))) ++gpu;
    return gpu;
}

void correlateHardware(StreamFile& file, Packet& packet)
{
    const HardwareEvent event = hardwareEvent(packet.eventType());
    if (event.role == HardwareRole::Alone) {
        // A periodic sample shows single counter values; a null kick is its
        // own stop, so its differences are 0.
        const Packet* stop = packet.eventType() == kFwHwNullKick ? &packet : nullptr;
        writeHardwarePeriod(file, packet, packet, stop, event.dataMasterIndex);
        return;
    }

    StoredPacket& slot = fwOpenEvents().hardware[event.dataMasterIndex * kFwGpuCount + fwHardwareGpuId(packet)];
    if (event.role == HardwareRole::Begin) {
        slot.assign(packet);
        return;
    }
    if (slot.empty()) return;
    const Packet begin = slot.view();
    writeHardwarePeriod(file, begin, packet, &packet, event.dataMasterIndex);
    slot.clear();
}
