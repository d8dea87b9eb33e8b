#pragma once

#include <QtCore/QList>

#include "shared/data_record.h"

/// Look-up in the cache of PLC values. No lock: the host serialises its calls.

/// Finds the record of a unit, and appends an empty one when there is none yet.
///
/// @param regPrefix  register letter, compared exactly
/// @param unitAddr   number of the word, byte or contact
/// @param area       `driver.dataArea`
/// @return           index of the record; it stays valid until the area is cleared
int getIndexOfDataArea(int stationNo, const QString &regPrefix, int unitAddr, QList<_DATA_> &area);

/// @return  the bytes that count now: the panel's while its write is pending, else the PLC's
const unsigned char *currentBytes(const _DATA_ &record);

/// @param bytes  1, 2 or 4, the width of a unit
/// @return       the unit's bytes as a number, low byte first; 16-bit units are 0-65535
int unitNumber(const unsigned char *value, int bytes);

/// Stores a number into a unit's bytes, low byte first.
void setUnitNumber(unsigned char *value, int bytes, int number);
