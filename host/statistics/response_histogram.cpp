#include "host/statistics/response_histogram.h"

#include <algorithm>
#include <cmath>

namespace cnet {

namespace {

const double kUsPerMs = 1000;
const int kStepBits = 4;
const int kSteps = 1 << kStepBits; // buckets of each doubling
const int kRangeBits = 26;         // 67 s
const qint64 kBeyondUs = Q_INT64_C(1) << kRangeBits;
const int kLastBucket = (kRangeBits - kStepBits + 1) * kSteps;

// How often a time is halved until it counts steps.
int halvings(qint64 us)
{
    int bits = 0;
    while ((us >> bits) >= 2 * kSteps) {
        ++bits;
    }
    return bits;
}

int bucketOf(qint64 us)
{
    if (us >= kBeyondUs) {
        return kLastBucket;
    }
    const int bits = halvings(us);
    return bits * kSteps + static_cast<int>(us >> bits);
}

// The first 2 * kSteps buckets are one microsecond wide.
qint64 beginUs(int bucket)
{
    const int bits = std::max(0, bucket / kSteps - 1);
    return static_cast<qint64>(bucket - bits * kSteps) << bits;
}

} // namespace

void ResponseHistogram::note(double ms)
{
    const qint64 us = std::max<qint64>(0, std::llround(ms * kUsPerMs));
    const int bucket = bucketOf(us);
    if (bucket >= m_buckets.size()) {
        m_buckets.resize(bucket + 1);
    }
    ++m_buckets[bucket];
    m_minUs = m_count == 0 ? us : std::min(m_minUs, us);
    m_maxUs = std::max(m_maxUs, us);
    m_sumUs += static_cast<double>(us);
    ++m_count;
}

void ResponseHistogram::add(const ResponseHistogram &other)
{
    if (other.m_count == 0) {
        return;
    }
    m_buckets.resize(std::max(m_buckets.size(), other.m_buckets.size()));
    for (int i = 0; i < other.m_buckets.size(); ++i) {
        m_buckets[i] += other.m_buckets.at(i);
    }
    m_minUs = m_count == 0 ? other.m_minUs : std::min(m_minUs, other.m_minUs);
    m_maxUs = std::max(m_maxUs, other.m_maxUs);
    m_sumUs += other.m_sumUs;
    m_count += other.m_count;
}

double ResponseHistogram::minMs() const
{
    return static_cast<double>(m_minUs) / kUsPerMs;
}

double ResponseHistogram::meanMs() const
{
    return m_count == 0 ? 0 : m_sumUs / static_cast<double>(m_count) / kUsPerMs;
}

double ResponseHistogram::maxMs() const
{
    return static_cast<double>(m_maxUs) / kUsPerMs;
}

double ResponseHistogram::percentileMs(double percent) const
{
    const auto rank = static_cast<qint64>(std::ceil(static_cast<double>(m_count) * percent / 100));
    qint64 passed = 0;
    for (int i = 0; i < m_buckets.size(); ++i) {
        passed += m_buckets.at(i);
        if (passed >= std::max<qint64>(1, rank)) {
            // The last bucket has no end; nothing in it is known but the greatest time.
            const double middleUs = i == kLastBucket
                                        ? static_cast<double>(m_maxUs)
                                        : static_cast<double>(beginUs(i) + beginUs(i + 1) - 1) / 2;
            return std::clamp(middleUs, static_cast<double>(m_minUs),
                              static_cast<double>(m_maxUs)) /
                   kUsPerMs;
        }
    }
    return 0;
}

QVector<ResponseHistogram::Bucket> ResponseHistogram::buckets() const
{
    QVector<Bucket> used;
    for (int i = 0; i < m_buckets.size(); ++i) {
        if (m_buckets.at(i) > 0) {
            const qint64 endUs = i == kLastBucket ? m_maxUs + 1 : beginUs(i + 1);
            used.append({static_cast<double>(beginUs(i)) / kUsPerMs,
                         static_cast<double>(endUs) / kUsPerMs, m_buckets.at(i)});
        }
    }
    return used;
}

} // namespace cnet
