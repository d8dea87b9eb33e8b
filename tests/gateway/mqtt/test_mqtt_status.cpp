#include "gateway/support/mqtt_sink_fixture.h"

using namespace cnet;
using namespace cnet::gateway;

/** What is retained at the broker stays true: the gateway, its lines, and their values. */
class TestMqttStatus : public MqttSinkFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void retainsLiveValuesOnly();
    void hasOneWillAndBirth();
    void tellsTheNewestStatus();
    void tellsOfAsManyLinesAsThereAre();
    void saysGoodbye();
    void tellsOfALineThatIsGone();
    void tellsOfATagThatIsGone();
    void tellsTheBrokerThatHasIt();
    void tellsEachBrokerThatHasIt();
    void tellsThatAnotherSiteHasEnded();
    void goesOnWithoutAFile();
    void endsWhenAllIsConfirmed();
    void endsWithoutABroker();

private:
    void startAgainAtTheSecond();
};

void TestMqttStatus::retainsLiveValuesOnly()
{
    m_settings.isRetained = true;
    make();
    connectSink();
    SinkBatch old = batchOf(1, {1});
    old.age = SinkBatch::Age::Backlog;
    m_sink->take({old, batchOf(2, {2})});
    QCOMPARE(m_connection->payloads("plant/press/1/a"),
             QStringList({latin(R"({"v":1,"q":"good","t":1000,"old":true})"),
                          latin(R"({"v":2,"q":"good","t":1000})")}));
    QVERIFY(!m_connection->sent.at(0).isRetained);
    QVERIFY(m_connection->sent.at(1).isRetained);
}

void TestMqttStatus::hasOneWillAndBirth()
{
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->connected();
    QVERIFY(m_connection->will);
    QCOMPARE(m_connection->will->payload, QByteArray(R"({"s":"offline"})"));
    const MqttMessage birth = m_connection->sent.last();
    QCOMPARE(birth.topic, m_connection->will->topic);
    QVERIFY(birth.isRetained && m_connection->will->isRetained);
    QCOMPARE(birth.qos, m_connection->will->qos);
    QVERIFY2(birth.payload.startsWith(R"({"s":"online","t":17)"), birth.payload.constData());
}

void TestMqttStatus::tellsTheNewestStatus()
{
    m_sink->tell(statusOf("press", {}, "line down"));
    m_sink->tell(statusOf("press", 3, "no answer"));
    m_sink->tell(statusOf("press", {}, ""));
    QCOMPARE(m_connection->sent.size(), 0);
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->connected();
    QCOMPARE(m_connection->payloads("plant/status/press"),
             QStringList(latin(R"({"s":"good","t":5})")));
    QCOMPARE(m_connection->payloads("plant/status/press/3"),
             QStringList(latin(R"({"s":"bad","why":"no answer","t":5})")));
    // Whoever sees the gateway online finds the lines as they are.
    QCOMPARE(m_connection->sent.last().topic, latin("plant/status"));
    m_sink->tell(statusOf("press", 3, ""));
    QCOMPARE(m_connection->sent.last().payload, QByteArray(R"({"s":"good","t":5})"));
    for (const MqttMessage &message : qAsConst(m_connection->sent)) {
        QVERIFY(message.isRetained);
    }
}

void TestMqttStatus::tellsOfAsManyLinesAsThereAre()
{
    const int lines = 1500;
    for (int line = 0; line < lines; ++line) {
        m_sink->tell(statusOf(QByteArray::number(line).constData(), {}, ""));
    }
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->connected();
    QCOMPARE(m_connection->sent.size(), lines + 1);
    QCOMPARE(m_connection->sent.last().topic, latin("plant/status"));
}

void TestMqttStatus::saysGoodbye()
{
    struct Watcher : FakeBroker
    {
        explicit Watcher(QVector<MqttMessage> &seen)
            : m_seen(seen)
        {}
        void close() override { m_seen = sent; }
        QVector<MqttMessage> &m_seen;
    };
    QVector<MqttMessage> seen;
    auto connection = std::make_unique<Watcher>(seen);
    FakeBroker *watcher = connection.get();
    auto sink = std::make_unique<MqttSink>(m_settings, std::move(connection), m_clock);
    sink->begin(latin("ledger"));
    Q_EMIT watcher->connected();
    sink.reset();
    QCOMPARE(seen.last().payload, QByteArray(R"({"s":"offline"})"));
    QVERIFY(seen.last().isRetained);
}

namespace {

TopicNames named(const char *line, const char *station = "", const char *tag = "")
{
    return {latin(line), latin(station), latin(tag)};
}

/** As a gateway is ended by a kill: nothing more is said. */
void kill(FakeBroker &connection, std::unique_ptr<MqttSink> &sink)
{
    connection.takesMessages = false;
    sink.reset();
}

} // namespace

// While it does not run, a line is taken out of the configuration.
void TestMqttStatus::tellsOfALineThatIsGone()
{
    m_sink->tell(statusOf("press", {}, ""));
    m_sink->tell(statusOf("press", 1, ""));
    m_sink->tell(statusOf("oven", {}, ""));
    m_sink->watch({named("press"), named("press", "1"), named("oven")});
    connectSink();
    kill(*m_connection, m_sink);
    make();
    m_sink->tell(statusOf("oven", {}, ""));
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->connected();
    QCOMPARE(m_connection->payloads("plant/status/press").size(), 0); // the lines are not known yet
    m_sink->watch({named("oven")});
    const QString gone =
        latin(R"({"s":"bad","why":"it is not in the configuration any more","t":%1})")
            .arg(m_clock.wallMs());
    QCOMPARE(m_connection->payloads("plant/status/press"), QStringList(gone));
    QCOMPARE(m_connection->payloads("plant/status/press/1"), QStringList(gone));
    QVERIFY(m_connection->sent.last().isRetained);
    QCOMPARE(m_connection->payloads("plant/status/oven").size(), 1);
    // What the broker has not confirmed is told again.
    kill(*m_connection, m_sink);
    make();
    m_sink->watch({named("oven")});
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->connected();
    QCOMPARE(m_connection->payloads("plant/status/press").size(), 1);
    // Before the gateway is told to be online.
    QCOMPARE(m_connection->sent.last().topic, latin("plant/status"));
    m_connection->confirmAll();
    kill(*m_connection, m_sink);
    make();
    m_sink->watch({named("oven")});
    connectSink();
    m_connection->sent.clear();
    make();
    m_sink->watch({named("oven")});
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->connected();
    QCOMPARE(m_connection->payloads("plant/status/press").size(), 0);
}

void TestMqttStatus::tellsOfATagThatIsGone()
{
    m_settings.isRetained = true;
    make();
    const QVector<TopicNames> all{named("press"), named("press", "1", "a"),
                                  named("press", "1", "b")};
    m_sink->watch(all);
    connectSink();
    m_sink->take({batchOf(1, {1})});
    m_connection->confirmAll();
    kill(*m_connection, m_sink);
    make();
    m_sink->watch({all.first(), all.last()});
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->connected();
    QCOMPARE(m_connection->payloads("plant/press/1/a"),
             QStringList(latin(R"({"v":null,"q":"stale","why":"not watched any more","t":%1})")
                             .arg(m_clock.wallMs())));
    // It comes back before that was confirmed.
    m_sink->watch(all);
    m_connection->confirmAll();
    kill(*m_connection, m_sink);
    make();
    m_sink->watch({all.first()});
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->connected();
    QCOMPARE(m_connection->payloads("plant/press/1/a").size(), 1);
}

// Killed, and started without anything to watch while the first broker is not there.
void TestMqttStatus::startAgainAtTheSecond()
{
    kill(*m_connection, m_sink);
    make();
    m_sink->watch({});
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->lost(latin("broker one: Connection refused"));
    Q_EMIT m_connection->connected();
}

// One that did not retain it has nothing to be told.
void TestMqttStatus::tellsTheBrokerThatHasIt()
{
    m_sink->tell(statusOf("press", {}, ""));
    m_sink->watch({named("press")});
    connectSink();
    startAgainAtTheSecond();
    QCOMPARE(m_connection->payloads("plant/status/press").size(), 0);
    Q_EMIT m_connection->lost(latin("broker two: lost"));
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->connected();
    QCOMPARE(m_connection->payloads("plant/status/press").size(), 1);
}

void TestMqttStatus::tellsEachBrokerThatHasIt()
{
    m_sink->tell(statusOf("press", {}, ""));
    m_sink->watch({named("press")});
    connectSink();
    Q_EMIT m_connection->lost(latin("broker one: lost"));
    connectSink(); // with the second one
    QCOMPARE(m_connection->opened, QVector<int>({0, 1}));
    startAgainAtTheSecond();
    QCOMPARE(m_connection->payloads("plant/status/press").size(), 1);
}

void TestMqttStatus::tellsThatAnotherSiteHasEnded()
{
    connectSink();
    kill(*m_connection, m_sink);
    QString error;
    m_settings.status = *TopicTemplate::parse(latin("works/status"), QString(), error);
    make();
    m_sink->watch({});
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->connected();
    QCOMPARE(m_connection->payloads("plant/status"), QStringList(latin(R"({"s":"offline"})")));
    QCOMPARE(m_connection->sent.last().topic, latin("works/status"));
}

void TestMqttStatus::goesOnWithoutAFile()
{
    m_settings.retainedFile = latin("/nonexistent/retained");
    make();
    m_sink->tell(statusOf("press", {}, ""));
    connectSink();
    QCOMPARE(m_ready, 1);
    Q_EMIT m_connection->lost(latin("lost"));
    connectSink();
    QCOMPARE(m_said.size(), 1);
    QVERIFY2(m_said.first().startsWith(latin("cannot keep in /nonexistent/retained what is ")),
             qPrintable(m_said.first()));
}

// The broker confirms, and then it says goodbye.
void TestMqttStatus::endsWhenAllIsConfirmed()
{
    connectSink();
    m_sink->take({batchOf(1, {1, 2})});
    m_sink->end();
    QCOMPARE(m_connection->payloads("plant/status"), QStringList(latin(R"({"s":"offline"})")));
    QCOMPARE(m_connection->closes, 0);
    while (m_connection->tokens.size() > 1) {
        Q_EMIT m_connection->published(m_connection->tokens.takeFirst());
        QCOMPARE(m_connection->closes, 0);
    }
    QCOMPARE(m_ended, 0);
    m_connection->confirmAll();
    QCOMPARE(m_connection->closes, 1);
    QCOMPARE(m_ended, 1);
    QCOMPARE(m_safe, QVector<qint64>({1}));
}

void TestMqttStatus::endsWithoutABroker()
{
    m_sink->end();
    QCOMPARE(m_ended, 1);
    make();
    connectSink();
    m_sink->take({batchOf(1, {1})});
    m_sink->end();
    Q_EMIT m_connection->lost(latin("lost"));
    QVERIFY(m_ended > 0);
    QCOMPARE(m_failures, QStringList());
}

QTEST_APPLESS_MAIN(TestMqttStatus)
#include "test_mqtt_status.moc"
