#include "view/trend/plot/marks_item.h"

#include "view/look/colours.h"

#include <qwt_plot.h>
#include <qwt_scale_map.h>

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace cnet::view {

namespace {

constexpr int kLongestLabel = 24;

/** A line from top to bottom with a word at its top, kept within the canvas. */
struct Flag
{
    double x = 0;
    QString word;
    QColor colour;
    QColor ground; ///< of the word
    Qt::PenStyle line = Qt::SolidLine;
    int width = 1;
    double down = 0; ///< of the word, in lines
};

void drawFlag(QPainter *painter, const QRectF &canvasRect, const Flag &flag)
{
    painter->setPen(QPen(flag.colour, flag.width, flag.line));
    const double x = std::round(flag.x); // where traces have their columns
    painter->drawLine(QPointF(x, canvasRect.top()), QPointF(x, canvasRect.bottom()));
    if (flag.word.isEmpty()) {
        return;
    }
    const QFontMetricsF metrics(painter->font());
    const double pad = metrics.averageCharWidth() / 2;
    QRectF box(flag.x, canvasRect.top() + flag.down * metrics.height(),
               metrics.horizontalAdvance(flag.word) + 2 * pad, metrics.height());
    if (box.right() > canvasRect.right()) {
        box.moveRight(flag.x);
    }
    painter->fillRect(box, flag.colour);
    painter->setPen(flag.ground);
    painter->drawText(box, Qt::AlignCenter | Qt::TextSingleLine, flag.word);
}

bool isSeen(double x, const QRectF &canvasRect)
{
    return x >= canvasRect.left() - 1 && x <= canvasRect.right() + 1;
}

} // namespace

MarksItem::MarksItem(const Cursors &cursors, const Markers &markers)
    : m_cursors(cursors)
    , m_markers(markers)
{
    setItemAttribute(QwtPlotItem::AutoScale, false);
    setItemAttribute(QwtPlotItem::Legend, false);
    setZ(kTracesDepth + kMarksDepth);
}

void MarksItem::draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap & /*yMap*/,
                     const QRectF &canvasRect) const
{
    const QPalette palette = plot()->palette();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setFont(plot()->font());
    for (const Marker &marker : m_markers.all()) {
        const double x = xMap.transform(static_cast<double>(marker.atMs));
        if (isSeen(x, canvasRect)) {
            const QString &note = marker.note;
            const QString word =
                note.size() <= kLongestLabel ? note : note.left(kLongestLabel - 1) + QChar(0x2026);
            drawFlag(painter, canvasRect,
                     {x, word, toneColour(Tone::Doubtful, palette), palette.color(QPalette::Base),
                      Qt::DashLine, 1, 1.2});
        }
    }
    drawCursor(painter, xMap, canvasRect, Cursor::A);
    drawCursor(painter, xMap, canvasRect, Cursor::B);
    painter->restore();
}

void MarksItem::drawCursor(QPainter *painter, const QwtScaleMap &xMap, const QRectF &canvasRect,
                           Cursor cursor) const
{
    const auto at = m_cursors.at(cursor);
    if (!at) {
        return;
    }
    const double x = xMap.transform(*at);
    if (!isSeen(x, canvasRect)) {
        return;
    }
    const QPalette palette = plot()->palette();
    const bool isActive = m_cursors.active() == cursor;
    drawFlag(painter, canvasRect,
             {x, cursor == Cursor::A ? QLatin1String("A") : QLatin1String("B"),
              palette.color(QPalette::Text), palette.color(QPalette::Base), Qt::SolidLine,
              isActive ? 2 : 1, 0});
}

} // namespace cnet::view
