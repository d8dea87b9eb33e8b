#pragma once

#include <QtCore/QVector>

#include "shared/merge_key.h"

/// Sets up `driver.blockMemories` for a new set of cyclic blocks. Hold `Protocol::stateLock`, while
/// the exchange is idle.

/// Creates the memories of these cyclic reads, none of which was sent yet.
void expectBlocks(const QVector<MergeKey> &blocks);

/// Deletes all memories.
void forgetBlocks();
