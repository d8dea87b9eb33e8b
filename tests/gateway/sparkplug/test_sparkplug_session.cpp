#include "gateway/sparkplug/sparkplug_session.h"
#include "host/support/virtual_clock.h"
#include "sparkplug/support/fake_connection.h"
#include "sparkplug/support/message_writer.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace cnet;
using namespace cnet::gateway;

/** What an edge node says when, with which numbers; the checker reads all that it said. */
class TestSparkplugSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void isBorn();
    void countsOverAllMessages();
    void countsItsConnects();
    void diesBeforeItLeaves();
    void isBornAnewWhenAHostAsks();
    void answersAStormWithFewBirths();
    void heedsNoOtherCommand_data();
    void heedsNoOtherCommand();
    void waitsForItsHost();
    void saysThatItWaits();
    void leavesWithItsHost();
    void goesToTheNextBroker();
    void believesAMarkOfItsOwnConnectionOnly();
    void givesUpWhenAMessageIsNotTaken();
    void leavesABrokerThatAnswersNothing();

private:
    void make(const char *host = "", int brokers = 1);
    int count(const QString &kind) const;
    static QByteArray rebirth(const char *name = "Node Control/Rebirth", bool value = true);

    VirtualClock m_clock;
    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<FakeConnection> m_connection;
    std::unique_ptr<SparkplugSession> m_session;
    QByteArray m_host;
    int m_births = 0;
    QStringList m_failures;
    QVector<int> m_marked;
};

namespace {

const char *const kCommand = "spBv1.0/plant/NCMD/gate";
const char *const kState = "spBv1.0/STATE/scada";

QByteArray stateOf(bool isOnline, int atMs)
{
    return QByteArray("{\"online\":") + (isOnline ? "true" : "false") +
           ",\"timestamp\":" + QByteArray::number(atMs) + '}';
}

} // namespace

void TestSparkplugSession::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    m_session.reset();
    m_connection = std::make_unique<FakeConnection>();
    make();
}

void TestSparkplugSession::cleanup()
{
    m_session->end();
    QCOMPARE(m_connection->broken(m_host), QStringList());
}

void TestSparkplugSession::make(const char *host, int brokers)
{
    m_host = host;
    m_births = 0;
    m_failures.clear();
    m_marked.clear();
    SparkplugSettings settings;
    settings.group = QLatin1String("plant");
    settings.node = QLatin1String("gate");
    settings.primaryHost = QLatin1String(host);
    settings.connection.brokers.resize(brokers);
    settings.numberFile = m_directory->filePath(QLatin1String("number"));
    m_session = std::make_unique<SparkplugSession>(settings, *m_connection, m_clock);
    connect(m_session.get(), &SparkplugSession::born, this, [this] { ++m_births; });
    connect(m_session.get(), &SparkplugSession::marked, this,
            [this](int token) { m_marked.append(token); });
    connect(m_session.get(), &SparkplugSession::failed, this,
            [this](const QString &reason) { m_failures.append(reason); });
}

int TestSparkplugSession::count(const QString &kind) const
{
    return int(m_connection->topics().split(QLatin1Char(' ')).count(kind));
}

QByteArray TestSparkplugSession::rebirth(const char *name, bool value)
{
    spcheck::ReadMetric metric;
    metric.name = name;
    metric.datatype = 11U;
    metric.field = spcheck::Field::Truth;
    metric.number = value ? 1 : 0;
    return spcheck::MessageWriter::write({1U, std::nullopt, {metric}});
}

void TestSparkplugSession::isBorn()
{
    m_session->begin();
    QCOMPARE(m_births, 1);
    QCOMPARE(m_connection->topics(), QLatin1String("NBIRTH"));
    m_session->begin();
    QCOMPARE(m_connection->opened, 1);
}

void TestSparkplugSession::countsOverAllMessages()
{
    m_session->begin();
    Metric metric;
    metric.name = QLatin1String("a");
    metric.alias = 4;
    metric.tellsDatatype = true;
    metric.value = qint64(1);
    metric.atMs = 5;
    m_session->bearDevice(QLatin1String("press.1"), {metric});
    m_session->killDevice(QLatin1String("press.1"));
    m_session->bearDevice(QLatin1String("press.1"), {metric});
    metric.name.clear();
    metric.tellsDatatype = false;
    for (int i = 0; i < 600; ++i) {
        m_session->tellDevice(QLatin1String("press.1"), {metric});
    }
    QCOMPARE(int(*m_connection->last().seq), 603 % 256);
}

void TestSparkplugSession::countsItsConnects()
{
    for (int i = 0; i < 300; ++i) {
        m_session->begin();
        m_connection->lose();
        if (i % 5 == 0) { // no broker hears of it
            m_connection->manner = FakeConnection::Manner::IsAway;
            m_session->begin();
            m_session->begin();
            m_connection->manner = FakeConnection::Manner::Accepts;
        } else if (i % 7 == 0) { // the gateway ends, and starts again
            make();
        }
    }
    m_session->begin();
    QCOMPARE(int(m_connection->last().metrics.first().number), 300 % 256);
}

void TestSparkplugSession::diesBeforeItLeaves()
{
    m_session->begin();
    m_session->end();
    m_session->end();
    QCOMPARE(m_connection->topics(), QLatin1String("NBIRTH NDEATH goodbye"));
    m_session->tellDevice(QLatin1String("press.1"), {});
    QCOMPARE(m_session->mark(), 0);
    QCOMPARE(m_connection->topics(), QLatin1String("NBIRTH NDEATH goodbye"));
}

void TestSparkplugSession::isBornAnewWhenAHostAsks()
{
    m_session->begin();
    m_session->tellNode({});
    m_connection->send(kCommand, rebirth());
    QCOMPARE(m_births, 2);
    QCOMPARE(m_connection->topics(), QLatin1String("NBIRTH NDATA NBIRTH"));
}

void TestSparkplugSession::answersAStormWithFewBirths()
{
    m_session->begin();
    for (int i = 0; i < 1000; ++i) {
        m_connection->send(kCommand, rebirth());
        m_clock.runFor(30);
    }
    m_clock.runFor(10000);
    // 30 s long, and one every 5 s; the last request has its answer, too.
    QVERIFY2(m_births >= 6 && m_births <= 9, qPrintable(QString::number(m_births)));
}

void TestSparkplugSession::heedsNoOtherCommand_data()
{
    QTest::addColumn<QByteArray>("topic");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<bool>("isRetained");
    const QByteArray command = kCommand;
    QTest::newRow("false") << command << rebirth("Node Control/Rebirth", false) << false;
    QTest::newRow("unknown") << command << rebirth("Node Control/Reboot") << false;
    QTest::newRow("kept by the broker") << command << rebirth() << true;
    QTest::newRow("no message") << command << QByteArray("true") << false;
    QTest::newRow("empty") << command << QByteArray() << false;
    QTest::newRow("another node's") << QByteArray("spBv1.0/plant/NCMD/other") << rebirth() << false;
    QTest::newRow("a host's") << QByteArray(kState) << stateOf(false, 5) << false;
}

void TestSparkplugSession::heedsNoOtherCommand()
{
    QFETCH(QByteArray, topic);
    QFETCH(QByteArray, payload);
    QFETCH(bool, isRetained);
    m_session->begin();
    m_connection->send(topic.constData(), payload, isRetained);
    m_clock.runFor(60000);
    QCOMPARE(m_births, 1);
    QVERIFY(m_session->isBorn());
}

void TestSparkplugSession::waitsForItsHost()
{
    make("scada");
    m_session->begin();
    QCOMPARE(m_connection->topics(), QString());
    m_connection->send(kState, stateOf(false, 900), true);
    QCOMPARE(m_births, 0);
    m_connection->send(kState, stateOf(true, 1000), true);
    QCOMPARE(m_births, 1);
    m_connection->send(kState, stateOf(false, 999));
    m_session->tellNode({});
    QVERIFY(m_session->isBorn());
}

void TestSparkplugSession::saysThatItWaits()
{
    make("scada");
    m_session->begin();
    m_clock.runFor(9000);
    QCOMPARE(m_failures, QStringList());
    m_clock.runFor(2000);
    QCOMPARE(m_failures, QStringList(QLatin1String("the primary host scada is not online")));
    m_session->begin();
    m_connection->send(kState, stateOf(true, 1000));
    QCOMPARE(m_births, 1);
    QCOMPARE(m_connection->opened, 1);
    m_clock.runFor(60000);
    QCOMPARE(int(m_failures.size()), 1);
}

void TestSparkplugSession::leavesWithItsHost()
{
    make("scada");
    m_session->begin();
    m_connection->send(kState, stateOf(true, 1000));
    m_connection->send(kState, stateOf(false, 1000));
    QCOMPARE(m_connection->topics(), QLatin1String("NBIRTH NDEATH goodbye"));
    QCOMPARE(m_failures, QStringList(QLatin1String("the primary host scada is offline")));
    m_session->begin();
    QCOMPARE(m_connection->broker, 1);
    // With another connection, what was told on the one before does not count.
    m_connection->send(kState, stateOf(true, 500));
    QCOMPARE(m_births, 2);
}

void TestSparkplugSession::goesToTheNextBroker()
{
    make("scada", 2);
    m_session->begin();
    QCOMPARE(m_connection->broker, 0);
    m_clock.runFor(11000); // its host says nothing there
    m_session->begin();
    QCOMPARE(m_connection->broker, 1);
    m_connection->send(kState, stateOf(false, 1000), true);
    m_connection->manner = FakeConnection::Manner::LeavesWaiting;
    m_session->begin();
    QCOMPARE(m_connection->broker, 2);
    m_connection->lose("refused");
    m_session->begin();
    QCOMPARE(m_connection->broker, 3);
    m_connection->accept();
    m_connection->send(kState, stateOf(true, 2000));
    // One that worked is tried first.
    m_connection->lose();
    m_session->begin();
    QCOMPARE(m_connection->broker, 3);
}

void TestSparkplugSession::believesAMarkOfItsOwnConnectionOnly()
{
    m_session->begin();
    QVERIFY(m_session->mark() != 0);
    const QVector<int> before = m_connection->takeUnconfirmed();
    m_connection->lose();
    m_session->begin();
    const int mark = m_session->mark();
    m_connection->confirm(before);
    QCOMPARE(m_marked, QVector<int>());
    m_connection->confirm();
    QCOMPARE(m_marked, QVector<int>({mark}));
}

void TestSparkplugSession::givesUpWhenAMessageIsNotTaken()
{
    m_session->begin();
    m_connection->takesMessages = false;
    m_session->tellNode({});
    QVERIFY(!m_session->isBorn());
    QCOMPARE(m_failures, QStringList(QLatin1String("a message could not be sent")));
    m_connection->stream.removeLast(); // it could not say that it dies, either
}

void TestSparkplugSession::leavesABrokerThatAnswersNothing()
{
    m_connection->manner = FakeConnection::Manner::LeavesWaiting;
    m_session->begin();
    m_clock.runFor(19000);
    QCOMPARE(m_failures, QStringList());
    m_clock.runFor(2000);
    const QString silent = QLatin1String("the broker does not answer");
    QCOMPARE(m_failures, QStringList(silent));
    m_connection->manner = FakeConnection::Manner::Accepts;
    m_session->begin();
    for (int i = 0; i < 10; ++i) {
        m_session->mark();
        m_clock.runFor(10000);
        m_connection->confirm();
    }
    m_clock.runFor(100000);
    QCOMPARE(int(m_failures.size()), 1);
    m_session->mark();
    m_clock.runFor(21000);
    QCOMPARE(m_failures, QStringList({silent, silent}));
    QVERIFY(m_connection->topics().endsWith(QLatin1String("mark NDEATH goodbye")));
}

QTEST_APPLESS_MAIN(TestSparkplugSession)
#include "test_sparkplug_session.moc"
