#pragma once

#include "ls_master_k_cnet/records.h"
#include "ls_master_k_cnet/register_row.h"

/// Recipe blocks as requests. Exchange thread.

/// Fills `var` with one recipe block; its `opKind` is left as it is and its value area is zeroed.
///
/// @param withData  not 0: the block's values are copied from the host's recipe buffer, as many as
///                  the value area holds; nothing for contacts, which lie bit by bit in the PLC
void rcpAddrToVar(const _RCP_VAR_PRO &item, VARIABLE &var, int withData);

/// @return  bytes of a block of `count` units in the recipe buffer, 0-1024
int recipeBytes(const RegisterWidths &widths, int count);
