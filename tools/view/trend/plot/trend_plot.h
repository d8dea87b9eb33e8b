#pragma once

#include "view/trend/plot/pane.h"
#include "view/trend/plot/pane_mouse.h"
#include "view/trend/traces/trace_set.h"

#include <QDeadlineTimer>
#include <QWidget>

#include <optional>
#include <vector>

class QMenu;
class QSplitter;

namespace cnet::view {

/** All panes, one over the other, by the same time. It draws when it is told the time. */
class TrendPlot : public QWidget
{
    Q_OBJECT

public:
    /** @param traces, view, cursors, markers must outlive this */
    TrendPlot(TraceSet &traces, TrendView &view, Cursors &cursors, Markers &markers,
              QWidget *parent = nullptr);

    /** What a right click shows. @param menu outlives this */
    void setMenu(QMenu *menu);

    /** Draws where something is different from what was drawn last. Call it at most 25 times a
     * second. @param nowMs see Collector::nowMs() @param until what is not worked out until then
     * is left to the next calls, and the picture stays as it is meanwhile */
    void refresh(qint64 nowMs, const QDeadlineTimer &until = QDeadlineTimer::Forever);

    /** There are samples that have not been drawn. */
    void touch() { m_isOld = true; }

    /** Keeps the picture: what comes behind the time is not drawn. Nothing: it goes on. */
    void setPausedAt(std::optional<qint64> atMs);
    bool isPaused() const { return m_pausedAtMs.has_value(); }

    /** Shows all that there is of the traces. */
    void showAll();

    /** From 0; keys that move values go there. */
    int current() const { return m_current; }
    void setCurrent(int pane);

    /** The pane of values at a place of this widget; -1: lanes, or none. */
    int paneAt(const QPoint &place) const;

    /** @return nullptr: there is none */
    Pane *pane(int number) const;
    Pane *lanes() const { return m_lanes; }

    /** From the top, those that are seen. */
    std::vector<Pane *> shown() const;

    /** What people gave each pane of the height, from the top, the lanes last; empty: nothing, and
     * all are as high as they are by themselves. */
    const std::vector<double> &parts() const { return m_parts; }
    /** @param parts from 0 to 1; those of another number of panes are ignored */
    void setParts(const std::vector<double> &parts);

    /** Where a note belongs: where the menu was asked for, at the active cursor, else now or in
     * the middle. */
    double noteTime() const;

Q_SIGNALS:
    /** current() may be another one. */
    void currentChanged();
    /** parts() are others, by hand. */
    void partsChanged();
    /** A double click at a time, and what is so near to it that it is meant. */
    void timeChosen(double atMs, double nearMs);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    Pane *makePane(PaneKind kind, int number);
    void makePanes();
    void arrange();
    void distribute();
    void takeParts();
    bool begin(qint64 nowMs);
    bool prepare(const QDeadlineTimer &until);
    void align();
    void moveSideways(int direction, Qt::KeyboardModifiers modifiers);

    TraceSet &m_traces;
    TrendView &m_view;
    Cursors &m_cursors;
    Markers &m_markers;
    QMenu *m_menu = nullptr;
    QSplitter *m_splitter;
    std::vector<double> m_parts;
    std::vector<Pane *> m_panes; ///< the splitter's
    Pane *m_lanes = nullptr;     ///< likewise; hidden where there are no bits
    std::vector<PaneMouse *> m_mice;
    int m_current = 0;
    bool m_isOld = true;
    bool m_isBegun = false; ///< a picture, of which something is still to be worked out
    qint64 m_drawnMs = 0;
    std::optional<qint64> m_pausedAtMs;
    std::optional<double> m_menuAtMs;
    int m_leftExtent = 0;
    int m_rightExtent = 0;
};

} // namespace cnet::view
