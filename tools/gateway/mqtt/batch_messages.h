#pragma once

#include "gateway/change/topic_template.h"
#include "gateway/mqtt/mqtt_connection.h"
#include "gateway/sinks/sink.h"

#include <QHash>
#include <QVector>

namespace cnet::gateway {

/**
 * Makes a batch into messages. Where the topic names the tag, each change is one; else those of a
 * line and station go together, {"temperature":{...},"pressure":{...}}, and a further message
 * begins with a tag that is in it already, or where it would become too long.
 */
class BatchMessages
{
public:
    /** @param isRetained of live batches; a backlog never is */
    BatchMessages(const TopicTemplate &topic, bool isRetained);

    /** All of a batch. Those of one tag are in the order of its changes. */
    QVector<MqttMessage> of(const SinkBatch &batch);

private:
    /** What the messages of a tag have in common. */
    struct TagPart
    {
        QString topic;
        QByteArray key;   ///< its name as JSON; of a group
        int group = 0;    ///< index into m_groups
        int message = -1; ///< of its group: the last one that has this tag
    };
    struct Known
    {
        std::shared_ptr<const ChangeSource> source; ///< so that its address is no other's
        int part = 0;                               ///< index into m_parts
    };
    /** The message of a line and station that is being written. */
    struct Group
    {
        QString topic;
        QByteArray payload;
        int message = 0; ///< how many were finished, ever
    };

    int partOf(const std::shared_ptr<const ChangeSource> &source);
    int makePart(const ChangeSource &source);
    void forget();
    int groupOf(const ChangeSource &source);
    void append(const Change &change, SinkBatch::Age age);
    void finish(Group &group);
    MqttMessage messageAt(const QString &topic, const QByteArray &payload) const;

    TopicTemplate m_topic;
    bool m_isGrouped;
    bool m_isRetained;
    // From batch to batch.
    QHash<const ChangeSource *, Known> m_partOfSource;
    QHash<QString, int> m_partOfTopic; ///< by line, station and tag
    QHash<QString, int> m_groupOfName; ///< by line and station
    QVector<TagPart> m_parts;
    QVector<Group> m_groups;
    // Of the batch that is being made.
    bool m_retainsNow = false;
    QVector<MqttMessage> m_messages;
};

} // namespace cnet::gateway
