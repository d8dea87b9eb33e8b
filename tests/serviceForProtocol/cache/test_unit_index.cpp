#include <QtTest/QtTest>

#include "serviceForProtocol/cache/unit_index.h"

namespace {

_DATA_ makeUnit(int stationNo, const char *regPrefix, int unitAddr)
{
    _DATA_ record = _DATA_();
    record.stationNo = stationNo;
    record.regPrefix = QString::fromLatin1(regPrefix);
    record.unitAddr = unitAddr;
    return record;
}

QList<_DATA_> makeArea(int units, const char *regPrefix = "D")
{
    QList<_DATA_> area;
    for (int i = 0; i < units; ++i) {
        area.append(makeUnit(1, regPrefix, i));
    }
    return area;
}

int findIn(UnitIndex &index, const QList<_DATA_> &area, int stationNo, const char *regPrefix,
           int unitAddr)
{
    return index.find(area, stationNo, QString::fromLatin1(regPrefix), unitAddr);
}

} // namespace

class TestUnitIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comparesTheWholeKey_data();
    void comparesTheWholeKey();
    void unitIsToldByEveryField();
    void findsEveryUnit_data();
    void findsEveryUnit();
    void followsAGrowingArea();
    void followsAnEmptiedArea();
    void followsAnExchangedArea();
};

void TestUnitIndex::comparesTheWholeKey_data()
{
    QTest::addColumn<int>("stationNo");
    QTest::addColumn<QByteArray>("regPrefix");
    QTest::addColumn<int>("unitAddr");
    QTest::addColumn<int>("expected");
    QTest::newRow("first") << 1 << QByteArray("D") << 7 << 0;
    QTest::newRow("other station") << 2 << QByteArray("D") << 7 << 1;
    QTest::newRow("other letter") << 1 << QByteArray("M") << 7 << 2;
    QTest::newRow("longer name, same first letter") << 1 << QByteArray("DX") << 7 << 3;
    QTest::newRow("negative address") << 1 << QByteArray("D") << -7 << 4;
    QTest::newRow("no letter") << 1 << QByteArray("") << 7 << 5;
    QTest::newRow("unknown station") << 3 << QByteArray("D") << 7 << -1;
    QTest::newRow("unknown letter") << 1 << QByteArray("d") << 7 << -1;
    QTest::newRow("unknown address") << 1 << QByteArray("D") << 8 << -1;
}

void TestUnitIndex::comparesTheWholeKey()
{
    QFETCH(int, stationNo);
    QFETCH(QByteArray, regPrefix);
    QFETCH(int, unitAddr);
    QFETCH(int, expected);
    QList<_DATA_> area;
    area << makeUnit(1, "D", 7) << makeUnit(2, "D", 7) << makeUnit(1, "M", 7)
         << makeUnit(1, "DX", 7) << makeUnit(1, "D", -7) << makeUnit(1, "", 7);
    UnitIndex index;
    QCOMPARE(findIn(index, area, stationNo, regPrefix.constData(), unitAddr), expected);
}

void TestUnitIndex::unitIsToldByEveryField()
{
    const _DATA_ unit = makeUnit(5, "M", 7);
    QVERIFY(isUnit(unit, 5, QString::fromLatin1("M"), 7));
    QVERIFY(!isUnit(unit, 4, QString::fromLatin1("M"), 7));
    QVERIFY(!isUnit(unit, 6, QString::fromLatin1("M"), 7));
    QVERIFY(!isUnit(unit, 5, QString::fromLatin1("L"), 7));
    QVERIFY(!isUnit(unit, 5, QString::fromLatin1("N"), 7));
    QVERIFY(!isUnit(unit, 5, QString::fromLatin1("M"), 6));
    QVERIFY(!isUnit(unit, 5, QString::fromLatin1("M"), 8));
}

void TestUnitIndex::findsEveryUnit_data()
{
    QTest::addColumn<int>("units");
    QTest::newRow("none") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("just below the smallest table's load") << 170;
    QTest::newRow("just above it") << 171;
    QTest::newRow("several tables later") << 20000;
}

void TestUnitIndex::findsEveryUnit()
{
    QFETCH(int, units);
    const QList<_DATA_> area = makeArea(units);
    UnitIndex index;
    for (int i = 0; i < units; ++i) {
        QCOMPARE(findIn(index, area, 1, "D", i), i);
    }
    QCOMPARE(findIn(index, area, 1, "D", units), -1);
}

void TestUnitIndex::followsAGrowingArea()
{
    QList<_DATA_> area;
    UnitIndex index;
    for (int i = 0; i < 1000; ++i) {
        QCOMPARE(findIn(index, area, 1, "D", i), -1);
        area.append(makeUnit(1, "D", i));
        QCOMPARE(findIn(index, area, 1, "D", i), i);
    }
    QCOMPARE(findIn(index, area, 1, "D", 0), 0);
}

void TestUnitIndex::followsAnEmptiedArea()
{
    QList<_DATA_> area = makeArea(500);
    UnitIndex index;
    QCOMPARE(findIn(index, area, 1, "D", 499), 499);
    area.clear();
    QCOMPARE(findIn(index, area, 1, "D", 499), -1);
    area.append(makeUnit(1, "D", 499));
    QCOMPARE(findIn(index, area, 1, "D", 499), 0);
}

void TestUnitIndex::followsAnExchangedArea()
{
    UnitIndex index;
    const QList<_DATA_> words = makeArea(300, "D");
    const QList<_DATA_> relays = makeArea(300, "M");
    QCOMPARE(findIn(index, words, 1, "D", 299), 299);
    QCOMPARE(findIn(index, relays, 1, "M", 17), 17);
    QCOMPARE(findIn(index, relays, 1, "D", 17), -1);

    UnitIndex small;
    QCOMPARE(findIn(small, makeArea(1, "D"), 1, "D", 0), 0);
    QCOMPARE(findIn(small, makeArea(1, "M"), 1, "M", 0), 0);
    QCOMPARE(findIn(small, makeArea(1, "M"), 1, "D", 0), -1);
}

QTEST_APPLESS_MAIN(TestUnitIndex)

#include "test_unit_index.moc"
