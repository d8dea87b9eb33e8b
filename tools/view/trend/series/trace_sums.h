#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace cnet::view {

constexpr int kNodeBits = 4; ///< what a node of a store is of the level below
constexpr int kNodeEntries = 1 << kNodeBits;

/** Of these entries, those that are no gaps. */
inline int countSamples(const double *values, int count)
{
    int samples = 0;
    for (int i = 0; i < count; ++i) {
        samples += std::isnan(values[i]) ? 0 : 1;
    }
    return samples;
}

/** Of no more than a node's entries; their sum may be more than a double holds. */
inline double meanOf(const double *values, int count, int samples)
{
    double sum = 0;
    for (int i = 0; i < count; ++i) {
        sum += std::isnan(values[i]) ? 0 : values[i] / kNodeEntries;
    }
    return samples == 0 ? 0 : sum / samples * kNodeEntries;
}

/** The mean of two parts; as above. */
inline double joinedMean(double mean, int count, double otherMean, int otherCount)
{
    if (count == 0 || otherCount == 0) {
        return count == 0 ? otherMean : mean;
    }
    const double share = static_cast<double>(count) / (static_cast<double>(count) + otherCount);
    return mean * share + otherMean * (1 - share);
}

/** The least and the greatest of what it is given. Values that are not numbers are none. */
struct Extremes
{
    double least = std::numeric_limits<double>::infinity();
    double greatest = -std::numeric_limits<double>::infinity();
    int count = 0;

    template <class Node>
    void addNode(const Node &node)
    {
        least = std::min(least, node.least);
        greatest = std::max(greatest, node.greatest);
        count += node.count;
    }

    /** Two of each side by side, as one would wait for itself. */
    void addValues(const double *values, int entries, int samples)
    {
        double otherLeast = least;
        double otherGreatest = greatest;
        int i = 0;
        for (; i + 1 < entries; i += 2) {
            least = values[i] < least ? values[i] : least;
            greatest = values[i] > greatest ? values[i] : greatest;
            otherLeast = values[i + 1] < otherLeast ? values[i + 1] : otherLeast;
            otherGreatest = values[i + 1] > otherGreatest ? values[i + 1] : otherGreatest;
        }
        if (i < entries) {
            least = values[i] < least ? values[i] : least;
            greatest = values[i] > greatest ? values[i] : greatest;
        }
        least = std::min(least, otherLeast);
        greatest = std::max(greatest, otherGreatest);
        count += samples;
    }
};

/** Their mean, too. */
struct ExtremesAndMean : Extremes
{
    double mean = 0;

    template <class Node>
    void addNode(const Node &node)
    {
        mean = joinedMean(mean, count, node.mean, node.count);
        Extremes::addNode(node);
    }

    void addValues(const double *values, int entries, int samples)
    {
        mean = joinedMean(mean, count, meanOf(values, entries, samples), samples);
        Extremes::addValues(values, entries, samples);
    }
};

} // namespace cnet::view
