#pragma once

#include <QtCore/QString>

/// Calls of the host: one for each monitored view of a unit that changed, its bits first, then the
/// unit, then the wider values that it is a part of. They run on the calling thread with no lock
/// held. The host may call back into the driver, so whoever calls one of these looks its records up
/// again afterwards.
///
/// @param oldValue  bytes of the unit before, as a number; null, here or in `newValue`: every
///                  monitored bit is reported without a comparison
/// @param newValue  bytes of the unit now
/// @param index     record in `driver.dataArea`; an index outside reports nothing
/// @param skipBits  not 0: the bits are left out

/// A 16-bit unit: "_bit", "_W", "_D".
void _wordDataChange(const int *oldValue, const int *newValue, int index, int skipBits);

/// An 8-bit unit: "_bit", "_B", "_W", "_D".
void _byteDataChange(const unsigned char *oldValue, const unsigned char *newValue, int index,
                     int skipBits);

/// A 32-bit unit: "_bit", and the unit under the bare register letter.
void _dwordDataChange(const int *oldValue, const int *newValue, int index, int skipBits);

/// A unit that is one bit (a contact), under the bare register letter.
void _bitDataChange(int index);

/// The routine of a unit of `bytes` (1, 2 or 4), with both values given and the bits included.
void notifyUnitChange(int bytes, int oldNumber, int newNumber, int index);

/// Calls the host if it has installed a callback.
void notifyHost(int deviceNo, int stationNo, const QString &name, int address);
