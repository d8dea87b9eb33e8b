#include "gateway/write/recent_requests.h"

#include <QtTest>

using namespace cnet::gateway;

/** What was answered is known for some minutes. */
class TestRecentRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsAnAnswerForMinutes();
    void tellsSinksApart();
    void keepsTheFirstAnswer();
    void forgetsRefusedOnesFirst();
};

namespace {

const WantedWrite kWanted{QLatin1String("press"), QLatin1String("a"), QLatin1String("1")};

WriteAnswer answerOf(const QString &id, WriteAnswer::Outcome outcome, const char *sink = "s")
{
    WriteAnswer answer;
    answer.id = id;
    answer.outcome = outcome;
    answer.reply.sink = QLatin1String(sink);
    return answer;
}

RequestKey keyFor(const QString &id)
{
    return {QLatin1String("s"), id};
}

const QString kId = QLatin1String("1");

} // namespace

void TestRecentRequests::knowsAnAnswerForMinutes()
{
    RecentRequests recent;
    recent.add(kWanted, answerOf(kId, WriteAnswer::Outcome::Taken), 1000);
    const auto found = recent.find(keyFor(kId), 1000 + RecentRequests::kKeptMs - 1);
    QVERIFY(found);
    QVERIFY(found->wanted == kWanted);
    QVERIFY(found->answer.outcome == WriteAnswer::Outcome::Taken);
    QVERIFY(!recent.find(keyFor(kId), 1000 + RecentRequests::kKeptMs));
    QCOMPARE(recent.count(), 0);
}

void TestRecentRequests::tellsSinksApart()
{
    RecentRequests recent;
    recent.add(kWanted, answerOf(kId, WriteAnswer::Outcome::Taken, "other"), 0);
    QVERIFY(!recent.find(keyFor(kId), 0));
}

void TestRecentRequests::keepsTheFirstAnswer()
{
    RecentRequests recent;
    recent.add(kWanted, answerOf(kId, WriteAnswer::Outcome::Taken), 0);
    recent.add(kWanted, answerOf(kId, WriteAnswer::Outcome::Refused), 5);
    QVERIFY(recent.find(keyFor(kId), 6)->answer.outcome == WriteAnswer::Outcome::Taken);
}

// Who floods the gateway with what is refused does not have anything carried out twice.
void TestRecentRequests::forgetsRefusedOnesFirst()
{
    RecentRequests recent;
    recent.add(kWanted, answerOf(kId, WriteAnswer::Outcome::NoAnswer), 0);
    for (int i = 0; i < RecentRequests::kMostRefused + 10; ++i) {
        recent.add(kWanted,
                   answerOf(QString::fromLatin1("r%1").arg(i), WriteAnswer::Outcome::Refused), 1);
    }
    QCOMPARE(recent.count(), RecentRequests::kMostRefused + 1);
    QVERIFY(recent.find(keyFor(kId), 2));
    QVERIFY(!recent.find(keyFor(QLatin1String("r9")), 2));
    QVERIFY(recent.find(keyFor(QLatin1String("r10")), 2));
}

QTEST_APPLESS_MAIN(TestRecentRequests)
#include "test_recent_requests.moc"
