#include "view/trend/series/trace_item.h"

#include "view/trend/series/trace_series.h"

#include <qwt_scale_map.h>

#include <QPainter>
#include <QPen>

namespace cnet::view {

namespace {

constexpr int kUsualZ = 20; // as a curve of Qwt
constexpr int kStrongZ = 21;
constexpr double kFaint = 0.35;
constexpr double kFill = 0.25;
constexpr int kColumnsToWiden =
    4; // a sample: fewer, and two pixels would hide what is between them
constexpr int kColumnsToSmooth = 8; // a sample: fewer, and nobody sees it, but it costs ten times

QwtScaleMap scaled(const QwtScaleMap &map, double factor, double offset)
{
    QwtScaleMap scaled = map;
    scaled.setPaintInterval(map.p1() * factor + offset, map.p2() * factor + offset);
    return scaled;
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
    return {scaled(xMap, device.m11(), device.dx()), scaled(yMap, device.m22(), device.dy()),
            device.mapRect(rect).toAlignedRect()};
}

QColor faded(const QColor &colour, double factor)
{
    QColor faded = colour;
    faded.setAlphaF(colour.alphaF() * factor);
    return faded;
}

/** A pixel more to the right or below, whichever is across the line. */
QRect widened(const QLine &line)
{
    const QRect rect(line.p1(), line.p2());
    return line.x1() == line.x2() ? rect.adjusted(0, 0, 1, 0) : rect.adjusted(0, 0, 0, 1);
}

void drawLines(QPainter &painter, const TraceStrokes &strokes, const QColor &colour, bool isWide)
{
    if (isWide) {
        for (const QLine &line : strokes.lines) {
            painter.fillRect(widened(line), colour);
        }
        return;
    }
    painter.drawLines(strokes.lines.data(), static_cast<int>(strokes.lines.size()));
}

void drawSlopes(QPainter &painter, const TraceStrokes &strokes, bool isSmooth)
{
    painter.setRenderHint(QPainter::Antialiasing, isSmooth);
    if (isSmooth) {
        painter.translate(0.5, 0.5); // where the middle of a pixel is, then
    }
    painter.drawLines(strokes.slopes.data(), static_cast<int>(strokes.slopes.size()));
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
    itemChanged();
}

void TraceItem::clearLane()
{
    m_form.isLane = false;
    itemChanged();
}

void TraceItem::setHoldUntil(qint64 atMs)
{
    m_form.holdUntilMs = atMs; // time goes on in each picture anyway
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

void TraceItem::draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                     const QRectF &canvasRect) const
{
    painter->save();
    const TraceArea area = deviceArea(*painter, xMap, yMap, canvasRect);
    const TraceStrokes strokes = traceStrokes(m_store, m_form, area);
    const QColor colour = m_emphasis == Emphasis::Faint ? faded(m_colour, kFaint) : m_colour;
    const qint64 columns = area.pixels.width();
    const bool isWide =
        m_emphasis == Emphasis::Strong && strokes.samples * qint64(kColumnsToWiden) <= columns;
    const bool isSmooth = painter->testRenderHint(QPainter::Antialiasing) &&
                          strokes.samples * qint64(kColumnsToSmooth) <= columns;

    for (const QRect &fill : strokes.fills) {
        painter->fillRect(fill, faded(colour, kFill));
    }
    QPen pen(colour, isWide ? 2 : 1);
    pen.setCosmetic(true);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    painter->setRenderHint(QPainter::Antialiasing, false);
    drawLines(*painter, strokes, colour, isWide);
    drawSlopes(*painter, strokes, isSmooth);
    painter->restore();
}

} // namespace cnet::view
