#include "gateway/postgresql/history_sql.h"
#include "gateway/support/changes.h"

#include <QtTest>

using namespace cnet::gateway;

/** Texts and names within statements. What the statements do is tested with a server. */
class TestHistorySql : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void quotes_data();
    void quotes();
    void staysInItsSchema();
    void keepsToItsTexts();
};

void TestHistorySql::quotes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("asText");
    QTest::addColumn<QByteArray>("asName");

    const auto row = [](const char *text, const char *asText, const char *asName) {
        QTest::newRow(text) << QString::fromUtf8(text) << QByteArray(asText) << QByteArray(asName);
    };
    row("plain", "'plain'", "\"plain\"");
    row("it's", "'it''s'", "\"it's\"");
    row("a\"b", "'a\"b'", "\"a\"\"b\"");
    row("\\'", "'\\'''", "\"\\'\"");
    row("°C", "'°C'", "\"°C\"");
    QTest::newRow("zero") << QString::fromLatin1("a\0b", 3) << QByteArray("'ab'")
                          << QByteArray("\"ab\"");
}

void TestHistorySql::quotes()
{
    QFETCH(QString, text);
    QTEST(sqlText(text), "asText");
    QTEST(sqlName(text), "asName");
}

void TestHistorySql::staysInItsSchema()
{
    const HistorySql sql(QLatin1String("plant"));
    QVERIFY(!sql.createTables().contains('@'));
    QVERIFY(sql.createTables().contains("nextval('\"plant\".change_id')"));
    QVERIFY(sql.copyAndCommit().startsWith("COPY \"plant\".change ("));
    QCOMPARE(sql.makeMonth({2026, 12}).count("change_2026_12"), 3);
    QVERIFY(sql.makeMonth({2026, 12})
                .contains("FROM ('2026-12-01 00:00:00+00') TO ('2027-01-01 00:00:00+00')"));
}

void TestHistorySql::keepsToItsTexts()
{
    const HistorySql sql(QLatin1String("plant"));
    auto source = sourceOf("@.taken'; DROP TABLE x; --");
    source->unit = QLatin1String("%1");
    const QByteArray statement = sql.addTags({source.get()});
    QVERIFY(statement.contains(",'@.taken''; DROP TABLE x; --','%1','u16',1,0)"));
    QVERIFY(sql.beginBatch(QLatin1String("a@'b"), 1, 2).endsWith("ledger = 'a@''b'"));
}

QTEST_APPLESS_MAIN(TestHistorySql)
#include "test_history_sql.moc"
