#pragma once

#include "view/trend/series/trace_store.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

namespace cnet::view {

const double kNoNumber = std::nan("");

/** The same samples, looked at one by one. */
class PlainStore
{
public:
    explicit PlainStore(std::vector<TraceStore::Sample> entries)
        : m_entries(std::move(entries))
    {}

    TraceStore::Span span(int from, int to) const
    {
        TraceStore::Span span;
        for (int i = std::max(from, 0); i < std::min(to, static_cast<int>(m_entries.size())); ++i) {
            const TraceStore::Sample &entry = m_entries[static_cast<size_t>(i)];
            if (entry.isGap) {
                span.hasGap = true;
                continue;
            }
            span.first = span.count == 0 ? entry.value : span.first;
            span.least = span.count == 0 ? entry.value : std::min(span.least, entry.value);
            span.greatest = span.count == 0 ? entry.value : std::max(span.greatest, entry.value);
            span.last = entry.value;
            ++span.count;
        }
        return span;
    }

    int indexAt(qint64 atMs) const
    {
        size_t i = 0;
        while (i < m_entries.size() && m_entries[i].atMs < atMs) {
            ++i;
        }
        return static_cast<int>(i);
    }

    double mean(qint64 fromMs, qint64 toMs) const
    {
        long double sum = 0;
        int count = 0;
        for (const TraceStore::Sample &entry : m_entries) {
            if (!entry.isGap && entry.atMs >= fromMs && entry.atMs <= toMs) {
                sum += static_cast<long double>(entry.value);
                ++count;
            }
        }
        return count == 0 ? 0 : static_cast<double>(sum / count);
    }

    const std::vector<TraceStore::Sample> &entries() const { return m_entries; }

private:
    std::vector<TraceStore::Sample> m_entries;
};

struct Kind
{
    int samples = 0;
    double gaps = 0;     ///< a part of 1
    qint64 longest = 10; ///< ms from one to the next
};

/** Samples as a plant may give them, and the same ones in plain. Several come at one time. */
inline PlainStore fill(TraceStore &store, const Kind &kind, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> value(-1000, 1000);
    std::uniform_real_distribution<double> chance(0, 1);
    std::uniform_int_distribution<qint64> step(0, kind.longest);
    std::vector<TraceStore::Sample> entries;
    qint64 atMs = 1700000000000;
    for (int i = 0; i < kind.samples; ++i) {
        atMs += step(random);
        if (chance(random) < kind.gaps) {
            store.appendGap(atMs);
            if (!entries.empty() && !entries.back().isGap) {
                entries.push_back({atMs, kNoNumber, true});
            }
        }
        const double number = value(random);
        store.append(atMs, number);
        entries.push_back({atMs, number, false});
    }
    return PlainStore(std::move(entries));
}

} // namespace cnet::view
