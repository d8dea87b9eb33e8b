#include "view/trend/series/trace_raster.h"

#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cstring>
#include <utility>

namespace cnet::view {

namespace {

constexpr double kFill = 0.25;
constexpr int kTile = 8; // pixels that are turned from columns into rows at once
constexpr size_t kMostColours = 256;

int wholeTiles(int pixels)
{
    return (pixels + kTile - 1) / kTile * kTile;
}

/** A pixel more to the right or below, whichever is across the line. */
QRect widened(const QLine &line)
{
    const QRect rect(line.p1(), line.p2());
    return line.x1() == line.x2() ? rect.adjusted(0, 0, 1, 0) : rect.adjusted(0, 0, 0, 1);
}

void preparePen(QPainter &painter, const TracePen &pen)
{
    QPen made(pen.colour, pen.width == TracePen::Width::Two ? 2 : 1);
    made.setCosmetic(true);
    painter.setPen(made);
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void paintSlopes(QPainter &painter, const std::vector<QLineF> &slopes, const TracePen &pen)
{
    if (slopes.empty()) {
        return;
    }
    painter.save();
    preparePen(painter, pen);
    if (pen.edges == TracePen::Edges::Smooth) {
        painter.setRenderHint(QPainter::Antialiasing, true);
        painter.translate(0.5, 0.5); // where the middle of a pixel is, then
    }
    painter.drawLines(slopes.data(), static_cast<int>(slopes.size()));
    painter.restore();
}

} // namespace

QColor TracePen::fillColour() const
{
    QColor fill = colour;
    fill.setAlpha(qRound(colour.alpha() * kFill));
    return fill;
}

void paintStrokes(QPainter &painter, const TraceStrokes &strokes, const TracePen &pen)
{
    painter.save();
    for (const QRect &fill : strokes.fills) {
        painter.fillRect(fill, pen.fillColour());
    }
    if (pen.width == TracePen::Width::Two) {
        for (const QLine &line : strokes.lines) {
            painter.fillRect(widened(line), pen.colour);
        }
    } else {
        preparePen(painter, pen);
        painter.drawLines(strokes.lines.data(), static_cast<int>(strokes.lines.size()));
    }
    painter.restore();
    paintSlopes(painter, strokes.slopes, pen);
}

void TraceRaster::begin(const void *owner, const QRect &pixels)
{
    m_owner = owner;
    m_pixels = pixels;
    m_columnBytes = wholeTiles(pixels.height()) + kTile; // not a power of two, for the cache
    const size_t bytes =
        static_cast<size_t>(wholeTiles(pixels.width())) * static_cast<size_t>(m_columnBytes);
    m_bytes.assign(bytes, 0);
    m_colours.assign(1, 0);
    m_slopes.clear();
}

bool TraceRaster::isBegun(const void *owner, const QRect &pixels) const
{
    return m_owner != nullptr && m_owner == owner && m_pixels == pixels;
}

bool TraceRaster::add(const TraceStrokes &strokes, const TracePen &pen)
{
    if (m_colours.size() + 2 > kMostColours) {
        return false;
    }
    const auto colour = static_cast<uchar>(m_colours.size());
    m_colours.push_back(qPremultiply(pen.colour.rgba()));
    if (!strokes.fills.empty()) {
        const auto fillColour = static_cast<uchar>(m_colours.size());
        m_colours.push_back(qPremultiply(pen.fillColour().rgba()));
        for (const QRect &fill : strokes.fills) {
            fillBelow(fill & m_pixels, fillColour);
        }
    }
    for (const QLine &line : strokes.lines) {
        const bool isWide = pen.width == TracePen::Width::Two;
        fillRect((isWide ? widened(line) : QRect(line.p1(), line.p2())) & m_pixels, colour);
    }
    if (!strokes.slopes.empty()) {
        m_slopes.push_back({strokes.slopes, pen});
    }
    return true;
}

void TraceRaster::paint(QPainter &painter)
{
    toImage();
    painter.drawImage(m_pixels.topLeft(), m_image, QRect(QPoint(0, 0), m_pixels.size()));
    for (const Slopes &slopes : m_slopes) {
        paintSlopes(painter, slopes.lines, slopes.pen);
    }
    m_slopes.clear();
    m_owner = nullptr;
}

uchar *TraceRaster::columnAt(int x)
{
    return m_bytes.data() +
           static_cast<size_t>(x - m_pixels.left()) * static_cast<size_t>(m_columnBytes);
}

void TraceRaster::fillRect(const QRect &rect, uchar colour)
{
    if (rect.isEmpty()) {
        return;
    }
    uchar *bytes = columnAt(rect.left()) + (rect.top() - m_pixels.top());
    const auto height = static_cast<size_t>(rect.height());
    for (int x = rect.left(); x <= rect.right(); ++x) {
        std::memset(bytes, colour, height);
        bytes += m_columnBytes;
    }
}

void TraceRaster::fillBelow(const QRect &rect, uchar colour)
{
    for (int x = rect.left(); x <= rect.right(); ++x) {
        uchar *bytes = columnAt(x) + (rect.top() - m_pixels.top());
        std::replace(bytes, bytes + rect.height(), uchar(0), colour);
    }
}

void TraceRaster::toImage()
{
    const QSize size(wholeTiles(m_pixels.width()), wholeTiles(m_pixels.height()));
    if (m_image.size() != size) {
        m_image = QImage(size, QImage::Format_ARGB32_Premultiplied);
    }
    m_colours.resize(kMostColours, 0); // so that none is looked up outside
    const QRgb *colours = m_colours.data();
    const auto lineBytes = static_cast<size_t>(m_image.bytesPerLine());
    uchar *bits = m_image.bits();
    for (int top = 0; top < size.height(); top += kTile) {
        for (int left = 0; left < size.width(); left += kTile) {
            const uchar *column = m_bytes.data() +
                                  static_cast<size_t>(left) * static_cast<size_t>(m_columnBytes) +
                                  top;
            uchar tile[kTile][kTile];
            for (auto &pixels : tile) {
                std::memcpy(pixels, column, kTile);
                column += m_columnBytes;
            }
            uchar *line = bits + static_cast<size_t>(top) * lineBytes +
                          static_cast<size_t>(left) * sizeof(QRgb);
            for (int y = 0; y < kTile; ++y) {
                QRgb row[kTile];
                for (int x = 0; x < kTile; ++x) {
                    row[x] = colours[tile[x][y]];
                }
                std::memcpy(line, row, sizeof(row));
                line += lineBytes;
            }
        }
    }
}

} // namespace cnet::view
