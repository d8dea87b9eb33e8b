#include <host/exchange/exchange_report.h>

#include <QtTest>

using namespace cnet;

Q_DECLARE_METATYPE(cnet::Failure::Kind)
Q_DECLARE_METATYPE(cnet::Outcome)

class TestFailure : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasWords_data();
    void hasWords();
    void comesFromAReport_data();
    void comesFromAReport();
};

void TestFailure::hasWords_data()
{
    QTest::addColumn<Failure::Kind>("kind");
    QTest::addColumn<QString>("detail");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << Failure::None << ""
                          << "";
    QTest::newRow("refused") << Failure::Refused << ""
                             << "refused: 1232, more than 60 words in one request";
    QTest::newRow("no answer") << Failure::NoAnswer << ""
                               << "no answer";
    QTest::newRow("bad answer") << Failure::BadAnswer << ""
                                << "no usable answer";
    QTest::newRow("line down") << Failure::LineDown << ""
                               << "the line is down";
    QTest::newRow("cancelled") << Failure::Cancelled << ""
                               << "cancelled";
    QTest::newRow("closed") << Failure::Cancelled << "the session was closed"
                            << "the session was closed";
    QTest::newRow("mismatch") << Failure::Mismatch << "it holds 5"
                              << "it holds 5";
}

void TestFailure::hasWords()
{
    QFETCH(Failure::Kind, kind);
    QFETCH(QString, detail);
    Failure failure;
    QVERIFY(failure.isNone());
    failure.kind = kind;
    failure.code = 0x1232;
    failure.detail = detail;
    QTEST(failure.text(), "text");
    QCOMPARE(failure.isNone(), kind == Failure::None);
    Failure other = failure;
    QVERIFY(other == failure);
    other.sent = true;
    QVERIFY(other != failure);
}

void TestFailure::comesFromAReport_data()
{
    QTest::addColumn<Outcome>("outcome");
    QTest::addColumn<bool>("good");
    QTest::addColumn<Failure::Kind>("kind");
    QTest::newRow("taken") << Outcome::Answered << true << Failure::None;
    QTest::newRow("not taken") << Outcome::Answered << false << Failure::BadAnswer;
    QTest::newRow("refused") << Outcome::Refused << false << Failure::Refused;
    QTest::newRow("bad") << Outcome::Bad << false << Failure::BadAnswer;
    QTest::newRow("silence") << Outcome::TimedOut << false << Failure::NoAnswer;
}

void TestFailure::comesFromAReport()
{
    QFETCH(Outcome, outcome);
    QFETCH(bool, good);
    ExchangeReport report;
    report.reply.outcome = outcome;
    report.good = good;
    report.refusal = 0x1132;
    for (const bool sent : {true, false}) {
        report.wentOut = sent;
        QTEST(report.failure().kind, "kind");
        QCOMPARE(report.failure().sent, sent);
        QCOMPARE(report.failure().code, 0x1132);
    }
}

QTEST_APPLESS_MAIN(TestFailure)

#include "test_failure.moc"
