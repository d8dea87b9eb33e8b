#pragma once

#include "host.h"

namespace bench {

/** How the addresses of a screen lie. */
enum class Spread {
    Clustered, ///< one data register behind the other
    Scattered, ///< all over the data registers of eight stations, in no order
    Bits,      ///< bits of data registers, one behind the other
};

/** A change of the screen: each step merges the same keys, one of a single unit each. */
class Merge
{
public:
    /** Whether the units of the keys are in the data area before the first step. */
    enum class Begin { Merged, NotMerged };

    Merge(Spread spread, int keys, Begin begin = Begin::Merged);

    void step() { intf_addrMerge(m_keys); }

private:
    Host m_host;
    QList<KEY_ADDRESS> m_keys;
};

} // namespace bench
