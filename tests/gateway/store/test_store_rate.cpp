#include "gateway/store/store_rate.h"

#include <QtTest>

using namespace cnet::gateway;

class TestStoreRate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysNothingInTheFirstMinute()
    {
        StoreRate rate;
        rate.start(5000);
        QVERIFY(!rate.perMs());
        rate.note(5000 + kMinute / 2, 1000);
        QVERIFY(!rate.perMs());
        rate.note(5000 + 2 * kMinute, 1000);
        QVERIFY(rate.perMs());
    }

    void meansTheLastHour()
    {
        StoreRate rate;
        rate.start(0);
        qint64 nowMs = 0;
        const auto growFor = [&](int minutes, qint64 bytes) {
            for (int i = 0; i < minutes; ++i) {
                nowMs += kMinute;
                rate.note(nowMs, bytes);
            }
            return *rate.perMs() * kMinute;
        };
        QVERIFY(qAbs(growFor(10, 600) - 600) < 1);
        // Six hours of another pace, and what was before counts for nothing.
        QVERIFY(qAbs(growFor(360, 60) - 60) < 3);
        rate.start(nowMs);
        QVERIFY(!rate.perMs());
    }

private:
    static constexpr qint64 kMinute = 60000;
};

QTEST_APPLESS_MAIN(TestStoreRate)

#include "test_store_rate.moc"
