#include "gateway/postgresql/month.h"

#include <QtTest>

#include <limits>

using namespace cnet::gateway;

/** Which month a moment belongs to. */
class TestMonth : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheMonth_data();
    void findsTheMonth();
};

void TestMonth::findsTheMonth_data()
{
    QTest::addColumn<qint64>("ms");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<QByteArray>("nextStart");

    const auto row = [](const char *title, qint64 ms, const char *name, const char *start,
                        const char *nextStart) {
        QTest::newRow(title) << ms << QByteArray(name) << QByteArray(start)
                             << QByteArray(nextStart);
    };
    row("first moment", 1793491200000, "2026_11", "2026-11-01 00:00:00+00",
        "2026-12-01 00:00:00+00");
    row("last moment before", 1793491199999, "2026_10", "2026-10-01 00:00:00+00",
        "2026-11-01 00:00:00+00");
    row("december", 1798761599999, "2026_12", "2026-12-01 00:00:00+00", "2027-01-01 00:00:00+00");
    row("no clock", 0, "1970_01", "1970-01-01 00:00:00+00", "1970-02-01 00:00:00+00");
    row("before time", -1, "1970_01", "1970-01-01 00:00:00+00", "1970-02-01 00:00:00+00");
    row("beyond time", std::numeric_limits<qint64>::max(), "9999_12", "9999-12-01 00:00:00+00",
        "10000-01-01 00:00:00+00");
}

void TestMonth::findsTheMonth()
{
    QFETCH(qint64, ms);
    const Month month = monthOf(ms);
    QTEST(month.name(), "name");
    QTEST(month.start(), "start");
    QTEST(month.next().start(), "nextStart");
    QVERIFY(month < month.next() && !(month.next() < month) && !(month < month));
}

QTEST_APPLESS_MAIN(TestMonth)
#include "test_month.moc"
