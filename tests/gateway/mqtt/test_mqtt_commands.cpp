#include "gateway/support/mqtt_sink_fixture.h"

using namespace cnet;
using namespace cnet::gateway;

/** What comes on command topics is asked, and answered where it was asked. */
class TestMqttCommands : public MqttSinkFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void asksForCommands();
    void answersWhereItWasAsked();
    void answersNotOnItsOwnTopics();
    void refusesNonsense();
};

void TestMqttCommands::asksForCommands()
{
    connectSink();
    QCOMPARE(m_connection->filters, QStringList());
    takeCommands();
    QCOMPARE(m_connection->filters, QStringList(latin("plant/write/+/+/set")));
    MqttMessage message;
    message.topic = latin("plant/write/press/zones[2]/set");
    message.payload = R"({"id":"7","v":12.5})";
    Q_EMIT m_connection->received(message);
    message.isRetained = true;
    Q_EMIT m_connection->received(message);
    message.topic = latin("plant/else");
    Q_EMIT m_connection->received(message);
    QCOMPARE(m_asked.size(), 2);
    QCOMPARE(m_asked.first().line, latin("press"));
    QCOMPARE(m_asked.first().tag, latin("zones[2]"));
    QCOMPARE(m_asked.first().id, latin("7"));
    QCOMPARE(m_asked.first().value, latin("12.5"));
    QVERIFY(m_asked.first().arrival == WriteRequest::Arrival::Live);
    QVERIFY(m_asked.last().arrival == WriteRequest::Arrival::Retained);
}

void TestMqttCommands::answersWhereItWasAsked()
{
    m_settings.answers = templateOf("{site}/write/{line}/{tag}/set/answer");
    make();
    connectSink();
    WriteAnswer answer;
    answer.id = latin("7");
    answer.line = latin("press");
    answer.tag = latin("a");
    answer.outcome = WriteAnswer::Outcome::Taken;
    answer.isNow = latin("12.5");
    answer.atMs = 9;
    m_sink->answer(answer);
    QCOMPARE(m_connection->sent.last().topic, latin("plant/write/press/a/set/answer"));
    QCOMPARE(
        m_connection->sent.last().payload,
        QByteArray(R"({"id":"7","line":"press","outcome":"taken","t":9,"tag":"a","v":"12.5"})"));
    QVERIFY(!m_connection->sent.last().isRetained);
    answer.reply.topic = latin("panel/4/answers");
    answer.reply.correlation = "\x01\x02";
    m_sink->answer(answer);
    QCOMPARE(m_connection->sent.last().topic, latin("panel/4/answers"));
    QCOMPARE(m_connection->sent.last().correlation, QByteArray("\x01\x02"));
}

void TestMqttCommands::answersNotOnItsOwnTopics()
{
    takeCommands();
    WriteAnswer answer;
    answer.line = latin("press");
    answer.tag = latin("a");
    for (const char *topic : {"plant/status", "plant/status/press", "plant/press/1/a",
                              "plant/write/press/a/set", "plant/#", "+/a"}) {
        answer.reply.topic = latin(topic);
        m_sink->answer(answer);
        QVERIFY(m_connection->sent.last().mayBeRefused);
        QCOMPARE(m_connection->sent.last().topic, latin("plant/write/press/a/set/answer"));
    }
}

void TestMqttCommands::refusesNonsense()
{
    takeCommands();
    MqttMessage message;
    message.topic = latin("plant/write/press/a/set");
    message.payload = QByteArray(1000000, '[');
    for (int i = 0; i < 3000; ++i) {
        Q_EMIT m_connection->received(message);
    }
    QCOMPARE(m_asked.size(), 3000);
    QCOMPARE(m_asked.first().fault, latin("the message has more than 4096 bytes"));
    QCOMPARE(m_asked.first().value, QString(200, QLatin1Char('[')));
    // A flood that nobody takes away is not kept.
    for (const WriteRequest &request : qAsConst(m_asked)) {
        WriteAnswer refused;
        refused.reply = request.reply;
        m_sink->answer(refused);
    }
    QVERIFY(m_connection->sent.first().payload.contains(R"("outcome":"refused")"));
    QCOMPARE(m_connection->sent.size(), 1000);
}

QTEST_APPLESS_MAIN(TestMqttCommands)
#include "test_mqtt_commands.moc"
