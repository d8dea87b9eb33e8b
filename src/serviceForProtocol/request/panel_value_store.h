#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/register_row.h"

/// The panel's written values in the data area: the panel sees its own write at once, before the
/// PLC has confirmed anything. Panel thread.
///
/// Each unit's current value changes first for the host (the callback is raised for what differs)
/// and then in the area, so a callback that reads the unit still gets the value before the write.
///
/// A callback may write too. What it stored in a unit that is being stored is overwritten, the
/// other bits of the unit included: the unit takes the value that was formed before the callback.
///
/// @param count  16-bit words of a word register, bits or contacts of a bit register
/// @param data   two bytes a word, low byte first; one byte a bit (1 sets it) or contact
void write_saveDataToArea(int stationNo, const QString &regName, int startAddr, int count,
                          const unsigned char *data);

/// The same for a register of the given widths.
void storePanelValues(const RegisterWidths &widths, int stationNo, const QString &regName,
                      int startAddr, int count, const unsigned char *data);
