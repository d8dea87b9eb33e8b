#pragma once

#include "host.h"

namespace bench {

/** How the addresses of a screen are distributed. */
enum class Spread {
    Clustered, ///< consecutive data registers
    Scattered, ///< random data registers of eight stations
    Bits,      ///< consecutive bits of data registers
};

/** A change of the screen: each step merges the same keys of one unit each. */
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
