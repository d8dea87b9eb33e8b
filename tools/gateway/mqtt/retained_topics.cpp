#include "gateway/mqtt/retained_topics.h"

#include <algorithm>

namespace cnet::gateway {

namespace {

using Kind = RetainedTopic::Kind;

const char kTable[] = "CREATE TABLE IF NOT EXISTS retained (broker TEXT NOT NULL,"
                      " topic TEXT NOT NULL, kind INTEGER NOT NULL, PRIMARY KEY (broker, topic))"
                      " WITHOUT ROWID;";

QString failure(const QString &path, const StoreError &failed)
{
    return failed.isNone() ? QString()
                           : QString::fromLatin1("cannot keep in %1 what is retained: %2")
                                 .arg(path, failed.text);
}

} // namespace

QString RetainedTopics::open()
{
    if (m_path.isEmpty() || m_file.isOpen()) {
        return QString();
    }
    StoreError failed = m_file.open(m_path, Database::Durability::Full);
    if (failed.isNone()) {
        failed = m_file.run(kTable);
    }
    if (!failed.isNone()) {
        m_file.close();
    }
    return failure(m_path, failed);
}

QString RetainedTopics::setBroker(const QString &broker)
{
    if (broker != m_broker) {
        m_broker = broker;
        m_known.clear();
        m_unwritten.clear();
    }
    QString error = open();
    if (!m_file.isOpen()) {
        return error;
    }
    Statement read(m_file, "SELECT topic, kind FROM retained WHERE broker = ?");
    read.bind(1, m_broker);
    while (read.step() == Statement::Step::Row) {
        m_known.insert(read.text(0), static_cast<Kind>(read.number(1)));
    }
    return store({});
}

void RetainedTopics::setCurrent(const QSet<QString> &topics)
{
    m_current = topics;
    m_knowsCurrent = true;
}

QString RetainedTopics::add(const QVector<RetainedTopic> &topics)
{
    QVector<RetainedTopic> fresh;
    for (const RetainedTopic &topic : topics) {
        // What is told of something that is gone is the last word of it.
        const bool isGone = m_knowsCurrent && !m_current.contains(topic.topic);
        if (!isGone && !m_known.contains(topic.topic)) {
            m_known.insert(topic.topic, topic.kind);
            fresh.append(topic);
        }
    }
    return fresh.isEmpty() ? QString() : store(fresh);
}

QString RetainedTopics::store(const QVector<RetainedTopic> &topics)
{
    if (m_path.isEmpty()) {
        return QString();
    }
    m_unwritten += topics;
    if (!m_file.isOpen() || m_unwritten.isEmpty()) {
        return QString(); // that it cannot be opened was said
    }
    Transaction transaction(m_file);
    Statement insert(m_file, "INSERT OR REPLACE INTO retained VALUES (?, ?, ?)");
    for (const RetainedTopic &topic : qAsConst(m_unwritten)) {
        insert.bind(1, m_broker).bind(2, topic.topic).bind(3, static_cast<qint64>(topic.kind));
        if (!insert.run()) {
            return failure(m_path, m_file.error());
        }
    }
    const StoreError failed = transaction.commit();
    if (failed.isNone()) {
        m_unwritten.clear();
    }
    return failure(m_path, failed);
}

QVector<RetainedTopic> RetainedTopics::gone() const
{
    QVector<RetainedTopic> gone;
    if (!m_knowsCurrent) {
        return gone;
    }
    for (auto it = m_known.begin(); it != m_known.end(); ++it) {
        if (!m_current.contains(it.key())) {
            gone.append({it.key(), it.value()});
        }
    }
    std::stable_sort(gone.begin(), gone.end(),
                     [](const RetainedTopic &left, const RetainedTopic &right) {
                         return left.kind < right.kind;
                     });
    return gone;
}

void RetainedTopics::forget(const QVector<RetainedTopic> &topics)
{
    if (topics.isEmpty()) {
        return;
    }
    Transaction transaction(m_file);
    Statement remove(m_file, "DELETE FROM retained WHERE broker = ? AND topic = ?");
    for (const RetainedTopic &topic : topics) {
        if (!m_current.contains(topic.topic)) {
            m_known.remove(topic.topic);
            remove.bind(1, m_broker).bind(2, topic.topic).run();
        }
    }
    // Where it fails they are told to be gone once more.
    transaction.commit();
}

} // namespace cnet::gateway
