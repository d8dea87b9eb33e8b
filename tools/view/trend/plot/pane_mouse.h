#pragma once

#include "view/trend/plot/pane.h"

#include <QObject>
#include <QPointF>
#include <QRubberBand>

class QMouseEvent;
class QWheelEvent;

namespace cnet::view {

/**
 * What the mouse does in a pane: the left button draws a box to look into or takes a cursor with
 * it, the middle one (or the left one with Shift) moves the picture, the wheel looks nearer about
 * the pointer; with Ctrl, or over a scale, it does so with values. A double click on a scale makes
 * it automatic.
 */
class PaneMouse : public QObject
{
    Q_OBJECT

public:
    /** @param pane its parent @param number of the pane; -1: of lanes @param view, cursors outlive
     * this */
    PaneMouse(Pane &pane, int number, TrendView &view, Cursors &cursors);

    /** Lets go of what is dragged; the box is not looked into. */
    void cancel();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void pressed();
    /** A double click at a time. */
    void doubleClicked(double atMs);

private:
    enum class Drag { None, Box, Pan, CursorA, CursorB };

    bool filterCanvas(QEvent *event);
    bool filterScale(Side side, QEvent *event);
    bool press(const QMouseEvent &event);
    bool move(const QMouseEvent &event);
    bool release(const QMouseEvent &event);
    bool wheel(const QWheelEvent &event);
    void zoomValues(Side side, double factor, double y);
    void pan(const QPointF &to);
    void zoomBox(const QPointF &to);
    void showPointer(const QPointF &at);
    Drag cursorAt(double x) const;
    Range values(Side side, double top, double bottom) const;

    Pane &m_pane;
    QWidget *m_canvas;    ///< known by their places alone: events come
    QWidget *m_leftScale; ///< while a pane goes, too
    int m_number;
    TrendView &m_view;
    Cursors &m_cursors;
    QRubberBand *m_band; ///< the canvas's
    Drag m_drag = Drag::None;
    bool m_hasMoved = false;
    QPointF m_start;
    Sight m_before; ///< when the drag began
};

} // namespace cnet::view
