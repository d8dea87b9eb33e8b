#include "host/support/test_registers.h"

#include <host/monitor/monitor.h>

#include <QSignalSpy>
#include <QtTest>

#include <ctime>

using namespace cnet;

namespace {

const int kBlockWords = 60;

Monitor::Surroundings at(qint64 nowMs, bool lineOpen = true)
{
    Monitor::Surroundings now;
    now.nowMs = nowMs;
    now.wallMs = 5000 + nowMs;
    now.lineOpen = lineOpen;
    now.dueMs = 100;
    return now;
}

Failure failure(Failure::Kind kind)
{
    Failure failure;
    failure.kind = kind;
    return failure;
}

// What a monitor tells of changed values: "item+offset=value"; and of states: "item".
struct Told
{
    explicit Told(Monitor &monitor)
    {
        QObject::connect(&monitor, &Monitor::valuesChanged, &monitor,
                         [this](const QVector<ValueChange> &changes) {
                             for (const ValueChange &change : changes) {
                                 values.append(QString::fromLatin1("%1+%2=%3")
                                                   .arg(change.item)
                                                   .arg(change.offset)
                                                   .arg(change.value));
                             }
                         });
        QObject::connect(&monitor, &Monitor::itemStateChanged, &monitor,
                         [this](int item) { states.append(item); });
    }

    QString takeValues() { return std::exchange(values, {}).join(QLatin1Char(' ')); }
    QList<int> takeStates() { return std::exchange(states, {}); }

    QStringList values;
    QList<int> states;
};

} // namespace

Q_DECLARE_METATYPE(cnet::Failure::Kind)
Q_DECLARE_METATYPE(cnet::Quality)

class TestMonitor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cutsItemsIntoBlocks();
    void tellsInOrderAndOnce();
    void hasAQuality_data();
    void hasAQuality();
    void agesBecomeStale();
    void keepsWhatItKnows();
    void keepsManyItemsQuickly();
    void knowsRefusals();
    void showsWrites();
    void writesElsewhereAreNoneOfItsBusiness();
    void isComplete();
};

void TestMonitor::cutsItemsIntoBlocks()
{
    Monitor monitor(kBlockWords);
    QSignalSpy changed(&monitor, &Monitor::itemsChanged);
    monitor.setItems(testItems("D_W:0*61 TX:7*2"));
    QCOMPARE(static_cast<int>(changed.size()), 1);
    QCOMPARE(static_cast<int>(monitor.items().at(0).blocks.size()), 2);
    QCOMPARE(monitor.items().at(0).blocks.at(1).block.offset, 60);
    QCOMPARE(static_cast<int>(monitor.items().at(0).values.size()), 61);
    QCOMPARE(static_cast<int>(monitor.items().at(1).blocks.size()), 2);
}

void TestMonitor::tellsInOrderAndOnce()
{
    Monitor monitor(kBlockWords);
    Told told(monitor);
    monitor.setItems(testItems("D_W:10*3 D_W:12"));
    monitor.blockRead(1, 0, {9}, at(1));
    monitor.blockRead(0, 0, {0, 5, 9}, at(1));
    QVERIFY(told.values.isEmpty()); // not before it is to
    monitor.tell();
    QCOMPARE(told.takeValues(), QLatin1String("0+0=0 0+1=5 0+2=9 1+0=9"));
    QCOMPARE(told.takeStates(), (QList<int>{0, 1}));
    monitor.blockRead(0, 0, {0, 5, 9}, at(2));
    monitor.blockRead(0, 0, {}, at(3)); // read, and the driver reported no change
    monitor.tell();
    QCOMPARE(told.takeValues(), QString());
    QVERIFY(told.takeStates().isEmpty());
    QCOMPARE(monitor.items().at(0).changedAtMs, 5001);
    QCOMPARE(monitor.items().at(0).readAtMs, 5003);
    QCOMPARE(monitor.items().at(0).ageMs(10), 7);
    monitor.blockRead(0, 0, {0, 6, 9}, at(4));
    monitor.tell();
    QCOMPARE(told.takeValues(), QLatin1String("0+1=6"));
}

void TestMonitor::hasAQuality_data()
{
    QTest::addColumn<Failure::Kind>("kind"); // of the second block
    QTest::addColumn<bool>("waits");
    QTest::addColumn<bool>("lineOpen");
    QTest::addColumn<Quality>("quality");
    QTest::newRow("good") << Failure::None << false << true << Quality::Good;
    QTest::newRow("waiting") << Failure::None << true << true << Quality::Waiting;
    QTest::newRow("no answer") << Failure::NoAnswer << true << true << Quality::NoAnswer;
    QTest::newRow("bad answer") << Failure::BadAnswer << false << true << Quality::NoAnswer;
    QTest::newRow("refused") << Failure::Refused << true << true << Quality::Refused;
    QTest::newRow("line down") << Failure::Refused << true << false << Quality::LineDown;
}

void TestMonitor::hasAQuality()
{
    QFETCH(Failure::Kind, kind);
    QFETCH(bool, waits);
    QFETCH(bool, lineOpen);
    Monitor monitor(kBlockWords);
    monitor.setItems(testItems("D_W:0*61"));
    QCOMPARE(monitor.items().first().quality, Quality::NeverRead);
    monitor.blockRead(0, 0, QVector<quint16>(60, 1), at(1));
    QCOMPARE(monitor.items().first().quality, Quality::NeverRead); // not all of it
    monitor.blockRead(0, 1, {1}, at(1));
    if (kind != Failure::None) {
        monitor.blockFailed(0, 1, failure(kind), at(1));
    }
    if (waits) {
        monitor.writeBegun(testItem("D_W", 5, 1), {7}, at(1));
    }
    monitor.look(at(1, lineOpen));
    QTEST(monitor.items().first().quality, "quality");
    QCOMPARE(monitor.isGood(), monitor.items().first().quality == Quality::Good);
    // It goes as it came.
    monitor.writeEnded(testItem("D_W", 5, 1), {7}, Confirmation::Missing, at(1));
    monitor.blockRead(0, 1, {1}, at(1));
    monitor.look(at(1));
    QVERIFY(monitor.isGood());
}

void TestMonitor::agesBecomeStale()
{
    Monitor monitor(kBlockWords);
    Told told(monitor);
    monitor.setItems(testItems("D_W:0 D_W:100"));
    monitor.blockRead(0, 0, {1}, at(0));
    monitor.blockRead(1, 0, {1}, at(50));
    monitor.tell();
    told.takeStates();
    monitor.look(at(100));
    monitor.tell();
    QVERIFY(told.takeStates().isEmpty());
    monitor.look(at(101));
    monitor.tell();
    QCOMPARE(told.takeStates(), QList<int>{0});
    QCOMPARE(monitor.items().at(0).quality, Quality::Stale);
    QCOMPARE(monitor.items().at(1).quality, Quality::Good);
}

void TestMonitor::keepsWhatItKnows()
{
    Monitor monitor(kBlockWords);
    Told told(monitor);
    monitor.setItems(testItems("D_W:0 D_W:1*2 2/D_W:0"));
    monitor.blockRead(0, 0, {5}, at(1));
    monitor.blockRead(2, 0, {6}, at(1));
    monitor.setItems(testItems("D_W:1 D_W:0"));
    monitor.tell();
    // What was not told yet is told of the items that stay, under their new numbers.
    QCOMPARE(told.takeValues(), QLatin1String("1+0=5"));
    QCOMPARE(told.takeStates(), QList<int>{1});
    QVERIFY(!monitor.items().at(0).values.first().known);
    QCOMPARE(monitor.items().at(1).values.first().value, quint16(5));
    QCOMPARE(monitor.items().at(1).quality, Quality::Good);
    QCOMPARE(monitor.items().at(1).readAtMs, 5001);
    // What was told is told once.
    monitor.setItems(testItems("D_W:0"));
    monitor.blockRead(0, 0, {5}, at(2));
    monitor.tell();
    QCOMPARE(told.takeValues(), QString());
    QCOMPARE(monitor.items().first().changedAtMs, 5001);
}

void TestMonitor::keepsManyItemsQuickly()
{
    QVector<Item> items;
    for (int i = 0; i < 20000; ++i) {
        items.append(testItem("D_W", i % 10000, 1, 1 + i / 10000));
    }
    Monitor monitor(kBlockWords);
    monitor.setItems(items);
    monitor.blockRead(19999, 0, {5}, at(1));
    std::reverse(items.begin(), items.end());
    const std::clock_t begin = std::clock();
    monitor.setItems(items);
    QVERIFY(std::clock() - begin < 3 * CLOCKS_PER_SEC);
    QCOMPARE(monitor.items().first().values.first().value, quint16(5));
}

void TestMonitor::knowsRefusals()
{
    Monitor monitor(kBlockWords);
    monitor.setItems(testItems("1/D_W:0 2/D_W:0"));
    monitor.markRefused(0, 0, 0x1132, at(1));
    monitor.markRefused(1, 0, 0x1132, at(1));
    QVERIFY(monitor.items().at(0).blocks.first().refused);
    QVERIFY(monitor.items().at(0).reason().startsWith(QLatin1String("refused: 1132")));
    monitor.forgetRefusals(2);
    QVERIFY(monitor.items().at(0).blocks.first().refused);
    QVERIFY(!monitor.items().at(1).blocks.first().refused);
    QCOMPARE(monitor.items().at(1).quality, Quality::Refused); // until it is read
    monitor.setItems(testItems("1/D_W:0"));
    QVERIFY(!monitor.items().at(0).blocks.first().refused); // whoever asks again is answered again
}

void TestMonitor::showsWrites()
{
    Monitor monitor(kBlockWords);
    Told told(monitor);
    monitor.setItems(testItems("D_W:4*3"));
    const Item written = testItem("D_W", 5, 4); // more than is watched
    monitor.writeBegun(written, {7, 8, 9, 10}, at(1));
    monitor.writeBegun(testItem("D_W", 5, 1), {70}, at(1));
    monitor.tell();
    QCOMPARE(told.takeStates(), QList<int>{0});
    const QVector<ItemValue> &values = monitor.items().first().values;
    QVERIFY(!values.at(0).isShown());
    QCOMPARE(values.at(1).shown(), quint16(70));
    QCOMPARE(values.at(2).shown(), quint16(8));
    // The driver shows what is written at once, and this is not the PLC's.
    monitor.blockRead(0, 0, {1, 70, 8}, at(2));
    QVERIFY(values.at(0).known && !values.at(1).known && !values.at(2).known);
    monitor.writeEnded(testItem("D_W", 5, 1), {7}, Confirmation::Given, at(3));
    QVERIFY(values.at(1).isWaiting());
    monitor.writeEnded(testItem("D_W", 6, 1), {8}, Confirmation::Missing, at(3));
    QVERIFY(!values.at(2).isShown()); // unknown again
    monitor.writeEnded(testItem("D_W", 5, 1), {70}, Confirmation::Given, at(3));
    QCOMPARE(values.at(1).value, quint16(70));
    monitor.tell();
    QCOMPARE(told.takeValues(), QLatin1String("0+0=1 0+1=7 0+1=70"));
    QCOMPARE(told.takeStates(), QList<int>{0});
}

void TestMonitor::writesElsewhereAreNoneOfItsBusiness()
{
    Monitor monitor(kBlockWords);
    monitor.setItems(testItems("D_W:4*3"));
    for (const char *const item : {"2/D_W:5", "M_W:5", "D_W:0*4", "D_W:7", "D_bit:0.5"}) {
        monitor.writeBegun(testItems(item).first(), {1, 1, 1, 1}, at(1));
    }
    for (const ItemValue &cell : monitor.items().first().values) {
        QVERIFY(!cell.isWaiting());
    }
}

void TestMonitor::isComplete()
{
    Monitor monitor(kBlockWords);
    QVERIFY(monitor.isComplete() && monitor.isGood());
    monitor.setItems(testItems("D_W:0 D_W:100 D_W:200"));
    monitor.blockRead(0, 0, {1}, at(1));
    monitor.blockFailed(1, 0, failure(Failure::NoAnswer), at(1));
    QVERIFY(!monitor.isComplete());
    monitor.markRefused(2, 0, 0x1132, at(1));
    QVERIFY(monitor.isComplete());
    QVERIFY(!monitor.isGood());
    // Nobody has tried to read an item of which a part was read only, or while the line was down.
    monitor.setItems(testItems("D_W:0*100"));
    QVERIFY(static_cast<int>(monitor.items().first().blocks.size()) > 1);
    monitor.blockFailed(0, 0, failure(Failure::NoAnswer), at(1));
    QVERIFY(!monitor.isComplete());
    monitor.setItems(testItems("D_W:300"));
    monitor.look(at(1, false));
    QCOMPARE(monitor.items().first().quality, Quality::LineDown);
    QVERIFY(!monitor.isComplete());
}

QTEST_APPLESS_MAIN(TestMonitor)

#include "test_monitor.moc"
