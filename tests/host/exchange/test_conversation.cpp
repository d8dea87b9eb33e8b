#include "host/support/talk.h"

#include <QtTest>

using namespace cnet;

Q_DECLARE_METATYPE(cnet::Outcome)

class TestConversation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ends_data();
    void ends();
    void greets_data();
    void greets();
    void saysHowMuchIsMissing();
    void takesWhatWasHeldBack();
    void waitsForNoRestOfWhatIsOver();
    void forgetsACancelledQuestion();
    void waitsForQuietAfterTheLinkOpened();
    void waitsForQuietAfterADamagedAnswer_data();
    void waitsForQuietAfterADamagedAnswer();
    void waitsForQuietAfterAForeignAnswer();
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
    const bool wrongCheck = qstrcmp(QTest::currentDataTag(), "wrong block check") == 0;
    QVERIFY(reply.defect == (reply.outcome != Outcome::Bad ? Defect::None
                             : wrongCheck                  ? Defect::BlockCheck
                                                           : Defect::Other));
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

void TestConversation::saysHowMuchIsMissing()
{
    Talk talk;
    talk.ask(kFirst);
    QCOMPARE(talk.link.expected, 0); // it may be a refusal
    talk.say("zz");
    QCOMPARE(talk.link.expected, 0);
    talk.say(kFirstAnswer.left(3));
    QCOMPARE(talk.link.expected, kLength - 3);
    talk.say(kFirstAnswer.mid(3, kLength - 4));
    QCOMPARE(talk.link.expected, 0); // the end is near
    talk.say(kFirstAnswer.right(1));
    QCOMPARE(talk.link.expected, 0);
    QCOMPARE(static_cast<int>(talk.replies.size()), 1);
    talk.ask(kSecond);
    talk.say(refusalFrame("01rSB1132").left(3));
    QCOMPARE(talk.link.expected, 0);
}

// A link that waits for more has to be asked before a question is given up.
void TestConversation::takesWhatWasHeldBack()
{
    Talk talk;
    QObject::connect(&talk.conversation, &Conversation::ended, &talk.link, [&talk] {
        if (talk.replies.size() == 1) {
            talk.ask(kSecond);
        }
    });
    talk.ask(kFirst);
    talk.say(kFirstAnswer.left(3));
    talk.link.held = kFirstAnswer.mid(3);
    talk.clock.runFor(kTimeoutMs);
    QCOMPARE(static_cast<int>(talk.replies.size()), 1);
    QCOMPARE(talk.replies.first().outcome, Outcome::Answered);
    QCOMPARE(talk.replies.first().answer, kFirstAnswer);
    // The next question has time of its own.
    talk.say(kSecondAnswer);
    QCOMPARE(static_cast<int>(talk.replies.size()), 2);
    QCOMPARE(talk.replies.last().answer, kSecondAnswer);
}

void TestConversation::waitsForNoRestOfWhatIsOver()
{
    Talk talk;
    talk.ask(kFirst);
    talk.say(kFirstAnswer.left(3));
    talk.link.held = kFirstAnswer.mid(3, 2);
    talk.clock.runFor(kTimeoutMs);
    QCOMPARE(static_cast<int>(talk.replies.size()), 1);
    QCOMPARE(talk.replies.first().outcome, Outcome::Bad);
    QCOMPARE(talk.link.expected, 0);
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

void TestConversation::waitsForQuietAfterADamagedAnswer_data()
{
    QTest::addColumn<QByteArray>("answer");
    QByteArray damaged = kFirstAnswer;
    damaged[8] = '9';
    QTest::newRow("damaged") << damaged;
    QTest::newRow("cut off") << kFirstAnswer.left(8);
    QTest::newRow("another station's") << answerFrame("02rSB01021111");
}

// More of it may follow.
void TestConversation::waitsForQuietAfterADamagedAnswer()
{
    QFETCH(QByteArray, answer);
    Talk talk;
    talk.ask(kFirst);
    talk.say(answer);
    talk.clock.runFor(kTimeoutMs - 2);
    talk.say("z"); // the last of it
    QCOMPARE(static_cast<int>(talk.replies.size()), 1);
    QCOMPARE(talk.replies.first().outcome, Outcome::Bad);
    talk.takeSent();
    talk.ask(kFirst);
    talk.clock.runFor(19);
    QVERIFY(talk.takeSent().isEmpty());
    talk.clock.runFor(1);
    QCOMPARE(talk.takeSent(), QList<QByteArray>{kFirst});
}

// Also where the question was answered all the same.
void TestConversation::waitsForQuietAfterAForeignAnswer()
{
    Talk talk;
    talk.ask(kFirst);
    talk.say(answerFrame("02rSB01021111"));
    talk.say(kFirstAnswer);
    QCOMPARE(talk.replies.first().outcome, Outcome::Answered);
    talk.takeSent();
    talk.ask(kFirst);
    QVERIFY(talk.takeSent().isEmpty());
    talk.clock.runFor(20);
    QCOMPARE(talk.takeSent(), QList<QByteArray>{kFirst});
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
