#include "trace/line_cutter.h"

#include <cstring>

namespace {

constexpr std::size_t kLongestLine = 1 << 20;

} // namespace

void cutLines(LineCutter& cutter, const char* text, std::size_t length)
{
    const char* end = text + length;
    while (text < end) {
        const char* feed = static_cast<const char*>(std::memchr(text, '\n', static_cast<std::size_t>(end - text)));
        if (!feed) {
            std::size_t rest = static_cast<std::size_t>(end - text);
            while (cutter.partial.size() + rest > kLongestLine) {
                std::size_t room = kLongestLine - cutter.partial.size();
                cutter.partial.append(text, room);
                text += room;
                rest -= room;
                cutter.onLine(cutter.context, cutter.partial);
                cutter.partial.clear();
            }
            cutter.partial.append(text, rest);
            return;
        }
        std::string_view line(text, static_cast<std::size_t>(feed - text));
        if (cutter.partial.empty()) {
            cutter.onLine(cutter.context, line);
        } else {
            cutter.partial.append(line);
            cutter.onLine(cutter.context, cutter.partial);
            cutter.partial.clear();
        }
        text = feed + 1;
    }
}

void finishLines(LineCutter& cutter)
{
    if (cutter.partial.empty()) return;
    cutter.onLine(cutter.context, cutter.partial);
    cutter.partial.clear();
}
