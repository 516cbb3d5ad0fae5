// The threads of one process of the trace: which kind of work an element
// is (a data master, a firmware thread, an API, ...), and per kind one or
// more threads on which events nest properly. A period that would partly
// overlap an event of a thread goes to the kind's next thread ("3D (2)").
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "trace/element.h"

enum class StreamKind { Firmware, Host, Client };

// Threads of one kind at most; a period that fits none of them is written
// apart from the threads (see TraceWriter).
constexpr std::size_t kMostThreadsPerKind = 32;
// Periods of a thread that new periods are checked against.
constexpr std::size_t kCheckedPeriods = 32;

struct Interval {
    std::uint64_t start;
    std::uint64_t end;
    bool topLevel; // not inside another period of its thread
};

struct TraceThread {
    int tid = 0;
    std::string name;
    std::uint64_t events = 0;
    std::uint64_t busy = 0; // time covered by its periods, in nanoseconds
    // The latest periods, oldest first once full; periods pushed out all
    // end by `horizon`, so a period starting there or later cannot overlap
    // them.
    Interval recent[kCheckedPeriods];
    std::size_t recentCount = 0;
    std::size_t nextSlot = 0;
    std::uint64_t horizon = 0;
    // The latest end of any period placed: one that starts there or later
    // follows them all, so it is checked against none.
    std::uint64_t latestEnd = 0;
};

struct ThreadKind {
    const char* name;
    std::vector<TraceThread*> threads;
};

struct ProcessThreads {
    int pid = 0;
    StreamKind stream = StreamKind::Firmware;
    std::string name; // "GPU firmware: <file>", ...
    std::deque<TraceThread> threads; // every thread, in order of creation
    std::vector<ThreadKind> kinds;
    bool anyTime = false;
    std::uint64_t firstTime = 0; // span of the process's events
    std::uint64_t lastTime = 0;
};

// The kind of work of an element, from the table of kinds.
const char* threadKindOf(StreamKind stream, const Element& element);

// The thread of the kind for a period (start <= end) or, with start equal
// to end, a point; `created` tells that the thread is new. Null when every
// thread the kind may have would hold the period improperly nested.
TraceThread* placeEvent(ProcessThreads& process, const char* kind, std::uint64_t start, std::uint64_t end,
                        bool& created);
