#pragma once

#include "plc/stations/bus.h"
#include "plc/stations/line.h"

#include <QByteArray>

#include <deque>
#include <optional>

namespace exchange {

/** What came upon a request. */
struct LineAnswer
{
    QByteArray bytes;        ///< of the answer, as an AnswerFinder has them
    bool isComplete = false; ///< it ended before the deadline
    bool isLate = false;     ///< some of it came upon an earlier request
};

/**
 * The line to the simulated stations, under a clock that nothing but this class moves: waiting
 * costs no time, and every run is the same.
 */
class VirtualLine
{
public:
    VirtualLine();

    plc::Bus &bus() { return m_bus; }
    plc::Line &line() { return m_line; }

    qint64 nowMs() const { return m_nowMs; }

    /** Lets time pass; what arrives meanwhile is kept. */
    void wait(int ms);

    /** Hands a request to the stations. */
    void send(const QByteArray &request);

    /**
     * Waits for bytes.
     * @return what arrived first, at the latest at the deadline; nothing, with the clock at the
     * deadline, where the line stays quiet.
     */
    std::optional<QByteArray> receive(qint64 deadlineMs);

    /** Waits for an answer. @param expectedLength bytes of a good one */
    LineAnswer answer(int expectedLength, qint64 deadlineMs);

    /** Throws away what arrives until the line was quiet for so long. */
    void empty(int quietMs);

private:
    struct Arrival
    {
        qint64 dueMs;
        QByteArray bytes;
        qint64 request; ///< which one, counted from 1
    };

    plc::Bus m_bus;
    plc::Line m_line;
    qint64 m_nowMs = 0;
    qint64 m_requests = 0;
    qint64 m_receivedFor = 0;
    std::deque<Arrival> m_arrivals;
};

} // namespace exchange
