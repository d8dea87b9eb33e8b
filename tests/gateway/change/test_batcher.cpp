#include "gateway/support/changes.h"
#include "host/support/virtual_clock.h"

#include "gateway/change/batcher.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** Changes go on together: with the first bound that is reached. */
class TestBatcher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_sizes.clear(); }
    void waitsForItsAge();
    void isFullByCount();
    void isFullByBytes();
    void flushes();

private:
    Batcher batcher(const BatchBounds &bounds)
    {
        return {m_clock, bounds,
                [this](const LedgerBatch &batch) { m_sizes.append(batch.values); }};
    }
    static void add(Batcher &batcher, int count)
    {
        for (int i = 0; i < count; ++i) {
            batcher.add(changeOf(sourceOf("a"), qint64(i)));
        }
    }

    VirtualClock m_clock;
    QVector<int> m_sizes;
};

void TestBatcher::waitsForItsAge()
{
    Batcher batcher = this->batcher({100, 100000, 1000});
    add(batcher, 1);
    m_clock.runFor(600);
    add(batcher, 2);
    m_clock.runFor(399);
    QCOMPARE(m_sizes, QVector<int>());
    m_clock.runFor(1);
    QCOMPARE(m_sizes, QVector<int>({3}));
    m_clock.runFor(5000);
    QCOMPARE(m_sizes, QVector<int>({3}));
}

void TestBatcher::isFullByCount()
{
    Batcher batcher = this->batcher({3, 100000, 1000});
    add(batcher, 7);
    QCOMPARE(m_sizes, QVector<int>({3, 3}));
    m_clock.runFor(1000);
    QCOMPARE(m_sizes, QVector<int>({3, 3, 1}));
}

void TestBatcher::isFullByBytes()
{
    Batcher batcher = this->batcher({1000, 1000, 1000});
    add(batcher, 100);
    QVERIFY(m_sizes.size() > 2);
    QVERIFY(m_sizes.first() > 5);
}

void TestBatcher::flushes()
{
    Batcher batcher = this->batcher({100, 100000, 1000});
    batcher.flush();
    QCOMPARE(m_sizes, QVector<int>());
    add(batcher, 2);
    batcher.flush();
    m_clock.runFor(2000);
    QCOMPARE(m_sizes, QVector<int>({2}));
}

QTEST_APPLESS_MAIN(TestBatcher)
#include "test_batcher.moc"
