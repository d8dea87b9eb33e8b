#include "view/trend/output/trend_picture.h"

#include <qwt_plot_renderer.h>

#include <QBuffer>
#include <QFontMetrics>
#include <QPainter>
#include <QSvgGenerator>

namespace cnet::view {

namespace {

/** A trace's name with a piece of its line. */
struct Entry
{
    QRect place;
    QString name;
    QColor colour;
};

/** In rows as wide as the plot. @param top of the first row */
std::vector<Entry> legend(const TrendPlot &plot, int top)
{
    const QFontMetrics metrics(plot.font());
    const int line = metrics.height();
    std::vector<Entry> entries;
    QPoint at(line, top);
    for (const Pane *pane : plot.shown()) {
        for (const PaneTrace &trace : pane->traces()) {
            const QString name = trace.unit.isEmpty()
                                     ? trace.name
                                     : QLatin1String("%1 (%2)").arg(trace.name, trace.unit);
            const int width = metrics.horizontalAdvance(name) + 3 * line;
            if (at.x() > line && at.x() + width > plot.width()) {
                at = {line, at.y() + line};
            }
            entries.push_back({{at, QSize(width, line)}, name, trace.colour});
            at.rx() += width;
        }
    }
    return entries;
}

int heightOf(const TrendPlot &plot, const std::vector<Entry> &entries)
{
    return entries.empty()
               ? plot.height()
               : entries.back().place.bottom() + 1 + QFontMetrics(plot.font()).height() / 2;
}

void paint(QPainter &painter, const TrendPlot &plot, const std::vector<Entry> &entries)
{
    painter.fillRect(QRect(0, 0, plot.width(), heightOf(plot, entries)),
                     plot.palette().color(QPalette::Window));
    QwtPlotRenderer renderer;
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardBackground);
    for (Pane *pane : plot.shown()) {
        const QRect place(pane->mapTo(&plot, QPoint(0, 0)), pane->size());
        renderer.render(pane, &painter, place);
    }
    painter.setFont(plot.font());
    for (const Entry &entry : entries) {
        const int line = entry.place.height();
        const QRect sample(entry.place.left(), entry.place.top() + line / 3, line, line / 3);
        painter.fillRect(sample, entry.colour);
        painter.setPen(plot.palette().color(QPalette::WindowText));
        painter.drawText(entry.place.adjusted(line + line / 2, 0, 0, 0),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, entry.name);
    }
}

} // namespace

QImage trendImage(const TrendPlot &plot)
{
    const auto entries = legend(plot, plot.height());
    const double ratio = plot.devicePixelRatioF();
    const QSize size(plot.width(), heightOf(plot, entries));
    QImage image(size * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    QPainter painter(&image);
    paint(painter, plot, entries);
    return image;
}

QByteArray trendSvg(const TrendPlot &plot, const QString &title)
{
    const auto entries = legend(plot, plot.height());
    const QSize size(plot.width(), heightOf(plot, entries));
    QByteArray text;
    QBuffer buffer(&text);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(0, 0), size));
    generator.setResolution(plot.logicalDpiX());
    generator.setTitle(title);
    QPainter painter(&generator);
    paint(painter, plot, entries);
    painter.end();
    return text;
}

} // namespace cnet::view
