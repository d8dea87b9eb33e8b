#include "host/support/test_registers.h"

#include "host/monitor/monitor.h"

#include <QtTest>

using namespace cnet;

namespace {

RequestRange block(const char *name, int start, int count, int station = 1)
{
    RequestRange block{};
    block.stationNo = station;
    block.regName = QLatin1String(name);
    block.startAddr = start;
    block.count = count;
    return block;
}

QDateTime at(int second)
{
    return {QDate(2024, 5, 6), QTime(12, 0, second)};
}

QString changeText(const QVector<ValueChange> &changes)
{
    QStringList texts;
    for (const ValueChange &change : changes) {
        texts.append(
            QString::fromLatin1("%1+%2=%3").arg(change.item).arg(change.offset).arg(change.value));
    }
    return texts.join(QLatin1Char(' '));
}

} // namespace

class TestMonitor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_memory.clear(); }
    void makesKeys();
    void knowsWhatABlockHolds_data();
    void knowsWhatABlockHolds();
    void firstReadingIsAChange();
    void reportsChangesOnce();
    void oneValueInSeveralItems();
    void ageIsThatOfTheOldestPart();
    void failures();

private:
    Monitor monitor(const QVector<Item> &items)
    {
        return Monitor(items, 60,
                       [this](int station, const RegisterInfo &reg, int start, int count) {
                           QVector<quint16> values;
                           for (int i = 0; i < count; ++i) {
                               values.append(m_memory.value(key(station, reg.name, start + i)));
                           }
                           return values;
                       });
    }
    static QString key(int station, const QString &name, int address)
    {
        return QString::fromLatin1("%1/%2:%3").arg(station).arg(name).arg(address);
    }
    void set(const char *name, int address, quint16 value)
    {
        m_memory.insert(key(1, QLatin1String(name), address), value);
    }

    QHash<QString, quint16> m_memory;
};

void TestMonitor::makesKeys()
{
    const Monitor watched =
        monitor({testItem("D_W", 100, 61, 3), testItem("M_bit", 53, 2), testItem("TX", 7, 2)});
    QStringList keys;
    for (const KEY_ADDRESS &key : watched.keys()) {
        keys.append(QString::fromLatin1("%1/%2:%3*%4 %5 %6")
                        .arg(key.stationNo)
                        .arg(key.regName)
                        .arg(key.startAddr)
                        .arg(key.count)
                        .arg(key.bitFlag)
                        .arg(key.addrText));
    }
    QCOMPARE(keys,
             (QStringList{QLatin1String("3/D_W:100*60 0 100"), QLatin1String("3/D_W:160*1 0 160"),
                          QLatin1String("1/M_bit:53*2 -1 3.5"), QLatin1String("1/TX:7*1 -1 7"),
                          QLatin1String("1/TX:8*1 -1 8")}));
}

void TestMonitor::knowsWhatABlockHolds_data()
{
    QTest::addColumn<QString>("reg");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("blockName");
    QTest::addColumn<int>("blockStart");
    QTest::addColumn<int>("blockCount");
    QTest::addColumn<int>("station");
    QTest::addColumn<bool>("holds");
    QTest::newRow("exactly") << "D_W" << 10 << 2 << "D_W" << 10 << 2 << 1 << true;
    QTest::newRow("within") << "D_W" << 10 << 2 << "D_W" << 0 << 60 << 1 << true;
    QTest::newRow("begins earlier") << "D_W" << 10 << 2 << "D_W" << 11 << 9 << 1 << false;
    QTest::newRow("ends later") << "D_W" << 10 << 2 << "D_W" << 0 << 11 << 1 << false;
    QTest::newRow("another station") << "D_W" << 10 << 2 << "D_W" << 10 << 2 << 2 << false;
    QTest::newRow("another device") << "D_W" << 10 << 2 << "M_W" << 10 << 2 << 1 << false;
    QTest::newRow("bits in their word") << "M_bit" << 53 << 2 << "M_W" << 3 << 1 << 1 << true;
    QTest::newRow("bits in two words") << "M_bit" << 63 << 2 << "M_W" << 3 << 2 << 1 << true;
    QTest::newRow("bits in the first only") << "M_bit" << 63 << 2 << "M_W" << 3 << 1 << 1 << false;
    QTest::newRow("contact") << "TX" << 7 << 1 << "TX" << 7 << 1 << 1 << true;
    QTest::newRow("another contact") << "TX" << 7 << 1 << "TX" << 8 << 1 << 1 << false;
}

void TestMonitor::knowsWhatABlockHolds()
{
    QFETCH(QString, reg);
    QFETCH(int, start);
    QFETCH(int, count);
    QFETCH(QString, blockName);
    QFETCH(int, blockStart);
    QFETCH(int, blockCount);
    QFETCH(int, station);
    Monitor watched = monitor({testItem(reg.toLatin1().constData(), start, count)});
    watched.readEnded(block(blockName.toLatin1().constData(), blockStart, blockCount, station),
                      true, 1, at(1));
    QTEST(watched.items().first().everRead(), "holds");
}

void TestMonitor::firstReadingIsAChange()
{
    Monitor watched = monitor({testItem("D_W", 10, 3)});
    set("D_W", 11, 5);
    // The driver reports the value that is not 0 before the answer is dealt with.
    watched.valueChanged(1, QLatin1String("D_W"), 11, at(1));
    watched.readEnded(block("D_W", 10, 3), true, 1000, at(2));
    QCOMPARE(changeText(watched.takeChanges()), QLatin1String("0+0=0 0+1=5 0+2=0"));
    watched.readEnded(block("D_W", 10, 3), true, 2000, at(3));
    QVERIFY(watched.takeChanges().isEmpty());
    QCOMPARE(watched.items().first().lastChange, at(2));
}

void TestMonitor::reportsChangesOnce()
{
    Monitor watched = monitor({testItem("M_bit", 53, 2)});
    watched.readEnded(block("M_W", 3, 1), true, 1, at(1));
    watched.takeChanges();
    set("M_bit", 54, 1);
    watched.valueChanged(1, QLatin1String("M_bit"), 54, at(2));
    watched.valueChanged(1, QLatin1String("M_bit"), 54, at(3)); // same value
    watched.valueChanged(1, QLatin1String("M_bit"), 55, at(4)); // not watched
    watched.valueChanged(2, QLatin1String("M_bit"), 54, at(4)); // another station
    watched.valueChanged(1, QLatin1String("M_W"), 3, at(4));    // not watched as a word
    watched.valueChanged(1, QLatin1String("RWI"), 54, at(4));   // no register
    QCOMPARE(changeText(watched.takeChanges()), QLatin1String("0+1=1"));
    QVERIFY(watched.takeChanges().isEmpty());
    QCOMPARE(watched.items().first().lastChange, at(2));
    QCOMPARE(watched.items().first().values, (QVector<quint16>{0, 1}));
}

void TestMonitor::oneValueInSeveralItems()
{
    Monitor watched = monitor({testItem("D_W", 10, 3), testItem("D_W", 12, 1)});
    set("D_W", 12, 9);
    watched.valueChanged(1, QLatin1String("D_W"), 12, at(1));
    QCOMPARE(changeText(watched.takeChanges()), QLatin1String("0+2=9 1+0=9"));
}

void TestMonitor::ageIsThatOfTheOldestPart()
{
    Monitor watched = monitor({testItem("D_W", 0, 120)});
    QCOMPARE(watched.items().first().ageMs(500), WatchedItem::kNeverRead);
    watched.readEnded(block("D_W", 0, 60), true, 100, at(1));
    QCOMPARE(watched.items().first().ageMs(500), WatchedItem::kNeverRead);
    watched.readEnded(block("D_W", 60, 60), true, 200, at(1));
    QCOMPARE(watched.items().first().ageMs(500), 400);
    watched.readEnded(block("D_W", 0, 60), true, 300, at(1));
    QCOMPARE(watched.items().first().ageMs(500), 300);
}

void TestMonitor::failures()
{
    Monitor watched = monitor({testItem("D_W", 0, 1), testItem("D_W", 500, 1)});
    QVERIFY(!watched.allGood()); // nothing was read yet
    watched.readEnded(block("D_W", 0, 1), true, 1, at(1));
    watched.readEnded(block("D_W", 500, 1), false, 1, at(1));
    QVERIFY(!watched.items().at(0).failed());
    QVERIFY(watched.items().at(1).failed());
    QVERIFY(!watched.allGood());
    watched.readEnded(block("D_W", 500, 1), true, 2, at(1));
    QVERIFY(watched.allGood());
    watched.readEnded(block("D_W", 0, 1), false, 3, at(1));
    QVERIFY(!watched.allGood());
    QCOMPARE(watched.items().at(0).ageMs(10), 9); // a failure makes nothing younger
}

QTEST_APPLESS_MAIN(TestMonitor)
#include "test_monitor.moc"
