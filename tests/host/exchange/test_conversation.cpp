#include "host/support/fake_link.h"
#include "host/support/frames.h"
#include "host/support/virtual_clock.h"

#include <host/exchange/conversation.h>

#include <QtTest>

using namespace cnet;

namespace {

// Two questions whose answers look alike, and a fence.
const QByteArray kFirst = requestFrame("01rSB08%DW0010001");
const QByteArray kSecond = requestFrame("01rSB08%DW0020001");
const QByteArray kWrite = requestFrame("01wSB08%DW00300010007");
const QByteArray kOtherWrite = requestFrame("01wSB08%DW00300010008");
const QByteArray kFence = requestFrame("01rSS0108%DW00000");
const QByteArray kFirstAnswer = answerFrame("01rSB01021111");
const QByteArray kSecondAnswer = answerFrame("01rSB01022222");
const QByteArray kWritten = answerFrame("01wSB");
const QByteArray kFenceAnswer = answerFrame("01rSS01020000");
const int kLength = 17;      // of an answer with one word
const int kWriteLength = 9;  // of an answer to a write
const int kTimeoutMs = 518;  // half a second, and twice 38 characters of the usual line
const int kDroppedMs = 5000; // longer than anything is waited for

// A conversation, and a test as its stations.
struct Talk
{
    explicit Talk(int fixedMs = 0, RepeatedAnswers repeated = RepeatedAnswers::Confirm)
        : times({fixedMs, 10000000 / 38400})
        , conversation(link, clock, times, settings(repeated))
    {
        QObject::connect(&conversation, &Conversation::ended,
                         [this](const Reply &reply) { replies.append(reply); });
        QObject::connect(&conversation, &Conversation::fenceEnded,
                         [this](const Reply &reply) { fences.append(reply); });
        QObject::connect(&conversation, &Conversation::answeredLate,
                         [this](int, const QByteArray &answer, double lateMs) {
                             late.append(answer);
                             lateTimes.append(qRound(lateMs));
                         });
    }

    static ConversationSettings settings(RepeatedAnswers repeated)
    {
        ConversationSettings settings;
        settings.repeatedAnswers = repeated;
        return settings;
    }

    void ask(const QByteArray &request, int station = 1)
    {
        const bool writes = request.at(3) == 'w';
        conversation.ask({station, request, writes ? kWriteLength : kLength});
    }
    void say(const QByteArray &bytes, int afterMs = 1)
    {
        clock.runFor(afterMs);
        link.say(bytes);
    }
    /** A question with its answer, fenced or not. */
    void settle(const QByteArray &request, const QByteArray &answer)
    {
        ask(request);
        clock.runFor(30); // where the line has to be quiet first
        if (link.sentFrames.last().mid(3, 3) == "rSS") {
            say(kFenceAnswer);
        }
        say(answer);
    }
    void timeOut(const QByteArray &request)
    {
        ask(request);
        clock.runFor(kTimeoutMs + 1);
    }

    /** What has gone out since the last call. */
    QList<QByteArray> takeSent() { return std::exchange(link.sentFrames, {}); }

    VirtualClock clock;
    FakeLink link;
    ResponseTimes times;
    Conversation conversation;
    QList<Reply> replies;
    QList<Reply> fences;
    QList<QByteArray> late;
    QList<int> lateTimes;
};

} // namespace

Q_DECLARE_METATYPE(cnet::Outcome)

class TestConversation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ends_data();
    void ends();
    void greets_data();
    void greets();
    void asksNoTwoConfusableQuestions_data();
    void asksNoTwoConfusableQuestions();
    void dropsAndMeasuresLateAnswers();
    void waitsForTheFenceOfASlowStation();
    void distrustsARefusedFence();
    void triesOtherFences();
    void asksAgainWhenAnAnswerRepeats();
    void distrustsACopyOfTheLastAnswer();
    void fencesWhereTheSameAnswerIsToBeExpected();
    void remembersThatACopyMayHaveComeFirst();
    void believesRepeatedAnswersWhereToldTo();
    void forgetsACancelledQuestion();
    void cancelsFromWithinAFence();
    void waitsForQuietAfterTheLinkOpened();
    void usesALineThatIsNeverQuiet();
    void takesNothingThatCameBeforeTheQuestion();
    void givesASlowStationTime_data();
    void givesASlowStationTime();
    void measuresFromTheFirstSending();
};

void TestConversation::ends_data()
{
    QTest::addColumn<QList<QByteArray>>("chunks");
    QTest::addColumn<Outcome>("outcome");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("atOnce"); // else when the time is over
    const auto row = [](const char *name, const QList<QByteArray> &chunks, Outcome outcome,
                        const QByteArray &answer, bool atOnce) {
        QTest::newRow(name) << chunks << outcome << answer << atOnce;
    };
    const QByteArray refusal = refusalFrame("01rSB1132");
    const QByteArray bad = kFirstAnswer.left(kLength - 1) + 'z';
    const QByteArray longer = answerFrame("01rSB010411112222");
    const QByteArray foreign = answerFrame("02rSB01021111");
    row("good", {kFirstAnswer}, Outcome::Answered, kFirstAnswer, true);
    row("in pieces", {kFirstAnswer.left(1), kFirstAnswer.mid(1, 9), kFirstAnswer.mid(10)},
        Outcome::Answered, kFirstAnswer, true);
    row("noise before", {"zz", "z" + kFirstAnswer}, Outcome::Answered, kFirstAnswer, true);
    row("echo before", {kFirst + kFirstAnswer}, Outcome::Answered, kFirstAnswer, true);
    row("noise behind", {kFirstAnswer + "zz"}, Outcome::Answered, kFirstAnswer, true);
    row("refusal", {refusal}, Outcome::Refused, refusal, true);
    row("wrong block check", {bad}, Outcome::Bad, bad, true);
    row("cut off", {kFirstAnswer.left(9)}, Outcome::Bad, kFirstAnswer.left(9), false);
    row("noise only", {"zzz"}, Outcome::Bad, "", false);
    row("silence", {}, Outcome::TimedOut, "", false);
    row("echo only", {kFirst}, Outcome::TimedOut, "", false);
    row("another station", {foreign}, Outcome::Bad, "", false);
    row("another command", {answerFrame("01rSS01021111")}, Outcome::Bad, "", false);
    row("another length", {longer}, Outcome::Bad, "", false);
    row("refusal of another station", {refusalFrame("02rSB1132")}, Outcome::Bad, "", false);
    row("another station first", {foreign, kFirstAnswer}, Outcome::Answered, kFirstAnswer, true);
}

void TestConversation::ends()
{
    QFETCH(QList<QByteArray>, chunks);
    QFETCH(bool, atOnce);
    Talk talk;
    talk.ask(kFirst);
    QVERIFY(talk.conversation.isBusy());
    for (const QByteArray &chunk : chunks) {
        QVERIFY(talk.replies.isEmpty());
        talk.say(chunk);
    }
    QCOMPARE(static_cast<int>(talk.replies.size()), atOnce ? 1 : 0);
    talk.clock.runFor(kDroppedMs);
    QCOMPARE(static_cast<int>(talk.replies.size()), 1);
    QVERIFY(!talk.conversation.isBusy());
    const Reply &reply = talk.replies.first();
    QTEST(reply.outcome, "outcome");
    QTEST(reply.answer, "answer");
    QCOMPARE(reply.frame, kFirst);
    QCOMPARE(qRound(reply.tookMs), atOnce ? static_cast<int>(chunks.size()) : kTimeoutMs);
    QCOMPARE(talk.takeSent(), QList<QByteArray>{kFirst});
}

void TestConversation::greets_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<Outcome>("outcome");
    QTest::newRow("answered") << kFenceAnswer << Outcome::Answered;
    QTest::newRow("refused: it is there") << refusalFrame("01rSS1232") << Outcome::Refused;
    QTest::newRow("silence") << QByteArray() << Outcome::TimedOut;
    QTest::newRow("noise") << QByteArray("zzz") << Outcome::Bad;
    QTest::newRow("another station") << answerFrame("02rSS01020000") << Outcome::Bad;
}

void TestConversation::greets()
{
    QFETCH(QByteArray, answer);
    Talk talk;
    talk.conversation.greet(1, 40);
    QCOMPARE(talk.takeSent(), QList<QByteArray>{kFence});
    talk.say(answer);
    talk.clock.runFor(kDroppedMs);
    QCOMPARE(static_cast<int>(talk.replies.size()), 1);
    QTEST(talk.replies.first().outcome, "outcome");
    QVERIFY(talk.replies.first().tookMs <= 40);
    QVERIFY(talk.fences.isEmpty());
    QVERIFY(talk.takeSent().isEmpty());
}

void TestConversation::asksNoTwoConfusableQuestions_data()
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

void TestConversation::asksNoTwoConfusableQuestions()
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

void TestConversation::dropsAndMeasuresLateAnswers()
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
void TestConversation::waitsForTheFenceOfASlowStation()
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

void TestConversation::distrustsARefusedFence()
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

void TestConversation::triesOtherFences()
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

void TestConversation::asksAgainWhenAnAnswerRepeats()
{
    Talk talk;
    talk.settle(kFirst, kFirstAnswer);
    talk.takeSent();
    talk.ask(kSecond);
    talk.say(kFirstAnswer); // the same value, or a copy
    QCOMPARE(static_cast<int>(talk.replies.size()), 1);
    talk.say(kFenceAnswer);
    talk.say(kFirstAnswer);
    QCOMPARE(talk.takeSent(), (QList<QByteArray>{kSecond, kFence, kSecond}));
    QCOMPARE(static_cast<int>(talk.replies.size()), 2);
    QCOMPARE(talk.replies.last().outcome, Outcome::Answered);
}

void TestConversation::distrustsACopyOfTheLastAnswer()
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

void TestConversation::fencesWhereTheSameAnswerIsToBeExpected()
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
void TestConversation::remembersThatACopyMayHaveComeFirst()
{
    Talk talk;
    talk.settle(kFirst, kFirstAnswer);
    talk.settle(kFirst, kFirstAnswer);
    talk.takeSent();
    talk.ask(kSecond);
    QCOMPARE(talk.takeSent(), QList<QByteArray>{kFence});
}

void TestConversation::believesRepeatedAnswersWhereToldTo()
{
    Talk talk(0, RepeatedAnswers::Trust);
    talk.settle(kFirst, kFirstAnswer);
    talk.settle(kSecond, kFirstAnswer);
    talk.settle(kWrite, kWritten);
    talk.settle(kOtherWrite, kWritten);
    QCOMPARE(talk.takeSent(), (QList<QByteArray>{kFirst, kSecond, kWrite, kOtherWrite}));
    QCOMPARE(static_cast<int>(talk.replies.size()), 4);
}

void TestConversation::forgetsACancelledQuestion()
{
    Talk talk;
    talk.ask(kFirst);
    talk.conversation.cancel();
    QVERIFY(!talk.conversation.isBusy());
    talk.say(kFirstAnswer);
    talk.clock.runFor(kDroppedMs);
    QVERIFY(talk.replies.isEmpty());
    QCOMPARE(talk.late, QList<QByteArray>{kFirstAnswer});
}

void TestConversation::cancelsFromWithinAFence()
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

void TestConversation::waitsForQuietAfterTheLinkOpened()
{
    Talk talk;
    talk.link.open();
    talk.ask(kFirst);
    talk.say(kFirstAnswer, 15); // what a serial server had kept
    talk.clock.runFor(19);
    QVERIFY(talk.takeSent().isEmpty());
    talk.clock.runFor(1);
    QCOMPARE(talk.takeSent(), QList<QByteArray>{kFirst});
    QVERIFY(talk.replies.isEmpty());
}

void TestConversation::usesALineThatIsNeverQuiet()
{
    Talk talk;
    talk.link.open();
    talk.ask(kFirst);
    for (int ms = 0; ms < 1999; ++ms) {
        talk.say("z");
    }
    QVERIFY(talk.takeSent().isEmpty());
    talk.say("z");
    QCOMPARE(talk.takeSent(), QList<QByteArray>{kFirst});
    talk.say(kFirstAnswer);
    QCOMPARE(talk.replies.last().outcome, Outcome::Answered);
}

void TestConversation::takesNothingThatCameBeforeTheQuestion()
{
    Talk talk;
    connect(&talk.conversation, &Conversation::ended, &talk.conversation, [&talk] {
        if (talk.replies.size() == 1) {
            talk.ask(kSecond);
        }
    });
    talk.ask(kFirst);
    talk.say(kFirstAnswer + kSecondAnswer);
    QCOMPARE(talk.takeSent(), (QList<QByteArray>{kFirst, kSecond}));
    QCOMPARE(static_cast<int>(talk.replies.size()), 1);
}

void TestConversation::givesASlowStationTime_data()
{
    QTest::addColumn<int>("fixedMs");
    QTest::addColumn<int>("takesMs");
    QTest::addColumn<int>("timeoutMs"); // at the end
    QTest::addColumn<bool>("answered");
    QTest::newRow("slow") << 0 << 2000 << 3001 << true;
    QTest::newRow("very slow") << 0 << 8000 << 10000 << true;
    QTest::newRow("too slow") << 0 << 11000 << 10000 << false;
    QTest::newRow("fixed") << 1000 << 2000 << 1000 << false;
}

void TestConversation::givesASlowStationTime()
{
    QFETCH(int, fixedMs);
    QFETCH(int, takesMs);
    QFETCH(bool, answered);
    Talk talk(fixedMs);
    for (int i = 0; i < 4; ++i) {
        if (!talk.conversation.isBusy()) {
            talk.ask(kFirst);
        }
        talk.say(kFirstAnswer, takesMs);
    }
    QTEST(talk.times.timeoutMs(1, 38), "timeoutMs");
    QCOMPARE(talk.replies.last().outcome == Outcome::Answered, answered);
    QCOMPARE(talk.times.neededMs(1) > 0, fixedMs > 0);
}

// The answer that comes first is that to the first sending.
void TestConversation::measuresFromTheFirstSending()
{
    Talk talk;
    talk.timeOut(kFirst);
    talk.ask(kFirst);
    talk.say(kFirstAnswer, 20);
    QCOMPARE(qRound(talk.replies.last().tookMs), kTimeoutMs + 1 + 20);
    talk.ask(kFirst);
    talk.say(kSecondAnswer, 30);
    QCOMPARE(qRound(talk.replies.last().tookMs), 30);
}

QTEST_GUILESS_MAIN(TestConversation)

#include "test_conversation.moc"
