#pragma once

#include "gateway/mqtt/mqtt_connection.h"
#include "sparkplug/checker/checker.h"

#include <utility>

namespace cnet::gateway {

/** A connection to a broker that does what the test says, and keeps what went over it. */
class FakeConnection : public MqttConnection
{
public:
    enum class Manner { Accepts, LeavesWaiting, IsAway };

    Manner manner = Manner::Accepts;
    bool takesMessages = true;
    int broker = -1;
    int opened = 0;
    bool isOpen = false;
    spcheck::Stream stream;

    void open(int wanted, const std::optional<MqttMessage> &will) override
    {
        ++opened;
        broker = wanted;
        if (manner == Manner::IsAway) {
            Q_EMIT lost(QLatin1String("nobody is there"));
            return;
        }
        spcheck::Packet packet;
        packet.kind = spcheck::Packet::Kind::Connect;
        if (will) {
            packet.will = messageOf(*will);
        }
        stream.append(packet);
        if (manner == Manner::Accepts) {
            accept();
        }
    }

    bool wasReached() const override { return manner != Manner::IsAway; }

    int publish(const MqttMessage &message) override
    {
        if (!isOpen || !takesMessages) {
            return 0;
        }
        spcheck::Packet packet;
        packet.message = messageOf(message);
        stream.append(packet);
        ++m_token;
        if (message.qos > 0) {
            m_unconfirmed.append(m_token);
        }
        return m_token;
    }

    void subscribe(const QStringList &filters, int qos) override
    {
        spcheck::Packet packet;
        packet.kind = spcheck::Packet::Kind::Subscribe;
        for (const QString &filter : filters) {
            packet.filters.append({filter.toUtf8(), qos});
        }
        stream.append(packet);
    }

    void close() override
    {
        if (std::exchange(isOpen, false)) {
            addEvent(spcheck::Packet::Kind::Disconnect);
        }
    }

    void accept()
    {
        isOpen = true;
        Q_EMIT connected();
    }
    void lose(const char *reason = "the connection is lost")
    {
        if (std::exchange(isOpen, false)) {
            addEvent(spcheck::Packet::Kind::Closed);
        }
        Q_EMIT lost(QLatin1String(reason));
    }
    /** Confirms all that waits for it, or what waited at some time. */
    void confirm() { confirm(std::exchange(m_unconfirmed, {})); }
    void confirm(const QVector<int> &tokens)
    {
        for (const int token : tokens) {
            Q_EMIT published(token);
        }
    }
    QVector<int> takeUnconfirmed() { return std::exchange(m_unconfirmed, {}); }

    void send(const QByteArray &topic, const QByteArray &payload, bool isRetained = false)
    {
        spcheck::Packet packet;
        packet.from = spcheck::Packet::From::Broker;
        packet.message = {topic, payload, 1, isRetained};
        stream.append(packet);
        MqttMessage message;
        message.topic = QString::fromUtf8(topic);
        message.payload = payload;
        message.isRetained = isRetained;
        Q_EMIT received(message);
    }

    /** Topics from some event on, without what they have in common: "NBIRTH DDATA/press.1". */
    QString topics(int from = 0) const
    {
        QStringList topics;
        for (const spcheck::Packet &packet : stream.mid(from)) {
            const QList<QByteArray> levels = packet.message.topic.split('/');
            const bool isOwn = packet.kind == spcheck::Packet::Kind::Publish &&
                               packet.from == spcheck::Packet::From::Node;
            if (isOwn && levels.first() == "spBv1.0") {
                const QByteArray device = levels.size() > 4 ? '/' + levels.at(4) : QByteArray();
                topics.append(QString::fromUtf8(levels.value(2) + device));
            } else if (isOwn) {
                topics.append(QLatin1String("mark"));
            } else if (packet.kind == spcheck::Packet::Kind::Disconnect) {
                topics.append(QLatin1String("goodbye"));
            }
        }
        return topics.join(QLatin1Char(' '));
    }

    /** What the last message says. */
    spcheck::ReadMessage last() const
    {
        for (int i = int(stream.size()) - 1; i >= 0; --i) {
            if (stream.at(i).message.topic.startsWith("spBv1.0/plant/")) {
                return spcheck::readMessage(stream.at(i).message.payload)
                    .value_or(spcheck::ReadMessage());
            }
        }
        return {};
    }

    /** Rules that are broken. */
    QStringList broken(const char *host = "") const
    {
        spcheck::Checker checker({"plant", "gate", host});
        checker.see(stream);
        checker.finish();
        QStringList lines = checker.report();
        return lines.filter(QLatin1String("fail "));
    }

private:
    static spcheck::Message messageOf(const MqttMessage &message)
    {
        return {message.topic.toUtf8(), message.payload, message.qos, message.isRetained};
    }
    void addEvent(spcheck::Packet::Kind kind)
    {
        spcheck::Packet packet;
        packet.kind = kind;
        stream.append(packet);
    }

    int m_token = 0;
    QVector<int> m_unconfirmed;
};

} // namespace cnet::gateway
