#pragma once

#include "ls_master_k_cnet/records.h"
#include "shared/merge_key.h"

/// Decides whether `next`, which follows `cur` in the sorted list, may join the block `cur`.
///
/// @param mode  0: only if it overlaps or is adjacent; anything else: also across a gap of up to
///              `maxBlockWords`
/// @return      0: it may; 1: it starts a new block
///
/// Reads `driver.maxBlockWords`; called while the exchange is idle.
int judgeAddrMerge(const MergeKey &cur, const MergeKey &next, int mode);
int judgeAddrMerge(const KEY_ADDRESS &cur, const KEY_ADDRESS &next, int mode);
