#pragma once

#include <QtCore/QList>

#include "ls_master_k_cnet/records.h"

/// Cuts a key into pieces that fit one frame, and appends them to `out`. Pure; any thread.
///
/// @param maxLen  units of a piece; below 1 appends nothing
/// @param mode    1: each piece's value area begins with the piece's own values, taken from the
///                key's area two bytes a unit (one byte when `bitFlag` is -1); values beyond that
///                area are 0. Anything else: every piece keeps the key's values as they are.
///
/// A key of up to `maxLen` units is appended unchanged.
void groupingKey(const KEY_ADDRESS &key, int maxLen, QList<KEY_ADDRESS> &out, int mode);
