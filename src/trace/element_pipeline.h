// Reading elements is most of an export's work, and each element is read on
// its own: the bodies that the element stream cuts are gathered in batches,
// each batch is read on whichever thread is free (the converting thread or
// a helper), and the elements are handed on in the order they were cut, on
// one thread at a time. The converter never waits for a batch to be read
// while a slot is free; when none is, it reads or hands on a batch itself.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "trace/element.h"

struct ElementPipeline;
struct ElementPipelineEnd {
    void operator()(ElementPipeline* pipeline) const; // stops the helpers
};
using ElementPipelinePtr = std::unique_ptr<ElementPipeline, ElementPipelineEnd>;
using ElementHandler = void (*)(void* context, const Element& element);

// With no helper threads every body is read and handed on at once, on the
// calling thread.
ElementPipelinePtr startElementPipeline(unsigned helpers, ElementHandler onElement, void* context);

// The body is copied; it may go as soon as the call returns.
void addElementBody(ElementPipeline& pipeline, std::string_view body);

// Returns when every body added so far has been handed on.
void drainElementPipeline(ElementPipeline& pipeline);

// Helper threads worth starting on this machine: one fewer than it has
// processors, at most three.
unsigned elementHelpersForThisMachine();
