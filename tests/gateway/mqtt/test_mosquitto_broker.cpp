#include "gateway/support/mosquitto_broker.h"
#include "gateway/support/mosquitto_subscriber.h"

#include <QtTest>

using namespace cnet::gateway;

/** What the other tests take for granted of the broker that they start. */
class TestMosquittoBroker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comesBackOnTheSamePort();
    void showsWhatIsPublished();
};

namespace {

bool publish(const MosquittoBroker &broker, const char *topic, const char *payload, bool isRetained)
{
    QStringList arguments{QLatin1String("-h"), QLatin1String("127.0.0.1"),
                          QLatin1String("-p"), QString::number(broker.port()),
                          QLatin1String("-t"), QLatin1String(topic),
                          QLatin1String("-m"), QLatin1String(payload),
                          QLatin1String("-q"), QLatin1String("1")};
    if (isRetained) {
        arguments.append(QLatin1String("-r"));
    }
    return QProcess::execute(QLatin1String("mosquitto_pub"), arguments) == 0;
}

} // namespace

void TestMosquittoBroker::comesBackOnTheSamePort()
{
    MosquittoBroker broker;
    QVERIFY2(broker.start(), broker.log().constData());
    const quint16 port = broker.port();
    QVERIFY(publish(broker, "a", "1", false));
    broker.kill();
    QVERIFY(!broker.isRunning());
    QVERIFY(!publish(broker, "a", "1", false));
    QVERIFY2(broker.restart(), broker.log().constData());
    QCOMPARE(broker.port(), port);
    QVERIFY(publish(broker, "a", "1", false));
}

void TestMosquittoBroker::showsWhatIsPublished()
{
    MosquittoBroker broker;
    QVERIFY2(broker.start(), broker.log().constData());
    QVERIFY(publish(broker, "kept", "old value", true));
    MosquittoSubscriber subscriber;
    QVERIFY(subscriber.start(broker.port()));
    QVERIFY(publish(broker, "a/b", "new value", true));
    QVERIFY(subscriber.waitFor([&] { return subscriber.seen().size() == 2; }));
    QCOMPARE(subscriber.newest(QLatin1String("kept")).payload, QByteArray("old value"));
    QVERIFY(subscriber.newest(QLatin1String("kept")).isRetained);
    QCOMPARE(subscriber.newest(QLatin1String("a/b")).payload, QByteArray("new value"));
    QVERIFY(!subscriber.newest(QLatin1String("a/b")).isRetained);
}

QTEST_GUILESS_MAIN(TestMosquittoBroker)
#include "test_mosquitto_broker.moc"
