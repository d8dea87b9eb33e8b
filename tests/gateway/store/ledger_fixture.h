#pragma once

#include "gateway/store/ledger.h"

#include <QTemporaryDir>
#include <QtTest>

namespace cnet::gateway {

/** A clock that a test sets by hand; nothing waits for it. */
class HandClock : public Clock
{
public:
    qint64 ms = 1000;
    qint64 wall = 1700000000000;

    void pass(qint64 passedMs)
    {
        ms += passedMs;
        wall += passedMs;
    }

    qint64 nowNs() const override { return ms * 1000000; }
    qint64 wallMs() const override { return wall; }
    std::unique_ptr<Alarm> makeAlarm() override { return nullptr; }
};

/** A batch whose body says how many values it has. */
inline LedgerBatch batchOf(int values, int bytes = 100)
{
    LedgerBatch batch;
    batch.values = values;
    batch.body = QByteArray::number(values).leftJustified(bytes, '.');
    return batch;
}

inline QVector<qint64> numbersOf(const QVector<LedgerBatch> &batches)
{
    QVector<qint64> numbers;
    for (const LedgerBatch &batch : batches) {
        numbers.append(batch.number);
    }
    return numbers;
}

} // namespace cnet::gateway
