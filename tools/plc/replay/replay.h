#pragma once

#include "host/recording/recording.h"
#include "plc/faults/faults.h"
#include "plc/replay/recorded_values.h"

#include <QByteArray>
#include <QHash>

#include <limits>
#include <vector>

namespace plc {

/** Answers come at once, and the memory is as it was at the end. */
constexpr double kFullSpeed = std::numeric_limits<double>::infinity();

/** A value of the memory from some time on. */
struct RecordedChange
{
    qint64 atMs = 0; ///< since the first request of the capture, at the replay's speed
    RecordedValue value;
};

/**
 * One line of a capture, as its stations answer. Nothing in it changes, so that any number of
 * masters share it, each of which begins at the beginning.
 */
class Replay
{
public:
    /** Of what came for one request, only so many bytes are sent again. */
    static constexpr int kMostBytes = 16384;
    /** A silence within what came for one request is at most so long. */
    static constexpr int kLongestPauseMs = 10000;

    /** @param speed above 0: how much faster than it was; kFullSpeed */
    explicit Replay(const cnet::RecordedLine &line, double speed = 1);

    /** Stations from 0 to 31 that have answered anything, in ascending order. */
    const std::vector<int> &stations() const { return m_stations; }

    /**
     * What comes for a request; no chunks at all where nothing came.
     *
     * @param time how often the master has sent the same one before; beyond the last time that the
     * capture has, that one is repeated
     * @return nullptr: the capture does not have this request
     */
    const std::vector<Chunk> *answer(const QByteArray &request, int time) const;

    /** The values with which the memory begins: the first ones that the capture has. */
    const std::vector<RecordedValue> &firstValues() const { return m_firstValues; }

    /** What becomes of them, in the order of time. */
    const std::vector<RecordedChange> &changes() const { return m_changes; }

private:
    std::vector<Chunk> chunksOf(const cnet::RecordedExchange &exchange) const;

    double m_speed;
    std::vector<int> m_stations;
    QHash<QByteArray, std::vector<std::vector<Chunk>>> m_answers;
    std::vector<RecordedValue> m_firstValues;
    std::vector<RecordedChange> m_changes;
};

} // namespace plc
