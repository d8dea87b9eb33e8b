#include "host/support/talk.h"

#include <QtTest>

using namespace cnet;

// What a conversation does where answers could be mistaken for one another.
class TestFences : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksNoTwoConfusableQuestions_data();
    void asksNoTwoConfusableQuestions();
    void dropsAndMeasuresLateAnswers();
    void waitsForTheFenceOfASlowStation();
    void distrustsARefusedFence();
    void triesOtherFences();
    void asksAgainWhenAnAnswerRepeats();
    void silenceBehindADoubtIsSilence();
    void distrustsACopyOfTheLastAnswer();
    void fencesWhereTheSameAnswerIsToBeExpected();
    void remembersThatACopyMayHaveComeFirst();
    void aLateCopySettlesNothing();
    void believesRepeatedAnswersWhereToldTo();
    void cancelsFromWithinAFence();
    void cancelsFromWithinADoubt();
};

void TestFences::asksNoTwoConfusableQuestions_data()
{
    QTest::addColumn<QByteArray>("next");
    QTest::addColumn<int>("station");
    QTest::addColumn<bool>("fenced");
    QTest::newRow("another question of its shape") << kSecond << 1 << true;
    QTest::newRow("the same question") << kFirst << 1 << false;
    QTest::newRow("a write") << kWrite << 1 << false;
    QTest::newRow("another station") << requestFrame("02rSB08%DW0020001") << 2 << false;
    // A refusal looks alike whatever the length is.
    QTest::newRow("another length") << requestFrame("01rSB08%DW0020002") << 1 << true;
}

void TestFences::asksNoTwoConfusableQuestions()
{
    QFETCH(QByteArray, next);
    QFETCH(int, station);
    QFETCH(bool, fenced);
    Talk talk;
    talk.timeOut(kFirst);
    talk.takeSent();
    talk.ask(next, station);
    QCOMPARE(talk.takeSent(), QList<QByteArray>{fenced ? kFence : next});
    if (fenced) {
        talk.say(kFenceAnswer);
        QCOMPARE(talk.takeSent(), QList<QByteArray>{next});
        QCOMPARE(static_cast<int>(talk.fences.size()), 1);
    }
    QCOMPARE(static_cast<int>(talk.replies.size()), 1); // of the first one
}

void TestFences::dropsAndMeasuresLateAnswers()
{
    Talk talk;
    talk.timeOut(kFirst);
    talk.clock.runFor(100);
    talk.ask(kSecond);
    talk.say(kFirstAnswer, 81);
    QCOMPARE(talk.late, QList<QByteArray>{kFirstAnswer});
    QCOMPARE(talk.lateTimes, QList<int>{700});
    QVERIFY(talk.times.timeoutMs(1, 38) > 700);
    talk.say(kFenceAnswer);
    talk.say(kSecondAnswer);
    QCOMPARE(talk.replies.last().answer, kSecondAnswer);
    // All that was open is settled now.
    talk.takeSent();
    talk.ask(kFirst);
    QCOMPARE(talk.takeSent(), QList<QByteArray>{kFirst});
}

// As soon as a late answer shows how slow the station is, the fence is waited for as long.
void TestFences::waitsForTheFenceOfASlowStation()
{
    Talk talk;
    talk.timeOut(kFirst);
    talk.ask(kSecond);
    talk.takeSent();
    talk.say(kFirstAnswer, 500); // after 1019 ms
    talk.say(kFenceAnswer, 800); // later than the fence would have been waited for
    QCOMPARE(talk.takeSent(), QList<QByteArray>{kSecond});
    QCOMPARE(talk.fences.first().outcome, Outcome::Answered);
}

void TestFences::distrustsARefusedFence()
{
    const QByteArray contact = requestFrame("01rSS0107%TX0010");
    const QByteArray refusal = refusalFrame("01rSS1132");
    Talk talk;
    talk.conversation.ask({1, contact, 15});
    talk.clock.runFor(kTimeoutMs + 1);
    talk.conversation.ask({1, requestFrame("01rSS0107%TX0020"), 15});
    QCOMPARE(talk.takeSent().last(), kFence);
    talk.say(refusal); // may be the contact's
    QVERIFY(talk.takeSent().isEmpty());
    QCOMPARE(talk.late, QList<QByteArray>{refusal});
    talk.say(kFenceAnswer);
    QCOMPARE(static_cast<int>(talk.takeSent().size()), 1);
}

void TestFences::triesOtherFences()
{
    Talk talk;
    talk.timeOut(kFirst);
    talk.takeSent();
    talk.ask(kSecond);
    talk.clock.runFor(kDroppedMs);
    const QList<QByteArray> sent = talk.takeSent();
    QCOMPARE(static_cast<int>(sent.size()), 3);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(sent.at(i) != kSecond);
        QCOMPARE(static_cast<int>(sent.count(sent.at(i))), 1);
    }
    QCOMPARE(static_cast<int>(talk.fences.size()), 3);
    QCOMPARE(static_cast<int>(talk.replies.size()), 2);
    QCOMPARE(talk.replies.last().outcome, Outcome::TimedOut);
    QCOMPARE(talk.replies.last().frame, kSecond);
    QVERIFY(!talk.replies.last().sent);
}

void TestFences::asksAgainWhenAnAnswerRepeats()
{
    Talk talk;
    talk.settle(kFirst, kFirstAnswer);
    talk.takeSent();
    talk.ask(kSecond);
    talk.say(kFirstAnswer, 7); // the same value, or a copy
    QCOMPARE(static_cast<int>(talk.replies.size()), 1);
    QCOMPARE(talk.doubted, QList<QByteArray>{kFirstAnswer});
    QCOMPARE(talk.doubtedTimes, QList<int>{7});
    talk.say(kFenceAnswer);
    talk.say(kFirstAnswer);
    QCOMPARE(talk.takeSent(), (QList<QByteArray>{kSecond, kFence, kSecond}));
    QCOMPARE(static_cast<int>(talk.doubted.size()), 1);
    QCOMPARE(static_cast<int>(talk.replies.size()), 2);
    QCOMPARE(talk.replies.last().outcome, Outcome::Answered);
    QCOMPARE(talk.fences.last().note + talk.replies.last().note, QString());
}

// What was said of an answer says nothing of what comes to the frames behind it.
void TestFences::silenceBehindADoubtIsSilence()
{
    Talk talk;
    talk.settle(kFirst, kFirstAnswer);
    talk.ask(kSecond);
    talk.say(kFirstAnswer);
    talk.clock.runFor(kDroppedMs);
    QCOMPARE(static_cast<int>(talk.fences.size()), 3);
    QCOMPARE(talk.fences.first().outcome, Outcome::TimedOut);
    QCOMPARE(talk.replies.last().outcome, Outcome::TimedOut);
    QCOMPARE(talk.replies.last().frame, kSecond);
    QCOMPARE(talk.replies.last().note, QString());
}

void TestFences::distrustsACopyOfTheLastAnswer()
{
    Talk talk;
    talk.settle(kFirst, kFirstAnswer);
    talk.ask(kSecond);
    talk.say(kFirstAnswer);  // the copy
    talk.say(kSecondAnswer); // the question's own, before that of the fence
    talk.say(kFenceAnswer);
    QCOMPARE(static_cast<int>(talk.replies.size()), 1);
    talk.say(kSecondAnswer);
    QCOMPARE(talk.replies.last().answer, kSecondAnswer);
}

void TestFences::fencesWhereTheSameAnswerIsToBeExpected()
{
    Talk talk;
    talk.settle(kWrite, kWritten);
    talk.takeSent();
    talk.ask(kOtherWrite);
    QCOMPARE(talk.takeSent(), QList<QByteArray>{kFence}); // every write has the same answer
    talk.say(kFenceAnswer);
    talk.say(kWritten);
    QCOMPARE(static_cast<int>(talk.replies.size()), 2);

    talk.settle(kFirst, kFirstAnswer);
    talk.ask(kSecond);
    talk.say(kFirstAnswer);
    talk.say(kFenceAnswer);
    talk.say(kFirstAnswer);
    talk.takeSent();
    talk.ask(kFirst); // which had this very answer
    QCOMPARE(talk.takeSent(), QList<QByteArray>{kFence});
}

// Asked twice, the second answer may be a copy of the first, and its own still to come.
void TestFences::remembersThatACopyMayHaveComeFirst()
{
    Talk talk;
    talk.settle(kFirst, kFirstAnswer);
    talk.settle(kFirst, kFirstAnswer);
    talk.takeSent();
    talk.ask(kSecond);
    QCOMPARE(talk.takeSent(), QList<QByteArray>{kFence});
}

// What looks like the late answer to the second question may be a copy of that to the first.
void TestFences::aLateCopySettlesNothing()
{
    Talk talk;
    talk.settle(kFirst, kFirstAnswer);
    talk.timeOut(kSecond);
    talk.ask(kWrite);
    talk.say(kFirstAnswer);
    talk.say(kWritten);
    QCOMPARE(talk.replies.last().outcome, Outcome::Answered);
    talk.takeSent();
    talk.ask(kFirst);
    QCOMPARE(talk.takeSent(), QList<QByteArray>{kFence});
}

void TestFences::believesRepeatedAnswersWhereToldTo()
{
    Talk talk(0, RepeatedAnswers::Trust);
    talk.settle(kFirst, kFirstAnswer);
    talk.settle(kSecond, kFirstAnswer);
    talk.settle(kWrite, kWritten);
    talk.settle(kOtherWrite, kWritten);
    QCOMPARE(talk.takeSent(), (QList<QByteArray>{kFirst, kSecond, kWrite, kOtherWrite}));
    QCOMPARE(static_cast<int>(talk.replies.size()), 4);
}

void TestFences::cancelsFromWithinAFence()
{
    Talk talk;
    connect(&talk.conversation, &Conversation::fenceEnded, &talk.conversation,
            [&talk] { talk.conversation.cancel(); });
    talk.timeOut(kFirst);
    talk.ask(kSecond);
    talk.takeSent();
    talk.say(kFenceAnswer);
    talk.clock.runFor(kDroppedMs);
    QVERIFY(talk.takeSent().isEmpty());
    QCOMPARE(static_cast<int>(talk.replies.size()), 1);
}

void TestFences::cancelsFromWithinADoubt()
{
    Talk talk;
    bool asksAnew = false;
    connect(&talk.conversation, &Conversation::answerDoubted, &talk.conversation, [&] {
        talk.conversation.cancel();
        if (asksAnew) {
            talk.ask(kFirst);
        }
    });
    talk.settle(kFirst, kFirstAnswer);
    talk.ask(kSecond);
    talk.takeSent();
    talk.say(kFirstAnswer);
    QVERIFY(talk.takeSent().isEmpty());
    asksAnew = true;
    talk.ask(kSecond);
    talk.takeSent();
    talk.say(kFirstAnswer);
    QCOMPARE(static_cast<int>(talk.takeSent().size()), 1);
}

QTEST_GUILESS_MAIN(TestFences)

#include "test_fences.moc"
