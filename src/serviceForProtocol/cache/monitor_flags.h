#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/register_row.h"

/// Marks the units of the data area that the panel monitors. Called while the exchange is idle.

/// Clears the marks of all records; values and pending writes are kept.
void clearMonitorFlags();

/// Marks the units of one monitored address in `driver.dataArea`, creating missing ones.
///
/// @param startAddr  in units of the register
/// @param count      16-bit words of a word register, bits or contacts of a bit register;
///                   nothing is marked for less than one value
/// @return           0
int _setDataAreaMonitorFlag(int stationNo, const QString &regName, int startAddr, int count);

/// The same for a register of the given widths.
void markMonitored(const RegisterWidths &widths, int stationNo, const QString &letter,
                   int startAddr, int count);
