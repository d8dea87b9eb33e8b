#pragma once

#include "ls_master_k_cnet/records.h"
#include "ls_master_k_cnet/register_row.h"

/// Converts recipe blocks to requests. Exchange thread.

/// Fills `var` with one recipe block. `opKind` is unchanged; the value area is cleared.
///
/// @param withData  not 0: the block's values are copied from the host's recipe buffer, as many as
///                  fit the value area; none for contacts, which have no bytes there
void rcpAddrToVar(const _RCP_VAR_PRO &item, VARIABLE &var, int withData);

/// @return  size of a block of `count` units in the recipe buffer, 0-1024 bytes
int recipeBytes(const RegisterWidths &widths, int count);
