#include "trace/element.h"

#include "trace/byte_words.h"
#include "trace/json_text.h"

namespace {

constexpr std::string_view kPropKeyNames[kPropKeyCount] = {
    "PID",     "JobRef",          "ExtJobRef",       "IntJobRef",  "speed",         "Frequency (Hz)",
    "Utilisation (%)", "Total Mem Usage", "context ID", "object ID", "Pipeline Type",
};

// A bit per length of the names above, to pass over most names at once.
constexpr std::uint64_t kPropKeyLengths = [] {
    std::uint64_t lengths = 0;
    for (std::string_view name : kPropKeyNames) lengths |= std::uint64_t{1} << name.size();
    return lengths;
}();

// Containers nested deeper than this are kept as text.
constexpr int kDeepestNesting = 32;

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Keeps the first value of each key the trace uses.
void captureProp(void* element, std::string_view name, std::string_view value)
{
    auto& target = *static_cast<Element*>(element);
    if (name.size() >= 64 || !((kPropKeyLengths >> name.size()) & 1)) return;
    for (int key = 0; key < kPropKeyCount; ++key) {
        if (name != kPropKeyNames[key] || target.has(static_cast<PropKey>(key))) continue;
        target.props[key] = value;
        target.propsFound |= 1u << key;
    }
}

struct Reader {
    std::string_view text;
    std::size_t at = 0;

    bool atEnd() const { return at >= text.size(); }
    char peek() const { return text[at]; }

    void skipSpace() { at = afterBlanks(text, at, false); }
    void skipSpaceAndCommas() { at = afterBlanks(text, at, true); }

    // A number that ends where an unquoted value ends, as bare() would
    // read it; empty when the text there is anything else.
    std::string_view plainDigits()
    {
        std::size_t end = at;
        while (end < text.size() && text[end] >= '0' && text[end] <= '9') ++end;
        if (end == at || (end < text.size() && !endsBareValue(text[end]))) return {};
        std::string_view digits = text.substr(at, end - at);
        at = end;
        return digits;
    }

    // At an opening quote: the text up to the quote that closes it.
    std::string_view quoted()
    {
        std::size_t from = ++at;
        // Most texts hold neither quote nor backslash: the first quote
        // closes them when what follows may follow a string.
        std::size_t first = at;
        while (first + 8 <= text.size()) {
            std::uint64_t word = loadWord(text.data() + first);
            std::size_t plain = firstMarked(markEqual(word, '"') | markEqual(word, '\\'));
            first += plain;
            if (plain < 8) break;
        }
        if (first + 1 < text.size() && text[first] == '"' && endsQuotedText(text[first + 1])) {
            at = first + 1;
            return text.substr(from, first - from);
        }
        for (std::size_t quote = text.find('"', at); quote != std::string_view::npos;
             quote = text.find('"', quote + 1)) {
            std::size_t backslashes = 0;
            while (quote - backslashes > from && text[quote - backslashes - 1] == '\\') ++backslashes;
            if (backslashes % 2 == 1) continue;
            std::size_t next = quote + 1;
            while (next < text.size() && (text[next] == ' ' || text[next] == '\t')) ++next;
            if (next < text.size() && !endsQuotedText(text[next])) continue;
            at = quote + 1;
            return text.substr(from, quote - from);
        }
        at = text.size();
        return text.substr(from);
    }

    // An unquoted value: up to the next comma, closing bracket or line end.
    std::string_view bare()
    {
        std::size_t from = at;
        while (!atEnd() && !endsBareValue(peek())) ++at;
        std::size_t to = at;
        while (to > from && isSpace(text[to - 1])) --to;
        return text.substr(from, to - from);
    }

    // A member's quoted name and the colon after it; false, with the name
    // passed, when no colon follows.
    bool memberName(std::string_view& name)
    {
        name = quoted();
        skipSpace();
        if (atEnd() || peek() != ':') return false;
        ++at;
        return true;
    }

    // Passes text that is not a member or value: an unquoted run, or at
    // least one byte (a lone bracket), so that reading always moves on.
    std::string_view skipStray()
    {
        std::size_t from = at;
        std::string_view stray = bare();
        if (at == from) ++at;
        return stray;
    }
};

struct ElementReader {
    Reader in;
    JsonBuilder& out;
    Element& element;

    std::string_view value(int depth);
    void members(int depth, bool capture);
    void items(int depth);
};

// Writes one value; returns its text when it is a plain value.
std::string_view ElementReader::value(int depth)
{
    in.skipSpace();
    if (in.atEnd() || in.peek() == ',' || in.peek() == '}' || in.peek() == ']') {
        out.stringValue("");
        return {};
    }
    char c = in.peek();
    if (c == '"') {
        std::string_view text = in.quoted();
        out.stringValue(text);
        return text;
    }
    if ((c == '{' || c == '[') && depth < kDeepestNesting) {
        ++in.at;
        if (c == '{') {
            out.openObject();
            members(depth + 1, false);
        } else {
            out.openArray();
            items(depth + 1);
        }
        out.close();
        return {};
    }
    std::string_view text = in.skipStray();
    out.looseValue(text);
    return text;
}

// Members up to the object's closing brace or the end of the text.
void ElementReader::members(int depth, bool capture)
{
    for (;;) {
        in.skipSpaceAndCommas();
        if (in.atEnd()) return;
        char c = in.peek();
        if (c == '}' || c == ']') {
            ++in.at;
            return;
        }
        if (c != '"') { // text that is not a member: pass over it
            in.skipStray();
            continue;
        }
        std::string_view name;
        if (!in.memberName(name)) continue;
        out.key(name);
        std::string_view text = value(depth);
        if (capture) captureProp(&element, name, text);
    }
}

void ElementReader::items(int depth)
{
    for (;;) {
        in.skipSpaceAndCommas();
        if (in.atEnd()) return;
        if (in.peek() == ']' || in.peek() == '}') {
            ++in.at;
            return;
        }
        value(depth);
    }
}

} // namespace

void parseElement(std::string_view body, Element& element, JsonBuilder& builder)
{
    element.hasStart = element.hasEnd = false;
    element.start = element.end = 0;
    // Views left from the previous element would point into text that is
    // gone: an element holds only views into its own body.
    element.name = {};
    for (std::string_view& prop : element.props) prop = {};
    element.propsFound = 0;
    builder.begin();

    ElementReader reader{{body, 0}, builder, element};
    Reader& in = reader.in;
    std::size_t indent = 0; // of the last line break passed
    for (;;) {
        // Members most often end in a comma, the next starting the next
        // line at the same indentation.
        if (!in.atEnd() && in.peek() == ',' && startsIndentedName(body, in.at + 1, indent)) {
            in.at += 2 + indent;
        } else {
            std::size_t from = in.at;
            in.skipSpaceAndCommas();
            // The body starts at the start of a line.
            std::size_t lineBreak = body.substr(from, in.at - from).rfind('\n');
            if (lineBreak != std::string_view::npos)
                indent = in.at - from - lineBreak - 1;
            else if (from == 0)
                indent = in.at;
        }
        if (in.atEnd()) break;
        if (in.peek() != '"') { // stray brackets and text between members
            in.skipStray();
            continue;
        }
        std::string_view name;
        if (!in.memberName(name)) continue;
        in.skipSpace();
        bool isStart = name == "start", isEnd = name == "end";
        if (isStart || isEnd) {
            std::string_view text = in.plainDigits();
            if (text.empty()) text = !in.atEnd() && in.peek() == '"' ? in.quoted() : in.bare();
            bool& found = isStart ? element.hasStart : element.hasEnd;
            found = parseUnsigned(text, isStart ? element.start : element.end);
            if (!found && !text.empty()) { // kept for the reader of the trace
                builder.key(name);
                builder.looseValue(text);
            }
        } else if (name == "name" && !in.atEnd() && in.peek() == '"') {
            element.name = in.quoted();
        } else if (name == "prop" && !in.atEnd() && in.peek() == '{') {
            // The members of "prop" are those of "args"; most are strict
            // JSON already and are copied as they stand.
            JsonBuilder::Copied copied = builder.copyStrictMembers(body, in.at, captureProp, &element);
            if (copied == JsonBuilder::Copied::Whole) continue;
            if (copied == JsonBuilder::Copied::None) ++in.at; // past the brace
            reader.members(1, true);
        } else {
            builder.key(name);
            reader.value(1);
        }
    }
    builder.closeAll();
    element.args = builder.text();
}
