#pragma once

#include "bus.h"
#include "frame_finder.h"

#include <QByteArray>

#include <functional>
#include <vector>

namespace plc {

/** One request and what became of it, for a trace. */
struct Exchange
{
    qint64 nowMs = 0;          ///< when the request was complete
    QByteArray request;        ///< the frame as it was found
    QByteArray answer;         ///< the answer before faults and pacing; empty: silence
    std::vector<Fault> struck; ///< the faults of this request
    std::vector<Chunk> sent;   ///< what goes to the master, and when
};

/**
 * The stations' end of one line: takes the bytes that the master sends and gives back what the
 * stations send. It has no clock and does not wait; the caller sends the chunks when they are due.
 */
class Line
{
public:
    /** @param bus must outlive the line. */
    explicit Line(Bus &bus);

    /**
     * Paces the answers as a line of this speed would, at ten bits a byte: the request's time comes
     * before the first byte, since the bytes of a request arrive here all at once.
     * @param baud bits per second; 0 or less: as fast as it goes.
     */
    void setBaud(int baud) { m_baud = baud; }

    /** Is told of each request, answered or not, before receive() returns. */
    void setObserver(std::function<void(const Exchange &)> observer);

    /**
     * Takes bytes in any division.
     *
     * @param bytes what the master sent since the last call
     * @param nowMs the time for ramps, in milliseconds from any zero, not negative
     * @return what is sent now and later, each chunk's delay counted from the one before it. Where
     * the chunks of an earlier call are not all sent yet, these follow them.
     */
    std::vector<Chunk> receive(const QByteArray &bytes, qint64 nowMs = 0);

private:
    std::vector<Chunk> serve(const QByteArray &frame, qint64 nowMs);
    std::vector<Chunk> paced(const std::vector<Chunk> &chunks, int requestBytes) const;

    Bus &m_bus;
    FrameFinder m_finder;
    int m_baud = 0;
    std::function<void(const Exchange &)> m_observer;
};

/** The bytes of all chunks, for a caller to whom time does not matter. */
QByteArray joined(const std::vector<Chunk> &chunks);

/** Milliseconds until the last chunk is sent. */
int duration(const std::vector<Chunk> &chunks);

} // namespace plc
