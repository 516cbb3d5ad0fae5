// The ends of work that flows start from, remembered so that a later
// element can draw a flow from them: a bounded table, oldest entry dropped
// first, so memory stays the same however long the capture.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

constexpr std::size_t kRememberedFlowEnds = 16384;

struct FlowEnd {
    std::uint64_t time;
    int pid;
    int tid;
};

struct RecentFlowEnds {
    std::unordered_map<std::uint64_t, FlowEnd> byKey;
    std::vector<std::uint64_t> order; // ring of keys in order of arrival
    std::size_t next = 0;
};

void remember(RecentFlowEnds& ends, std::uint64_t key, const FlowEnd& end);
const FlowEnd* find(const RecentFlowEnds& ends, std::uint64_t key);

// A job reference or PID as printed, signed or unsigned, as 32 bits.
bool parseReference(std::string_view text, std::uint32_t& value);
