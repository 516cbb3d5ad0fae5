#include "packet_builder.h"

void appendU32(Bytes& bytes, std::uint32_t value)
{
    for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

namespace {
void appendU64(Bytes& bytes, std::uint64_t value)
{
    for (int i = 0; i < 8; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}
} // namespace

PacketBuilder::PacketBuilder(std::uint32_t typeWord, std::uint32_t signature)
    : signature_(signature), typeWord_(typeWord)
{
}

PacketBuilder& PacketBuilder::signature(std::uint32_t value) { signature_ = value; return *this; }
PacketBuilder& PacketBuilder::ordinal(std::uint32_t value) { ordinal_ = value; return *this; }
PacketBuilder& PacketBuilder::timer(std::uint64_t value) { timer_ = value; return *this; }

PacketBuilder& PacketBuilder::sizeWord(std::uint32_t value)
{
    sizeOverridden_ = true;
    sizeWord_ = value;
    return *this;
}

PacketBuilder& PacketBuilder::u8(std::uint8_t value) { payload_.push_back(value); return *this; }

PacketBuilder& PacketBuilder::u16(std::uint16_t value)
{
    payload_.push_back(static_cast<std::uint8_t>(value));
    payload_.push_back(static_cast<std::uint8_t>(value >> 8));
    return *this;
}

PacketBuilder& PacketBuilder::u32(std::uint32_t value) { appendU32(payload_, value); return *this; }
PacketBuilder& PacketBuilder::u64(std::uint64_t value) { appendU64(payload_, value); return *this; }

PacketBuilder& PacketBuilder::u32s(std::initializer_list<std::uint32_t> values)
{
    for (std::uint32_t value : values) u32(value);
    return *this;
}

PacketBuilder& PacketBuilder::text(const std::string& value, std::size_t width)
{
    for (std::size_t i = 0; i < width; ++i) payload_.push_back(i < value.size() ? static_cast<std::uint8_t>(value[i]) : 0);
    return *this;
}

PacketBuilder& PacketBuilder::bytes(const Bytes& value)
{
    payload_.insert(payload_.end(), value.begin(), value.end());
    return *this;
}

PacketBuilder& PacketBuilder::zeros(std::size_t count)
{
    payload_.insert(payload_.end(), count, 0);
    return *this;
}

PacketBuilder& PacketBuilder::padTo(std::size_t payloadOffset)
{
    if (payload_.size() < payloadOffset) payload_.resize(payloadOffset, 0);
    return *this;
}

PacketBuilder& PacketBuilder::putU32(std::size_t payloadOffset, std::uint32_t value)
{
    padTo(payloadOffset + 4);
    for (int i = 0; i < 4; ++i) payload_[payloadOffset + i] = static_cast<std::uint8_t>(value >> (8 * i));
    return *this;
}

Bytes PacketBuilder::build() const
{
    Bytes packet;
    appendU32(packet, signature_);
    appendU32(packet, sizeOverridden_ ? sizeWord_ : static_cast<std::uint32_t>(24 + payload_.size()));
    appendU32(packet, typeWord_);
    appendU32(packet, ordinal_);
    appendU64(packet, timer_);
    packet.insert(packet.end(), payload_.begin(), payload_.end());
    return packet;
}

Capture& Capture::add(const Bytes& bytes)
{
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return *this;
}

Capture& Capture::tlHeader(std::uint8_t tlType, std::uint16_t dataLength)
{
    bytes_.push_back(static_cast<std::uint8_t>(dataLength));
    bytes_.push_back(static_cast<std::uint8_t>(dataLength >> 8));
    bytes_.push_back(0);
    bytes_.push_back(tlType);
    appendU32(bytes_, 0x31504C54);
    return *this;
}
