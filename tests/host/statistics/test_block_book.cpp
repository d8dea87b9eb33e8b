#include <host/statistics/block_book.h>

#include "host/support/reports.h"

#include <QtTest>

using namespace cnet;

namespace {

ExchangeReport readOf(int start, qint64 sentMs)
{
    ExchangeReport report = reportOf(Outcome::Answered, 1, sentMs);
    report.range.start = start;
    return report;
}

} // namespace

class TestBlockBook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsBlocksApart();
    void leavesFencesOut();
    void isBounded();
    void makesRoomForNewBlocks();
};

void TestBlockBook::keepsBlocksApart()
{
    BlockBook book;
    ExchangeReport other = reportOf(Outcome::TimedOut);
    book.note(other);
    other.range.count = 4;
    book.note(other);
    other.range.station = 3;
    book.note(other);
    book.note(other);
    QCOMPARE(static_cast<int>(book.all().size()), 3);
    QCOMPARE(book.all().value({3, QLatin1String("D_W"), 100, 4}).timeouts, Q_INT64_C(2));
    book.clear();
    QVERIFY(book.all().isEmpty());
}

void TestBlockBook::leavesFencesOut()
{
    BlockBook book;
    ExchangeReport fence = reportOf(Outcome::Answered);
    fence.purpose = Purpose::Fence;
    book.note(fence);
    ExchangeReport unsent = reportOf(Outcome::TimedOut);
    unsent.reply.sent = false;
    book.note(unsent);
    QVERIFY(book.all().isEmpty());
}

// Whoever is counted stays so; the rest is counted all the same.
void TestBlockBook::isBounded()
{
    BlockBook book;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < BlockBook::kMostBlocks + 50; ++i) {
            book.note(readOf(i, round * 1000 + i));
        }
    }
    QCOMPARE(static_cast<int>(book.all().size()), BlockBook::kMostBlocks);
    QCOMPARE(book.all().value({2, QLatin1String("D_W"), 5, 3}).answers, Q_INT64_C(2));
    QCOMPARE(book.others().answers, Q_INT64_C(100));
}

void TestBlockBook::makesRoomForNewBlocks()
{
    BlockBook book;
    for (int i = 0; i < BlockBook::kMostBlocks; ++i) {
        book.note(readOf(i, i));
    }
    book.note(readOf(0, BlockBook::kIdleMs)); // is still used
    book.note(readOf(5000, BlockBook::kIdleMs + 1));
    QVERIFY(!book.all().contains({2, QLatin1String("D_W"), 5000, 3}));
    book.note(readOf(5000, BlockBook::kIdleMs + 100));
    QVERIFY(book.all().contains({2, QLatin1String("D_W"), 5000, 3}));
    QVERIFY(book.all().contains({2, QLatin1String("D_W"), 0, 3}));
    QVERIFY(!book.all().contains({2, QLatin1String("D_W"), 1, 3}));
    // 1 to 99 had to go, and one request found no room.
    QCOMPARE(book.others().answers, Q_INT64_C(100));
}

QTEST_APPLESS_MAIN(TestBlockBook)
#include "test_block_book.moc"
