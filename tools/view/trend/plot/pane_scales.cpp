#include "view/trend/plot/pane_scales.h"

#include <QFontMetrics>

#include <cmath>

namespace cnet::view {

namespace {

constexpr int kLongestName = 16;
constexpr double kNear = 0.25; ///< of a lane

} // namespace

TimeScaleDraw::TimeScaleDraw()
    : QwtDateScaleDraw(Qt::LocalTime)
{
    setDateFormat(QwtDate::Millisecond, QLatin1String("HH:mm:ss.zzz"));
    setDateFormat(QwtDate::Second, QLatin1String("HH:mm:ss"));
    setDateFormat(QwtDate::Minute, QLatin1String("HH:mm"));
    setDateFormat(QwtDate::Hour, QLatin1String("d MMM HH:mm"));
    setDateFormat(QwtDate::Day, QLatin1String("d MMM"));
    setDateFormat(QwtDate::Week, QLatin1String("d MMM"));
    setDateFormat(QwtDate::Month, QLatin1String("MMM yyyy"));
    setDateFormat(QwtDate::Year, QLatin1String("yyyy"));
}

int TimeScaleDraw::overhang(const QFontMetrics &metrics)
{
    return metrics.horizontalAdvance(QLatin1String("00:00:00.000")) / 2 + 2;
}

std::unique_ptr<QwtDateScaleEngine> makeTimeScaleEngine()
{
    return std::make_unique<QwtDateScaleEngine>(Qt::LocalTime);
}

QwtScaleDiv LaneScaleDraw::division(double top) const
{
    QList<double> places;
    for (const LaneName &name : m_names) {
        places.prepend(name.middle);
    }
    return QwtScaleDiv(0, top, {}, {}, places);
}

QwtText LaneScaleDraw::label(double value) const
{
    for (const LaneName &name : m_names) {
        if (std::fabs(name.middle - value) < kNear) {
            const QString &whole = name.name;
            return {whole.size() <= kLongestName ? whole
                                                 : QChar(0x2026) + whole.right(kLongestName - 1),
                    QwtText::PlainText};
        }
    }
    return {};
}

} // namespace cnet::view
