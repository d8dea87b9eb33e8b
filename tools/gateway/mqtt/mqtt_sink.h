#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/mqtt/batch_messages.h"
#include "gateway/mqtt/gone_topics.h"
#include "gateway/mqtt/status_board.h"
#include "gateway/sinks/sink.h"

#include "host/time/clock.h"

#include <QHash>

#include <deque>
#include <memory>

namespace cnet::gateway {

/**
 * Publishes changes at an MQTT broker with QoS 1. A batch is safe when the broker has confirmed
 * each of its messages. It tells how lines and stations do on retained topics, and asks for what
 * comes on command topics, where there are any.
 */
class MqttSink : public Sink
{
    Q_OBJECT

public:
    /** @param clock must outlive the sink */
    MqttSink(const MqttSettings &settings, std::unique_ptr<MqttConnection> connection,
             Clock &clock);
    ~MqttSink() override;

    void begin(const QString &ledger) override;
    void take(const QVector<SinkBatch> &batches) override;
    int window() const override;
    /** Who watches wants to know how things are now. */
    Order order() const override { return Order::LiveFirst; }
    void tell(const LineStatus &status) override;
    void watch(const QVector<TopicNames> &names) override;
    void answer(const WriteAnswer &answer) override;
    void end() override;

private:
    /** A batch whose messages are under way. */
    struct Sent
    {
        qint64 number = 0;
        int open = 0; ///< messages that are not confirmed
    };

    int silenceMs() const;
    void openNext();
    void handleConnected();
    void handleLost(const QString &reason);
    void handlePublished(int token);
    void handleReceived(const MqttMessage &message);
    void sendMore();
    bool nextBatch();
    void confirm();
    void sendAside(const MqttMessage &message);
    void sendRetained(const MqttMessage &message, RetainedTopic::Kind kind);
    void notice(const QString &wrong);
    void closeWhenQuiet();
    void fail(const QString &reason);
    bool isOwnTopic(const QString &topic) const;

    MqttSettings m_settings;
    Clock &m_clock;
    std::unique_ptr<MqttConnection> m_connection;
    std::unique_ptr<Alarm> m_silence; ///< no confirmation comes
    BatchMessages m_messages;
    StatusBoard m_board;
    GoneTopics m_gone;
    int m_broker = 0;      ///< the one that is tried, or that is connected
    int m_firstBroker = 0; ///< that is tried next time: another one than that which was lost
    QStringList m_reasons; ///< of those that were tried in vain
    bool m_isConnected = false;
    std::deque<SinkBatch> m_waiting;   ///< whose messages are not made yet
    QVector<MqttMessage> m_next;       ///< of the batch that was begun last
    int m_nextIndex = 0;               ///< into m_next: what is to be sent
    std::deque<Sent> m_sent;           ///< oldest first
    QHash<int, qint64> m_batchOfToken; ///< messages of batches that are not confirmed
    int m_aside = 0;                   ///< other messages that are not confirmed
    bool m_isSending = false;
    bool m_isEnding = false;
};

} // namespace cnet::gateway
