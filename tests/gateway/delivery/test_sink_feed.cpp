#include "gateway/delivery/sink_feed.h"
#include "gateway/support/changes.h"
#include "host/support/virtual_clock.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

namespace {

/** A sink that does what the test says. */
class TestSink : public Sink
{
public:
    enum class Manner { Confirms, TakesOnly, FailsToBegin, FailsToTake };

    Manner manner = Manner::Confirms;
    QVector<qint64> taken; ///< values, in the order in which they came
    QVector<qint64> numbers;
    int begins = 0;
    int mostAtOnce = 0;

    void begin(const QString & /*ledger*/) override
    {
        ++begins;
        if (manner == Manner::FailsToBegin) {
            Q_EMIT failed(QLatin1String("no broker"));
        } else {
            Q_EMIT ready();
        }
    }

    void take(const QVector<SinkBatch> &batches) override
    {
        mostAtOnce = qMax(mostAtOnce, int(batches.size()));
        if (manner == Manner::FailsToTake) {
            Q_EMIT failed(QLatin1String("broker away"));
            return;
        }
        for (const SinkBatch &batch : batches) {
            numbers.append(batch.number);
            for (const Change &change : batch.changes) {
                taken.append(std::get<qint64>(change.value));
            }
        }
        if (manner == Manner::Confirms) {
            Q_EMIT safe(numbers.last());
        }
    }

    int window() const override { return 4; }

    void tell(const LineStatus &status) override { told.append(status.cause); }
    QStringList told;
    void answer(const WriteAnswer &answer) override { answers.append(answer.id); }

    QStringList answers;
};

const QString kName = QLatin1String("sink");

} // namespace

/** Each batch comes to the sink, in order, and leaves the ledger when it is safe there. */
class TestSinkFeed : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void bringsAllInOrder();
    void removesNothingThatIsOnlyHandedOver();
    void keepsToTheWindow();
    void bringsAgainAfterAFailure();
    void triesAgainWithGrowingPauses();
    void passesOverADamagedBatch();
    void saysThatItIsReadyAgain();
    void isFineWhenThereIsNothingToConfirm();
    void tellsAlsoWhileTheSinkIsAway();
    void hasRequestsAnswered();

private:
    void store(const QVector<qint64> &values)
    {
        QVector<LedgerBatch> batches;
        for (const qint64 value : values) {
            batches.append(batchWith({value}));
        }
        QVERIFY(m_ledger->commit(batches).isNone());
        m_feed->wake();
    }
    qint64 waiting()
    {
        QVector<LedgerBatch> none;
        m_ledger->commit(none);
        return m_ledger->state().batches;
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    VirtualClock m_clock;
    std::unique_ptr<Ledger> m_ledger;
    std::unique_ptr<SinkFeed> m_feed;
    TestSink *m_sink = nullptr; ///< the feed's
    QStringList m_said;
};

void TestSinkFeed::init()
{
    m_feed.reset();
    m_said.clear();
    m_directory = std::make_unique<QTemporaryDir>();
    m_ledger = std::make_unique<Ledger>(m_clock);
    QVERIFY(m_ledger
                ->open(m_directory->filePath(QLatin1String("ledger")), Database::Durability::Normal,
                       LedgerBounds(), {kName})
                .isNone());
    auto sink = std::make_unique<TestSink>();
    m_sink = sink.get();
    m_feed = std::make_unique<SinkFeed>(kName, std::move(sink), *m_ledger, m_clock,
                                        [this](const QString &line) { m_said.append(line); });
}

void TestSinkFeed::bringsAllInOrder()
{
    store({1, 2, 3, 4, 5, 6, 7, 8, 9});
    m_feed->start();
    m_clock.runFor(1);
    store({10});
    m_clock.runFor(1);
    QCOMPARE(m_sink->taken, QVector<qint64>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    QCOMPARE(waiting(), 0);
    QCOMPARE(m_said, QStringList());
}

void TestSinkFeed::removesNothingThatIsOnlyHandedOver()
{
    m_sink->manner = TestSink::Manner::TakesOnly;
    m_feed->start();
    store({1, 2});
    m_clock.runFor(60000);
    QCOMPARE(m_sink->taken, QVector<qint64>({1, 2}));
    QCOMPARE(waiting(), 2);
    Q_EMIT m_sink->safe(m_sink->numbers.first());
    QCOMPARE(waiting(), 1);
    Q_EMIT m_sink->safe(m_sink->numbers.last());
    QCOMPARE(waiting(), 0);
}

void TestSinkFeed::keepsToTheWindow()
{
    m_sink->manner = TestSink::Manner::TakesOnly;
    m_feed->start();
    store({1, 2, 3, 4, 5, 6});
    m_clock.runFor(1000);
    QCOMPARE(int(m_sink->taken.size()), 4);
    Q_EMIT m_sink->safe(m_sink->numbers.at(2));
    m_clock.runFor(1000);
    QCOMPARE(m_sink->taken, QVector<qint64>({1, 2, 3, 4, 5, 6}));
    QVERIFY(m_sink->mostAtOnce <= 4);
}

void TestSinkFeed::bringsAgainAfterAFailure()
{
    m_sink->manner = TestSink::Manner::TakesOnly;
    m_feed->start();
    store({1, 2, 3});
    m_clock.runFor(1);
    Q_EMIT m_sink->safe(m_sink->numbers.first());
    Q_EMIT m_sink->failed(QLatin1String("broker away"));
    m_sink->taken.clear();
    m_sink->manner = TestSink::Manner::Confirms;
    store({4});
    m_clock.runFor(999);
    QCOMPARE(m_sink->taken, QVector<qint64>());
    m_clock.runFor(2);
    QCOMPARE(m_sink->taken, QVector<qint64>({2, 3, 4}));
    QCOMPARE(waiting(), 0);
    QCOMPARE(m_said, QStringList({QLatin1String("sink sink: broker away; trying again"),
                                  QLatin1String("sink sink: works again")}));
}

void TestSinkFeed::triesAgainWithGrowingPauses()
{
    m_sink->manner = TestSink::Manner::FailsToBegin;
    m_feed->start();
    m_clock.runFor(3600000);
    QVERIFY(m_sink->begins > 50 && m_sink->begins < 70);
    QCOMPARE(int(m_said.size()), 1);
    // It begins well and fails to take: that is no end of the trouble.
    m_sink->manner = TestSink::Manner::FailsToTake;
    store({1});
    m_clock.runFor(3600000);
    QVERIFY(m_sink->begins < 140);
    QCOMPARE(int(m_said.size()), 2);
    QVERIFY(m_said.last().startsWith(QLatin1String("sink sink: broker away; trying again; ")));
    QCOMPARE(waiting(), 1);
}

void TestSinkFeed::passesOverADamagedBatch()
{
    QVector<LedgerBatch> batches{batchWith({1}), batchWith({2, 2}), batchWith({3})};
    batches[1].body.chop(1);
    QVERIFY(m_ledger->commit(batches).isNone());
    m_feed->start();
    m_clock.runFor(1);
    QCOMPARE(m_sink->taken, QVector<qint64>({1, 3}));
    QCOMPARE(waiting(), 0);
    QCOMPARE(m_said, QStringList({QLatin1String("sink sink: batch 2 of the ledger is damaged; its "
                                                "2 changes are lost")}));
}

// It is connected again, and nobody knows yet whether it keeps what it gets.
void TestSinkFeed::saysThatItIsReadyAgain()
{
    m_sink->manner = TestSink::Manner::FailsToBegin;
    m_feed->start();
    store({1});
    QCOMPARE(m_feed->trouble(), QLatin1String("no broker"));
    m_sink->manner = TestSink::Manner::TakesOnly;
    m_clock.runFor(60000);
    QVERIFY(m_feed->isReady());
    QCOMPARE(m_feed->trouble(), QLatin1String("ready, nothing confirmed yet; before: no broker"));
    Q_EMIT m_sink->safe(m_sink->numbers.last());
    QCOMPARE(m_feed->trouble(), QString());
    QCOMPARE(int(m_said.size()), 2);
}

void TestSinkFeed::isFineWhenThereIsNothingToConfirm()
{
    m_sink->manner = TestSink::Manner::FailsToBegin;
    m_feed->start();
    m_sink->manner = TestSink::Manner::TakesOnly;
    m_clock.runFor(1000);
    QCOMPARE(m_feed->trouble(), QString());
    QCOMPARE(m_said, QStringList({QLatin1String("sink sink: no broker; trying again"),
                                  QLatin1String("sink sink: works again")}));
}

void TestSinkFeed::tellsAlsoWhileTheSinkIsAway()
{
    m_sink->manner = TestSink::Manner::FailsToBegin;
    m_feed->start();
    LineStatus status;
    status.cause = QLatin1String("no answer");
    m_feed->tell(status);
    QCOMPARE(m_sink->told, QStringList({status.cause}));
}

void TestSinkFeed::hasRequestsAnswered()
{
    QStringList asked;
    connect(m_feed.get(), &SinkFeed::asked, this, [&asked](const WriteRequest &request) {
        asked.append(request.id + QLatin1String(" of ") + request.reply.sink);
    });
    WriteRequest request;
    request.id = QLatin1String("1");
    Q_EMIT m_sink->asked(request);
    QCOMPARE(asked, QStringList(QLatin1String("1 of sink")));
    WriteAnswer answer;
    answer.id = QLatin1String("1");
    m_feed->answer(answer);
    QCOMPARE(m_sink->answers, QStringList(QLatin1String("1")));
}

QTEST_APPLESS_MAIN(TestSinkFeed)
#include "test_sink_feed.moc"
