#pragma once

#include "view/trend/series/trace_item.h"

#include <qwt_scale_map.h>

#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <memory>

namespace cnet::view {

/** Draws nothing that came after the picture was stopped. */
class LiveTrace : public TraceItem
{
public:
    /** @param liveMs outlives this; where the picture ends */
    LiveTrace(std::shared_ptr<const TraceStore> store, const qint64 &liveMs)
        : TraceItem(*store)
        , m_store(std::move(store))
        , m_liveMs(liveMs)
    {}

    void draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
              const QRectF &canvasRect) const override
    {
        const QRectF seen = live(xMap, canvasRect);
        if (!seen.isEmpty()) {
            painter->save();
            painter->setClipRect(seen, Qt::IntersectClip);
            TraceItem::draw(painter, xMap, yMap, canvasRect);
            painter->restore();
        }
    }

    /** As prepare(), for a whole canvas. */
    bool prepareLive(const QwtScaleMap &xMap, const QwtScaleMap &yMap, const QWidget &canvas)
    {
        const QRectF seen = live(xMap, canvas.contentsRect());
        return !seen.isEmpty() && prepare(xMap, yMap, seen, canvas.devicePixelRatioF());
    }

private:
    QRectF live(const QwtScaleMap &xMap, QRectF seen) const
    {
        const double end = std::ceil(xMap.transform(static_cast<double>(m_liveMs)));
        seen.setRight(std::min(end, seen.right()));
        return seen;
    }

    std::shared_ptr<const TraceStore> m_store;
    const qint64 &m_liveMs;
};

} // namespace cnet::view
