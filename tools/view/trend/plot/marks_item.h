#pragma once

#include "view/trend/traces/trend_marks.h"

#include <qwt_plot_item.h>

namespace cnet::view {

/** Depths of what a pane draws: traces from here on, marks above them. */
constexpr double kTracesDepth = 100;
constexpr double kMarksDepth = 1000; ///< above the traces

/** The cursors and the notes, as lines over a pane with their letters and words. */
class MarksItem : public QwtPlotItem
{
public:
    /** @param cursors, markers must outlive this */
    MarksItem(const Cursors &cursors, const Markers &markers);

    int rtti() const override { return Rtti_PlotUserItem + 2; }
    void draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
              const QRectF &canvasRect) const override;

private:
    void drawCursor(QPainter *painter, const QwtScaleMap &xMap, const QRectF &canvasRect,
                    Cursor cursor) const;

    const Cursors &m_cursors;
    const Markers &m_markers;
};

} // namespace cnet::view
