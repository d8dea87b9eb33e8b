#include "host/scan/scan_result.h"

#include <algorithm>

namespace cnet {

void FoundStation::noteAnswer(double tookMs)
{
    ++answers;
    meanMs += (tookMs - meanMs) / answers;
    worstMs = std::max(worstMs, tookMs);
}

} // namespace cnet
