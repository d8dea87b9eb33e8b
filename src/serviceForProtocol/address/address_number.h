#pragma once

#include <QtCore/QString>

/// Address texts of any register to numbers, and the order in which addresses are sorted. Any
/// thread.

/// @return  register index 0-15, -1 when the name is not listed
int getIndexFromRegName(const QString &regName);

/// Reads an address text by its register's format pattern.
///
/// @param text     what the panel designer typed
/// @param value    receives the number; 0 when a plain number is malformed, untouched when
///                 a word.bit text is
/// @param format   "DDDD", "OOOO", "HHHH": a plain number, radix by the last letter (decimal
///                 for any other); differing letters ("DDD.dd"): the word.bit form
/// @param regName  register name; a word.bit pattern gives 0 for a name without "_bit"
/// @return         1, or -1 when the text is malformed
int a2i(const QString &text, int &value, const QString &format, const QString &regName);

/// @return  true when the format is the word.bit form: its letters differ
bool isWordBitFormat(const QString &format);

/// @param format  a pattern of one repeated letter
/// @return        `address`, taken as unsigned, in the radix of the pattern's letter, unpadded
QString plainAddressText(int address, const QString &format);

/// The number by which addresses are sorted: station, then register, then address. The factor is
/// 65535, one less than an address has values; the order of stored lists rests on it.
///
/// @param regName  a name that is not listed counts as register -1
/// @return         unsigned and wrapping, so that a weight below 0 sorts after all others
quint32 getRegAddressWeight(int stationNo, const QString &regName, int addr);
