#include "sparkplug/support/sparkplug_node.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** What is told behind an outage, or behind another run, is true. */
class TestSparkplugBacklog : public QObject, private SparkplugNode
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void tellsABacklogAsHistory();
    void tellsHowThingsAreBehindTheBacklog();
    void tellsNothingOfARunBeforeAsGood();
    void waitsAsLongAsTheFirstRoundTakes();
    void letsADeviceDieThatNobodyWatches();
    void keepsADeviceForAsLongAsItHasHistory();
    void knowsNothingNewOfALostStation();
    void trustsNothingBehindALoss();
    void tellsWhatIsStaleWhereSomethingWasLost();
    void trustsNothingThatWasBroken();
    void followsALedgerThatBeginsAnew();
    void saysNothingOfASilentStation();

private:
    static constexpr SinkBatch::Age kOld = SinkBatch::Age::Backlog;

    void comeBack();
    QString qualities();
};

void TestSparkplugBacklog::init()
{
    make();
    topics();
}

void TestSparkplugBacklog::cleanup()
{
    QCOMPARE(m_connection->broken(), QStringList());
}

void TestSparkplugBacklog::comeBack()
{
    m_connection->lose();
    m_clock.runFor(5000);
    begin();
}

/** Of the last message: value and quality of each metric, "3:192 4:500"; "h" is history. */
QString TestSparkplugBacklog::qualities()
{
    QStringList all;
    for (const spcheck::ReadMetric &metric : m_connection->last().metrics) {
        const quint64 quality =
            metric.properties.isEmpty() ? 192 : metric.properties.first().number;
        all.append(QString::fromLatin1("%1:%2%3")
                       .arg(metric.number)
                       .arg(quality)
                       .arg(QLatin1String(metric.isHistorical ? "h" : "")));
    }
    return all.join(QLatin1Char(' '));
}

void TestSparkplugBacklog::tellsABacklogAsHistory()
{
    take({change("a", qint64(1)), change("b", qint64(2))});
    topics();
    comeBack();
    // What is known may be outdated: it is told as stale.
    QCOMPARE(topics(), QLatin1String("NBIRTH DBIRTH/press.1"));
    QCOMPARE(qualities(), QLatin1String("1:500 2:500"));
    take({change("a", qint64(3)), change("a", qint64(4))}, kOld);
    QCOMPARE(topics(), QLatin1String("DDATA/press.1 mark"));
    QCOMPARE(qualities(), QLatin1String("3:192h 4:192h"));
    // Of a tag that nobody has heard of.
    take({change("c", qint64(5))}, kOld);
    QCOMPARE(topics(), QLatin1String("DBIRTH/press.1 DDATA/press.1 mark"));
}

void TestSparkplugBacklog::tellsHowThingsAreBehindTheBacklog()
{
    take({change("a", qint64(1)), change("b", qint64(2))});
    comeBack();
    take({change("a", qint64(3))}, kOld);
    m_clock.runFor(60000); // however long that takes: it is not over
    topics();
    m_sink->caughtUp();
    QCOMPARE(topics(), QLatin1String("DDATA/press.1"));
    QCOMPARE(qualities(), QLatin1String("2:192 3:192"));
    QVERIFY(*m_connection->last().metrics.first().timestamp <
            quint64(m_clock.wallMs()) - 60000); // when it was so first
    m_clock.runFor(60000);
    QCOMPARE(topics(), QString());
}

// As after a kill: what the ledger has ends with good values.
void TestSparkplugBacklog::tellsNothingOfARunBeforeAsGood()
{
    status(LineStatus::State::Good);
    take({change("a", qint64(1)), change("gone", qint64(2))}, kOld, false);
    QCOMPARE(topics(), QLatin1String("DBIRTH/press.1 DDATA/press.1 mark"));
    QCOMPARE(qualities(), QLatin1String("1:192h 2:192h"));
    m_sink->caughtUp();
    m_clock.runFor(600000);
    QCOMPARE(topics(), QString());
    take({change("a", qint64(1))});
    QCOMPARE(qualities(), QLatin1String("1:192"));
    // The other one is of a tag that was removed.
    topics();
    m_clock.runFor(60000);
    askForRebirth();
    QCOMPARE(topics(), QLatin1String("NBIRTH DBIRTH/press.1"));
    QCOMPARE(qualities(), QLatin1String("1:192 2:500"));
    QVERIFY(*m_connection->last().metrics.last().timestamp < quint64(m_clock.wallMs()) - 600000);
}

void TestSparkplugBacklog::waitsAsLongAsTheFirstRoundTakes()
{
    status(LineStatus::State::Good);
    take({change("a", qint64(1)), change("b", qint64(2))}, kOld, false);
    // The node came to its broker behind the first half of the first round.
    take({change("a", qint64(3))}, kOld);
    m_sink->caughtUp();
    QCOMPARE(topics(),
             QLatin1String("DBIRTH/press.1 DDATA/press.1 mark DDATA/press.1 mark DDATA/press.1"));
    QCOMPARE(qualities(), QLatin1String("3:192"));
    m_clock.runFor(60000);
    take({change("b", qint64(2))});
    QCOMPARE(qualities(), QLatin1String("2:192"));
}

void TestSparkplugBacklog::letsADeviceDieThatNobodyWatches()
{
    take({change("a", qint64(1))}, kOld, false);
    m_sink->caughtUp();
    m_clock.runFor(60000);
    QCOMPARE(topics(), QLatin1String("DBIRTH/press.1 DDATA/press.1 mark DDEATH/press.1"));
    comeBack();
    QCOMPARE(topics(), QLatin1String("NBIRTH"));
}

void TestSparkplugBacklog::keepsADeviceForAsLongAsItHasHistory()
{
    for (int i = 0; i < 10; ++i) {
        take({change("a", qint64(i))}, kOld, false);
        m_clock.runFor(1500);
    }
    QCOMPARE(int(topics().count(QLatin1String("BIRTH"))), 1);
    m_clock.runFor(1000);
    QCOMPARE(topics(), QLatin1String("DDEATH/press.1"));
}

void TestSparkplugBacklog::knowsNothingNewOfALostStation()
{
    status(LineStatus::State::Bad);
    take({change("a", qint64(1))}, kOld, false);
    m_sink->caughtUp();
    m_clock.runFor(10000);
    QCOMPARE(topics(), QLatin1String("DBIRTH/press.1 DDATA/press.1 mark DDEATH/press.1"));
    status(LineStatus::State::Good);
    QCOMPARE(topics(), QLatin1String("DBIRTH/press.1"));
    QCOMPARE(qualities(), QLatin1String("1:500"));
    take({change("a", qint64(1))});
    QCOMPARE(topics(), QLatin1String("DDATA/press.1 mark"));
    QCOMPARE(qualities(), QLatin1String("1:192"));
}

// The ledger's bounds took the beginning of the backlog.
void TestSparkplugBacklog::trustsNothingBehindALoss()
{
    take({change("a", qint64(1)), change("b", qint64(2))});
    comeBack();
    m_sink->missed();
    take({change("a", qint64(3))}, kOld);
    topics();
    m_sink->caughtUp();
    QCOMPARE(topics(), QLatin1String("DDATA/press.1"));
    QCOMPARE(qualities(), QLatin1String("3:192")); // the other one may have changed
    askForRebirth();
    QCOMPARE(qualities(), QLatin1String("3:192 2:500"));
}

void TestSparkplugBacklog::tellsWhatIsStaleWhereSomethingWasLost()
{
    take({change("a", qint64(1)), change("b", qint64(2), Quality::Refused)});
    topics();
    m_clock.runFor(1000);
    m_sink->missed();
    m_clock.runFor(1);
    QCOMPARE(topics(), QLatin1String("DDATA/press.1"));
    QCOMPARE(qualities(), QLatin1String("1:500"));
    QVERIFY(*m_connection->last().metrics.first().timestamp > quint64(m_clock.wallMs()) - 1000);
    take({change("a", qint64(1))});
    QCOMPARE(qualities(), QLatin1String("1:192"));
}

// The connection ends in the middle of a batch: all of it comes again, behind others.
void TestSparkplugBacklog::trustsNothingThatWasBroken()
{
    take({change("a", qint64(1))});
    m_connection->takesMessages = false;
    take({change("a", qint64(2))});
    m_connection->stream.removeLast(); // what it could not say to the end
    m_connection->takesMessages = true;
    begin();
    QCOMPARE(qualities(), QLatin1String("2:500"));
}

// What it numbers lower is newer than all of the one before.
void TestSparkplugBacklog::followsALedgerThatBeginsAnew()
{
    take({change("a", qint64(1))});
    take({change("a", qint64(2))});
    m_connection->lose();
    m_clock.runFor(5000);
    m_number = 0;
    m_sink->begin(QLatin1String("another ledger"));
    take({change("a", qint64(3))});
    askForRebirth();
    QCOMPARE(qualities(), QLatin1String("3:192"));
}

// It is dead for hosts, also when it is known how things are.
void TestSparkplugBacklog::saysNothingOfASilentStation()
{
    take({change("a", qint64(1))});
    take({change("a", qint64(1), Quality::NoAnswer)});
    comeBack();
    topics();
    m_sink->caughtUp();
    m_clock.runFor(1);
    QCOMPARE(topics(), QString());
}

QTEST_APPLESS_MAIN(TestSparkplugBacklog)
#include "test_sparkplug_backlog.moc"
