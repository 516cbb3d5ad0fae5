#include "fw/timer_check.h"

#include "fw/fw_names.h"
#include "json/output.h"
#include "stream/packet.h"
#include "stream/stream_file.h"

std::uint64_t CheckTimerContinuity(StreamFile& file, const Packet& payload, std::uint32_t eventType,
                                   std::uint64_t timer)
{
    // Deltas are not ordered.
    if (file.timeDelta) return timer;
    std::uint64_t previous = file.prevTimer;
    if (timer >= previous) return timer;

    int ordinal = static_cast<int>(file.lastOrdinal);
    if (eventType == kFwPowerChange && payload.u32(0) == kFwPowerOn) {
        console().print("message: Power cycle detected, low KorTimer value [kortimer: %lu] [ord: %d]\n",
                        static_cast<unsigned long>(timer), ordinal);
        return timer;
    }
    constexpr std::uint64_t kTopBit = 1ull << 63;
    if ((previous & kTopBit) && !(timer & kTopBit))
        console().print("message: Overflow might have occurred, previous: %lu, current: %lu. [ord: %d]\n",
                        static_cast<unsigned long>(previous), static_cast<unsigned long>(timer), ordinal);
    console().print("warning: Zyntel packet has out-of-order kortimer values: previous: %lu, current: %lu. "
                    "No PWR_CHG events seen. [ord: %d]\n",
                    static_cast<unsigned long>(previous), static_cast<unsigned long>(timer), ordinal);
    return timer;
}
