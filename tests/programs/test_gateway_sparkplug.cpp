#include "sparkplug_site.h"

#include "sparkplug/wire/fake_broker.h"

/** cnet-gateway as an edge node at a real broker, through its bad days; the checker reads it all.
 */
class TestGatewaySparkplug : public QObject, private SparkplugSite
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void keepsTheRules();
    void saysWhoItIs_data();
    void saysWhoItIs();
    void isKilled();
    void tellsNothingOfARunBeforeAsGood();
    void losesItsBroker();
    void losesItsStation();
    void losesItsHost();
    void callsNothingSafeThatTheBrokerHasNot();

private:
    static QByteArray hostState(bool isOnline, int atMs);
    qint64 bdSeqOfLastConnect() const;
};

void TestGatewaySparkplug::init()
{
    start();
}

QByteArray TestGatewaySparkplug::hostState(bool isOnline, int atMs)
{
    return QByteArray("{\"online\":") + (isOnline ? "true" : "false") +
           ",\"timestamp\":" + QByteArray::number(atMs) + '}';
}

qint64 TestGatewaySparkplug::bdSeqOfLastConnect() const
{
    qint64 number = -1;
    for (const spcheck::Packet &packet : m_relay->stream()) {
        if (packet.kind == spcheck::Packet::Kind::Connect && packet.will) {
            number = qint64(spcheck::readMessage(packet.will->payload)->metrics.first().number);
        }
    }
    return number;
}

void TestGatewaySparkplug::keepsTheRules()
{
    run();
    WAIT_FOR(data() > 5);
    const int devices = m_relay->count("DBIRTH");
    askForRebirth();
    WAIT_FOR(births() == 2);
    const int before = data();
    WAIT_FOR(data() > before + 5);
    end();
    QCOMPARE(m_relay->count("DBIRTH"), devices + 1);
    QCOMPARE(m_relay->count("NDEATH"), 1);
    check();
}

void TestGatewaySparkplug::saysWhoItIs_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<int>("protocol");
    QTest::newRow("3.1.1") << QByteArray("3.1.1") << 4;
    QTest::newRow("5") << QByteArray("5") << 5;
}

void TestGatewaySparkplug::saysWhoItIs()
{
    QFETCH(QByteArray, version);
    QFETCH(int, protocol);
    spcheck::FakeBroker broker;
    QVERIFY(broker.start());
    configure(broker.port(), "version = \"" + version + "\"\nkeep_alive = \"7s\"\n");
    run();
    WAIT_FOR(!broker.connects().isEmpty());
    QCOMPARE(broker.connects().first().protocol, protocol);
    QCOMPARE(broker.connects().first().keepAliveS, 7);
    WAIT_FOR(broker.stream().size() > 8);
    QCOMPARE(spcheck::faultsOf(broker.stream(), {"plant", "gate", ""}), QStringList());
}

void TestGatewaySparkplug::isKilled()
{
    run();
    for (int round = 0; round < 3; ++round) {
        WAIT_FOR(births() == round + 1);
        const int before = data();
        WAIT_FOR(data() > before + 3);
        const qint64 number = bdSeqOfLastConnect();
        QCOMPARE(number, qint64(round));
        m_program->signal(SIGKILL);
        QCOMPARE(m_program->exitCode(), -1);
        const auto isDead = [this, number] {
            const spcheck::Message &last = m_watcher->seen().last();
            const auto read = spcheck::readMessage(last.payload);
            return last.topic == "spBv1.0/plant/NDEATH/gate" && read &&
                   qint64(read->metrics.first().number) == number;
        };
        WAIT_FOR(isDead());
        run();
    }
    WAIT_FOR(births() == 4);
    const int before = data();
    WAIT_FOR(data() > before + 3);
    end();
    check();
}

// It is killed with good values in its ledger, and one of their tags is gone afterwards.
void TestGatewaySparkplug::tellsNothingOfARunBeforeAsGood()
{
    m_broker->pause();
    run();
    WAIT_FOR(!m_gateway->history("fixed").isEmpty());
    m_program->signal(SIGKILL);
    QCOMPARE(m_program->exitCode(), -1);
    m_broker->resume();
    QVERIFY(m_gateway->store("tags.csv", "name,register,address,type\ncounter,D_W,100,u32\n"));
    m_relay->noteRestart();
    run();
    WAIT_FOR(data() > 10);
    end();
    std::optional<quint64> alias;
    int old = 0;
    for (const spcheck::Message &message : m_watcher->seen()) {
        const auto read = spcheck::readMessage(message.payload).value_or(spcheck::ReadMessage());
        for (const spcheck::ReadMetric &metric : read.metrics) {
            alias = metric.name == QByteArray("fixed") ? metric.alias : alias;
            if (metric.alias && metric.alias == alias) {
                old += metric.isHistorical ? 1 : 0;
                QVERIFY2(metric.isHistorical || !metric.properties.isEmpty(),
                         message.topic.constData());
            }
        }
    }
    QVERIFY(old > 0);
    check();
}

void TestGatewaySparkplug::losesItsBroker()
{
    run();
    WAIT_FOR(data() > 5);
    for (int round = 0; round < 2; ++round) {
        m_broker->kill();
        QTest::qWait(1200); // a backlog grows
        QVERIFY(m_broker->restart());
        QVERIFY(m_watcher->start(m_broker->port()));
        WAIT_FOR(births() == round + 2);
        const int before = data();
        WAIT_FOR(data() > before + 5);
    }
    end();
    check();
}

void TestGatewaySparkplug::losesItsStation()
{
    run();
    WAIT_FOR(data() > 5);
    const QString place = m_plc->place();
    m_plc->signal(SIGKILL);
    WAIT_FOR(m_relay->count("DDEATH") == 1);
    startPlc(place);
    WAIT_FOR(m_relay->count("DBIRTH") >= 2);
    const int before = data();
    WAIT_FOR(data() > before + 3);
    end();
    check();
}

void TestGatewaySparkplug::losesItsHost()
{
    configure(m_relay->port(), "primary_host = \"scada\"\n");
    run();
    WAIT_FOR(m_relay->stream().size() > 1);
    m_watcher->publish({"spBv1.0/STATE/scada", hostState(true, 1000), 0, true});
    WAIT_FOR(data() > 2);
    m_watcher->publish({"spBv1.0/STATE/scada", hostState(false, 900), 0, false});
    const int before = data();
    WAIT_FOR(data() > before + 2);
    m_watcher->publish({"spBv1.0/STATE/scada", hostState(false, 2000), 0, true});
    WAIT_FOR(m_relay->count("NDEATH") == 1);
    m_watcher->publish({"spBv1.0/STATE/scada", hostState(true, 3000), 0, true});
    WAIT_FOR(births() == 2);
    const int later = data();
    WAIT_FOR(data() > later + 2);
    end();
    check("scada");
}

// What the ledger let go of because the broker had it was seen by who watches the broker, wherever
// the connection broke.
void TestGatewaySparkplug::callsNothingSafeThatTheBrokerHasNot()
{
    run();
    for (int round = 0; round < 6; ++round) {
        WAIT_FOR(births() == round + 1);
        const int before = data();
        WAIT_FOR(data() > before + 2);
        m_relay->cutAfter(37 + 53 * round);
    }
    WAIT_FOR(births() == 7);
    end();
    // The history has all that the ledger ever took. What is not safe yet comes with the next
    // start.
    QSet<qint64> wanted;
    for (const QJsonObject &row : m_gateway->history("counter")) {
        const QJsonValue value = row.value(QLatin1String("value"));
        if (value.isDouble()) {
            wanted.insert(static_cast<qint64>(value.toDouble()));
        }
    }
    QVERIFY(wanted.size() > 20);
    run();
    WAIT_FOR(births() == 8 && valuesSeen("counter").contains(wanted));
    end();
    check();
}

QTEST_GUILESS_MAIN(TestGatewaySparkplug)
#include "test_gateway_sparkplug.moc"
