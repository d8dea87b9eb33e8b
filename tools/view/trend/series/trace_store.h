#pragma once

#include <QtGlobal>

#include <deque>
#include <vector>

namespace cnet::view {

/**
 * The samples of one trace, in the order of their times, with the least and the greatest of each
 * 16, 256, 4096... of them beside: whatever part one looks at, no extreme is lost and none is
 * searched for. A sample takes about 14 bytes.
 *
 * An entry is a sample or the beginning of a gap. Entries are counted from the oldest that is kept,
 * so their indexes change when old ones go.
 */
class TraceStore
{
public:
    /** One entry; where it is a gap its value is not a number. */
    struct Sample
    {
        qint64 atMs = 0; ///< since the epoch
        double value = 0;
        bool isGap = false;
    };

    /** What there is in a row of entries. The values are 0 where count is 0. */
    struct Span
    {
        double least = 0;
        double greatest = 0;
        double first = 0; ///< of the samples
        double last = 0;
        int count = 0; ///< samples, gaps not counted
        bool hasGap = false;
    };

    /** The values are 0 where count is 0. */
    struct Summary
    {
        double least = 0;
        double greatest = 0;
        double mean = 0; ///< of the samples, however long each of them held
        int count = 0;
    };

    /** @param most samples: the oldest go, by whole chunks of at most a sixteenth of it, when there
     * are more. Less than 256 is taken as 256. */
    explicit TraceStore(int most = 1000000);

    /** Adds a sample. A time before the last one's is taken as the last one's; a value that is not
     * finite counts as a gap. */
    void append(qint64 atMs, double value);

    /** From here on nothing is known until the next sample. Nothing happens where nothing is known
     * anyway. */
    void appendGap(qint64 atMs);

    /** Samples that are kept, gaps not counted. */
    int size() const { return m_samples; }
    bool isEmpty() const { return m_samples == 0; }

    /** The time of the oldest and of the newest entry; 0 where there is none. */
    qint64 firstMs() const;
    qint64 lastMs() const;

    /** Samples and gaps that are kept. */
    int entries() const { return static_cast<int>(m_end - m_begin); }

    /** @param index below entries(); a gap at time 0 for any other */
    Sample sample(int index) const;

    /** The first entry at or behind a time; entries() if there is none. */
    int indexAt(qint64 atMs) const;

    /** As indexAt(), and faster the closer the entry is to where one expects it. */
    int indexAt(qint64 atMs, int expected) const;

    /** What there is in the entries [from, to), cut to those there are. */
    Span span(int from, int to) const;

    /** That span() and indexAt() will soon be asked for a place around this entry: fetching it from
     * memory is most of what they take. @param index any */
    void expect(int index) const;

    /** What there is from one time to another, both included. */
    Summary summary(qint64 fromMs, qint64 toMs) const;

    /** What all this takes in memory. */
    qint64 bytes() const;

    void clear();

private:
    /** A full row of 16, 256... entries. */
    struct Node
    {
        double least = 0;
        double greatest = 0;
        double mean = 0;
        int count = 0; ///< samples
    };
    /** A row of entries that come and go together. */
    struct Chunk
    {
        qint64 baseMs = 0;
        std::vector<quint32> offsets; ///< from baseMs; empty where one does not fit
        std::vector<qint64> times;    ///< instead of offsets, then
        std::vector<double> values;   ///< NaN: a gap
        std::vector<Node> nodes;      ///< of 16 entries each
        int samples = 0;
    };
    /** Nodes of 256, 4096... entries. */
    struct Level
    {
        qint64 begin = 0; ///< the number of its oldest node since the start
        std::deque<Node> nodes;
    };

    template <class Sum>
    void look(qint64 at, qint64 end, Sum &sum) const;

    void add(qint64 atMs, double value);
    void dropOldest();
    void addNodes();
    Node nodeOf(qint64 begin, qint64 end) const;
    const Node *nodeAt(qint64 at, qint64 end, qint64 &length) const;
    qint64 timeAt(int index) const;
    double valueAt(int index) const;
    bool isKnown() const;

    int m_most;
    int m_chunkBits;
    qint64 m_begin = 0; ///< the number of the oldest entry kept since the start
    qint64 m_end = 0;
    int m_samples = 0;
    std::vector<Chunk> m_chunks;
    std::vector<Level> m_levels; ///< of 256, 4096... entries a node
};

} // namespace cnet::view
