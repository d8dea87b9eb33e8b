#pragma once

#include <QtCore/QVector>

#include "shared/merge_key.h"

/// Finds the blocks that have their units for themselves. Blocks that are cut at the block limit
/// may overlap, and the answer to one then says something about the other. Pure; any thread.
///
/// @param blocks  in any order
/// @return        for each block, true when no other covers one of its units; false, too, for a
///                block without units, of a register that is not listed, or with addresses below 0
///                or beyond the numbers
QVector<bool> blocksOnTheirOwn(const QVector<MergeKey> &blocks);
