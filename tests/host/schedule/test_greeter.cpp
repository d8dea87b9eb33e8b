#include "host/support/talk.h"

#include <host/schedule/greeter.h>

#include <QtTest>

using namespace cnet;

Q_DECLARE_METATYPE(cnet::SilentStation)

namespace {

const int kAttempts = 3;

// A greeter, and a test as its stations. What it is told of a station's health is what the schedule
// would have said.
struct Hall : Talk
{
    explicit Hall(SilentStation silentStation = SilentStation::Greet)
        : greeter(conversation, times, health, clock, kAttempts, silentStation)
    {}

    /** Lets the greeting that is out end without an answer. */
    Greeter::Verdict pass()
    {
        const int station = greeter.station();
        clock.runFor(kDroppedMs);
        const Greeter::Verdict verdict = greeter.take(replies.last());
        if (verdict == Greeter::Verdict::Missed) {
            health.missed(station, clock.nowMs());
        }
        return verdict;
    }

    StationHealth health;
    Greeter greeter;
};

} // namespace

class TestGreeter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void admitsWhoeverAnswers();
    void greetsForAJobAsOftenAsToldTo();
    void turnsDownTheNextJobAtOnce();
    void silentStations_data();
    void silentStations();
    void asksAllStationsOfAJob();
    void greetsWhoeverIsDue();
    void forgetsAJobThatIsGone();
    void forgetsWithTheLine();
};

void TestGreeter::admitsWhoeverAnswers()
{
    Hall hall;
    QCOMPARE(hall.greeter.admit({1}), Greeter::Admission::Asked);
    QVERIFY(hall.greeter.isUnderway());
    QCOMPARE(hall.greeter.station(), 1);
    QCOMPARE(hall.takeSent(), QList<QByteArray>{kFence});
    hall.say(kFenceAnswer);
    QCOMPARE(hall.greeter.take(hall.replies.last()), Greeter::Verdict::Heard);
    QVERIFY(!hall.greeter.isUnderway());
    hall.health.heard(1);
    QCOMPARE(hall.greeter.admit({1}), Greeter::Admission::Granted);
    QVERIFY(hall.takeSent().isEmpty());
}

void TestGreeter::greetsForAJobAsOftenAsToldTo()
{
    Hall hall;
    for (int greeting = 1; greeting <= kAttempts; ++greeting) {
        QCOMPARE(hall.greeter.admit({1}), Greeter::Admission::Asked);
        QCOMPARE(hall.pass(),
                 greeting < kAttempts ? Greeter::Verdict::Again : Greeter::Verdict::Missed);
    }
    QCOMPARE(hall.greeter.admit({1}), Greeter::Admission::Refused);
    QCOMPARE(hall.greeter.refused(), 1);
    QVERIFY(!hall.greeter.isUnderway());
    QCOMPARE(static_cast<int>(hall.takeSent().size()), kAttempts);
}

void TestGreeter::turnsDownTheNextJobAtOnce()
{
    Hall hall;
    while (hall.greeter.admit({1}) == Greeter::Admission::Asked) {
        hall.pass();
    }
    hall.takeSent();
    QCOMPARE(hall.greeter.admit({1}), Greeter::Admission::Refused);
    QVERIFY(hall.takeSent().isEmpty());
    hall.clock.runFor(1000);
    QCOMPARE(hall.greeter.admit({1}), Greeter::Admission::Asked);
}

void TestGreeter::silentStations_data()
{
    QTest::addColumn<SilentStation>("silentStation");
    QTest::addColumn<bool>("asked");
    QTest::newRow("asked once more") << SilentStation::Greet << true;
    QTest::newRow("left alone") << SilentStation::Fail << false;
}

void TestGreeter::silentStations()
{
    QFETCH(SilentStation, silentStation);
    QFETCH(bool, asked);
    Hall hall(silentStation);
    hall.health.missed(1, 0);
    QCOMPARE(hall.greeter.admit({1}) == Greeter::Admission::Asked, asked);
    // Of one that was never asked nobody knows that it is silent.
    QCOMPARE(Hall(silentStation).greeter.admit({2}), Greeter::Admission::Asked);
}

void TestGreeter::asksAllStationsOfAJob()
{
    Hall hall;
    hall.health.heard(1);
    QCOMPARE(hall.greeter.admit({1, 2, 3}), Greeter::Admission::Asked);
    QCOMPARE(hall.greeter.station(), 2);
    hall.greeter.take(Reply());
    hall.health.heard(2);
    hall.clock.runFor(kDroppedMs);
    QCOMPARE(hall.greeter.admit({1, 2, 3}), Greeter::Admission::Asked);
    QCOMPARE(hall.greeter.station(), 3);
}

// While others answer a greeting must be saved up, from the second on.
void TestGreeter::greetsWhoeverIsDue()
{
    Hall hall;
    hall.health.heard(1);
    QVERIFY(!hall.greeter.greetDue({1}));
    QVERIFY(hall.greeter.greetDue({1, 2}));
    QCOMPARE(hall.greeter.station(), 2);
    QCOMPARE(hall.pass(), Greeter::Verdict::Missed);
    hall.clock.runFor(1000);
    QCOMPARE(hall.health.due({2}, hall.clock.nowMs()).value_or(-1), 2);
    QVERIFY(!hall.greeter.greetDue({1, 2}));
    QVERIFY(hall.greeter.greetDue({2})); // alone it keeps nobody waiting
    QCOMPARE(hall.pass(), Greeter::Verdict::Missed);
    hall.clock.runFor(60000);
    QVERIFY(hall.greeter.greetDue({1, 2}));
}

// Else nobody would ever find the station missing, and it would be greeted without end.
void TestGreeter::forgetsAJobThatIsGone()
{
    Hall hall;
    QCOMPARE(hall.greeter.admit({2}), Greeter::Admission::Asked);
    QCOMPARE(hall.pass(), Greeter::Verdict::Again);
    QVERIFY(hall.greeter.greetDue({2}));
    QCOMPARE(hall.pass(), Greeter::Verdict::Missed);
}

void TestGreeter::forgetsWithTheLine()
{
    Hall hall;
    QCOMPARE(hall.greeter.admit({1}), Greeter::Admission::Asked);
    hall.conversation.cancel();
    hall.greeter.forget();
    QVERIFY(!hall.greeter.isUnderway());
    // The job begins anew with its greetings.
    for (int greeting = 1; greeting <= kAttempts; ++greeting) {
        QCOMPARE(hall.greeter.admit({1}), Greeter::Admission::Asked);
        hall.pass();
    }
    QCOMPARE(hall.greeter.admit({1}), Greeter::Admission::Refused);
}

QTEST_APPLESS_MAIN(TestGreeter)

#include "test_greeter.moc"
