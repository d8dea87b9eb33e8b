#pragma once

#include "ls_master_k_cnet/records.h"
#include "shared/merge_key.h"

/// Whether `next`, which lies behind `cur` in the sorted list, may join the block that `cur` is.
///
/// @param mode  0: only what overlaps or touches; anything else: a gap of up to the driver's
///              `maxBlockWords` is bridged too
/// @return      0: it may; 1: it starts a new block
///
/// Reads `driver.maxBlockWords`; called while the exchange is idle.
int judgeAddrMerge(const MergeKey &cur, const MergeKey &next, int mode);
int judgeAddrMerge(const KEY_ADDRESS &cur, const KEY_ADDRESS &next, int mode);
