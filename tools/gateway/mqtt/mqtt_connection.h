#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace cnet::gateway {

/** What is published, or came. */
struct MqttMessage
{
    QString topic;
    QByteArray payload;
    int qos = 1; ///< 0 to 2
    bool isRetained = false;
    // Of MQTT 5 alone; with 3.1.1 they are left out.
    QString contentType;
    QString responseTopic;
    QByteArray correlation;
    bool mayBeRefused = false; ///< by the broker, which counts as published then
};

/**
 * One connection to one broker at a time. It does not come back by itself: who uses it decides
 * when, with which will. All calls are made on one thread, which runs an event loop.
 */
class MqttConnection : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /**
     * Connects, which no call waits for: connected() or lost() follows, also at once.
     * @param broker index among those that were configured, 0 or more; beyond the last it begins
     * anew
     * @param will what the broker publishes when this connection is lost; nothing: no will
     */
    virtual void open(int broker, const std::optional<MqttMessage> &will) = 0;

    /** Whether a broker was reached since open(), so that it knows the will, or may know it. */
    virtual bool wasReached() const { return true; }

    /** Publishes. @return a token for published(), 1 or more; 0: there is no connection, or it took
     * it not */
    virtual int publish(const MqttMessage &message) = 0;

    /** @param filters topics, with + and #; heard from the next message on */
    virtual void subscribe(const QStringList &filters, int qos) = 0;

    /**
     * Says goodbye, so that the will is not published. No lost() follows; closed() does, when the
     * broker has ended the connection as well, or takes too long for that.
     */
    virtual void close() = 0;

    /** Ends it without a goodbye: the broker, if it is there at all, publishes the will. */
    virtual void abandon() { close(); }

Q_SIGNALS:
    void connected();
    /** @param reason in words, the same as long as it is the same trouble */
    void lost(const QString &reason);
    void closed();
    /** The broker has it: with QoS 0 it was handed to the network only. */
    void published(int token);
    void received(const cnet::gateway::MqttMessage &message);
};

} // namespace cnet::gateway
