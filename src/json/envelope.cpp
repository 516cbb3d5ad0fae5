#include "json/envelope.h"

#include "json/format_writer.h"
#include "json/output.h"
#include "stream/header.h"
#include "stream/packet.h"
#include "stream/stream_file.h"

void applyTimeDelta(StreamFile& file, const Packet& packet)
{
    std::uint64_t timer = packet.timer();
    packet.setTimer(timer - file.prevTimer);
    file.prevTimer = timer;
}

const char* clientApiLabel(std::uint32_t eventType)
{
    struct Range {
        std::uint32_t first, last;
        const char* label;
    };
    static constexpr Range ranges[] = {
        {0, 9, "Services"}, {32, 36, "EGL"},     {64, 80, "OpenGLES"},
        {96, 98, "OpenCL"}, {128, 134, "Vulkan"}, {160, 176, "OpenGL"},
    };
    for (const Range& range : ranges)
        if (eventType >= range.first && eventType <= range.last) return range.label;
    return "Invalid";
}

void writeRawEnvelope(StreamFile* file, const Packet& packet, const char* typeName)
{
    Output& out = file ? file->out : console();
    std::uint32_t typeWord = packet.typeWord();
    out.print("    {\n      \"sig\": \"0x%x\",\n      \"size\": %u,\n      \"type\": \"%s\",\n"
              "      \"thread\": %u,\n      \"osid\": %u,\n      \"ordinal\": %u,\n      \"kortimer\": %llu,\n",
              packet.signature(), packet.sizeWord(), typeName, (typeWord >> 15) & 1, (typeWord >> 24) & 0x1F,
              packet.ordinal(), static_cast<unsigned long long>(packet.timer()));
    if (packet.streamId() == 2) out.print("      \"api\": \"%s\",\n", clientApiLabel(packet.eventType()));
}

namespace {

// Dump rows report their failures one by one, not through the file's
// once-per-file report, so the file's hook is set aside while they are written.
class RowFailureReport {
public:
    explicit RowFailureReport(Output& out)
        : out_(out), hook_(out.failureHook()), context_(out.failureHookContext())
    {
        out.setFailureHook(report, nullptr);
    }
    ~RowFailureReport() { out_.setFailureHook(hook_, context_); }

private:
    static void report(void*, int result)
    {
        errorConsole().print("warning: failed to fprintf to JSON file, error (%d)", result);
    }
    Output& out_;
    Output::FailureHook hook_;
    void* context_;
};


// One dump row, "      \"%p\": \"" and the bytes as "%02x", one space
// between bytes and two between groups of four, then "\",\n" for a full row
// or "\"\n" for the last. Built by hand: dumps are the bulk of -hex output.
void writeDumpRow(Output& out, const std::uint8_t* row, std::uint32_t count, bool last)
{
    static const char digits[] = "0123456789abcdef";
    char line[128];
    // The key is the row's address as "%p" prints it: "0x" and the hex
    // digits without leading zeros.
    char address[2 * sizeof(std::uintptr_t)];
    char* addressEnd = address + sizeof address;
    const char* addressStart = digitsOf(reinterpret_cast<std::uintptr_t>(row), 16, false, addressEnd);
    char* at = line;
    for (const char* key = "      \"0x"; *key; ++key) *at++ = *key;
    for (const char* digit = addressStart; digit != addressEnd; ++digit) *at++ = *digit;
    for (const char* rest = "\": \""; *rest; ++rest) *at++ = *rest;
    for (std::uint32_t i = 0; i < count; ++i) {
        *at++ = digits[row[i] >> 4];
        *at++ = digits[row[i] & 15];
        if (i + 1 == count) break;
        *at++ = ' ';
        if (i % 4 == 3) *at++ = ' ';
    }
    *at++ = '"';
    if (!last) *at++ = ',';
    *at++ = '\n';
    out.write(std::string_view(line, static_cast<std::size_t>(at - line)));
}

} // namespace

void writeHexDump(StreamFile* file, const Packet& packet)
{
    Output& out = file ? file->out : console();
    if (!isDumpableSignature(packet.signature())) {
        errorConsole().print("error: Packet not recognised as V2 format\n");
        return;
    }
    std::uint32_t sizeWord = packet.sizeWord();
    out.print("    {\n      \"size\": %u,\n", sizeWord);

    std::uint32_t remaining = sizeWord < packet.size() ? sizeWord : packet.size();
    const std::uint8_t* row = packet.bytes();
    RowFailureReport rowReport(out);
    for (; remaining > 16; row += 16, remaining -= 16) writeDumpRow(out, row, 16, false);
    if (remaining > 0) writeDumpRow(out, row, remaining, true);
    out.write("    }");
}
