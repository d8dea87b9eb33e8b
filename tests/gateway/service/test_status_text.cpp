#include "gateway/service/status_text.h"
#include "gateway/status/health.h"
#include "gateway/support/snapshots.h"

#include <QJsonDocument>
#include <QtTest>

using namespace cnet::gateway;

/** The gateway's status for people. */
class TestStatusText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsAll();
    void refusesWhatIsNone_data();
    void refusesWhatIsNone();
};

void TestStatusText::showsAll()
{
    const QByteArray json = QJsonDocument(statusJson(someSnapshot(), 100500)).toJson();
    const QStringList lines = statusTextOf(json).value_or(QString()).split(QLatin1Char('\n'));
    const auto has = [&lines](const char *line) {
        QVERIFY2(lines.contains(QString::fromUtf8(line)),
                 qPrintable(lines.join(QLatin1Char('\n'))));
    };
    has("cnet-gateway 1.2.3, runs since 2023-11-14T22:13:20.500Z");
    has("press       yes   62.5 %  17      4711");
    has("oven \"\xc3\xb6\"\\?  no    -       0       0        connection refused");
    has("press/31  silent   1000      990      7         5          3         1        1254.3 ms  "
        "5000.0 ms");
    has("sink     ready  values  values/s  waiting  oldest  dropped  trouble");
    has("history  yes    4711    12.3      0        0.0 s   0");
    has("broker   no     4000    0.0       12       2 min   100      no route");
    has("ledger: 12 batches with 711 changes, 90.0 kB of 1073.7 MB; room for 2.5 hours");
    has("  line press: station 31: silent");
    has("health: good");
}

void TestStatusText::refusesWhatIsNone_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no object") << QByteArray("[]");
    QTest::newRow("another one") << QByteArray("{\"status\":\"good\"}");
    QTest::newRow("cut off") << QByteArray("{\"lines\":[");
}

void TestStatusText::refusesWhatIsNone()
{
    QFETCH(QByteArray, json);
    QVERIFY(!statusTextOf(json));
    // What is missing or of another type does no harm.
    QVERIFY(statusTextOf("{\"lines\":[1,{}],\"sinks\":7,\"ledger\":[],\"health\":null}"));
}

QTEST_APPLESS_MAIN(TestStatusText)
#include "test_status_text.moc"
