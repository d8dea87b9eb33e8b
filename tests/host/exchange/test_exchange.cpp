#include "host/support/fake_driver.h"
#include "host/support/fake_link.h"

#include "host/exchange/exchange.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace cnet;

namespace {

const QByteArray kRequest("\x05"
                          "01rSB08%DW0010001\x04"
                          "00");
const QByteArray kOtherRequest("\x05"
                               "01rSB08%DW0020001\x04"
                               "00");
const QByteArray kAnswer("\x06"
                         "01rSB01021234\x03"
                         "5F");
const QByteArray kOtherAnswer("\x06"
                              "01rSB01025678\x03"
                              "5F");
const QByteArray kRefusal("\x15"
                          "01rSB1132\x03"
                          "A0");
const int kLength = 17;
const int kLongMs = 20000;
const int kShortMs = 30;

} // namespace

class TestExchange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void handsOver_data();
    void handsOver();
    void endsEveryRequestOnce_data();
    void endsEveryRequestOnce();
    void computesTheTimeout_data();
    void computesTheTimeout();
    void asksAtOnceAfterAnAnswer();
    void asksAgainWhenIdle();
    void wakes();
    void transmitsNoHandshake();
    void waitsForLateAnswers();
    void distrustsTheFirstAnswerAfterAnotherQuestion();
    void ignoresBytesBetweenRequests();
    void usesALineThatIsNeverQuiet();
    void keepsTheFrameWhileTheLinkIsDown();
    void waitsAfreshWhenTheLinkOpensAgain();
    void survivesALinkThatBreaksWhileSending();
    void countsRounds();
    void pausesBetweenRounds();
    void stopsFromWithin();
    void boundsWhatTheDriverClaims();

private:
    void begin(int timeoutMs);
    void queue(const QByteArray &request = kRequest, int opKind = 4);
    FakeDriver &driver() { return FakeDriver::instance(); }

    DriverFunctions m_functions;
    ExchangeSettings m_settings;
    std::unique_ptr<FakeLink> m_link;
    std::unique_ptr<Exchange> m_exchange;
    QList<ExchangeReport> m_reports;
};

void TestExchange::init()
{
    m_functions = FakeDriver::functions();
    m_settings = ExchangeSettings();
    m_settings.quietMs = 1;
    m_link = std::make_unique<FakeLink>();
    m_reports.clear();
}

void TestExchange::cleanup()
{
    m_exchange.reset();
    m_link.reset();
}

void TestExchange::begin(int timeoutMs)
{
    m_settings.timeoutMs = timeoutMs;
    m_exchange = std::make_unique<Exchange>(m_functions, *m_link, m_settings);
    connect(m_exchange.get(), &Exchange::ended, this,
            [this](const ExchangeReport &report) { m_reports.append(report); });
    m_exchange->start();
    m_link->open();
}

void TestExchange::queue(const QByteArray &request, int opKind)
{
    driver().frames.append(FakeDriver::frame(request, kLength, opKind));
}

void TestExchange::handsOver_data()
{
    QTest::addColumn<QList<QByteArray>>("chunks");
    QTest::addColumn<QByteArray>("dealt");
    QTest::addColumn<int>("outcome");
    QTest::addColumn<bool>("inTime"); // false: only the deadline ends it
    const auto row = [](const char *name, const QList<QByteArray> &chunks, const QByteArray &dealt,
                        Outcome outcome, bool inTime = true) {
        QTest::newRow(name) << chunks << dealt << static_cast<int>(outcome) << inTime;
    };
    row("good answer", {kAnswer}, kAnswer, Outcome::Answered);
    row("in pieces", {kAnswer.left(1), kAnswer.mid(1, 9), kAnswer.mid(10)}, kAnswer,
        Outcome::Answered);
    row("noise before", {"zz", "z" + kAnswer}, kAnswer, Outcome::Answered);
    row("echo before", {kRequest + kAnswer}, kAnswer, Outcome::Answered);
    row("noise behind", {kAnswer + "zz"}, kAnswer, Outcome::Answered);
    row("refusal", {kRefusal}, kRefusal, Outcome::Refused);
    row("another station", {QByteArray(kAnswer).replace(1, 2, "02")}, QByteArray(), Outcome::Bad);
    row("another command", {QByteArray(kAnswer).replace(3, 3, "wSB")}, QByteArray(), Outcome::Bad);
    row("refusal of another station", {QByteArray(kRefusal).replace(1, 2, "02")}, QByteArray(),
        Outcome::Bad);
    row("too short an answer", {QByteArray(kAnswer).remove(8, 2)}, QByteArray(kAnswer).remove(8, 2),
        Outcome::Bad);
    row("refusal without a code", {QByteArray(kRefusal).replace(6, 4, "zzzz")},
        QByteArray(kRefusal).replace(6, 4, "zzzz"), Outcome::Bad);
    row("silence", {}, QByteArray(), Outcome::TimedOut, false);
    row("cut off", {kAnswer.left(9)}, kAnswer.left(9), Outcome::TimedOut, false);
    row("noise only", {"zzz"}, "zzz", Outcome::TimedOut, false);
}

void TestExchange::handsOver()
{
    QFETCH(QList<QByteArray>, chunks);
    QFETCH(bool, inTime);
    queue();
    m_link->answers = {chunks};
    driver().results = {kAnswerGivenUp};
    QFETCH(int, outcome);
    if (static_cast<Outcome>(outcome) == Outcome::Answered) {
        driver().results = {kAnswerGood};
    }
    begin(inTime ? kLongMs : kShortMs);
    QTRY_COMPARE(m_reports.size(), 1);
    QCOMPARE(m_link->sentFrames, QList<QByteArray>{kRequest});
    QCOMPARE(driver().dealt.size(), 1);
    QTEST(driver().dealt.first(), "dealt");
    const ExchangeReport report = m_reports.first();
    QCOMPARE(static_cast<int>(report.outcome), outcome);
    QCOMPARE(report.frame, kRequest);
    QCOMPARE(report.request.stationNo, 1);
    QCOMPARE(report.refusal, report.outcome == Outcome::Refused ? 0x1132 : 0);
    QVERIFY(report.tookMs >= (inTime ? 0 : kShortMs - 1));
}

void TestExchange::endsEveryRequestOnce_data()
{
    QTest::addColumn<QList<int>>("results");
    QTest::addColumn<int>("sent");
    QTest::newRow("answered") << QList<int>{1} << 1;
    QTest::newRow("second attempt") << QList<int>{8, 1} << 2;
    QTest::newRow("given up") << QList<int>{8, 8, 2} << 3;
    QTest::newRow("nothing in flight") << QList<int>{0} << 1;
}

void TestExchange::endsEveryRequestOnce()
{
    QFETCH(QList<int>, results);
    QFETCH(int, sent);
    queue();
    driver().results = results;
    for (int i = 0; i < sent; ++i) {
        m_link->answers.append({kAnswer});
    }
    begin(kLongMs);
    QTRY_COMPARE(m_reports.size(), sent);
    QTRY_VERIFY(driver().asked > sent);
    QCOMPARE(m_link->sentFrames.size(), sent);
    for (int i = 0; i < sent; ++i) {
        QCOMPARE(m_reports.at(i).result, results.at(i));
    }
}

void TestExchange::computesTheTimeout_data()
{
    QTest::addColumn<int>("set");
    QTest::addColumn<int>("microseconds");
    QTest::addColumn<int>("request");
    QTest::addColumn<int>("answer");
    QTest::addColumn<int>("timeout");
    QTest::newRow("set by the user") << 70 << 1000 << 21 << 253 << 70;
    QTest::newRow("short answer at 10000 characters a second") << 0 << 100 << 20 << 30 << 510;
    QTest::newRow("long answer at 1000 characters a second") << 0 << 1000 << 21 << 253 << 1048;
    QTest::newRow("nonsense lengths") << 0 << 1000 << -1 << -1 << 500;
}

void TestExchange::computesTheTimeout()
{
    QFETCH(int, set);
    QFETCH(int, microseconds);
    QFETCH(int, request);
    QFETCH(int, answer);
    m_settings.timeoutMs = set;
    m_settings.characterMicroseconds = microseconds;
    const Exchange exchange(m_functions, *m_link, m_settings);
    QTEST(exchange.timeoutFor(request, answer), "timeout");
}

void TestExchange::asksAtOnceAfterAnAnswer()
{
    queue();
    queue(kOtherRequest);
    begin(kLongMs);
    QTRY_COMPARE(m_link->sentFrames.size(), 1);
    int sentWhenTold = 0;
    connect(m_exchange.get(), &Exchange::ended, this,
            [&] { sentWhenTold = static_cast<int>(m_link->sentFrames.size()); });
    Q_EMIT m_link->received(kAnswer);
    QCOMPARE(sentWhenTold, 1);
    QCOMPARE(m_link->sentFrames.size(), 2);
    QCOMPARE(m_link->sentFrames.at(1), kOtherRequest);
}

void TestExchange::asksAgainWhenIdle()
{
    begin(kLongMs);
    QSignalSpy idle(m_exchange.get(), &Exchange::idle);
    QTRY_VERIFY(idle.size() >= 2);
    QVERIFY(m_link->sentFrames.isEmpty());
    m_link->answers = {{kAnswer}};
    queue();
    QTRY_COMPARE(m_reports.size(), 1);
}

void TestExchange::wakes()
{
    m_settings.intervalMs = kLongMs;
    queue();
    m_link->answers = {{kAnswer}, {kAnswer}};
    begin(kLongMs);
    m_exchange->setRoundLength(1);
    QTRY_COMPARE(m_exchange->rounds(), 1);
    queue(kOtherRequest, 9);
    m_exchange->wake();
    QTRY_COMPARE(m_reports.size(), 2);
}

void TestExchange::transmitsNoHandshake()
{
    driver().frames.append(FakeDriver::frame(QByteArray(), 0));
    driver().results = {kAnswerGivenUp};
    m_link->answers = {{kAnswer}};
    queue();
    begin(kLongMs);
    QTRY_COMPARE(m_reports.size(), 1);
    QCOMPARE(driver().dealt, (QList<QByteArray>{QByteArray(), kAnswer}));
    QCOMPARE(m_link->sentFrames, QList<QByteArray>{kRequest});
}

// The first attempt is answered after the second was sent; the answer to the second must not be
// taken for that to the next question.
void TestExchange::waitsForLateAnswers()
{
    queue();
    queue(kOtherRequest);
    m_link->answers = {{}, {kAnswer, kAnswer}, {kOtherAnswer}};
    const int timeoutMs = 400;
    begin(timeoutMs);
    QTRY_COMPARE(m_reports.size(), 3);
    QCOMPARE(driver().dealt, (QList<QByteArray>{QByteArray(), kAnswer, kOtherAnswer}));
    QCOMPARE(m_link->sentFrames, (QList<QByteArray>{kRequest, kRequest, kOtherRequest}));
    // Both answers had come, so there was no need to keep the line quiet for twice the time-out.
    QVERIFY(m_reports.at(2).sentMs - m_reports.at(1).sentMs < 2 * timeoutMs);
}

void TestExchange::distrustsTheFirstAnswerAfterAnotherQuestion()
{
    queue();
    queue(kOtherRequest);
    driver().results = {kAnswerGivenUp, kAnswerResend, kAnswerGood};
    m_link->answers = {{}, {kAnswer}, {kOtherAnswer}};
    begin(kShortMs);
    QTRY_COMPARE(m_reports.size(), 3);
    QCOMPARE(driver().dealt, (QList<QByteArray>{QByteArray(), QByteArray(), kOtherAnswer}));
    QVERIFY(m_reports.at(1).outcome == Outcome::Bad);
    QCOMPARE(m_reports.at(1).answer, kAnswer);
    // The line was kept quiet meanwhile, for twice the time-out since nothing more came.
    QVERIFY(m_reports.at(2).sentMs - m_reports.at(1).sentMs >= 2 * kShortMs);
}

void TestExchange::ignoresBytesBetweenRequests()
{
    begin(kLongMs);
    QSignalSpy idle(m_exchange.get(), &Exchange::idle);
    Q_EMIT m_link->received(kOtherAnswer);
    QVERIFY(idle.wait());
    Q_EMIT m_link->received(kOtherAnswer);
    m_link->answers = {{kAnswer}};
    queue();
    QTRY_COMPARE(m_reports.size(), 1);
    QCOMPARE(driver().dealt, QList<QByteArray>{kAnswer});
}

void TestExchange::usesALineThatIsNeverQuiet()
{
    m_settings.quietMs = 50;
    queue();
    m_link->answers = {{kAnswer}};
    QTimer babble;
    connect(&babble, &QTimer::timeout, this, [this] { Q_EMIT m_link->received("z"); });
    babble.start(1);
    begin(kLongMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_reports.size(), 1, 10000);
    QCOMPARE(driver().dealt, QList<QByteArray>{kAnswer});
}

void TestExchange::keepsTheFrameWhileTheLinkIsDown()
{
    queue();
    begin(kLongMs);
    QTRY_COMPARE(m_link->sentFrames.size(), 1);
    m_link->breakDown();
    const int asked = driver().asked;
    QSignalSpy idle(m_exchange.get(), &Exchange::idle);
    QVERIFY(!idle.wait(20));
    QCOMPARE(driver().asked, asked);
    QVERIFY(driver().dealt.isEmpty());
    m_link->answers = {{kAnswer}};
    m_link->open();
    QTRY_COMPARE(m_reports.size(), 1);
    QCOMPARE(m_link->sentFrames, (QList<QByteArray>{kRequest, kRequest}));
    QCOMPARE(driver().dealt, QList<QByteArray>{kAnswer});
}

// The time of a request that was out before does not count against the next one.
void TestExchange::waitsAfreshWhenTheLinkOpensAgain()
{
    queue();
    m_settings.quietMs = 3 * kShortMs;
    begin(kShortMs);
    QTRY_COMPARE(m_link->sentFrames.size(), 1);
    m_exchange->start();
    m_link->answers = {{kAnswer}};
    QTRY_COMPARE(m_reports.size(), 1);
    QCOMPARE(m_reports.first().outcome, Outcome::Answered);
    QCOMPARE(m_link->sentFrames.size(), 2);
}

void TestExchange::survivesALinkThatBreaksWhileSending()
{
    queue();
    queue(kOtherRequest);
    m_link->answers = {{kAnswer}};
    m_link->breaksWithFrame = 2;
    begin(kLongMs);
    QTRY_COMPARE(m_reports.size(), 1);
    QVERIFY(!m_link->isOpen());
    QSignalSpy idle(m_exchange.get(), &Exchange::idle);
    QVERIFY(!idle.wait(20));
    QCOMPARE(m_link->sentFrames.size(), 2);
    m_link->answers = {{kOtherAnswer}};
    m_link->open();
    QTRY_COMPARE(m_reports.size(), 2);
    QCOMPARE(m_reports.last().outcome, Outcome::Answered);
}

void TestExchange::countsRounds()
{
    const int writes = 9; // an opKind that is no cyclic read
    queue();
    queue(kOtherRequest, writes);
    queue();
    queue();
    driver().results = {kAnswerGood, kAnswerGood, kAnswerResend, kAnswerGivenUp, kAnswerGood};
    m_link->answers = {{kAnswer}, {kAnswer}, {kRefusal}, {kRefusal}, {kAnswer}};
    begin(kLongMs);
    m_exchange->setRoundLength(2);
    QSignalSpy rounds(m_exchange.get(), &Exchange::roundEnded);
    QTRY_COMPARE(m_reports.size(), 5);
    // The round is the two reads: one answered, one given up at its second attempt.
    QCOMPARE(rounds.size(), 1);
    QCOMPARE(m_exchange->rounds(), 1);
}

void TestExchange::pausesBetweenRounds()
{
    m_settings.intervalMs = 40;
    for (int i = 0; i < 4; ++i) {
        queue();
        m_link->answers.append({kAnswer});
    }
    begin(kLongMs);
    m_exchange->setRoundLength(2);
    QTRY_COMPARE(m_reports.size(), 4);
    QVERIFY(m_reports.at(2).sentMs - m_reports.at(1).sentMs >= 39);
}

void TestExchange::stopsFromWithin()
{
    queue();
    queue();
    m_link->answers = {{kAnswer}, {kAnswer}};
    begin(kLongMs);
    connect(m_exchange.get(), &Exchange::ended, this, [this] { m_exchange->stop(); });
    QTRY_COMPARE(m_reports.size(), 1);
    QSignalSpy sent(m_exchange.get(), &Exchange::sent);
    QVERIFY(!sent.wait(20));
    QCOMPARE(m_link->sentFrames.size(), 1);
}

void TestExchange::boundsWhatTheDriverClaims()
{
    FRAME_PRO frame = FakeDriver::frame(kRequest, kLength);
    frame.sendLen = 100000;
    frame.recvLen = -5;
    driver().frames.append(frame);
    driver().results = {kAnswerGivenUp};
    m_link->answers = {{kAnswer}};
    begin(kLongMs);
    QTRY_COMPARE(m_reports.size(), 1);
    QCOMPARE(m_link->sentFrames.first().size(), static_cast<int>(kSendBufSize));
}

QTEST_GUILESS_MAIN(TestExchange)
#include "test_exchange.moc"
