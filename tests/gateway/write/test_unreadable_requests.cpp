#include "gateway/support/write_desk_fixture.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace cnet;
using namespace cnet::gateway;

/** Whatever a sink could not read is answered, and is in the audit log: one line each. */
class TestUnreadableRequests : public WriteDeskFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void areWrittenDown();
    void harmNobodyWhoReadsTheLog();
    void areRefusedAsRetained();
    void takeNoIdAway();
    void areAnsweredOnAFullDisk();

private:
    void ask(const char *id, const QString &value)
    {
        WriteRequest request = requestOf(QLatin1String(id), QLatin1String("a"), value);
        request.fault = QLatin1String("the message is no JSON");
        m_desk->ask(request);
    }
    QJsonObject lastLine() const { return QJsonDocument::fromJson(audit().last()).object(); }
};

void TestUnreadableRequests::areWrittenDown()
{
    ask("1", QLatin1String("{\"id\":"));
    QCOMPARE(take(), QStringList(QLatin1String("1 refused: the message is no JSON")));
    m_clock.runFor(1);
    QVERIFY(m_wanted.isEmpty());
    QCOMPARE(audit().size(), 1);
    const QJsonObject line = lastLine();
    for (const auto &[key, text] :
         {std::pair("what", "refusal"), std::pair("id", "1"), std::pair("line", "press"),
          std::pair("tag", "a"), std::pair("value", "{\"id\":"), std::pair("outcome", "refused"),
          std::pair("reason", "the message is no JSON")}) {
        QCOMPARE(line.value(QLatin1String(key)).toString(), QLatin1String(text));
    }
    // Each one, also without an id.
    ask("1", QLatin1String("{"));
    ask("", QLatin1String("{"));
    QCOMPARE(take().size(), 2);
    QCOMPARE(audit().size(), 3);
    QVERIFY(!lastLine().value(QLatin1String("id")).toString().isEmpty());
}

void TestUnreadableRequests::harmNobodyWhoReadsTheLog()
{
    ask("1", QLatin1String("\x1b[2J\r\n\x07") + QString(100000, QLatin1Char('x')));
    QCOMPARE(audit().size(), 1);
    const QByteArray line = audit().first();
    QVERIFY(line.size() < 3000);
    for (const char letter : line) {
        QVERIFY(letter >= ' ');
    }
    QVERIFY2(line.contains("\\u001b[2J"), line.constData());
}

void TestUnreadableRequests::areRefusedAsRetained()
{
    WriteRequest request = requestOf("1", "a", "{");
    request.fault = QLatin1String("the message is no JSON");
    request.arrival = WriteRequest::Arrival::Retained;
    m_desk->ask(request);
    QVERIFY(take().value(0).startsWith(QLatin1String("1 refused: a retained command is not")));
    QCOMPARE(audit().size(), 1);
    QVERIFY(lastLine().value(QLatin1String("retained")).toBool());
}

// The one that could be read is carried out, and after a restart gets its own answer again.
void TestUnreadableRequests::takeNoIdAway()
{
    WriteDeskFixture::ask("1");
    m_clock.runFor(1);
    ask("1", QLatin1String("{"));
    carryOut();
    const QString taken = QLatin1String("1 taken [1]");
    QCOMPARE(take(), QStringList({QLatin1String("1 refused: the message is no JSON"), taken}));
    start();
    WriteDeskFixture::ask("1");
    QCOMPARE(take(), QStringList(taken));
}

void TestUnreadableRequests::areAnsweredOnAFullDisk()
{
    const FullDisk full(10);
    ask("1", QLatin1String("{"));
    QCOMPARE(take().size(), 1);
    QCOMPARE(m_said.size(), 1);
}

QTEST_APPLESS_MAIN(TestUnreadableRequests)
#include "test_unreadable_requests.moc"
