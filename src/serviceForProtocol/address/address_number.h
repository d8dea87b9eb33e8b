#pragma once

#include <QtCore/QString>

/// Conversion of address texts to numbers, and the sort order of addresses. Any thread.

/// @return  register index 0-15, -1 if the name is not listed
int getIndexFromRegName(const QString &regName);

/// Reads an address text according to the format pattern of its register.
///
/// @param text     what the panel designer typed
/// @param value    receives the number; 0 if a plain number is malformed, unchanged if a word.bit
///                 text is
/// @param format   "DDDD", "OOOO", "HHHH": a plain number, radix by the last letter (decimal
///                 for any other); differing letters ("DDD.dd"): the word.bit form
/// @param regName  register name; with a word.bit pattern, the number is 0 for a name without
///                 "_bit"
/// @return         1, or -1 if the text is malformed
int a2i(const QString &text, int &value, const QString &format, const QString &regName);

/// @return  true if the format is the word.bit form: its letters differ
bool isWordBitFormat(const QString &format);

/// @param format  a pattern of one repeated letter
/// @return        `address` as an unsigned number in the radix of the pattern's letter, unpadded
QString plainAddressText(int address, const QString &format);

/// The sort key of an address: station, then register, then address. The factor is 65535, one less
/// than the number of 16-bit addresses; the order of stored lists depends on it.
///
/// @param regName  an unknown name counts as register -1
/// @return         unsigned and wrapping, so a negative weight sorts after all others
quint32 getRegAddressWeight(int stationNo, const QString &regName, int addr);
