#include "json/output.h"
#include "stream/reader.h"
#include "stream/stream_file.h"

std::uint32_t checkOrdinal(StreamFile& file, std::uint32_t ordinal)
{
    if (file.lastOrdinal == 0xFFFFFFFF) return ordinal;
    if (ordinal == 0xFFFFFFFF) {
        console().print("info: Zyntel packet ordinal reset after ordinal %u\n", file.lastOrdinal);
        return ordinal;
    }
    if (ordinal == file.lastOrdinal + 1) return ordinal;
    ++file.sequenceInterruptions;
    console().print("warning: Zyntel packet ordinal out of sequence at file position %ld; last: %u, current: %u\n",
                    static_cast<long>(file.in.tell()), file.lastOrdinal, ordinal);
    file.packetsDropped += ordinal - file.lastOrdinal - 1; // wraps when ordinals go backwards
    return ordinal;
}
