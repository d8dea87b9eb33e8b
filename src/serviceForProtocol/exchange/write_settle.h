#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/register_row.h"

/// Settles the cached values of a write that has ended: on success the written value becomes the
/// confirmed one, on failure the panel falls back to the value last read and the host is told.
/// Exchange thread.
///
/// @param startAddr  and `count`: as carried by the frame that was sent
/// @param success    1 acknowledged, 0 failed
void _write_FailOrSuc(int stationNo, const QString &regName, int startAddr, int count, int success);

/// The same for a register of the given widths.
void settleWrite(const RegisterWidths &widths, int stationNo, const QString &regName, int startAddr,
                 int count, int success);
