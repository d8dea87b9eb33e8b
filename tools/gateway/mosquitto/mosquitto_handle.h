#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/mosquitto/tls_context.h"
#include "gateway/mqtt/mqtt_connection.h"

#include <QSet>
#include <QVector>

#include <optional>

struct mosquitto;
struct mosquitto_message;
struct mqtt5__property;

namespace cnet::gateway {

/** What a broker said and is not acted on yet. */
struct BrokerNews
{
    bool isGreeted = false;
    QString refusal; ///< why it wants no more of us, in words; empty: it does
    QVector<int> published;
    QVector<MqttMessage> received;
};

/**
 * libmosquitto for one connection, never used for a second one: it would bring along the will and
 * the messages of the first. None of it waits, and what the broker said stands in `news` when a
 * call has returned, so that nobody acts within one.
 */
class MosquittoHandle
{
public:
    explicit MosquittoHandle(const MqttConnectionSettings &settings);
    ~MosquittoHandle() { end(); }
    MosquittoHandle(const MosquittoHandle &) = delete;
    MosquittoHandle &operator=(const MosquittoHandle &) = delete;

    /** Makes everything ready. @return what is wrong, in words; empty: nothing */
    QString prepare(const MqttBroker &broker, const std::optional<MqttMessage> &will);

    /** @param address no name, which it would wait for. @return what is wrong, in words */
    QString reach(const QByteArray &address);

    /** Lets go of it, without a goodbye. */
    void end();
    void sayGoodbye();

    bool isThere() const { return m_handle != nullptr; }
    int socket() const;
    bool wantsToWrite() const;

    // Each returns what is wrong in words; empty: nothing.
    QString read();
    QString write();
    QString doWhatIsDue(); ///< once a second
    QString subscribe(const QString &filter, int qos);

    /** @return a token; 0: it took it not, and `wrong` says so where the connection is lost */
    int publish(const MqttMessage &message, QString &wrong);

    BrokerNews news;

private:
    static void handleConnack(mosquitto *own, void *object, int code, int flags,
                              const mqtt5__property *properties);
    static void handleDisconnect(mosquitto *own, void *object, int code,
                                 const mqtt5__property *properties);
    static void handlePublish(mosquitto *own, void *object, int id, int code,
                              const mqtt5__property *properties);
    static void handleMessage(mosquitto *own, void *object, const mosquitto_message *message,
                              const mqtt5__property *properties);
    static void handleSubscribe(mosquitto *own, void *object, int id, int count, const int *granted,
                                const mqtt5__property *properties);

    void setOptions();
    bool setWill(const MqttMessage &will);
    QString setTls();
    QString setLogin();
    QString textOf(int code) const;
    bool isVersion5() const { return m_settings.version == MqttConnectionSettings::Version::V5; }
    int tokenOf(int id) const { return (m_uses & 0x7fff) << 16 | id; }

    MqttConnectionSettings m_settings;
    MqttBroker m_broker;
    TlsContext m_tls;
    mosquitto *m_handle = nullptr;
    QSet<int> m_mayBeRefused; ///< ids of what is under way
    int m_uses = 0;           ///< so that no token is one of an earlier connection
};

} // namespace cnet::gateway
