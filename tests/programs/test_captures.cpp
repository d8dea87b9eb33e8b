#include "program.h"
#include "support/pcapng_reader.h"

#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

/** Captures of the real programs, as Wireshark's own reader has them. */
class TestCaptures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void wiresharkReadsThem_data();
    void wiresharkReadsThem();
    void bothEndsCaptureTheSame();
    void everyCommandCaptures_data();
    void everyCommandCaptures();
    void linesComeAndGo();
    void liveIntoWireshark();
    void lossEndsTheCaptureOnly_data();
    void lossEndsTheCaptureOnly();
    void plcGoesOnWithoutItsCapture();
    void plcSaysElsewhereWhereItServes();
    void rotates();
    void usageErrorLeavesAnOlderCaptureAlone();

private:
    QString path(const char *name) const { return m_directory.filePath(QLatin1String(name)); }
    int panel(const QString &line);
    QList<QByteArray> shark(const QStringList &arguments);
    bool serve(const QString &line);

    QTemporaryDir m_directory;
    std::unique_ptr<PlcProgram> m_plc;
    std::unique_ptr<Program> m_ran; ///< the latest panel
};

namespace {

const int kOutputLost = 5;
const int kHeader = 20;

QStringList words(const QString &line)
{
    return line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

void TestCaptures::initTestCase()
{
    for (const char *name : {"tshark", "capinfos"}) {
        QVERIFY2(!QStandardPaths::findExecutable(QLatin1String(name)).isEmpty(),
                 "tshark is missing: script/bootstrap --test installs it");
    }
}

bool TestCaptures::serve(const QString &line)
{
    m_plc = std::make_unique<PlcProgram>();
    return m_plc->serve({QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")}, words(line));
}

// @return exit code
int TestCaptures::panel(const QString &line)
{
    m_ran = std::make_unique<Program>();
    return m_ran->start(QLatin1String(CNET_PANEL), words(line)) ? m_ran->exitCode() : -1;
}

// The fields of each packet, divided by "|".
QList<QByteArray> TestCaptures::shark(const QStringList &arguments)
{
    Program tshark;
    tshark.start(QLatin1String("tshark"),
                 QStringList{QLatin1String("-T"), QLatin1String("fields"), QLatin1String("-E"),
                             QLatin1String("separator=|")} +
                     arguments);
    const int code = tshark.exitCode();
    if (code != 0) {
        qWarning("tshark ends with %d: %s", code, tshark.errors().constData());
        return {"failed"};
    }
    return tshark.lines();
}

void TestCaptures::wiresharkReadsThem_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("linkType");
    QTest::addColumn<QByteArray>("protocol");
    QTest::newRow("252") << QString() << QByteArray("wireshark-upper-pdu")
                         << QByteArray("exported_pdu");
    QTest::newRow("250") << QString::fromLatin1("--capture-as rtac") << QByteArray("rtac-serial")
                         << QByteArray("rtacser");
}

void TestCaptures::wiresharkReadsThem()
{
    QFETCH(QString, format);
    QFETCH(QByteArray, linkType);
    QFETCH(QByteArray, protocol);
    const QString file = path("plc.pcapng");
    QVERIFY(serve(QString::fromLatin1("--set D_W:100=7 --fault wrong-check*1 --capture %1 %2")
                      .arg(file, format)));
    const QString link = QLatin1String("tcp:") + m_plc->place();
    QCOMPARE(panel(QString::fromLatin1("read --link %1 --timeout 300 D_W:100*2").arg(link)), 0);
    m_plc->signal(SIGTERM);
    QCOMPARE(m_plc->exitCode(), 0);
    Program info;
    QVERIFY(
        info.start(QLatin1String("capinfos"), {QLatin1String("-E"), QLatin1String("-I"), file}));
    QCOMPARE(info.exitCode(), 0);
    QVERIFY2(info.lines().join('\n').contains(linkType), info.lines().join('\n').constData());
    const QList<QByteArray> packets = shark(
        words(QString::fromLatin1("-r %1 -e frame.p2p_dir -e frame.protocols -e _ws.malformed "
                                  "-e frame.packet_flags_direction -e frame.comment")
                  .arg(file)));
    const PcapngFile own = readPcapngFile(file);
    QCOMPARE(own.error, QByteArray());
    QCOMPARE(own.packets.size(), packets.size());
    QVERIFY2(packets.size() >= 4, packets.join('\n').constData());
    int faults = 0;
    for (int i = 0; i < packets.size(); ++i) {
        const QList<QByteArray> fields = packets.at(i).split('|');
        const bool request = i % 2 == 0;
        QCOMPARE(fields.at(0).toInt(), request ? 1 : 0); // received or sent
        QVERIFY2(fields.at(1).startsWith(protocol), packets.at(i).constData());
        QCOMPARE(fields.at(2), QByteArray());
        QCOMPARE(fields.at(3).toInt(nullptr, 0), request ? 1 : 2);
        QVERIFY2(fields.at(4).startsWith(request ? "station 1: read %DW" : "station 1: data "),
                 packets.at(i).constData());
        faults += fields.at(4).endsWith("; fault: wrong-check") ? 1 : 0;
    }
    QCOMPARE(faults, 1);
    QVERIFY(packets.last().endsWith("station 1: data 010400070000"));
}

// Noise, late bytes, refusals: what one end sends the other receives, all of it.
void TestCaptures::bothEndsCaptureTheSame()
{
    const QString plcFile = path("plc.pcapng");
    const QString panelFile = path("panel.pcapng");
    QVERIFY(serve(QString::fromLatin1("--fault noise-before=3@40% --fault noise-after=2@30% "
                                      "--fault truncate@20% --fault wrong-check@20% "
                                      "--fault refuse@10% --fault repeat@10% --fault split=1@30% "
                                      "--fault delay=1..400@20% --capture %1")
                      .arg(plcFile)));
    panel(QString::fromLatin1("monitor --for 4 --interval 0 --timeout 200 --capture %1 --link "
                              "tcp:%2 D_W:100*20 M_W:3")
              .arg(panelFile, m_plc->place()));
    m_plc->signal(SIGTERM);
    QCOMPARE(m_plc->exitCode(), 0);
    const auto bytes = [](const PcapngFile &file, int direction) {
        QByteArray all;
        for (const PcapngPacket &packet : file.packets) {
            all += packet.direction == direction ? packet.data.mid(kHeader) : QByteArray();
        }
        return all;
    };
    const PcapngFile plc = readPcapngFile(plcFile);
    const PcapngFile panel = readPcapngFile(panelFile);
    QCOMPARE(plc.error, QByteArray());
    QCOMPARE(panel.error, QByteArray());
    QVERIFY2(plc.packets.size() > 40, QByteArray::number(plc.packets.size()).constData());
    QCOMPARE(bytes(panel, 2), bytes(plc, 1));
    // What was on the way at the end has not come.
    QVERIFY(bytes(plc, 2).startsWith(bytes(panel, 1)));
    QVERIFY(bytes(plc, 2).size() - bytes(panel, 1).size() < 300);
}

void TestCaptures::everyCommandCaptures_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QByteArray>("says");
    const auto row = [](const char *command, const char *says) {
        QTest::newRow(command) << QString::fromLatin1(command) << QByteArray(says);
    };
    row("read D_W:5", "read 1/D_W:5\nstation 1, rSB answered: 1/D_W:5 = 0 0x0000");
    row("monitor --count 1 D_W:6", "rSB answered: 1/D_W:6 = 0 0x0000");
    row("write D_W:7=8", "write 1/D_W:7 = 8 0x0008\nstation 1, wSB done");
    row("recipe write RECIPE", "write 1/D_W:1*2 = 5 0x0005, 6 0x0006");
    row("recipe read RECIPE", "rSB answered: 1/D_W:1*2 = ");
}

void TestCaptures::everyCommandCaptures()
{
    QFETCH(QString, command);
    QFETCH(QByteArray, says);
    QFile recipe(path("recipe.csv"));
    QVERIFY(recipe.open(QIODevice::WriteOnly));
    recipe.write("station,register,address,count,value\n1,D_W,1,2,5,6\n");
    recipe.close();
    QVERIFY(serve(QString()));
    const QString file = path("command.pcapng");
    command.replace(QLatin1String("RECIPE"), recipe.fileName());
    QCOMPARE(panel(QString::fromLatin1("%1 --link tcp:%2 --capture %3")
                       .arg(command, m_plc->place(), file)),
             0);
    const PcapngFile capture = readPcapngFile(file);
    QCOMPARE(capture.error, QByteArray());
    QCOMPARE(capture.interfaces, QList<QByteArray>{"tcp " + m_plc->place().toLocal8Bit()});
    QByteArray comments;
    for (const PcapngPacket &packet : capture.packets) {
        comments += packet.comment + '\n';
    }
    QVERIFY2(comments.contains(says), comments.constData());
}

// Clients have an interface each; the line of the panel is the same when it is back.
void TestCaptures::linesComeAndGo()
{
    const QString plcFile = path("plc.pcapng");
    QVERIFY(serve(QString::fromLatin1("--capture ") + plcFile));
    const QString place = m_plc->place();
    const QString panelFile = path("panel.pcapng");
    Program monitor;
    QVERIFY(monitor.start(QLatin1String(CNET_PANEL),
                          words(QString::fromLatin1("monitor --format csv --capture %1 --link "
                                                    "tcp:%2 D_W:100")
                                    .arg(panelFile, place))));
    QVERIFY(!monitor.waitForLine([](const QByteArray &line) { return line.endsWith("good"); })
                 .isEmpty());
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(panel(QLatin1String("read D_W:1 --link tcp:") + place), 0);
    }
    m_plc->signal(SIGTERM);
    QCOMPARE(m_plc->exitCode(), 0);
    QCOMPARE(readPcapngFile(plcFile).error, QByteArray());
    QCOMPARE(readPcapngFile(plcFile).interfaces.size(), 3);
    QVERIFY(!monitor.waitForLine([](const QByteArray &line) { return line.endsWith("line down"); })
                 .isEmpty());
    const auto before = readPcapngFile(panelFile).packets.size();
    m_plc = std::make_unique<PlcProgram>();
    QVERIFY(m_plc->serve({QLatin1String("--tcp"), place}, {}));
    QVERIFY(!monitor.waitForLine([](const QByteArray &line) { return line.endsWith("line open"); })
                 .isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(readPcapngFile(panelFile).packets.size() > before + 2, 60000);
    monitor.signal(SIGINT);
    QVERIFY(monitor.exitCode() >= 0);
    QCOMPARE(readPcapngFile(panelFile).error, QByteArray());
    QCOMPARE(readPcapngFile(panelFile).interfaces.size(), 1);
}

// Values go to standard error then.
void TestCaptures::liveIntoWireshark()
{
    const QString file = path("live.pcapng");
    Program shell;
    const QString script =
        QString::fromLatin1("%1 read D_W:100*2 --capture - 2>%2 | tshark -q -i - -w %3")
            .arg(QLatin1String(CNET_PANEL), path("values"), file);
    QVERIFY(shell.start(QLatin1String("/bin/sh"), {QLatin1String("-c"), script}));
    QVERIFY2(shell.exitCode() == 0, shell.errors().constData());
    const QList<QByteArray> packets =
        shark(words(QString::fromLatin1("-r %1 -e frame.comment").arg(file)));
    QVERIFY2(packets.contains("station 1, rSB answered: 1/D_W:100*2 = 100 0x0064, 101 0x0065"),
             packets.join('\n').constData());
    QFile values(path("values"));
    QVERIFY(values.open(QIODevice::ReadOnly));
    const QByteArray printed = values.readAll();
    QVERIFY2(printed.startsWith("1/D_W:100  "), printed.constData());
}

void TestCaptures::lossEndsTheCaptureOnly_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("reason");
    const auto row = [](const char *name, const char *script, int exitCode, const char *reason) {
        QTest::newRow(name) << QString::fromLatin1(script) << exitCode << QByteArray(reason);
    };
    row("device that is full", "PANEL read D_W:1 --capture /dev/full", kOutputLost,
        "/dev/full has ended: No space left on device");
    row("reader that goes away", "PANEL monitor --count 30 D_W:1 --capture - | head -c 100",
        kOutputLost, "standard output has ended: Broken pipe");
    row("standard output that is closed", "PANEL read D_W:1 --capture - >&-", kOutputLost,
        "standard output has ended: Bad file descriptor");
    row("what the device said counts more",
        "PANEL read 9/D_W:1 --timeout 50 --retries 1 --link tcp:PLACE --capture /dev/full", 1,
        "/dev/full has ended: No space left on device");
}

void TestCaptures::lossEndsTheCaptureOnly()
{
    QFETCH(QString, script);
    QFETCH(int, exitCode);
    QFETCH(QByteArray, reason);
    QVERIFY(serve(QString()));
    script.replace(QLatin1String("PANEL"),
                   QString::fromLatin1("2>%1 %2").arg(path("errors"), QLatin1String(CNET_PANEL)));
    script.replace(QLatin1String("PLACE"), m_plc->place());
    Program shell;
    QVERIFY(shell.start(QLatin1String("/bin/bash"), {QLatin1String("-o"), QLatin1String("pipefail"),
                                                     QLatin1String("-c"), script}));
    QCOMPARE(shell.exitCode(), exitCode);
    QFile errors(path("errors"));
    QVERIFY(errors.open(QIODevice::ReadOnly));
    const QByteArray said = errors.readAll();
    QVERIFY2(said.count("cnet-panel: the capture to ") == 1 && said.contains(reason),
             said.constData());
}

void TestCaptures::plcGoesOnWithoutItsCapture()
{
    QVERIFY(serve(QLatin1String("--capture /dev/full")));
    const QString read = QLatin1String("read D_W:1 --link tcp:") + m_plc->place();
    QCOMPARE(panel(read), 0);
    QCOMPARE(panel(read), 0);
    m_plc->signal(SIGTERM);
    QCOMPARE(m_plc->exitCode(), kOutputLost);
    QCOMPARE(m_plc->errors(),
             QByteArray("cnet-plc: the capture to /dev/full has ended: No space left "
                        "on device\n"));
}

// Standard output is the capture, and nothing else.
void TestCaptures::plcSaysElsewhereWhereItServes()
{
    const QString file = path("stdout.pcapng");
    Program plc;
    plc.setOutput(file.toLocal8Bit().constData());
    QVERIFY(plc.startBytes(CNET_PLC, {"--tcp", "127.0.0.1:0", "--capture", "-"}));
    QByteArray said;
    QTRY_VERIFY_WITH_TIMEOUT((said = plc.errors()).endsWith('\n'), 60000);
    QVERIFY2(said.startsWith("listening on 127.0.0.1:"), said.constData());
    const QByteArray place = said.mid(said.lastIndexOf(' ') + 1).trimmed();
    QCOMPARE(panel(QLatin1String("read D_W:1 --link tcp:") + QString::fromLatin1(place)), 0);
    plc.signal(SIGTERM);
    QCOMPARE(plc.exitCode(), 0);
    QCOMPARE(readPcapngFile(file).error, QByteArray());
    QVERIFY(readPcapngFile(file).packets.size() >= 4);
}

// A ring of two; each file can be read by itself.
void TestCaptures::rotates()
{
    const QString first = path("ring.pcapng");
    const QString second = path("ring.1.pcapng");
    QVERIFY(
        serve(QString::fromLatin1("--capture %1 --capture-size 16k --capture-files 2").arg(first)));
    QCOMPARE(panel(QString::fromLatin1("monitor --count 200 --interval 0 --link tcp:%1 D_W:0*60")
                       .arg(m_plc->place())),
             0);
    m_plc->signal(SIGTERM);
    QCOMPARE(m_plc->exitCode(), 0);
    QVERIFY(!QFile::exists(path("ring.2.pcapng")));
    for (const QString &file : {first, second}) {
        QVERIFY(QFile(file).size() <= 16384);
        const QList<QByteArray> packets =
            shark(words(QString::fromLatin1("-r %1 -e frame.interface_name").arg(file)));
        QVERIFY2(packets.size() > 1 && packets.first().startsWith("tcp 127.0.0.1:"),
                 packets.join('\n').constData());
        QCOMPARE(readPcapngFile(file).packets.size(), packets.size());
    }
}

void TestCaptures::usageErrorLeavesAnOlderCaptureAlone()
{
    const QString file = path("older.pcapng");
    QCOMPARE(panel(QLatin1String("read D_W:1 --capture ") + file), 0);
    const auto packets = readPcapngFile(file).packets.size();
    QVERIFY(packets > 0);
    const int usage = 2;
    QCOMPARE(panel(QLatin1String("read D_Q:1 --capture ") + file), usage);
    QCOMPARE(readPcapngFile(file).packets.size(), packets);
    QCOMPARE(panel(QLatin1String("read D_Q:1 --capture ") + path("new.pcapng")), usage);
    QVERIFY(!QFile::exists(path("new.pcapng")));
}

QTEST_GUILESS_MAIN(TestCaptures)
#include "test_captures.moc"
