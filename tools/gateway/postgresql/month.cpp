#include "gateway/postgresql/month.h"

#include <QDateTime>

namespace cnet::gateway {

namespace {

constexpr qint64 kLastMs = 253402300799999; // 9999-12-31T23:59:59.999Z

QByteArray padded(int number, int digits)
{
    return QByteArray::number(number).rightJustified(digits, '0');
}

} // namespace

QByteArray Month::start() const
{
    return padded(year, 4) + '-' + padded(number, 2) + "-01 00:00:00+00";
}

QByteArray Month::name() const
{
    return padded(year, 4) + '_' + padded(number, 2);
}

qint64 storableTime(qint64 ms)
{
    return qBound<qint64>(0, ms, kLastMs);
}

Month monthOf(qint64 ms)
{
    const QDate day = QDateTime::fromMSecsSinceEpoch(storableTime(ms), Qt::UTC).date();
    return {day.year(), day.month()};
}

} // namespace cnet::gateway
