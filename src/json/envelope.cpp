#include "json/envelope.h"

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
    while (remaining > 16) {
        const std::uint8_t* b = row;
        out.print("%s\"%p\": \"%02x %02x %02x %02x  %02x %02x %02x %02x  %02x %02x %02x %02x  "
                  "%02x %02x %02x %02x\",\n",
                  "      ", static_cast<const void*>(row), b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7], b[8], b[9],
                  b[10], b[11], b[12], b[13], b[14], b[15]);
        row += 16;
        remaining -= 16;
    }
    if (remaining > 0) {
        char text[100];
        int length = formatBounded(text, sizeof text, "%s\"%p\": \"", "      ", static_cast<const void*>(row));
        std::uint32_t at = 0;
        for (; remaining - at > 4; at += 4)
            length += formatBounded(text + length, sizeof text - length, "%02x %02x %02x %02x  ", row[at],
                                    row[at + 1], row[at + 2], row[at + 3]);
        for (; at < remaining; ++at)
            length += formatBounded(text + length, sizeof text - length, at + 1 < remaining ? "%02x " : "%02x",
                                    row[at]);
        out.print("%s\"\n", text);
    }
    out.write("    }");
}
