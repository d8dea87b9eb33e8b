#pragma once

#include "gateway/change/line_status.h"
#include "gateway/change/topic_template.h"
#include "gateway/mqtt/mqtt_connection.h"
#include "gateway/mqtt/retained_topics.h"

#include <QMap>
#include <QVector>

#include <utility>

namespace cnet::gateway {

/**
 * How the gateway and its lines and stations do, as retained messages. Will, birth and goodbye go
 * to one topic and are retained alike, so that the newest of them is what a subscriber finds.
 */
class StatusBoard
{
public:
    explicit StatusBoard(const TopicTemplate &status);

    /** "offline", by the broker when the connection is lost, or at the end by ourselves. */
    MqttMessage will() const;
    /** "online". @param atMs since when: milliseconds since 1970 in UTC */
    MqttMessage birth(qint64 atMs) const;

    /** Keeps what was told, and makes it a message. */
    MqttMessage tell(const LineStatus &status);

    /** The newest of each line and station. */
    QVector<MqttMessage> all() const;

    /** Forgets what was told of lines and stations that are not named here. */
    void keepOnly(const QVector<TopicNames> &names);

    /** Of the gateway; with names, of a line or, with a station, of that. */
    QString topic() const { return m_gateway.topic(TopicNames()); }
    QString topic(const TopicNames &names) const;

    /** What takes the place of what was retained there, and stays. @param atMs since when */
    MqttMessage gone(const RetainedTopic &topic, qint64 atMs) const;

private:
    MqttMessage messageOf(const LineStatus &status) const;
    MqttMessage retained(const QString &topic, const QByteArray &payload) const;

    TopicTemplate m_gateway;
    TopicTemplate m_line;
    TopicTemplate m_station;
    QMap<std::pair<QString, int>, LineStatus> m_newest; ///< by line and station, -1 for a line
};

} // namespace cnet::gateway
