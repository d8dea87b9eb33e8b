#include "gateway/delivery/sink_feed.h"
#include "gateway/support/postgres_sink.h"

#include "support/random.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** A server that does not do what it should: one clear line, and nothing is lost or stored twice.
 */
class TestPostgresqlTrouble : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY2(m_fixture.make(), "no PostgreSQL server"); }
    void saysWhatIsWrong_data();
    void saysWhatIsWrong();
    void saysThatAPasswordIsMissing();
    void saysThatNobodyAnswers();
    void checksTheCertificate();
    void saysThatTheDiskIsFull();
    void saysWhoHoldsALock();
    void hearsThatTheServerEnds();
    void saysThatCommitsDoNotWait();
    void losesNothingWhenTheServerIsKilled();

private:
    static QString told(const QString &reason, int port)
    {
        return QString::fromLatin1("cannot store in plant at 127.0.0.1:%1: %2")
            .arg(port)
            .arg(reason);
    }
    QString complaintOf(const PostgresqlSettings &settings)
    {
        HeardSink heard(settings);
        return heard.begin() ? QString() : heard.failures.value(0);
    }

    PostgresFixture m_fixture;
};

void TestPostgresqlTrouble::saysWhatIsWrong_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("told");

    const auto row = [](const char *what, const char *told) {
        QTest::newRow(what) << QString::fromLatin1(what) << QString::fromLatin1(told);
    };
    row("user", "cannot store in plant at 127.0.0.1:%1: password authentication failed for user "
                "\"nobody\"");
    row("database", "cannot store in other at 127.0.0.1:%1: database \"other\" does not exist");
    row("host", "cannot store in plant at no.such.host.invalid:%1: host no.such.host.invalid: "
                "Host not found");
    row("folder", "cannot store in plant at /nowhere: No such file or directory");
    row("schema", "cannot store in plant at 127.0.0.1:%1: there is no table cnet.taken; create = "
                  "true makes it");
    row("right", "cannot store in postgres at 127.0.0.1:%1: the user lacks a right: permission "
                 "denied for database postgres");
    row("encoding", "cannot store in latin at 127.0.0.1:%1: the database takes LATIN1 only, and "
                    "needs to take UTF8");
    row("password file", "cannot store in plant at 127.0.0.1:%1: cannot read the password in "
                         "/nowhere: No such file or directory");
    row("credential", "cannot store in plant at 127.0.0.1:%1: the service manager hands over no "
                      "credential gateway");
}

void TestPostgresqlTrouble::saysWhatIsWrong()
{
    QFETCH(QString, what);
    QFETCH(QString, told);
    PostgresqlSettings settings = m_fixture.settings();
    if (what == QLatin1String("user")) {
        settings.user = QLatin1String("nobody");
    } else if (what == QLatin1String("database")) {
        settings.database = QLatin1String("other");
    } else if (what == QLatin1String("host")) {
        settings.host = QLatin1String("no.such.host.invalid");
    } else if (what == QLatin1String("folder")) {
        settings.host = QLatin1String("/nowhere");
    } else if (what == QLatin1String("schema")) {
        settings.isCreating = false;
    } else if (what == QLatin1String("right")) {
        settings.database = QLatin1String("postgres");
    } else if (what == QLatin1String("encoding")) {
        settings.database = QLatin1String("latin");
        m_fixture.server.sql("CREATE DATABASE latin OWNER gateway ENCODING 'LATIN1' TEMPLATE "
                             "template0");
    } else if (what == QLatin1String("password file")) {
        settings.password.file = QLatin1String("/nowhere");
    } else {
        settings.password = {QString(), QLatin1String("gateway")};
    }
    const QString expected = told.contains(QLatin1String("%1")) ? told.arg(settings.port) : told;
    QCOMPARE(complaintOf(settings), expected);
}

void TestPostgresqlTrouble::saysThatAPasswordIsMissing()
{
    PostgresqlSettings settings = m_fixture.settings();
    settings.password.file.clear();
    QCOMPARE(complaintOf(settings),
             told(QLatin1String("fe_sendauth: no password supplied"), settings.port));
    QVERIFY(m_fixture.writePassword("secret\n"));
    const QString wrong = complaintOf(m_fixture.settings());
    QVERIFY(m_fixture.writePassword("right\n"));
    QCOMPARE(wrong, told(QLatin1String("password authentication failed for user \"gateway\""),
                         settings.port));
}

void TestPostgresqlTrouble::saysThatNobodyAnswers()
{
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    PostgresqlSettings settings = m_fixture.settings();
    settings.port = silent.serverPort();
    settings.timeoutMs = 300;
    QCOMPARE(complaintOf(settings),
             told(QLatin1String("the server does not answer within 300ms"), settings.port));
    silent.close();
    QCOMPARE(complaintOf(settings), told(QLatin1String("Connection refused"), settings.port));
}

void TestPostgresqlTrouble::checksTheCertificate()
{
    PostgresqlSettings settings = m_fixture.settings();
    settings.sslMode = QLatin1String("verify-full");
    settings.rootCertificate = m_fixture.server.certificate();
    QCOMPARE(complaintOf(settings),
             told(QLatin1String("server certificate for \"localhost\" does not match host name "
                                "\"127.0.0.1\""),
                  settings.port));
    settings.sslMode = QLatin1String("verify-ca");
    QCOMPARE(complaintOf(settings), QString());
    settings.rootCertificate = QLatin1String("/etc/ssl/certs/ca-certificates.crt");
    QCOMPARE(complaintOf(settings),
             told(QLatin1String("SSL error: certificate verify failed"), settings.port));
}

void TestPostgresqlTrouble::saysThatTheDiskIsFull()
{
    HeardSink heard(m_fixture.settings("nodisk"));
    QVERIFY(heard.begin());
    QVERIFY(!m_fixture.server
                 .sql("CREATE FUNCTION nodisk.refuse() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN"
                      " RAISE EXCEPTION 'could not extend file \"17\"' USING ERRCODE = '53100';"
                      " END $$; CREATE TRIGGER refuse AFTER INSERT ON nodisk.change FOR EACH ROW"
                      " EXECUTE FUNCTION nodisk.refuse()")
                 .isEmpty());
    QVERIFY(!heard.store(numberedBatches(1, 3)));
    QCOMPARE(heard.failures, QStringList({told(QLatin1String("the server has no room on its disk"),
                                               m_fixture.server.port())}));
    QVERIFY(!m_fixture.server.sql("DROP TRIGGER refuse ON nodisk.change").isEmpty());
    QVERIFY(heard.begin());
    QVERIFY(heard.store(numberedBatches(1, 3)));
    QCOMPARE(m_fixture.server.value("SELECT count(*) FROM nodisk.history"), QLatin1String("3"));
}

void TestPostgresqlTrouble::saysWhoHoldsALock()
{
    PostgresqlSettings settings = m_fixture.settings("locked");
    settings.timeoutMs = 2000;
    HeardSink heard(settings);
    QVERIFY(heard.begin());
    PGconn *other = PQconnectdb(m_fixture.server.conninfo("plant").constData());
    PQclear(PQexec(other, "BEGIN; LOCK TABLE locked.change"));
    const bool isStored = heard.store(numberedBatches(1, 1));
    PQfinish(other);
    QVERIFY(!isStored);
    QCOMPARE(heard.failures,
             QStringList({told(QLatin1String("somebody holds a lock on a table: canceling "
                                             "statement due to lock timeout"),
                               m_fixture.server.port())}));
}

void TestPostgresqlTrouble::hearsThatTheServerEnds()
{
    PostgresqlSettings settings = m_fixture.settings("ends");
    settings.sslMode = QLatin1String("disable");
    HeardSink heard(settings);
    QVERIFY(heard.begin());
    QVERIFY(!m_fixture.server
                 .sql("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE"
                      " application_name = 'cnet-gateway'")
                 .isEmpty());
    QTRY_COMPARE(heard.failures, QStringList({told(QLatin1String("server closed the connection "
                                                                 "unexpectedly"),
                                                   m_fixture.server.port())}));
}

void TestPostgresqlTrouble::saysThatCommitsDoNotWait()
{
    QVERIFY(!m_fixture.server.sql("ALTER SYSTEM SET fsync = on").isEmpty());
    QVERIFY(!m_fixture.server.sql("SELECT pg_reload_conf()").isEmpty());
    QTRY_COMPARE(m_fixture.server.value("SHOW fsync"), QLatin1String("on"));
    QVERIFY(!m_fixture.server.sql("ALTER ROLE gateway SET synchronous_commit = off").isEmpty());
    HeardSink heard(m_fixture.settings("waits"));
    const bool isReady = heard.begin() && heard.begin();
    QVERIFY(!m_fixture.server.sql("ALTER ROLE gateway RESET synchronous_commit").isEmpty());
    QVERIFY(isReady);
    QCOMPARE(
        heard.notices, // told once
        QStringList({QLatin1String("synchronous_commit is off at the server: a crash there may "
                                   "cost what it said was stored")}));
}

void TestPostgresqlTrouble::losesNothingWhenTheServerIsKilled()
{
    const QString name = QLatin1String("db");
    QTemporaryDir folder;
    Clock &clock = SystemClock::instance();
    Ledger ledger(clock);
    QVERIFY(ledger
                .open(folder.filePath(QLatin1String("ledger")), Database::Durability::Normal,
                      LedgerBounds(), {name})
                .isNone());
    QStringList said;
    SinkFeed feed(name, std::make_unique<PostgresqlSink>(m_fixture.settings("killed"), clock),
                  ledger, clock, [&said](const QString &line) { said.append(line); });
    feed.start();
    Random random(7);
    qint64 value = 0;
    for (int round = 0; round < 3; ++round) {
        QVector<LedgerBatch> batches;
        for (int batch = 0; batch < 60; ++batch) {
            QVector<qint64> values;
            for (int i = 0; i < 500; ++i) {
                values.append(++value);
            }
            batches.append(batchWith(values));
        }
        const qint64 before = ledger.confirmed(name);
        QVERIFY(ledger.commit(batches).isNone());
        feed.wake();
        // Some of it is confirmed, and the rest on its way.
        QVERIFY(QTest::qWaitFor([&] { return ledger.confirmed(name) > before; }, 30000));
        QTest::qWait(random.below(30));
        m_fixture.server.kill();
        QVERIFY(m_fixture.server.start());
    }
    const qint64 last = ledger.after(0, 10000).last().number;
    QVERIFY(QTest::qWaitFor([&] { return ledger.confirmed(name) == last; }, 60000));
    QCOMPARE(m_fixture.server
                 .sql("SELECT count(*), min(number), max(number), sum((step <> 1)::int)"
                      " FROM (SELECT number, number - lag(number) OVER (ORDER BY id)"
                      " AS step FROM killed.history) AS steps")
                 .value(0),
             QStringList({QString::number(value), QLatin1String("1"), QString::number(value),
                          QLatin1String("0")}));
    QVERIFY(!said.filter(QLatin1String("works again")).isEmpty());
}

QTEST_GUILESS_MAIN(TestPostgresqlTrouble)
#include "test_postgresql_trouble.moc"
