#include "trace/element_stream.h"

#include <cstring>

#include "trace/byte_words.h"

namespace {

constexpr std::size_t kLargestElement = 1 << 20;

void emitElement(ElementStream& stream, std::string_view body)
{
    addElementBody(*stream.elements, body);
    stream.body.clear();
    stream.open = false;
}

void keep(std::string& text, std::string_view more)
{
    if (text.size() + more.size() <= kLargestElement) text.append(more);
}

bool opensElement(std::string_view line) { return line == "    {"; }
bool closesElement(std::string_view line) { return line.size() >= 5 && line.substr(0, 5) == "    }"; }

// A line of an element that began in an earlier block: its body is kept.
void onKeptLine(ElementStream& stream, std::string_view line)
{
    if (opensElement(line)) {
        if (stream.open) emitElement(stream, stream.body);
        stream.open = true;
    } else if (stream.open && closesElement(line)) {
        emitElement(stream, stream.body);
    } else if (stream.open) {
        keep(stream.body, line);
        keep(stream.body, "\n");
    }
}

// The start of the first line from `at` (a line start) that begins with
// four spaces and a brace, the only lines that may open or close an
// element; the lines before it are body lines. Found through the braces,
// a word at a time, rather than line by line. Without one: the start of
// the unfinished last line, or `end`.
const char* nextBraceLine(const char* at, const char* end)
{
    for (const char* brace = at + 4; brace < end; ++brace) {
        // '{' and '}' differ from each other (and from 'y' and DEL) only in
        // the bits 0x06.
        while (brace + 8 <= end) {
            std::uint64_t word = loadWord(brace) & ~(kEveryByte * 0x06);
            std::size_t skipped = firstMarked(markEqual(word, 0x79));
            brace += skipped;
            if (skipped < 8) break;
        }
        if (brace >= end) break;
        if (*brace != '{' && *brace != '}') continue;
        const char* line = brace - 4;
        if (std::memcmp(line, "    ", 4) == 0 && (line == at || line[-1] == '\n')) return line;
    }
    const char* lastFeed = static_cast<const char*>(memrchr(at, '\n', static_cast<std::size_t>(end - at)));
    return lastFeed ? lastFeed + 1 : at;
}

} // namespace

void startElementStream(ElementStream& stream, ElementHandler onElement, void* context, unsigned helpers)
{
    stream.partial.clear();
    stream.body.clear();
    stream.open = false;
    stream.elements = startElementPipeline(helpers, onElement, context);
}

void writeToElementStream(void* context, const char* text, std::size_t length)
{
    auto& stream = *static_cast<ElementStream*>(context);
    const char* at = text;
    const char* const end = text + length;
    if (!stream.partial.empty()) {
        const char* feed = static_cast<const char*>(std::memchr(at, '\n', length));
        if (!feed) {
            keep(stream.partial, std::string_view(at, length));
            return;
        }
        keep(stream.partial, std::string_view(at, static_cast<std::size_t>(feed - at)));
        onKeptLine(stream, stream.partial);
        stream.partial.clear();
        at = feed + 1;
    }

    const char* elementStart = nullptr; // the open element's body, when it began in this block
    while (at < end) {
        if (elementStart) at = nextBraceLine(at, end);
        const char* feed = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
        if (!feed) break;
        std::string_view line(at, static_cast<std::size_t>(feed - at));
        if (!elementStart) {
            onKeptLine(stream, line);
            if (stream.open && opensElement(line)) elementStart = feed + 1;
        } else if (opensElement(line) || closesElement(line)) {
            std::size_t size = static_cast<std::size_t>(at - elementStart);
            emitElement(stream, std::string_view(elementStart, size < kLargestElement ? size : kLargestElement));
            elementStart = nullptr;
            if (opensElement(line)) {
                stream.open = true;
                elementStart = feed + 1;
            }
        }
        at = feed + 1;
    }
    if (elementStart) keep(stream.body, std::string_view(elementStart, static_cast<std::size_t>(at - elementStart)));
    keep(stream.partial, std::string_view(at, static_cast<std::size_t>(end - at)));
}

void finishElementStream(ElementStream& stream)
{
    if (!stream.partial.empty()) onKeptLine(stream, stream.partial);
    stream.partial.clear();
    if (stream.open) emitElement(stream, stream.body);
    drainElementPipeline(*stream.elements);
}
