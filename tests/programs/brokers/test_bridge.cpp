#include "brokers/site.h"
#include "outages/audit.h"
#include "outages/cut_relay.h"

#include "gateway/support/mosquitto_broker.h"
#include "support/random.h"

#include <QDateTime>
#include <QSet>
#include <QtTest>

#include <memory>

using namespace cnet::gateway;

/** A broker at the site, and a bridge from it to one at the centre: what is lost when what dies. */
class TestBridge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void losesNothing();
    void countsWhatAKillCosts_data();
    void countsWhatAKillCosts();
    void cleanup();

private:
    void begin(const QByteArray &saving);
    void dropBridge();
    void killCentre();
    void restartSiteBroker();
    void finish();

    /** All of one run; a new one for each. */
    struct Chain
    {
        Site site;
        MosquittoBroker siteBroker;
        CutRelay bridge;
        MosquittoBroker centre;
        BrokerRecord record; ///< of a subscriber at the centre
        LedgerRecord ledger;
    };
    std::unique_ptr<Chain> m_chain;
};

namespace {

const int kPatienceMs = 30000;
const int kQuietMs = 2500; // longer than the bridge waits before it tries again
const char kSaving[] = "autosave_interval 1\n"; // seconds

QByteArray siteSettings(const MosquittoBroker &own, quint16 centre, const QByteArray &saving)
{
    return "allow_anonymous true\nmax_queued_messages 0\npersistence true\npersistence_location " +
           own.path("").toUtf8() + "/\n" + saving +
           "connection centre\naddress 127.0.0.1:" + QByteArray::number(centre) +
           "\ntopic plant/# out 1\ncleansession false\nremote_clientid site\n"
           "local_clientid site.bridge\nbridge_protocol_version mqttv311\n"
           "keepalive_interval 5\nrestart_timeout 1\n";
}

qint64 nowMs()
{
    return QDateTime::currentMSecsSinceEpoch();
}

qint64 timeOf(const Told &told)
{
    return told.what.mid(told.what.lastIndexOf('|') + 1).toLongLong();
}

} // namespace

void TestBridge::init()
{
    m_chain = std::make_unique<Chain>();
}

void TestBridge::cleanup()
{
    m_chain.reset();
}

void TestBridge::begin(const QByteArray &saving)
{
    MosquittoBroker &centre = m_chain->centre;
    QVERIFY(centre.start("allow_anonymous true\nmax_queued_messages 0\n"));
    QVERIFY(m_chain->record.start(centre.port()));
    QVERIFY(m_chain->bridge.start(centre.port()));
    QVERIFY(m_chain->siteBroker.start(
        siteSettings(m_chain->siteBroker, m_chain->bridge.port(), saving)));
    QVERIFY(m_chain->site.start(
        "brokers = \"tcp:127.0.0.1:" + QByteArray::number(m_chain->siteBroker.port()) + "\"\n"));
    QTRY_VERIFY_WITH_TIMEOUT(m_chain->record.all().size() > 1000, kPatienceMs);
}

void TestBridge::dropBridge()
{
    Random random(7);
    for (int i = 0; i < 3; ++i) {
        QTRY_VERIFY_WITH_TIMEOUT(m_chain->bridge.isConnected(), kPatienceMs);
        QTest::qWait(random.between(50, 400));
        m_chain->bridge.drop();
    }
}

void TestBridge::killCentre()
{
    const qint64 killMs = nowMs();
    // A subscriber that is slow would lose what the dying broker has in memory.
    m_chain->bridge.setRefusing(true);
    QVERIFY(m_chain->record.catchUp());
    m_chain->centre.kill();
    QVERIFY(m_chain->record.finishReading());
    QTest::qWait(1500);
    QVERIFY(m_chain->centre.restart() && m_chain->record.start(m_chain->centre.port()));
    const auto before = m_chain->record.all().size();
    const qint64 backMs = nowMs();
    m_chain->bridge.setRefusing(false);
    QTRY_VERIFY_WITH_TIMEOUT(m_chain->record.all().size() > before, kPatienceMs);
    qInfo("centre away for %lld ms: values came again %lld ms after it was back", backMs - killMs,
          nowMs() - backMs);
}

/** While the centre is away, so that something waits for it. */
void TestBridge::restartSiteBroker()
{
    m_chain->bridge.setRefusing(true);
    QTest::qWait(1500);
    m_chain->siteBroker.stop();
    QVERIFY(m_chain->siteBroker.restart());
    QTest::qWait(1500);
    m_chain->bridge.setRefusing(false);
}

void TestBridge::finish()
{
    m_chain->site.endChanges();
    QVERIFY(m_chain->site.waitUntilDrained());
    m_chain->ledger = m_chain->site.end();
    QVERIFY(m_chain->ledger.isWhole);
    // What waits at the site comes until nothing more does.
    const auto isQuiet = [this] {
        const auto before = m_chain->record.all().size();
        QTest::qWait(kQuietMs);
        return m_chain->bridge.isConnected() && m_chain->record.all().size() == before;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isQuiet(), kPatienceMs);
}

void TestBridge::losesNothing()
{
    begin(kSaving);
    dropBridge();
    killCentre();
    restartSiteBroker();
    finish();
    Audit audit(m_chain->ledger.taken);
    audit.checkFirsts("centre", m_chain->record.all());
    QVERIFY2(audit.faults().isEmpty(), qPrintable(audit.faults().join(QLatin1Char('\n'))));
    qInfo("%d changes, %d messages at the centre", int(m_chain->ledger.taken.size()),
          int(m_chain->record.all().size()));
}

void TestBridge::countsWhatAKillCosts_data()
{
    QTest::addColumn<QByteArray>("saving");
    QTest::addColumn<int>("mostMs");
    QTest::newRow("saved each second") << QByteArray(kSaving) << 3000;
    QTest::newRow("saved each half hour, as usual") << QByteArray() << 60000;
}

// What the broker at the site has confirmed leaves the ledger, and waits there for the bridge.
void TestBridge::countsWhatAKillCosts()
{
    QFETCH(QByteArray, saving);
    QFETCH(int, mostMs);
    begin(saving);
    m_chain->bridge.setRefusing(true);
    QTest::qWait(4000);
    const qint64 killMs = nowMs();
    m_chain->siteBroker.kill();
    QVERIFY(m_chain->siteBroker.restart());
    m_chain->bridge.setRefusing(false);
    finish();
    QSet<QByteArray> seen;
    for (const Told &told : m_chain->record.all()) {
        seen.insert(told.key());
    }
    qint64 oldestMs = killMs;
    int lost = 0;
    for (const Told &told : qAsConst(m_chain->ledger.taken)) {
        if (!seen.contains(told.key())) {
            ++lost;
            oldestMs = std::min(oldestMs, timeOf(told));
        }
    }
    qInfo("%d changes are lost, of the last %lld ms before the kill", lost, killMs - oldestMs);
    QVERIFY2(killMs - oldestMs < mostMs, "more is lost than the broker had not saved");
}

QTEST_GUILESS_MAIN(TestBridge)
#include "test_bridge.moc"
