#include "written_plant.h"

#include "gateway/support/mosquitto_subscriber.h"

using namespace cnet::gateway;

/** What is asked for at a broker comes to the PLC or is refused in words, and is in the log. */
class TestGatewayWrites : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_plant = std::make_unique<WrittenPlant>(); }
    void takesWhatIsAllowed();
    void answersWhoeverAsks();
    void refusesInWords();
    void limitsHowOften();
    void knowsNotWhatASilentPlcDid();
    void refusesRetainedCommands();
    void refusesWhileTheLineIsDown();
    void writesDownBeforeItWrites();
    void survivesNonsense();

private:
    std::unique_ptr<WrittenPlant> m_plant;
};

namespace {

bool isWrite(const QByteArray &request)
{
    return request.contains("wS");
}

/** Payloads that are no request, or no sensible one. */
QList<QByteArray> nonsense()
{
    return {"",
            " ",
            "{",
            "[]",
            "null",
            "{}",
            "{\"v\":}",
            "{\"id\":\"a\"}",
            "{\"id\":{},\"v\":{}}",
            "{\"id\":[1],\"v\":[1]}",
            "{\"v\":null}",
            "{\"v\":1e999}",
            "{\"v\":-1e999}",
            "{\"v\":NaN}",
            "{\"v\":\"\"}",
            "{\"v\":1,\"v\":",
            "{\"v\":\"\\ud800\"}",
            "{\"v\":" + QByteArray(4000, '['),
            "{\"v\":" + QByteArray(2000, '[') + QByteArray(2000, ']') + '}',
            QByteArray(2000, '{'),
            QByteArray(1024 * 1024, '['),
            "{\"id\":\"" + QByteArray(1024 * 1024, 'x') + "\",\"v\":1}",
            QByteArray(4097, '1'),
            "\xff\xfe\x31\x00",
            QByteArray("1\0", 2),
            QByteArray::fromHex("ff7b0022007600220000"),
            "{\"v\":\"\xc3\x28\"}",
            "\x1b[2J\x07",
            "%s%n",
            "'; DROP TABLE change; --",
            "99999999999999999999999999",
            "1 2"};
}

} // namespace

void TestGatewayWrites::takesWhatIsAllowed()
{
    QVERIFY2(m_plant->start(), m_plant->program->errors().constData());
    QCOMPARE(m_plant->ask("press", "speed", R"({"id":"7","v":12.5})"), latin("taken [12.5]"));
    QCOMPARE(m_plant->word(10), QByteArray("125"));
    QCOMPARE(m_plant->ask("press", "count", "4711"), latin("taken [4711]"));
    QCOMPARE(m_plant->ask("press", "zones[2]", R"({"id":8,"v":"99.5"})"), latin("taken [99.5]"));
    QCOMPARE(m_plant->word(22), QByteArray("995"));
    // Who watches sees what the PLC has now.
    QVERIFY(QTest::qWaitFor(
        [this] { return m_plant->newest("plant/press/1/count").startsWith("{\"v\":4711,"); },
        10000));
    // The same once more is not carried out once more.
    QVERIFY(m_plant->ask("press", "count", "1").startsWith(latin("taken")));
    const int before = m_plant->relay->count("wS");
    QCOMPARE(m_plant->ask("press", "speed", R"({"id":"7","v":12.5})"), latin("taken [12.5]"));
    QCOMPARE(m_plant->relay->count("wS"), before);
    QCOMPARE(m_plant->auditFault(), QString());
    const QJsonObject first = m_plant->audit().first();
    QCOMPARE(first.value(latin("id")).toString(), latin("7"));
    QCOMPARE(first.value(latin("tag")).toString(), latin("speed"));
    QCOMPARE(first.value(latin("value")).toString(), latin("12.5"));
    QCOMPARE(first.value(latin("sink")).toString(), latin("centre"));
}

// With MQTT 5 where it wants it, with what it gave along; else on the usual topic.
void TestGatewayWrites::answersWhoeverAsks()
{
    QVERIFY2(m_plant->start(), m_plant->program->errors().constData());
    MosquittoSubscriber usual;
    const QString topic = latin("plant/write/press/count/set/answer");
    QVERIFY(usual.start(m_plant->broker.port(), topic));
    const QStringList place{latin("-h"), latin("127.0.0.1"), latin("-p"),
                            QString::number(m_plant->broker.port())};
    const QStringList message{latin("-t"), latin("plant/write/press/count/set"), latin("-m"),
                              latin("{\"id\":\"a\",\"v\":5}")};
    QCOMPARE(QProcess::execute(latin("mosquitto_pub"), place + message), 0);
    const auto isTaken = [&] { return usual.newest(topic).payload.contains("taken"); };
    QVERIFY(QTest::qWaitFor(isTaken, 30000));
    Program asker;
    QVERIFY(asker.start(latin("mosquitto_rr"),
                        place + QStringList{latin("-t"), latin("plant/write/press/count/set"),
                                            latin("-m"), latin("6"), latin("-e"), latin("panel/4"),
                                            latin("-V"), latin("5"), latin("-W"), latin("20")}));
    QVERIFY(QTest::qWaitFor([&] { return !asker.isRunning() || !asker.lines().isEmpty(); }, 30000));
    QVERIFY2(asker.lines().value(0).contains("\"outcome\":\"taken\""),
             asker.lines().value(0).constData());
    const QByteArray asked = m_plant->send("press", "count", "7");
    QCOMPARE(m_plant->answer(asked), latin("taken [7]"));
    QCOMPARE(m_plant->answers(asked).size(), 1);
    // Those with another place for their answer are not on the usual one.
    QCOMPARE(usual.seen().size(), 1);
}

void TestGatewayWrites::refusesInWords()
{
    QVERIFY2(m_plant->start(WrittenPlant::often(), "silent,D_W,10,2,u16,,,,,\n"),
             m_plant->program->errors().constData());
    const struct
    {
        const char *line;
        const char *tag;
        const char *payload;
        const char *why;
    } rows[] = {
        {"press", "other", "1", "other may not be written from outside"},
        {"press", "counter", "1", "counter may not be written from outside"},
        {"press", "sealed", "1", "sealed can only be read"},
        {"press", "nothing", "1", "no tag"},
        {"press", "zones[9]", "1", "zones has 4 values"},
        {"oven", "speed", "1", "there is no line 'oven'"},
        {"press", "speed", "fast", "'fast'"},
        {"press", "speed", "120.1", "above"},
        {"press", "speed", "-1", "below"},
        {"press", "zones[1]", "100.5", "above"},
        {"press", "zones[1]", "0.3", "between the steps"},
        {"press", "count", "65536", "65536"},
        {"press", "silent", "1", "station 2 does not answer; nothing was sent"},
        {"small", "far", "1", "refused: 1132, no such device"},
        {"press", "count", "{", "the message is no JSON"},
        {"press", "count", "", "the message is empty"},
        {"press", "count", "{\"id\":\"x\"}", "there is no value"},
        {"press", "count", "\xff", "the message is no text in UTF-8"},
    };
    QVERIFY(QTest::qWaitFor(
        [this] { return m_plant->newest("plant/status/press/2").contains("no answer"); }, 30000));
    for (const auto &row : rows) {
        const QString said = m_plant->ask(row.line, row.tag, row.payload);
        QVERIFY2(said.startsWith(latin("refused: ")) && said.contains(latin(row.why)),
                 qPrintable(latin(row.tag) + latin(": ") + said));
    }
    const QString large = m_plant->ask("press", "count", QByteArray(4097, '1'));
    QCOMPARE(large, latin("refused: the message has more than 4096 bytes"));
    QCOMPARE(m_plant->ask("press", "count", R"({"id":"1","v":1})"), latin("taken [1]"));
    QCOMPARE(m_plant->ask("press", "count", R"({"id":"1","v":2})"),
             latin("refused: another request had the same id; each needs its own"));
    QCOMPARE(m_plant->relay->count("wS"), 1);
    QCOMPARE(m_plant->word(11), QByteArray("1"));
    QCOMPARE(m_plant->auditFault(), QString());
}

// They come at once: of a value four, of the line ten.
void TestGatewayWrites::limitsHowOften()
{
    QVERIFY2(m_plant->start("line_per_minute = 6\n"), m_plant->program->errors().constData());
    QList<QByteArray> sent;
    for (const char *value : {"1", "2", "3", "4", "5"}) {
        sent.append(m_plant->send("press", "count", value));
    }
    for (const char *zone : {"zones[0]", "zones[1]", "zones[2]", "zones[3]"}) {
        sent.append(m_plant->send("press", zone, "1"));
    }
    for (const char *value : {"1", "2", "3"}) {
        sent.append(m_plant->send("press", "speed", value));
    }
    QCOMPARE(m_plant->answer(sent.at(4)),
             latin("refused: too often: count may be written 12 times a minute"));
    QCOMPARE(m_plant->answer(sent.at(11)),
             latin("refused: too often: the line may be written 6 times a minute"));
    QCOMPARE(m_plant->answer(sent.at(3)), latin("taken [4]"));
    QCOMPARE(m_plant->answer(sent.at(10)), latin("taken [2.0]"));
    QCOMPARE(m_plant->word(11), QByteArray("4"));
    for (const QByteArray &own : qAsConst(sent)) {
        QVERIFY(!m_plant->answer(own).isEmpty());
    }
    QCOMPARE(m_plant->auditFault(), QString());
}

// It falls silent with a write: the line is busy with that for a second.
void TestGatewayWrites::knowsNotWhatASilentPlcDid()
{
    QVERIFY2(m_plant->start(WrittenPlant::often() + "wait = \"300ms\"\n"),
             m_plant->program->errors().constData());
    bool isSilent = false;
    m_plant->relay->onAnswer = [&isSilent](const QByteArray &request, const QByteArray &answer) {
        isSilent = isSilent || isWrite(request);
        return isSilent ? QByteArray() : answer;
    };
    const QByteArray first = m_plant->send("press", "count", "1");
    QVERIFY(QTest::qWaitFor([this] { return m_plant->relay->count("wS") > 0; }, 10000));
    const QByteArray second = m_plant->send("press", "speed", "1");
    const QByteArray third = m_plant->send("press", "speed", "2");
    QCOMPARE(m_plant->answer(second),
             latin("superseded: a later request for the same value took its place"));
    QCOMPARE(m_plant->answer(third), latin("refused: it could not be sent within 300ms"));
    QVERIFY2(m_plant->answer(first).startsWith(latin("no answer: ")),
             qPrintable(m_plant->answer(first)));
    m_plant->relay->onAnswer = nullptr;
    QVERIFY(QTest::qWaitFor(
        [this] { return m_plant->ask("press", "speed", "3") == latin("taken [3.0]"); }, 30000));
    QCOMPARE(m_plant->auditFault(), QString());
}

void TestGatewayWrites::refusesRetainedCommands()
{
    QVERIFY2(m_plant->start(), m_plant->program->errors().constData());
    m_plant->program->signal(SIGTERM);
    QCOMPARE(m_plant->program->exitCode(), 0);
    const QByteArray kept = m_plant->send("press", "count", R"({"id":"k","v":5})", true);
    QVERIFY2(m_plant->startGateway(), m_plant->program->errors().constData());
    QCOMPARE(m_plant->answer(kept),
             latin("refused: a retained command is not carried out: it was sent some time ago"));
    QCOMPARE(m_plant->relay->count("wS"), 0);
    // The same, sent now.
    QCOMPARE(m_plant->ask("press", "count", R"({"id":"k","v":5})"), latin("taken [5]"));
    QCOMPARE(m_plant->auditFault(), QString());
}

void TestGatewayWrites::refusesWhileTheLineIsDown()
{
    QVERIFY2(m_plant->start(), m_plant->program->errors().constData());
    m_plant->plc.signal(SIGSTOP);
    QVERIFY(QTest::qWaitFor(
        [this] { return m_plant->newest("plant/status/press/1").contains("no answer"); }, 30000));
    QCOMPARE(m_plant->ask("press", "count", "1"),
             latin("refused: station 1 does not answer; nothing was sent"));
    m_plant->plc.signal(SIGCONT);
    m_plant->small.signal(SIGKILL);
    QVERIFY(QTest::qWaitFor(
        [this] { return m_plant->newest("plant/status/small").contains("bad"); }, 30000));
    QCOMPARE(m_plant->ask("small", "near", "1"),
             latin("refused: the line is down; nothing was sent"));
    QVERIFY(QTest::qWaitFor(
        [this] { return m_plant->ask("press", "count", "2") == latin("taken [2]"); }, 30000));
    QCOMPARE(m_plant->auditFault(), QString());
}

void TestGatewayWrites::writesDownBeforeItWrites()
{
    QVERIFY2(m_plant->start(WrittenPlant::often() + "[audit]\npath = \"none/writes.jsonl\"\n"),
             m_plant->program->errors().constData());
    const QString said = m_plant->ask("press", "count", "1");
    QVERIFY2(said.startsWith(latin("refused: what cannot be written down is not carried out: ")),
             qPrintable(said));
    QCOMPARE(m_plant->relay->count("wS"), 0);
}

void TestGatewayWrites::survivesNonsense()
{
    QVERIFY2(m_plant->start(), m_plant->program->errors().constData());
    QList<QByteArray> sent;
    for (const QByteArray &payload : nonsense()) {
        sent.append(m_plant->send("press", "count", payload));
    }
    for (int i = 0; i < 3; ++i) {
        sent.append(m_plant->send("press", "speed", R"({"id":"again","v":[]})"));
    }
    const QByteArray one = m_plant->send("press", "speed", R"({"id":"again","v":1})");
    const QByteArray same = m_plant->send("press", "speed", R"({"id":"again","v":1})");
    sent.append(m_plant->send("press", "speed", R"({"id":"again","v":2})"));
    QVERIFY2(m_plant->ask("press", "count", "9") == latin("taken [9]"),
             m_plant->program->errors().constData());
    QCOMPARE(m_plant->answer(one), latin("taken [1.0]"));
    QCOMPARE(m_plant->answer(same), latin("taken [1.0]"));
    for (const QByteArray &own : qAsConst(sent)) {
        QVERIFY2(m_plant->answer(own).startsWith(latin("refused: ")), own.constData());
        QCOMPARE(m_plant->answers(own).size(), 1);
    }
    QCOMPARE(m_plant->relay->count("wS"), 2);
    QCOMPARE(m_plant->auditFault(), QString());
    for (const QJsonObject &line : m_plant->audit()) {
        QVERIFY(!line.isEmpty());
    }
    QVERIFY(QFile(m_plant->gateway.path("writes.jsonl")).size() < 100000);
    // It goes on.
    const QByteArray before = m_plant->newest("plant/press/1/counter");
    QVERIFY(
        QTest::qWaitFor([&] { return m_plant->newest("plant/press/1/counter") != before; }, 10000));
    m_plant->program->signal(SIGTERM);
    QCOMPARE(m_plant->program->exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestGatewayWrites)
#include "test_gateway_writes.moc"
