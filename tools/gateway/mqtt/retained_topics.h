#pragma once

#include "gateway/store/database.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QVector>

namespace cnet::gateway {

/** A topic of which a broker keeps a message for later subscribers. */
struct RetainedTopic
{
    enum class Kind { Gateway, Status, Value };

    QString topic;
    Kind kind = Kind::Status;
};

/**
 * What was retained at which broker, over restarts: a broker keeps it for ever, also of a line that
 * the configuration names no more, and whoever subscribes would take it for true. Each topic is
 * written down before the broker gets it.
 */
class RetainedTopics
{
public:
    /** @param path of the file; empty: it is kept in memory only */
    explicit RetainedTopics(QString path)
        : m_path(std::move(path))
    {}

    /** Those of this broker are meant from now on. @return why the file cannot be used, in words */
    QString setBroker(const QString &broker);

    /** Is told what may be retained; all else is gone. */
    void setCurrent(const QSet<QString> &topics);
    bool isCurrent(const QString &topic) const { return m_current.contains(topic); }

    /** Writes down what the broker is about to get. @return why that failed, in words */
    QString add(const QVector<RetainedTopic> &topics);

    /** What the broker has and is gone; statuses first. Nothing before setCurrent(). */
    QVector<RetainedTopic> gone() const;

    /** The broker has been told that they are gone. */
    void forget(const QVector<RetainedTopic> &topics);

private:
    QString open();
    QString store(const QVector<RetainedTopic> &topics);

    QString m_path;
    Database m_file;
    QString m_broker;
    QHash<QString, RetainedTopic::Kind> m_known; ///< at this broker
    QVector<RetainedTopic> m_unwritten;          ///< of these: the file could not take them
    QSet<QString> m_current;
    bool m_knowsCurrent = false;
};

} // namespace cnet::gateway
