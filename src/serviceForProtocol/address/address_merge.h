#pragma once

#include <QtCore/QList>
#include <QtCore/QVector>

#include "ls_master_k_cnet/records.h"
#include "ls_master_k_cnet/register_row.h"
#include "shared/merge_key.h"

/// Merges addresses into block reads and recipe transfers. Called while the exchange is idle.

enum MergeMode {
    kMergeReads = 1, ///< bits become words, keys are sorted, gaps are bridged
    kMergeRecipe = 2 ///< keys keep their order, only adjacent or overlapping ones join
};

/// Merges the keys into blocks, in place. A block keeps every field of its first key except the
/// count. It has at most `driver.maxBlockWords` words, but a single longer key becomes one block;
/// with a limit below 1, every key that has units does.
///
/// @param mode  a `MergeMode`; `kMergeRecipe` also appends the index of each block's first key to
///              `driver.rcpBlockStarts`
void addrMerge(QList<KEY_ADDRESS> &keys, int mode);

/// @return  the blocks that `addrMerge` makes with `kMergeReads`, without the value areas
QVector<MergeKey> mergedReads(const QList<KEY_ADDRESS> &keys);

/// Converts one key for `kMergeReads` to words: "M_bit" 35 x3 becomes "M_W" 2 x1.
/// @param widths  widths of the key's register, before its name changes
void convertReadKey(KEY_ADDRESS &key, const RegisterWidths &widths);

/// Converts the count of one recipe key to 16-bit words.
/// @param widths  widths of the key's register
void convertRecipeKey(KEY_ADDRESS &key, const RegisterWidths &widths);
