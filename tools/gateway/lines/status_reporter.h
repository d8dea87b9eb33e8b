#pragma once

#include "gateway/change/line_status.h"

#include "host/session.h"
#include "host/time/clock.h"

#include <QObject>

#include <functional>
#include <map>

namespace cnet::gateway {

/**
 * Tells how a line and each of its stations do, as soon as it is another way: at first bad, since
 * nothing was read yet. A station that refuses is good: it answers.
 */
class StatusReporter : public QObject
{
    Q_OBJECT

public:
    using Taker = std::function<void(const LineStatus &status)>;

    /**
     * @param line its name
     * @param session not opened yet; with the clock it must outlive this object
     */
    StatusReporter(const QString &line, Session &session, Clock &clock, Taker taker);

    /** Tells of these stations from now on. One that is missing is told to be watched no more. */
    void watch(const QVector<int> &stations);

    /** Tells that all are bad, and then nothing any more. @param cause in words */
    void end(const QString &cause);

    /** Why the line is bad, in words; empty: it is good. */
    QString lineCause() const { return m_line.cause; }

private:
    void lookAtLine();
    void lookAtStation(int station, LineStatus &status);
    void become(LineStatus &status, const QString &cause);

    Session &m_session;
    Clock &m_clock;
    Taker m_taker;
    bool m_isEnded = false;
    LineStatus m_line;
    std::map<int, LineStatus> m_stations;
};

} // namespace cnet::gateway
