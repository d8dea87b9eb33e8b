#include "host/support/fake_link.h"
#include "host/support/frames.h"
#include "host/support/test_registers.h"
#include "host/support/virtual_clock.h"

#include <host/schedule/frame_carrier.h>

#include <QtTest>

using namespace cnet;

namespace {

// A driver, and a test as its PLC.
struct Desk
{
    Desk()
        : conversation(link, clock, times, ConversationSettings())
        , carrier(core, conversation)
    {
        QString error;
        if (!core.load(QLatin1String(DRIVER_FILE), error)) {
            qFatal("%s", qPrintable(error));
        }
        core.start(DriverProperties());
        QObject::connect(&conversation, &Conversation::ended,
                         [this](const Reply &reply) { report = carrier.take(reply); });
    }

    /** What the driver wants next is sent, and answered. */
    bool answer(const QByteArray &frame)
    {
        if (!carrier.carry()) {
            return false;
        }
        link.say(frame);
        clock.runFor(5000);
        return true;
    }

    VirtualClock clock;
    FakeLink link;
    ResponseTimes times;
    DriverCore core;
    Conversation conversation;
    FrameCarrier carrier;
    ExchangeReport report;
};

const QByteArray kAnswer = answerFrame("01rSB01020007");

} // namespace

Q_DECLARE_METATYPE(cnet::Outcome)

class TestFrameCarrier : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void carries();
    void tellsWhatWasMadeOfIt_data();
    void tellsWhatWasMadeOfIt();
    void refusalIsFinal();
    void givesUpAfterTheDriversAttempts();
    void givesUpWithoutTheLine();
    void countsEarlierAttempts();
    void carriesMoreThanTenWrites();
};

void TestFrameCarrier::carries()
{
    Desk desk;
    QVERIFY(!desk.carrier.carry());
    QVERIFY(!desk.carrier.isFrameOpen());
    desk.core.merge({keyOf(testItem("D_W", 5, 1))});
    QVERIFY(desk.carrier.carry());
    QVERIFY(desk.carrier.isFrameOpen());
    QCOMPARE(desk.link.sentFrames, QList<QByteArray>{requestFrame("01rSB08%DW0000501")});
    desk.link.say(kAnswer);
    QVERIFY(!desk.carrier.isFrameOpen());
    QVERIFY(desk.carrier.hasChanges());
    QVERIFY(desk.report.good && desk.report.final);
    QCOMPARE(desk.report.purpose, Purpose::Cyclic);
    QCOMPARE(desk.report.block(), QLatin1String("D_W:5*1"));
    QCOMPARE(desk.report.station(), 1);
    QCOMPARE(desk.core.values(testItem("D_W", 5, 1)), QVector<quint16>{7});
    QVERIFY(desk.answer(kAnswer));
    QVERIFY(!desk.carrier.hasChanges());
    desk.core.queueRead(testItem("D_W", 6, 1));
    QVERIFY(desk.answer(answerFrame("01rSB01020008")));
    QCOMPARE(desk.report.purpose, Purpose::Read);
    desk.core.queueWrite(testItem("D_W", 6, 1), {1});
    QVERIFY(desk.answer(answerFrame("01wSB")));
    QCOMPARE(desk.report.purpose, Purpose::Write);
}

void TestFrameCarrier::tellsWhatWasMadeOfIt_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<Outcome>("outcome");
    QTest::newRow("silence") << QByteArray() << Outcome::TimedOut;
    QTest::newRow("cut off") << kAnswer.left(9) << Outcome::Bad;
}

void TestFrameCarrier::tellsWhatWasMadeOfIt()
{
    QFETCH(QByteArray, answer);
    Desk desk;
    desk.core.queueRead(testItem("D_W", 5, 1));
    QVERIFY(desk.answer(answer));
    QTEST(desk.report.reply.outcome, "outcome");
    QVERIFY(!desk.report.good);
    QVERIFY(!desk.report.final);
    QVERIFY(desk.carrier.isFrameOpen());
    // The same frame again, whatever was queued since.
    desk.core.queueWrite(testItem("D_W", 6, 1), {1});
    QVERIFY(desk.answer(kAnswer));
    QVERIFY(desk.report.good);
    QCOMPARE(desk.link.sentFrames.at(0), desk.link.sentFrames.at(1));
}

void TestFrameCarrier::refusalIsFinal()
{
    Desk desk;
    desk.core.queueRead(testItem("D_W", 5, 1));
    QVERIFY(desk.answer(refusalFrame("01rSB1132")));
    QCOMPARE(desk.report.reply.outcome, Outcome::Refused);
    QCOMPARE(desk.report.refusal, 0x1132);
    QVERIFY(desk.report.final && !desk.report.good);
    QVERIFY(!desk.carrier.carry());
}

void TestFrameCarrier::givesUpAfterTheDriversAttempts()
{
    Desk desk;
    desk.core.queueRead(testItem("D_W", 5, 1));
    for (int attempt = 1; attempt <= 3; ++attempt) {
        QVERIFY(desk.answer(QByteArray()));
        QCOMPARE(desk.report.final, attempt == 3);
    }
    QVERIFY(!desk.answer(QByteArray()));
}

void TestFrameCarrier::givesUpWithoutTheLine()
{
    Desk desk;
    desk.core.queueRead(testItem("D_W", 5, 1));
    QVERIFY(desk.carrier.carry());
    desk.conversation.cancel();
    desk.carrier.giveUp();
    QVERIFY(!desk.carrier.isFrameOpen());
    QVERIFY(!desk.carrier.carry());
    QCOMPARE(static_cast<int>(desk.link.sentFrames.size()), 1);
}

// A write that is never sent again since no fence is answered may have been carried out all the
// same.
void TestFrameCarrier::countsEarlierAttempts()
{
    Desk desk;
    desk.core.queueWrite(testItem("D_W", 6, 1), {1});
    QVERIFY(desk.answer(QByteArray()));
    QVERIFY(desk.report.failure().sent);
    QVERIFY(desk.carrier.carry());
    desk.conversation.cancel();
    Reply notSent;
    notSent.sent = false;
    QVERIFY(desk.carrier.take(notSent).failure().sent);
    desk.core.queueWrite(testItem("D_W", 8, 1), {1});
    QVERIFY(desk.carrier.carry());
    desk.conversation.cancel();
    QVERIFY(!desk.carrier.take(notSent).failure().sent);
}

// After ten writes in a row the driver has a pause.
void TestFrameCarrier::carriesMoreThanTenWrites()
{
    Desk desk;
    for (int i = 0; i < 25; ++i) {
        desk.core.queueWrite(testItem("D_W", 2 * i, 1), {static_cast<quint16>(i)});
    }
    for (int i = 0; i < 25; ++i) {
        QVERIFY(desk.carrier.carry());
        if (textOf(desk.link.sentFrames.last()).mid(2, 3) != "wSB") {
            desk.link.say(answerFrame("01rSS01020000")); // a fence, since all answers are the same
        }
        desk.link.say(answerFrame("01wSB"));
        QVERIFY(!desk.carrier.isFrameOpen());
    }
    QVERIFY(!desk.carrier.carry());
}

QTEST_GUILESS_MAIN(TestFrameCarrier)

#include "test_frame_carrier.moc"
