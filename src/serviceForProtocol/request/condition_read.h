#pragma once

#include "ls_master_k_cnet/records.h"
#include "ls_master_k_cnet/register_row.h"

/// Puts the pieces of a one-off read on the condition-read list, for a register of the given
/// widths, and remembers the last one as the read that the host waits for. Panel thread.
///
/// Reads of "_bit" registers queue nothing.
void queueConditionRead(const RegisterWidths &widths, const KEY_ADDRESS &key, int opKind);
