#pragma once

#include "ls_master_k_cnet/codes.h"

/// The two bytes of the host's shared block by which it asks for recipe transfers. Each access
/// holds the host's mutex, and nothing else happens meanwhile. Without a block, a mutex or a recipe
/// buffer there are no requests.

struct RecipeRequests
{
    bool write; ///< the host wants its recipe in the PLC
    bool read;  ///< the host wants the PLC's values in its recipe
};

/// @return  what the host asks for now; only a byte of `kRecipeRequested` is a request
RecipeRequests readRecipeRequests();

/// Tells the host that a transfer is over.
void clearRecipeRequest(RecipeRequestByte byte);
