#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/mqtt/mqtt_connection.h"
#include "gateway/sparkplug/bd_seq.h"
#include "gateway/sparkplug/host_state.h"
#include "gateway/sparkplug/payload_codec.h"
#include "gateway/sparkplug/sparkplug_names.h"

#include "host/time/clock.h"

#include <QObject>
#include <QSet>

#include <memory>
#include <optional>

namespace cnet::gateway {

/**
 * The rules by which an edge node speaks: which message may come when, with which numbers. What
 * the messages tell is for others to decide.
 */
class SparkplugSession : public QObject
{
    Q_OBJECT

public:
    /** @param connection,clock must outlive this object */
    SparkplugSession(const SparkplugSettings &settings, MqttConnection &connection, Clock &clock);

    /**
     * Connects where it is not connected: born() or failed() follows. While it waits for its host
     * it stays connected through failed(), and is born as soon as the host is there; when it is
     * born already, nothing follows.
     */
    void begin();

    /** Says that the node dies, and goodbye. */
    void end();

    bool isBorn() const { return m_state == State::Born; }
    /** True where begin() would connect. */
    bool isOff() const { return m_state == State::Off; }

    /** What births of the node tell besides what the rules want; each with name and datatype. */
    void setNodeMetrics(const QVector<Metric> &metrics) { m_nodeMetrics = metrics; }

    // While it is born; without effect when it is not.
    void tellNode(const QVector<Metric> &changed);
    void bearDevice(const QString &device, const QVector<Metric> &all);
    void tellDevice(const QString &device, const QVector<Metric> &changed);
    void killDevice(const QString &device);

    /** @return a token for marked(); 0: it was not born */
    int mark();

Q_SIGNALS:
    /** The node was born, also anew: no device of it lives until bearDevice(). */
    void born();
    /** @param reason in words, the same as long as it is the same trouble */
    void failed(const QString &reason);
    /** The broker has all that came before this mark(). */
    void marked(int token);
    /** @param metrics nothing: what came is no message */
    void commanded(const QString &device,
                   const std::optional<QVector<cnet::gateway::CameMetric>> &metrics,
                   bool isRetained);

private:
    enum class State { Off, Connecting, Waiting, Born };

    MqttMessage death() const;
    Metric bdSeqMetric() const;
    void handleConnected();
    void handleLost(const QString &reason);
    void handleReceived(const MqttMessage &message);
    void handleState(const QByteArray &payload);
    void handleNodeCommand(const MqttMessage &message);
    void handlePublished(int token);
    void requestBirth();
    void bear();
    void sendNumbered(const QString &topic, const QVector<Metric> &metrics);
    void leave(const QString &reason);
    void sayStillWaiting();
    void handleSilence();

    SparkplugSettings m_settings;
    MqttConnection &m_connection;
    Clock &m_clock;
    SparkplugTopics m_topics;
    BdSeq m_bdSeq;
    HostState m_host;
    QVector<Metric> m_nodeMetrics;
    std::unique_ptr<Alarm> m_waits;   ///< for the host
    std::unique_ptr<Alarm> m_silence; ///< the broker answers nothing
    std::unique_ptr<Alarm> m_rebirth; ///< a birth that was asked for too soon after the last one
    QSet<int> m_marks;
    State m_state = State::Off;
    bool m_isNumberUsed = true;   ///< a broker may have seen it
    bool m_isRebirthSoon = false; ///< one was a moment ago: the next one waits for m_rebirth
    bool m_isRebirthWanted = false;
    int m_broker = 0;
    int m_seq = 0; ///< of the next message
};

} // namespace cnet::gateway
