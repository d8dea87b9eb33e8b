#include "gateway/delivery/sink_feed.h"
#include "gateway/support/changes.h"
#include "host/support/virtual_clock.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

namespace {

const QString kName = QLatin1String("sink");

/** Writes down what it hears. */
class ListeningSink : public Sink
{
public:
    explicit ListeningSink(Order order)
        : m_order(order)
    {}

    QString heard; ///< "B3" a backlog's batch, "L4" a live one, small: of a run before

    void begin(const QString & /*ledger*/) override { Q_EMIT ready(); }
    void take(const QVector<SinkBatch> &batches) override
    {
        for (const SinkBatch &batch : batches) {
            const QString age = QLatin1String(batch.age == SinkBatch::Age::Live ? " L" : " B") +
                                QString::number(batch.number);
            heard += batch.isOfThisRun ? age : age.toLower();
        }
        m_last = batches.last().number;
    }
    void caughtUp() override { heard += QLatin1String(" end"); }
    void missed() override { heard += QLatin1String(" loss"); }
    Order order() const override { return m_order; }
    int window() const override { return 4; }

    void callSafe() { Q_EMIT safe(m_last); }
    void fail() { Q_EMIT failed(QLatin1String("away")); }
    QString take() { return std::exchange(heard, QString()).trimmed(); }

private:
    const Order m_order;
    qint64 m_last = 0;
};

} // namespace

/** A sink is told where its backlog ends, what is lost, and what a run before has left behind. */
class TestBacklogEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void saysWhereItEnds_data();
    void saysWhereItEnds();
    void tellsRunsApart();
    void saysWhatIsLost();
    void losesNothingThatCannotBeRead();

private:
    void start(Sink::Order order = Sink::Order::LiveFirst);
    void store(int count);
    void settle();

    VirtualClock m_clock;
    std::unique_ptr<QTemporaryDir> m_directory;
    LedgerBounds m_bounds;
    std::unique_ptr<Ledger> m_ledger;
    std::unique_ptr<SinkFeed> m_feed;
    ListeningSink *m_sink = nullptr; ///< the feed's
    QStringList m_said;
};

void TestBacklogEnd::init()
{
    m_feed.reset();
    m_directory = std::make_unique<QTemporaryDir>();
    m_bounds = LedgerBounds();
    start();
}

void TestBacklogEnd::start(Sink::Order order)
{
    m_feed.reset();
    m_ledger = std::make_unique<Ledger>(m_clock);
    QVERIFY(m_ledger
                ->open(m_directory->filePath(QLatin1String("ledger")), Database::Durability::Normal,
                       m_bounds, {kName})
                .isNone());
    auto sink = std::make_unique<ListeningSink>(order);
    m_sink = sink.get();
    m_feed = std::make_unique<SinkFeed>(kName, std::move(sink), *m_ledger, m_clock,
                                        [this](const QString &line) { m_said.append(line); });
    m_feed->start();
    m_clock.runFor(1);
}

void TestBacklogEnd::store(int count)
{
    QVector<LedgerBatch> batches;
    for (int i = 0; i < count; ++i) {
        batches.append(batchWith({1}));
    }
    QVERIFY(m_ledger->commit(batches).isNone());
    m_feed->wake();
}

/** Everything is confirmed. */
void TestBacklogEnd::settle()
{
    for (int i = 0; i < 50; ++i) {
        m_clock.runFor(1);
        m_sink->callSafe();
    }
}

void TestBacklogEnd::saysWhereItEnds_data()
{
    QTest::addColumn<int>("order");
    QTest::addColumn<QString>("heard");
    QTest::newRow("live first") << int(Sink::Order::LiveFirst)
                                << QString::fromLatin1("B1 B2 B3 B4 B5 end L6");
    QTest::newRow("of the ledger")
        << int(Sink::Order::OfLedger) << QString::fromLatin1("B1 B2 B3 B4 B5 end L6");
}

void TestBacklogEnd::saysWhereItEnds()
{
    QFETCH(int, order);
    QFETCH(QString, heard);
    start(static_cast<Sink::Order>(order));
    QCOMPARE(m_sink->take(), QLatin1String("end"));
    m_sink->fail();
    store(5);
    m_clock.runFor(1000);
    QVERIFY(!m_sink->heard.contains(QLatin1String("end")));
    settle();
    store(1);
    settle();
    QCOMPARE(m_sink->take(), heard);
}

void TestBacklogEnd::tellsRunsApart()
{
    m_sink->fail();
    store(2);
    start();
    m_sink->fail();
    store(1);
    m_clock.runFor(2000);
    settle();
    QCOMPARE(m_sink->take(), QLatin1String("b1 b2 end b1 b2 B3 end"));
}

void TestBacklogEnd::saysWhatIsLost()
{
    m_bounds.bytes = 4 * (batchWith({1}).body.size() + 32);
    start();
    m_sink->take();
    // While it is away.
    m_sink->fail();
    store(3);
    store(3);
    m_clock.runFor(1000);
    settle();
    QCOMPARE(m_sink->take(), QLatin1String("loss B3 B4 B5 B6 end"));
    // While it takes what it is handed, and confirms nothing.
    store(4);
    m_clock.runFor(1);
    store(6);
    settle();
    QCOMPARE(m_sink->take(), QLatin1String("L7 L8 L9 L10 loss L13 L14 L15 L16"));
    store(1);
    settle();
    QCOMPARE(m_sink->take(), QLatin1String("L17"));
}

// As with a disk that is about to fail.
void TestBacklogEnd::losesNothingThatCannotBeRead()
{
    m_sink->fail();
    QVector<LedgerBatch> batches(3, batchWith(QVector<qint64>(5000, 1)));
    QVERIFY(m_ledger->commit(batches).isNone());
    m_feed.reset();
    m_ledger.reset();
    // Behind the pages of the tables, which are a few, are those of the bodies.
    const int firstBody = 10 * 4096;
    QFile file(m_directory->filePath(QLatin1String("ledger")));
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.seek(firstBody);
    const QByteArray bodies = file.readAll();
    file.seek(firstBody);
    file.write(QByteArray(bodies.size(), 0));
    file.close();
    m_said.clear();
    start();
    m_clock.runFor(60000);
    QCOMPARE(m_sink->take(), QString());
    QCOMPARE(m_ledger->confirmed(kName), 0);
    QCOMPARE(m_said, QStringList(QLatin1String(
                         "ledger, for sink sink: its file cannot be read; trying again")));
    QVERIFY(m_feed->trouble().contains(QLatin1String("cannot be read")));
    m_feed.reset();
    m_ledger.reset();
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.seek(firstBody);
    file.write(bodies);
    file.close();
    start();
    settle();
    QCOMPARE(m_sink->take(), QLatin1String("b1 b2 b3 end"));
}

QTEST_APPLESS_MAIN(TestBacklogEnd)
#include "test_backlog_end.moc"
