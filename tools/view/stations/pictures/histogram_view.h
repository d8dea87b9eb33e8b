#pragma once

#include "host/statistics/response_histogram.h"

#include <QVector>
#include <QWidget>

namespace cnet::view {

/** The ends of an axis of times, both powers of ten or 2 or 5 times one; milliseconds. */
struct TimeSpan
{
    double fromMs = 1;
    double toMs = 10;
};

/** The smallest such span that has all times of a histogram that has any. */
TimeSpan spanOf(const ResponseHistogram &times);

/**
 * The counts of a histogram in columns that are equally wide on a logarithmic axis. Each time is in
 * one of them.
 * @param columns 1 or more
 */
QVector<qint64> histogramColumns(const ResponseHistogram &times, const TimeSpan &span, int columns);

/** Its figures in one sentence, for those who cannot see the picture. */
QString histogramWords(const ResponseHistogram &times);

/** How long answers took: a picture of columns over a logarithmic axis of milliseconds. */
class HistogramView : public QWidget
{
    Q_OBJECT

public:
    explicit HistogramView(QWidget *parent = nullptr);

    void setTimes(const ResponseHistogram &times);
    const ResponseHistogram &times() const { return m_times; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void drawColumns(QPainter &painter, const QRectF &area, const TimeSpan &span);
    void drawAxis(QPainter &painter, const QRectF &area, const TimeSpan &span);
    void drawMark(QPainter &painter, const QRectF &area, const TimeSpan &span, double ms);

    ResponseHistogram m_times;
};

} // namespace cnet::view
