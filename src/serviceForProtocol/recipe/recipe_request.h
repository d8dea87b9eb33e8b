#pragma once

#include "ls_master_k_cnet/codes.h"

/// The two bytes of the shared block with which the host requests recipe transfers. Each access
/// locks the host's mutex for just that access. Without a block, a mutex or a recipe buffer there
/// are no requests.

struct RecipeRequests
{
    bool write; ///< write the recipe to the PLC
    bool read;  ///< read the PLC's values into the recipe
};

/// @return  the current requests; only a byte with `kRecipeRequested` is one
RecipeRequests readRecipeRequests();

/// Clears a request: tells the host that the transfer is over.
void clearRecipeRequest(RecipeRequestByte byte);
