#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/mosquitto/mosquitto_handle.h"
#include "gateway/mqtt/mqtt_connection.h"

#include "host/time/clock.h"

#include <QHostInfo>
#include <QSocketNotifier>
#include <QStringList>

#include <memory>

namespace cnet::gateway {

/**
 * A connection by libmosquitto, which the event loop drives: no thread of its own, and nothing
 * that waits. Names are looked up beforehand, since libmosquitto would wait for the name server.
 */
class MosquittoConnection : public MqttConnection
{
    Q_OBJECT

public:
    /** @param clock must outlive this object */
    MosquittoConnection(const MqttConnectionSettings &settings, Clock &clock);
    ~MosquittoConnection() override;

    void open(int broker, const std::optional<MqttMessage> &will) override;
    bool wasReached() const override { return m_wasReached; }
    int publish(const MqttMessage &message) override;
    void subscribe(const QStringList &filters, int qos) override;
    void close() override;
    void abandon() override { tearDown(); }

private:
    enum class State { Closed, LookingUp, Reaching, Greeting, Open };

    Q_SLOT void handleFound(const QHostInfo &info);
    Q_SLOT void deliver();
    void lookUp(const QString &host);
    void reachNext();
    void watchSocket();
    void handleReadable();
    void handleWritable();
    void handleLimit();
    bool isReached();
    void look(const QString &wrong);
    void watchRoom();
    void lose(const QString &reason);
    void tearDown();
    void awaitEnd(int socket);
    void readToTheEnd();
    void endFarewell();

    QVector<MqttBroker> m_brokers;
    MosquittoHandle m_handle;
    std::unique_ptr<Alarm> m_limit; ///< of reaching and greeting, then of what is due each second
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;
    State m_state = State::Closed;
    MqttBroker m_broker;
    std::optional<MqttMessage> m_will;
    QStringList m_addresses;   ///< of the broker, those that were not tried yet
    int m_lookup = -1;         ///< the one that is running
    bool m_wasReached = false; ///< since open()
    bool m_isDelivering = false;
    // Of a connection that was said goodbye to.
    std::unique_ptr<QSocketNotifier> m_farewell;
    std::unique_ptr<Alarm> m_farewellLimit;
    bool m_tellsClosed = false; ///< nobody has opened another one since
};

} // namespace cnet::gateway
