#pragma once

#include "gateway/mqtt/mqtt_connection.h"
#include "gateway/mqtt/retained_topics.h"
#include "gateway/mqtt/status_board.h"

#include "host/time/clock.h"

#include <QHash>

namespace cnet::gateway {

/**
 * Tells a broker what became of the lines, stations and tags that it retained something of and that
 * are gone, and forgets them when it has confirmed that.
 */
class GoneTopics
{
public:
    /**
     * @param path of the file that keeps what is retained
     * @param connection,board,clock must outlive this object
     */
    GoneTopics(const QString &path, MqttConnection &connection, const StatusBoard &board,
               Clock &clock)
        : m_retained(path)
        , m_connection(connection)
        , m_board(board)
        , m_clock(clock)
    {}

    // Each returns why what is retained cannot be written down, in words, once; mostly nothing.

    /** A broker is connected: tells it. */
    QString begin(const QString &broker);
    /** Is about to be retained. */
    QString note(const QVector<RetainedTopic> &topics);

    /** What may be retained. Of what leaves it while a broker is connected the lines tell. */
    void setCurrent(const QSet<QString> &topics);

    /** @return whether it was one of these */
    bool handlePublished(int token);

    /** The broker is gone, too, or there is no time for the rest. */
    void stop();

    /** The broker has to confirm something. */
    bool isBusy() const { return !m_open.isEmpty(); }

private:
    void send();
    QString news(const QString &wrong);

    RetainedTopics m_retained;
    MqttConnection &m_connection;
    const StatusBoard &m_board;
    Clock &m_clock;
    QString m_toldWrong;
    bool m_isConnected = false;
    bool m_isWatching = false;
    QVector<RetainedTopic> m_gone;     ///< to be told, from m_next on
    int m_next = 0;                    ///< into m_gone
    QHash<int, RetainedTopic> m_open;  ///< not confirmed, by token
    QVector<RetainedTopic> m_finished; ///< confirmed
};

} // namespace cnet::gateway
