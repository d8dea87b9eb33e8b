#pragma once

#include "gateway/mqtt/mqtt_sink.h"

#include "gateway/support/changes.h"
#include "host/support/virtual_clock.h"
#include "support/text.h"

#include <QTemporaryDir>
#include <QtTest>

namespace cnet::gateway {

/** A broker that does what the test says. */
class FakeBroker : public MqttConnection
{
public:
    QVector<int> opened; ///< indexes of brokers
    std::optional<MqttMessage> will;
    QVector<MqttMessage> sent;
    QVector<int> tokens; ///< of those in `sent`
    QStringList filters;
    int closes = 0;
    int abandoned = 0;
    bool takesMessages = true;

    void open(int broker, const std::optional<MqttMessage> &wanted) override
    {
        opened.append(broker);
        will = wanted;
    }
    int publish(const MqttMessage &message) override
    {
        if (!takesMessages) {
            return 0;
        }
        sent.append(message);
        tokens.append(++m_last);
        return m_last;
    }
    void subscribe(const QStringList &wanted, int /*qos*/) override { filters += wanted; }
    void close() override
    {
        ++closes;
        Q_EMIT closed();
    }

    void abandon() override { ++abandoned; }

    /** Confirms all that was sent. */
    void confirmAll()
    {
        while (!tokens.isEmpty()) {
            Q_EMIT published(tokens.takeFirst());
        }
    }

    QStringList payloads(const char *topic) const
    {
        QStringList found;
        for (const MqttMessage &message : sent) {
            if (message.topic == QLatin1String(topic)) {
                found.append(QString::fromUtf8(message.payload));
            }
        }
        return found;
    }

private:
    int m_last = 0;
};

inline TopicTemplate templateOf(const char *text)
{
    QString error;
    return TopicTemplate::parse(latin(text), latin("plant"), error).value_or(TopicTemplate());
}

inline SinkBatch batchOf(qint64 number, const QVector<qint64> &values)
{
    SinkBatch batch;
    batch.number = number;
    const auto source = sourceOf("a");
    for (const qint64 value : values) {
        batch.changes.append(changeOf(source, value));
    }
    return batch;
}

inline LineStatus statusOf(const char *line, std::optional<int> station, const char *cause)
{
    LineStatus status;
    status.line = latin(line);
    status.station = station;
    status.state = *cause == 0 ? LineStatus::State::Good : LineStatus::State::Bad;
    status.cause = latin(cause);
    status.atMs = 5;
    return status;
}

/** A sink with a broker that does what the test says, in virtual time, and what it told. */
class MqttSinkFixture : public QObject
{
protected:
    /** Back to the usual settings, with a sink of its own. */
    void begin()
    {
        m_settings = MqttSettings();
        m_settings.connection.brokers = {{latin("one"), 1883, false}, {latin("two"), 1883, false}};
        m_settings.topic = templateOf("{site}/{line}/{station}/{tag}");
        m_settings.status = templateOf("{site}/status");
        m_settings.inFlight = 100;
        m_directory = std::make_unique<QTemporaryDir>();
        m_settings.retainedFile = m_directory->filePath(latin("retained"));
        make();
    }

    /** Another sink with the settings as they are. */
    void make()
    {
        auto connection = std::make_unique<FakeBroker>();
        m_connection = connection.get();
        m_sink.reset();
        m_sink = std::make_unique<MqttSink>(m_settings, std::move(connection), m_clock);
        m_safe.clear();
        m_failures.clear();
        m_asked.clear();
        m_said.clear();
        m_ready = 0;
        m_ended = 0;
        connect(m_sink.get(), &Sink::ready, this, [this] { ++m_ready; });
        connect(m_sink.get(), &Sink::ended, this, [this] { ++m_ended; });
        connect(m_sink.get(), &Sink::safe, this, [this](qint64 number) { m_safe.append(number); });
        connect(m_sink.get(), &Sink::failed, this,
                [this](const QString &reason) { m_failures.append(reason); });
        connect(m_sink.get(), &Sink::noticed, this,
                [this](const QString &text) { m_said.append(text); });
        connect(m_sink.get(), &Sink::asked, this,
                [this](const WriteRequest &request) { m_asked.append(request); });
    }

    void takeCommands()
    {
        m_settings.commands = templateOf("{site}/write/{line}/{tag}/set");
        m_settings.answers = templateOf("{site}/write/{line}/{tag}/set/answer");
        make();
        connectSink();
    }

    void connectSink()
    {
        m_sink->begin(latin("ledger"));
        Q_EMIT m_connection->connected();
        m_connection->confirmAll();
        m_connection->sent.clear();
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    VirtualClock m_clock;
    MqttSettings m_settings;
    std::unique_ptr<MqttSink> m_sink;
    FakeBroker *m_connection = nullptr; ///< the sink's
    QVector<qint64> m_safe;
    QStringList m_failures;
    QStringList m_said;
    QVector<WriteRequest> m_asked;
    int m_ready = 0;
    int m_ended = 0;
};

} // namespace cnet::gateway
