#include "view/trend/series/trace_item.h"

#include "view/trend/series/trace_raster.h"
#include "view/trend/series/trace_series.h"

#include <qwt_plot.h>
#include <qwt_scale_map.h>

#include <QPaintEngine>
#include <QPainter>

#include <utility>

namespace cnet::view {

namespace {

constexpr int kUsualZ = 20; // as a curve of Qwt
constexpr int kStrongZ = 21;
constexpr double kFaint = 0.35;
constexpr int kColumnsToWiden =
    4; // a sample: fewer, and two pixels would hide what is between them
constexpr int kColumnsToSmooth = 8; // a sample: fewer, and nobody sees it, but it costs ten times

constexpr double kFineDevice = 2; // pixels a point: one of them is a hair

constexpr qint64 kMostPixels = 1 << 26; // far more than there are on a screen
constexpr int kFewTraces = 4;           // that are drawn as fast by the painter

QwtScaleMap scaled(const QwtScaleMap &map, double factor, double offset)
{
    QwtScaleMap scaled = map;
    scaled.setPaintInterval(map.p1() * factor + offset, map.p2() * factor + offset);
    return scaled;
}

/** False where a scale is not linear. */
bool isSame(const QwtScaleMap &map, const QwtScaleMap &other)
{
    return map.transformation() == nullptr && other.transformation() == nullptr &&
           map.s1() == other.s1() && map.s2() == other.s2() && map.p1() == other.p1() &&
           map.p2() == other.p2();
}

bool isSame(const TraceArea &area, const TraceArea &other)
{
    return isSame(area.x, other.x) && isSame(area.y, other.y) && area.pixels == other.pixels;
}

TraceArea scaledArea(const QTransform &device, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                     const QRectF &rect)
{
    return {scaled(xMap, device.m11(), device.dx()), scaled(yMap, device.m22(), device.dy()),
            device.mapRect(rect).toAlignedRect()};
}

/** The area in the pixels of the device; leaves the painter drawing there. */
TraceArea deviceArea(QPainter &painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                     const QRectF &canvasRect)
{
    const QRectF rect =
        painter.hasClipping() ? canvasRect & painter.clipBoundingRect() : canvasRect;
    const QTransform device = painter.deviceTransform();
    if (device.type() > QTransform::TxScale || device.m11() <= 0 || device.m22() <= 0) {
        return {xMap, yMap, rect.toAlignedRect()};
    }
    painter.setWorldTransform(device.inverted() * painter.worldTransform());
    return scaledArea(device, xMap, yMap, rect);
}

QColor faded(const QColor &colour, double factor)
{
    QColor faded = colour;
    faded.setAlpha(qRound(colour.alpha() * factor));
    return faded;
}

/** Of all plots of a thread, as they draw one after the other: it takes some megabytes. */
TraceRaster &sharedRaster()
{
    static thread_local TraceRaster raster;
    return raster;
}

} // namespace

TraceItem::TraceItem(const TraceStore &store)
    : m_store(store)
{
    setItemAttribute(QwtPlotItem::AutoScale, true);
    setItemAttribute(QwtPlotItem::Legend, true);
    setRenderHint(QwtPlotItem::RenderAntialiased, true);
    setZ(kUsualZ);
}

void TraceItem::setColour(const QColor &colour)
{
    if (m_colour != colour) {
        m_colour = colour;
        legendChanged();
        itemChanged();
    }
}

void TraceItem::setStyle(TraceStyle style)
{
    if (m_form.style != style) {
        m_form.style = style;
        forget();
        itemChanged();
    }
}

void TraceItem::setEmphasis(Emphasis emphasis)
{
    if (m_emphasis != emphasis) {
        m_emphasis = emphasis;
        setZ(emphasis == Emphasis::Strong ? kStrongZ : kUsualZ);
        itemChanged();
    }
}

void TraceItem::setLane(double low, double high)
{
    m_form.isLane = true;
    m_form.low = low;
    m_form.high = high;
    forget();
    itemChanged();
}

void TraceItem::clearLane()
{
    m_form.isLane = false;
    forget();
    itemChanged();
}

void TraceItem::setHoldUntil(qint64 atMs)
{
    m_form.holdUntilMs = atMs; // time goes on in each picture anyway
    forget();
}

QRectF TraceItem::boundingRect() const
{
    const QRectF all = TraceSeries(m_store).boundingRect();
    if (!m_form.isLane || !all.isValid()) {
        return all;
    }
    const double top = qMin(m_form.low, m_form.high);
    return {all.left(), top, all.width(), qAbs(m_form.high - m_form.low)};
}

bool TraceItem::prepare(const QwtScaleMap &xMap, const QwtScaleMap &yMap, const QRectF &seen,
                        double deviceRatio)
{
    if (m_prepared) {
        return false;
    }
    const TraceArea area =
        scaledArea(QTransform::fromScale(deviceRatio, deviceRatio), xMap, yMap, seen);
    m_prepared = Prepared{area, traceStrokes(m_store, m_form, area)};
    return true;
}

TraceStrokes TraceItem::takeStrokes(const TraceArea &area) const
{
    if (m_prepared && isSame(m_prepared->area, area)) {
        return std::exchange(m_prepared, std::nullopt)->strokes;
    }
    return traceStrokes(m_store, m_form, area);
}

void TraceItem::draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                     const QRectF &canvasRect) const
{
    painter->save();
    const bool isFine = painter->deviceTransform().m11() >= kFineDevice;
    const TraceArea area = deviceArea(*painter, xMap, yMap, canvasRect);
    const TraceStrokes strokes = takeStrokes(area);
    TracePen pen;
    pen.colour = m_emphasis == Emphasis::Faint ? faded(m_colour, kFaint) : m_colour;
    const qint64 columns = area.pixels.width();
    if ((isFine || m_emphasis == Emphasis::Strong) &&
        strokes.samples * qint64(kColumnsToWiden) <= columns) {
        pen.width = TracePen::Width::Two;
    }
    if (painter->testRenderHint(QPainter::Antialiasing) &&
        strokes.samples * qint64(kColumnsToSmooth) <= columns) {
        pen.edges = TracePen::Edges::Smooth;
    }
    const Place place = placeAmongTraces(*painter, area.pixels);
    TraceRaster &raster = sharedRaster();
    if (place == Place::First) {
        raster.begin(plot(), area.pixels);
    }
    const bool isShared = place != Place::Alone && raster.isBegun(plot(), area.pixels);
    if (!isShared || !raster.add(strokes, pen)) {
        paintStrokes(*painter, strokes, pen);
    }
    if (isShared && place == Place::Last) {
        raster.paint(*painter);
    }
    painter->restore();
}

TraceItem::Place TraceItem::placeAmongTraces(const QPainter &painter, const QRect &pixels) const
{
    const bool isRaster =
        painter.paintEngine() != nullptr && painter.paintEngine()->type() == QPaintEngine::Raster;
    const qint64 size = qint64(pixels.width()) * pixels.height();
    if (plot() == nullptr || !isRaster || pixels.isEmpty() || size > kMostPixels) {
        return Place::Alone;
    }
    const QwtPlotItem *first = nullptr;
    const QwtPlotItem *last = nullptr;
    int count = 0;
    const QwtPlotItemList items = plot()->itemList(rtti()); // as they are drawn
    for (const QwtPlotItem *item : items) {
        if (item->isVisible()) {
            first = count == 0 ? item : first;
            last = item;
            ++count;
        }
    }
    if (count < kFewTraces) {
        return Place::Alone;
    }
    if (this == first) {
        return Place::First;
    }
    return this == last ? Place::Last : Place::Between;
}

} // namespace cnet::view
