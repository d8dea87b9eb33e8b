#pragma once

#include <QtCore/QByteArray>

#include "ls_master_k_cnet/records.h"
#include "ls_master_k_cnet/register_row.h"

/// The middle of a read-modify-write: sets the bits of `var` in the words of the answer and writes
/// these words, with a new block check, into the write that waits as item 1 of `driver.frames`.
/// Without such a write nothing happens. Right for the bits of one word: with two or more words the
/// reading of the answer overlaps, as panels in the field have it. Exchange thread.
///
/// @param widths     widths of the bit register
/// @param unitCount  words that were read
/// @param dataPos    index of the answer's first data character
/// @param var        the bit write: one value byte, 0 or not, for each bit
void patchBitsIntoWrite(const RegisterWidths &widths, const QByteArray &answer, int unitCount,
                        int dataPos, const VARIABLE &var);
