#include "gateway/status/prometheus_text.h"

#include <QtTest>

#include <limits>

using namespace cnet::gateway;

/** Names, labels and numbers as Prometheus reads them. */
class TestPrometheusText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesNumbers_data();
    void writesNumbers();
    void escapesLabels();
};

void TestPrometheusText::writesNumbers_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("zero") << 0.0 << QByteArray("0");
    QTest::newRow("a counter of years") << 123456789012345.0 << QByteArray("123456789012345");
    QTest::newRow("a share") << 0.625 << QByteArray("0.625");
    QTest::newRow("below zero") << -1.5 << QByteArray("-1.5");
    QTest::newRow("too great for a whole one") << 1e300 << QByteArray("1e+300");
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << QByteArray("+Inf");
}

void TestPrometheusText::writesNumbers()
{
    QFETCH(double, number);
    QFETCH(QByteArray, text);
    PrometheusText written;
    written.begin("some_bytes", "gauge", "Bytes.");
    written.add({}, number);
    QCOMPARE(written.text(),
             "# HELP some_bytes Bytes.\n# TYPE some_bytes gauge\nsome_bytes " + text + '\n');
}

void TestPrometheusText::escapesLabels()
{
    PrometheusText written;
    written.begin("a", "histogram", "A.");
    written.add({{"line", QString::fromUtf8("\xc3\xb6\"\\\n")}, {"le", QLatin1String("1")}}, 2,
                "_bucket");
    QCOMPARE(written.text().split('\n').value(2),
             QByteArray("a_bucket{line=\"\xc3\xb6\\\"\\\\\\n\",le=\"1\"} 2"));
}

QTEST_APPLESS_MAIN(TestPrometheusText)
#include "test_prometheus_text.moc"
