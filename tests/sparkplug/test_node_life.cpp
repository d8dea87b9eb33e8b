#include "gateway/sparkplug/sparkplug_sink.h"
#include "gateway/support/changes.h"
#include "host/support/virtual_clock.h"
#include "sparkplug/support/fake_connection.h"
#include "sparkplug/support/message_writer.h"
#include "support/random.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** Whatever comes in whatever order, an edge node keeps the rules, and tells all. */
class TestNodeLife : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsTheRules_data();
    void keepsTheRules();

private:
    void happen(int what);
    void takeBatch();
    void askForRebirth();
    int untrue() const;

    VirtualClock m_clock;
    FakeConnection *m_connection = nullptr; ///< the sink's
    std::unique_ptr<SparkplugSink> m_sink;
    Random m_random{1};
    QVector<std::shared_ptr<ChangeSource>> m_sources;
    qint64 m_number = 0;
    QSet<QPair<QByteArray, quint64>> m_leftBehind; ///< tags and values of a run before
};

namespace {

const QVector<Quality> kQualities{Quality::Good,  Quality::Good,    Quality::NoAnswer,
                                  Quality::Stale, Quality::Refused, Quality::LineDown};

} // namespace

void TestNodeLife::takeBatch()
{
    QVector<Change> changes;
    for (int left = m_random.between(1, 5); left > 0; --left) {
        Change change = changeOf(m_sources.at(m_random.below(int(m_sources.size()))), m_number,
                                 m_clock.wallMs());
        change.quality = kQualities.at(m_random.below(int(kQualities.size())));
        changes.append(change);
    }
    const bool isLate = m_random.below(4) == 0;
    const bool isOfThisRun = !isLate || m_random.below(2) == 0;
    for (const Change &change : isOfThisRun ? QVector<Change>() : changes) {
        m_leftBehind.insert({change.source->tag.toLatin1(), quint64(m_number)});
    }
    m_sink->take({{++m_number, changes, isLate ? SinkBatch::Age::Backlog : SinkBatch::Age::Live,
                   isOfThisRun}});
    m_connection->confirm();
}

/** How often a value that nobody has read in this run was told as good, and not as history. */
int TestNodeLife::untrue() const
{
    int count = 0;
    QHash<quint64, QByteArray> names;
    for (const spcheck::Packet &packet : m_connection->stream) {
        const auto read = spcheck::readMessage(packet.message.payload);
        for (const spcheck::ReadMetric &metric : read.value_or(spcheck::ReadMessage()).metrics) {
            if (metric.alias && metric.name) {
                names.insert(*metric.alias, *metric.name);
            }
            const bool isGood = metric.alias && !metric.isHistorical && metric.properties.isEmpty();
            count += isGood && m_leftBehind.contains({names.value(*metric.alias), metric.number});
        }
    }
    return count;
}

void TestNodeLife::askForRebirth()
{
    spcheck::ReadMetric metric;
    metric.name = "Node Control/Rebirth";
    metric.field = spcheck::Field::Truth;
    metric.number = 1;
    m_connection->send("spBv1.0/plant/NCMD/gate",
                       spcheck::MessageWriter::write({1U, std::nullopt, {metric}}));
}

void TestNodeLife::happen(int what)
{
    if (what == 0) {
        m_connection->lose();
        m_clock.runFor(m_random.below(5000));
        m_sink->begin(QLatin1String("ledger"));
    } else if (what == 1) {
        askForRebirth();
    } else if (what < 4) {
        LineStatus status;
        status.line = QLatin1String("press");
        status.state = what == 2 ? LineStatus::State::Bad : LineStatus::State::Good;
        if (m_random.below(2) == 0) {
            status.station = 1 + m_random.below(2);
        }
        m_sink->tell(status);
    } else if (what == 4) {
        m_sink->caughtUp();
    } else if (what == 5 && m_random.below(5) == 0) {
        m_sink->missed();
    } else {
        takeBatch();
    }
}

void TestNodeLife::keepsTheRules_data()
{
    QTest::addColumn<int>("seed");
    for (const int seed : {1, 2, 3, 4}) {
        QTest::addRow("%d", seed) << seed;
    }
}

void TestNodeLife::keepsTheRules()
{
    QFETCH(int, seed);
    m_random = Random(static_cast<quint32>(seed));
    m_number = 0;
    m_leftBehind.clear();
    m_sources.clear();
    for (int i = 0; i < 5; ++i) {
        m_sources.append(sourceOf(QByteArray(1, static_cast<char>('a' + i)).constData()));
        m_sources.last()->station = 1 + i % 2;
    }
    SparkplugSettings settings;
    settings.group = QLatin1String("plant");
    settings.node = QLatin1String("gate");
    auto connection = std::make_unique<FakeConnection>();
    m_connection = connection.get();
    m_sink = std::make_unique<SparkplugSink>(settings, std::move(connection), m_clock);
    int safe = 0;
    connect(m_sink.get(), &Sink::safe, this, [&safe] { ++safe; });
    m_sink->begin(QLatin1String("ledger"));
    for (int step = 0; step < 1500; ++step) {
        m_clock.runFor(m_random.below(1500));
        happen(m_random.below(14));
    }
    m_clock.runFor(10000);
    QCOMPARE(safe, int(m_number));
    QCOMPARE(m_connection->broken(), QStringList());
    QVERIFY(m_leftBehind.size() > 100);
    QCOMPARE(untrue(), 0);
}

QTEST_APPLESS_MAIN(TestNodeLife)
#include "test_node_life.moc"
