#include <QtTest/QtTest>

#include "serviceForProtocol/cache/unit_index.h"
#include "support/rows.h"

namespace {

_DATA_ makeUnit(int stationNo, const char *regPrefix, int unitAddr)
{
    _DATA_ record = _DATA_();
    record.stationNo = stationNo;
    record.regPrefix = latin(regPrefix);
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
    return index.find(area, stationNo, latin(regPrefix), unitAddr);
}

} // namespace

static const struct
{
    const char *what;
    int stationNo;
    const char *regPrefix;
    int unitAddr, expected;
} kComparesTheWholeKey[] = {
    {"first", 1, "D", 7, 0},
    {"other station", 2, "D", 7, 1},
    {"other letter", 1, "M", 7, 2},
    {"longer name, same first letter", 1, "DX", 7, 3},
    {"negative address", 1, "D", -7, 4},
    {"no letter", 1, "", 7, 5},
    {"unknown station", 3, "D", 7, -1},
    {"unknown letter", 1, "d", 7, -1},
    {"unknown address", 1, "D", 8, -1},
};

static const Given<int> kFindsEveryUnit[] = {
    {"none", 0},
    {"one", 1},
    {"just below the smallest table's load", 170},
    {"just above it", 171},
    {"several tables later", 20000},
};

class TestUnitIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comparesTheWholeKey_data() { addRows(kComparesTheWholeKey); }
    void comparesTheWholeKey()
    {
        const auto &row = currentRow(kComparesTheWholeKey);
        QList<_DATA_> area;
        area << makeUnit(1, "D", 7) << makeUnit(2, "D", 7) << makeUnit(1, "M", 7)
             << makeUnit(1, "DX", 7) << makeUnit(1, "D", -7) << makeUnit(1, "", 7);
        UnitIndex index;
        QCOMPARE(findIn(index, area, row.stationNo, row.regPrefix, row.unitAddr), row.expected);
    }

    void unitIsToldByEveryField()
    {
        const _DATA_ unit = makeUnit(5, "M", 7);
        QVERIFY(isUnit(unit, 5, latin("M"), 7));
        QVERIFY(!isUnit(unit, 4, latin("M"), 7));
        QVERIFY(!isUnit(unit, 6, latin("M"), 7));
        QVERIFY(!isUnit(unit, 5, latin("L"), 7));
        QVERIFY(!isUnit(unit, 5, latin("N"), 7));
        QVERIFY(!isUnit(unit, 5, latin("M"), 6));
        QVERIFY(!isUnit(unit, 5, latin("M"), 8));
    }

    void findsEveryUnit_data() { addRows(kFindsEveryUnit); }
    void findsEveryUnit()
    {
        const auto &row = currentRow(kFindsEveryUnit);
        const QList<_DATA_> area = makeArea(row.given);
        UnitIndex index;
        for (int i = 0; i < row.given; ++i) {
            QCOMPARE(findIn(index, area, 1, "D", i), i);
        }
        QCOMPARE(findIn(index, area, 1, "D", row.given), -1);
    }

    void followsAGrowingArea()
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

    void followsAnEmptiedArea()
    {
        QList<_DATA_> area = makeArea(500);
        UnitIndex index;
        QCOMPARE(findIn(index, area, 1, "D", 499), 499);
        area.clear();
        QCOMPARE(findIn(index, area, 1, "D", 499), -1);
        area.append(makeUnit(1, "D", 499));
        QCOMPARE(findIn(index, area, 1, "D", 499), 0);
    }

    void followsAnExchangedArea()
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
};

QTEST_APPLESS_MAIN(TestUnitIndex)
#include "test_unit_index.moc"
