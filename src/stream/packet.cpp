#include "stream/packet.h"

#include <cstring>

std::uint64_t Packet::little(std::size_t offset, std::size_t width) const
{
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i) {
        std::size_t at = offset + i;
        if (at < offset || at >= size_) break;
        value |= static_cast<std::uint64_t>(bytes_[at]) << (8 * i);
    }
    return value;
}

void Packet::setU64(std::size_t offset, std::uint64_t value) const
{
    for (std::size_t i = 0; i < 8; ++i) setU8(offset + i, static_cast<std::uint8_t>(value >> (8 * i)));
}

std::uint32_t Packet::fitCount(std::size_t offset, std::uint64_t count, std::size_t elementSize) const
{
    // Elements without bytes take no room, so the packet's end cannot bound
    // them; the cap keeps a hostile count from printing billions of lines.
    if (elementSize == 0) return static_cast<std::uint32_t>(count < kMaxEmptyElements ? count : kMaxEmptyElements);
    if (offset >= size_) return 0;
    std::uint64_t room = size_ - offset;
    std::uint64_t starting = (room + elementSize - 1) / elementSize;
    return static_cast<std::uint32_t>(count < starting ? count : starting);
}

void StoredPacket::assign(const Packet& packet)
{
    if (storage_.size() < packet.size() + 8u) storage_.resize(packet.size() + 8u);
    std::memcpy(storage_.data(), packet.bytes(), packet.size());
    std::memset(storage_.data() + packet.size(), 0, 8);
    size_ = packet.size();
    held_ = true;
}
