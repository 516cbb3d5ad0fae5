// Feeds arbitrary text to the trace exporter as if a correlated converter
// had written it (the first byte picks the stream, and whether elements
// are read on a helper thread) and checks that the trace is strictly valid
// JSON.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "trace/element_stream.h"
#include "trace/trace_export.h"

namespace {

struct StrictJson {
    const std::string& text;
    std::size_t at = 0;

    bool eat(char c) { return at < text.size() && text[at] == c ? (++at, true) : false; }
    void space() { while (at < text.size() && (text[at] == ' ' || text[at] == '\n' || text[at] == '\t' || text[at] == '\r')) ++at; }
    bool string()
    {
        if (!eat('"')) return false;
        while (at < text.size() && text[at] != '"') {
            auto c = static_cast<unsigned char>(text[at++]);
            if (c < 0x20) return false;
            if (c == '\\' && (at >= text.size() || std::string("\"\\/bfnrtu").find(text[at++]) == std::string::npos)) return false;
        }
        return eat('"');
    }
    bool value()
    {
        space();
        if (at >= text.size()) return false;
        char c = text[at];
        if (c == '"') return string();
        if (c == '{' || c == '[') {
            ++at;
            space();
            if (eat(c == '{' ? '}' : ']')) return true;
            do {
                space();
                if (c == '{' && !(string() && (space(), eat(':')))) return false;
                if (!value()) return false;
                space();
            } while (eat(','));
            return eat(c == '{' ? '}' : ']');
        }
        std::size_t from = at;
        while (at < text.size() && std::string("-+.eE0123456789").find(text[at]) != std::string::npos) ++at;
        return at > from;
    }
};

void onElement(void* context, const Element& element)
{
    auto* trace = static_cast<TraceExport*>(context);
    exportElement(*trace, trace->processes.front(), element);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1) return 0;
    std::string text;
    Output out;
    out.attachString(&text);
    TraceExport trace;
    startTrace(trace, out);
    addProcess(trace, 1, static_cast<StreamKind>(data[0] % 3), "in.bin");
    ElementStream elements;
    startElementStream(elements, onElement, &trace, data[0] / 3 % 2);
    writeToElementStream(&elements, reinterpret_cast<const char*>(data + 1), size - 1);
    finishElementStream(elements);
    finishTrace(trace, {});
    StrictJson json{text};
    if (!json.value() || (json.space(), json.at != text.size())) std::abort();
    return 0;
}
