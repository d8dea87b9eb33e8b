#include "gateway/support/written_line.h"
#include "gateway/write/audit_line.h"

#include <QtTest>

using namespace cnet::gateway;

/** One line says all, and harms nobody who looks at it. */
class TestAuditLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhoAsksForWhat();
    void saysWhatCameOfIt();
    void isReadAgain();
    void isNothingThatATerminalObeys();
    void passesOverWhatItDoesNotKnow();
};

void TestAuditLine::saysWhoAsksForWhat()
{
    WriteRequest request = requestOf("7", "press.speed", "12.5");
    request.reply.topic = QLatin1String("answers/7");
    QCOMPARE(
        auditLine(request, 1700000000123),
        QByteArray("{\"id\":\"7\",\"line\":\"press\",\"reply\":\"answers/7\",\"sink\":\"sink\","
                   "\"t\":1700000000123,\"tag\":\"press.speed\",\"value\":\"12.5\","
                   "\"what\":\"request\"}"));
    request.arrival = WriteRequest::Arrival::Retained;
    QVERIFY(auditLine(request, 1).contains("\"retained\":true"));
    QVERIFY(auditLine(request, 1, Delivery::Again).contains("\"what\":\"repeat\""));
}

void TestAuditLine::saysWhatCameOfIt()
{
    WriteAnswer answer;
    answer.id = QLatin1String("7");
    answer.outcome = WriteAnswer::Outcome::Taken;
    answer.isNow = QLatin1String("12.5");
    answer.atMs = 5;
    QCOMPARE(auditLine(answer), QByteArray("{\"id\":\"7\",\"is\":\"12.5\",\"outcome\":\"taken\","
                                           "\"t\":5,\"what\":\"result\"}"));
}

void TestAuditLine::isReadAgain()
{
    const auto request = readAuditLine(auditLine(requestOf("7", "a", "\"\n\x01"), 9));
    QVERIFY(request && request->what == AuditLine::What::Request && !request->isRetained);
    QCOMPARE(request->answer.id, QLatin1String("7"));
    QCOMPARE(request->answer.line, QLatin1String("press"));
    QCOMPARE(request->answer.reply.sink, QLatin1String("sink"));
    QCOMPARE(request->value, QLatin1String("\"\n\x01"));
    QCOMPARE(request->answer.atMs, 9);
    for (const auto outcome : {WriteAnswer::Outcome::Taken, WriteAnswer::Outcome::Refused,
                               WriteAnswer::Outcome::NoAnswer, WriteAnswer::Outcome::Superseded}) {
        WriteAnswer answer;
        answer.outcome = outcome;
        answer.reason = QLatin1String("why");
        const auto result = readAuditLine(auditLine(answer));
        QVERIFY(result && result->what == AuditLine::What::Result);
        QVERIFY(result->answer.outcome == outcome);
        QCOMPARE(result->answer.reason, QLatin1String("why"));
    }
}

void TestAuditLine::isNothingThatATerminalObeys()
{
    const QString evil = QString::fromUtf8("\x1b[2J\x07\r\n\x7f\xc2\x9b\xe2\x80\xa8") +
                         QChar(0x202e); // turns the line round
    const QByteArray line =
        auditLine(requestOf(evil, evil, evil + QString(5000, QLatin1Char('x'))), 1);
    for (const QChar letter : QString::fromUtf8(line)) {
        QVERIFY2(letter.isPrint(), qPrintable(QString::number(letter.unicode(), 16)));
    }
    QVERIFY(line.size() < 6000);
    QCOMPARE(readAuditLine(line)->answer.tag, evil);
    QVERIFY(auditLine(requestOf("1", "\xc3\xa4\xf0\x9f\x98\x80", "1"), 1)
                .contains("\xc3\xa4\xf0\x9f\x98\x80"));
}

void TestAuditLine::passesOverWhatItDoesNotKnow()
{
    for (const char *line : {"", "{", "[]", "{}", "{\"what\":\"result\"}", "{\"what\":7}",
                             "{\"what\":\"result\",\"outcome\":\"eaten\"}"}) {
        QVERIFY2(!readAuditLine(line), line);
    }
    QVERIFY(!readAuditLine(auditLine(requestOf("1", "a", "1"), 1, Delivery::Again)));
}

QTEST_APPLESS_MAIN(TestAuditLine)
#include "test_audit_line.moc"
