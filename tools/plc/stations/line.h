#pragma once

#include "plc/stations/bus.h"
#include "plc/wire/frame_finder.h"

#include <QByteArray>
#include <QHash>

#include <functional>
#include <vector>

namespace plc {

/** One request with its answer, for a trace. */
struct Exchange
{
    qint64 nowMs = 0;         ///< when the end of the request arrived
    QByteArray request;       ///< the frame as received
    QByteArray answer;        ///< before faults and pacing, or as a replay has it; empty: silence
    std::vector<Fault> fired; ///< the faults that fired for this request
    std::vector<Chunk> sent;  ///< what goes to the master, and when
};

/**
 * The stations' end of one line: takes the bytes that the master sends and returns those that the
 * stations send back. It has no clock and never waits; the caller sends each chunk when it is due.
 */
class Line
{
public:
    /** @param bus must outlive the line. */
    explicit Line(Bus &bus);

    /**
     * Paces the answers like a serial line of this speed, at ten bits a byte. The first byte also
     * waits for the time of the request, whose bytes arrive here all at once.
     * @param baud bits per second; 0 or less: no pacing.
     */
    void setBaud(int baud) { m_baud = baud; }

    /** The observer is called for each request, answered or not, before receive() returns. */
    void setObserver(std::function<void(const Exchange &)> observer);

    /**
     * Takes what the master sent since the last call; frames may be split in any way.
     *
     * @param nowMs the time for motions, in milliseconds from any origin, not negative
     * @return what to send now and later. Each delay counts from the previous chunk; if chunks of
     * an earlier call are still waiting, these go behind them.
     */
    std::vector<Chunk> receive(const QByteArray &bytes, qint64 nowMs = 0);

private:
    const std::vector<Chunk> *replayed(const QByteArray &frame);
    std::vector<Chunk> serve(const QByteArray &frame, qint64 nowMs);
    std::vector<Chunk> paced(const std::vector<Chunk> &chunks, int requestBytes) const;

    Bus &m_bus;
    FrameFinder m_finder;
    int m_baud = 0;
    QHash<QByteArray, int> m_asked; ///< how often, of the requests that a replay has
    std::function<void(const Exchange &)> m_observer;
};

/** The bytes of all chunks, for callers that do not care about time. */
QByteArray joined(const std::vector<Chunk> &chunks);

/** Milliseconds until the last chunk is sent. */
int duration(const std::vector<Chunk> &chunks);

} // namespace plc
