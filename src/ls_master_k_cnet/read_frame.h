#pragma once

#include <QtCore/QList>

#include "ls_master_k_cnet/records.h"

/// Builds the read request of the first item of `list` and appends it to `driver.frames`: one
/// contact for "TX" and "CX", a block of words for every other register. Exchange thread.
///
/// @param list  the item; for bit registers, the word number and the number of words. A count above
///              255 does not fit its two digits: the PLC then reads fewer words, and its answer is
///              rejected because of its length.
/// @return      1 if a frame was appended; 0 for an unknown register or an empty list
int getReadFrame(const QList<VARIABLE> &list);
