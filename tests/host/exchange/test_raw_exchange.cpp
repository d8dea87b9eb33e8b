#include "host/support/fake_link.h"
#include "host/support/frames.h"
#include "host/support/virtual_clock.h"
#include "support/rows.h"

#include <host/exchange/raw_exchange.h>

using namespace cnet;

class TestRawExchange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void takesTheAnswer_data();
    void takesTheAnswer();
    void givesUpInTime();
    void waitsForAQuietLine();
    void sendsAtOnceWhereNothingCanCome();
    void findsTheAnswerInPieces();
    void takesNoAnswerOfOthers();
    void sendsAgainWhatIsAsked();
    void knowsPlainReading_data();
    void knowsPlainReading();

private:
    struct Bench
    {
        VirtualClock clock;
        FakeLink link;
        RawExchange exchange{link, clock};
        QList<RawReply> replies;
    };
    std::unique_ptr<Bench> m_bench;
};

namespace {

const int kPatienceMs = 300;
const QByteArray kRequest = requestFrame("01rSB08%DW0010001");
const QByteArray kAnswer = answerFrame("01rSB01021234");
const QByteArray kRefusal = refusalFrame("01rSB1132");
const QByteArray kUnchecked("\x06"
                            "01RSB01021234\x03");

struct Sent
{
    const char *what;
    QByteArray frame;
    QByteArray comes;
    QByteArray answer;
    bool whole;
    int strayBytes;
};

const Sent kSent[] = {
    {"its answer", kRequest, kAnswer, kAnswer, true, 0},
    {"a refusal", kRequest, kRefusal, kRefusal, true, 0},
    {"noise before it", kRequest, "xy" + kAnswer, kAnswer, true, 2},
    {"echo before it", kRequest, kRequest + kAnswer, kAnswer, true,
     static_cast<int>(kRequest.size())},
    {"no block check due",
     "\x05"
     "01RSB08%DW0010001\x04",
     kUnchecked, kUnchecked, true, 0},
    {"no block check due, and more behind it",
     "\x05"
     "01RSB08%DW0010001\x04",
     kUnchecked + "\x06" + "01RSB01025678\x03", kUnchecked, true, 0},
    {"a wrong block check", kRequest, kAnswer.left(15) + "00", kAnswer.left(15) + "00", true, 0},
    {"half of it", kRequest, kAnswer.left(9), kAnswer.left(9), false, 0},
    {"anything to a frame of nobody", "\x05\x04", kAnswer, kAnswer, true, 0},
};

} // namespace

void TestRawExchange::init()
{
    m_bench = std::make_unique<Bench>();
    QObject::connect(&m_bench->exchange, &RawExchange::ended, this,
                     [this](const RawReply &reply) { m_bench->replies.append(reply); });
    m_bench->link.open();
    m_bench->clock.runFor(100);
}

void TestRawExchange::takesTheAnswer_data()
{
    addRows(kSent);
}

void TestRawExchange::takesTheAnswer()
{
    const Sent &row = currentRow(kSent);
    m_bench->exchange.send(row.frame, kPatienceMs);
    QCOMPARE(m_bench->link.sentFrames, QList<QByteArray>{row.frame});
    m_bench->clock.runFor(7);
    m_bench->link.say(row.comes);
    QCOMPARE(m_bench->replies.size(), row.whole ? 1 : 0);
    m_bench->clock.runFor(kPatienceMs);
    QCOMPARE(m_bench->replies.size(), 1);
    const RawReply &reply = m_bench->replies.constFirst();
    QCOMPARE(reply.answer, row.answer);
    QCOMPARE(reply.whole, row.whole);
    QCOMPARE(reply.strayBytes, row.strayBytes);
    QCOMPARE(qRound(reply.tookMs), row.whole ? 7 : kPatienceMs);
}

void TestRawExchange::givesUpInTime()
{
    m_bench->exchange.send(kRequest, kPatienceMs);
    m_bench->clock.runFor(kPatienceMs - 1);
    QVERIFY(m_bench->exchange.isBusy());
    m_bench->clock.runFor(1);
    QCOMPARE(m_bench->replies.size(), 1);
    QCOMPARE(m_bench->replies.constFirst().answer, QByteArray());
    m_bench->link.say(kAnswer); // too late
    QCOMPARE(m_bench->replies.size(), 1);
}

// What is on its way from before must not pass for the answer.
void TestRawExchange::waitsForAQuietLine()
{
    m_bench->link.say("\x06"
                      "01");
    m_bench->exchange.send(kRequest, kPatienceMs);
    m_bench->clock.runFor(10);
    m_bench->link.say(kAnswer);
    m_bench->clock.runFor(19);
    QVERIFY(m_bench->link.sentFrames.isEmpty());
    m_bench->clock.runFor(1);
    QCOMPARE(m_bench->link.sentFrames.size(), 1);
    QVERIFY(m_bench->replies.isEmpty());
    // A line that is never quiet does not keep it for ever.
    m_bench->clock.runFor(kPatienceMs);
    m_bench->exchange.send(kRequest, kPatienceMs);
    for (int i = 0; i < 210; ++i) {
        m_bench->link.say("x");
        m_bench->clock.runFor(10);
    }
    QCOMPARE(m_bench->link.sentFrames.size(), 2);
}

void TestRawExchange::sendsAtOnceWhereNothingCanCome()
{
    m_bench->link.say("x");
    m_bench->exchange.send(kRequest, kPatienceMs, 0);
    QCOMPARE(m_bench->link.sentFrames.size(), 1);
}

// As a capture has them.
void TestRawExchange::findsTheAnswerInPieces()
{
    RawAnswer answer(kRequest);
    QCOMPARE(answer.reply().answer, QByteArray());
    QVERIFY(!answer.add("zz"));
    QVERIFY(!answer.add(answerFrame("02rSB01021234")));
    QVERIFY(!answer.add(kAnswer.left(5)));
    QCOMPARE(answer.reply().answer, kAnswer.left(5));
    QVERIFY(!answer.reply().whole);
    QVERIFY(answer.add(kAnswer.mid(5) + kRefusal));
    QVERIFY(answer.add(kRefusal));
    QCOMPARE(answer.reply().answer, kAnswer);
    QVERIFY(answer.reply().whole);
    QCOMPARE(answer.reply().strayBytes, 2);
    QCOMPARE(answer.reply().elsewhere, answerFrame("02rSB01021234"));
    QCOMPARE(answer.reply().frame, kRequest);
}

void TestRawExchange::takesNoAnswerOfOthers()
{
    const QByteArray others = answerFrame("02rSB01021234") + answerFrame("01wSB");
    m_bench->exchange.send(kRequest, kPatienceMs);
    m_bench->link.say("xyz" + others + kAnswer);
    QCOMPARE(m_bench->replies.size(), 1);
    QCOMPARE(m_bench->replies.constFirst().answer, kAnswer);
    QCOMPARE(m_bench->replies.constFirst().elsewhere, others);
    QCOMPARE(m_bench->replies.constFirst().strayBytes, 3);
}

void TestRawExchange::sendsAgainWhatIsAsked()
{
    for (int i = 1; i <= 3; ++i) {
        m_bench->exchange.send(kRequest, kPatienceMs);
        m_bench->clock.runFor(50);
        m_bench->link.say(kAnswer);
        QCOMPARE(m_bench->replies.size(), i);
        QCOMPARE(m_bench->link.sentFrames.size(), i);
        QVERIFY(m_bench->replies.constLast().elsewhere.isEmpty());
    }
}

namespace {

const Case<QByteArray, bool> kPlain[] = {
    {"reads", kRequest, true},
    {"reads without block check",
     "\x05"
     "01RSB08%DW0010001\x04",
     true},
    {"reads, with a wrong check",
     "\x05"
     "01rSB08%DW0010001\x04"
     "00",
     true},
    {"writes", requestFrame("01wSB08%DW00100011234"), false},
    {"writes in upper case",
     "\x05"
     "01WSB08%DW00100011234\x04",
     false},
    {"a second request within",
     "\x05"
     "01rSB\x05"
     "01wSB08%DW00100011234\x04",
     false},
    {"something before the head", "x" + kRequest, false},
    {"unknown command", requestFrame("01xSB"), false},
    {"nothing", "", false},
};

} // namespace

void TestRawExchange::knowsPlainReading_data()
{
    addRows(kPlain);
}

void TestRawExchange::knowsPlainReading()
{
    const auto &row = currentRow(kPlain);
    QCOMPARE(onlyReads(row.given), row.expected);
}

QTEST_GUILESS_MAIN(TestRawExchange)
#include "test_raw_exchange.moc"
