#pragma once

#include <QtCore/QList>
#include <QtCore/QVector>

#include "ls_master_k_cnet/records.h"
#include "ls_master_k_cnet/register_row.h"
#include "shared/merge_key.h"

/// Merging of addresses into block reads and block transfers. Called while the exchange is idle.

enum MergeMode {
    kMergeReads = 1, ///< bits become words, keys are sorted, gaps are bridged
    kMergeRecipe = 2 ///< keys stay in their order and join only where they touch
};

/// Turns the keys into blocks, in place. A block keeps every field of its first key but the count,
/// and holds no more than `driver.maxBlockWords`, except that one long key stays one block: with
/// that limit below 1, each key that has units.
///
/// @param mode  a `MergeMode`; `kMergeRecipe` also appends to `driver.rcpBlockStarts` the index of
///              each block's first key
void addrMerge(QList<KEY_ADDRESS> &keys, int mode);

/// The blocks that `addrMerge` makes with `kMergeReads`, without the value areas.
QVector<MergeKey> mergedReads(const QList<KEY_ADDRESS> &keys);

/// Turns one key of the reading mode into words: "M_bit" 35 x3 becomes "M_W" 2 x1.
/// @param widths  widths of the key's register, before its name changes
void convertReadKey(KEY_ADDRESS &key, const RegisterWidths &widths);

/// Turns the count of one recipe key into 16-bit words.
/// @param widths  widths of the key's register
void convertRecipeKey(KEY_ADDRESS &key, const RegisterWidths &widths);
