#pragma once

#include "ls_master_k_cnet/records.h"
#include "ls_master_k_cnet/register_row.h"

/// Appends the pieces of a one-off read to the condition reads, for a register of the given widths.
/// The end of the last piece is the one reported to the host. Panel thread.
///
/// Nothing is queued for "_bit" registers.
void queueConditionRead(const RegisterWidths &widths, const KEY_ADDRESS &key, int opKind);
