#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/register_row.h"

/// Appends the pieces of a panel write to the pending writes, for a register of the given widths.
/// Panel thread.
///
/// @param count  0 or more units, whose values take at most 1024 bytes
/// @param data   one byte per unit of a bit register, two for any other
void queueWrite(const RegisterWidths &widths, int stationNo, const QString &regName, int startAddr,
                int count, const unsigned char *data, int opKind);

/// @return  bytes per unit in the panel's buffers: 1 for a bit register, else 2
unsigned panelBytesPerUnit(const RegisterWidths &widths);
