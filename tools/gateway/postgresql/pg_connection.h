#pragma once

#include "gateway/postgresql/pg_answer.h"

#include "host/time/clock.h"

#include <QObject>
#include <QPair>

#include <functional>
#include <memory>

class QSocketNotifier;
struct pg_conn;
struct pg_result;

namespace cnet::gateway {

/**
 * One connection to one PostgreSQL server, of which no call waits for anybody. It does not come
 * back by itself.
 */
class PgConnection : public QObject
{
    Q_OBJECT

public:
    /** Keywords of libpq with their values. */
    using Parameters = QVector<QPair<QByteArray, QByteArray>>;
    /** The next rows of a COPY; empty when there are no more. */
    using Rows = std::function<QByteArray()>;

    explicit PgConnection(Clock &clock);
    ~PgConnection() override;

    /**
     * Connects: opened() or broken() follows, never from within.
     * @param timeoutMs how long the server may be silent while something is expected of it
     */
    void open(const Parameters &parameters, int timeoutMs);

    /** Runs statements one behind the other: answered() or broken() follows. One call at a time. */
    void run(const QByteArray &sql);
    /** The same with statements of which one is a COPY from here. */
    void run(const QByteArray &sql, Rows rows);

    /** No signal follows. */
    void close();

Q_SIGNALS:
    void opened();
    void answered(const cnet::gateway::PgAnswer &answer);
    /** There is no connection any more. @param reason one line */
    void broken(const QString &reason);

private:
    enum class Phase { Closed, Opening, Idle, Busy };

    void goOn();
    void goOnOpening();
    void goOnWorking();
    bool send();
    bool sendRows();
    bool receive();
    void note(pg_result *result);
    void watch();
    void breakOff(const QString &reason);
    void setNotifiers(int socket);

    struct Closer
    {
        void operator()(pg_conn *connection) const;
    };

    std::unique_ptr<pg_conn, Closer> m_connection;
    std::unique_ptr<Alarm> m_silence;
    std::unique_ptr<Alarm> m_start; ///< goes on from the event loop
    QSocketNotifier *m_reading = nullptr;
    QSocketNotifier *m_writing = nullptr;
    Phase m_phase = Phase::Closed;
    int m_timeoutMs = 0;
    bool m_isSent = true;     ///< the statements that run() was given were begun
    bool m_isSending = false; ///< the socket did not take all
    bool m_isCopying = false; ///< the server takes rows
    Rows m_rows;
    PgAnswer m_answer;
};

} // namespace cnet::gateway

Q_DECLARE_METATYPE(cnet::gateway::PgAnswer)
