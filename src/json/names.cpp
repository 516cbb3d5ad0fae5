#include "json/names.h"

#include "json/output.h"

const char* lookupName(const NameTable& table, std::uint32_t code)
{
    if (code > table.lastValid) {
        console().print("Warning: Zyntel packet unknown %s (%d)!\n", table.kind, static_cast<int>(code));
        return table.substitute;
    }
    return table.rows[code];
}
