#include "gateway/mqtt/gone_topics.h"

#include <utility>

namespace cnet::gateway {

namespace {

// Not confirmed at a time.
constexpr int kMostOpen = 500;

} // namespace

QString GoneTopics::news(const QString &wrong)
{
    const bool isNew = !wrong.isEmpty() && wrong != m_toldWrong;
    m_toldWrong = wrong;
    return isNew ? wrong : QString();
}

QString GoneTopics::begin(const QString &broker)
{
    stop();
    m_isConnected = true;
    const QString wrong = m_retained.setBroker(broker);
    m_gone = m_retained.gone();
    send();
    return news(wrong);
}

QString GoneTopics::note(const QVector<RetainedTopic> &topics)
{
    const QString wrong = m_retained.add(topics);
    return wrong.isEmpty() ? QString() : news(wrong);
}

void GoneTopics::setCurrent(const QSet<QString> &topics)
{
    m_retained.setCurrent(topics);
    if (!std::exchange(m_isWatching, true) && m_isConnected) {
        m_gone = m_retained.gone();
        send();
    }
}

void GoneTopics::send()
{
    // Whoever publishes may lose the connection, and stop().
    while (m_next < m_gone.size() && m_open.size() < kMostOpen) {
        const RetainedTopic topic = m_gone.at(m_next++);
        const int token = m_retained.isCurrent(topic.topic)
                              ? 0
                              : m_connection.publish(m_board.gone(topic, m_clock.wallMs()));
        if (token > 0) {
            m_open.insert(token, topic);
        }
    }
}

bool GoneTopics::handlePublished(int token)
{
    const auto found = m_open.constFind(token);
    if (found == m_open.constEnd()) {
        return false;
    }
    m_finished.append(*found);
    m_open.erase(found);
    send();
    if (m_open.isEmpty()) {
        m_retained.forget(std::exchange(m_finished, {}));
    }
    return true;
}

void GoneTopics::stop()
{
    m_isConnected = false;
    m_gone.clear();
    m_next = 0;
    m_open.clear();
    m_finished.clear();
}

} // namespace cnet::gateway
