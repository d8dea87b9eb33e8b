#pragma once

namespace cnet {

/** Whether the PLC is known to have taken a write. */
enum class Confirmation {
    Missing, ///< refused, not sent, or nobody knows
    Given,
};

} // namespace cnet
