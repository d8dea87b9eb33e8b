#include "gateway/status/metrics.h"
#include "gateway/support/prometheus_check.h"
#include "gateway/support/snapshots.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QtTest>

using namespace cnet::gateway;

/** The numbers for Prometheus: their form, their customs, and that they are the right ones. */
class TestMetrics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_text = metricsText(someSnapshot(), usage(), 102500); }
    void keepsToTheFormat();
    void pleasesPromtool();
    void tells_data();
    void tells();
    void leavesOutWhatIsNotKnown();
    void hasWhatTheBoardShows();

private:
    static ProcessUsage usage() { return {12.5, 1000000, 2000000, 17}; }
    bool has(const QByteArray &line) const { return ('\n' + m_text).contains('\n' + line + '\n'); }

    QByteArray m_text;
};

void TestMetrics::keepsToTheFormat()
{
    PrometheusCheck check;
    QCOMPARE(check.faultOf(m_text), QString());
    QVERIFY(check.names().size() > 30);
    for (const char *wrong :
         {"a 1\n", "# TYPE a gauge\na 1\n", "# HELP a A.\n# TYPE a gauge\nb 1\n",
          "# HELP a A.\n# TYPE a gauge\na 1\na 1\n", "# HELP a_ms A.\n# TYPE a_ms gauge\na_ms 1\n",
          "# HELP a A.\n# TYPE a counter\na 1\n", "# HELP a A.\n# TYPE a gauge\na 1"}) {
        QVERIFY2(!PrometheusCheck().faultOf(wrong).isEmpty(), wrong);
    }
}

void TestMetrics::pleasesPromtool()
{
    const QString tool = QStandardPaths::findExecutable(QLatin1String("promtool"));
    if (tool.isEmpty()) {
        QSKIP("promtool is not installed; the form is checked without it");
    }
    QProcess process;
    process.start(tool, {QLatin1String("check"), QLatin1String("metrics")});
    process.write(m_text);
    process.closeWriteChannel();
    QVERIFY(process.waitForFinished(20000));
    const QByteArray said = process.readAllStandardError() + process.readAllStandardOutput();
    QVERIFY2(process.exitCode() == 0 && said.isEmpty(), said.constData());
}

void TestMetrics::tells_data()
{
    QTest::addColumn<QByteArray>("line");
    const auto row = [](const char *line) { QTest::newRow(line) << QByteArray(line); };
    row("cnet_gateway_snapshot_age_seconds 2.5");
    row("process_start_time_seconds 1700000000.5");
    row("process_cpu_seconds_total 12.5");
    row("process_resident_memory_bytes 1000000");
    row("process_open_fds 17");
    row("cnet_gateway_line_up{line=\"press\"} 1");
    row("cnet_gateway_line_up{line=\"oven \\\"\xc3\xb6\\\"\\\\\\n\"} 0");
    row("cnet_gateway_line_rounds_total{line=\"press\"} 17");
    row("cnet_gateway_line_changes_total{line=\"press\"} 4711");
    row("cnet_gateway_line_sent_bytes_total{line=\"press\"} 12345");
    row("cnet_gateway_line_received_bytes_total{line=\"press\"} 54321");
    row("cnet_gateway_line_load_ratio{line=\"press\"} 0.625");
    row("cnet_gateway_station_up{line=\"press\",station=\"1\"} 1");
    row("cnet_gateway_station_up{line=\"press\",station=\"31\"} 0");
    row("cnet_gateway_station_requests_total{line=\"press\",station=\"1\"} 1000");
    row("cnet_gateway_station_answers_total{line=\"press\",station=\"1\"} 990");
    row("cnet_gateway_station_repetitions_total{line=\"press\",station=\"1\"} 7");
    row("cnet_gateway_station_errors_total{line=\"press\",station=\"1\",kind=\"no_answer\"} 5");
    row("cnet_gateway_station_errors_total{line=\"press\",station=\"1\",kind=\"bad_check\"} 2");
    row("cnet_gateway_station_errors_total{line=\"press\",station=\"1\",kind=\"unusable\"} 1");
    row("cnet_gateway_station_errors_total{line=\"press\",station=\"1\",kind=\"refused\"} 1");
    row("cnet_gateway_station_errors_total{line=\"press\",station=\"1\",kind=\"late\"} 4");
    const QByteArray times = "cnet_gateway_station_response_seconds";
    row(times + "_bucket{line=\"press\",station=\"1\",le=\"0.004096\"} 1");
    row(times + "_bucket{line=\"press\",station=\"1\",le=\"0.008192\"} 2");
    row(times + "_bucket{line=\"press\",station=\"1\",le=\"4.194304\"} 3");
    row(times + "_bucket{line=\"press\",station=\"1\",le=\"+Inf\"} 4");
    row(times + "_sum{line=\"press\",station=\"1\"} 5.017");
    row(times + "_count{line=\"press\",station=\"1\"} 4");
    row("cnet_gateway_ledger_up 1");
    row("cnet_gateway_ledger_bytes 90000");
    row("cnet_gateway_ledger_bytes_limit 1073741824");
    row("cnet_gateway_ledger_oldest_seconds 90.5");
    row("cnet_gateway_ledger_left_seconds 9000");
    row("cnet_gateway_sink_ready{sink=\"history\"} 1");
    row("cnet_gateway_sink_ready{sink=\"broker\"} 0");
    row("cnet_gateway_sink_values_total{sink=\"history\"} 4711");
    row("cnet_gateway_sink_dropped_values_total{sink=\"broker\"} 100");
    row("cnet_gateway_sink_waiting_batches{sink=\"broker\"} 12");
    row("cnet_gateway_sink_waiting_seconds{sink=\"broker\"} 90.5");
}

void TestMetrics::tells()
{
    QFETCH(QByteArray, line);
    QVERIFY2(has(line), m_text.constData());
}

void TestMetrics::leavesOutWhatIsNotKnown()
{
    QVERIFY(!m_text.contains("load_ratio{line=\"oven"));
    Snapshot snapshot = someSnapshot();
    snapshot.recorder.ledger.hoursLeft.reset();
    const QByteArray text = metricsText(snapshot, usage(), 100000);
    QVERIFY(!text.contains("\ncnet_gateway_ledger_left_seconds "));
    QCOMPARE(PrometheusCheck().faultOf(text), QString());
}

void TestMetrics::hasWhatTheBoardShows()
{
    QFile file(QLatin1String(GRAFANA_BOARD));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString board = QString::fromUtf8(file.readAll());
    static const QRegularExpression name(
        QLatin1String("\\b((?:cnet_gateway|process)_[a-z_]+?)(_bucket|_sum|_count)?\\b"));
    PrometheusCheck check;
    QCOMPARE(check.faultOf(m_text), QString());
    int found = 0;
    for (auto it = name.globalMatch(board); it.hasNext(); ++found) {
        const QString metric = it.next().captured(1);
        QVERIFY2(check.names().contains(metric), qPrintable(metric));
    }
    QVERIFY(found >= 15);
}

QTEST_APPLESS_MAIN(TestMetrics)
#include "test_metrics.moc"
