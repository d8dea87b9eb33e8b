#include "host/support/test_registers.h"
#include "host/support/virtual_clock.h"

#include <host/jobs/read_job.h>
#include <host/schedule/poller.h>

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace cnet;

namespace {

const int kIntervalMs = 100;

AddressRange range(int start, int count)
{
    return {1, QLatin1String("D_W"), start, count};
}

} // namespace

// The blocks' ends are told by the test; there is no line.
class TestPoller : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void asksForNobodyWhoIsNotThere();
    void beginsRoundsInTime();
    void sortsOutARefusedBlock();
    void blamesTheBlockTheSecondTime();
    void asksAgainWhereTheBlockWasGood();
    void blamesNobodyWhileItSortsOut();
    void survivesAMonitorThatGoes();
    void blamesNoOtherItem();
    void countsRoundsWhereNobodyAnswers();
    void knowsWhenValuesAreStale_data();
    void knowsWhenValuesAreStale();

private:
    void end(const AddressRange &range, Outcome outcome, bool changed = true)
    {
        ExchangeReport report;
        report.range = range;
        report.reply.station = range.station;
        report.reply.outcome = outcome;
        report.reply.sentMs = m_clock->nowMs();
        report.good = outcome == Outcome::Answered;
        report.refusal = 0x1132;
        m_poller->blockEnded(report, changed);
    }
    void watch(const char *items) { m_monitor->setItems(testItems(items)); }

    DriverCore m_core;
    RegisterCatalog m_registers = testCatalog();
    std::unique_ptr<VirtualClock> m_clock;
    std::unique_ptr<StationHealth> m_health;
    std::unique_ptr<Poller> m_poller;
    std::unique_ptr<Monitor> m_monitor;
    QList<Job *> m_jobs;
};

void TestPoller::initTestCase()
{
    QString error;
    QVERIFY2(m_core.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
}

void TestPoller::init()
{
    m_core.start(DriverProperties());
    m_clock = std::make_unique<VirtualClock>();
    m_health = std::make_unique<StationHealth>();
    m_health->heard(1);
    m_poller = std::make_unique<Poller>(m_core, m_registers, *m_health, *m_clock,
                                        PollSettings{60, kIntervalMs, 0});
    connect(m_poller.get(), &Poller::jobWanted, this, [this](Job *job) { m_jobs.append(job); });
    m_monitor = std::make_unique<Monitor>(60);
    m_poller->add(m_monitor.get());
    m_poller->lineOpened();
}

void TestPoller::cleanup()
{
    m_jobs.clear();
    m_poller.reset();
    m_monitor.reset();
}

void TestPoller::asksForNobodyWhoIsNotThere()
{
    watch("2/D_W:0");
    m_poller->prepare();
    QVERIFY(!m_poller->isDue());
    QCOMPARE(m_poller->nextMs(), -1);
    m_health->heard(2);
    m_poller->stationBack(2);
    m_poller->prepare();
    QVERIFY(m_poller->isDue());
}

void TestPoller::beginsRoundsInTime()
{
    QSignalSpy rounds(m_poller.get(), &Poller::roundEnded);
    watch("D_W:0*120");
    m_poller->prepare();
    for (int round = 1; round <= 3; ++round) {
        QVERIFY(m_poller->isDue());
        end(range(0, 60), Outcome::Answered);
        m_clock->runFor(30);
        QVERIFY(m_poller->isDue()); // of a round that has begun
        end(range(60, 60), Outcome::TimedOut);
        QCOMPARE(m_poller->rounds(), round);
        QVERIFY(!m_poller->isDue());
        QCOMPARE(m_poller->nextMs(), m_clock->nowMs() + kIntervalMs - 30);
        m_clock->runFor(kIntervalMs - 30 - 1);
        QVERIFY(!m_poller->isDue());
        m_clock->runFor(1);
    }
    QCOMPARE(static_cast<int>(rounds.size()), 3);
    QCOMPARE(m_monitor->items().first().quality, Quality::NoAnswer);
}

void TestPoller::sortsOutARefusedBlock()
{
    watch("D_W:0*2 D_W:2*2");
    m_poller->prepare();
    end(range(0, 4), Outcome::Refused);
    QCOMPARE(static_cast<int>(m_jobs.size()), 1);
    auto *const job = qobject_cast<ReadJob *>(m_jobs.first());
    QVERIFY(job != nullptr);
    QCOMPARE(job->next()->item.text(), QLatin1String("1/D_W:0*2"));
    BlockResult result;
    result.values = {1, 2};
    job->ended(*job->next(), result);
    result.failure.kind = Failure::Refused;
    result.failure.code = 0x1132;
    job->ended(*job->next(), result);
    job->conclude();
    QVERIFY(!m_monitor->items().at(0).blocks.first().refused);
    QVERIFY(m_monitor->items().at(1).blocks.first().refused);
    QCOMPARE(m_monitor->items().at(1).quality, Quality::Refused);
    m_poller->prepare();
    FRAME_PRO frame{};
    QCOMPARE(m_core.functions().getSendFrame(frame), 1);
    QCOMPARE(frame.var.count, 2);
    // Where one item has the block to itself nobody need ask again.
    end(range(0, 2), Outcome::Refused);
    QCOMPARE(static_cast<int>(m_jobs.size()), 1);
    QVERIFY(m_monitor->items().at(0).blocks.first().refused);
    // Whoever sets the items again wants to know.
    watch("D_W:0*2 D_W:2*2");
    m_poller->prepare();
    m_clock->runFor(kIntervalMs);
    QVERIFY(m_poller->isDue());
}

void TestPoller::blamesTheBlockTheSecondTime()
{
    watch("D_W:0*2 D_W:2*2");
    m_poller->prepare();
    end(range(0, 4), Outcome::Refused);
    m_jobs.first()->conclude(); // each was good
    end(range(0, 4), Outcome::Refused);
    QCOMPARE(static_cast<int>(m_jobs.size()), 1);
    QCOMPARE(m_monitor->items().at(0).quality, Quality::Refused);
    QCOMPARE(m_monitor->items().at(1).quality, Quality::Refused);
}

// The first refusal is forgotten then.
void TestPoller::asksAgainWhereTheBlockWasGood()
{
    watch("D_W:0*2 D_W:2*2");
    m_poller->prepare();
    end(range(0, 4), Outcome::Refused);
    m_jobs.first()->conclude();
    end(range(0, 4), Outcome::Answered);
    end(range(0, 4), Outcome::Refused);
    QCOMPARE(static_cast<int>(m_jobs.size()), 2);
    QCOMPARE(m_monitor->items().at(0).quality, Quality::Good);
}

// Between many other reads the driver puts a block of the cyclic ones, which is the refused one.
void TestPoller::blamesNobodyWhileItSortsOut()
{
    QSignalSpy rounds(m_poller.get(), &Poller::roundEnded);
    watch("D_W:0*2 D_W:2*2");
    m_poller->prepare();
    end(range(0, 4), Outcome::Refused);
    end(range(0, 4), Outcome::Refused);
    QCOMPARE(static_cast<int>(m_jobs.size()), 1);
    QCOMPARE(m_monitor->items().at(0).quality, Quality::NeverRead);
    QCOMPARE(m_monitor->items().at(1).quality, Quality::NeverRead);
    // Who ends with the round has seen what the items hold.
    m_clock->runFor(kIntervalMs);
    QVERIFY(!m_poller->isDue());
    QCOMPARE(static_cast<int>(rounds.size()), 0);
    m_jobs.first()->conclude();
    QCOMPARE(static_cast<int>(rounds.size()), 1);
    QVERIFY(m_poller->isDue());
}

void TestPoller::survivesAMonitorThatGoes()
{
    watch("D_W:0*2 D_W:2*2");
    m_poller->prepare();
    end(range(0, 4), Outcome::Refused);
    m_monitor.reset();
    auto *const job = qobject_cast<ReadJob *>(m_jobs.first());
    Failure failure;
    failure.kind = Failure::Refused;
    job->conclude(failure);
    end(range(0, 4), Outcome::Answered);
    m_poller->prepare();
    QVERIFY(!m_poller->isDue());
}

// What is in the place of a refused item by the time that it is known to be refused.
void TestPoller::blamesNoOtherItem()
{
    watch("D_W:0*2 D_W:2*2");
    m_poller->prepare();
    end(range(0, 4), Outcome::Refused);
    watch("D_W:10*2 D_W:12*2");
    auto *const job = qobject_cast<ReadJob *>(m_jobs.first());
    Failure failure;
    failure.kind = Failure::Refused;
    job->conclude(failure);
    QVERIFY(!m_monitor->items().at(0).blocks.first().refused);
    QVERIFY(!m_monitor->items().at(1).blocks.first().refused);
}

void TestPoller::countsRoundsWhereNobodyAnswers()
{
    watch("D_W:0");
    m_health->missed(1, 0);
    m_poller->look(); // it is not known yet what there is to read
    QCOMPARE(m_poller->rounds(), 0);
    m_poller->prepare();
    m_poller->look();
    m_poller->look();
    QCOMPARE(m_poller->rounds(), 1);
    m_clock->runFor(kIntervalMs);
    m_poller->look();
    QCOMPARE(m_poller->rounds(), 2);
    m_poller->lineLost();
    m_poller->prepare();
    m_clock->runFor(kIntervalMs);
    m_poller->look();
    QCOMPARE(m_poller->rounds(), 2);
}

void TestPoller::knowsWhenValuesAreStale_data()
{
    QTest::addColumn<int>("staleMs");
    QTest::addColumn<int>("roundMs");
    QTest::addColumn<qint64>("dueMs");
    QTest::newRow("two seconds at least") << 0 << 500 << qint64(2000);
    QTest::newRow("three rounds") << 0 << 1500 << qint64(4500);
    QTest::newRow("set by somebody") << 700 << 1500 << qint64(700);
}

void TestPoller::knowsWhenValuesAreStale()
{
    QFETCH(int, staleMs);
    QFETCH(int, roundMs);
    Poller poller(m_core, m_registers, *m_health, *m_clock, PollSettings{60, kIntervalMs, staleMs});
    m_monitor->setItems(testItems("D_W:0*120"));
    poller.add(m_monitor.get());
    poller.prepare();
    ExchangeReport report;
    report.reply.sentMs = m_clock->nowMs();
    report.good = true;
    report.range = range(0, 60);
    poller.blockEnded(report, true);
    m_clock->runFor(roundMs);
    QTEST(poller.surroundings().dueMs, "dueMs"); // also while the first round is underway
    report.range = range(60, 60);
    poller.blockEnded(report, true);
    QTEST(poller.surroundings().dueMs, "dueMs");
}

QTEST_GUILESS_MAIN(TestPoller)

#include "test_poller.moc"
