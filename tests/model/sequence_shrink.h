#pragma once

#include <functional>

#include "model/operation.h"

namespace model {

using StillFails = std::function<bool(const Sequence &)>;

/**
 * Makes a failing sequence as short and plain as it can: chunks go first, then single steps, then
 * ranges, faults and numbers.
 *
 * @param most  how often `fails` is asked at most
 * @return      a sequence that fails
 */
Sequence shrink(Sequence sequence, const StillFails &fails, int most = 4000);

} // namespace model
