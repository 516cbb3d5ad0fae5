#include "trace/element_stream.h"

namespace {

constexpr std::size_t kLargestElement = 1 << 20;

void emitElement(ElementStream& stream)
{
    parseElement(stream.body, stream.element, stream.builder);
    stream.onElement(stream.context, stream.element);
    stream.body.clear();
    stream.open = false;
}

void onLine(void* context, std::string_view line)
{
    auto& stream = *static_cast<ElementStream*>(context);
    if (line == "    {") {
        if (stream.open) emitElement(stream);
        stream.open = true;
        return;
    }
    if (!stream.open) return;
    if (line.size() >= 5 && line.substr(0, 5) == "    }") {
        emitElement(stream);
        return;
    }
    if (stream.body.size() + line.size() >= kLargestElement) return;
    stream.body.append(line);
    stream.body += '\n';
}

} // namespace

void startElementStream(ElementStream& stream, ElementStream::ElementHandler onElement, void* context)
{
    stream.lines.onLine = onLine;
    stream.lines.context = &stream;
    stream.lines.partial.clear();
    stream.body.clear();
    stream.open = false;
    stream.onElement = onElement;
    stream.context = context;
}

void writeToElementStream(void* stream, const char* text, std::size_t length)
{
    cutLines(static_cast<ElementStream*>(stream)->lines, text, length);
}

void finishElementStream(ElementStream& stream)
{
    finishLines(stream.lines);
    if (stream.open) emitElement(stream);
}
