#pragma once

#include "gateway/delivery/trouble.h"
#include "gateway/write/audit_file.h"
#include "gateway/write/recent_requests.h"

#include "host/time/clock.h"

#include <QMap>
#include <QObject>

#include <memory>
#include <optional>

namespace cnet::gateway {

/**
 * Where requests of the sinks come in and their answers go out: exactly one for each. What a line
 * is to do was written down before. It waits for the disk, so it is on the recorder's thread.
 */
class WriteDesk : public QObject
{
    Q_OBJECT

public:
    /** Requests that are open at a time; more are refused. */
    static constexpr int kMostOpen = 1000;

    /**
     * @param audit nothing: no line may be written to, and all is refused
     * @param clock must outlive this object
     */
    WriteDesk(const std::optional<AuditConfig> &audit, Clock &clock, const Say &say);

    /** A sink was asked. answered() follows. */
    void ask(const WriteRequest &request);

    /** A line has answered what was wanted(). */
    void settle(const WriteAnswer &answer);

    /** The lines may be written to, or may not, from now on; what is open is answered. */
    void setAudit(const std::optional<AuditConfig> &audit);

    /** Answers all that is open. The lines were closed: what they have not answered was not sent.
     */
    void finish();

Q_SIGNALS:
    /** It was written down, and a line is to carry it out. @param askedMs on the clock */
    void wanted(const cnet::gateway::WriteRequest &request, qint64 askedMs);
    void answered(const cnet::gateway::WriteAnswer &answer);

private:
    struct Open
    {
        WriteRequest request;
        qint64 askedMs = 0;
        QVector<WriteReply> others; ///< to the same request that was delivered again
    };

    bool isRepeated(const WriteRequest &request);
    QString whyNot(const WriteRequest &request) const;
    void openAudit();
    void remember(const QList<QByteArray> &lines);
    QString put(const QByteArray &line);
    void refuse(const WriteRequest &request, const QString &reason);
    void conclude(const Open &open, const WriteAnswer &answer);
    void tell(WriteAnswer answer, const WriteReply &reply);
    void passOn();

    std::optional<AuditConfig> m_config;
    Clock &m_clock;
    Trouble m_trouble;
    std::unique_ptr<AuditFile> m_audit; ///< none: nothing was asked yet, or nothing may be
    std::unique_ptr<Alarm> m_next;      ///< passes on
    QMap<RequestKey, Open> m_open;
    QVector<RequestKey> m_unsafe;  ///< written down, and not known to be on the disk
    QList<QByteArray> m_unwritten; ///< results that there was no room for
    RecentRequests m_recent;
    int m_repeats = 0; ///< that wait for the answer to the first
    bool m_hasEnded = false;
};

} // namespace cnet::gateway
