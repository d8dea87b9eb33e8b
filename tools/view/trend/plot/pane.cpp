#include "view/trend/plot/pane.h"

#include "view/trend/plot/live_trace.h"
#include "view/trend/plot/marks_item.h"
#include "view/trend/plot/pane_scales.h"
#include "view/trend/series/trace_series.h"

#include <qwt_plot_canvas.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_layout.h>
#include <qwt_scale_engine.h>
#include <qwt_scale_map.h>
#include <qwt_scale_widget.h>

#include <QDeadlineTimer>
#include <QEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace cnet::view {

namespace {

constexpr double kMargin = 0.04; ///< of what an automatic scale shows, above and below
constexpr int kMostSteps = 8;
constexpr int kMostTimes = 8;     // that are written
constexpr double kLeastLines = 6; ///< of text, as high as a pane is at least
constexpr double kLeastLaneLines = 3;
constexpr int kLeastWidth = 15;      ///< of a pane, in heights of a line
constexpr double kLaneMargin = 0.18; ///< of a lane, above and below

int axisOf(Side side)
{
    return side == Side::Left ? QwtPlot::yLeft : QwtPlot::yRight;
}

} // namespace

Pane::Pane(PaneKind kind, const Cursors &cursors, const Markers &markers, QWidget *parent)
    : QwtPlot(parent)
    , m_kind(kind)
    , m_grid(new QwtPlotGrid)
{
    setAutoReplot(false);
    auto *canvas = new QwtPlotCanvas;
    canvas->setFrameShape(QFrame::Box);
    canvas->setFrameShadow(QFrame::Plain);
    canvas->setLineWidth(1);
    canvas->setFocusPolicy(Qt::NoFocus);
    setCanvas(canvas);
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    plotLayout()->setAlignCanvasToScales(true);
    setAxisScaleDraw(xBottom, new TimeScaleDraw);
    setAxisScaleEngine(xBottom, makeTimeScaleEngine().release());
    setAxisMaxMinor(xBottom, 0);
    for (const int axis : {static_cast<int>(yLeft), static_cast<int>(yRight)}) {
        enableAxis(axis);
        setAxisMaxMajor(axis, kMostSteps);
        setAxisMaxMinor(axis, 0);
        axisWidget(axis)->setMargin(0);
    }
    if (kind == PaneKind::Lanes) {
        setAxisScaleDraw(yLeft, new LaneScaleDraw);
        m_grid->enableY(false);
    }
    m_grid->attach(this);
    (new MarksItem(cursors, markers))->attach(this);
    colour();
    useFont();
    setTraces({});
}

Pane::~Pane() = default;

bool Pane::hasTraces(Side side) const
{
    return std::any_of(m_traces.cbegin(), m_traces.cend(),
                       [side](const PaneTrace &trace) { return trace.side == side; });
}

void Pane::setTraces(const std::vector<PaneTrace> &traces)
{
    m_items.clear();
    m_traces = traces;
    int depth = 1;
    for (const PaneTrace &trace : m_traces) {
        auto item = std::make_unique<LiveTrace>(trace.store, m_frame.liveMs);
        item->setColour(trace.colour);
        item->setEmphasis(trace.emphasis);
        item->setTitle(trace.name);
        item->setItemAttribute(QwtPlotItem::AutoScale, false);
        item->setYAxis(m_kind == PaneKind::Lanes ? static_cast<int>(yLeft) : axisOf(trace.side));
        // Qwt's marks and grids have their own depths, the marks above all traces.
        item->setZ(trace.emphasis == Emphasis::Strong ? kTracesDepth + kMarksDepth - 1
                                                      : kTracesDepth + depth);
        item->setHoldUntil(m_frame.liveMs);
        item->attach(this);
        m_items.push_back(std::move(item));
        ++depth;
    }
    if (m_kind == PaneKind::Lanes) {
        layLanes();
    }
    nameScale(Side::Left);
    nameScale(Side::Right);
}

void Pane::layLanes()
{
    const auto count = static_cast<double>(m_items.size());
    std::vector<LaneName> names;
    double top = count;
    for (size_t i = 0; i < m_items.size(); ++i) {
        m_items[i]->setLane(top - 1 + kLaneMargin, top - kLaneMargin);
        names.push_back({top - 0.5, m_traces[i].name});
        top -= 1;
    }
    auto *draw = new LaneScaleDraw;
    draw->setNames(names);
    setAxisScaleDraw(yLeft, draw);
    setAxisScaleDiv(yLeft, draw->division(std::max(count, 1.0)));
}

/** A title there must be, or the canvases of panes would not begin at the same place. */
void Pane::nameScale(Side side)
{
    QStringList units;
    for (const PaneTrace &trace : m_traces) {
        const bool isNamed = m_kind == PaneKind::Values && trace.side == side;
        if (isNamed && !trace.unit.isEmpty() && !units.contains(trace.unit)) {
            units.append(trace.unit);
        }
    }
    QwtText title(units.isEmpty() ? QLatin1String(" ") : units.join(QLatin1String(", ")),
                  QwtText::PlainText);
    title.setFont(font());
    setAxisTitle(axisOf(side), title);
    const bool isShown =
        m_kind == PaneKind::Lanes ? side == Side::Left : side == Side::Left || hasTraces(side);
    for (const auto part : {QwtAbstractScaleDraw::Ticks, QwtAbstractScaleDraw::Labels,
                            QwtAbstractScaleDraw::Backbone}) {
        const bool isPart = isShown && part != QwtAbstractScaleDraw::Backbone;
        axisScaleDraw(axisOf(side))->enableComponent(part, isPart);
    }
}

std::optional<Range> Pane::fitted(Side side, const Frame &frame) const
{
    std::optional<Range> all;
    const auto from = scaleMs(std::floor(frame.time.from));
    const auto to = std::min(scaleMs(std::ceil(frame.time.to)), frame.liveMs);
    for (const PaneTrace &trace : m_traces) {
        if (trace.side != side) {
            continue;
        }
        const TraceStore &store = *trace.store;
        // The one before holds into what is seen.
        const auto span = store.span(store.indexAt(from + 1) - 1, store.indexAt(to + 1));
        if (span.count > 0) {
            all = all ? Range{std::min(all->from, span.least), std::max(all->to, span.greatest)}
                      : Range{span.least, span.greatest};
        }
    }
    if (!all) {
        return std::nullopt;
    }
    double margin = all->length() * kMargin;
    if (margin <= 0) {
        margin = std::max(std::fabs(all->from) * kMargin, 0.5);
    }
    double low = all->from - margin;
    double high = all->to + margin;
    double step = 0;
    if (!std::isfinite(low) || !std::isfinite(high)) {
        return std::nullopt;
    }
    QwtLinearScaleEngine().autoScale(kMostSteps, low, high, step);
    Range range{low, high};
    return makeDrawable(range) ? std::optional<Range>(range) : std::nullopt;
}

void Pane::begin(const Frame &frame, const PaneScales &scales)
{
    m_frame = frame;
    m_scales = scales;
    for (const auto &item : m_items) {
        item->setHoldUntil(frame.liveMs);
    }
}

bool Pane::prepare(const QDeadlineTimer &until)
{
    // Where the canvas has other edges because of these scales, it is worked out again.
    const auto next = [this](int axis, const Range &range) {
        QwtScaleMap map = canvasMap(axis);
        map.setScaleInterval(range.from, range.to);
        return map;
    };
    const QwtScaleMap time = next(xBottom, m_frame.time);
    for (const auto &item : m_items) {
        const auto side = item->yAxis() == yLeft ? Side::Left : Side::Right;
        const QwtScaleMap values = m_kind == PaneKind::Values
                                       ? next(item->yAxis(), m_scales.of(side).range)
                                       : canvasMap(yLeft);
        const bool hasWorked = item->prepareLive(time, values, *canvas());
        // Also behind the last one: drawing takes time, too, and the next slice has some.
        if (hasWorked && until.hasExpired()) {
            return false;
        }
    }
    return true;
}

void Pane::present()
{
    const int labels = canvas()->width() / (2 * timeOverhang());
    setAxisMaxMajor(xBottom, std::clamp(labels, 2, kMostTimes));
    setAxisScale(xBottom, m_frame.time.from, m_frame.time.to);
    if (m_kind == PaneKind::Values) {
        for (const Side side : {Side::Left, Side::Right}) {
            const Range &range = m_scales.of(side).range;
            setAxisScale(axisOf(side), range.from, range.to);
        }
        // Lines of the scale that is read.
        m_grid->setYAxis(
            axisOf(hasTraces(Side::Left) || !hasTraces(Side::Right) ? Side::Left : Side::Right));
    }
    replot();
}

int Pane::neededExtent(Side side)
{
    auto *scale = axisWidget(axisOf(side))->scaleDraw();
    const double before = scale->minimumExtent();
    scale->setMinimumExtent(0);
    const double needed = scale->extent(axisFont(axisOf(side)));
    scale->setMinimumExtent(before);
    return static_cast<int>(std::ceil(needed));
}

void Pane::setExtent(Side side, int pixels)
{
    auto *scale = axisWidget(axisOf(side))->scaleDraw();
    if (std::lround(scale->minimumExtent()) != pixels) {
        scale->setMinimumExtent(pixels);
        updateLayout();
    }
}

int Pane::timeOverhang() const
{
    return TimeScaleDraw::overhang(QFontMetrics(axisFont(xBottom)));
}

void Pane::setTimesShown(bool areShown)
{
    enableAxis(xBottom, areShown);
}

double Pane::timeAt(double canvasX) const
{
    return canvasMap(xBottom).invTransform(canvasX);
}

double Pane::valueAt(Side side, double canvasY) const
{
    return canvasMap(axisOf(side)).invTransform(canvasY);
}

void Pane::setCurrent(bool isCurrent)
{
    if (m_isCurrent != isCurrent) {
        m_isCurrent = isCurrent;
        colour();
    }
}

QSize Pane::minimumSizeHint() const
{
    const int line = fontMetrics().height();
    const double lines = m_kind == PaneKind::Values ? kLeastLines : kLeastLaneLines;
    return {line * kLeastWidth, static_cast<int>(lines * line)};
}

void Pane::colour()
{
    const QPalette &own = palette();
    setCanvasBackground(own.color(QPalette::Base));
    QColor line = own.color(QPalette::Text);
    line.setAlphaF(0.15);
    m_grid->setPen(line, 0, Qt::SolidLine);
    QPalette frame = canvas()->palette();
    frame.setColor(QPalette::WindowText,
                   own.color(m_isCurrent ? QPalette::Highlight : QPalette::Mid));
    canvas()->setPalette(frame);
}

// The labels have a size of their own otherwise, which somebody with a large font cannot read.
void Pane::useFont()
{
    for (const auto axis : {xBottom, yLeft, yRight}) {
        setAxisFont(axis, font());
    }
    nameScale(Side::Left);
    nameScale(Side::Right);
}

void Pane::changeEvent(QEvent *event)
{
    QwtPlot::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        colour();
    }
    if (event->type() == QEvent::FontChange) {
        useFont();
    }
}

} // namespace cnet::view
