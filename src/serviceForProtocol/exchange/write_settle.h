#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/register_row.h"

/// Settles the cached values of a finished write. On success the written value becomes the
/// confirmed one; on failure the value last read is valid again and the host is notified. Exchange
/// thread.
///
/// @param startAddr  as in the frame that was sent, like `count`
/// @param success    1 acknowledged, 0 failed
void _write_FailOrSuc(int stationNo, const QString &regName, int startAddr, int count, int success);

/// The same for a register of the given widths.
void settleWrite(const RegisterWidths &widths, int stationNo, const QString &regName, int startAddr,
                 int count, int success);
