#include "trace/element_stream.h"

#include <cstring>

namespace {

constexpr std::size_t kLargestElement = 1 << 20;

void emitElement(ElementStream& stream, std::string_view body)
{
    parseElement(body, stream.element, stream.builder);
    stream.onElement(stream.context, stream.element);
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

} // namespace

void startElementStream(ElementStream& stream, ElementStream::ElementHandler onElement, void* context)
{
    stream.partial.clear();
    stream.body.clear();
    stream.open = false;
    stream.onElement = onElement;
    stream.context = context;
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
}
