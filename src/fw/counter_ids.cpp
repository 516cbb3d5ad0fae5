#include "fw/counter_ids.h"

CounterIdTable& counterIdTable()
{
    static CounterIdTable table;
    return table;
}
