// zyntel_asm: assembles captures from a text description, for the lit cases.
//
//   zyntel_asm INPUT -o OUTPUT
//
// INPUT is read line by line; '#' starts a comment, so a lit case can be its
// own input. Every other line is one of:
//
//   file NAME                 the lines below go to OUTPUT/NAME (OUTPUT is then
//                             a directory); without any `file` line OUTPUT is
//                             the capture itself
//   tl TYPE LENGTH            an 8-byte transport-layer header
//   raw FIELDS                bytes written as they stand (damage, zero headers)
//   STREAM TYPE [KEY=VALUE]... FIELDS
//                             one packet: STREAM is fw, host, client or a stream
//                             id 0-7; TYPE an event type number or name (below)
//
// Indented lines continue the packet (or raw bytes) above them.
//
// Header keys: sig=v2|v2a|v2b|NUMBER (default v2b), ord=N (default: one more
// than the file's previous packet, from 0), timer=N (default 0), size=N (the
// size word; default header plus payload), flags=N (ORed into the type word),
// osid=N (type word bits 24-28), thread (type word bit 15).
//
// Fields are written one after another from packet offset 24:
//   u8 u16 u32 i32 u64   set the width of the numbers that follow (first u32)
//   NUMBER               decimal, 0x hex or negative (two's complement)
//   "text" / "text":N    the text's bytes / NUL-padded or cut to N bytes;
//                        \n, \t, \0, \" and \\ escapes
//   @N                   go to packet offset N (counted in the raw bytes for
//                        `raw`), padding with zeros; later fields overwrite
//
// Type names: firmware and host as their tool display names without the
// number prefix (HW_TA_Kick, GPU_STATE_CHG, ENQ_Work, HOST_FenceWait);
// client as API.NAME (services.KickStart, egl.MarkStart, gles.DrawStart,
// cl.MarkStart, vk.MarkEnd, gl.DrawStart).
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "packet_builder.h"

namespace {

struct NamedType {
    const char* name;
    std::uint32_t type;
};

const NamedType kFirmwareTypes[] = {
    {"FW_BG_Start", 0x01}, {"FW_BG_End", 0x02}, {"FW_IRQ_Start", 0x03}, {"FW_IRQ_End", 0x04},
    {"FW_DBG_Start", 0x05}, {"FW_DBG_End", 0x06}, {"HW_PM_OOM_TA_Pause", 0x07}, {"HW_TA_Kick", 0x08},
    {"HW_TA_Finished", 0x09}, {"HW_3D_TQ_Kick", 0x0A}, {"HW_3D_Kick", 0x0B}, {"HW_3D_Finished", 0x0C},
    {"HW_CDM_Kick", 0x0D}, {"HW_CDM_Finished", 0x0E}, {"HW_TLA_Kick", 0x0F}, {"HW_TLA_Finished", 0x10},
    {"HW_3D_SPM_Kick", 0x11}, {"HW_Periodic", 0x12}, {"HW_RTU_Kick", 0x13}, {"HW_RTU_Finished", 0x14},
    {"HW_SHG_Kick", 0x15}, {"HW_SHG_Finished", 0x16}, {"HW_3D_TQ_Finished", 0x17}, {"HW_3D_SPM_Finished", 0x18},
    {"HW_PM_OOM_TA_Resume", 0x19}, {"CLKS_CHG", 0x1A}, {"GPU_STATE_CHG", 0x1B}, {"PWR_EST_REQUEST", 0x20},
    {"PWR_EST_READY", 0x21}, {"PWR_EST_RESULT", 0x22}, {"PWR_CHG", 0x23}, {"HW_TDM_Kick", 0x28},
    {"HW_TDM_Finished", 0x29}, {"HW_Null_Kick", 0x2A}, {"GPU_WORK_PERIOD", 0x2B}, {"CSW_Store", 0x30},
    {"CSW_Store_Complete", 0x31}, {"DVFS_Activity", 0x32}, {"UFO_info", 0x38}, {"FW_Activity", 0x39},
};

const NamedType kHostTypes[] = {
    {"ENQ_Work", 1}, {"UFO_Info", 2}, {"HOST_Alloc", 3}, {"CLK_SYNC", 4}, {"HOST_Free", 5}, {"HOST_Modify", 6},
    {"HOST_DevInfo", 7}, {"HOST_Info", 8}, {"HOST_FenceWait", 9}, {"HOST_SWTLAdvance", 10}, {"HOST_ClientInfo", 11},
};

// Client types are numbered in blocks of 32, one block per API; OpenGL
// repeats the OpenGL ES events 96 higher.
const NamedType kClientTypes[] = {
    {"services.KickStart", 1}, {"services.KickEnd", 2}, {"services.ENQ_Work", 3}, {"services.SyncAlloc", 4},
    {"services.SyncFree", 5}, {"services.SyncFenceWait", 6}, {"services.SyncSWTLAdv", 7},
    {"services.TQStart", 8}, {"services.TQEnd", 9},
    {"egl.MarkStart", 33}, {"egl.MarkEnd", 34}, {"egl.MemOpStart", 35}, {"egl.MemOpEnd", 36},
    {"gles.MarkStart", 65}, {"gles.MarkStop", 66}, {"gles.MarkPoint", 67}, {"gles.KickStart", 68},
    {"gles.KickEnd", 69}, {"gles.DrawStart", 70}, {"gles.DrawEnd", 71}, {"gles.ShaderCompileStart", 72},
    {"gles.ShaderCompileEnd", 73}, {"gles.MemOpStart", 74}, {"gles.MemOpEnd", 75}, {"gles.ComputeStart", 76},
    {"gles.ComputeEnd", 77}, {"gles.TQKickStart", 78}, {"gles.TQKickEnd", 79}, {"gles.ShaderInvocPoint", 80},
    {"cl.MarkStart", 97}, {"cl.MarkStop", 98},
    {"vk.MarkStart", 129}, {"vk.MarkEnd", 130}, {"vk.MarkPoint", 131}, {"vk.MarkStartSubCommand", 132},
    {"vk.MarkEndSubCommand", 133}, {"vk.ShaderInvocPoint", 134},
};

[[noreturn]] void fail(int line, const std::string& message)
{
    throw std::runtime_error("line " + std::to_string(line) + ": " + message);
}

std::uint64_t number(const std::string& text, int line)
{
    const bool negative = text.starts_with("-");
    const std::string digits = negative ? text.substr(1) : text;
    std::size_t used = 0;
    std::uint64_t value = 0;
    try {
        value = std::stoull(digits, &used, 0);
    } catch (const std::exception&) {
        fail(line, "not a number: " + text);
    }
    if (used != digits.size()) fail(line, "not a number: " + text);
    return negative ? 0 - value : value;
}

std::uint32_t typeNumber(std::uint32_t streamId, const std::string& text, int line)
{
    if (!text.empty() && (std::isdigit(static_cast<unsigned char>(text[0])) != 0)) {
        return static_cast<std::uint32_t>(number(text, line));
    }
    auto find = [&](const auto& table) {
        for (const NamedType& entry : table)
            if (text == entry.name) return entry.type;
        fail(line, "unknown event type name: " + text);
    };
    if (streamId == kHostStream) return find(kHostTypes);
    if (streamId == kClientStream && text.starts_with("gl.")) return typeNumber(streamId, "gles." + text.substr(3), line) + 96;
    if (streamId == kClientStream) return find(kClientTypes);
    return find(kFirmwareTypes);
}

// Texts take \n, \t, \0, \" and \\ escapes.
std::string unescape(const std::string& text)
{
    static const std::map<char, char> escapes{{'n', '\n'}, {'t', '\t'}, {'0', '\0'}, {'"', '"'}, {'\\', '\\'}};
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto escape = text[i] == '\\' && i + 1 < text.size() ? escapes.find(text[i + 1]) : escapes.end();
        result += escape != escapes.end() ? escape->second : text[i];
        if (escape != escapes.end()) ++i;
    }
    return result;
}

// Splits a line at blanks, keeping quoted texts (with any ":N" after them) whole.
std::vector<std::string> tokens(const std::string& line, int lineNumber)
{
    std::vector<std::string> result;
    std::size_t i = 0;
    while (i < line.size()) {
        if (line[i] == ' ' || line[i] == '\t') {
            ++i;
            continue;
        }
        if (line[i] == '#') break;
        std::size_t end = i;
        if (line[i] == '"') {
            for (end = i + 1; end < line.size() && line[end] != '"'; ++end)
                if (line[end] == '\\') ++end;
            if (end >= line.size()) fail(lineNumber, "unterminated text");
        }
        while (end < line.size() && line[end] != ' ' && line[end] != '\t') ++end;
        result.push_back(line.substr(i, end - i));
        i = end;
    }
    return result;
}

constexpr std::uint64_t kLargestOffset = 1 << 20;

// Bytes written at a cursor that `@N` moves; `base` is the offset of the
// first byte (24 for a packet's payload, 0 for raw bytes).
struct FieldWriter {
    Bytes bytes;
    std::size_t base = 0;
    std::size_t cursor = 0;
    int width = 4;

    void put(std::uint64_t value, int count)
    {
        if (bytes.size() < cursor + count) bytes.resize(cursor + count, 0);
        for (int i = 0; i < count; ++i) bytes[cursor++] = static_cast<std::uint8_t>(value >> (8 * i));
    }

    void field(const std::string& token, int line)
    {
        static const std::map<std::string, int> widths{{"u8", 1}, {"u16", 2}, {"u32", 4}, {"i32", 4}, {"u64", 8}};
        if (auto found = widths.find(token); found != widths.end()) {
            width = found->second;
        } else if (token.starts_with("@")) {
            std::uint64_t offset = number(token.substr(1), line);
            if (offset < base) fail(line, "offset inside the header: " + token);
            if (offset > kLargestOffset) fail(line, "offset past any capture this tool makes: " + token);
            cursor = offset - base;
            if (bytes.size() < cursor) bytes.resize(cursor, 0);
        } else if (token.starts_with("\"")) {
            const std::size_t close = token.rfind('"');
            const std::string text = unescape(token.substr(1, close - 1));
            std::size_t count = text.size();
            if (close + 1 < token.size()) {
                if (token[close + 1] != ':') fail(line, "expected \"text\":WIDTH, got " + token);
                count = number(token.substr(close + 2), line);
            }
            for (std::size_t i = 0; i < count; ++i) put(i < text.size() ? static_cast<std::uint8_t>(text[i]) : 0, 1);
        } else {
            put(number(token, line), width);
        }
    }
};

// A packet being assembled: its header values and its payload.
struct PacketLine {
    std::uint32_t typeWord = 0;
    std::uint32_t signature = kSigV2b;
    std::uint32_t ordinal = 0;
    std::uint64_t timer = 0;
    bool sizeGiven = false;
    std::uint32_t size = 0;
    FieldWriter fields;

    Bytes build() const
    {
        PacketBuilder packet(typeWord, signature);
        packet.ordinal(ordinal).timer(timer).bytes(fields.bytes);
        if (sizeGiven) packet.sizeWord(size);
        return packet.build();
    }
};

class Assembler {
public:
    void line(const std::string& text, int lineNumber)
    {
        std::vector<std::string> words = tokens(text, lineNumber);
        if (words.empty()) return;
        if (text[0] == ' ' || text[0] == '\t') {
            if (!open_) fail(lineNumber, "continuation without a packet or raw line above");
            for (const std::string& word : words) open_->field(word, lineNumber);
            return;
        }
        finish();
        const std::string& head = words[0];
        if (head == "file") {
            if (words.size() != 2) fail(lineNumber, "expected: file NAME");
            files_.push_back({words[1], Capture{}});
            nextOrdinal_ = 0;
        } else if (head == "tl") {
            if (words.size() != 3) fail(lineNumber, "expected: tl TYPE LENGTH");
            current().tlHeader(static_cast<std::uint8_t>(number(words[1], lineNumber)),
                               static_cast<std::uint16_t>(number(words[2], lineNumber)));
        } else if (head == "raw") {
            raw_ = FieldWriter{};
            for (std::size_t i = 1; i < words.size(); ++i) raw_.field(words[i], lineNumber);
            open_ = &raw_;
        } else {
            packet(words, lineNumber);
            open_ = &packet_.fields;
        }
    }

    void write(const std::string& output)
    {
        finish();
        if (files_.size() == 1 && files_[0].name.empty()) {
            save(output, files_[0].capture);
            return;
        }
        for (const NamedCapture& file : files_) {
            const std::filesystem::path path = std::filesystem::path(output) / file.name;
            std::filesystem::create_directories(path.parent_path());
            save(path.string(), file.capture);
        }
    }

private:
    struct NamedCapture {
        std::string name;
        Capture capture;
    };

    Capture& current()
    {
        if (files_.empty()) files_.push_back({"", Capture{}});
        return files_.back().capture;
    }

    void packet(const std::vector<std::string>& words, int lineNumber)
    {
        static const std::map<std::string, std::uint32_t> streams{
            {"fw", kFirmwareStream}, {"host", kHostStream}, {"client", kClientStream}};
        static const std::map<std::string, std::uint32_t> signatures{{"v2", kSigV2}, {"v2a", kSigV2a}, {"v2b", kSigV2b}};
        if (words.size() < 2) fail(lineNumber, "expected: STREAM TYPE ...");
        auto stream = streams.find(words[0]);
        const std::uint32_t streamId =
            stream != streams.end() ? stream->second : static_cast<std::uint32_t>(number(words[0], lineNumber));
        std::uint32_t flags = 0;
        packet_ = PacketLine{};
        packet_.fields.base = 24;
        packet_.ordinal = nextOrdinal_;
        std::size_t i = 2;
        for (; i < words.size(); ++i) {
            const std::string& word = words[i];
            if (word == "thread") {
                flags |= 1u << 15;
                continue;
            }
            const std::size_t equals = word.find('=');
            if (equals == std::string::npos || word.starts_with("\"")) break;
            const std::string key = word.substr(0, equals);
            const std::uint64_t value = key == "sig" && signatures.contains(word.substr(equals + 1))
                                            ? signatures.at(word.substr(equals + 1))
                                            : number(word.substr(equals + 1), lineNumber);
            if (key == "sig") {
                packet_.signature = static_cast<std::uint32_t>(value);
            } else if (key == "ord") {
                packet_.ordinal = static_cast<std::uint32_t>(value);
            } else if (key == "timer") {
                packet_.timer = value;
            } else if (key == "size") {
                packet_.sizeGiven = true;
                packet_.size = static_cast<std::uint32_t>(value);
            } else if (key == "flags") {
                flags |= static_cast<std::uint32_t>(value);
            } else if (key == "osid") {
                flags |= static_cast<std::uint32_t>(value & 0x1F) << 24;
            } else {
                fail(lineNumber, "unknown header key: " + key);
            }
        }
        nextOrdinal_ = packet_.ordinal + 1;
        packet_.typeWord = typeWord(typeNumber(streamId, words[1], lineNumber), streamId, flags);
        for (; i < words.size(); ++i) packet_.fields.field(words[i], lineNumber);
    }

    // Adds the packet or raw bytes being assembled to the current file.
    void finish()
    {
        if (open_ == &packet_.fields) current().add(packet_.build());
        if (open_ == &raw_) current().add(raw_.bytes);
        open_ = nullptr;
    }

    static void save(const std::string& path, const Capture& capture)
    {
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(capture.bytes().data()),
                   static_cast<std::streamsize>(capture.bytes().size()));
        if (!file) throw std::runtime_error("cannot write " + path);
    }

    std::vector<NamedCapture> files_;
    PacketLine packet_;
    FieldWriter raw_;
    FieldWriter* open_ = nullptr; // the fields continuation lines add to
    std::uint32_t nextOrdinal_ = 0;
};

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4 || std::string(argv[2]) != "-o") {
        std::cerr << "usage: zyntel_asm INPUT -o OUTPUT\n";
        return 1;
    }
    std::ifstream input(argv[1]);
    if (!input) {
        std::cerr << "zyntel_asm: cannot read " << argv[1] << "\n";
        return 1;
    }
    try {
        Assembler assembler;
        std::string line;
        for (int number = 1; std::getline(input, line); ++number) assembler.line(line, number);
        assembler.write(argv[3]);
    } catch (const std::exception& error) {
        std::cerr << "zyntel_asm: " << argv[1] << ": " << error.what() << "\n";
        return 1;
    }
    return 0;
}
