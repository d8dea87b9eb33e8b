#include <QtTest/QtTest>

#include "ls_master_k_cnet/records.h"
#include "serviceForProtocol/address/weight_order.h"

class TestWeightOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ordersPositions_data();
    void ordersPositions();
    void sortsRecordsByStationRegisterAddress();
    void keepsEqualRecordsInTheirOrder();
    void sortsManyRecordsAtOnce();
};

typedef QVector<quint32> Weights;
typedef QVector<int> Positions;

Q_DECLARE_METATYPE(Weights)
Q_DECLARE_METATYPE(Positions)

void TestWeightOrder::ordersPositions_data()
{
    QTest::addColumn<Weights>("weights");
    QTest::addColumn<Positions>("expected");
    QTest::newRow("none") << Weights() << Positions();
    QTest::newRow("one") << (Weights() << 5U) << (Positions() << 0);
    QTest::newRow("rising stays") << (Weights() << 1U << 2U << 3U) << (Positions() << 0 << 1 << 2);
    QTest::newRow("falling turns") << (Weights() << 3U << 2U << 1U) << (Positions() << 2 << 1 << 0);
    QTest::newRow("equal stays") << (Weights() << 2U << 1U << 2U << 1U)
                                 << (Positions() << 1 << 3 << 0 << 2);
    QTest::newRow("a weight far below 0 sorts last")
        << (Weights() << 0x80000000U << 5U) << (Positions() << 1 << 0);
    QTest::newRow("a weight below 0 sorts last")
        << (Weights() << static_cast<quint32>(-65530) << 9U) << (Positions() << 1 << 0);
}

void TestWeightOrder::ordersPositions()
{
    QFETCH(Weights, weights);
    QFETCH(Positions, expected);
    QCOMPARE(orderByWeight(weights), expected);
}

static _RCP_VAR_PRO makeRecord(int stationNo, const char *regName, int startAddr, int tag)
{
    _RCP_VAR_PRO record = _RCP_VAR_PRO();
    record.stationNo = stationNo;
    record.regName = QString::fromLatin1(regName);
    record.startAddr = startAddr;
    record.reserved = tag;
    return record;
}

static Positions tagsOf(const QVector<_RCP_VAR_PRO> &records)
{
    Positions tags;
    for (const _RCP_VAR_PRO &record : records) {
        tags.append(record.reserved);
    }
    return tags;
}

void TestWeightOrder::sortsRecordsByStationRegisterAddress()
{
    QVector<_RCP_VAR_PRO> records;
    records << makeRecord(2, "D_W", 0, 3) << makeRecord(1, "M_W", 0, 2)
            << makeRecord(1, "D_W", 9, 1) << makeRecord(1, "D_W", 5, 0);
    sortByWeight(records);
    QCOMPARE(tagsOf(records), Positions() << 0 << 1 << 2 << 3);
}

void TestWeightOrder::keepsEqualRecordsInTheirOrder()
{
    QVector<_RCP_VAR_PRO> records;
    records << makeRecord(1, "D_W", 7, 0) << makeRecord(1, "D_W", 7, 1)
            << makeRecord(1, "D_W", 6, 2) << makeRecord(1, "D_W", 7, 3);
    sortByWeight(records);
    QCOMPARE(tagsOf(records), Positions() << 2 << 0 << 1 << 3);
}

void TestWeightOrder::sortsManyRecordsAtOnce()
{
    QVector<_RCP_VAR_PRO> records;
    for (int i = 0; i < 5000; ++i) {
        records.append(makeRecord(1, "D_W", (i * 7919) % 5000, (i * 7919) % 5000));
    }
    sortByWeight(records);
    for (int i = 0; i < records.size(); ++i) {
        QCOMPARE(records.at(i).reserved, i);
    }
}

QTEST_APPLESS_MAIN(TestWeightOrder)

#include "test_weight_order.moc"
