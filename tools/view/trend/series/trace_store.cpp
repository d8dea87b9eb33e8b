#include "view/trend/series/trace_store.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace cnet::view {

namespace {

constexpr int kNodeBits = 4; // of one level to the next
constexpr int kNodeEntries = 1 << kNodeBits;
constexpr int kLeastMost = 256;
constexpr int kGreatestMost =
    1 << 29; // entries are counted in an int, and each sample may have a gap
constexpr int kGreatestChunkBits = 12;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kGap = std::numeric_limits<double>::quiet_NaN();

/** What differs between two times, which may be further apart than a qint64 can tell. */
quint64 distance(qint64 from, qint64 to)
{
    return static_cast<quint64>(to) - static_cast<quint64>(from);
}

/** The least and the greatest of a few values; those that are not numbers are none. Two of each, as
 * one would wait for itself. */
struct Extremes
{
    double least = kInfinity;
    double greatest = -kInfinity;

    void add(const double *values, int count)
    {
        double otherLeast = least;
        double otherGreatest = greatest;
        int i = 0;
        for (; i + 1 < count; i += 2) {
            least = values[i] < least ? values[i] : least;
            greatest = values[i] > greatest ? values[i] : greatest;
            otherLeast = values[i + 1] < otherLeast ? values[i + 1] : otherLeast;
            otherGreatest = values[i + 1] > otherGreatest ? values[i + 1] : otherGreatest;
        }
        if (i < count) {
            least = values[i] < least ? values[i] : least;
            greatest = values[i] > greatest ? values[i] : greatest;
        }
        least = std::min(least, otherLeast);
        greatest = std::max(greatest, otherGreatest);
    }
};

int countSamples(const double *values, int count)
{
    int samples = 0;
    for (int i = 0; i < count; ++i) {
        samples += std::isnan(values[i]) ? 0 : 1;
    }
    return samples;
}

/** Of no more than a node's entries; their sum may be more than a double holds. */
double meanOf(const double *values, int count, int samples)
{
    double sum = 0;
    for (int i = 0; i < count; ++i) {
        sum += std::isnan(values[i]) ? 0 : values[i] / kNodeEntries;
    }
    return samples == 0 ? 0 : sum / samples * kNodeEntries;
}

/** The mean of two parts; as above. */
double joinedMean(double mean, int count, double otherMean, int otherCount)
{
    if (count == 0 || otherCount == 0) {
        return count == 0 ? otherMean : mean;
    }
    const double share = static_cast<double>(count) / (static_cast<double>(count) + otherCount);
    return mean * share + otherMean * (1 - share);
}

} // namespace

TraceStore::TraceStore(int most)
    : m_most(qBound(kLeastMost, most, kGreatestMost))
    , m_chunkBits(kNodeBits)
{
    while (m_chunkBits < kGreatestChunkBits && (32 << m_chunkBits) <= m_most) {
        ++m_chunkBits;
    }
}

void TraceStore::append(qint64 atMs, double value)
{
    if (!std::isfinite(value)) {
        appendGap(atMs);
        return;
    }
    add(atMs, value);
    ++m_samples;
    ++m_chunks.back().samples;
    while (m_samples > m_most && m_chunks.size() > 1) {
        dropOldest();
    }
}

void TraceStore::appendGap(qint64 atMs)
{
    if (isKnown()) {
        add(atMs, kGap);
    }
}

bool TraceStore::isKnown() const
{
    return m_end > m_begin && !std::isnan(m_chunks.back().values.back());
}

void TraceStore::add(qint64 atMs, double value)
{
    const qint64 at = m_end > m_begin ? std::max(atMs, lastMs()) : atMs;
    if ((m_end & ((qint64(1) << m_chunkBits) - 1)) == 0) {
        m_chunks.emplace_back();
        m_chunks.back().baseMs = at;
    }
    Chunk &chunk = m_chunks.back();
    const quint64 offset = distance(chunk.baseMs, at);
    if (chunk.times.empty() && offset <= std::numeric_limits<quint32>::max()) {
        chunk.offsets.push_back(static_cast<quint32>(offset));
    } else {
        for (const quint32 earlier : chunk.offsets) {
            chunk.times.push_back(chunk.baseMs + earlier);
        }
        chunk.offsets = std::vector<quint32>();
        chunk.times.push_back(at);
    }
    chunk.values.push_back(value);
    ++m_end;
    addNodes();
}

void TraceStore::addNodes()
{
    qint64 entries = kNodeEntries;
    for (size_t i = 0; (m_end & (entries - 1)) == 0; ++i) {
        if (i == m_levels.size()) {
            m_levels.emplace_back();
        }
        Level &level = m_levels[i];
        const qint64 begin = m_end - entries;
        if (begin < m_begin) { // its begin has gone, and with it all nodes before
            level.begin = m_end / entries;
        } else {
            level.nodes.push_back(nodeOf(begin, static_cast<int>(entries)));
        }
        if (entries > m_most) {
            break;
        }
        entries <<= kNodeBits;
    }
}

TraceStore::Node TraceStore::nodeOf(qint64 begin, int entries) const
{
    Node sum;
    Extremes extremes;
    qint64 at = begin;
    const qint64 end = begin + entries;
    while (at < end) {
        int part = 0;
        const Node *node = nodeAt(at, end, part);
        if (node != nullptr) {
            extremes.least = std::min(extremes.least, node->least);
            extremes.greatest = std::max(extremes.greatest, node->greatest);
            sum.mean = joinedMean(sum.mean, sum.count, node->mean, node->count);
            sum.count += node->count;
        } else {
            const double *values = valuesAt(at);
            extremes.add(values, part);
            const int samples = countSamples(values, part);
            const double mean = meanOf(values, part, samples);
            sum.mean = joinedMean(sum.mean, sum.count, mean, samples);
            sum.count += samples;
        }
        at += part;
    }
    // However it was rounded, the mean of equal values is that value.
    sum.least = extremes.least;
    sum.greatest = extremes.greatest;
    sum.mean = std::max(sum.least, std::min(sum.mean, sum.greatest));
    return sum;
}

/** The largest node that begins there and ends before an end; null: there is none, and `entries` is
 * how many there are to look at one by one. */
const TraceStore::Node *TraceStore::nodeAt(qint64 at, qint64 end, int &entries) const
{
    const Node *found = nullptr;
    qint64 length = kNodeEntries;
    for (const Level &level : m_levels) {
        if ((at & (length - 1)) != 0 || at + length > end) {
            break;
        }
        const qint64 number = at / length - level.begin;
        if (number < 0 || number >= static_cast<qint64>(level.nodes.size())) {
            break;
        }
        found = &level.nodes[static_cast<size_t>(number)];
        entries = static_cast<int>(length);
        length <<= kNodeBits;
    }
    if (found == nullptr) {
        const qint64 next = (at | (kNodeEntries - 1)) + 1;
        entries = static_cast<int>(std::min(next, end) - at);
    }
    return found;
}

void TraceStore::dropOldest()
{
    m_samples -= m_chunks.front().samples;
    m_begin += static_cast<qint64>(m_chunks.front().values.size());
    m_chunks.pop_front();
    qint64 length = kNodeEntries;
    for (Level &level : m_levels) {
        while (!level.nodes.empty() && level.begin * length < m_begin) {
            level.nodes.pop_front();
            ++level.begin;
        }
        length <<= kNodeBits;
    }
}

const double *TraceStore::valuesAt(qint64 at) const
{
    const auto chunk = static_cast<size_t>((at - m_begin) >> m_chunkBits);
    const auto place = static_cast<size_t>(at & ((qint64(1) << m_chunkBits) - 1));
    return m_chunks[chunk].values.data() + place;
}

qint64 TraceStore::timeAt(int index) const
{
    // Only whole chunks go, so that the oldest entry is the first of its chunk.
    const Chunk &chunk = m_chunks[static_cast<size_t>(index >> m_chunkBits)];
    const auto place = static_cast<size_t>(index & ((1 << m_chunkBits) - 1));
    return chunk.times.empty() ? chunk.baseMs + chunk.offsets[place] : chunk.times[place];
}

bool TraceStore::isGapAt(int index) const
{
    return std::isnan(*valuesAt(m_begin + index));
}

qint64 TraceStore::firstMs() const
{
    return m_end > m_begin ? timeAt(0) : 0;
}

qint64 TraceStore::lastMs() const
{
    return m_end > m_begin ? timeAt(entries() - 1) : 0;
}

TraceStore::Sample TraceStore::sample(int index) const
{
    if (index < 0 || index >= entries()) {
        return {0, kGap, true};
    }
    const double value = *valuesAt(m_begin + index);
    return {timeAt(index), value, std::isnan(value)};
}

int TraceStore::indexAt(qint64 atMs) const
{
    return indexAt(atMs, entries() / 2);
}

int TraceStore::indexAt(qint64 atMs, int expected) const
{
    int low = 0;          // all before are before the time
    int high = entries(); // all from here on are not
    qint64 step = 1;
    int probe = qBound(0, expected, std::max(0, high - 1));
    // Away from what is expected by steps that double, until the entry is between two of them.
    while (low < high && probe >= low && probe < high) {
        if (timeAt(probe) < atMs) {
            low = probe + 1;
            if (step < 0) {
                break;
            }
            probe = static_cast<int>(std::min<qint64>(probe + step, high));
            step *= 2;
        } else {
            high = probe;
            if (step > 1) {
                break;
            }
            step = step > 0 ? -1 : step * 2;
            probe = static_cast<int>(std::max<qint64>(probe + step, low - 1));
        }
    }
    while (low < high) {
        const int middle = low + (high - low) / 2;
        if (timeAt(middle) < atMs) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

TraceStore::Span TraceStore::span(int from, int to) const
{
    const int begin = std::max(from, 0);
    const int end = std::min(to, entries());
    Span span;
    if (begin >= end) {
        return span;
    }
    Extremes extremes;
    qint64 at = m_begin + begin;
    while (at < m_begin + end) {
        int part = 0;
        const Node *node = nodeAt(at, m_begin + end, part);
        if (node != nullptr) {
            extremes.least = std::min(extremes.least, node->least);
            extremes.greatest = std::max(extremes.greatest, node->greatest);
            span.count += node->count;
        } else {
            const double *values = valuesAt(at);
            extremes.add(values, part);
            span.count += countSamples(values, part);
        }
        at += part;
    }
    span.hasGap = span.count < end - begin;
    if (span.count > 0) {
        // No two gaps are side by side: the next entry is a sample where one is a gap.
        span.first = sample(isGapAt(begin) ? begin + 1 : begin).value;
        span.last = sample(isGapAt(end - 1) ? end - 2 : end - 1).value;
        span.least = extremes.least;
        span.greatest = extremes.greatest;
    }
    return span;
}

TraceStore::Summary TraceStore::summary(qint64 fromMs, qint64 toMs) const
{
    const int from = indexAt(fromMs);
    const int to = toMs == std::numeric_limits<qint64>::max() ? entries() : indexAt(toMs + 1);
    if (from >= to) {
        return {};
    }
    const Node all = nodeOf(m_begin + from, to - from);
    if (all.count == 0) {
        return {};
    }
    return {all.least, all.greatest, all.mean, all.count};
}

qint64 TraceStore::bytes() const
{
    size_t bytes = sizeof(*this);
    for (const Chunk &chunk : m_chunks) {
        bytes += sizeof(chunk) + chunk.offsets.capacity() * sizeof(quint32) +
                 chunk.times.capacity() * sizeof(qint64) + chunk.values.capacity() * sizeof(double);
    }
    for (const Level &level : m_levels) {
        bytes += sizeof(level) + level.nodes.size() * sizeof(Node);
    }
    return static_cast<qint64>(bytes);
}

void TraceStore::clear()
{
    m_chunks.clear();
    m_levels.clear();
    m_begin = 0;
    m_end = 0;
    m_samples = 0;
}

} // namespace cnet::view
