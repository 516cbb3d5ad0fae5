// Name tables: display strings indexed by an enumeration code. A code above
// the table's last valid row prints
//   "Warning: Zyntel packet unknown <kind> (<code>)!\n"
// on the console and yields the table's substitute text instead.
#pragma once

#include <cstddef>
#include <cstdint>

struct NameTable {
    const char* const* rows;
    std::uint32_t lastValid;   // index of the last row that may be printed
    const char* kind;          // the warning's wording, e.g. "host event type"
    const char* substitute;    // "OUT_OF_BOUNDS", "Unknown", ...
};

// Builds a table whose last valid row is the array's last row, or `lastValid`.
template <std::size_t N>
constexpr NameTable makeNameTable(const char* const (&rows)[N], const char* kind,
                                  const char* substitute = "OUT_OF_BOUNDS")
{
    return NameTable{rows, static_cast<std::uint32_t>(N - 1), kind, substitute};
}
template <std::size_t N>
constexpr NameTable makeNameTable(const char* const (&rows)[N], std::uint32_t lastValid, const char* kind,
                                  const char* substitute = "OUT_OF_BOUNDS")
{
    return NameTable{rows, lastValid < N ? lastValid : static_cast<std::uint32_t>(N - 1), kind, substitute};
}

const char* lookupName(const NameTable& table, std::uint32_t code);
