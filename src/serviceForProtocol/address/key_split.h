#pragma once

#include <QtCore/QList>

#include "ls_master_k_cnet/records.h"

/// Splits a key into pieces that fit one frame, and appends them to `out`. Pure; any thread.
///
/// @param maxLen  largest piece, in units; below 1, nothing is appended
/// @param mode    1: the value area of each piece starts with the piece's own values, taken from
///                the key's area with two bytes per unit (one if `bitFlag` is -1); values past the
///                end of that area are 0. Anything else: every piece keeps the key's value area.
///
/// A key of up to `maxLen` units is appended unchanged.
void groupingKey(const KEY_ADDRESS &key, int maxLen, QList<KEY_ADDRESS> &out, int mode);
