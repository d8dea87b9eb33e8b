#pragma once

namespace cnet {

/** What becomes of a link that never was open. */
enum class FirstOpen {
    Once,  ///< its address is probably wrong: the user should know at once
    Again, ///< it is tried again as a lost one is
};

} // namespace cnet
