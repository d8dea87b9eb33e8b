#include "gateway/mosquitto/mosquitto_connection.h"
#include "gateway/sparkplug/sparkplug_sink.h"
#include "sparkplug/wire/fake_broker.h"
#include "sparkplug/wire/judgement.h"

#include "host/time/system_clock.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;
using spcheck::FakeBroker;

/** Each CONNECT is a new one: with the will that belongs to it, and nothing kept of the last one.
 */
class TestConnects : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysEachTimeWhoItIs_data();
    void saysEachTimeWhoItIs();

private:
    static QString faultOf(const spcheck::Packet &packet, int bdSeq);
};

namespace {

constexpr int kConnects = 21;
constexpr int kBefore = 244; // so that it goes past 255

} // namespace

void TestConnects::saysEachTimeWhoItIs_data()
{
    QTest::addColumn<int>("protocol");
    QTest::newRow("3.1.1") << 4;
    QTest::newRow("5") << 5;
}

/** @return what of it is not as it should be */
QString TestConnects::faultOf(const spcheck::Packet &packet, int bdSeq)
{
    if (!packet.isClean || packet.sessionExpiry != 0) {
        return QLatin1String("the broker keeps a session");
    }
    if (packet.keepAliveS != 7 || packet.clientId != "gate-7" || packet.user != "gateway") {
        return QLatin1String("other settings");
    }
    if (!packet.will || packet.will->topic != "spBv1.0/plant/NDEATH/gate" ||
        packet.will->qos != 1 || packet.will->isRetained) {
        return QLatin1String("another will");
    }
    const auto will = spcheck::readMessage(packet.will->payload);
    if (!will || will->seq || will->metrics.size() != 1 || will->metrics.first().name != "bdSeq" ||
        will->metrics.first().datatype != 4U) {
        return QLatin1String("something else than a death");
    }
    const auto number = static_cast<int>(will->metrics.first().number);
    return number == bdSeq ? QString()
                           : QString::fromLatin1("bdSeq %1 instead of %2").arg(number).arg(bdSeq);
}

void TestConnects::saysEachTimeWhoItIs()
{
    QFETCH(int, protocol);
    using Version = MqttConnectionSettings::Version;
    FakeBroker broker;
    QVERIFY(broker.start());
    const QTemporaryDir directory;
    SparkplugSettings settings;
    settings.group = QLatin1String("plant");
    settings.node = QLatin1String("gate");
    settings.numberFile = directory.filePath(QLatin1String("number"));
    settings.connection.brokers = {{QLatin1String("127.0.0.1"), broker.port(), false}};
    settings.connection.version = protocol == 5 ? Version::V5 : Version::V311;
    settings.connection.keepAliveS = 7;
    settings.connection.clientId = QLatin1String("gate-7");
    settings.connection.user = QLatin1String("gateway");
    QFile file(settings.numberFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::number(kBefore));
    file.close();
    Clock &clock = SystemClock::instance();
    SparkplugSink sink(settings, std::make_unique<MosquittoConnection>(settings.connection, clock),
                       clock);
    int failures = 0;
    connect(&sink, &Sink::failed, this, [&failures] { ++failures; });
    for (int i = 0; i < kConnects; ++i) {
        broker.manner = i % 4 == 1   ? FakeBroker::Manner::Refuses
                        : i % 4 == 3 ? FakeBroker::Manner::HangsUp
                                     : FakeBroker::Manner::Welcomes;
        sink.begin(QLatin1String("ledger"));
        if (broker.manner == FakeBroker::Manner::Welcomes) {
            QTRY_COMPARE(broker.count("NBIRTH"), i / 2 + 1);
            broker.cut();
        }
        QTRY_COMPARE(failures, i + 1);
        QCOMPARE(int(broker.connects().size()), i + 1);
        QCOMPARE(broker.connects().last().protocol, protocol);
        QCOMPARE(faultOf(broker.connects().last(), (kBefore + 1 + i) % 256), QString());
    }
    QCOMPARE(spcheck::faultsOf(broker.stream(), {"plant", "gate", ""}), QStringList());
}

QTEST_GUILESS_MAIN(TestConnects)
#include "test_connects.moc"
