#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/register_row.h"

/// Stores the values of a panel write in the data area, so the panel sees its own write at once,
/// before the PLC has confirmed it. Panel thread.
///
/// For each changed unit the callback runs before the new value is stored, so a callback that reads
/// the unit still gets the old value.
///
/// The callback may write, too. What it writes to the unit being stored is overwritten, including
/// the other bits of the unit: the unit gets the value computed before the callback.
///
/// @param count  16-bit words of a word register, bits or contacts of a bit register
/// @param data   two bytes per word, low byte first; one byte per bit (1 sets it) or contact
void write_saveDataToArea(int stationNo, const QString &regName, int startAddr, int count,
                          const unsigned char *data);

/// The same for a register of the given widths.
void storePanelValues(const RegisterWidths &widths, int stationNo, const QString &regName,
                      int startAddr, int count, const unsigned char *data);
