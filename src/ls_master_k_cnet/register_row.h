#pragma once

#include <QtCore/QString>

/// Look-ups in the register tables. Pure; any thread.

/// The widths that decide how the values of a register lie in the PLC and in the driver's cache.
/// Made once per call from a register's row; a test makes the ones that no row has.
struct RegisterWidths
{
    int unitBits; ///< bits of one address unit: 1, 8, 16 or 32
    int wordBits; ///< bits of the PLC word that holds a unit: 1, 8, 16 or 32
    bool bitName; ///< the name contains "_bit": addresses are word * 16 + bit
};

/// @return  position of `regName` in `REG_LIST` (exact, case-sensitive), -1 when it is not listed
int registerIndex(const QString &regName);

/// @return  row of `regName` in `ADDRESS_RANGE_PRO`; the spare row when it is not listed
int registerRow(const QString &regName);

/// @return  the widths of the row that `registerRow` gives
RegisterWidths registerWidths(const QString &regName);

/// @return  true when the name marks a bit of a word ("M_bit"); the contacts are not of this kind
bool isBitName(const QString &regName);

/// @return  the part of `regName` before its first "_": "D" of "D_W", "TX" of "TX"
QString registerLetter(const QString &regName);
