#pragma once

class QString;

/// The host's function that the driver calls for each monitored view of a changed value.
///
/// @param deviceNo   device number of the property text (first field), -1 for the end of a
///                   condition read, 0 for a recipe word
/// @param stationNo  PLC station, -1 for the end of a condition read and for a recipe word
/// @param name       what changed: the register letter followed by "_bit", "_B", "_W", "_D" or
///                   nothing ("M_bit", "D_W", "TX"); "RWI" for a recipe word that was read; "-1"
///                   for the end of a condition read. "_B" and "_D" are in no register list and do
///                   not occur with this driver; a host ignores names that it does not know
/// @param address    address in the units of `name`; for "RWI" the index of the word in the recipe
///                   buffer; for the end of a condition read 0 (read) or -1 (failed)
/// @return           ignored
///
/// It runs on the thread whose call changed the value, so possibly on several threads of the host
/// at once. The driver holds no lock meanwhile: other threads and the callback itself may call it.
///
/// A unit starts as 0, so a first read of 0 is not a change. If the callback for one of the host's
/// own writes writes to the same word, that write reaches the PLC last, but the cache keeps the
/// value of the outer write until the word is read again.
typedef int (*ValueChangeCallback)(int deviceNo, int stationNo, QString &name, int address);
