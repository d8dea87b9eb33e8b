#pragma once

#include <QtCore/QByteArray>

#include "ls_master_k_cnet/records.h"
#include "ls_master_k_cnet/register_row.h"

/// The middle of a read-modify-write: sets the bits of `var` in the words of the answer and puts
/// these words, with a new block check, into the write that waits as item 1 of `driver.frames`.
/// Without such a write it does nothing. Correct for the bits of one word only: with two or more
/// words the steps overlap. Kept for compatibility with panels in the field. Exchange thread.
///
/// @param widths     widths of the bit register
/// @param unitCount  number of words read
/// @param dataPos    index of the answer's first data character
/// @param var        the bit write, with one value byte (0 or not 0) per bit
void patchBitsIntoWrite(const RegisterWidths &widths, const QByteArray &answer, int unitCount,
                        int dataPos, const VARIABLE &var);
