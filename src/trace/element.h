// One element of the correlated text (a time period or a point), read with
// tolerance for the text's irregularities: trailing or missing commas,
// unquoted values, quotes inside values, keys with a colon inside, objects
// left open. Whatever the text, "args" comes out as strictly valid JSON.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "trace/json_builder.h"

// The values of "prop" that the trace uses beyond "args": pairing of work
// across streams, counters and the choice of thread.
enum PropKey {
    kPid,
    kJobRef,
    kExtJobRef,
    kIntJobRef,
    kSpeed,
    kFrequency,
    kUtilisation,
    kTotalMemory,
    kContextId,
    kObjectId,
    kPipelineType,
    kPropKeyCount
};

struct Element {
    bool hasStart = false;
    bool hasEnd = false;
    std::uint64_t start = 0;
    std::uint64_t end = 0;
    std::string_view name;    // as written, without quotes; empty when missing
    std::string_view args;    // a JSON object: the "prop" members and the other keys
    std::string_view props[kPropKeyCount]; // as written, without quotes
    unsigned propsFound = 0;  // bit per PropKey

    bool has(PropKey key) const { return (propsFound >> key) & 1; }
};

// Reads the lines between an element's opening and closing brace. The
// views in `element` point into `body`, "args" into the builder, which
// keeps the args of the elements read before until it is cleared.
void parseElement(std::string_view body, Element& element, JsonBuilder& builder);
