#include "gateway/delivery/inbox.h"
#include "gateway/store/ledger_fixture.h"

using namespace cnet::gateway;

class TestInbox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsUntilRemoved();
    void dropsTheOldest();
    void removesOnlyWhatWasSeen();
};

namespace {

QVector<int> valuesIn(Inbox &inbox)
{
    QVector<int> values;
    for (const LedgerBatch &batch : inbox.all()) {
        values.append(batch.values);
    }
    return values;
}

} // namespace

void TestInbox::keepsUntilRemoved()
{
    Inbox inbox(1000);
    QVERIFY(inbox.isEmpty());
    inbox.put(batchOf(1));
    inbox.put(batchOf(2));
    QCOMPARE(valuesIn(inbox), QVector<int>({1, 2}));
    QCOMPARE(valuesIn(inbox), QVector<int>({1, 2}));
    inbox.removeSeen();
    QVERIFY(inbox.isEmpty());
    QCOMPARE(inbox.droppedValues(), 0);
}

void TestInbox::dropsTheOldest()
{
    Inbox inbox(350);
    for (int i = 1; i <= 5; ++i) {
        inbox.put(batchOf(i));
    }
    QCOMPARE(valuesIn(inbox), QVector<int>({3, 4, 5}));
    QCOMPARE(inbox.droppedValues(), 1 + 2);
    inbox.put(batchOf(6, 1000)); // larger than all, and the newest
    QCOMPARE(valuesIn(inbox), QVector<int>({6}));
}

// While the ledger stores them, others come, and some may have to go.
void TestInbox::removesOnlyWhatWasSeen()
{
    Inbox inbox(350);
    inbox.put(batchOf(1));
    inbox.put(batchOf(2));
    QCOMPARE(valuesIn(inbox), QVector<int>({1, 2}));
    inbox.put(batchOf(3));
    inbox.put(batchOf(4));              // 1 goes
    inbox.removeSeen();                 // 2 goes
    QCOMPARE(inbox.droppedValues(), 0); // 1 was stored
    QCOMPARE(valuesIn(inbox), QVector<int>({3, 4}));
    inbox.put(batchOf(5));
    inbox.put(batchOf(6)); // 3 goes
    QCOMPARE(valuesIn(inbox), QVector<int>({4, 5, 6}));
    QCOMPARE(inbox.droppedValues(), 3); // nobody stored it
}

QTEST_APPLESS_MAIN(TestInbox)
#include "test_inbox.moc"
