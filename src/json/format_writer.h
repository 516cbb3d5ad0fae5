// Pieces shared by the formatters: a writer that fills a FormatTarget and
// counts what it was given, and the digit loops.
#pragma once

#include "json/format.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

class FormatWriter {
    // Copies up to 16 bytes, reading and writing only [0, length).
    static void copyShort(char* to, const char* from, std::size_t length)
    {
        if (length >= 8) {
            std::memcpy(to, from, 8);
            std::memcpy(to + length - 8, from + length - 8, 8);
        } else if (length >= 4) {
            std::memcpy(to, from, 4);
            std::memcpy(to + length - 4, from + length - 4, 4);
        } else {
            for (std::size_t i = 0; i < length; ++i) to[i] = from[i];
        }
    }

public:
    explicit FormatWriter(FormatTarget& target) : target_(target) {}
    void text(const char* text, std::size_t length)
    {
        total_ += length;
        if (length <= static_cast<std::size_t>(target_.end - target_.at)) {
            if (length <= 16) {
                // Most pieces are short: two overlapping fixed-size moves
                // beat a call to memcpy and a byte loop.
                copyShort(target_.at, text, length);
            } else {
                std::memcpy(target_.at, text, length);
            }
            target_.at += length;
            return;
        }
        while (length > 0) {
            if (target_.at == target_.end) target_.refill(target_);
            std::size_t room = static_cast<std::size_t>(target_.end - target_.at);
            std::size_t now = length < room ? length : room;
            std::memcpy(target_.at, text, now);
            target_.at += now;
            text += now;
            length -= now;
        }
    }
    void repeat(char c, int count)
    {
        if (count <= 0) return;
        char run[64];
        std::memset(run, c, sizeof run);
        while (count > 0) {
            int now = count < 64 ? count : 64;
            text(run, static_cast<std::size_t>(now));
            count -= now;
        }
    }
    // Room for `length` bytes in the current window, or null; a reserved
    // write is finished with commit (which may count fewer bytes).
    char* reserve(std::size_t length)
    {
        return length <= static_cast<std::size_t>(target_.end - target_.at) ? target_.at : nullptr;
    }
    void commit(std::size_t length)
    {
        target_.at += length;
        total_ += length;
    }
    std::size_t total() const { return total_; }

private:
    FormatTarget& target_;
    std::size_t total_ = 0;
};

// Digits of value in the base, written at the end of buffer; returns their
// start. Each base has its own loop so that the divisions are by constants.
template <typename Value>
inline char* digitsOf(Value value, unsigned base, bool upper, char* end)
{
    const char* set = upper ? "0123456789ABCDEF" : "0123456789abcdef";
    char* at = end;
    if (base == 10) {
        // Two digits per division.
        static const char kPairs[] =
            "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
            "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
            "8081828384858687888990919293949596979899";
        if constexpr (sizeof(Value) > 4) {
            // Eight digits at a time while the value needs 64 bits, so the
            // rest of the work is done in cheaper 32-bit arithmetic.
            while (value > 0xFFFFFFFFu) {
                std::uint32_t low = static_cast<std::uint32_t>(value % 100000000u);
                value /= 100000000u;
                for (int i = 0; i < 4; ++i) {
                    const unsigned pair = low % 100 * 2;
                    low /= 100;
                    *--at = kPairs[pair + 1];
                    *--at = kPairs[pair];
                }
            }
            return digitsOf(static_cast<std::uint32_t>(value), 10, upper, at);
        }
        while (value >= 100) {
            const unsigned pair = static_cast<unsigned>(value % 100) * 2;
            value /= 100;
            *--at = kPairs[pair + 1];
            *--at = kPairs[pair];
        }
        if (value >= 10) {
            const unsigned pair = static_cast<unsigned>(value) * 2;
            *--at = kPairs[pair + 1];
            *--at = kPairs[pair];
        } else {
            *--at = static_cast<char>('0' + value);
        }
    } else if (base == 16) {
        do {
            *--at = set[value & 15];
            value >>= 4;
        } while (value != 0);
    } else {
        do {
            *--at = static_cast<char>('0' + (value & 7));
            value >>= 3;
        } while (value != 0);
    }
    return at;
}

// How many digits digitsOf writes for value in base 10 or 16, so that
// they can be written straight to where they belong.
template <unsigned Base>
unsigned digitCount(std::uint64_t value)
{
    static_assert(Base == 10 || Base == 16);
    const unsigned bits = 64 - static_cast<unsigned>(std::countl_zero(value | 1));
    if constexpr (Base == 16) {
        return (bits + 3) / 4;
    } else {
        static constexpr std::uint64_t kPowers[] = {1ull,
                                                    10ull,
                                                    100ull,
                                                    1000ull,
                                                    10000ull,
                                                    100000ull,
                                                    1000000ull,
                                                    10000000ull,
                                                    100000000ull,
                                                    1000000000ull,
                                                    10000000000ull,
                                                    100000000000ull,
                                                    1000000000000ull,
                                                    10000000000000ull,
                                                    100000000000000ull,
                                                    1000000000000000ull,
                                                    10000000000000000ull,
                                                    100000000000000000ull,
                                                    1000000000000000000ull,
                                                    10000000000000000000ull};
        // The bit length fixes the digit count to one of two values.
        const unsigned guess = bits * 1233 >> 12; // bits * log10(2)
        return guess + ((value | 1) >= kPowers[guess]);
    }
}
