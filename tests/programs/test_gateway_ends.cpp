#include "gateway.h"

#include "gateway/store/database.h"
#include "gateway/support/mosquitto_broker.h"
#include "gateway/support/mosquitto_subscriber.h"
#include "support/full_disk.h"

#include <QElapsedTimer>
#include <QtTest>

#include <sys/resource.h>

#include <algorithm>
#include <csignal>

using cnet::FullDisk;
using namespace cnet::gateway;

/** How cnet-gateway ends, and how it begins behind that: its brokers and its disk as they are. */
class TestGatewayEnds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_gateway = std::make_unique<GatewayProgram>(); }
    void leavesNoWill_data();
    void leavesNoWill();
    void waitsForNoSilentBroker();
    void tellsOfALineThatWasTakenOut();
    void beginsOnAFullDisk();

private:
    QByteArray config() const { return QFile::encodeName(m_gateway->path("gateway.toml")); }
    /** Six hundred values of a press, and whatever else there is to it. */
    bool configure(
        quint16 port, const QByteArray &more = QByteArray(),
        const QByteArray &sink = "kind = \"mqtt\"\nsite = \"plant\"\nretain = true\n") const
    {
        return m_gateway->store("press.csv",
                                "name,register,address,type,count\nall,D_W,100,u16,600\n") &&
               m_gateway->store("gateway.toml",
                                "[line.press]\nlink = \"simulated\"\ntags = \"press.csv\"\n" +
                                    more +
                                    "[batch]\nage = \"50ms\"\n"
                                    "[sink.centre]\n" +
                                    sink +
                                    "client_id = \"gateway\"\n"
                                    "brokers = \"tcp:127.0.0.1:" +
                                    QByteArray::number(port) + "\"\n");
    }
    static int offlines(MosquittoSubscriber &subscriber)
    {
        int count = 0;
        for (const MosquittoSubscriber::Seen &message : subscriber.seen()) {
            count += message.payload == R"({"s":"offline"})" ? 1 : 0;
        }
        return count;
    }
    bool isEverywhere(const QString &topic, MosquittoSubscriber &subscriber,
                      const QByteArray &beginning) const
    {
        return subscriber.waitFor(
            [&] { return subscriber.newest(topic).payload.startsWith(beginning); });
    }
    /**
     * Waits until it was told. What the broker had not confirmed when the gateway was killed comes
     * once more, as old, and may come behind it.
     */
    static bool isTold(const QString &topic, MosquittoSubscriber &subscriber,
                       const QByteArray &beginning)
    {
        return subscriber.waitFor([&] {
            const auto &seen = subscriber.seen();
            return std::any_of(seen.begin(), seen.end(), [&](const auto &message) {
                return message.topic == topic && message.payload.startsWith(beginning);
            });
        });
    }
    /** Batches that wait in the ledger. */
    qint64 waiting() const
    {
        Database ledger;
        ledger.openToRead(m_gateway->path("ledger.sqlite"));
        Statement read(ledger, "SELECT count(*) FROM batch");
        return read.step() == Statement::Step::Row ? read.number(0) : -1;
    }

    std::unique_ptr<GatewayProgram> m_gateway;
};

namespace {

const QString kStatus = QLatin1String("plant/status");

} // namespace

void TestGatewayEnds::leavesNoWill_data()
{
    QTest::addColumn<QByteArray>("sink");
    QTest::addColumn<QString>("topic");
    QTest::newRow("mqtt") << QByteArray("kind = \"mqtt\"\nsite = \"plant\"\n")
                          << QString::fromLatin1("plant/press/1/all[599]");
    QTest::newRow("sparkplug") << QByteArray("kind = \"sparkplug\"\ngroup = \"plant\"\n"
                                             "node = \"hall\"\n")
                               << QString::fromLatin1("spBv1.0/plant/DBIRTH/hall/press.1");
}

// Hundreds of values are told to be good no more while it ends. The broker confirms each of them,
// hears the goodbye, and publishes no will; nothing is left to be sent again.
void TestGatewayEnds::leavesNoWill()
{
    QFETCH(QByteArray, sink);
    QFETCH(QString, topic);
    MosquittoBroker broker;
    QVERIFY(broker.start("allow_anonymous true\nlog_type all\n"));
    QVERIFY(configure(broker.port(), QByteArray(), sink));
    for (int round = 1; round <= 3; ++round) {
        MosquittoSubscriber subscriber;
        QVERIFY(subscriber.start(broker.port()));
        Program program;
        QVERIFY(m_gateway->start(program, {"run", config()}));
        QVERIFY2(subscriber.waitFor([&] { return !subscriber.newest(topic).topic.isEmpty(); }),
                 program.errors().constData());
        program.signal(SIGTERM);
        QCOMPARE(program.exitCode(), 0);
        QVERIFY(QTest::qWaitFor(
            [&] { return broker.log().contains("Client gateway disconnected."); }, 10000));
        QVERIFY(!broker.log().contains("Client gateway closed its connection"));
        if (sink.contains("mqtt")) {
            QVERIFY(subscriber.waitFor([&] { return offlines(subscriber) > 0; }));
        }
        QVERIFY(broker.restart()); // no later word of it
        QCOMPARE(offlines(subscriber), sink.contains("mqtt") ? 1 : 0);
        QCOMPARE(waiting(), 0);
    }
}

void TestGatewayEnds::waitsForNoSilentBroker()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    MosquittoSubscriber subscriber;
    QVERIFY(subscriber.start(broker.port(), kStatus));
    QVERIFY(configure(broker.port()));
    Program program;
    QVERIFY(m_gateway->start(program, {"run", config()}));
    QVERIFY(isEverywhere(kStatus, subscriber, R"({"s":"online")"));
    broker.pause();
    QElapsedTimer clock;
    clock.start();
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
    // Two seconds; the rest is for the machine, and far below the keep-alive.
    QVERIFY2(clock.elapsed() < 8000, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(waiting() > 0);
}

// Killed, so that it cannot say so itself.
void TestGatewayEnds::tellsOfALineThatWasTakenOut()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    MosquittoSubscriber subscriber;
    QVERIFY(subscriber.start(broker.port(), QLatin1String("plant/#")));
    QVERIFY(m_gateway->store("oven.csv", "name,register,address\nheat,D_W,100\n"));
    QVERIFY(configure(broker.port(), "[line.oven]\nlink = \"simulated\"\ntags = \"oven.csv\"\n"));
    {
        Program program;
        QVERIFY(m_gateway->start(program, {"run", config()}));
        QVERIFY(isEverywhere(QLatin1String("plant/status/oven"), subscriber, R"({"s":"good")"));
        QVERIFY(isEverywhere(QLatin1String("plant/status/oven/1"), subscriber, R"({"s":"good")"));
        QVERIFY(isEverywhere(QLatin1String("plant/oven/1/heat"), subscriber, R"({"v":)"));
        QVERIFY(isEverywhere(QLatin1String("plant/press/1/all[599]"), subscriber, R"({"v":)"));
        program.signal(SIGKILL);
        program.exitCode();
    }
    QVERIFY(configure(broker.port()));
    QVERIFY(
        m_gateway->store("press.csv", "name,register,address,type,count\nall,D_W,100,u16,599\n"));
    Program program;
    QVERIFY(m_gateway->start(program, {"run", config()}));
    QVERIFY(isEverywhere(kStatus, subscriber, R"({"s":"online")"));
    const QByteArray gone = R"({"s":"bad","why":"it is not in the configuration any more",)";
    const QByteArray stale = R"({"v":null,"q":"stale","why":"not watched any more",)";
    QVERIFY(isTold(QLatin1String("plant/oven/1/heat"), subscriber, stale));
    QVERIFY(isTold(QLatin1String("plant/press/1/all[599]"), subscriber, stale));
    QVERIFY(
        isEverywhere(QLatin1String("plant/press/1/all[598]"), subscriber, R"({"v":0,"q":"good")"));
    // Who subscribes now finds it so.
    MosquittoSubscriber later;
    QVERIFY(later.start(broker.port(), QLatin1String("plant/#")));
    QVERIFY(isEverywhere(QLatin1String("plant/status/oven"), later, gone));
    QVERIFY(isEverywhere(QLatin1String("plant/status/oven/1"), later, gone));
    QVERIFY(isEverywhere(QLatin1String("plant/oven/1/heat"), later, stale));
    QVERIFY(isEverywhere(QLatin1String("plant/press/1/all[599]"), later, stale));
    QVERIFY(later.newest(QLatin1String("plant/status/oven")).isRetained);
    QVERIFY(isEverywhere(QLatin1String("plant/status/press"), later, R"({"s":"good")"));
    // Once: the next start has nothing to say of it.
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
    const auto before = subscriber.seen().size();
    Program again;
    QVERIFY(m_gateway->start(again, {"run", config()}));
    QVERIFY(isEverywhere(kStatus, subscriber, R"({"s":"online")"));
    for (auto i = before; i < subscriber.seen().size(); ++i) {
        QVERIFY(!subscriber.seen().at(i).topic.contains(QLatin1String("oven")));
    }
}

// It comes up, is asked how it does, and keeps what it reads.
void TestGatewayEnds::beginsOnAFullDisk()
{
    MosquittoBroker broker;
    QVERIFY(broker.start());
    QVERIFY(configure(broker.port()));
    Program program;
    {
        const FullDisk full(1000);
        QVERIFY(m_gateway->start(program, {"run", config()}));
    }
    QVERIFY(
        QTest::qWaitFor([&] { return program.errors().contains("ledger: cannot open "); }, 30000));
    QVERIFY(QTest::qWaitFor([&] { return program.errors().contains("runs; lines: 1"); }, 30000));
    const QByteArray state = QFile::encodeName(m_gateway->path(""));
    QCOMPARE(m_gateway->run({"status", "--state", state}), 0);
    const QByteArray shown = m_gateway->output.join('\n');
    QVERIFY2(shown.contains("it waits for the ledger") && shown.contains("cannot open"),
             shown.constData());
    QVERIFY(program.isRunning());
    rlimit limit{};
    const auto id = static_cast<pid_t>(program.id());
    QCOMPARE(prlimit(id, RLIMIT_FSIZE, nullptr, &limit), 0);
    limit.rlim_cur = limit.rlim_max;
    QCOMPARE(prlimit(id, RLIMIT_FSIZE, &limit, nullptr), 0);
    MosquittoSubscriber subscriber;
    QVERIFY(subscriber.start(broker.port(), kStatus));
    QVERIFY(
        QTest::qWaitFor([&] { return program.errors().contains("ledger: works again"); }, 30000));
    QVERIFY(isEverywhere(kStatus, subscriber, R"({"s":"online")"));
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
    QVERIFY2(program.errors().contains("ended; everything is stored"),
             program.errors().constData());
}

QTEST_GUILESS_MAIN(TestGatewayEnds)
#include "test_gateway_ends.moc"
