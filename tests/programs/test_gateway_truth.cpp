#include "gateway.h"
#include "outages/cut_relay.h"

#include "gateway/support/mosquitto_broker.h"
#include "gateway/support/mosquitto_subscriber.h"

#include <QElapsedTimer>
#include <QtTest>

#include <csignal>

using namespace cnet::gateway;

/**
 * Whatever fails, who subscribes sees it: one poll later where it is the line, one keep-alive later
 * where it is the gateway or a broker.
 */
class TestGatewayTruth : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void theFlawIsSeen_data();
    void theFlawIsSeen();
    void aSilentBrokerIsLeft();

private:
    bool configure() const;
    bool isGood(MosquittoSubscriber &subscriber) const;

    std::unique_ptr<GatewayProgram> m_gateway;
    std::unique_ptr<Program> m_program;
    std::unique_ptr<PlcProgram> m_plc;
    std::unique_ptr<CutRelay> m_relay;
    std::unique_ptr<MosquittoBroker> m_broker;
    std::unique_ptr<MosquittoBroker> m_reserve;
};

namespace {

const QString kGateway = QLatin1String("plant/status");
const QString kLine = QLatin1String("plant/status/press");
const QString kStation = QLatin1String("plant/status/press/1");
const QString kValue = QLatin1String("plant/press/1/level");

// As the configuration has them: the interval and all attempts, then the batch.
const int kPollMs = 100 + 2 * 300 + 50;
const int kKeepAliveMs = 5000;

/** The newest of a topic, once it says something else than good. */
bool isBad(MosquittoSubscriber &subscriber, const QString &topic)
{
    const QByteArray payload = subscriber.newest(topic).payload;
    return payload.contains("\"s\":\"bad\"") || payload.contains("\"s\":\"offline\"") ||
           (payload.contains("\"q\":") && !payload.contains("\"q\":\"good\""));
}

/** Waits for it with the event loop running: a relay lives there. @return ms, -1: it came not */
qint64 waitForBad(MosquittoSubscriber &subscriber, const QStringList &topics)
{
    QElapsedTimer clock;
    clock.start();
    const auto areBad = [&] {
        return std::all_of(topics.begin(), topics.end(),
                           [&](const QString &topic) { return isBad(subscriber, topic); });
    };
    return QTest::qWaitFor(areBad, 60000) ? clock.elapsed() : -1;
}

} // namespace

void TestGatewayTruth::init()
{
    m_program.reset();
    m_gateway = std::make_unique<GatewayProgram>();
    m_broker = std::make_unique<MosquittoBroker>();
    m_reserve = std::make_unique<MosquittoBroker>();
    m_plc = std::make_unique<PlcProgram>();
    m_relay = std::make_unique<CutRelay>();
    QVERIFY(m_broker->start() && m_reserve->start());
    QVERIFY(m_plc->serve({QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")},
                         {QLatin1String("--set"), QLatin1String("D_W:7=1")}));
    QVERIFY(m_relay->start(m_plc->place().section(QLatin1Char(':'), 1).toUShort()));
    QVERIFY(configure());
    m_program = std::make_unique<Program>();
    QVERIFY(m_gateway->start(*m_program, {"run", QFile::encodeName(m_gateway->path("g.toml"))}));
}

bool TestGatewayTruth::configure() const
{
    const auto place = [](quint16 port) { return "tcp:127.0.0.1:" + QByteArray::number(port); };
    return m_gateway->store("press.csv", "name,register,address\nlevel,D_W,7\n") &&
           m_gateway->store("g.toml", "[line.press]\ntags = \"press.csv\"\ninterval = \"100ms\"\n"
                                      "timeout = \"300ms\"\nattempts = 2\nlink = \"" +
                                          place(m_relay->port()) +
                                          "\"\n[batch]\nage = \"50ms\"\n"
                                          "[sink.centre]\nkind = \"mqtt\"\nsite = \"plant\"\n"
                                          "keep_alive = \"5s\"\nbrokers = \"" +
                                          place(m_broker->port()) + ", " +
                                          place(m_reserve->port()) + "\"\n");
}

bool TestGatewayTruth::isGood(MosquittoSubscriber &subscriber) const
{
    return QTest::qWaitFor(
        [&] {
            return subscriber.newest(kGateway).payload.contains("online") &&
                   subscriber.newest(kLine).payload.contains("good") &&
                   subscriber.newest(kStation).payload.contains("good") &&
                   subscriber.newest(kValue).payload.contains("good");
        },
        30000);
}

void TestGatewayTruth::theFlawIsSeen_data()
{
    QTest::addColumn<QString>("flaw");
    QTest::addColumn<QStringList>("topics");
    QTest::addColumn<int>("limitMs");
    const auto row = [](const char *flaw, const QStringList &topics, int limitMs) {
        QTest::newRow(flaw) << QString::fromLatin1(flaw) << topics << limitMs;
    };
    // A second beyond the poll is for the machine: others compute on it.
    const int poll = kPollMs + 1000;
    row("the PLC is killed", {kLine, kStation, kValue}, poll);
    row("the PLC is silent", {kStation, kValue}, poll + kPollMs);
    row("the line is unplugged", {kLine, kStation, kValue}, poll);
    row("the line is cut behind the serial server", {kStation, kValue}, poll + kPollMs);
    row("the gateway is killed", {kGateway}, kPollMs + kKeepAliveMs);
}

void TestGatewayTruth::theFlawIsSeen()
{
    QFETCH(QString, flaw);
    QFETCH(QStringList, topics);
    QFETCH(int, limitMs);
    MosquittoSubscriber subscriber;
    QVERIFY(subscriber.start(m_broker->port()));
    QVERIFY2(isGood(subscriber), m_program->errors().constData());
    if (flaw.endsWith(QLatin1String("PLC is killed"))) {
        m_plc->signal(SIGKILL);
    } else if (flaw.endsWith(QLatin1String("PLC is silent"))) {
        m_plc->signal(SIGSTOP);
    } else if (flaw.endsWith(QLatin1String("unplugged"))) {
        m_relay->close();
    } else if (flaw.endsWith(QLatin1String("serial server"))) {
        m_relay->setSilent(true);
    } else {
        m_program->signal(SIGKILL);
    }
    const qint64 ms = waitForBad(subscriber, topics);
    qInfo("%s: seen after %lld ms", qPrintable(flaw), static_cast<long long>(ms));
    QVERIFY2(ms >= 0 && ms < limitMs, qPrintable(QString::number(ms)));
}

// The PLC is killed with it, so that what the reserve is told is news.
void TestGatewayTruth::aSilentBrokerIsLeft()
{
    MosquittoSubscriber first;
    QVERIFY(first.start(m_broker->port()));
    QVERIFY2(isGood(first), m_program->errors().constData());
    MosquittoSubscriber second;
    QVERIFY(second.start(m_reserve->port()));
    m_broker->pause();
    m_plc->signal(SIGKILL);
    const qint64 ms = waitForBad(second, {kLine, kStation, kValue});
    qInfo("the broker is silent: seen at the next one after %lld ms", static_cast<long long>(ms));
    QVERIFY2(ms >= 0 && ms < kPollMs + kKeepAliveMs + 1000, qPrintable(QString::number(ms)));
    // Who is with the first one sees its will as soon as it works again.
    m_broker->resume();
    const qint64 later = waitForBad(first, {kGateway});
    qInfo("the broker works again: seen after %lld ms", static_cast<long long>(later));
    QVERIFY2(later >= 0 && later < kKeepAliveMs, qPrintable(QString::number(later)));
}

QTEST_GUILESS_MAIN(TestGatewayTruth)
#include "test_gateway_truth.moc"
