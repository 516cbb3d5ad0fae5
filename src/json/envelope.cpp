#include "json/envelope.h"

#include "json/format_writer.h"
#include "json/output.h"
#include "stream/header.h"
#include "stream/packet.h"
#include "stream/stream_file.h"

#include <cstring>
#include <string_view>

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

namespace {

// A line of JSON built in place: literal pieces, numbers and texts.
class LineBuilder {
public:
    explicit LineBuilder(char* start) : at_(start) {}
    template <std::size_t N>
    void literal(const char (&text)[N])
    {
        std::memcpy(at_, text, N - 1);
        at_ += N - 1;
    }
    void text(const char* text, std::size_t length)
    {
        std::memcpy(at_, text, length);
        at_ += length;
    }
    template <unsigned Base>
    void number(std::uint64_t value)
    {
        at_ += digitCount<Base>(value);
        digitsOf(value, Base, false, at_);
    }
    char* end() const { return at_; }

private:
    char* at_;
};

// Room for the envelope's fixed text and numbers, without its two names.
constexpr std::size_t kEnvelopeRoom = 320;

} // namespace

// The envelope heads every raw element, so it is built by hand into one
// buffer and written at once. Its text is that of the format
//   "    {\n      \"sig\": \"0x%x\",\n      \"size\": %u,\n      \"type\": \"%s\",\n"
//   "      \"thread\": %u,\n      \"osid\": %u,\n      \"ordinal\": %u,\n      \"kortimer\": %llu,\n"
// and, for client packets, "      \"api\": \"%s\",\n".
void writeRawEnvelope(StreamFile* file, const Packet& packet, const char* typeName)
{
    Output& out = file ? file->out : console();
    const std::uint32_t typeWord = packet.typeWord();
    const char* api = packet.streamId() == 2 ? clientApiLabel(packet.eventType()) : nullptr;
    const std::size_t typeLength = std::strlen(typeName);
    const std::size_t apiLength = api ? std::strlen(api) : 0;

    char local[kEnvelopeRoom + 256];
    if (typeLength + apiLength > sizeof local - kEnvelopeRoom) {
        // Names this long do not come from the tool's tables; print them plainly.
        out.print("    {\n      \"sig\": \"0x%x\",\n      \"size\": %u,\n      \"type\": \"%s\",\n"
                  "      \"thread\": %u,\n      \"osid\": %u,\n      \"ordinal\": %u,\n      \"kortimer\": %llu,\n",
                  packet.signature(), packet.sizeWord(), typeName, (typeWord >> 15) & 1, (typeWord >> 24) & 0x1F,
                  packet.ordinal(), static_cast<unsigned long long>(packet.timer()));
        if (api) out.print("      \"api\": \"%s\",\n", api);
        return;
    }
    // Built in the output's own buffer when it lends one.
    char* reserved = out.reserve(sizeof local);
    char* line = reserved ? reserved : local;
    LineBuilder b(line);
    b.literal("    {\n      \"sig\": \"0x");
    b.number<16>(packet.signature());
    b.literal("\",\n      \"size\": ");
    b.number<10>(packet.sizeWord());
    b.literal(",\n      \"type\": \"");
    b.text(typeName, typeLength);
    b.literal("\",\n      \"thread\": ");
    b.number<10>((typeWord >> 15) & 1);
    b.literal(",\n      \"osid\": ");
    b.number<10>((typeWord >> 24) & 0x1F);
    b.literal(",\n      \"ordinal\": ");
    b.number<10>(packet.ordinal());
    b.literal(",\n      \"kortimer\": ");
    b.number<10>(packet.timer());
    b.literal(",\n");
    if (api) {
        b.literal("      \"api\": \"");
        b.text(api, apiLength);
        b.literal("\",\n");
    }
    const std::size_t length = static_cast<std::size_t>(b.end() - line);
    if (reserved)
        out.commit(length);
    else
        out.write(std::string_view(local, length));
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
    char local[128];
    char* reserved = out.reserve(sizeof local);
    char* line = reserved ? reserved : local;
    // The key is the row's address as "%p" prints it: "0x" and the hex
    // digits without leading zeros.
    LineBuilder key(line);
    key.literal("      \"0x");
    key.number<16>(reinterpret_cast<std::uintptr_t>(row));
    key.literal("\": \"");
    char* at = key.end();
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
    const std::size_t length = static_cast<std::size_t>(at - line);
    if (reserved)
        out.commit(length);
    else
        out.write(std::string_view(local, length));
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
