#pragma once

namespace cnet {

/** What becomes of a job for a station that is known to be silent. */
enum class SilentStation {
    Greet, ///< it is asked once more whether it is there
    Fail,  ///< the job fails at once
};

} // namespace cnet
