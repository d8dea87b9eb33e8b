#pragma once

#include <QtCore/QByteArray>

#include "ls_master_k_cnet/records.h"
#include "ls_master_k_cnet/register_row.h"

/// Extracts the values of an accepted read answer. Depending on the current job they are cached
/// values with change notification, the words of a bit write, or recipe words. Exchange thread.
///
/// @param answer     the whole answer; characters past its end count as 0
/// @param unitCount  units that the frame asked for
/// @param dataPos    index of the first data character
/// @param var        the request that the frame served; may be part of the frame, since it is not
///                   used after the host is called
void analyzeFrameOfVal(const QByteArray &answer, int unitCount, int dataPos, const VARIABLE &var);

/// Stores the units of an answer in the data area, for a register of the given widths.
void decodeToDataArea(const RegisterWidths &widths, const QByteArray &answer, int unitCount,
                      int dataPos, const VARIABLE &var);
