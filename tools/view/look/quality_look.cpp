#include "view/look/quality_look.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPixmap>

namespace cnet::view {

namespace {

constexpr int kSide = 32; // of the picture; views scale it down

void drawTick(QPainter &painter)
{
    painter.drawPolyline(QPolygonF() << QPointF(6, 17) << QPointF(13, 24) << QPointF(26, 8));
}

void drawClock(QPainter &painter)
{
    painter.drawEllipse(QRectF(5, 5, 22, 22));
    painter.drawPolyline(QPolygonF() << QPointF(16, 10) << QPointF(16, 17) << QPointF(21, 17));
}

void drawTriangle(QPainter &painter)
{
    painter.drawPolygon(QPolygonF() << QPointF(16, 5) << QPointF(28, 27) << QPointF(4, 27));
    painter.drawLine(QPointF(16, 13), QPointF(16, 19));
    painter.drawPoint(QPointF(16, 23));
}

void drawCross(QPainter &painter)
{
    painter.drawLine(QPointF(7, 7), QPointF(25, 25));
    painter.drawLine(QPointF(25, 7), QPointF(7, 25));
}

void drawDots(QPainter &painter)
{
    for (const qreal x : {8.0, 16.0, 24.0}) {
        painter.drawPoint(QPointF(x, 16));
    }
}

QPixmap toneSign(Tone tone, const QColor &colour)
{
    QPixmap picture(kSide, kSide);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    switch (tone) {
    case Tone::Good:
        drawTick(painter);
        break;
    case Tone::Waiting:
        drawClock(painter);
        break;
    case Tone::Doubtful:
        drawTriangle(painter);
        break;
    case Tone::Bad:
        drawCross(painter);
        break;
    case Tone::Idle:
        drawDots(painter);
        break;
    }
    return picture;
}

} // namespace

Tone toneOf(Quality quality)
{
    switch (quality) {
    case Quality::NeverRead:
        return Tone::Idle;
    case Quality::Good:
        return Tone::Good;
    case Quality::Waiting:
        return Tone::Waiting;
    case Quality::Implausible:
    case Quality::Stale:
        return Tone::Doubtful;
    case Quality::Refused:
    case Quality::NoAnswer:
    case Quality::LineDown:
        break;
    }
    return Tone::Bad;
}

QIcon qualityIcon(Quality quality, const QPalette &palette)
{
    const Tone tone = toneOf(quality);
    QIcon icon(toneSign(tone, toneColour(tone, palette)));
    // In a row that is chosen its shape has to do: no colour is seen well on that ground.
    icon.addPixmap(toneSign(tone, palette.color(QPalette::HighlightedText)), QIcon::Selected);
    return icon;
}

QString qualityWords(Quality quality)
{
    switch (quality) {
    case Quality::NeverRead:
        return QCoreApplication::translate("Quality", "not read yet");
    case Quality::Good:
        return QCoreApplication::translate("Quality", "good");
    case Quality::Waiting:
        return QCoreApplication::translate("Quality", "waiting for the PLC");
    case Quality::Implausible:
        return QCoreApplication::translate("Quality", "implausible");
    case Quality::Stale:
        return QCoreApplication::translate("Quality", "stale");
    case Quality::Refused:
        return QCoreApplication::translate("Quality", "refused");
    case Quality::NoAnswer:
        return QCoreApplication::translate("Quality", "no answer");
    case Quality::LineDown:
        break;
    }
    return QCoreApplication::translate("Quality", "line down");
}

} // namespace cnet::view
