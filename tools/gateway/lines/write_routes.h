#pragma once

#include "gateway/delivery/recorder_thread.h"
#include "gateway/write/line_writer.h"
#include "gateway/write/write_desk.h"

#include <QObject>

#include <functional>
#include <optional>

namespace cnet::gateway {

/** Where what is written to lines is written down; nothing where no line may be written to. */
std::optional<AuditConfig> auditFor(const GatewayConfig &config);

/** The way of requests from the sinks to the lines, and of answers back. On the lines' thread. */
class WriteRoutes : public QObject
{
    Q_OBJECT

public:
    /** @return the writer of a line; nullptr: there is no such line */
    using Find = std::function<LineWriter *(const QString &line)>;

    /** @param recorder,clock must outlive this object */
    WriteRoutes(const std::optional<AuditConfig> &audit, RecorderThread &recorder, Clock &clock,
                const Say &say, Find find);
    ~WriteRoutes() override;

    /** Takes the answers of a line's writer. Again it is without effect. */
    void add(LineWriter &writer);

    /** After another configuration; does not wait. */
    void setAudit(const std::optional<AuditConfig> &audit);

    /** Answers whatever is open, and all that comes. The lines were closed; the recorder was not.
     */
    void stop();

Q_SIGNALS:
    void answered(const cnet::gateway::WriteAnswer &answer);
    // Heard on the recorder's thread.
    void stopping(); ///< waits until it is done
    void leaving();  ///< waits until it is done

private:
    void route(const WriteRequest &request, qint64 askedMs);

    Find m_find;
    Clock &m_clock;
    WriteDesk m_desk; ///< on the recorder's thread
    bool m_hasStopped = false;
};

} // namespace cnet::gateway
