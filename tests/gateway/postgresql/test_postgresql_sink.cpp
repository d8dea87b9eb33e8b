#include "gateway/support/postgres_sink.h"

#include <QtTest>

#include <limits>

using namespace cnet;
using namespace cnet::gateway;

Q_DECLARE_METATYPE(cnet::Scalar)

/** What a PostgreSQL server has of what the sink was handed. */
class TestPostgresqlSink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY2(m_fixture.make(), "no PostgreSQL server"); }
    void storesAValue_data();
    void storesAValue();
    void storesWhatItBelongsTo();
    void storesManyAtOnce();
    void storesABatchOnce();
    void storesNothingBesideAnother();
    void tellsLedgersApart();
    void triesAgainAfterADeadlock();
    void makesMonths();
    void dropsOldMonths();
    void keepsMonthsThatItMayNotDrop();
    void changesAUnit();
    void worksWithTablesOfOthers();

private:
    PostgresServer &server() { return m_fixture.server; }
    QString counted(const char *schema) { return all(schema, "count(*)"); }
    QString all(const QByteArray &schema, const QByteArray &what)
    {
        return server().value("SELECT " + what + " FROM " + schema + ".history");
    }

    PostgresFixture m_fixture;
};

void TestPostgresqlSink::storesAValue_data()
{
    QTest::addColumn<Scalar>("value");
    QTest::addColumn<QStringList>("fields");

    const auto row = [](const char *title, const Scalar &value, const char *fields) {
        QTest::newRow(title) << value << QString::fromUtf8(fields).split(QLatin1Char('|'));
    };
    row("nothing", Scalar(), "|||");
    row("truth", true, "true|||t");
    row("whole", qint64(-5), "-5|-5||");
    row("beyond 2^53", qint64(9007199254740993), "9007199254740993|9007199254740993||");
    row("beyond 2^63", std::numeric_limits<quint64>::max(),
        "18446744073709551615|18446744073709551615||");
    row("fraction", 0.1, "0.1|0.1||");
    row("small", 5e-324, "");
    row("text", QString::fromUtf8("'22\t°C\\"), "'22\t°C\\||'22\t°C\\|");
}

void TestPostgresqlSink::storesAValue()
{
    QFETCH(Scalar, value);
    QFETCH(QStringList, fields);
    HeardSink heard(m_fixture.settings());
    QVERIFY(heard.begin(QTest::currentDataTag()));
    SinkBatch batch;
    batch.number = 1;
    batch.changes = {changeOf(sourceOf(QTest::currentDataTag()), value, 1793491200007)};
    QVERIFY2(heard.store({batch}), qPrintable(heard.failures.join(QLatin1Char('\n'))));
    const QByteArray where =
        " FROM cnet.history WHERE tag = '" + QByteArray(QTest::currentDataTag()) + '\'';
    if (fields.size() == 4) {
        QCOMPARE(server().sql("SELECT value, number, text, truth" + where).value(0), fields);
    }
    if (const auto *fraction = std::get_if<double>(&value)) {
        QCOMPARE(server().value("SELECT number::float8" + where).toDouble(), *fraction);
    }
}

void TestPostgresqlSink::storesWhatItBelongsTo()
{
    auto source = sourceOf("mould.zones[2]");
    source->line = QString::fromUtf8("Presse 'ä'");
    source->station = 7;
    source->unit = QString::fromUtf8("°C");
    Change change = changeOf(source, qint64(5), 1793491200987);
    change.quality = Quality::NoAnswer;
    change.cause = QLatin1String("time-out");
    HeardSink heard(m_fixture.settings("belongs"));
    QVERIFY(heard.begin());
    SinkBatch batch;
    batch.number = 1;
    batch.changes = {change};
    QVERIFY(heard.store({batch}));
    QCOMPARE(server().value("SELECT concat_ws('|', to_char(time AT TIME ZONE 'UTC',"
                            " 'YYYY-MM-DD HH24:MI:SS.MS'), line, station, tag, unit, quality,"
                            " reason) FROM belongs.history"),
             QString::fromUtf8("2026-11-01 00:00:00.987|Presse 'ä'|7|mould.zones[2]|°C|no "
                               "answer|time-out"));
    QCOMPARE(heard.notices, QStringList({QLatin1String("fsync is off at the server: a power cut "
                                                       "there may cost the database")}));
}

void TestPostgresqlSink::storesManyAtOnce()
{
    QVector<SinkBatch> batches;
    qint64 value = 0;
    for (int number = 1; number <= 40; ++number) {
        SinkBatch batch;
        batch.number = number;
        for (int i = 0; i < 1500; ++i) {
            const QByteArray tag = "t" + QByteArray::number(i);
            batch.changes.append(changeOf(sourceOf(tag.constData()), ++value, 1793491200000));
        }
        batches.append(batch);
    }
    HeardSink heard(m_fixture.settings("many"));
    QVERIFY(heard.begin());
    QVERIFY(heard.store(batches));
    QCOMPARE(counted("many"), QLatin1String("60000"));
    QCOMPARE(server().value("SELECT count(*) FROM many.tag"), QLatin1String("1500"));
    // In the order in which they came.
    QCOMPARE(server().value("SELECT count(*) FROM (SELECT number - lag(number) OVER (ORDER BY id)"
                            " AS step FROM many.change) AS steps WHERE step <> 1"),
             QLatin1String("0"));
}

void TestPostgresqlSink::storesABatchOnce()
{
    HeardSink first(m_fixture.settings("once"));
    QVERIFY(first.begin());
    QVERIFY(first.store(numberedBatches(1, 3)));
    HeardSink second(m_fixture.settings("once"));
    QVERIFY(second.begin());
    QVERIFY(second.store(numberedBatches(2, 2))); // as if it had never been heard of
    QVERIFY(second.store(numberedBatches(3, 3)));
    QCOMPARE(all("once", "string_agg(number::text, ' ' ORDER BY id)"), QLatin1String("1 2 3 4 5"));
}

void TestPostgresqlSink::storesNothingBesideAnother()
{
    HeardSink heard(m_fixture.settings("beside"));
    QVERIFY(heard.begin());
    QVERIFY(heard.store(numberedBatches(1, 1)));
    // A connection that was lost still stores batch 2 when the next one begins.
    QVERIFY(!server().sql("UPDATE beside.taken SET number = 2").isEmpty());
    QVERIFY(!heard.store(numberedBatches(2, 1)));
    QCOMPARE(heard.failures.size(), 1);
    QVERIFY(heard.failures.first().endsWith(QLatin1String("stored from the same ledger")));
    QCOMPARE(counted("beside"), QLatin1String("1"));
    QVERIFY(heard.begin());
    QVERIFY(heard.store(numberedBatches(2, 2)));
    QCOMPARE(counted("beside"), QLatin1String("2"));
}

void TestPostgresqlSink::tellsLedgersApart()
{
    HeardSink first(m_fixture.settings("apart"));
    HeardSink second(m_fixture.settings("apart"));
    QVERIFY(first.begin("one"));
    QVERIFY(second.begin("two's"));
    QVERIFY(first.store(numberedBatches(1, 2)));
    QVERIFY(second.store(numberedBatches(1, 2)));
    QCOMPARE(counted("apart"), QLatin1String("4"));
}

void TestPostgresqlSink::triesAgainAfterADeadlock()
{
    HeardSink heard(m_fixture.settings("deadlock"));
    QVERIFY(heard.begin());
    QVERIFY(!server()
                 .sql("CREATE SEQUENCE deadlock.tries; GRANT ALL ON deadlock.tries TO gateway;"
                      "CREATE FUNCTION deadlock.refuse() RETURNS trigger LANGUAGE plpgsql AS $$"
                      " BEGIN IF nextval('deadlock.tries') < 4 THEN RAISE EXCEPTION 'deadlock'"
                      " USING ERRCODE = '40P01'; END IF; RETURN NEW; END $$;"
                      "CREATE TRIGGER refuse BEFORE UPDATE ON deadlock.taken FOR EACH ROW"
                      " EXECUTE FUNCTION deadlock.refuse()")
                 .isEmpty());
    QVERIFY(heard.store(numberedBatches(1, 3)));
    QCOMPARE(heard.failures, QStringList());
    QCOMPARE(counted("deadlock"), QLatin1String("3"));
    QCOMPARE(server().value("SELECT last_value FROM deadlock.tries"), QLatin1String("4"));
}

void TestPostgresqlSink::makesMonths()
{
    HeardSink heard(m_fixture.settings("months"));
    QVERIFY(heard.begin());
    SinkBatch batch;
    batch.number = 1;
    const auto source = sourceOf("a");
    batch.changes = {changeOf(source, qint64(1), 1793491199999),
                     changeOf(source, qint64(2), 1793491200000), changeOf(source, qint64(3), 0)};
    QVERIFY(heard.store({batch}));
    QCOMPARE(server().value("SELECT string_agg(tableoid::regclass || '=' || number, ' ' ORDER BY"
                            " number) FROM months.change"),
             QLatin1String("months.change_2026_10=1 months.change_2026_11=2 "
                           "months.change_1970_01=3"));
}

void TestPostgresqlSink::dropsOldMonths()
{
    PostgresqlSettings settings = m_fixture.settings("old");
    settings.ageMs = 24LL * 60 * 60 * 1000;
    const qint64 nowMs = SystemClock::instance().wallMs();
    SinkBatch batch;
    batch.number = 1;
    batch.changes = {changeOf(sourceOf("a"), qint64(1), nowMs - 40 * settings.ageMs),
                     changeOf(sourceOf("a"), qint64(2), nowMs),
                     changeOf(sourceOf("a"), qint64(3), 0)};
    HeardSink heard(settings);
    QVERIFY(heard.begin());
    QVERIFY(heard.store({batch}));
    QTRY_COMPARE(all("old", "string_agg(number::text, ' ')"), QLatin1String("2"));
    // It goes on behind it.
    batch.number = 2;
    QVERIFY(heard.store({batch}));
    QCOMPARE(heard.failures, QStringList());
}

void TestPostgresqlSink::keepsMonthsThatItMayNotDrop()
{
    PostgresqlSettings settings = m_fixture.settings("kept");
    HeardSink first(settings);
    QVERIFY(first.begin());
    SinkBatch batch;
    batch.number = 1;
    batch.changes = {changeOf(sourceOf("a"), qint64(1), 0)};
    QVERIFY(first.store({batch}));
    QVERIFY(!server()
                 .sql("ALTER TABLE kept.change_1970_01 OWNER TO admin;"
                      " ALTER TABLE kept.change OWNER TO admin; ALTER SCHEMA kept OWNER TO admin;"
                      " GRANT ALL ON SCHEMA kept TO gateway;"
                      " GRANT ALL ON kept.change TO gateway")
                 .isEmpty());
    settings.ageMs = 24LL * 60 * 60 * 1000;
    HeardSink second(settings);
    QVERIFY(second.begin());
    batch.number = 2;
    QVERIFY(second.store({batch}));
    QTRY_COMPARE(second.notices.size(), 2);
    QVERIFY(second.notices.last().startsWith(QLatin1String("old months stay: the user lacks a")));
    batch.number = 3;
    QVERIFY(second.store({batch}));
    QCOMPARE(counted("kept"), QLatin1String("3"));
}

void TestPostgresqlSink::changesAUnit()
{
    HeardSink heard(m_fixture.settings("unit"));
    QVERIFY(heard.begin());
    QVERIFY(heard.store(numberedBatches(1, 1)));
    auto source = sourceOf("counter");
    source->unit = QLatin1String("bar");
    SinkBatch batch;
    batch.number = 2;
    batch.changes = {changeOf(source, qint64(2), 1793491200000)};
    QVERIFY(heard.store({batch}));
    QCOMPARE(all("unit", "string_agg(number || unit, ' ' ORDER BY id)"),
             QLatin1String("1bar 2bar"));
}

void TestPostgresqlSink::worksWithTablesOfOthers()
{
    QVERIFY(HeardSink(m_fixture.settings("others")).begin());
    QVERIFY(!server()
                 .sql("CREATE TABLE others.rest PARTITION OF others.change DEFAULT;"
                      " GRANT ALL ON others.rest TO gateway")
                 .isEmpty());
    PostgresqlSettings settings = m_fixture.settings("others");
    settings.isCreating = false;
    HeardSink heard(settings);
    QVERIFY(heard.begin());
    QVERIFY(heard.store(numberedBatches(1, 2)));
    QCOMPARE(server().value("SELECT count(*) FROM others.rest"), QLatin1String("2"));
}

QTEST_GUILESS_MAIN(TestPostgresqlSink)
#include "test_postgresql_sink.moc"
