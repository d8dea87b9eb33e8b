#pragma once

#include <QtCore/QString>

/// The word.bit texts of bit addresses ("12.5"), and the protocol's own register look-up. Pure; any
/// thread.

/// @return  register index 0-15, -1 if the name is not listed
int getIndexFromReg(const QString &regName);

/// @param text  decimal word, ".", decimal bit below 16; a negative bit is accepted here and
/// refused
///              by the range checks
/// @return      word * 16 + bit; -1 if the text is malformed; 0 for a name without "_bit",
///              whatever the text
int addr_str2int(const QString &text, const QString &regName);

/// @return  "word.bit" of `value`; an empty text for a name without "_bit"
QString addr_int2str(int value, const QString &regName);

/// Converts an accepted address to the number that is stored. This protocol counts from 0, so it is
/// the same.
/// @return  `addr`
int addrOffset(const QString &regName, int addr);
