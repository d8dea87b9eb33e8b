#include "program.h"

#include <QJsonArray>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

/** cnet-panel scan at simulated PLCs, on TCP and on a pseudo-terminal. */
class TestScanProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsStationsOnTcp();
    void searchesForSettings();
    void findsNobody();
    void saysThatThereIsNoLink_data();
    void saysThatThereIsNoLink();
    void endsWhenInterrupted();
};

namespace {

const int kDeviceFailed = 1;
const int kNoLink = 3;

QJsonObject registerOf(const QJsonObject &station, const char *name)
{
    for (const QJsonValue &value : station.value(QLatin1String("registers")).toArray()) {
        if (value.toObject().value(QLatin1String("register")).toString() == QLatin1String(name)) {
            return value.toObject();
        }
    }
    return {};
}

} // namespace

void TestScanProgram::findsStationsOnTcp()
{
    PlcProgram plc;
    QVERIFY(plc.serve({QLatin1String("--tcp"), QLatin1String("0")},
                      {QLatin1String("--model"), QLatin1String("k120s"), QLatin1String("--station"),
                       QLatin1String("2"), QLatin1String("--station"), QLatin1String("4")}));
    Program panel;
    QVERIFY(panel.start(QLatin1String(CNET_PANEL),
                        {QLatin1String("scan"), QLatin1String("--link"),
                         QLatin1String("tcp:") + plc.place(), QLatin1String("--stations"),
                         QLatin1String("1-5"), QLatin1String("--timeout"), QLatin1String("200"),
                         QLatin1String("--format"), QLatin1String("json")}));
    QCOMPARE(panel.exitCode(), 0);
    const QList<QJsonObject> lines = jsonLines(panel.lines());
    QCOMPARE(lines.size(), 3);
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(lines.at(i).value(QLatin1String("station")).toInt(), 2 * i + 2);
        QCOMPARE(registerOf(lines.at(i), "D_W").value(QLatin1String("highest")).toString(),
                 QLatin1String("4999"));
        QCOMPARE(registerOf(lines.at(i), "M_W").value(QLatin1String("highest")).toString(),
                 QLatin1String("191"));
        QVERIFY(registerOf(lines.at(i), "T_W").value(QLatin1String("to_limit")).toBool());
    }
    const QJsonObject &end = lines.at(2);
    QVERIFY(end.value(QLatin1String("complete")).toBool());
    QVERIFY(end.value(QLatin1String("frames")).toInt() <=
            end.value(QLatin1String("most_search_frames")).toInt() +
                2 * end.value(QLatin1String("most_survey_frames")).toInt());
}

void TestScanProgram::searchesForSettings()
{
    QTemporaryDir directory;
    PlcProgram plc;
    QVERIFY(plc.serve({QLatin1String("--pty"), directory.filePath(QLatin1String("plc"))},
                      {QLatin1String("--station"), QLatin1String("3")}));
    Program panel;
    QVERIFY(panel.start(QLatin1String(CNET_PANEL),
                        {QLatin1String("scan"), QLatin1String("--serial"),
                         plc.place() + QLatin1String(",9600,8,EVEN,1"), QLatin1String("--stations"),
                         QLatin1String("2-3"), QLatin1String("--no-registers")}));
    QCOMPARE(panel.exitCode(), 0);
    QCOMPARE(panel.lines().size(), 1);
    const QByteArray expected =
        "station 3 on serial " + plc.place().toLocal8Bit() + ",9600,8,EVEN,1: 1 answer, ";
    QVERIFY2(panel.lines().constFirst().startsWith(expected), panel.lines().constFirst());
    QCOMPARE(panel.errors(), QByteArray("cnet-panel: at most 98 frames to find the stations\n"));
}

void TestScanProgram::findsNobody()
{
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress(QHostAddress::LocalHost), 0));
    Program panel;
    QVERIFY(panel.start(QLatin1String(CNET_PANEL),
                        {QLatin1String("scan"), QLatin1String("--link"),
                         QString::fromLatin1("tcp:127.0.0.1:%1").arg(silent.serverPort()),
                         QLatin1String("--stations"), QLatin1String("7"),
                         QLatin1String("--timeout"), QLatin1String("50")}));
    QCOMPARE(panel.exitCode(), kDeviceFailed);
    QVERIFY(panel.lines().isEmpty());
    QVERIFY2(panel.errors().endsWith("cnet-panel: no station answers\n"), panel.errors());
}

void TestScanProgram::saysThatThereIsNoLink_data()
{
    QTest::addColumn<QStringList>("arguments");
    const auto row = [](const char *name, const char *option, const char *value) {
        QTest::newRow(name) << QStringList{QLatin1String("scan"), QLatin1String(option),
                                           QLatin1String(value)};
    };
    row("nobody at the port", "--link", "tcp:127.0.0.1:1");
    row("no device", "--serial", "/nowhere/tty");
    row("device that is none", "--serial", "/dev/full");
    row("directory", "--serial", "/");
}

void TestScanProgram::saysThatThereIsNoLink()
{
    QFETCH(QStringList, arguments);
    Program panel;
    QVERIFY(panel.start(QLatin1String(CNET_PANEL), arguments));
    QCOMPARE(panel.exitCode(), kNoLink);
    QVERIFY(panel.lines().isEmpty());
    QVERIFY2(panel.errors().contains("cannot open "), panel.errors());
}

void TestScanProgram::endsWhenInterrupted()
{
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress(QHostAddress::LocalHost), 0));
    Program panel;
    QVERIFY(
        panel.start(QLatin1String(CNET_PANEL),
                    {QLatin1String("scan"), QLatin1String("--format=json"), QLatin1String("--link"),
                     QString::fromLatin1("tcp:127.0.0.1:%1").arg(silent.serverPort())}));
    QVERIFY(silent.waitForNewConnection(30000));
    panel.signal(SIGINT);
    QCOMPARE(panel.exitCode(), kDeviceFailed);
    QVERIFY(panel.errors().endsWith("scanning was given up: interrupted\n"));
    QCOMPARE(jsonLines(panel.lines()).constLast().value(QLatin1String("complete")),
             QJsonValue(false));
}

QTEST_GUILESS_MAIN(TestScanProgram)
#include "test_scan.moc"
