#include "view/trend/series/trace_series.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace cnet::view {

TraceSeries::TraceSeries(const TraceStore &store)
    : m_store(store)
{}

TraceSeries::Part TraceSeries::offered() const
{
    const int all = m_store.entries();
    if (!m_interest.isValid()) {
        return {0, all};
    }
    const int from = m_store.indexAt(scaleMs(std::floor(m_interest.left())));
    const int to = m_store.indexAt(scaleMs(std::ceil(m_interest.right())), from);
    return {std::max(from - 1, 0), std::min(to + 1, all)};
}

size_t TraceSeries::size() const
{
    const Part part = offered();
    return static_cast<size_t>(part.to - part.from);
}

QPointF TraceSeries::sample(size_t index) const
{
    const Part part = offered();
    const int place = index < static_cast<size_t>(part.to - part.from)
                          ? part.from + static_cast<int>(index)
                          : m_store.entries(); // a gap
    const TraceStore::Sample sample = m_store.sample(place);
    return {static_cast<double>(sample.atMs), sample.value};
}

QRectF TraceSeries::boundingRect() const
{
    const Part part = offered();
    const TraceStore::Span span = m_store.span(part.from, part.to);
    if (span.count == 0) {
        return {1, 1, -2, -2}; // as Qwt has none
    }
    const auto left = static_cast<double>(m_store.sample(part.from).atMs);
    const auto right = static_cast<double>(m_store.sample(part.to - 1).atMs);
    return {left, span.least, right - left, span.greatest - span.least};
}

void TraceSeries::setRectOfInterest(const QRectF &rect)
{
    m_interest = rect;
}

qint64 scaleMs(double x)
{
    constexpr double kEdge = 9223372036854775808.0; // just past the last that is possible
    if (std::isnan(x)) {
        return 0;
    }
    if (x >= kEdge) {
        return std::numeric_limits<qint64>::max();
    }
    return x < -kEdge ? std::numeric_limits<qint64>::min() : static_cast<qint64>(x);
}

} // namespace cnet::view
