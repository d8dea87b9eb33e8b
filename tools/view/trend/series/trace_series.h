#pragma once

#include "view/trend/series/trace_store.h"

#include <qwt_series_data.h>

#include <QPointF>
#include <QRectF>

namespace cnet::view {

/**
 * The entries of a store as Qwt asks for them: x is the time in ms since the epoch, y the value,
 * not a number at a gap. Where Qwt says what it looks at, only the entries there are offered, and
 * one on each side for the lines that come in and go out.
 */
class TraceSeries : public QwtSeriesData<QPointF>
{
public:
    /** @param store outlives this, and may grow meanwhile */
    explicit TraceSeries(const TraceStore &store);

    size_t size() const override;
    QPointF sample(size_t index) const override;

    /** Of what is offered: from the first time to the last, from the least value to the greatest;
     * invalid where there is no sample. */
    QRectF boundingRect() const override;

    /** @param rect its left and right count; all is offered again where it is invalid */
    void setRectOfInterest(const QRectF &rect) override;

private:
    struct Part
    {
        int from = 0;
        int to = 0;
    };
    Part offered() const;

    const TraceStore &m_store;
    QRectF m_interest{0, 0, -1, -1};
};

/** A time of a plot's scale in ms; the nearest possible where it is none. */
qint64 scaleMs(double x);

} // namespace cnet::view
