#pragma once

#include "gateway/mqtt/mqtt_connection.h"
#include "gateway/sinks/sink.h"
#include "gateway/sparkplug/device_teller.h"
#include "gateway/sparkplug/node_model.h"
#include "gateway/sparkplug/sparkplug_session.h"

#include <memory>
#include <optional>

namespace cnet::gateway {

/**
 * Tells changes by Sparkplug B, as an edge node with a device for each line and station.
 *
 * Data goes with QoS 0, which nobody confirms. Behind the messages of each batch goes one of QoS 1:
 * they travel in one TCP connection, which keeps their order, so that who confirms the last one has
 * read those before it.
 *
 * What it has to do for a whole plant it does bit by bit, a turn of the event loop each.
 */
class SparkplugSink : public Sink
{
    Q_OBJECT

public:
    /** @param clock must outlive the sink */
    SparkplugSink(const SparkplugSettings &settings, std::unique_ptr<MqttConnection> connection,
                  Clock &clock);
    ~SparkplugSink() override;

    void begin(const QString &ledger) override;
    void take(const QVector<SinkBatch> &batches) override;
    int window() const override;
    /** A backlog is told as history. */
    Order order() const override { return Order::LiveFirst; }
    void caughtUp() override;
    void missed() override;
    void tell(const LineStatus &status) override;
    void answer(const WriteAnswer &answer) override;
    void end() override;

private:
    struct Mark
    {
        int token = 0;
        qint64 batch = 0;
    };

    void handleBorn();
    void handleFailure(const QString &reason);
    void handleMarked(int token);
    void handleCommand(const QString &device, const std::optional<QVector<CameMetric>> &metrics,
                       bool isRetained);
    bool hasWork() const;
    void work();
    void goOn();
    void tellMore(int most);
    void tellBatch(const SinkBatch &batch);
    void wantLiving();
    void wantAllTold();
    void setAnswerMetric(const QString &text);

    SparkplugSettings m_settings;
    Clock &m_clock;
    std::unique_ptr<MqttConnection> m_connection;
    SparkplugSession m_session;
    NodeModel m_model;
    DeviceTeller m_devices;
    std::unique_ptr<Alarm> m_turn;   ///< goes on with what waits
    std::unique_ptr<Alarm> m_spread; ///< connects again
    QVector<Mark> m_marks;           ///< in the order in which they went
    QString m_ledger;
    Metric m_answer;          ///< to the last command
    bool m_isTurnSet = false; ///< m_turn is
    bool m_isReady = false;
    bool m_isBegun = false;
    bool m_wasAway = false; ///< it was at a broker, or tried to be
    // What waits, in the order in which it goes.
    QVector<int> m_toBear;     ///< devices
    QVector<Metric> m_answers; ///< of the node
    QVector<SinkBatch> m_held; ///< without changes: some were lost
    bool m_isCaughtUp = false; ///< behind those, and hosts were not told yet
    QVector<int> m_toTell;     ///< devices of which hosts may know something outdated
};

} // namespace cnet::gateway
