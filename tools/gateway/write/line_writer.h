#pragma once

#include "gateway/write/allowed_values.h"
#include "gateway/write/token_bucket.h"
#include "gateway/write/write_outcome.h"

#include "host/session.h"

#include <QHash>
#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace cnet::gateway {

/**
 * Carries out what may be written to one line, one after the other, and reads it back. Each request
 * gets exactly one answer, also when the line is taken away. On the thread of the lines.
 */
class LineWriter : public QObject
{
    Q_OBJECT

public:
    /** @param session,clock must outlive this object */
    LineWriter(const WriteRules &rules, const AllowedValues &allowed, Session &session,
               Clock &clock);
    ~LineWriter() override;

    /**
     * Carries out a request, or refuses it: answered() follows, also at once.
     * @param askedMs on the clock
     */
    void ask(const WriteRequest &request, qint64 askedMs);

    /** Others hold from now on, also for requests that wait. */
    void setRules(const WriteRules &rules, const AllowedValues &allowed);

    /** Refuses all that was not sent, and all that comes. To be called before the session closes.
     */
    void end(const QString &reason);

Q_SIGNALS:
    void answered(const cnet::gateway::WriteAnswer &answer);

private:
    struct Waiting
    {
        WriteRequest request;
        PlannedWrite planned;
        qint64 untilMs = 0; ///< on the clock: then it is refused
    };
    /** The one that the session has. */
    struct Underway
    {
        Waiting own;
        QPointer<WriteJob> job;
        bool wasPartlyTaken = false;
        QString whyCancelled;
        bool isSuperseded = false;
    };

    bool isTooOften(const PlannedWrite &planned, QString &why);
    QString whyNotNow(const Tag &tag) const;
    QString tooLate() const;
    /** The session has one and has sent nothing of it. */
    bool canTakeBack() const;
    void supersede(const QString &tag);
    void begin();
    void handleEnd();
    void expire();
    void setAlarm();
    void refuse(const WriteRequest &request, const QString &reason);

    WriteRules m_rules;
    AllowedValues m_allowed;
    Session &m_session;
    Clock &m_clock;
    std::unique_ptr<Alarm> m_alarm; ///< for the one that has waited longest
    TokenBucket m_lineBucket;
    QHash<QString, TokenBucket> m_buckets; ///< of values that were asked for
    std::deque<Waiting> m_waiting;         ///< oldest first
    std::optional<Underway> m_underway;
    QString m_ended; ///< why nothing is taken any more
};

} // namespace cnet::gateway
