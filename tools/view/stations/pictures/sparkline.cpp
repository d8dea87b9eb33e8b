#include "view/stations/pictures/sparkline.h"

#include "view/look/colours.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace cnet::view {

namespace {

/** One stretch without a gap. */
void drawStretch(QPainter &painter, const QPolygonF &line, double bottom, const QPalette &palette)
{
    if (line.isEmpty()) {
        return;
    }
    QPolygonF area = line;
    area << QPointF(line.last().x(), bottom) << QPointF(line.first().x(), bottom);
    painter.setPen(Qt::NoPen);
    painter.setBrush(washColour(Tone::Waiting, palette));
    painter.drawPolygon(area);
    painter.setPen(toneColour(Tone::Waiting, palette));
    if (line.size() == 1) {
        painter.drawPoint(line.first());
    } else {
        painter.drawPolyline(line);
    }
}

} // namespace

Sparkline::Sparkline(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void Sparkline::add(double value)
{
    m_values.append(value);
    if (m_values.size() > kMost) {
        m_values.remove(0, m_values.size() - kMost);
    }
    update();
}

void Sparkline::clear()
{
    m_values.clear();
    update();
}

void Sparkline::setTop(double top)
{
    m_top = top;
    update();
}

QSize Sparkline::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 40, fontMetrics().height() * 2};
}

QSize Sparkline::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 12, fontMetrics().height()};
}

void Sparkline::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    double top = m_top;
    for (const double value : m_values) {
        top = std::isnan(value) ? top : std::max(top, value);
    }
    // The newest one is at the right edge, and each keeps its distance from it.
    const double step = static_cast<double>(width() - 1) / (kMost - 1);
    const double bottom = height() - 1;
    QPolygonF line;
    for (int i = 0; i < m_values.size(); ++i) {
        const double value = m_values.at(i);
        if (std::isnan(value)) {
            drawStretch(painter, line, bottom, palette());
            line.clear();
            continue;
        }
        const double x = width() - 1 - step * static_cast<double>(m_values.size() - 1 - i);
        line << QPointF(x, bottom - (bottom - 1) * value / top);
    }
    drawStretch(painter, line, bottom, palette());
}

} // namespace cnet::view
