#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/records.h"

/// The part of a key that decides which block it joins, without the value area: merging moves ten
/// thousand of these around.
struct MergeKey
{
    int stationNo;
    QString regName;
    int startAddr;
    int count;
    int source; ///< index of the key, or of a block's first key, in the list being merged
};

inline MergeKey mergeKeyOf(const KEY_ADDRESS &key, int source)
{
    MergeKey small = {key.stationNo, key.regName, key.startAddr, key.count, source};
    return small;
}
