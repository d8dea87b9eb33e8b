#pragma once

#include <QtCore/QVector>

#include "shared/merge_key.h"

/// Which cyclic blocks there are to remember (`driver.blockMemories`). With `Protocol::stateLock`
/// held; while the exchange is idle.

/// Makes room for the memories of these cyclic reads, none of which was sent yet.
void expectBlocks(const QVector<MergeKey> &blocks);

/// Forgets them all.
void forgetBlocks();
