#include "gateway/mqtt/command_reader.h"

#include "support/rows.h"

using namespace cnet::gateway;

/** Whatever comes on a command topic is a request, or is refused in words. */
class TestCommandReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
    void refuses_data();
    void refuses();
    void keepsWhereTheAnswerGoes();
};

namespace {

Command commandOf(const QByteArray &payload)
{
    QString error;
    const auto topic = TopicTemplate::parse(QLatin1String("set/{line}/{tag}"), QString(), error);
    MqttMessage message;
    message.topic = QLatin1String("set/press/a");
    message.payload = payload;
    message.responseTopic = QLatin1String("answers");
    message.correlation = "7";
    return readCommand(*topic, message).value_or(Command());
}

struct Read
{
    const char *what;
    const char *payload;
    const char *id;
    const char *value;
};

const Read kRead[] = {
    {"plain text", " running\n", "", "running"},
    {"a plain number", "12.5", "", "12.5"},
    {"a number", R"({"id":"7","v":12.5})", "7", "12.5"},
    {"a fraction that no double holds", R"({"v":0.1})", "", "0.1"},
    {"a large whole number", R"({"v":9007199254740993})", "", "9007199254740993"},
    {"one beyond 64 bits as text", R"({"v":"18446744073709551615"})", "", "18446744073709551615"},
    {"a truth", R"({"id":7,"v":true})", "7", "true"},
    {"a text", R"({"v":"a\"b"})", "", "a\"b"},
    {"more than is needed", R"({"v":1,"who":{"name":"x"}})", "", "1"},
};

const Case<QByteArray, const char *> kRefused[] = {
    {"empty", "", "the message is empty"},
    {"blanks", "  ", "the message is empty"},
    {"no UTF-8", "\xff\xfe", "the message is no text in UTF-8"},
    {"no UTF-8 within JSON", "{\"v\":\"\xff\"}", "the message is no text in UTF-8"},
    {"a zero byte", QByteArray("1\0", 2), "the message is no text in UTF-8"},
    {"half of JSON", R"({"v":)", "the message is no JSON"},
    {"two values", R"({"v":{"a":1},"v":2})", "the message has a key twice"},
    {"no value", R"({"id":"7"})", "there is no value"},
    {"a value of another kind", R"({"v":[1]})", "there is no value"},
    {"nothing", R"({"v":null})", "there is no value"},
    {"very long", QByteArray(1000000, '1'), "the message has more than 4096 bytes"},
    {"very deep", "{\"v\":" + QByteArray(4000, '['), "the message is no JSON"},
};

} // namespace

void TestCommandReader::reads_data()
{
    addRows(kRead);
}

void TestCommandReader::reads()
{
    const auto &row = currentRow(kRead);
    const Command command = commandOf(row.payload);
    QCOMPARE(command.fault, QString());
    QCOMPARE(command.request.id, QLatin1String(row.id));
    QCOMPARE(command.request.value, QLatin1String(row.value));
}

void TestCommandReader::refuses_data()
{
    addRows(kRefused);
}

void TestCommandReader::refuses()
{
    const auto &row = currentRow(kRefused);
    const Command command = commandOf(row.given);
    QVERIFY2(command.fault.startsWith(QLatin1String(row.expected)), qPrintable(command.fault));
    QCOMPARE(command.request.tag, QLatin1String("a"));
}

void TestCommandReader::keepsWhereTheAnswerGoes()
{
    const Command refused = commandOf(R"({"id":"7"})");
    QCOMPARE(refused.request.id, QLatin1String("7"));
    QCOMPARE(refused.request.reply.topic, QLatin1String("answers"));
    QCOMPARE(refused.request.reply.correlation, QByteArray("7"));
}

QTEST_APPLESS_MAIN(TestCommandReader)
#include "test_command_reader.moc"
