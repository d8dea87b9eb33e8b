#pragma once

#include <QtCore/QString>

/// The word.bit texts of bit addresses ("12.5"), and the protocol's own register look-up. Pure; any
/// thread.

/// @return  register index 0-15, -1 when the name is not listed
int getIndexFromReg(const QString &regName);

/// @param text  decimal word, ".", decimal bit below 16; a bit below 0 is let through here, and the
///              range checks refuse it
/// @return      word * 16 + bit; -1 when the text is malformed; 0 for a name without "_bit",
///              whatever the text
int addr_str2int(const QString &text, const QString &regName);

/// @return  "word.bit" of `value`; an empty text for a name without "_bit"
QString addr_int2str(int value, const QString &regName);

/// The step that an accepted address passes before it is stored; this protocol counts from 0.
/// @return  `addr`
int addrOffset(const QString &regName, int addr);
