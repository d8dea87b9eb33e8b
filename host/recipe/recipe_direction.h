#pragma once

namespace cnet {

enum class RecipeDirection {
    Write, ///< to the PLC
    Read,  ///< from the PLC
};

} // namespace cnet
