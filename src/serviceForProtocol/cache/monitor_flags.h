#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/register_row.h"

/// Which units of the data area the panel watches, and as what. Called while the exchange is idle.

/// Forgets every mark of every record; values and pending writes stay.
void clearMonitorFlags();

/// Marks the units of one monitored address in `driver.dataArea`, creating missing ones.
///
/// @param startAddr  in the register's units
/// @param count      16-bit words of a word register, bits or contacts of a bit register;
///                   fewer than one value marks nothing
/// @return           0
int _setDataAreaMonitorFlag(int stationNo, const QString &regName, int startAddr, int count);

/// The same for a register of the given widths.
void markMonitored(const RegisterWidths &widths, int stationNo, const QString &letter,
                   int startAddr, int count);
