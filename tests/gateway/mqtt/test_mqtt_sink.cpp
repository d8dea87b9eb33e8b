#include "gateway/support/mqtt_sink_fixture.h"

using namespace cnet;
using namespace cnet::gateway;

/** What comes is published, and confirmed when the broker has it. */
class TestMqttSink : public MqttSinkFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void publishesInOrder();
    void isSafeWhenAllIsConfirmed();
    void confirmsNothingOutOfOrder();
    void keepsToTheMessagesInFlight();
    void passesOverAnEmptyBatch();
    void sendsAgainAfterALoss();
    void forgetsTokensOfALostConnection();
    void failsWhenNothingIsConfirmed();
    void failsWhenAMessageCannotBeSent();
    void triesTheBrokersInOrder();
    void triesAnotherBrokerThanTheOneItLost();
};

void TestMqttSink::publishesInOrder()
{
    connectSink();
    QCOMPARE(m_ready, 1);
    m_sink->take({batchOf(1, {1, 2}), batchOf(2, {3})});
    QCOMPARE(m_connection->payloads("plant/press/1/a"),
             QStringList({latin(R"({"v":1,"q":"good","t":1000})"),
                          latin(R"({"v":2,"q":"good","t":1000})"),
                          latin(R"({"v":3,"q":"good","t":1000})")}));
    QCOMPARE(m_connection->sent.first().qos, 1);
    QCOMPARE(m_connection->sent.first().contentType, latin("application/json"));
}

void TestMqttSink::isSafeWhenAllIsConfirmed()
{
    connectSink();
    m_sink->take({batchOf(1, {1, 2}), batchOf(2, {3})});
    QCOMPARE(m_safe, QVector<qint64>());
    Q_EMIT m_connection->published(m_connection->tokens.at(0));
    QCOMPARE(m_safe, QVector<qint64>());
    Q_EMIT m_connection->published(m_connection->tokens.at(1));
    QCOMPARE(m_safe, QVector<qint64>({1}));
    Q_EMIT m_connection->published(m_connection->tokens.at(2));
    QCOMPARE(m_safe, QVector<qint64>({1, 2}));
}

void TestMqttSink::confirmsNothingOutOfOrder()
{
    connectSink();
    m_sink->take({batchOf(1, {1}), batchOf(2, {2})});
    Q_EMIT m_connection->published(m_connection->tokens.at(1));
    QCOMPARE(m_safe, QVector<qint64>());
    Q_EMIT m_connection->published(m_connection->tokens.at(0));
    QCOMPARE(m_safe, QVector<qint64>({2}));
}

void TestMqttSink::keepsToTheMessagesInFlight()
{
    m_settings.inFlight = 2;
    make();
    connectSink();
    m_sink->take({batchOf(1, {1, 2, 3}), batchOf(2, {4})});
    QCOMPARE(m_connection->sent.size(), 2);
    Q_EMIT m_connection->published(m_connection->tokens.at(0));
    QCOMPARE(m_connection->sent.size(), 3);
    QCOMPARE(m_safe, QVector<qint64>());
    m_connection->tokens.removeFirst();
    m_connection->confirmAll();
    QCOMPARE(m_connection->sent.size(), 4);
    QCOMPARE(m_safe, QVector<qint64>({1, 2}));
}

void TestMqttSink::passesOverAnEmptyBatch()
{
    connectSink();
    m_sink->take({batchOf(1, {}), batchOf(2, {1}), batchOf(3, {})});
    QCOMPARE(m_safe, QVector<qint64>({1}));
    m_connection->confirmAll();
    QCOMPARE(m_safe, QVector<qint64>({1, 3}));
}

void TestMqttSink::sendsAgainAfterALoss()
{
    connectSink();
    m_sink->take({batchOf(1, {1, 2})});
    Q_EMIT m_connection->lost(latin("broker one:1883: the connection was lost"));
    QCOMPARE(m_failures, QStringList(latin("broker one:1883: the connection was lost")));
    QCOMPARE(m_safe, QVector<qint64>());
    // Not even what comes meanwhile is sent: nobody listens.
    m_sink->tell(statusOf("press", {}, ""));
    m_connection->sent.clear();
    m_connection->tokens.clear();
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->connected();
    QCOMPARE(m_ready, 2);
    m_sink->take({batchOf(1, {1, 2})});
    QCOMPARE(m_connection->payloads("plant/press/1/a").size(), 2);
    m_connection->confirmAll();
    QCOMPARE(m_safe, QVector<qint64>({1}));
}

void TestMqttSink::forgetsTokensOfALostConnection()
{
    connectSink();
    m_sink->take({batchOf(1, {1})});
    const int old = m_connection->tokens.first();
    Q_EMIT m_connection->lost(latin("lost"));
    connectSink();
    m_sink->take({batchOf(1, {1})});
    Q_EMIT m_connection->published(old);
    QCOMPARE(m_safe, QVector<qint64>());
    m_connection->confirmAll();
    QCOMPARE(m_safe, QVector<qint64>({1}));
}

void TestMqttSink::failsWhenNothingIsConfirmed()
{
    connectSink();
    m_clock.runFor(3600000); // silence is fine as long as nothing is in flight
    m_sink->take({batchOf(1, {1, 2})});
    m_clock.runFor(8000);
    Q_EMIT m_connection->published(m_connection->tokens.at(0));
    m_clock.runFor(8000);
    QCOMPARE(m_failures, QStringList());
    m_clock.runFor(2000);
    QCOMPARE(m_failures, QStringList(latin("the broker has confirmed nothing for 9 seconds")));
    QCOMPARE(m_connection->abandoned, 1); // its will is true
    QCOMPARE(m_connection->closes, 0);
}

void TestMqttSink::failsWhenAMessageCannotBeSent()
{
    connectSink();
    m_connection->takesMessages = false;
    m_sink->take({batchOf(1, {1})});
    QCOMPARE(m_failures, QStringList(latin("a message of 27 bytes cannot be sent")));
    QCOMPARE(m_safe, QVector<qint64>());
}

void TestMqttSink::triesTheBrokersInOrder()
{
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->lost(latin("broker one:1883: Connection refused"));
    QCOMPARE(m_connection->opened, QVector<int>({0, 1}));
    QCOMPARE(m_failures, QStringList());
    Q_EMIT m_connection->lost(latin("broker two:1883: no answer"));
    QCOMPARE(m_failures,
             QStringList(latin("broker one:1883: Connection refused; broker two:1883: no answer")));
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->lost(latin("broker one:1883: Connection refused"));
    Q_EMIT m_connection->connected();
    QCOMPARE(m_ready, 1);
    QCOMPARE(m_failures.size(), 1);
    // When the second one is lost, the first one is tried first again.
    Q_EMIT m_connection->lost(latin("broker two:1883: the connection was lost"));
    m_sink->begin(latin("ledger"));
    QCOMPARE(m_connection->opened, QVector<int>({0, 1, 0, 1, 0}));
}

// A broker that hangs takes connections: to wait for its welcome first costs seconds.
void TestMqttSink::triesAnotherBrokerThanTheOneItLost()
{
    connectSink();
    m_sink->take({batchOf(1, {1})});
    m_clock.runFor(10000);
    QCOMPARE(m_failures.size(), 1);
    m_sink->begin(latin("ledger"));
    Q_EMIT m_connection->lost(latin("broker two:1883: Connection refused"));
    Q_EMIT m_connection->lost(latin("broker one:1883: it takes connections, and does not answer"));
    QCOMPARE(m_failures.size(), 2);
    m_sink->begin(latin("ledger"));
    QCOMPARE(m_connection->opened, QVector<int>({0, 1, 0, 0}));
}

QTEST_APPLESS_MAIN(TestMqttSink)
#include "test_mqtt_sink.moc"
