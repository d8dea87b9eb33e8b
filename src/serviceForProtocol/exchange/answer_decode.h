#pragma once

#include <QtCore/QByteArray>

#include "ls_master_k_cnet/records.h"
#include "ls_master_k_cnet/register_row.h"

/// Takes the values out of an accepted read answer. What they are for follows from the job that is
/// running: cached values with change notification, the words of a bit write, or recipe words.
/// Exchange thread.
///
/// @param answer     the whole answer; what lies beyond its end counts as 0
/// @param unitCount  units that the frame asked for
/// @param dataPos    index of the first data character
/// @param var        the request that the frame served; may be the frame's own, since what is
///                   needed of it is taken before the host is called
void analyzeFrameOfVal(const QByteArray &answer, int unitCount, int dataPos, const VARIABLE &var);

/// Stores the units of an answer in the data area, for a register of the given widths.
void decodeToDataArea(const RegisterWidths &widths, const QByteArray &answer, int unitCount,
                      int dataPos, const VARIABLE &var);
