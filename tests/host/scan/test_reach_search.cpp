#include "support/rows.h"

#include <host/scan/reach_search.h>

using namespace cnet;

class TestReachSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsEveryReach_data();
    void findsEveryReach();
    void asksTheEndsFirst();
};

namespace {

struct Row
{
    const char *what;
    int lowest;
    int highest;
    int most; ///< questions
};

const Row kRows[] = {
    {"one", 0, 0, 1}, {"two", 0, 1, 2},    {"three", 5, 7, 3},
    {"64", 0, 63, 8}, {"256", 0, 255, 10}, {"1000", 100, 1099, 12},
};

} // namespace

void TestReachSearch::findsEveryReach_data()
{
    addRows(kRows);
}

void TestReachSearch::findsEveryReach()
{
    const Row &row = currentRow(kRows);
    int most = 0;
    for (int reach = row.lowest - 1; reach <= row.highest; ++reach) {
        ReachSearch search(row.lowest, row.highest);
        int questions = 0;
        while (const auto address = search.next()) {
            QVERIFY(*address >= row.lowest && *address <= row.highest);
            search.note(*address <= reach);
            ++questions;
            QVERIFY(questions <= row.most);
        }
        QCOMPARE(search.highest().value_or(row.lowest - 1), reach);
        most = std::max(most, questions);
    }
    QCOMPARE(most, row.most);
    QCOMPARE(ReachSearch::mostQuestions(row.lowest, row.highest), row.most);
}

void TestReachSearch::asksTheEndsFirst()
{
    ReachSearch search(3, 100);
    QCOMPARE(search.next().value(), 3);
    search.note(true);
    QCOMPARE(search.next().value(), 100);
    search.note(true);
    QVERIFY(!search.next());
    search.note(false); // nothing was asked
    QCOMPARE(search.highest().value(), 100);
}

QTEST_APPLESS_MAIN(TestReachSearch)
#include "test_reach_search.moc"
