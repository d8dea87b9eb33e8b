#pragma once

#include <QtCore/QVector>

#include "shared/merge_key.h"

/// Finds the blocks that do not overlap any other. Blocks that are limited in size may overlap, and
/// then the answer to one contains values of the other. Pure; any thread.
///
/// @param blocks  in any order
/// @return        for each block, true if it overlaps no other; always false for an empty block, an
///                unknown register, or addresses below 0 or beyond the range of an int
QVector<bool> blocksOnTheirOwn(const QVector<MergeKey> &blocks);
