// Counter ids registered by the "01_Regs_Programmed" activity: for each of
// 112 blocks the ids of up to 12 counters. Kept for the whole run (across
// files) and shared by both firmware converters.
#pragma once

#include <cstdint>

class CounterIdTable {
public:
    static constexpr std::uint32_t kBlocks = 112;
    static constexpr std::uint32_t kSlots = 12;

    // Ids outside the table read as 0 and are not stored.
    std::uint32_t get(std::uint32_t block, std::uint32_t slot) const
    {
        return block < kBlocks && slot < kSlots ? ids_[block][slot] : 0;
    }
    void set(std::uint32_t block, std::uint32_t slot, std::uint32_t id)
    {
        if (block < kBlocks && slot < kSlots) ids_[block][slot] = id;
    }

    // Set once a registration was seen: counter values are then printed with
    // their ids.
    bool known = false;

private:
    std::uint32_t ids_[kBlocks][kSlots] = {};
};

// The run's table.
CounterIdTable& counterIdTable();
