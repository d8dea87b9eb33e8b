#pragma once

class QString;

/// Called by the driver for each monitored view of a value that changed.
///
/// @param deviceNo   device number of the property text (first field), -1 for the end of a
///                   condition read, 0 for a recipe word
/// @param stationNo  PLC station, -1 for the end of a condition read and for a recipe word
/// @param name       what changed: the register letter followed by "_bit", "_B", "_W", "_D" or
///                   nothing ("M_bit", "D_W", "TX"); "RWI" for a recipe word that was read; "-1"
///                   for the end of a condition read. "_B" and "_D" are in no register list, and no
///                   register of this driver makes them; a host passes over names it does not know
/// @param address    address in the units of `name`; the index of the word in the recipe buffer for
///                   "RWI"; 0 (read) or -1 (failed) for the end of a condition read
/// @return           ignored
///
/// It runs on the thread whose call made the value change, so on several threads of the host, even
/// at once. The driver holds no lock meanwhile, other threads may call it, and so may the callback.
///
/// A unit starts as 0, so a first reading of 0 is no change. What the host writes, within the
/// callback for a write of its own, to the same word reaches the PLC last, but the cache keeps the
/// outer write until the word is read again.
typedef int (*ValueChangeCallback)(int deviceNo, int stationNo, QString &name, int address);
