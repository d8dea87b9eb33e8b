#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/records.h"

/// What decides which block a key joins, without the value area that a key carries along: merging
/// moves ten thousand of these about.
struct MergeKey
{
    int stationNo;
    QString regName;
    int startAddr;
    int count;
    int source; ///< position of the key, or of a block's first key, in the list that is merged
};

inline MergeKey mergeKeyOf(const KEY_ADDRESS &key, int source)
{
    MergeKey small = {key.stationNo, key.regName, key.startAddr, key.count, source};
    return small;
}
