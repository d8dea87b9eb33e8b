#include "view/stations/pictures/histogram_view.h"

#include "view/look/colours.h"

#include <QCoreApplication>
#include <QFontMetrics>
#include <QLocale>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace cnet::view {

namespace {

constexpr double kLeastMs = 0.001;
constexpr double kBucketsOfDoubling = 16; // narrower columns would be empty in turn
constexpr int kMostColumns = 120;
// The greatest time comes as a number of its own; a step above an end is due to rounding only.
constexpr double kNearlyOne = 1 - 1e-9;

/** 1, 2 or 5 times a power of ten: the greatest that is not above, or the next one. */
double niceBelow(double ms)
{
    const double power = std::pow(10, std::floor(std::log10(ms)));
    const double digits = ms / power;
    return (digits >= 5 ? 5 : digits >= 2 ? 2 : 1) * power;
}

double niceAbove(double ms)
{
    const double below = niceBelow(ms);
    const double digits = below / std::pow(10, std::floor(std::log10(below) + 1e-9));
    return below * (digits > 1.5 && digits < 3 ? 2.5 : 2);
}

/** Where a time is: 0 at the left end, 1 at the right one. */
double shareOf(double ms, const TimeSpan &span)
{
    return std::log(std::max(ms, kLeastMs) / span.fromMs) / std::log(span.toMs / span.fromMs);
}

} // namespace

TimeSpan spanOf(const ResponseHistogram &times)
{
    return {niceBelow(std::max(times.minMs(), kLeastMs)),
            niceAbove(std::max(times.maxMs(), kLeastMs))};
}

QVector<qint64> histogramColumns(const ResponseHistogram &times, const TimeSpan &span, int columns)
{
    QVector<qint64> counts(std::max(columns, 1));
    const auto buckets = times.buckets();
    for (const ResponseHistogram::Bucket &bucket : buckets) {
        // The outer buckets reach beyond the least and the greatest time.
        const double middle =
            std::clamp((bucket.fromMs + bucket.toMs) / 2, std::max(times.minMs(), kLeastMs),
                       std::max(times.maxMs(), kLeastMs));
        const double share = std::clamp(shareOf(middle, span), 0.0, kNearlyOne);
        counts[static_cast<int>(share * static_cast<double>(counts.size()))] += bucket.count;
    }
    return counts;
}

QString histogramWords(const ResponseHistogram &times)
{
    if (times.count() == 0) {
        return QCoreApplication::translate("HistogramView", "No answers yet.");
    }
    const QLocale locale;
    const auto ms = [&locale](double value) { return locale.toString(value, 'f', 1); };
    return QCoreApplication::translate("HistogramView",
                                       "%1 answers: shortest %2 ms, median %3 ms, 95 % within %4 "
                                       "ms, longest %5 ms.")
        .arg(locale.toString(times.count()), ms(times.minMs()), ms(times.percentileMs(50)),
             ms(times.percentileMs(95)), ms(times.maxMs()));
}

HistogramView::HistogramView(QWidget *parent)
    : QWidget(parent)
{
    setAccessibleName(tr("Response times"));
    setAccessibleDescription(histogramWords(m_times));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void HistogramView::setTimes(const ResponseHistogram &times)
{
    m_times = times;
    const QString words = histogramWords(m_times);
    setAccessibleDescription(words);
    setToolTip(words);
    update();
}

QSize HistogramView::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.averageCharWidth() * 50, metrics.height() * 9};
}

QSize HistogramView::minimumSizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.averageCharWidth() * 24, metrics.height() * 5};
}

void HistogramView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    painter.setPen(palette().color(QPalette::Text));
    if (m_times.count() == 0) {
        painter.drawText(rect(), static_cast<int>(Qt::AlignCenter), histogramWords(m_times));
        return;
    }
    const double line = fontMetrics().height();
    const QRectF area = QRectF(rect()).adjusted(line * 2, line / 2, -line * 2, -(line * 1.5));
    if (area.width() < line || area.height() < line) {
        return;
    }
    const TimeSpan span = spanOf(m_times);
    drawColumns(painter, area, span);
    drawMark(painter, area, span, m_times.percentileMs(50));
    drawMark(painter, area, span, m_times.percentileMs(95));
    drawAxis(painter, area, span);
}

void HistogramView::drawColumns(QPainter &painter, const QRectF &area, const TimeSpan &span)
{
    const int finest = static_cast<int>(std::log2(span.toMs / span.fromMs) * kBucketsOfDoubling);
    const int fitting = static_cast<int>(area.width() / fontMetrics().averageCharWidth());
    const int columns = std::clamp(std::min(finest, fitting), 4, kMostColumns);
    const auto counts = histogramColumns(m_times, span, columns);
    const auto most = static_cast<double>(*std::max_element(counts.begin(), counts.end()));
    const double width = area.width() / columns;
    const QColor colour = traceColour(0, palette());
    for (int i = 0; i < columns; ++i) {
        if (counts.at(i) > 0) {
            // A single slow answer among thousands is what one looks for.
            const double height =
                std::max(area.height() * static_cast<double>(counts.at(i)) / most, 2.0);
            painter.fillRect(QRectF(area.left() + i * width, area.bottom() - height,
                                    std::max(width - 1, 1.0), height),
                             colour);
        }
    }
}

void HistogramView::drawMark(QPainter &painter, const QRectF &area, const TimeSpan &span, double ms)
{
    const double x = area.left() + area.width() * std::clamp(shareOf(ms, span), 0.0, 1.0);
    painter.setPen(QPen(palette().color(QPalette::Text), 1, Qt::DashLine));
    painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
}

void HistogramView::drawAxis(QPainter &painter, const QRectF &area, const TimeSpan &span)
{
    painter.setPen(palette().color(QPalette::Text));
    painter.drawLine(area.bottomLeft(), area.bottomRight());
    const QFontMetrics metrics = fontMetrics();
    const double tick = metrics.height() / 4.0;
    double freeFrom = 0;
    double ms = span.fromMs;
    while (ms <= span.toMs * 1.01) {
        const double x = area.left() + area.width() * shareOf(ms, span);
        painter.drawLine(QPointF(x, area.bottom()), QPointF(x, area.bottom() + tick));
        const QString text = tr("%1 ms").arg(QLocale().toString(ms, 'g', 3));
        const double width = metrics.horizontalAdvance(text);
        if (x - width / 2 >= freeFrom && x + width / 2 <= rect().right()) {
            painter.drawText(QPointF(x - width / 2, area.bottom() + tick + metrics.ascent()), text);
            freeFrom = x + width / 2 + metrics.averageCharWidth();
        }
        ms = niceAbove(ms * 1.01);
    }
}

} // namespace cnet::view
