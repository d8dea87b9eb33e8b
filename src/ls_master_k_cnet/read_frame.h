#pragma once

#include <QtCore/QList>

#include "ls_master_k_cnet/records.h"

/// Builds the read request of the first item of `list` and appends it to `driver.frames`: one
/// contact for "TX" and "CX", a block of words for every other register. Exchange thread.
///
/// @param list  the item; bit registers already as words: word number and number of words. A count
///              above 255 does not fit its two digits: the PLC then reads other words than asked,
///              and its answer is refused by its length.
/// @return      1 when a frame was appended; 0 for a register that is not listed, or an empty list
int getReadFrame(const QList<VARIABLE> &list);
