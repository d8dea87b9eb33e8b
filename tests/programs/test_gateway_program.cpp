#include "complaint.h"
#include "gateway.h"

#include <QtTest>

#include <csignal>

/** cnet-gateway between a simulated PLC and its history. */
class TestGatewayProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_gateway = std::make_unique<GatewayProgram>(); }
    void bringsEachValueInOrder();
    void saysWhatALineIsWorth();
    void worksWithoutAConfiguration();
    void checksAConfiguration();
    void refuses_data();
    void refuses();
    void oneGatewayHasTheLedger();
    void showsAHistory();
    void readsItsConfigurationAgain();

private:
    QByteArray config() const { return QFile::encodeName(m_gateway->path("gateway.toml")); }
    bool configure(const QString &place, const QByteArray &more = QByteArray()) const
    {
        return m_gateway->store("tags.csv", "name,register,address\ncounter,D_W,100\n") &&
               m_gateway->store("gateway.toml", "[batch]\nage = \"50ms\"\n[line.press]\n"
                                                "tags = \"tags.csv\"\ninterval = \"0\"\nlink = "
                                                "\"tcp:" +
                                                    place.toLatin1() + "\"\n" + more);
    }
    QList<QJsonObject> waitForRows(int count, const QByteArray &quality = "good")
    {
        QList<QJsonObject> rows;
        for (int tries = 0; tries < 300 && rows.size() < count; ++tries) {
            QTest::qWait(100);
            rows = m_gateway->history("counter");
            rows.erase(std::remove_if(rows.begin(), rows.end(),
                                      [&quality](const QJsonObject &row) {
                                          return row.value(QLatin1String("quality")).toString() !=
                                                 QString::fromLatin1(quality);
                                      }),
                       rows.end());
        }
        return rows;
    }

    std::unique_ptr<GatewayProgram> m_gateway;
};

namespace {

const int kFailed = 1;
const int kUsage = 2;

int valueOf(const QJsonObject &row)
{
    return row.value(QLatin1String("value")).toInt(-1);
}

QString qualityOf(const QJsonObject &row)
{
    return row.value(QLatin1String("quality")).toString();
}

const QStringList kPlace{QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")};
// Counts up five times a second, which any machine can follow.
const QStringList kCounting{QLatin1String("--ramp"), QLatin1String("D_W:100=0..60000@200")};

} // namespace

void TestGatewayProgram::bringsEachValueInOrder()
{
    PlcProgram plc;
    QVERIFY(plc.serve(kPlace, kCounting));
    QVERIFY(configure(plc.place()));
    Program program;
    QVERIFY(m_gateway->start(program, {"run", config()}));
    QVERIFY(waitForRows(10).size() >= 10);
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
    const QList<QJsonObject> rows = m_gateway->history("counter");
    for (int i = 1; i + 1 < rows.size(); ++i) {
        QCOMPARE(valueOf(rows.at(i)), valueOf(rows.at(i - 1)) + 1);
        QCOMPARE(qualityOf(rows.at(i)), QLatin1String("good"));
        QVERIFY(rows.at(i).value(QLatin1String("time")).toString() >
                rows.at(i - 1).value(QLatin1String("time")).toString());
    }
    // Nobody looks any more: nobody is to believe the last value.
    QCOMPARE(qualityOf(rows.last()), QLatin1String("line down"));
    QVERIFY2(program.errors().endsWith("cnet-gateway: ended; everything is stored\n"),
             program.errors().constData());
}

void TestGatewayProgram::saysWhatALineIsWorth()
{
    auto plc = std::make_unique<PlcProgram>();
    QVERIFY(plc->serve(kPlace, {QLatin1String("--set"), QLatin1String("D_W:100=7")}));
    const QString place = plc->place();
    QVERIFY(configure(place));
    Program program;
    QVERIFY(m_gateway->start(program, {"run", config()}));
    QCOMPARE(valueOf(waitForRows(1).value(0)), 7);
    plc.reset();
    QVERIFY(!waitForRows(1, "line down").isEmpty());
    plc = std::make_unique<PlcProgram>();
    QVERIFY(plc->serve({QLatin1String("--tcp"), place}, {}));
    QCOMPARE(valueOf(waitForRows(2).value(1)), 0);
    program.signal(SIGINT);
    QCOMPARE(program.exitCode(), 0);
    // A line that comes and goes is told once each time.
    QVERIFY2(program.errors().count('\n') <= 6, program.errors().constData());
}

void TestGatewayProgram::worksWithoutAConfiguration()
{
    Program program;
    QVERIFY(m_gateway->start(program, {"--demo"}));
    QList<QJsonObject> rows;
    for (int tries = 0; tries < 300 && rows.size() < 5; ++tries) {
        QTest::qWait(100);
        rows = m_gateway->history("press.temperature");
    }
    QVERIFY(rows.size() >= 5);
    QCOMPARE(rows.first().value(QLatin1String("unit")).toString(), QString::fromUtf8("\xc2\xb0"
                                                                                     "C"));
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(m_gateway->history("mould.zones").last().value(QLatin1String("tag")).toString(),
             QLatin1String("mould.zones[3]"));
}

void TestGatewayProgram::checksAConfiguration()
{
    QVERIFY(configure(QLatin1String("127.0.0.1:8000")));
    QCOMPARE(m_gateway->run({"check", config()}), 0);
    QVERIFY2(m_gateway->output.value(0).endsWith(": good; lines: 1, sinks: 1"),
             m_gateway->output.value(0).constData());
    QCOMPARE(m_gateway->errors, QByteArray());
    QVERIFY(configure(QLatin1String("127.0.0.1:8000"),
                      "statoin = 2\n[line.b]\nlink = \"simulated\"\ntags = \"none.csv\"\n"));
    QCOMPARE(m_gateway->run({"check", config()}), kUsage);
    QVERIFY2(
        m_gateway->errors.contains(
            "gateway.toml:7:1: line.press.statoin: there is no such key; did you mean station?"),
        m_gateway->errors.constData());
    QVERIFY(configure(QLatin1String("127.0.0.1:8000"),
                      "[writes.press]\nallow = [\n\"counter\", \"counte\"]\n"));
    QCOMPARE(m_gateway->run({"check", config()}), kUsage);
    QVERIFY2(m_gateway->errors.contains("gateway.toml:9:12: writes.press.allow: no tag fits "
                                        "'counte'; did you mean counter?"),
             m_gateway->errors.constData());
    QVERIFY(configure(QLatin1String("127.0.0.1:8000"),
                      "[line.b]\nlink = \"simulated\"\ntags = \"none.csv\"\n"));
    QVERIFY(m_gateway->store("tags.csv", "name,register,address\na,D_W,10000\nb,X,1\n"));
    for (const char *command : {"check", "run"}) {
        QCOMPARE(m_gateway->run({command, config()}), kUsage);
        const QByteArray said = m_gateway->errors;
        QVERIFY2(said.contains("gateway.toml:9:8: line.b.tags: cannot read "), said.constData());
        QVERIFY2(said.contains("tags.csv:2:7: address: "), said.constData());
        QVERIFY2(said.contains("tags.csv:3:3: register: "), said.constData());
        QCOMPARE(said.count('\n'), 3);
    }
}

void TestGatewayProgram::refuses_data()
{
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char *name, const QList<QByteArray> &arguments, int exitCode,
                        const char *message) {
        QTest::newRow(name) << arguments << exitCode << QByteArray(message);
    };
    row("no command", {}, kUsage, "expected a command");
    row("an unknown one", {"rnu"}, kUsage, "no command 'rnu'; did you mean run?");
    row("an unknown option", {"run", "--verbose"}, kUsage, "verbose");
    row("too many words", {"check", "a", "b"}, kUsage, "not 'b'");
    row("demo with a file", {"run", "a.toml", "--demo"}, kUsage, "--demo takes no");
    row("a history of nothing", {"history"}, kUsage, "expected a tag");
    row("a wrong time", {"history", "a", "--from", "soon"}, kUsage, "--from 'soon'");
    row("a wrong form", {"history", "a", "--format", "xml"}, kUsage, "--format 'xml'");
    row("no such file", {"history", "a", "--file", "/no/such"}, kFailed, "cannot read /no/such");
    row("a file that is no history", {"history", "a", "--file", "/bin/sh"}, kFailed,
        "cannot read /bin/sh");
    row("terminal codes", {"\x1b[2J"}, kUsage, "no command '?[2J'");
}

void TestGatewayProgram::refuses()
{
    QFETCH(QList<QByteArray>, arguments);
    QFETCH(int, exitCode);
    QFETCH(QByteArray, message);
    QCOMPARE(m_gateway->run(arguments), exitCode);
    QCOMPARE(faultOfComplaint(m_gateway->errors, "cnet-gateway", message), QByteArray());
    QVERIFY(m_gateway->output.isEmpty());
}

void TestGatewayProgram::oneGatewayHasTheLedger()
{
    Program program;
    QVERIFY(m_gateway->start(program, {"--demo"}));
    QTRY_VERIFY_WITH_TIMEOUT(program.errors().contains("is stored in"), 60000);
    QCOMPARE(m_gateway->run({"--demo"}), kFailed);
    QCOMPARE(faultOfComplaint(m_gateway->errors, "cnet-gateway", "cannot open the ledger"),
             QByteArray());
    QVERIFY(program.isRunning());
}

void TestGatewayProgram::showsAHistory()
{
    Program program;
    QVERIFY(m_gateway->start(program, {"--demo"}));
    const QByteArray file = QFile::encodeName(m_gateway->path("history.sqlite"));
    QTRY_VERIFY_WITH_TIMEOUT(m_gateway->history("press.speed").size() == 1, 60000);
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(m_gateway->run({"history", "press.speed", "--file", file}), 0);
    QVERIFY2(m_gateway->output.value(0).endsWith("  press.speed  30.0 1/min"),
             m_gateway->output.value(0).constData());
    QVERIFY2(m_gateway->output.value(1).endsWith(
                 "  press.speed  30.0 1/min  (line down: the gateway ended)"),
             m_gateway->output.value(1).constData());
    const QList<QByteArray> csv{"history", "press.speed", "--format", "csv", "--file", file};
    QCOMPARE(m_gateway->run(csv), 0);
    QCOMPARE(m_gateway->output.value(0),
             QByteArray("time,line,station,tag,value,unit,quality,reason"));
    QVERIFY(m_gateway->output.value(1).endsWith(",press,1,press.speed,30.0,1/min,good,"));
    QCOMPARE(m_gateway->run(csv + QList<QByteArray>{"--to", "1h"}), 0);
    QCOMPARE(int(m_gateway->output.size()), 1);
    QCOMPARE(m_gateway->run({"history", "press.sped", "--file", file}), kFailed);
    QVERIFY2(m_gateway->errors.contains("did you mean press.speed?"),
             m_gateway->errors.constData());
}

void TestGatewayProgram::readsItsConfigurationAgain()
{
    PlcProgram plc;
    QVERIFY(plc.serve(kPlace, kCounting));
    QVERIFY(configure(plc.place()));
    Program program;
    QVERIFY(m_gateway->start(program, {"run", config()}));
    QVERIFY(!waitForRows(2).isEmpty());
    // A mistake changes nothing.
    QVERIFY(m_gateway->store("tags.csv", "name,register,address\ncounter,D_W,99999\n"));
    program.signal(SIGHUP);
    QTRY_VERIFY_WITH_TIMEOUT(program.errors().contains("tags.csv:2:"), 60000);
    QTRY_VERIFY_WITH_TIMEOUT(program.errors().contains("everything goes on as before"), 60000);
    // Another tag, and another sink.
    QVERIFY(configure(plc.place(), "[sink.history]\n[sink.second]\npath = \"second.sqlite\"\n"));
    QVERIFY(m_gateway->store("tags.csv", "name,register,address\nother,D_W,7\ncounter,D_W,100\n"));
    program.signal(SIGHUP);
    QTRY_VERIFY_WITH_TIMEOUT(!m_gateway->history("other").isEmpty(), 60000);
    const auto rows = m_gateway->history("counter").size();
    QVERIFY(waitForRows(int(rows) + 3).size() >= rows + 3);
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
    const QByteArray said = program.errors();
    QVERIFY2(said.contains("line press: tags: 1 added, 1 unchanged"), said.constData());
    QVERIFY2(said.contains("sink second: begins"), said.constData());
    // The line was never opened anew, and no count is missing.
    const QList<QJsonObject> all = m_gateway->history("counter");
    for (int i = 1; i + 1 < all.size(); ++i) {
        QCOMPARE(valueOf(all.at(i)), valueOf(all.at(i - 1)) + 1);
        QCOMPARE(qualityOf(all.at(i)), QLatin1String("good"));
    }
}

QTEST_GUILESS_MAIN(TestGatewayProgram)
#include "test_gateway_program.moc"
