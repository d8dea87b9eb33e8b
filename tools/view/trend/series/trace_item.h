#pragma once

#include "view/trend/series/trace_store.h"
#include "view/trend/series/trace_strokes.h"

#include <qwt_plot_item.h>

#include <QColor>

#include <optional>

namespace cnet::view {

/** How much a trace stands out among others. */
enum class Emphasis {
    Usual,
    Strong, ///< two pixels wide where there is room between its samples, and above the others
    Faint,  ///< half transparent
};

/**
 * A trace in a plot whose x axis is the time in ms since the epoch. Where there are more samples
 * than pixel columns, each column shows all from its least to its greatest value, a pixel wide; a
 * gap is drawn as nothing.
 */
class TraceItem : public QwtPlotItem
{
public:
    /** @param store outlives this; who appends to it replots */
    explicit TraceItem(const TraceStore &store);

    void setColour(const QColor &colour);
    const QColor &colour() const { return m_colour; }

    /** Hold at first. */
    void setStyle(TraceStyle style);
    TraceStyle style() const { return m_form.style; }

    void setEmphasis(Emphasis emphasis);
    Emphasis emphasis() const { return m_emphasis; }

    /** Draws a bit: 0 at the low place of the y axis and anything else at the high one, filled
     * between while it is not 0. It holds, whatever the style. */
    void setLane(double low, double high);

    /** Draws values where the y axis has them, as at first. */
    void clearLane();
    bool isLane() const { return m_form.isLane; }

    /** In a live view the last value is drawn on to this time (ms) as it holds; 0, as at first: it
     * ends at the last sample. */
    void setHoldUntil(qint64 atMs);

    /** Works out in advance what draw() draws, which is most of the work. The next draw() through
     * the same maps, on a device of the ratio, uses it up.
     * @param seen the part of the canvas that the painter does not clip
     * @return false: something is prepared already */
    bool prepare(const QwtScaleMap &xMap, const QwtScaleMap &yMap, const QRectF &seen,
                 double deviceRatio);

    /** Drops what is prepared: samples may have come since. */
    void forget() { m_prepared.reset(); }

    int rtti() const override { return QwtPlotItem::Rtti_PlotUserItem + 1; }
    QRectF boundingRect() const override;
    void draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
              const QRectF &canvasRect) const override;

private:
    /** Where among the traces that a plot draws one after the other. */
    enum class Place { Alone, First, Between, Last };
    Place placeAmongTraces(const QPainter &painter, const QRect &pixels) const;

    struct Prepared
    {
        TraceArea area;
        TraceStrokes strokes;
    };
    TraceStrokes takeStrokes(const TraceArea &area) const;

    const TraceStore &m_store;
    QColor m_colour{Qt::black};
    Emphasis m_emphasis = Emphasis::Usual;
    TraceForm m_form;
    mutable std::optional<Prepared> m_prepared;
};

} // namespace cnet::view
