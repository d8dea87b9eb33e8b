#pragma once

#include <QtCore/QString>

/// Look-ups in the register tables. Pure; any thread.

/// The widths that determine the layout of a register's values in the PLC and in the driver's
/// cache. Taken from the register's row; tests also use widths that no row has.
struct RegisterWidths
{
    int unitBits; ///< bits of one address unit: 1, 8, 16 or 32
    int wordBits; ///< bits of the PLC word that contains a unit: 1, 8, 16 or 32
    bool bitName; ///< the name contains "_bit": addresses are word * 16 + bit
};

/// @return  position of `regName` in `REG_LIST` (exact, case-sensitive), -1 if it is not listed
int registerIndex(const QString &regName);

/// @return  row of `regName` in `ADDRESS_RANGE_PRO`; the spare row if it is not listed
int registerRow(const QString &regName);

/// @return  the widths in the row that `registerRow` returns
RegisterWidths registerWidths(const QString &regName);

/// @return  true if the name stands for the bits of words ("M_bit"); contacts are not of this kind
bool isBitName(const QString &regName);

/// @return  the part of `regName` before its first "_": "D" of "D_W", "TX" of "TX"
QString registerLetter(const QString &regName);
