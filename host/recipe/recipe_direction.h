#pragma once

namespace cnet {

/** Which way a recipe is transferred. */
enum class RecipeDirection {
    Write, ///< to the PLC
    Read,  ///< from the PLC
};

} // namespace cnet
