#include <QtTest/QtTest>

#include "ls_master_k_cnet/records.h"
#include "serviceForProtocol/address/weight_order.h"
#include "support/rows.h"

typedef QVector<quint32> Weights;
typedef QVector<int> Positions;

static const Case<Weights, Positions> kOrdersPositions[] = {
    {"none", Weights(), Positions()},
    {"one", (Weights() << 5U), (Positions() << 0)},
    {"rising stays", (Weights() << 1U << 2U << 3U), (Positions() << 0 << 1 << 2)},
    {"falling turns", (Weights() << 3U << 2U << 1U), (Positions() << 2 << 1 << 0)},
    {"equal stays", (Weights() << 2U << 1U << 2U << 1U), (Positions() << 1 << 3 << 0 << 2)},
    {"a weight far below 0 sorts last", (Weights() << 0x80000000U << 5U), (Positions() << 1 << 0)},
    {"a weight below 0 sorts last", (Weights() << static_cast<quint32>(-65530) << 9U),
     (Positions() << 1 << 0)},
};

static _RCP_VAR_PRO makeRecord(int stationNo, const char *regName, int startAddr, int tag)
{
    _RCP_VAR_PRO record = _RCP_VAR_PRO();
    record.stationNo = stationNo;
    record.regName = latin(regName);
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

class TestWeightOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ordersPositions_data() { addRows(kOrdersPositions); }
    void ordersPositions()
    {
        const auto &row = currentRow(kOrdersPositions);
        QCOMPARE(orderByWeight(row.given), row.expected);
    }

    void sortsRecordsByStationRegisterAddress()
    {
        QVector<_RCP_VAR_PRO> records;
        records << makeRecord(2, "D_W", 0, 3) << makeRecord(1, "M_W", 0, 2)
                << makeRecord(1, "D_W", 9, 1) << makeRecord(1, "D_W", 5, 0);
        sortByWeight(records);
        QCOMPARE(tagsOf(records), Positions() << 0 << 1 << 2 << 3);
    }

    void keepsEqualRecordsInTheirOrder()
    {
        QVector<_RCP_VAR_PRO> records;
        records << makeRecord(1, "D_W", 7, 0) << makeRecord(1, "D_W", 7, 1)
                << makeRecord(1, "D_W", 6, 2) << makeRecord(1, "D_W", 7, 3);
        sortByWeight(records);
        QCOMPARE(tagsOf(records), Positions() << 2 << 0 << 1 << 3);
    }

    void sortsManyRecordsAtOnce()
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
};

QTEST_APPLESS_MAIN(TestWeightOrder)
#include "test_weight_order.moc"
