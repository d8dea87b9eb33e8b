#include "gateway/mqtt/batch_messages.h"

#include "gateway/mqtt/value_payload.h"

#include "host/value/json_value.h"

#include <utility>

namespace cnet::gateway {

namespace {

// Far below what brokers refuse.
constexpr int kMostBytes = 60000;

QString stationText(const ChangeSource &source)
{
    return QString::number(source.station);
}

} // namespace

BatchMessages::BatchMessages(const TopicTemplate &topic, bool isRetained)
    : m_topic(topic)
    , m_isGrouped(!topic.has(TopicTemplate::Place::Tag))
    , m_isRetained(isRetained)
{}

QVector<MqttMessage> BatchMessages::of(const SinkBatch &batch)
{
    if (m_partOfSource.size() > kMostKnownSources) {
        forget();
    }
    m_retainsNow = m_isRetained && batch.age == SinkBatch::Age::Live;
    for (const Change &change : batch.changes) {
        append(change, batch.age);
    }
    for (Group &group : m_groups) {
        finish(group);
    }
    QVector<MqttMessage> messages;
    messages.swap(m_messages);
    return messages;
}

void BatchMessages::forget()
{
    m_partOfSource.clear();
    m_partOfTopic.clear();
    m_groupOfName.clear();
    m_parts.clear();
    m_groups.clear();
}

void BatchMessages::append(const Change &change, SinkBatch::Age age)
{
    TagPart &part = m_parts[partOf(change.source)];
    if (!m_isGrouped) {
        QByteArray payload;
        payload.reserve(64);
        appendPayload(payload, change, age);
        m_messages.append(messageAt(part.topic, payload));
        return;
    }
    Group &group = m_groups[part.group];
    if (part.message == group.message || group.payload.size() > kMostBytes) {
        finish(group);
    }
    part.message = group.message;
    group.payload += group.payload.isEmpty() ? '{' : ',';
    group.payload += part.key;
    group.payload += ':';
    appendPayload(group.payload, change, age);
}

void BatchMessages::finish(Group &group)
{
    if (!group.payload.isEmpty()) {
        group.payload += '}';
        m_messages.append(messageAt(group.topic, std::exchange(group.payload, QByteArray())));
        ++group.message;
    }
}

int BatchMessages::partOf(const std::shared_ptr<const ChangeSource> &source)
{
    const auto known = m_partOfSource.constFind(source.get());
    if (known != m_partOfSource.constEnd()) {
        return known->part;
    }
    const int part = makePart(*source);
    m_partOfSource.insert(source.get(), {source, part});
    return part;
}

int BatchMessages::makePart(const ChangeSource &source)
{
    // After a new tag file the same tag has another source.
    const QString name = source.line + QChar(0) + stationText(source) + QChar(0) + source.tag;
    auto found = m_partOfTopic.constFind(name);
    if (found == m_partOfTopic.constEnd()) {
        TagPart part;
        if (m_isGrouped) {
            appendJson(part.key, source.tag);
            part.group = groupOf(source);
        } else {
            part.topic = m_topic.topic({source.line, stationText(source), source.tag});
        }
        found = m_partOfTopic.insert(name, static_cast<int>(m_parts.size()));
        m_parts.append(part);
    }
    return *found;
}

int BatchMessages::groupOf(const ChangeSource &source)
{
    const QString name = source.line + QChar(0) + stationText(source);
    const auto known = m_groupOfName.constFind(name);
    if (known != m_groupOfName.constEnd()) {
        return *known;
    }
    const int index = static_cast<int>(m_groups.size());
    Group group;
    group.topic = m_topic.topic({source.line, stationText(source), QString()});
    m_groups.append(group);
    m_groupOfName.insert(name, index);
    return index;
}

MqttMessage BatchMessages::messageAt(const QString &topic, const QByteArray &payload) const
{
    MqttMessage message = jsonMessage(topic, payload);
    message.isRetained = m_retainsNow;
    return message;
}

} // namespace cnet::gateway
