#pragma once

#include "ls_master_k_cnet/register_row.h"

/// The layout of a register's values in the units of the data area, for marking, reading and
/// writing. Pure; any thread.
struct UnitLayout
{
    int unitsPerValue; ///< 1, 2 or 4; 0 if there is no layout for these widths
    int bytesPerUnit;  ///< 1, 2 or 4
    int countPerValue; ///< how much of a request's count is one value: 2 for 32-bit data, else 1
    int bitsPerUnit;   ///< 8 or 16 if each value is one bit of a unit, else 0

    bool isBitView() const { return bitsPerUnit != 0; }

    /// @return  number of values in a request of `count`, capped; 0 if there are none
    int values(int count) const;
};

/// @return  the layout of a register of these widths
UnitLayout unitLayout(const RegisterWidths &widths);
