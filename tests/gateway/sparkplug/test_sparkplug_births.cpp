#include "sparkplug/support/sparkplug_node.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** The births of a whole plant, and of many plants at one broker, hold nobody up. */
class TestSparkplugBirths : public QObject, private SparkplugNode
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void bearsBitByBit();
    void tellsNothingBetweenBirths();
    void isReadyBehindItsBirths();
    void findsALostOneBetweenBirths();
    void tellsMuchBitByBit();
    void comesBackAtItsOwnTime();

private:
    static constexpr int kStations = 500;
    static constexpr int kTags = 4;

    QVector<Change> allChanges(qint64 value);
    void settle();
    int births() { return int(topics().count(QLatin1String("DBIRTH"))); }
};

void TestSparkplugBirths::init()
{
    SparkplugSettings settings;
    settings.takesCommands = true;
    make(settings);
    for (int batch = 0; batch < 2; ++batch) {
        take(allChanges(batch));
    }
    topics();
}

void TestSparkplugBirths::cleanup()
{
    const QStringList broken = m_connection->broken();
    QVERIFY2(broken.isEmpty(), qPrintable(broken.join(QLatin1Char('\n'))));
}

QVector<Change> TestSparkplugBirths::allChanges(qint64 value)
{
    QVector<Change> changes;
    for (int station = 0; station < kStations; ++station) {
        for (int tag = 0; tag < kTags; ++tag) {
            const QByteArray name = QByteArray::number(station) + '.' + QByteArray::number(tag);
            changes.append(change(name.constData(), value));
            m_sources.value(name)->line = QString::fromLatin1("line%1").arg(station / 30);
            m_sources.value(name)->station = station % 30;
        }
    }
    return changes;
}

/** Turn by turn. */
void TestSparkplugBirths::settle()
{
    for (int turn = 0; turn < 1000 && m_clock.step(m_clock.nowNs()); ++turn) {
        m_connection->confirm();
    }
}

void TestSparkplugBirths::bearsBitByBit()
{
    askForRebirth();
    int turns = 1;
    int told = births();
    QVERIFY2(told >= 190 && told <= 210, qPrintable(QString::number(told)));
    while (m_clock.step(m_clock.nowNs())) {
        const int now = births();
        QVERIFY2(now <= 210, qPrintable(QString::number(now)));
        told += now;
        ++turns;
    }
    QCOMPARE(told, int(kStations));
    QVERIFY2(turns >= 3 && turns <= 4, qPrintable(QString::number(turns)));
}

// The checker sees to it, too.
void TestSparkplugBirths::tellsNothingBetweenBirths()
{
    askForRebirth();
    for (qint64 value = 7; value < 10; ++value) {
        take({change("0.0", value)});
    }
    answer();
    QVERIFY(!topics().contains(QLatin1String("DATA")));
    settle();
    const QString told = topics();
    QCOMPARE(int(told.count(QLatin1String("DDATA"))), 3);
    QVERIFY(told.indexOf(QLatin1String("DATA")) > told.lastIndexOf(QLatin1String("BIRTH")));
    QCOMPARE(int(m_safe.size()), int(m_number));
}

void TestSparkplugBirths::isReadyBehindItsBirths()
{
    m_connection->lose();
    m_ready = 0;
    begin();
    QCOMPARE(m_ready, 0);
    settle();
    QCOMPARE(m_ready, 1);
    QCOMPARE(births(), int(kStations));
}

void TestSparkplugBirths::findsALostOneBetweenBirths()
{
    askForRebirth();
    m_sink->tell({QLatin1String("line16"), 19, LineStatus::State::Bad, QString(), 1});
    m_clock.runFor(5000);
    QVERIFY(topics().endsWith(QLatin1String("DDEATH/line16.19")));
}

void TestSparkplugBirths::tellsMuchBitByBit()
{
    m_connection->lose();
    begin();
    settle();
    topics();
    m_sink->caughtUp();
    take({change("0.0", qint64(8))});
    const QString first = topics();
    QVERIFY2(first.count(QLatin1String("DDATA")) <= 260, qPrintable(first));
    // It does not wait for all of the others.
    QVERIFY(m_clock.step(m_clock.nowNs()));
    const QString second = topics();
    QVERIFY(second.contains(QLatin1String("mark")));
    settle();
    QCOMPARE(int((first + second + topics()).count(QLatin1String("DDATA"))), int(kStations) + 1);
}

// So that a broker that comes back does not get all births of all gateways at once.
void TestSparkplugBirths::comesBackAtItsOwnTime()
{
    SparkplugSettings settings;
    settings.spreadMs = 5000;
    m_connection->stream.clear();
    QSet<qint64> times;
    for (int node = 0; node < 30; ++node) {
        make(settings); // at its start it does not wait
        QCOMPARE(m_connection->opened, 1);
        m_connection->lose();
        const qint64 lostMs = m_clock.nowMs();
        begin();
        QVERIFY(m_clock.runUntil([this] { return m_connection->opened == 2; }, 5000));
        times.insert((m_clock.nowMs() - lostMs) / 500);
        // Also where nobody is there for a while.
        m_connection->manner = FakeConnection::Manner::IsAway;
        m_connection->lose();
        begin();
        m_clock.runFor(5000);
        QCOMPARE(m_connection->opened, 3);
    }
    // Of ten parts of the time nearly all have one.
    QVERIFY2(times.size() >= 7, qPrintable(QString::number(times.size())));
}

QTEST_APPLESS_MAIN(TestSparkplugBirths)
#include "test_sparkplug_births.moc"
