#include "gateway/support/mosquitto_broker.h"
#include "gateway/support/mosquitto_subscriber.h"
#include "gateway/support/mqtt_talker.h"
#include "host/support/virtual_clock.h"

using namespace cnet;
using namespace cnet::gateway;

/** What goes to a real broker and comes from it, and what is said of one that does not work. */
class TestMosquittoConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void publishes_data() { addRows(kVersions); }
    void publishes();
    void receives_data() { addRows(kVersions); }
    void receives();
    void confirmsMany_data() { addRows(kVersions); }
    void confirmsMany();
    void carriesProperties();
    void leavesItsWill_data() { addRows(kVersions); }
    void leavesItsWill();
    void leavesNoWillBehindAGoodbye();
    void findsAKilledBrokerAgain();
    void noticesAPausedBroker();
    void saysThatNobodyListens();
    void waitsForNoSilentBroker();
    void looksNamesUp();
    void triesAllAddressesOfAName();
    void usesTheBrokerItIsTold();
    void saysWhoTookItsPlace();
    void refusesWhatTheBrokerRefuses();

private:
    QTemporaryDir m_folder;
};

void TestMosquittoConnection::publishes()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    MosquittoSubscriber subscriber;
    QVERIFY(subscriber.start(broker.port()));
    const auto settings = settingsFor(broker, currentRow(kVersions).given);
    Talker talker(settings);
    QVERIFY2(talker.open(), qPrintable(talker.reasons.join(latin("\n"))));
    QVERIFY(talker.publish(messageOf("plant/a", "1")));
    MqttMessage quick = messageOf("plant/b", "2");
    quick.qos = 0;
    QVERIFY(talker.publish(quick));
    QVERIFY(subscriber.waitFor([&] { return subscriber.seen().size() == 2; }));
    QCOMPARE(subscriber.newest(latin("plant/a")).payload, QByteArray("1"));
    QCOMPARE(subscriber.newest(latin("plant/b")).payload, QByteArray("2"));
    talker.connection.close();
    QCOMPARE(talker.connection.publish(messageOf("plant/a", "3")), 0);
    QCOMPARE(talker.reasons, QStringList());
}

void TestMosquittoConnection::receives()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    const auto settings = settingsFor(broker, currentRow(kVersions).given);
    Talker other(settings);
    Talker talker(settings);
    QVERIFY(other.open() && talker.open());
    MqttMessage kept = messageOf("set/kept", "old");
    kept.isRetained = true;
    QVERIFY(other.publish(kept));
    talker.connection.subscribe({latin("set/+"), latin("more/#")}, 1);
    QVERIFY(QTest::qWaitFor([&] { return talker.received.size() == 1; }, 10000));
    QVERIFY(talker.received.at(0).isRetained);
    QVERIFY(other.publish(messageOf("more/a/b", QByteArray(1000000, 'x'))));
    QVERIFY(QTest::qWaitFor([&] { return talker.received.size() == 2; }, 10000));
    QCOMPARE(talker.received.at(1).topic, latin("more/a/b"));
    QCOMPARE(int(talker.received.at(1).payload.size()), 1000000);
    QVERIFY(!talker.received.at(1).isRetained);
}

void TestMosquittoConnection::confirmsMany()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    const auto settings = settingsFor(broker, currentRow(kVersions).given);
    Talker talker(settings);
    QVERIFY(talker.open());
    QVector<int> tokens;
    // More than the socket takes at once, and more than a broker takes unconfirmed.
    for (int i = 0; i < 300; ++i) {
        tokens.append(talker.connection.publish(messageOf("plant/a", QByteArray(10000, 'x'))));
    }
    QVERIFY(QTest::qWaitFor([&] { return talker.tokens.size() == tokens.size(); }, 20000));
    QCOMPARE(talker.tokens, tokens);
}

void TestMosquittoConnection::carriesProperties()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    const auto settings = settingsFor(broker, MqttConnectionSettings::Version::V5);
    Talker other(settings);
    Talker talker(settings);
    QVERIFY(other.open() && talker.open());
    talker.connection.subscribe({latin("#")}, 1);
    MqttMessage message = messageOf("set/a", "1");
    message.contentType = latin("application/json");
    message.responseTopic = latin("answers/4");
    message.correlation = QByteArray("\0\1\xff", 3);
    // Its own messages it does not hear.
    QVERIFY(talker.publish(messageOf("own", "1")));
    QVERIFY(other.publish(message));
    QVERIFY(QTest::qWaitFor([&] { return !talker.received.isEmpty(); }, 10000));
    QCOMPARE(talker.received.first().topic, message.topic);
    QCOMPARE(talker.received.first().contentType, message.contentType);
    QCOMPARE(talker.received.first().responseTopic, message.responseTopic);
    QCOMPARE(talker.received.first().correlation, message.correlation);
}

void TestMosquittoConnection::leavesItsWill()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    MosquittoSubscriber subscriber;
    QVERIFY(subscriber.start(broker.port()));
    const auto settings = settingsFor(broker, currentRow(kVersions).given);
    MqttMessage will = messageOf("plant/status", "offline");
    will.isRetained = true;
    will.contentType = latin("text/plain");
    {
        Talker talker(settings);
        QVERIFY(talker.open(0, will));
        QVERIFY(talker.publish(messageOf("plant/status", "online")));
    }
    QVERIFY(subscriber.waitFor([&] { return subscriber.seen().size() == 2; }));
    QCOMPARE(subscriber.seen().last().payload, QByteArray("offline"));
    MosquittoSubscriber later;
    QVERIFY(later.start(broker.port()));
    QVERIFY(later.waitFor([&] { return !later.seen().isEmpty(); }));
    QVERIFY(later.seen().first().isRetained);
}

void TestMosquittoConnection::leavesNoWillBehindAGoodbye()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    MosquittoSubscriber subscriber;
    QVERIFY(subscriber.start(broker.port(), latin("plant/#")));
    Talker talker(settingsFor(broker));
    QVERIFY(talker.open(0, messageOf("plant/status", "offline")));
    // What the broker sends meanwhile is read, until it ends the connection as well.
    QSignalSpy closed(&talker.connection, &MqttConnection::closed);
    talker.connection.subscribe({latin("plant/#")}, 1);
    QVERIFY(talker.connection.publish(messageOf("else/a", "1")) > 0);
    talker.connection.close();
    QVERIFY(closed.wait(10000));
    QVERIFY(talker.open());
    QVERIFY(talker.publish(messageOf("plant/a", "1")));
    QVERIFY(subscriber.waitFor([&] { return !subscriber.seen().isEmpty(); }));
    QCOMPARE(subscriber.seen().first().topic, latin("plant/a"));
}

void TestMosquittoConnection::findsAKilledBrokerAgain()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    Talker talker(settingsFor(broker));
    QVERIFY(talker.open());
    QVERIFY(talker.publish(messageOf("plant/a", "1")));
    const int old = talker.tokens.first();
    broker.kill();
    QVERIFY(QTest::qWaitFor([&] { return !talker.reasons.isEmpty(); }, 10000));
    QVERIFY2(talker.reasons.first().endsWith(latin(": the connection was lost")),
             qPrintable(talker.reasons.first()));
    talker.reasons.clear();
    QVERIFY(!talker.open());
    QVERIFY(broker.restart());
    talker.reasons.clear();
    QVERIFY(talker.open());
    QVERIFY(talker.publish(messageOf("plant/a", "2")));
    QVERIFY(talker.tokens.last() != old);
}

void TestMosquittoConnection::noticesAPausedBroker()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    MqttConnectionSettings settings = settingsFor(broker);
    settings.keepAliveS = 5;
    Talker talker(settings);
    QVERIFY(talker.open());
    broker.pause();
    const int token = talker.connection.publish(messageOf("plant/a", "1"));
    QVERIFY(token > 0);
    QTest::qWait(100);
    QVERIFY(talker.tokens.isEmpty() && talker.reasons.isEmpty());
    QVERIFY(QTest::qWaitFor([&] { return !talker.reasons.isEmpty(); }, 15000));
    QVERIFY2(talker.reasons.first().endsWith(latin(": it does not answer any more")),
             qPrintable(talker.reasons.first()));
}

void TestMosquittoConnection::saysThatNobodyListens()
{
    MqttConnectionSettings settings;
    const quint16 port = freePort();
    settings.brokers = {{latin("127.0.0.1"), port, false}};
    Talker talker(settings);
    QVERIFY(!talker.open());
    QCOMPARE(talker.reasons,
             QStringList(latin("broker 127.0.0.1:%1: Connection refused").arg(port)));
}

void TestMosquittoConnection::waitsForNoSilentBroker()
{
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    MqttConnectionSettings settings;
    settings.brokers = {{latin("127.0.0.1"), silent.serverPort(), false}};
    VirtualClock clock;
    Talker talker(settings, clock);
    talker.connection.open(0, {});
    QVERIFY(QTest::qWaitFor([&] { return silent.hasPendingConnections(); }, 10000));
    QTcpSocket *const socket = silent.nextPendingConnection();
    QVERIFY(QTest::qWaitFor([&] { return socket->bytesAvailable() > 0; }, 10000));
    clock.runFor(9900);
    QCOMPARE(talker.reasons, QStringList());
    clock.runFor(200);
    QCOMPARE(talker.reasons.size(), 1);
    QVERIFY2(talker.reasons.first().endsWith(latin(": it takes connections, and does not answer")),
             qPrintable(talker.reasons.first()));
}

void TestMosquittoConnection::looksNamesUp()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    MqttConnectionSettings settings = settingsFor(broker);
    settings.brokers.first().host = latin("name.invalid");
    QVERIFY(!Talker(settings).complaint().isEmpty());
    QCOMPARE(Talker(settings).complaint(), latin("nobody knows a computer of this name"));
}

// localhost is ::1 as well, where this broker does not listen.
void TestMosquittoConnection::triesAllAddressesOfAName()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    MqttConnectionSettings settings = settingsFor(broker);
    settings.brokers.first().host = latin("localhost");
    Talker talker(settings);
    QVERIFY2(talker.open(), qPrintable(talker.reasons.join(latin("\n"))));
}

void TestMosquittoConnection::usesTheBrokerItIsTold()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    MqttConnectionSettings settings = settingsFor(broker);
    settings.brokers.prepend({latin("127.0.0.1"), freePort(), false});
    Talker talker(settings);
    QVERIFY(!talker.open(0));
    talker.reasons.clear();
    QVERIFY(talker.open(1));
    QVERIFY(talker.open(3));
    QVERIFY(talker.publish(messageOf("a", "1")));
}

// Not each broker says so.
void TestMosquittoConnection::saysWhoTookItsPlace()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    MqttConnectionSettings settings;
    settings.brokers = {{latin("127.0.0.1"), server.serverPort(), false}};
    settings.version = MqttConnectionSettings::Version::V5;
    Talker talker(settings);
    talker.connection.open(0, {});
    QVERIFY(QTest::qWaitFor([&] { return server.hasPendingConnections(); }, 10000));
    QTcpSocket *const socket = server.nextPendingConnection();
    QVERIFY(QTest::qWaitFor([&] { return socket->bytesAvailable() > 0; }, 10000));
    // It greets, and ends the connection with the reason.
    socket->write(QByteArray::fromHex("2003000000e0028e00"));
    QVERIFY(QTest::qWaitFor([&] { return !talker.reasons.isEmpty(); }, 10000));
    QCOMPARE(talker.connects, 1);
    QVERIFY2(
        talker.reasons.first().endsWith(latin(": another client came with the same client_id")),
        qPrintable(talker.reasons.first()));
}

// With 3.1.1 a broker confirms what it throws away.
void TestMosquittoConnection::refusesWhatTheBrokerRefuses()
{
    MosquittoBroker broker;
    QFile rules(QDir(m_folder.path()).filePath(latin("rules")));
    QVERIFY(rules.open(QIODevice::WriteOnly));
    rules.write("topic readwrite plant/#\n");
    rules.close();
    QVERIFY(broker.start("allow_anonymous true\nacl_file " + QFile::encodeName(rules.fileName()) +
                         '\n'));
    const auto settings = settingsFor(broker, MqttConnectionSettings::Version::V5);
    Talker talker(settings);
    QVERIFY(talker.open());
    QVERIFY(talker.publish(messageOf("plant/a", "1")));
    MqttMessage answer = messageOf("else/answer", "1");
    answer.mayBeRefused = true;
    QVERIFY(talker.publish(answer));
    QCOMPARE(talker.reasons, QStringList());
    QVERIFY(talker.connection.publish(messageOf("else/a", "1")) > 0);
    QVERIFY(QTest::qWaitFor([&] { return !talker.reasons.isEmpty(); }, 10000));
    QCOMPARE(talker.tokens.size(), 2);
    QVERIFY2(talker.reasons.first().contains(latin("it refused a message: Not authorized")),
             qPrintable(talker.reasons.first()));
}

QTEST_GUILESS_MAIN(TestMosquittoConnection)
#include "test_mosquitto_connection.moc"
