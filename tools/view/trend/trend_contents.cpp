#include "view/tags/tag_drag.h"
#include "view/trend/side_panel.h"
#include "view/trend/trend_actions.h"
#include "view/trend/trend_page.h"

#include <QDragEnterEvent>
#include <QLabel>

#include <cmath>

namespace cnet::view {

namespace {

constexpr double kFirstCursor = 1.0 / 3; ///< of what is seen
constexpr double kMsPerSecond = 1000;

QPoint placeOf(const QDropEvent &event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event.position().toPoint();
#else
    return event.pos();
#endif
}

} // namespace

void TrendPage::addTraces(const QStringList &names)
{
    addTo(m_plot->current(), names);
}

void TrendPage::addTo(int pane, const QStringList &names)
{
    QString trouble;
    bool isFull = false;
    for (const QString &name : names) {
        QString error;
        const QStringList wanted = m_collector.tracesOf(name, error);
        if (wanted.isEmpty() && trouble.isEmpty()) {
            trouble = error;
        }
        for (const QString &trace : wanted) {
            isFull = isFull || !addOne(pane, trace);
        }
    }
    if (isFull) {
        Q_EMIT troubled(tr("No more than %n traces fit.", "", TraceSet::kMostTraces),
                        tr("Remove some of them first."));
    } else if (!trouble.isEmpty()) {
        Q_EMIT troubled(trouble, tr("Choose numbers and bits of the values that are watched."));
    }
}

bool TrendPage::addOne(int pane, const QString &trace)
{
    if (m_traces.indexOf(trace) >= 0) {
        return true;
    }
    const TraceKind kind = m_collector.kindOf(trace);
    const TraceChoice choice{trace, m_traces.freeColour(), pane, sideFor(pane, kind.unit), true};
    return m_traces.add(choice, kind) >= 0;
}

/** Traces of one unit share a scale, and another unit gets the other one while that is free. */
Side TrendPage::sideFor(int pane, const QString &unit) const
{
    bool isLeftOther = false;
    bool isRightOther = false;
    for (int i = 0; i < m_traces.count(); ++i) {
        const Trace &trace = m_traces.at(i);
        if (!trace.kind.isBit && trace.choice.pane == pane && trace.kind.unit != unit) {
            (trace.choice.side == Side::Left ? isLeftOther : isRightOther) = true;
        }
    }
    return isLeftOther && !isRightOther ? Side::Right : Side::Left;
}

void TrendPage::dragEnterEvent(QDragEnterEvent *event)
{
    if (!tagsOfMime(event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void TrendPage::dropEvent(QDropEvent *event)
{
    const QStringList names = tagsOfMime(event->mimeData());
    if (names.isEmpty()) {
        return;
    }
    const int pane = m_plot->paneAt(m_plot->mapFrom(this, placeOf(*event)));
    addTo(pane >= 0 ? pane : m_plot->current(), names);
    event->acceptProposedAction();
}

void TrendPage::placeCursor(Cursor cursor)
{
    const Range &time = m_view.sight().time;
    const auto at = m_cursors.at(cursor);
    if (at && time.holds(*at)) {
        m_cursors.setActive(cursor);
        return;
    }
    const double part = cursor == Cursor::A ? kFirstCursor : 1 - kFirstCursor;
    m_cursors.place(cursor, std::round(time.from + time.length() * part));
}

void TrendPage::showCursors()
{
    const auto a = m_cursors.at(Cursor::A);
    const auto b = m_cursors.at(Cursor::B);
    m_cursorPanel->setVisible(a || b);
    m_actions->noCursors->setEnabled(a || b);
    QStringList words;
    if (a) {
        words.append(tr("A: %1").arg(clockText(*a)));
    }
    if (b) {
        words.append(tr("B: %1").arg(clockText(*b)));
    }
    if (a && b) {
        words.append(tr("B - A: %1 s").arg((*b - *a) / kMsPerSecond, 0, 'f', 3));
    }
    m_cursorText->setText(words.join(QLatin1String("    ")));
    if (a || b) {
        m_cursorTable.refresh(m_collector.nowMs());
    }
}

void TrendPage::addNote()
{
    const int row = m_markers.add({std::llround(m_plot->noteTime()), tr("note")});
    if (row < 0) {
        Q_EMIT troubled(tr("There are %n notes already.", "", Markers::kMostMarkers),
                        tr("Remove some of them first."));
        return;
    }
    m_side->editNote(row);
}

void TrendPage::editNoteAt(double atMs, double nearMs)
{
    int nearest = -1;
    double least = nearMs;
    const auto &all = m_markers.all();
    for (size_t i = 0; i < all.size(); ++i) {
        const double away = std::fabs(static_cast<double>(all[i].atMs) - atMs);
        if (away <= least) {
            least = away;
            nearest = static_cast<int>(i);
        }
    }
    if (nearest >= 0) {
        m_side->editNote(nearest);
    }
}

void TrendPage::goTo(double atMs)
{
    const double half = m_view.sight().time.length() / 2;
    m_view.remember(Gesture::Step);
    m_view.setTime({atMs - half, atMs + half});
}

} // namespace cnet::view
