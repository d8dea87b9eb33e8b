#include "brokers/listener.h"
#include "brokers/nats_cluster.h"
#include "brokers/site.h"
#include "outages/audit.h"

#include <QDateTime>
#include <QtTest>

/** Of a cluster of three brokers one is killed under load: what the ledger took is not lost. */
class TestCluster : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void losesNothing();

private:
    void kill(int server);
    void bringBack(int server);

    NatsCluster m_cluster;
    Listener m_listener;
    Site m_site;
    int m_listensAt = 2;
    qint64 m_killMs = 0; ///< when a server was killed last
};

namespace {

const int kPatienceMs = 120000;
// Until the servers of a new cluster have agreed on the streams that MQTT needs, they turn clients
// away for five seconds at a time.
const int kStartMs = 150000;

} // namespace

/** Says for how long nobody heard anything new. */
void TestCluster::kill(int server)
{
    m_killMs = QDateTime::currentMSecsSinceEpoch();
    m_cluster.kill(server);
    if (server == m_listensAt) {
        m_listensAt = (server + 1) % NatsCluster::kServers;
        QVERIFY2(m_listener.start(m_cluster.port(m_listensAt)), m_cluster.lastWords().constData());
    }
    QTRY_VERIFY2_WITH_TIMEOUT(m_listener.firstLiveSince(m_killMs + 1) > 0,
                              m_cluster.lastWords().constData(), kPatienceMs);
    qInfo("server %d killed: the first new value came after %lld ms", server,
          m_listener.firstLiveSince(m_killMs + 1) - m_killMs);
}

void TestCluster::bringBack(int server)
{
    QVERIFY(m_cluster.restart(server));
    QVERIFY2(m_cluster.waitUntilMember(server), m_cluster.lastWords().constData());
    if (!m_cluster.waitUntilCaughtUp(server)) {
        qInfo("server %d is still catching up", server);
    }
}

void TestCluster::losesNothing()
{
    if (NatsCluster::program().isEmpty()) {
        QSKIP("nats-server is not installed; script/bootstrap --test brings it");
    }
    QVERIFY2(m_cluster.start(), m_cluster.lastWords().constData());
    QVERIFY(m_listener.start(m_cluster.port(m_listensAt)));
    QByteArrayList brokers;
    for (int i = 0; i < NatsCluster::kServers; ++i) {
        brokers.append("tcp:127.0.0.1:" + QByteArray::number(m_cluster.port(i)));
    }
    QVERIFY(m_site.start("brokers = \"" + brokers.join(", ") +
                         "\"\nescape = \". \"\nclient_id = \"gateway\"\n"));
    QTRY_VERIFY_WITH_TIMEOUT(m_listener.arrivals().size() > 2000, kStartMs);
    const int gatewayAt = m_cluster.serverOf("gateway");
    QVERIFY(gatewayAt >= 0);
    kill(gatewayAt);
    // What had to wait comes beside what is new.
    QTRY_VERIFY_WITH_TIMEOUT(m_listener.lastOld() > m_killMs, kPatienceMs);
    bringBack(gatewayAt);
    QVERIFY(!QTest::currentTestFailed());
    // That of the subscriber. The gateway, at another one, may have nothing to wait for.
    kill(m_listensAt);
    QVERIFY(!QTest::currentTestFailed());
    m_site.endChanges();
    QVERIFY(m_site.waitUntilDrained());
    const LedgerRecord ledger = m_site.end();
    QVERIFY(ledger.isWhole);
    QCOMPARE(ledger.dropped.value(QLatin1String("centre"), -1), 0);
    const auto distinct = [&] { return m_listener.arrivals().size() - m_listener.repeated(); };
    QTRY_VERIFY_WITH_TIMEOUT(distinct() >= ledger.taken.size(), kPatienceMs);
    // No order: what a server had handed out when it died comes behind newer values.
    Audit audit(ledger.taken);
    audit.checkComplete("listener", m_listener.all());
    QVERIFY2(audit.faults().isEmpty(), qPrintable(audit.faults().join(QLatin1Char('\n'))));
    qInfo("%d changes, %d messages at the listener, %d of them again", int(ledger.taken.size()),
          int(m_listener.arrivals().size()), m_listener.repeated());
}

QTEST_GUILESS_MAIN(TestCluster)
#include "test_cluster.moc"
