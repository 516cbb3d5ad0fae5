// Sequential buffered reading of one input file, with absolute seeks and
// C-library end-of-file semantics: atEnd() becomes true once a read came up
// short, and a seek clears it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

class InputFile {
public:
    InputFile() = default;
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    bool open(const char* path);
    void adoptDescriptor(int fd); // takes ownership
    void close();
    bool isOpen() const { return fd_ >= 0; }

    // Reads up to `length` bytes; returns how many were read. Reads that
    // the buffer holds whole are the common case and take the short way.
    std::size_t read(void* destination, std::size_t length)
    {
        if (length == 0 || length > bufferEnd_ - bufferStart_) return readThroughRefills(destination, length);
        std::memcpy(destination, buffer_ + bufferStart_, length);
        bufferStart_ += length;
        position_ += static_cast<std::int64_t>(length);
        return length;
    }
    bool seek(std::int64_t position);
    std::int64_t tell() const { return position_; }
    // Size of the file, or -1 when it cannot be told (the position is kept).
    std::int64_t size();
    bool atEnd() const { return atEnd_; }

private:
    std::size_t readThroughRefills(void* destination, std::size_t length);
    bool refill();

    int fd_ = -1;
    std::uint8_t* buffer_ = nullptr;
    std::size_t bufferStart_ = 0; // next unread byte in buffer_
    std::size_t bufferEnd_ = 0;   // bytes valid in buffer_
    std::int64_t position_ = 0;   // logical position of the next byte
    bool atEnd_ = false;
};
