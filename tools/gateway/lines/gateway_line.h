#pragma once

#include "gateway/change/topic_template.h"
#include "gateway/config/gateway_config.h"
#include "gateway/delivery/say.h"
#include "gateway/lines/status_reporter.h"
#include "gateway/lines/tag_reporter.h"
#include "gateway/write/line_writer.h"

#include "host/driver/driver.h"
#include "host/session.h"

#include <QObject>

#include <memory>

namespace cnet::gateway {

/** A line that is watched: its session, its tags, and what is told of them. */
class GatewayLine : public QObject
{
    Q_OBJECT

public:
    /**
     * @param link not opened yet
     * @param clock must outlive this object
     * @param say is given what happens to the line, in words
     */
    GatewayLine(const LineConfig &config, std::unique_ptr<Link> link, Clock &clock,
                TagReporter::Taker taker, StatusReporter::Taker status, const Say &say);

    /** Loads the driver and reads the tags. @return what is wrong, a line each; none: it may open
     */
    QStringList prepare();

    /** Begins to talk, and to tell. */
    void open();

    /**
     * The tags that a configuration of this line names, now. Changes nothing.
     * @param mistakes receives what is wrong, a line each
     */
    TagSet readTags(const LineConfig &config, QStringList &mistakes) const;

    /** True where link and session need not be others for this configuration. */
    bool fits(const LineConfig &config) const { return config.written == m_config.written; }

    /** Goes on with other tags and rules; the session notices nothing. @param config that fits() */
    void reload(const LineConfig &config, const TagSet &tags);

    const QString &name() const { return m_config.name; }
    /** All that is told of it: itself, its stations, its tags with each value of an array. */
    QVector<TopicNames> told() const;
    /** What is known of the line; null before prepare(). */
    const Session *session() const { return m_session.get(); }
    /** Changes that were told. */
    qint64 changes() const { return m_changes; }

    /**
     * Ends for good: it and all its values are told to be good no more, and requests are answered.
     * @param cause in words
     */
    void close(const QString &cause);

    /** What writes to it. After prepare(). */
    LineWriter &writer() { return *m_writer; }

private:
    QString lineCause() const;
    AllowedValues allowedValues() const;

    LineConfig m_config;
    std::unique_ptr<Link> m_link;
    Clock &m_clock;
    TagReporter::Taker m_taker;
    StatusReporter::Taker m_statusTaker;
    Say m_say;
    Driver m_driver;
    qint64 m_changes = 0;
    std::unique_ptr<Session> m_session;
    TagMonitor *m_tags = nullptr; ///< the session's
    std::unique_ptr<StatusReporter> m_status;
    std::unique_ptr<TagReporter> m_reporter;
    std::unique_ptr<LineWriter> m_writer;
};

} // namespace cnet::gateway
