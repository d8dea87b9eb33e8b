#include "host/support/test_registers.h"

#include <host/schedule/poll_set.h>

#include <QtTest>

using namespace cnet;

namespace {

const int kBlockWords = 60;

// "1/D_W:100*60 1/TX:7"
QString keysText(const QList<KEY_ADDRESS> &keys)
{
    QStringList texts;
    for (const KEY_ADDRESS &key : keys) {
        texts.append(QString::fromLatin1("%1/%2:%3*%4")
                         .arg(key.stationNo)
                         .arg(key.regName)
                         .arg(key.addrText)
                         .arg(key.count));
    }
    return texts.join(QLatin1Char(' '));
}

AddressRange range(const char *name, int start, int count, int station = 1)
{
    return {station, QLatin1String(name), start, count};
}

Monitor::Surroundings at(qint64 nowMs)
{
    Monitor::Surroundings now;
    now.nowMs = nowMs;
    now.dueMs = 100;
    return now;
}

} // namespace

class TestPollSet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { m_core.start(DriverProperties()); }
    void asksForWhatIsWatched();
    void leavesOutWhatIsRefused();
    void knowsWhatABlockServes_data();
    void knowsWhatABlockServes();
    void takesValuesWhereTheyMayHaveChanged();
    void marksWholeStations();
    void forgetsMonitorsThatAreGone();

private:
    /** The driver shows what is written. */
    void show(const char *item, const QVector<quint16> &values)
    {
        m_core.queueWrite(testItems(item).first(), values);
    }

    DriverCore m_core;
};

void TestPollSet::initTestCase()
{
    QString error;
    QVERIFY2(m_core.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
}

void TestPollSet::asksForWhatIsWatched()
{
    PollSet set(m_core);
    Monitor first(kBlockWords);
    Monitor second(kBlockWords);
    set.add(&first);
    set.add(&second);
    QVERIFY(set.isEmpty());
    first.setItems(testItems("3/D_W:100*61 M_bit:3.5*2"));
    second.setItems(testItems("TX:7*2"));
    set.forget();
    QCOMPARE(set.stations(), (QVector<int>{3, 1}));
    QCOMPARE(keysText(set.keys([](int, const WatchedBlock &) { return true; })),
             QLatin1String("3/D_W:100*60 3/D_W:160*1 1/M_bit:3.5*2 1/TX:7*1 1/TX:8*1"));
    QCOMPARE(keysText(set.keys([](int station, const WatchedBlock &) { return station == 3; })),
             QLatin1String("3/D_W:100*60 3/D_W:160*1"));
}

void TestPollSet::leavesOutWhatIsRefused()
{
    PollSet set(m_core);
    Monitor monitor(kBlockWords);
    monitor.setItems(testItems("D_W:0*61 D_W:100"));
    set.add(&monitor);
    monitor.markRefused(0, 1, 0x1132, at(0));
    QCOMPARE(keysText(set.keys([](int, const WatchedBlock &) { return true; })),
             QLatin1String("1/D_W:0*60 1/D_W:100*1"));
}

void TestPollSet::knowsWhatABlockServes_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("station");
    QTest::addColumn<bool>("serves");
    const auto row = [](const char *what, const char *item, const char *name, int start, int count,
                        int station, bool serves) {
        QTest::newRow(what) << QString::fromLatin1(item) << QString::fromLatin1(name) << start
                            << count << station << serves;
    };
    row("exactly", "D_W:10*2", "D_W", 10, 2, 1, true);
    row("within", "D_W:10*2", "D_W", 0, 60, 1, true);
    row("begins earlier", "D_W:10*2", "D_W", 11, 9, 1, false);
    row("ends later", "D_W:10*2", "D_W", 0, 11, 1, false);
    row("another station", "D_W:10*2", "D_W", 10, 2, 2, false);
    row("another device", "D_W:10*2", "M_W", 10, 2, 1, false);
    row("bits in their word", "M_bit:3.5*2", "M_W", 3, 1, 1, true);
    row("bits in two words", "M_bit:3.15*2", "M_W", 3, 2, 1, true);
    row("bits in the first only", "M_bit:3.15*2", "M_W", 3, 1, 1, false);
    row("contact", "TX:7", "TX", 7, 1, 1, true);
    row("another contact", "TX:7", "TX", 8, 1, 1, false);
}

void TestPollSet::knowsWhatABlockServes()
{
    QFETCH(QString, item);
    QFETCH(QString, name);
    QFETCH(int, start);
    QFETCH(int, count);
    QFETCH(int, station);
    QFETCH(bool, serves);
    PollSet set(m_core);
    Monitor monitor(kBlockWords);
    monitor.setItems(testItems(item));
    set.add(&monitor);
    const AddressRange block{station, name, start, count};
    QVector<PollSet::Place> places;
    QCOMPARE(static_cast<int>(set.itemsIn(block, places).size()), serves ? 1 : 0);
    set.rangeRead(block, true, at(1));
    QCOMPARE(monitor.items().first().quality, serves ? Quality::Good : Quality::NeverRead);
}

void TestPollSet::takesValuesWhereTheyMayHaveChanged()
{
    PollSet set(m_core);
    Monitor monitor(kBlockWords);
    monitor.setItems(testItems("D_W:10*2"));
    set.add(&monitor);
    const AddressRange block = range("D_W", 0, 60);
    const auto second = [&monitor] { return monitor.items().first().values.at(1).value; };
    show("D_W:11", {5});
    set.rangeRead(block, false, at(1)); // for the first time
    QCOMPARE(second(), quint16(5));
    show("D_W:11", {6});
    set.rangeRead(block, false, at(2));
    QCOMPARE(second(), quint16(5));
    QCOMPARE(monitor.items().first().ageMs(2), 0);
    set.rangeRead(block, true, at(3));
    QCOMPARE(second(), quint16(6));
    show("D_W:11", {7});
    set.distrustCallbacks();
    set.rangeRead(block, false, at(4));
    QCOMPARE(second(), quint16(7));
    show("D_W:11", {8});
    set.rangeReadInPart(range("D_W", 10, 2), at(5)); // by a job
    QCOMPARE(second(), quint16(8));
    set.rangeReadInPart(range("D_W", 11, 1), at(9)); // not all of the block
    QCOMPARE(monitor.items().first().ageMs(9), 4);
}

void TestPollSet::marksWholeStations()
{
    PollSet set(m_core);
    Monitor monitor(kBlockWords);
    monitor.setItems(testItems("1/D_W:0 2/D_W:0 2/D_W:5"));
    set.add(&monitor);
    monitor.markRefused(2, 0, 0x1132, at(0));
    Failure failure;
    failure.kind = Failure::NoAnswer;
    set.stationFailed(2, failure, at(1));
    QCOMPARE(monitor.items().at(0).quality, Quality::NeverRead);
    QCOMPARE(monitor.items().at(1).quality, Quality::NoAnswer);
    QCOMPARE(monitor.items().at(2).quality, Quality::Refused);
    set.rangeFailed(range("D_W", 0, 1), failure, at(1));
    QCOMPARE(monitor.items().at(0).quality, Quality::NoAnswer);
}

void TestPollSet::forgetsMonitorsThatAreGone()
{
    PollSet set(m_core);
    auto monitor = std::make_unique<Monitor>(kBlockWords);
    monitor->setItems(testItems("D_W:0"));
    set.add(monitor.get());
    set.rangeRead(range("D_W", 0, 1), true, at(1));
    monitor.reset();
    QVERIFY(set.isEmpty());
    set.rangeRead(range("D_W", 0, 1), true, at(1));
    set.rangeReadInPart(range("D_W", 0, 1), at(1));
    QVector<PollSet::Place> places;
    QVERIFY(set.itemsIn(range("D_W", 0, 1), places).isEmpty());
    set.forget();
    QVERIFY(set.keys([](int, const WatchedBlock &) { return true; }).isEmpty());
}

QTEST_GUILESS_MAIN(TestPollSet)

#include "test_poll_set.moc"
