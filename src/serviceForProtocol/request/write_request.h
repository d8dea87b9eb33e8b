#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/register_row.h"

/// Puts the pieces of a panel write on the write list, for a register of the given widths. Panel
/// thread.
///
/// @param count  units whose values lie within 1024 bytes; 0 or more
/// @param data   one byte a unit of a bit register, two of any other
void queueWrite(const RegisterWidths &widths, int stationNo, const QString &regName, int startAddr,
                int count, const unsigned char *data, int opKind);

/// @return  bytes that the panel hands over for one unit: 1 for a bit register, else 2
unsigned panelBytesPerUnit(const RegisterWidths &widths);
