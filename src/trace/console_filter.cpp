#include "trace/console_filter.h"

namespace {

bool startsWith(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }

bool isProgressLine(std::string_view line)
{
    for (const char* stream : {"Firmware packet ", "Host packet ", "Client packet "})
        if (startsWith(line, stream) && line.size() > 3 && line.substr(line.size() - 3) == "...") return true;
    return line.empty() || startsWith(line, "info: ") || startsWith(line, "Printing start packet") ||
           startsWith(line, "Printing end packet");
}

void onConsoleLine(void* context, std::string_view line)
{
    auto& filter = *static_cast<ConsoleFilter*>(context);
    if (isProgressLine(line)) return;
    if (startsWith(line, "warning") || startsWith(line, "Warning") || startsWith(line, "error") ||
        startsWith(line, "Error"))
        ++filter.warnings;
    filter.shown->write(line);
    filter.shown->write("\n");
}

void writeToConsoleFilter(void* context, const char* text, std::size_t length)
{
    cutLines(static_cast<ConsoleFilter*>(context)->lines, text, length);
}

} // namespace

void startConsoleFilter(ConsoleFilter& filter, Output& shown)
{
    filter.shown = &shown;
    filter.lines.onLine = onConsoleLine;
    filter.lines.context = &filter;
    filter.input.attachSink(writeToConsoleFilter, &filter);
    redirectConsole(&filter.input, nullptr);
}

void flushConsoleFilter(ConsoleFilter& filter)
{
    filter.input.flush();
    finishLines(filter.lines);
}

void stopConsoleFilter(ConsoleFilter& filter)
{
    flushConsoleFilter(filter);
    filter.input.close();
    redirectConsole(nullptr, nullptr);
}
