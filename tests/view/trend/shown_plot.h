#pragma once

#include "view/look/colours.h"
#include "view/trend/plot/trend_plot.h"

#include <QWheelEvent>
#include <QtTest>

#include <memory>

namespace cnet::view {

constexpr qint64 kNow = 1700000000000;
constexpr double kMinute = 60000;

/** Pixels of a column of a canvas that have about a colour. */
inline int coloured(const QImage &image, int x, const QColor &colour)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        const QColor pixel = image.pixelColor(x, y);
        const int away = qAbs(pixel.red() - colour.red()) + qAbs(pixel.green() - colour.green()) +
                         qAbs(pixel.blue() - colour.blue());
        count += away < 60 ? 1 : 0;
    }
    return count;
}

inline void turnWheel(QWidget *widget, const QPoint &at, const QPoint &angle,
                      Qt::KeyboardModifiers keys = Qt::NoModifier)
{
    QWheelEvent event(at, widget->mapToGlobal(at), QPoint(), angle, Qt::NoButton, keys,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

inline QPoint middle(Pane *pane)
{
    return pane->canvas()->contentsRect().center();
}

/** The panes in a window, at times that the test says. */
class ShownPlot
{
protected:
    bool show()
    {
        m_plot.reset();
        m_traces = std::make_unique<TraceSet>();
        m_view = std::make_unique<TrendView>(kNow);
        m_cursors = std::make_unique<Cursors>();
        m_markers = std::make_unique<Markers>();
        m_plot = std::make_unique<TrendPlot>(*m_traces, *m_view, *m_cursors, *m_markers);
        m_plot->resize(800, 600);
        m_plot->show();
        return QTest::qWaitForWindowExposed(m_plot.get(), 60000);
    }

    int add(const char *name, int pane = 0, Side side = Side::Left, bool isBit = false)
    {
        return m_traces->add({QString::fromLatin1(name), m_traces->freeColour(), pane, side, true},
                             {QString(), isBit});
    }
    TraceStore &store(int trace) { return *m_traces->at(trace).store; }
    const Sight &sight() const { return m_view->sight(); }
    Range left(int pane = 0) const { return sight().panes[static_cast<size_t>(pane)].left.range; }
    void draw(qint64 nowMs = kNow)
    {
        m_plot->touch();
        m_plot->refresh(nowMs);
        QCoreApplication::processEvents();
        m_plot->touch();
        m_plot->refresh(nowMs);
    }
    QImage canvas(Pane *pane) { return pane->canvas()->grab().toImage(); }
    int column(Pane *pane, qint64 atMs) const
    {
        return qRound(pane->xOf(static_cast<double>(atMs)));
    }
    QColor colour(int trace) const
    {
        return traceColour(m_traces->at(trace).choice.colour, m_plot->palette());
    }

    // In this order: the plot goes first.
    std::unique_ptr<TraceSet> m_traces;
    std::unique_ptr<TrendView> m_view;
    std::unique_ptr<Cursors> m_cursors;
    std::unique_ptr<Markers> m_markers;
    std::unique_ptr<TrendPlot> m_plot;
};

} // namespace cnet::view
