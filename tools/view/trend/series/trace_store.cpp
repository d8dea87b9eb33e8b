#include "view/trend/series/trace_store.h"

#include "view/trend/series/trace_sums.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace cnet::view {

namespace {

constexpr int kLeastMost = 256;
constexpr int kGreatestMost = 1 << 28; // each may have a gap beside, and an int counts both
constexpr int kGreatestChunkBits = 12;
constexpr double kGap = std::numeric_limits<double>::quiet_NaN();

/** What differs between two times, which may be further apart than a qint64 can tell. */
quint64 distance(qint64 from, qint64 to)
{
    return static_cast<quint64>(to) - static_cast<quint64>(from);
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
    if ((m_end & (kNodeEntries - 1)) != 0) {
        return;
    }
    Chunk &chunk = m_chunks.back();
    chunk.nodes.push_back(nodeOf(m_end - kNodeEntries, m_end));
    qint64 length = qint64(kNodeEntries) << kNodeBits;
    for (size_t i = 0; (m_end & (length - 1)) == 0 && length <= 2 * qint64(m_most); ++i) {
        if (i == m_levels.size()) {
            m_levels.emplace_back();
        }
        Level &level = m_levels[i];
        const qint64 begin = m_end - length;
        if (begin < m_begin) { // its begin has gone, and with it all nodes before
            level.begin = m_end / length;
        } else {
            level.nodes.push_back(nodeOf(begin, m_end));
        }
        length <<= kNodeBits;
    }
}

/** Shows a sum the entries from one to another, in as few nodes and values as will do. */
template <class Sum>
void TraceStore::look(qint64 at, qint64 end, Sum &sum) const
{
    while (at < end) {
        qint64 length = 0;
        const Node *large = nodeAt(at, end, length);
        if (large != nullptr) {
            sum.addNode(*large);
            at += length;
            continue;
        }
        // Only whole chunks go, so that the oldest entry is the first of its chunk.
        const Chunk &chunk = m_chunks[static_cast<size_t>((at - m_begin) >> m_chunkBits)];
        const auto place = static_cast<size_t>(at & ((qint64(1) << m_chunkBits) - 1));
        const size_t node = place >> kNodeBits;
        const qint64 next = (at | (kNodeEntries - 1)) + 1;
        if (next - at == kNodeEntries && next <= end && node < chunk.nodes.size()) {
            sum.addNode(chunk.nodes[node]);
            at = next;
            continue;
        }
        const double *values = chunk.values.data() + place;
        const auto entries = static_cast<int>(std::min(next, end) - at);
        const bool hasGaps = static_cast<size_t>(chunk.samples) != chunk.values.size();
        sum.addValues(values, entries, hasGaps ? countSamples(values, entries) : entries);
        at += entries;
    }
}

TraceStore::Node TraceStore::nodeOf(qint64 begin, qint64 end) const
{
    ExtremesAndMean all;
    look(begin, end, all);
    // However it was rounded, the mean of equal values is that value.
    const double mean = std::max(all.least, std::min(all.mean, all.greatest));
    return {all.least, all.greatest, mean, all.count};
}

/** The largest node of a level that begins there and does not go past an end, and how many entries
 * it has; null: there is none. */
const TraceStore::Node *TraceStore::nodeAt(qint64 at, qint64 end, qint64 &length) const
{
    const Node *found = nullptr;
    qint64 tried = qint64(kNodeEntries) << kNodeBits;
    for (const Level &level : m_levels) {
        if ((at & (tried - 1)) != 0 || at + tried > end) {
            break;
        }
        const qint64 number = at / tried - level.begin;
        if (number < 0 || number >= static_cast<qint64>(level.nodes.size())) {
            break;
        }
        found = &level.nodes[static_cast<size_t>(number)];
        length = tried;
        tried <<= kNodeBits;
    }
    return found;
}

void TraceStore::dropOldest()
{
    m_samples -= m_chunks.front().samples;
    m_begin += static_cast<qint64>(m_chunks.front().values.size());
    m_chunks.erase(m_chunks.begin());
    qint64 length = qint64(kNodeEntries) << kNodeBits;
    for (Level &level : m_levels) {
        while (!level.nodes.empty() && level.begin * length < m_begin) {
            level.nodes.pop_front();
            ++level.begin;
        }
        length <<= kNodeBits;
    }
}

qint64 TraceStore::timeAt(int index) const
{
    const Chunk &chunk = m_chunks[static_cast<size_t>(index >> m_chunkBits)];
    const auto place = static_cast<size_t>(index & ((1 << m_chunkBits) - 1));
    return chunk.times.empty() ? chunk.baseMs + chunk.offsets[place] : chunk.times[place];
}

double TraceStore::valueAt(int index) const
{
    const Chunk &chunk = m_chunks[static_cast<size_t>(index >> m_chunkBits)];
    return chunk.values[static_cast<size_t>(index & ((1 << m_chunkBits) - 1))];
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
    const double value = valueAt(index);
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
    look(m_begin + begin, m_begin + end, extremes);
    span.count = extremes.count;
    span.hasGap = span.count < end - begin;
    if (span.count > 0) {
        span.least = extremes.least;
        span.greatest = extremes.greatest;
        // No two gaps are side by side: the next entry is a sample where one is a gap.
        const double first = valueAt(begin);
        const double last = valueAt(end - 1);
        span.first = std::isnan(first) ? valueAt(begin + 1) : first;
        span.last = std::isnan(last) ? valueAt(end - 2) : last;
    }
    return span;
}

void TraceStore::expect(int index) const
{
    if (index < 0 || index >= entries()) {
        return;
    }
    const Chunk &chunk = m_chunks[static_cast<size_t>(index >> m_chunkBits)];
    const int place = index & ((1 << m_chunkBits) - 1);
    const int row = place & ~(kNodeEntries - 1);
    __builtin_prefetch(chunk.values.data() + row);
    __builtin_prefetch(chunk.values.data() + row + kNodeEntries / 2);
    __builtin_prefetch(chunk.nodes.data() + (place >> kNodeBits));
    if (chunk.times.empty()) {
        __builtin_prefetch(chunk.offsets.data() + place);
    } else {
        __builtin_prefetch(chunk.times.data() + place);
    }
}

TraceStore::Summary TraceStore::summary(qint64 fromMs, qint64 toMs) const
{
    const int from = indexAt(fromMs);
    const int to = toMs == std::numeric_limits<qint64>::max() ? entries() : indexAt(toMs + 1);
    if (from >= to) {
        return {};
    }
    const Node all = nodeOf(m_begin + from, m_begin + to);
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
                 chunk.times.capacity() * sizeof(qint64) +
                 chunk.values.capacity() * sizeof(double) + chunk.nodes.capacity() * sizeof(Node);
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
