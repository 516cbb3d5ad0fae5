// Cuts the correlated text, as the converters write it, into elements: an
// element runs from a line "    {" to the next line that begins "    }".
// Lines between elements (separators, the array's closing, text left after
// an element's closing brace) are passed over. An element that is still
// open when the next one begins is read as far as it goes.
#pragma once

#include <string>

#include "trace/element_pipeline.h"

struct ElementStream {
    std::string partial; // the start of a line whose end has not arrived
    std::string body;    // an open element begun in an earlier block, up to 1 MiB
    bool open = false;
    ElementPipelinePtr elements; // reads the bodies and hands the elements on
};

// The elements are read on `helpers` threads besides the caller's.
void startElementStream(ElementStream& stream, ElementHandler onElement, void* context, unsigned helpers = 0);

// An Output sink (the context is the ElementStream). Elements that lie
// whole in one block are passed on from where they are; only an element
// that spans blocks is gathered first.
void writeToElementStream(void* stream, const char* text, std::size_t length);

// Reads what is left, including an element left open, and returns when
// every element has been handed on.
void finishElementStream(ElementStream& stream);
