#pragma once

#include "gateway/sparkplug/sparkplug_sink.h"
#include "gateway/support/changes.h"
#include "host/support/virtual_clock.h"
#include "sparkplug/support/fake_connection.h"
#include "sparkplug/support/message_writer.h"

#include <QMap>

#include <memory>

namespace cnet::gateway {

/** A sink with a broker that does what the test says, and what a test hands to it. */
class SparkplugNode
{
public:
    void make(const SparkplugSettings &more = SparkplugSettings())
    {
        SparkplugSettings settings = more;
        settings.group = QLatin1String("plant");
        settings.node = QLatin1String("gate");
        m_number = m_seen = m_ready = 0;
        m_safe.clear();
        m_asked.clear();
        m_confirms = true;
        m_sources.clear();
        auto connection = std::make_unique<FakeConnection>();
        m_connection = connection.get();
        m_sink = std::make_unique<SparkplugSink>(settings, std::move(connection), m_clock);
        QObject *const own = m_sink.get();
        QObject::connect(m_sink.get(), &Sink::ready, own, [this] { ++m_ready; });
        QObject::connect(m_sink.get(), &Sink::safe, own,
                         [this](qint64 number) { m_safe.append(number); });
        QObject::connect(m_sink.get(), &Sink::asked, own,
                         [this](const WriteRequest &request) { m_asked.append(request); });
        begin();
    }

    void begin() { m_sink->begin(QLatin1String("ledger")); }

    void take(const QVector<Change> &changes, SinkBatch::Age age = SinkBatch::Age::Live,
              bool isOfThisRun = true)
    {
        m_sink->take({{++m_number, changes, age, isOfThisRun}});
        if (m_confirms) {
            m_connection->confirm();
        }
    }

    Change change(const char *tag, const Scalar &value, Quality quality = Quality::Good)
    {
        if (!m_sources.contains(tag)) {
            m_sources.insert(tag, sourceOf(tag));
        }
        Change change = changeOf(m_sources.value(tag), value, m_clock.wallMs());
        change.quality = quality;
        return change;
    }

    void status(LineStatus::State state, std::optional<int> station = 1)
    {
        m_sink->tell({QLatin1String("press"), station, state, QString(), m_clock.wallMs()});
    }

    /** What was said since it was asked for last. */
    QString topics()
    {
        QString topics = m_connection->topics(m_seen);
        m_seen = int(m_connection->stream.size());
        return topics;
    }

    static QByteArray command(const QByteArray &name, std::optional<quint64> alias,
                              spcheck::Field field, quint64 number)
    {
        spcheck::ReadMetric metric;
        if (!name.isEmpty()) {
            metric.name = name;
        }
        metric.alias = alias;
        metric.field = field;
        metric.number = number;
        return spcheck::MessageWriter::write({1U, std::nullopt, {metric}});
    }

    void askForRebirth()
    {
        m_connection->send("spBv1.0/plant/NCMD/gate",
                           command("Node Control/Rebirth", std::nullopt, spcheck::Field::Truth, 1));
    }

    /** Somebody wanted to write a tag. */
    void answer()
    {
        WriteAnswer answer;
        answer.line = QLatin1String("press");
        answer.tag = QLatin1String("a");
        answer.reason = QLatin1String("nobody may write it");
        m_sink->answer(answer);
    }

    VirtualClock m_clock;
    FakeConnection *m_connection = nullptr; ///< the sink's
    std::unique_ptr<SparkplugSink> m_sink;
    QMap<QByteArray, std::shared_ptr<ChangeSource>> m_sources;
    qint64 m_number = 0; ///< of the last batch
    int m_seen = 0;
    int m_ready = 0;
    bool m_confirms = true; ///< the broker does, at once
    QVector<qint64> m_safe;
    QVector<WriteRequest> m_asked;
};

} // namespace cnet::gateway
