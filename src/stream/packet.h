// Bounded access to one packet's bytes. Converters read packets only
// through this type, so that no input can make them read outside the packet:
//  - a field that lies wholly or partly past the end reads the missing
//    bytes as zero;
//  - a list whose length comes from the packet keeps only the elements that
//    start before the end (see fitCount);
//  - a text ends at its first NUL or at the packet's end.
// The storage behind a Packet always holds at least one zero byte after the
// last packet byte, so text() can hand out C strings.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

class Packet {
public:
    Packet() = default;
    Packet(std::uint8_t* bytes, std::uint32_t size) : bytes_(bytes), size_(size) {}

    std::uint8_t* bytes() const { return bytes_; }
    std::uint32_t size() const { return size_; }

    std::uint8_t u8(std::size_t offset) const { return offset < size_ ? bytes_[offset] : 0; }
    std::uint16_t u16(std::size_t offset) const { return fixed<std::uint16_t>(offset); }
    std::uint32_t u32(std::size_t offset) const { return fixed<std::uint32_t>(offset); }
    std::uint64_t u64(std::size_t offset) const { return fixed<std::uint64_t>(offset); }
    std::int16_t i16(std::size_t offset) const { return static_cast<std::int16_t>(u16(offset)); }
    std::int32_t i32(std::size_t offset) const { return static_cast<std::int32_t>(u32(offset)); }
    std::int64_t i64(std::size_t offset) const { return static_cast<std::int64_t>(u64(offset)); }

    // NUL-terminated text starting at offset; "" when offset is past the end.
    const char* text(std::size_t offset) const
    {
        return offset < size_ ? reinterpret_cast<const char*>(bytes_ + offset) : "";
    }

    // How many of `count` elements of `elementSize` bytes, the first at
    // `offset`, start before the end of the packet. A list of elements of
    // size 0 keeps its count, up to kMaxEmptyElements.
    static constexpr std::uint64_t kMaxEmptyElements = 1024;
    std::uint32_t fitCount(std::size_t offset, std::uint64_t count, std::size_t elementSize) const;

    // The bytes from offset on, as a packet of their own (empty past the end).
    Packet from(std::size_t offset) const
    {
        return offset < size_ ? Packet(bytes_ + offset, static_cast<std::uint32_t>(size_ - offset))
                              : Packet(bytes_ + size_, 0);
    }

    // In-place changes used by the converters (forced terminators, the
    // -tdelta timer). Writes past the end are ignored.
    void setU8(std::size_t offset, std::uint8_t value) const
    {
        if (offset < size_) bytes_[offset] = value;
    }
    void setU64(std::size_t offset, std::uint64_t value) const;

    // Header fields (the 24-byte packet header at offset 0).
    std::uint32_t signature() const { return u32(0); }
    std::uint32_t sizeWord() const { return u32(4); }
    std::uint32_t typeWord() const { return u32(8); }
    std::uint32_t eventType() const { return typeWord() & 0x7FFF; }
    std::uint32_t streamId() const { return (typeWord() >> 16) & 0x7; }
    std::uint32_t ordinal() const { return u32(12); }
    std::uint64_t timer() const { return u64(16); }
    void setTimer(std::uint64_t value) const { setU64(16, value); }

private:
    // Fields that lie wholly inside the packet are read directly (the host
    // is little-endian); others byte by byte, with zeros past the end.
    template <typename Field>
    Field fixed(std::size_t offset) const
    {
        if (offset < size_ && sizeof(Field) <= size_ - offset) {
            Field value;
            std::memcpy(&value, bytes_ + offset, sizeof value);
            return value;
        }
        return static_cast<Field>(little(offset, sizeof(Field)));
    }
    std::uint64_t little(std::size_t offset, std::size_t width) const;

    std::uint8_t* bytes_ = nullptr;
    std::uint32_t size_ = 0;
};

// A packet copy that outlives the reader's buffer (pending begin events of
// the correlated converters). Its storage is reused from one copy to the next.
class StoredPacket {
public:
    bool empty() const { return !held_; }
    void assign(const Packet& packet);
    void clear() { held_ = false; }
    Packet view() { return held_ ? Packet(storage_.data(), size_) : Packet(); }

private:
    std::vector<std::uint8_t> storage_;
    std::uint32_t size_ = 0;
    bool held_ = false;
};
