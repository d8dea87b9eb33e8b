#pragma once

#include <QtGlobal>

#include <array>

namespace cnet {

/** What went over the line in some time, both ways. */
struct LineTraffic
{
    qint64 sentBytes = 0;
    qint64 receivedBytes = 0;
    double seconds = 0; ///< the time that this was counted in

    qint64 bytes() const { return sentBytes + receivedBytes; }
    double bytesPerSecond() const
    {
        return seconds > 0 ? static_cast<double>(bytes()) / seconds : 0;
    }

    /**
     * The share of the time that a line is busy with these bytes, in percent. It is above 100 where
     * the line is quicker than it is said to be, as a pseudo-terminal is.
     * @param characterMicroseconds that one byte takes, with its start, parity and stop bits
     */
    double loadPercent(double characterMicroseconds) const
    {
        return bytesPerSecond() * characterMicroseconds / 10000;
    }
};

/** Counts the bytes on a line: all of them, and those of the last ten seconds. */
class LineMeter
{
public:
    static constexpr int kRecentSeconds = 10;

    /** Begins to count. @param nowMs from any zero, never falling */
    void start(qint64 nowMs);

    void sent(qint64 bytes, qint64 nowMs);
    void received(qint64 bytes, qint64 nowMs);

    /** Since start(). */
    LineTraffic all(qint64 nowMs) const;

    /** In the last ten whole seconds, or as many as there are; in the first second: since start().
     */
    LineTraffic recent(qint64 nowMs) const;

private:
    struct Second
    {
        qint64 number = -1; ///< since start()
        qint64 sentBytes = 0;
        qint64 receivedBytes = 0;
    };

    Second &now(qint64 nowMs);

    qint64 m_startMs = 0;
    qint64 m_sentBytes = 0;
    qint64 m_receivedBytes = 0;
    std::array<Second, kRecentSeconds + 1> m_seconds; ///< by number, the unfinished one included
};

} // namespace cnet
