#include <host/exchange/trace.h>

#include <QtTest>

using namespace cnet;

namespace {

const QTime kTime(7, 8, 9, 10);

} // namespace

Q_DECLARE_METATYPE(cnet::Outcome)

class TestTrace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void request();
    void answers_data();
    void answers();
    void unusedAnswers();
};

void TestTrace::request()
{
    const QByteArray frame("\x05"
                           "01rSB08%DW0010005\x04"
                           "EF");
    QCOMPARE(traceRequest(kTime, frame),
             QLatin1String("07:08:09.010 -> 21 bytes [05 30 31 72 53 42 30 38 25 44 57 30 30 31 30 "
                           "30 30 35 04 45 46] station 1, read 5 words from %DW00100"));
}

void TestTrace::answers_data()
{
    QTest::addColumn<Outcome>("outcome");
    QTest::addColumn<bool>("final");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("note");
    QTest::addColumn<int>("stray");
    QTest::addColumn<QString>("text");
    const QByteArray done("\x06"
                          "01wSB\x03"
                          "76");
    const QString bytes = QLatin1String("9 bytes [06 30 31 77 53 42 03 37 36] station 1, done");
    const auto row = [](const char *name, Outcome outcome, bool final, const QByteArray &answer,
                        const char *note, int stray, const QString &text) {
        QTest::newRow(name) << outcome << final << answer << QString::fromLatin1(note) << stray
                            << text;
    };
    row("taken", Outcome::Answered, true, done, "", 0, bytes);
    row("noise about it", Outcome::Answered, true, done, "", 3,
        bytes + QLatin1String("; 3 stray bytes"));
    row("taken after a note", Outcome::Answered, true, done, "another station or command", 0,
        bytes);
    row("not accepted", Outcome::Bad, false, done, "", 0,
        bytes + QLatin1String("; not accepted, sent again"));
    row("not used", Outcome::Bad, true, done, "another station or command", 0,
        bytes + QLatin1String("; not used: another station or command, given up"));
    row("silence", Outcome::TimedOut, false, QByteArray(), "", 0,
        QLatin1String("no answer; sent again"));
    row("noise only", Outcome::Bad, true, QByteArray(), "", 7,
        QLatin1String("no usable answer; 7 stray bytes, given up"));
    row("cut off", Outcome::Bad, true, "\x06", "", 0,
        QLatin1String("1 bytes [06] a frame without its end; not accepted, given up"));
}

void TestTrace::answers()
{
    QFETCH(Outcome, outcome);
    QFETCH(bool, final);
    QFETCH(QByteArray, answer);
    QFETCH(QString, note);
    QFETCH(int, stray);
    QFETCH(QString, text);
    ExchangeReport report;
    report.final = final;
    report.reply.outcome = outcome;
    report.reply.tookMs = 12.34;
    report.reply.answer = answer;
    report.reply.note = note;
    report.reply.strayBytes = stray;
    QCOMPARE(traceAnswer(kTime, report), QLatin1String("07:08:09.010 <- 12.3 ms ") + text);
}

void TestTrace::unusedAnswers()
{
    const QByteArray done("\x06"
                          "01wSB\x03"
                          "76");
    const QLatin1String text(
        "07:08:09.010 <- 700.0 ms 9 bytes [06 30 31 77 53 42 03 37 36] station "
        "1, done; ");
    QCOMPARE(traceLate(kTime, done, 700.04), text + QLatin1String("too late, not used"));
    QCOMPARE(traceDoubted(kTime, done, 700.04),
             text + QLatin1String("may be a copy of the answer before it, asked again"));
}

QTEST_APPLESS_MAIN(TestTrace)

#include "test_trace.moc"
