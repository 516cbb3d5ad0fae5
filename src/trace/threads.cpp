#include "trace/threads.h"

#include <cstring>

namespace {

// The first row that matches names the kind: by the element's name (whole,
// or its start when the row's name ends in '*') and, when a row gives one,
// a key that the element's "prop" must hold.
struct KindRule {
    StreamKind stream;
    std::string_view elementName;
    int requiredProp; // a PropKey, or -1
    const char* kind;
};

constexpr StreamKind F = StreamKind::Firmware, H = StreamKind::Host, C = StreamKind::Client;

const KindRule kKindRules[] = {
    {F, "2D", -1, "2D"},
    {F, "TA", -1, "TA"},
    {F, "3D", -1, "3D"},
    {F, "CDM", -1, "CDM"},
    {F, "RTU", -1, "RTU"},
    {F, "SHG", -1, "SHG"},
    {F, "TDM", -1, "TDM"},
    {F, "GP", -1, "GP"},
    {F, "PERIODIC", -1, "Periodic samples"},
    {F, "T0 *", -1, "Firmware thread 0"},
    {F, "T1 *", -1, "Firmware thread 1"},
    {F, "CSW_*", -1, "Context switches"},
    {F, "DVFS", -1, "DVFS"},
    {F, "Proactive DVFS", -1, "DVFS"},
    {F, "WORKEST_*", -1, "DVFS"},
    {F, "OPP Update", -1, "DVFS"},
    {F, "CLKCHG", -1, "Power and clocks"},
    {F, "GPUSTATECHG", -1, "Power and clocks"},
    {F, "PWRCHG", -1, "Power and clocks"},
    {F, "PWREST_*", -1, "Power and clocks"},
    {F, "GPUWORKPERIOD", -1, "GPU work periods"},
    {F, "UFO", -1, "Sync objects (UFO)"},
    {F, "FW_ACTIVITY", -1, "Firmware activity"},
    {H, "ENQ", -1, "Enqueues"},
    {H, "UFO", -1, "Sync objects (UFO)"},
    {H, "HOST_ALLOC", -1, "Sync objects"},
    {H, "HOST_FREE", -1, "Sync objects"},
    {H, "HOST_MODIFY", -1, "Sync objects"},
    {H, "HOST_SYNC_WAIT", -1, "Sync objects"},
    {H, "SW_TL_ADVANCE", -1, "Sync objects"},
    {H, "CLK_SYNC", -1, "Clock sync"},
    {H, "DEVICE_INFO", -1, "Device, memory and clients"},
    {H, "HOST_INFO", -1, "Device, memory and clients"},
    {H, "HOST_CLIENT_INFO", -1, "Device, memory and clients"},
    {C, "ENQ_CLIENT", -1, "Enqueues and kicks"},
    {C, "KORKICK", -1, "Enqueues and kicks"},
    {C, "SWTQ", -1, "Enqueues and kicks"},
    {C, "SYNC_*", -1, "Sync objects"},
    {C, "SW_TIMELINE_ADV", -1, "Sync objects"},
    {C, "EGL_SCOPE", -1, "EGL"},
    {C, "MEMORY_OP_POINT", kContextId, "OpenGL ES and OpenGL"},
    {C, "MEMORY_OP_POINT", -1, "EGL"},
    {C, "FUNC_SCOPE", kObjectId, "OpenCL"},
    {C, "VULKAN_MARK", -1, "Vulkan"},
    {C, "SHADER_INVOC_POINT", kPipelineType, "Vulkan"},
    {C, "FUNC_SCOPE", -1, "OpenGL ES and OpenGL"},
    {C, "DRAW_SCOPE", -1, "OpenGL ES and OpenGL"},
    {C, "KICK_SCOPE", -1, "OpenGL ES and OpenGL"},
    {C, "TQ_KICK_SCOPE", -1, "OpenGL ES and OpenGL"},
    {C, "COMPILE_SHADER_POINT", -1, "OpenGL ES and OpenGL"},
    {C, "DISPATCH_COMPUTE_SCOPE", -1, "OpenGL ES and OpenGL"},
    {C, "MARK_POINT", -1, "OpenGL ES and OpenGL"},
    {C, "SHADER_INVOC_POINT", -1, "OpenGL ES and OpenGL"},
};

constexpr const char* kOtherKind = "Other";

bool nameMatches(std::string_view name, std::string_view pattern)
{
    if (!pattern.empty() && pattern.back() == '*') return name.substr(0, pattern.size() - 1) == pattern.substr(0, pattern.size() - 1);
    return name == pattern;
}

bool partlyOverlaps(const Interval& a, std::uint64_t start, std::uint64_t end)
{
    return (a.start < start && start < a.end && a.end < end) || (start < a.start && a.start < end && end < a.end);
}

bool fits(const TraceThread& thread, std::uint64_t start, std::uint64_t end)
{
    if (start == end) return true; // a point never overlaps anything in part
    if (start >= thread.latestEnd) return true;
    if (start < thread.horizon) return false;
    for (std::size_t i = 0; i < thread.recentCount; ++i)
        if (partlyOverlaps(thread.recent[i], start, end)) return false;
    return true;
}

// Adds the period and the time it covers beyond the periods it contains.
void place(TraceThread& thread, std::uint64_t start, std::uint64_t end)
{
    ++thread.events;
    if (start == end) return;
    bool inside = false;
    std::uint64_t covered = end - start;
    bool follows = start >= thread.latestEnd; // neither inside a period nor around one
    for (std::size_t i = 0; i < thread.recentCount && !follows; ++i) {
        Interval& other = thread.recent[i];
        if (other.start <= start && end <= other.end) {
            inside = true;
            break;
        }
    }
    if (!inside) {
        for (std::size_t i = 0; i < thread.recentCount && !follows; ++i) {
            Interval& other = thread.recent[i];
            if (other.topLevel && start <= other.start && other.end <= end) {
                covered -= other.end - other.start;
                other.topLevel = false;
            }
        }
        thread.busy += covered;
    }
    Interval& slot = thread.recent[thread.nextSlot];
    if (thread.recentCount == kCheckedPeriods) {
        if (slot.end > thread.horizon) thread.horizon = slot.end;
    } else {
        ++thread.recentCount;
    }
    slot = {start, end, !inside};
    if (end > thread.latestEnd) thread.latestEnd = end;
    thread.nextSlot = (thread.nextSlot + 1) % kCheckedPeriods;
}

} // namespace

const char* threadKindOf(StreamKind stream, const Element& element)
{
    for (const KindRule& rule : kKindRules) {
        if (rule.stream != stream || !nameMatches(element.name, rule.elementName)) continue;
        if (rule.requiredProp >= 0 && !element.has(static_cast<PropKey>(rule.requiredProp))) continue;
        return rule.kind;
    }
    return kOtherKind;
}

TraceThread* placeEvent(ProcessThreads& process, const char* kind, std::uint64_t start, std::uint64_t end,
                        bool& created)
{
    created = false;
    ThreadKind* threadKind = nullptr;
    for (ThreadKind& known : process.kinds)
        if (known.name == kind) threadKind = &known;
    if (!threadKind) // the same text may sit at more than one address
        for (ThreadKind& known : process.kinds)
            if (std::strcmp(known.name, kind) == 0) threadKind = &known;
    if (!threadKind) threadKind = &process.kinds.emplace_back(ThreadKind{kind, {}});

    for (TraceThread* thread : threadKind->threads) {
        if (!fits(*thread, start, end)) continue;
        place(*thread, start, end);
        return thread;
    }
    if (threadKind->threads.size() == kMostThreadsPerKind) return nullptr;

    TraceThread& thread = process.threads.emplace_back();
    thread.tid = static_cast<int>(process.threads.size());
    thread.name = kind;
    if (!threadKind->threads.empty()) thread.name += " (" + std::to_string(threadKind->threads.size() + 1) + ")";
    threadKind->threads.push_back(&thread);
    place(thread, start, end);
    created = true;
    return &thread;
}
