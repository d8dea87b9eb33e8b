#pragma once

#include "view/trend/series/trace_store.h"

#include <qwt_scale_map.h>

#include <QLine>
#include <QLineF>
#include <QRect>

#include <vector>

namespace cnet::view {

/** What is between two samples. */
enum class TraceStyle {
    Hold,   ///< a value holds until the next
    Linear, ///< a straight line; up to a gap the last value holds
};

/** What becomes of samples on their way to pixels. */
struct TraceForm
{
    TraceStyle style = TraceStyle::Hold;
    bool isLane = false;    ///< only whether a value is 0 is drawn, and it holds
    double low = 0;         ///< where a lane has 0 on the y axis
    double high = 1;        ///< where it has all else
    qint64 holdUntilMs = 0; ///< the last value holds until then
};

/** Where on a raster. A sample belongs to the column whose middle is nearest to its time. */
struct TraceArea
{
    QwtScaleMap x; ///< ms since the epoch to columns; time grows with them
    QwtScaleMap y; ///< values to rows
    QRect pixels;  ///< the columns and rows that there are

    /** False where a scale is empty or not finite: nothing can be drawn. */
    bool isValid() const;
};

/** What there is to draw, in columns and rows. */
struct TraceStrokes
{
    std::vector<QLine> lines;   ///< upright or level, both ends included
    std::vector<QLineF> slopes; ///< all else; the middle of a pixel is at whole numbers
    std::vector<QRect> fills;   ///< below a lane that is not at 0
    int samples = 0;            ///< that they show
};

/** In each column there is all from the least to the greatest value of its samples and of that
 * which held before them; columns that lie wholly in a gap have nothing. */
TraceStrokes traceStrokes(const TraceStore &store, const TraceForm &form, const TraceArea &area);

} // namespace cnet::view
