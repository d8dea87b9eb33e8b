#include "gateway.h"
#include "relay.h"

#include <QElapsedTimer>
#include <QtTest>

#include <csignal>

namespace {

constexpr int kTags = 10000;
constexpr int kPatienceMs = 60000;
// Of the line with one tag. Two of them without a poll: one was missed.
constexpr qint64 kIntervalMs = 500;

QByteArray manyTags(int from)
{
    QByteArray rows = "name,register,address\n";
    for (int i = from; i < kTags; ++i) {
        const QByteArray number = QByteArray::number(i);
        rows += "tag" + number + ",D_W," + number + '\n';
    }
    return rows;
}

// On a machine that is busy with other things everything takes longer. Then most polls come all the
// same, where none came if they waited for the tags to be read.
bool hasMissedNone(qint64 pauseMs, int polls, qint64 reloadMs)
{
    return pauseMs < 2 * kIntervalMs || polls >= reloadMs / kIntervalMs / 2;
}

/** A PLC behind a relay, which notes how long nobody asked for anything. */
class WatchedPlc
{
public:
    bool start()
    {
        if (!m_plc.serve({QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")}, {})) {
            return false;
        }
        m_relay = std::make_unique<Relay>(m_plc.place());
        m_relay->onAnswer = [this](const QByteArray & /*request*/, const QByteArray &answer) {
            note();
            return answer;
        };
        m_clock.start();
        return true;
    }

    QByteArray link() const { return m_relay->link().toLatin1(); }
    int polls() const { return m_polls; } ///< that were answered

    /** @return longest time without a poll since this was asked last */
    qint64 takeLongestPauseMs()
    {
        m_longestMs = std::max(m_longestMs, m_clock.restart());
        return std::exchange(m_longestMs, 0);
    }

private:
    void note()
    {
        m_longestMs = std::max(m_longestMs, m_clock.restart());
        ++m_polls;
    }

    PlcProgram m_plc;
    std::unique_ptr<Relay> m_relay;
    QElapsedTimer m_clock;
    qint64 m_longestMs = 0;
    int m_polls = 0;
};

} // namespace

/** cnet-gateway reads its configuration again while it polls. */
class TestGatewayReload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void missesNoPollWithManyTags();

private:
    static bool configure(const GatewayProgram &gateway, const WatchedPlc &press,
                          const WatchedPlc &oven)
    {
        return gateway.store("press.csv", manyTags(0)) &&
               gateway.store("oven.csv", "name,register,address\nheat,D_W,1\n") &&
               gateway.store("gateway.toml",
                             "[line.press]\ntags = \"press.csv\"\nlink = \"" + press.link() +
                                 "\"\n[line.oven]\ntags = \"oven.csv\"\nlink = \"" + oven.link() +
                                 "\"\ninterval = \"" + QByteArray::number(kIntervalMs) + "ms\"\n");
    }
};

void TestGatewayReload::missesNoPollWithManyTags()
{
    WatchedPlc press;
    WatchedPlc oven;
    QVERIFY(press.start() && oven.start());
    GatewayProgram gateway;
    QVERIFY(configure(gateway, press, oven));
    Program program;
    QVERIFY(gateway.start(program, {"run", QFile::encodeName(gateway.path("gateway.toml"))}));
    QTRY_VERIFY_WITH_TIMEOUT(press.polls() > 400 && oven.polls() > 3, kPatienceMs);
    oven.takeLongestPauseMs();
    press.takeLongestPauseMs();
    QTest::qWait(2 * kIntervalMs);
    const qint64 ovenBeforeMs = oven.takeLongestPauseMs();
    const qint64 pressBeforeMs = press.takeLongestPauseMs();
    // A tag goes, and each other one is in another row.
    QVERIFY(gateway.store("press.csv", manyTags(1)));
    const int pollsBefore = oven.polls();
    QElapsedTimer clock;
    clock.start();
    program.signal(SIGHUP);
    QTRY_VERIFY_WITH_TIMEOUT(program.errors().contains("the configuration is read again"),
                             kPatienceMs);
    const qint64 reloadMs = clock.elapsed();
    const int polls = oven.polls() - pollsBefore;
    QTRY_VERIFY_WITH_TIMEOUT(oven.polls() > pollsBefore + polls, kPatienceMs);
    const qint64 ovenMs = oven.takeLongestPauseMs();
    const qint64 pressMs = press.takeLongestPauseMs();
    qInfo("%d tags reloaded within %lld ms; longest time without a poll of them: before %lld ms, "
          "meanwhile %lld ms; of a line that is polled every %lld ms: before %lld ms, meanwhile "
          "%lld ms, with %d polls",
          kTags, static_cast<long long>(reloadMs), static_cast<long long>(pressBeforeMs),
          static_cast<long long>(pressMs), static_cast<long long>(kIntervalMs),
          static_cast<long long>(ovenBeforeMs), static_cast<long long>(ovenMs), polls);
    QVERIFY2(program.errors().contains("line press: tags: 1 removed, 9999 unchanged"),
             program.errors().constData());
    QVERIFY(hasMissedNone(ovenMs, polls, reloadMs));
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestGatewayReload)
#include "test_gateway_reload.moc"
