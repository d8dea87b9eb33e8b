#pragma once

#include "ls_master_k_cnet/register_row.h"

/// How the values of a register lie in the units of the data area. One description serves marking,
/// reading and writing. Pure; any thread.
struct UnitLayout
{
    int unitsPerValue; ///< 1, 2 or 4; 0 when the widths cover nothing
    int bytesPerUnit;  ///< 1, 2 or 4
    int countPerValue; ///< units of a request's count that make one value: 2 for 32-bit data, else
                       ///< 1
    int bitsPerUnit;   ///< 8 or 16 when each value is one bit of a unit, else 0

    bool isBitView() const { return bitsPerUnit != 0; }

    /// @return  values of a request of `count`; 0 when there are none
    int values(int count) const;
};

/// @return  the layout of a register of these widths
UnitLayout unitLayout(const RegisterWidths &widths);
