#include "host/exchange/trace.h"

#include <QtTest>

using namespace cnet;

class TestTrace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void request();
    void answers_data();
    void answers();
};

void TestTrace::request()
{
    const QByteArray frame("\x05"
                           "01rSB08%DW0010005\x04"
                           "EF");
    QCOMPARE(traceRequest(QTime(7, 8, 9, 10), frame),
             QLatin1String("07:08:09.010 -> 21 bytes [05 30 31 72 53 42 30 38 25 44 57 30 30 31 30 "
                           "30 30 35 04 45 46] station 1, read 5 words from %DW00100"));
}

void TestTrace::answers_data()
{
    QTest::addColumn<int>("outcome");
    QTest::addColumn<int>("result");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("note");
    QTest::addColumn<int>("stray");
    QTest::addColumn<QString>("text");
    const QByteArray done("\x06"
                          "01wSB\x03"
                          "77");
    const QString bytes = QLatin1String("9 bytes [06 30 31 77 53 42 03 37 37] station 1, done "
                                        "(block check wrong)");
    const auto row = [](const char *name, Outcome outcome, int result, const QByteArray &answer,
                        const char *note, int stray, const QString &text) {
        QTest::newRow(name) << static_cast<int>(outcome) << result << answer
                            << QString::fromLatin1(note) << stray << text;
    };
    row("taken", Outcome::Answered, kAnswerGood, done, "", 0, bytes);
    row("noise about it", Outcome::Answered, kAnswerGood, done, "", 3,
        bytes + QLatin1String("; 3 stray bytes"));
    row("not accepted", Outcome::Bad, kAnswerResend, done, "", 0,
        bytes + QLatin1String("; not accepted, sent again"));
    row("not used", Outcome::Bad, kAnswerGivenUp, done, "another station or command", 0,
        bytes + QLatin1String("; not used: another station or command, given up"));
    row("silence", Outcome::TimedOut, kAnswerResend, QByteArray(), "", 0,
        QLatin1String("no answer; sent again"));
    row("cut off", Outcome::TimedOut, kAnswerGivenUp, "\x06", "", 0,
        QLatin1String("answer incomplete, 1 bytes [06]; given up"));
}

void TestTrace::answers()
{
    QFETCH(int, outcome);
    ExchangeReport report;
    report.outcome = static_cast<Outcome>(outcome);
    report.tookMs = 12.34;
    QFETCH(int, result);
    report.result = result;
    QFETCH(QByteArray, answer);
    QFETCH(QString, note);
    QFETCH(int, stray);
    QFETCH(QString, text);
    report.answer = answer;
    report.note = note;
    report.strayBytes = stray;
    QCOMPARE(traceAnswer(QTime(7, 8, 9, 10), report),
             QLatin1String("07:08:09.010 <- 12.3 ms ") + text);
}

QTEST_APPLESS_MAIN(TestTrace)
#include "test_trace.moc"
