#include "view/trend/plot/trend_plot.h"

#include "view/look/colours.h"

#include <QEvent>
#include <QMenu>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace cnet::view {

namespace {

constexpr double kLaneLines = 1.5; ///< height of a lane, in lines of text
constexpr int kNearPixels = 8;     ///< of a double click
constexpr double kFineness = 1000; ///< of parts of the height

} // namespace

TrendPlot::TrendPlot(TraceSet &traces, TrendView &view, Cursors &cursors, Markers &markers,
                     QWidget *parent)
    : QWidget(parent)
    , m_traces(traces)
    , m_view(view)
    , m_cursors(cursors)
    , m_markers(markers)
    , m_splitter(new QSplitter(Qt::Vertical))
{
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Trend"));
    setAccessibleDescription(tr("Arrow keys move the picture or the active cursor"));
    m_splitter->setChildrenCollapsible(false);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_splitter);
    connect(&view, &TrendView::panesChanged, this, &TrendPlot::makePanes);
    connect(&view, &TrendView::changed, this, &TrendPlot::touch);
    connect(&cursors, &Cursors::changed, this, &TrendPlot::touch);
    connect(&markers, &Markers::changed, this, &TrendPlot::touch);
    connect(&traces, &TraceSet::rearranged, this, &TrendPlot::arrange);
    connect(m_splitter, &QSplitter::splitterMoved, this, &TrendPlot::takeParts);
    makePanes();
}

Pane *TrendPlot::makePane(PaneKind kind, int number)
{
    auto *pane = new Pane(kind, m_cursors, m_markers);
    auto *mouse = new PaneMouse(*pane, number, m_view, m_cursors);
    connect(mouse, &PaneMouse::pressed, this, [this, number] {
        setFocus(Qt::MouseFocusReason);
        setCurrent(number);
    });
    connect(mouse, &PaneMouse::doubleClicked, this, [this, pane](double atMs) {
        const double pixels = std::max(1, pane->canvas()->width());
        Q_EMIT timeChosen(atMs, m_view.sight().time.length() / pixels * kNearPixels);
    });
    m_mice.push_back(mouse);
    return pane;
}

void TrendPlot::setMenu(QMenu *menu)
{
    m_menu = menu;
    connect(menu, &QMenu::aboutToHide, this, [this] {
        // What was chosen comes right behind this.
        QMetaObject::invokeMethod(
            this, [this] { m_menuAtMs.reset(); }, Qt::QueuedConnection);
    });
}

void TrendPlot::makePanes()
{
    m_mice.clear();
    for (const Pane *pane : m_panes) {
        delete pane;
    }
    m_panes.clear();
    delete m_lanes;
    m_lanes = nullptr;
    for (int i = 0; i < m_view.panes(); ++i) {
        m_panes.push_back(makePane(PaneKind::Values, i));
        m_splitter->addWidget(m_panes.back());
    }
    m_lanes = makePane(PaneKind::Lanes, -1);
    m_splitter->addWidget(m_lanes);
    arrange();
    distribute();
    setCurrent(m_current);
}

void TrendPlot::arrange()
{
    std::vector<std::vector<PaneTrace>> ofPanes(m_panes.size());
    std::vector<PaneTrace> bits;
    for (int i = 0; i < m_traces.count(); ++i) {
        const Trace &trace = m_traces.at(i);
        if (!trace.choice.isVisible) {
            continue;
        }
        const PaneTrace drawn{
            trace.store,       trace.choice.name,
            trace.kind.unit,   traceColour(trace.choice.colour, palette()),
            trace.choice.side, i == m_traces.highlighted() ? Emphasis::Strong : Emphasis::Usual};
        const auto pane = std::min(static_cast<size_t>(trace.choice.pane), m_panes.size() - 1);
        (trace.kind.isBit ? bits : ofPanes[pane]).push_back(drawn);
    }
    const bool wereLanesHidden = m_lanes->isHidden();
    const size_t lanesBefore = m_lanes->traces().size();
    for (size_t i = 0; i < m_panes.size(); ++i) {
        m_panes[i]->setTraces(ofPanes[i]);
        // The pane there always is makes room where there are bits alone.
        m_panes[i]->setVisible(m_panes.size() > 1 || bits.empty() || !ofPanes[i].empty());
    }
    m_lanes->setTraces(bits);
    m_lanes->setVisible(!bits.empty());
    const auto seen = shown();
    for (Pane *pane : seen) {
        pane->setTimesShown(pane == seen.back());
    }
    if (wereLanesHidden != bits.empty() || lanesBefore != bits.size()) {
        distribute();
    }
    m_isBegun = false;
    touch();
}

void TrendPlot::distribute()
{
    const int line = fontMetrics().height();
    const int all = std::max(m_splitter->height(), line);
    const auto bits = static_cast<double>(m_lanes->traces().size());
    const int lanes =
        std::min(all / 2, static_cast<int>((bits * kLaneLines + kLaneLines * 2) * line));
    QList<int> heights;
    for (size_t i = 0; i < m_panes.size(); ++i) {
        heights.append((all - (bits > 0 ? lanes : 0)) / static_cast<int>(m_panes.size()));
    }
    heights.append(lanes);
    m_splitter->setSizes(heights);
    m_parts.clear();
}

void TrendPlot::refresh(qint64 nowMs, const QDeadlineTimer &until)
{
    if (!isVisible()) {
        m_isOld = std::exchange(m_isBegun, false) || m_isOld;
        return;
    }
    m_isBegun = m_isBegun || begin(nowMs);
    if (!m_isBegun || !prepare(until)) {
        return;
    }
    m_isBegun = false;
    for (Pane *pane : m_panes) {
        pane->present();
    }
    m_lanes->present();
    align();
}

/** @return false: what is drawn is what there is */
bool TrendPlot::begin(qint64 nowMs)
{
    const Range &time = m_view.sight().time;
    const auto now = static_cast<double>(nowMs);
    const bool isMoving =
        !isPaused() && m_traces.count() > 0 && (m_view.isFollowing() || time.holds(now));
    if (!m_isOld && !isMoving) {
        return false;
    }
    m_isOld = false;
    m_drawnMs = nowMs;
    if (!isPaused()) {
        m_view.tick(nowMs);
    }
    const Frame frame{m_view.sight().time, m_pausedAtMs.value_or(nowMs)};
    for (int i = 0; i < m_view.panes(); ++i) {
        for (const Side side : {Side::Left, Side::Right}) {
            const auto fitted = pane(i)->fitted(side, frame);
            if (fitted) {
                m_view.noteAutomatic(i, side, *fitted);
            }
        }
        pane(i)->begin(frame, m_view.sight().panes[static_cast<size_t>(i)]);
    }
    m_lanes->begin(frame, PaneScales());
    return true;
}

bool TrendPlot::prepare(const QDeadlineTimer &until)
{
    return std::all_of(m_panes.cbegin(), m_panes.cend(),
                       [&until](Pane *pane) { return pane->prepare(until); }) &&
           m_lanes->prepare(until);
}

/** Canvases begin and end at the same places, whatever labels their scales have. They do not shrink
 * for a digit that comes and goes. */
void TrendPlot::align()
{
    const auto seen = shown();
    int left = 0;
    int right = 0;
    for (Pane *pane : seen) {
        left = std::max({left, pane->neededExtent(Side::Left), pane->timeOverhang()});
        right = std::max({right, pane->neededExtent(Side::Right), pane->timeOverhang()});
    }
    const int slack = fontMetrics().averageCharWidth() * 3;
    if (left > m_leftExtent || left < m_leftExtent - slack) {
        m_leftExtent = left;
    }
    if (right > m_rightExtent || right < m_rightExtent - slack) {
        m_rightExtent = right;
    }
    for (Pane *pane : seen) {
        pane->setExtent(Side::Left, m_leftExtent);
        pane->setExtent(Side::Right, m_rightExtent);
    }
}

void TrendPlot::setPausedAt(std::optional<qint64> atMs)
{
    m_pausedAtMs = atMs;
    touch();
}

void TrendPlot::showAll()
{
    double first = std::numeric_limits<double>::max();
    double last = 0;
    for (int i = 0; i < m_traces.count(); ++i) {
        const TraceStore &store = *m_traces.at(i).store;
        if (!store.isEmpty()) {
            first = std::min(first, static_cast<double>(store.firstMs()));
            last = std::max({last, static_cast<double>(store.lastMs()),
                             static_cast<double>(m_pausedAtMs.value_or(m_drawnMs))});
        }
    }
    if (last > 0) {
        m_view.remember(Gesture::Step);
        m_view.setTime({first, last});
    }
}

void TrendPlot::setCurrent(int pane)
{
    m_current = std::clamp(pane, 0, static_cast<int>(m_panes.size()) - 1);
    const bool isMarked = hasFocus() && m_panes.size() > 1;
    for (size_t i = 0; i < m_panes.size(); ++i) {
        m_panes[i]->setCurrent(isMarked && static_cast<int>(i) == m_current);
    }
    Q_EMIT currentChanged();
}

int TrendPlot::paneAt(const QPoint &place) const
{
    for (size_t i = 0; i < m_panes.size(); ++i) {
        const QRect own(m_panes[i]->mapTo(this, QPoint(0, 0)), m_panes[i]->size());
        if (m_panes[i]->isVisible() && own.contains(place)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

Pane *TrendPlot::pane(int number) const
{
    const bool is = number >= 0 && number < static_cast<int>(m_panes.size());
    return is ? m_panes[static_cast<size_t>(number)] : nullptr;
}

std::vector<Pane *> TrendPlot::shown() const
{
    std::vector<Pane *> seen;
    for (int i = 0; i < m_splitter->count(); ++i) {
        auto *pane = qobject_cast<Pane *>(m_splitter->widget(i));
        if (pane != nullptr && !pane->isHidden()) {
            seen.push_back(pane);
        }
    }
    return seen;
}

void TrendPlot::takeParts()
{
    const QList<int> heights = m_splitter->sizes();
    const int all = std::accumulate(heights.cbegin(), heights.cend(), 0);
    m_parts.clear();
    for (const int height : heights) {
        m_parts.push_back(std::round(kFineness * height / std::max(all, 1)) / kFineness);
    }
    Q_EMIT partsChanged();
}

void TrendPlot::setParts(const std::vector<double> &parts)
{
    if (static_cast<int>(parts.size()) != m_splitter->count()) {
        return;
    }
    m_parts = parts;
    const double all = std::max(m_splitter->height(), static_cast<int>(kFineness));
    QList<int> heights;
    for (const double part : parts) {
        heights.append(static_cast<int>(std::lround(part * all)));
    }
    m_splitter->setSizes(heights);
}

double TrendPlot::noteTime() const
{
    const Range &time = m_view.sight().time;
    if (m_menuAtMs) {
        return *m_menuAtMs;
    }
    if (m_cursors.active()) {
        return *m_cursors.at(*m_cursors.active());
    }
    return m_view.isFollowing() ? time.to : (time.from + time.to) / 2;
}

void TrendPlot::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    setCurrent(m_current);
}

void TrendPlot::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    setCurrent(m_current);
}

void TrendPlot::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        arrange();
    }
}

} // namespace cnet::view
