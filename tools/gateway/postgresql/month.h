#pragma once

#include <QByteArray>

namespace cnet::gateway {

/** A month of the calendar in UTC. */
struct Month
{
    int year = 1970;
    int number = 1; ///< 1 to 12

    Month next() const { return number < 12 ? Month{year, number + 1} : Month{year + 1, 1}; }

    /** "2026-11-01 00:00:00+00": its first moment. */
    QByteArray start() const;
    /** "2026_11" */
    QByteArray name() const;

    bool operator<(const Month &other) const
    {
        return year != other.year ? year < other.year : number < other.number;
    }
    bool operator==(const Month &other) const
    {
        return year == other.year && number == other.number;
    }
};

/** @param ms since 1970 in UTC; what lies beyond the years 1970 to 9999 is moved to their edge */
Month monthOf(qint64 ms);

/** What a database and monthOf() take: from 1970 to the end of 9999. */
qint64 storableTime(qint64 ms);

} // namespace cnet::gateway
