#include "host/exchange/report_text.h"

#include <QtTest>

using namespace cnet;

class TestReportText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhy_data();
    void tellsWhy();
    void knowsWrites_data();
    void knowsWrites();
};

void TestReportText::tellsWhy_data()
{
    QTest::addColumn<int>("outcome");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, Outcome outcome, const char *answer, const char *text) {
        QTest::newRow(name) << static_cast<int>(outcome) << QByteArray(answer)
                            << QString::fromLatin1(text);
    };
    row("refused", Outcome::Refused,
        "\x15"
        "01wSB1232",
        "refused: 1232, more than 60 words in one request");
    row("silence", Outcome::TimedOut, "", "no answer");
    row("cut off", Outcome::TimedOut,
        "\x06"
        "01",
        "no usable answer");
    row("wrong block check", Outcome::Bad,
        "\x06"
        "01wSB",
        "no usable answer");
}

void TestReportText::tellsWhy()
{
    QFETCH(int, outcome);
    QFETCH(QByteArray, answer);
    ExchangeReport report;
    report.outcome = static_cast<Outcome>(outcome);
    report.answer = answer;
    report.refusal = 0x1232;
    QTEST(failureText(report), "text");
}

void TestReportText::knowsWrites_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<bool>("writes");
    QTest::newRow("wSB") << QByteArray("\x05"
                                       "01wSB08%DW0000101")
                         << true;
    QTest::newRow("WSS") << QByteArray("\x05"
                                       "01WSS0109%MX")
                         << true;
    QTest::newRow("rSB") << QByteArray("\x05"
                                       "01rSB08%DW0000101")
                         << false;
    QTest::newRow("w as a station") << QByteArray("\x05"
                                                  "w0r")
                                    << false;
    QTest::newRow("too short") << QByteArray("\x05"
                                             "01")
                               << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestReportText::knowsWrites()
{
    QFETCH(QByteArray, frame);
    QTEST(isWriteRequest(frame), "writes");
}

QTEST_APPLESS_MAIN(TestReportText)
#include "test_report_text.moc"
