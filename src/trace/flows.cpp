#include "trace/flows.h"

#include "trace/json_text.h"

void remember(RecentFlowEnds& ends, std::uint64_t key, const FlowEnd& end)
{
    auto [entry, added] = ends.byKey.insert_or_assign(key, end);
    if (!added) return; // the newest end of a key replaces the older one
    if (ends.order.size() < kRememberedFlowEnds) {
        ends.order.push_back(key);
        return;
    }
    std::uint64_t oldest = ends.order[ends.next];
    if (oldest != key) ends.byKey.erase(oldest);
    ends.order[ends.next] = key;
    ends.next = (ends.next + 1) % kRememberedFlowEnds;
}

const FlowEnd* find(const RecentFlowEnds& ends, std::uint64_t key)
{
    auto entry = ends.byKey.find(key);
    return entry == ends.byKey.end() ? nullptr : &entry->second;
}

bool parseReference(std::string_view text, std::uint32_t& value)
{
    bool negative = !text.empty() && text[0] == '-';
    std::uint64_t magnitude;
    if (!parseUnsigned(negative ? text.substr(1) : text, magnitude) || magnitude > 0xFFFFFFFFu) return false;
    value = static_cast<std::uint32_t>(negative ? 0 - magnitude : magnitude);
    return true;
}
