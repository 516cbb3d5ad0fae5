// Records and an output capture for the API payload printer tests.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "json/output.h"
#include "stream/packet.h"
#include "stream/stream_file.h"

// A record of a fixed size whose fields are set by their offset from the
// record's first byte (as the record layouts are written).
class Record {
public:
    explicit Record(std::size_t size) : bytes_(size + kPadding, 0), size_(size) {}

    Record& u16(std::size_t offset, std::uint16_t value) { return put(offset, value, 2); }
    Record& u32(std::size_t offset, std::uint32_t value) { return put(offset, value, 4); }
    Record& u64(std::size_t offset, std::uint64_t value) { return put(offset, value, 8); }
    Record& text(std::size_t offset, const std::string& value)
    {
        std::memcpy(bytes_.data() + offset, value.data(), value.size());
        return *this;
    }
    // Consecutive u32 fields from `offset`.
    Record& u32s(std::size_t offset, std::initializer_list<std::uint32_t> values)
    {
        for (std::uint32_t value : values) u32(offset, value), offset += 4;
        return *this;
    }

    // The record as the printers see it; the zero padding behind it is what
    // the reader's buffer provides.
    Packet packet() { return Packet(bytes_.data(), static_cast<std::uint32_t>(size_)); }

private:
    static constexpr std::size_t kPadding = 8;

    Record& put(std::size_t offset, std::uint64_t value, int width)
    {
        for (int i = 0; i < width; ++i) bytes_.at(offset + i) = static_cast<std::uint8_t>(value >> (8 * i));
        return *this;
    }

    std::vector<std::uint8_t> bytes_;
    std::size_t size_;
};

// A stream file whose JSON output and console text go to strings.
struct PrinterRun {
    PrinterRun()
    {
        file.out.attachString(&json);
        consoleOut.attachString(&console);
        errorOut.attachString(&errors);
        redirectConsole(&consoleOut, &errorOut);
    }
    ~PrinterRun() { redirectConsole(nullptr, nullptr); }

    std::string json;
    std::string console;
    std::string errors;
    StreamFile file;
    Output consoleOut;
    Output errorOut;
};
