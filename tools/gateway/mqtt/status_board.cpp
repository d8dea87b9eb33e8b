#include "gateway/mqtt/status_board.h"

#include "gateway/mqtt/value_payload.h"

#include <QSet>

namespace cnet::gateway {

namespace {

const char kOffline[] = "{\"s\":\"offline\"}";

} // namespace

StatusBoard::StatusBoard(const TopicTemplate &status)
    : m_gateway(status)
    , m_line(status.with({QLatin1String("{line}")}))
    , m_station(status.with({QLatin1String("{line}"), QLatin1String("{station}")}))
{}

MqttMessage StatusBoard::will() const
{
    return retained(topic(), kOffline);
}

MqttMessage StatusBoard::birth(qint64 atMs) const
{
    return retained(topic(), "{\"s\":\"online\",\"t\":" + QByteArray::number(atMs) + '}');
}

MqttMessage StatusBoard::tell(const LineStatus &status)
{
    m_newest.insert({status.line, status.station.value_or(-1)}, status);
    return messageOf(status);
}

QVector<MqttMessage> StatusBoard::all() const
{
    QVector<MqttMessage> messages;
    for (const LineStatus &status : m_newest) {
        messages.append(messageOf(status));
    }
    return messages;
}

void StatusBoard::keepOnly(const QVector<TopicNames> &names)
{
    QSet<std::pair<QString, int>> kept;
    for (const TopicNames &own : names) {
        kept.insert({own.line, own.station.isEmpty() ? -1 : own.station.toInt()});
    }
    for (auto it = m_newest.begin(); it != m_newest.end();) {
        it = kept.contains(it.key()) ? std::next(it) : m_newest.erase(it);
    }
}

QString StatusBoard::topic(const TopicNames &names) const
{
    return (names.station.isEmpty() ? m_line : m_station).topic(names);
}

MqttMessage StatusBoard::gone(const RetainedTopic &topic, qint64 atMs) const
{
    const QByteArray at = ",\"t\":" + QByteArray::number(atMs) + '}';
    switch (topic.kind) {
    case RetainedTopic::Kind::Gateway:
        return retained(topic.topic, kOffline);
    case RetainedTopic::Kind::Status:
        return retained(topic.topic,
                        R"({"s":"bad","why":"it is not in the configuration any more")" + at);
    case RetainedTopic::Kind::Value:
        break;
    }
    return retained(topic.topic, R"({"v":null,"q":"stale","why":"not watched any more")" + at);
}

MqttMessage StatusBoard::messageOf(const LineStatus &status) const
{
    const QString station = status.station ? QString::number(*status.station) : QString();
    return retained(topic({status.line, station, QString()}), statusPayload(status));
}

MqttMessage StatusBoard::retained(const QString &topic, const QByteArray &payload) const
{
    MqttMessage message = jsonMessage(topic, payload);
    message.isRetained = true;
    return message;
}

} // namespace cnet::gateway
