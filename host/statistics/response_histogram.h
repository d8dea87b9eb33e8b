#pragma once

#include <QVector>

namespace cnet {

/**
 * Response times, counted in buckets, so that hours of them take no more memory than a minute.
 *
 * Below 32 microseconds a bucket is one microsecond wide; above, each doubling of the time has 16
 * buckets of one width. A percentile is the middle of the bucket that the true one lies in: 1/32 of
 * it off at most, and never outside the least and the greatest time. Those two and the mean are
 * exact, to a microsecond. Times from 67 s on share the last bucket.
 */
class ResponseHistogram
{
public:
    /** Times of one bucket: from `fromMs` on, below `toMs`. */
    struct Bucket
    {
        double fromMs = 0;
        double toMs = 0;
        qint64 count = 0; ///< 1 or more
    };

    /** One time in milliseconds; a negative one counts as 0. */
    void note(double ms);

    /** Adds all the times of another one. */
    void add(const ResponseHistogram &other);

    qint64 count() const { return m_count; }
    // In milliseconds; 0 where there are none.
    double minMs() const;
    double meanMs() const;
    double maxMs() const;

    /**
     * The time that so many percent of all times do not exceed: of n times in order, the one at
     * n * percent / 100, rounded up.
     * @param percent above 0, to 100
     * @return milliseconds; 0 where there are none
     */
    double percentileMs(double percent) const;

    /** The buckets that hold something, shortest times first; 369 at most. */
    QVector<Bucket> buckets() const;

private:
    QVector<qint64> m_buckets; ///< up to the highest that was used
    qint64 m_count = 0;
    qint64 m_minUs = 0;
    qint64 m_maxUs = 0;
    double m_sumUs = 0;
};

} // namespace cnet
