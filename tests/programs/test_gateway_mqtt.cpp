#include "gateway.h"

#include "gateway/support/mosquitto_broker.h"
#include "gateway/support/mosquitto_subscriber.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <memory>

using namespace cnet::gateway;

namespace {

const QString kTopic = QLatin1String("plant/press/1/press.position");

QList<QByteArray> payloads(MosquittoSubscriber &subscriber)
{
    QList<QByteArray> all;
    for (const MosquittoSubscriber::Seen &message : subscriber.seen()) {
        all.append(message.payload);
    }
    return all;
}

QList<qint64> timesOf(const QList<QByteArray> &payloads)
{
    QList<qint64> times;
    for (const QByteArray &payload : payloads) {
        const QJsonObject object = QJsonDocument::fromJson(payload).object();
        times.append(qint64(object.value(QLatin1String("t")).toDouble()));
    }
    return times;
}

} // namespace

/** cnet-gateway with a broker that comes and goes. */
class TestGatewayMqtt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhatIsWrong();
    void publishesWhatChanges();
    void bringsAllWhenTheBrokerComesBack();

private:
    /** Waits until a subscriber has all that the broker has taken: it would die with the broker. */
    static bool settle(MosquittoSubscriber &subscriber, quint16 port);
    static bool configure(const GatewayProgram &gateway, quint16 port)
    {
        return gateway.store("press.csv", "name,register,address\npress.position,D_W,111\n") &&
               gateway.store("gateway.toml",
                             "[line.press]\nlink = \"simulated\"\ntags = \"press.csv\"\n"
                             "[batch]\nage = \"100ms\"\n"
                             "[sink.history]\n"
                             "[sink.centre]\nkind = \"mqtt\"\nsite = \"plant\"\n"
                             "brokers = \"tcp:127.0.0.1:" +
                                 QByteArray::number(port) + "\"\n");
    }
};

void TestGatewayMqtt::saysWhatIsWrong()
{
    GatewayProgram gateway;
    QVERIFY(configure(gateway, 1));
    QVERIFY(gateway.store("wrong.toml", "[line.press]\nlink = \"simulated\"\ntags = \"press.csv\"\n"
                                        "[sink.centre]\nkind = \"mqtt\"\nbroker = \"x\"\n"));
    QCOMPARE(gateway.run({"check", QFile::encodeName(gateway.path("wrong.toml"))}), 2);
    QVERIFY2(gateway.errors.contains("there is no brokers; for example"),
             gateway.errors.constData());
    QVERIFY2(gateway.errors.contains("did you mean brokers?"), gateway.errors.constData());
}

void TestGatewayMqtt::publishesWhatChanges()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    MosquittoSubscriber subscriber;
    QVERIFY(subscriber.start(broker.port()));
    GatewayProgram gateway;
    QVERIFY(configure(gateway, broker.port()));
    Program program;
    QVERIFY(gateway.start(program, {"run", QFile::encodeName(gateway.path("gateway.toml"))}));
    const QString status = QLatin1String("plant/status");
    QVERIFY2(subscriber.waitFor([&] { return !subscriber.newest(kTopic).payload.isEmpty(); }),
             program.errors().constData());
    const QJsonObject value = QJsonDocument::fromJson(subscriber.newest(kTopic).payload).object();
    QCOMPARE(value.value(QLatin1String("q")).toString(), QLatin1String("good"));
    QVERIFY(value.value(QLatin1String("v")).isDouble());
    QVERIFY(subscriber.newest(status).payload.startsWith(R"({"s":"online")"));
    // Killed it cannot say so: the broker does.
    program.signal(SIGKILL);
    QVERIFY(subscriber.waitFor(
        [&] { return subscriber.newest(status).payload == R"({"s":"offline"})"; }));
    Program again;
    QVERIFY(gateway.start(again, {"run", QFile::encodeName(gateway.path("gateway.toml"))}));
    QVERIFY(subscriber.waitFor(
        [&] { return subscriber.newest(status).payload.startsWith(R"({"s":"online")"); }));
    again.signal(SIGTERM);
    QCOMPARE(again.exitCode(), 0);
    QVERIFY(subscriber.waitFor(
        [&] { return subscriber.newest(status).payload == R"({"s":"offline"})"; }));
}

bool TestGatewayMqtt::settle(MosquittoSubscriber &subscriber, quint16 port)
{
    const int messages = 5;
    const int code =
        QProcess::execute(QLatin1String("mosquitto_pub"),
                          {QLatin1String("-h"), QLatin1String("127.0.0.1"), QLatin1String("-p"),
                           QString::number(port), QLatin1String("-t"), kTopic, QLatin1String("-m"),
                           QLatin1String("last"), QLatin1String("-q"), QLatin1String("1"),
                           QLatin1String("--repeat"), QString::number(messages)});
    return code == 0 &&
           subscriber.waitFor([&] { return payloads(subscriber).count("last") == messages; });
}

// The gateway stands still while the broker is killed and comes back with a subscriber, so that
// nothing of what it sends goes to nobody.
void TestGatewayMqtt::bringsAllWhenTheBrokerComesBack()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    GatewayProgram gateway;
    QVERIFY(configure(gateway, broker.port()));
    auto subscriber = std::make_unique<MosquittoSubscriber>();
    QVERIFY(subscriber->start(broker.port(), kTopic));
    Program program;
    QVERIFY(gateway.start(program, {"run", QFile::encodeName(gateway.path("gateway.toml"))}));
    QList<QByteArray> seen;
    for (int i = 0; i < 3; ++i) {
        QVERIFY2(subscriber->waitFor([&] { return subscriber->seen().size() > 5; }),
                 program.errors().constData());
        program.signal(SIGSTOP);
        QVERIFY(settle(*subscriber, broker.port()));
        broker.kill();
        seen += payloads(*subscriber);
        QVERIFY(broker.restart());
        subscriber = std::make_unique<MosquittoSubscriber>();
        QVERIFY(subscriber->start(broker.port(), kTopic));
        program.signal(SIGCONT);
    }
    QVERIFY(subscriber->waitFor([&] { return subscriber->seen().size() > 5; }));
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
    QVERIFY2(program.errors().contains("sink centre: broker 127.0.0.1:"),
             program.errors().constData());
    const QList<QJsonObject> rows = gateway.history("press.position");
    QVERIFY(rows.size() > 20);
    const auto missing = [&] {
        const QList<qint64> times = timesOf(seen + payloads(*subscriber));
        return std::count_if(rows.cbegin(), rows.cend(), [&times](const QJsonObject &row) {
            const QString time = row.value(QLatin1String("time")).toString();
            return !times.contains(
                QDateTime::fromString(time, Qt::ISODateWithMs).toMSecsSinceEpoch());
        });
    };
    // What live values had overtaken comes with the next start.
    const qint64 begin = QDateTime::currentMSecsSinceEpoch();
    Program again;
    QVERIFY(gateway.start(again, {"run", QFile::encodeName(gateway.path("gateway.toml"))}));
    const auto newest = [&] { return timesOf(payloads(*subscriber)).last(); };
    QVERIFY2(subscriber->waitFor([&] { return newest() > begin && missing() == 0; }),
             qPrintable(QString::fromLatin1("missing: %1").arg(missing())));
    again.signal(SIGTERM);
    QVERIFY2(again.exitCode() == 0, again.errors().constData());
}

QTEST_GUILESS_MAIN(TestGatewayMqtt)
#include "test_gateway_mqtt.moc"
