#include "load.h"

#include "gateway/change/batcher.h"
#include "gateway/delivery/sink_feed.h"
#include "gateway/mqtt/mqtt_sink.h"
#include "gateway/sinks/sqlite_sink.h"

#include "host/time/system_clock.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cstdio>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define CALLGRIND_TOGGLE_COLLECT
#define CALLGRIND_DUMP_STATS_AT(name)
#endif

// What a change costs from its line to its sink, in instructions: into a batch, into the ledger,
// out of it again, made into what the sink says, confirmed, and deleted. Within one thread, and
// with a broker that is none, so that the count is the same on every run.

using namespace cnet;
using namespace cnet::gateway;

namespace {

constexpr int kTags = 5000;
constexpr int kBatches = 1;
constexpr int kChangesOfBatch = 5000;

/** Confirms whatever it is given, when the event loop comes round. */
class NoNetwork : public MqttConnection
{
public:
    void open(int /*broker*/, const std::optional<MqttMessage> & /*will*/) override
    {
        Q_EMIT connected();
    }
    int publish(const MqttMessage & /*message*/) override
    {
        const int token = ++m_tokens;
        QMetaObject::invokeMethod(
            this, [this, token] { Q_EMIT published(token); }, Qt::QueuedConnection);
        return token;
    }
    void subscribe(const QStringList & /*filters*/, int /*qos*/) override {}
    void close() override {}

private:
    int m_tokens = 0;
};

/** Takes everything at once: what is left is the way to it. */
class NullSink : public Sink
{
public:
    void begin(const QString & /*ledger*/) override { Q_EMIT ready(); }
    void take(const QVector<SinkBatch> &batches) override { Q_EMIT safe(batches.last().number); }
    int window() const override { return 1; }
};

class Way
{
public:
    Way(std::unique_ptr<Sink> sink, const QString &folder)
        : m_ledger(m_clock)
        , m_batcher(m_clock, BatchBounds{kChangesOfBatch, 1 << 30, 60000},
                    [this](const LedgerBatch &batch) { store(batch); })
    {
        const QString name = QLatin1String("sink");
        const StoreError failed = m_ledger.open(folder + QLatin1String("/ledger.sqlite"),
                                                Database::Durability::Full, LedgerBounds(), {name});
        if (!failed.isNone()) {
            qFatal("%s", qPrintable(failed.text));
        }
        m_feed = std::make_unique<SinkFeed>(name, std::move(sink), m_ledger, m_clock,
                                            Say([](const QString &) {}));
        m_feed->start();
    }

    void bring(int batches)
    {
        for (int i = 0; i < batches * kChangesOfBatch; ++i) {
            m_batcher.add(m_load.next());
        }
    }

private:
    void store(const LedgerBatch &batch)
    {
        QVector<LedgerBatch> batches{batch};
        const StoreError failed = m_ledger.commit(batches);
        if (!failed.isNone()) {
            qFatal("%s", qPrintable(failed.text));
        }
        m_feed->wake();
        while (m_ledger.confirmed(m_feed->name()) < batches.last().number) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    Clock &m_clock = SystemClock::instance();
    Load m_load{kTags};
    Ledger m_ledger;
    Batcher m_batcher;
    std::unique_ptr<SinkFeed> m_feed;
};

std::unique_ptr<Sink> mqttSink(const char *topic)
{
    QString error;
    MqttSettings settings;
    const auto parsed = [&error](const char *text) {
        return TopicTemplate::parse(QString::fromLatin1(text), QLatin1String("plant"), error)
            .value_or(TopicTemplate());
    };
    settings.topic = parsed(topic);
    settings.status = parsed("{site}/status");
    settings.inFlight = 500;
    settings.connection.brokers = {MqttBroker()};
    return std::make_unique<MqttSink>(settings, std::make_unique<NoNetwork>(),
                                      SystemClock::instance());
}

void count(const char *name, std::unique_ptr<Sink> sink)
{
    const QTemporaryDir folder;
    Way way(std::move(sink), folder.path());
    way.bring(kBatches); // so that all tags are known
    CALLGRIND_TOGGLE_COLLECT;
    way.bring(kBatches);
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(name);
    std::printf("%s %d\n", name, kBatches * kChangesOfBatch);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    count("gateway-ledger", std::make_unique<NullSink>());
    count("gateway-mqtt", mqttSink("{site}/{line}/{station}/{tag}"));
    count("gateway-mqtt-grouped", mqttSink("{site}/{line}/{station}"));
    const QTemporaryDir folder;
    SqliteSettings settings;
    settings.path = folder.filePath(QLatin1String("history.sqlite"));
    count("gateway-sqlite", std::make_unique<SqliteSink>(settings, SystemClock::instance()));
    return 0;
}
