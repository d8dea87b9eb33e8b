#pragma once

#include "view/trend/traces/trace_set.h"
#include "view/trend/traces/trend_marks.h"

#include <QJsonObject>

#include <array>
#include <optional>
#include <vector>

namespace cnet::view {

/** What of a trend a project keeps. */
struct TrendState
{
    std::vector<TraceChoice> traces;
    std::vector<Marker> markers;
    Sight sight;                                  ///< of the time its length counts
    std::vector<double> parts;                    ///< see TrendPlot::parts()
    std::array<std::optional<double>, 2> cursors; ///< A and B; see Cursors::at()
};

QJsonObject trendJson(const TrendState &state);

/** @param object anything: what is not understood is left out, and what is not there is as in an
 * empty trend */
TrendState trendState(const QJsonObject &object);

} // namespace cnet::view
