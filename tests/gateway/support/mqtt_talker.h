#pragma once

#include "gateway/mosquitto/mosquitto_connection.h"
#include "gateway/support/mosquitto_broker.h"

#include "host/time/system_clock.h"
#include "support/rows.h"
#include "support/text.h"

#include <QtTest>

namespace cnet::gateway {

/** Rows of a test that holds whichever is spoken. */
inline const Given<MqttConnectionSettings::Version> kVersions[] = {
    {"3.1.1", MqttConnectionSettings::Version::V311}, {"5", MqttConnectionSettings::Version::V5}};

inline MqttConnectionSettings settingsFor(
    const MosquittoBroker &broker,
    MqttConnectionSettings::Version version = MqttConnectionSettings::Version::V311)
{
    MqttConnectionSettings settings;
    settings.brokers = {{latin("127.0.0.1"), broker.port(), false}};
    settings.version = version;
    return settings;
}

inline MqttMessage messageOf(const char *topic, const QByteArray &payload)
{
    MqttMessage message;
    message.topic = latin(topic);
    message.payload = payload;
    return message;
}

/** A connection, and what it told. */
class Talker
{
public:
    explicit Talker(const MqttConnectionSettings &settings, Clock &clock = SystemClock::instance())
        : connection(settings, clock)
    {
        QObject::connect(&connection, &MqttConnection::connected, [this] { ++connects; });
        QObject::connect(&connection, &MqttConnection::lost,
                         [this](const QString &reason) { reasons.append(reason); });
        QObject::connect(&connection, &MqttConnection::published,
                         [this](int token) { tokens.append(token); });
        QObject::connect(&connection, &MqttConnection::received,
                         [this](const MqttMessage &message) { received.append(message); });
    }

    bool open(int broker = 0, const std::optional<MqttMessage> &will = {})
    {
        const int before = connects;
        connection.open(broker, will);
        return QTest::qWaitFor([&] { return connects > before || !reasons.isEmpty(); }, 10000) &&
               connects > before;
    }

    bool publish(const MqttMessage &message)
    {
        const int token = connection.publish(message);
        return token > 0 && QTest::qWaitFor([&] { return tokens.contains(token); }, 10000);
    }

    /** What it says of a broker that it cannot use; without the broker's name. */
    QString complaint()
    {
        const QString reason = open() ? latin(": it is connected") : reasons.value(0);
        return reason.mid(reason.indexOf(latin(": ")) + 2);
    }

    MosquittoConnection connection;
    int connects = 0;
    QStringList reasons;
    QVector<int> tokens;
    QVector<MqttMessage> received;
};

} // namespace cnet::gateway
