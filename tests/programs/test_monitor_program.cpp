#include "program.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

/** cnet-panel and cnet-plc as the programs that a user starts. */
class TestMonitorProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatWasSet_data();
    void readsWhatWasSet();
    void reportsStations();
    void survivesARestart_data();
    void survivesARestart();
    void followsChanges();
    void endsInOrder_data();
    void endsInOrder();
    void runsForATime();
    void hasThePlcInside();
    void tracesToStandardError();
    void exitCodes_data();
    void exitCodes();
    void describes();

private:
    QStringList place(const QString &kind) const;
    static QString link(const QString &kind, const PlcProgram &plc);

    QTemporaryDir m_directory;
};

namespace {

const QString kPanel = QLatin1String(CNET_PANEL);

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

// "1/D_W:100*2=4660,5": the final values of an item.
QStringList finalValues(const QList<QJsonObject> &lines)
{
    QStringList texts;
    for (const QJsonObject &line : lines) {
        if (line.value(QLatin1String("event")).toString() != QLatin1String("value")) {
            continue;
        }
        QStringList values;
        for (const auto &value : line.value(QLatin1String("values")).toArray()) {
            values.append(value.isNull() ? QLatin1String("null") : QString::number(value.toInt()));
        }
        texts.append(line.value(QLatin1String("item")).toString() + QLatin1Char('=') +
                     values.join(QLatin1Char(',')));
    }
    return texts;
}

// The latest change of each address.
QStringList lastChanges(const QList<QJsonObject> &lines)
{
    QMap<QString, int> values;
    for (const QJsonObject &line : lines) {
        if (line.value(QLatin1String("event")).toString() == QLatin1String("change")) {
            values[QString::fromLatin1("%1/%2:%3")
                       .arg(line.value(QLatin1String("station")).toInt())
                       .arg(line.value(QLatin1String("register")).toString(),
                            line.value(QLatin1String("address")).toString())] =
                line.value(QLatin1String("value")).toInt();
        }
    }
    QStringList texts;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        texts.append(QString::fromLatin1("%1=%2").arg(it.key()).arg(it.value()));
    }
    return texts;
}

int goodItems(const QList<QByteArray> &lines)
{
    QMap<QString, bool> good;
    for (const QJsonObject &line : jsonLines(lines)) {
        if (line.value(QLatin1String("event")).toString() == QLatin1String("quality")) {
            good[line.value(QLatin1String("item")).toString()] =
                line.value(QLatin1String("good")).toBool();
        }
    }
    return static_cast<int>(good.values().count(true));
}

bool hasValue(const QByteArray &line, int value)
{
    const QJsonObject object = jsonLines({line}).first();
    return object.value(QLatin1String("event")).toString() == QLatin1String("change") &&
           object.value(QLatin1String("value")).toInt() == value;
}

} // namespace

QStringList TestMonitorProgram::place(const QString &kind) const
{
    if (kind == QLatin1String("tcp")) {
        return {QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")};
    }
    return {QLatin1String("--pty"), m_directory.filePath(QLatin1String("plc"))};
}

QString TestMonitorProgram::link(const QString &kind, const PlcProgram &plc)
{
    return (kind == QLatin1String("tcp") ? QLatin1String("tcp:") : QLatin1String("serial:")) +
           plc.place();
}

void TestMonitorProgram::readsWhatWasSet_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("faults");
    QTest::addColumn<QString>("options");
    for (const char *kind : {"pty", "tcp"}) {
        QTest::addRow("%s", kind) << kind << ""
                                  << "";
        QTest::addRow("%s, blocks of one word", kind) << kind << ""
                                                      << "--block-words 1";
        QTest::addRow("%s, noise and byte by byte", kind)
            << kind << "--fault noise-before --fault noise-after --fault split=1"
            << "";
        QTest::addRow("%s, a bad answer", kind) << kind << "--fault wrong-check*1"
                                                << "--timeout 60";
        QTest::addRow("%s, a lost request", kind) << kind << "--fault silence*1"
                                                  << "--timeout 60";
        QTest::addRow("%s, an answer of another station", kind) << kind << "--fault wrong-station*1"
                                                                << "--timeout 60";
        QTest::addRow("%s, echo", kind) << kind << "--fault echo"
                                        << "";
    }
    QTest::newRow("pty, 9600 baud") << "pty"
                                    << "--baud 9600"
                                    << "";
}

void TestMonitorProgram::readsWhatWasSet()
{
    QFETCH(QString, kind);
    QFETCH(QString, faults);
    QFETCH(QString, options);
    const QLatin1Char blank(' ');
    PlcProgram plc;
    QVERIFY(plc.serve(
        place(kind), words("--station 1 --station 2 --set 1/D_W:100=0x1234,65535,0,7 "
                           "--set 1/D_W:200=5 --set 1/M_W:3=0x0021 --set 1/TX:7=1 --set 1/T_W:7=99 "
                           "--set 1/CX:255=1 --set 1/C_W:0=1000 --set 2/D_W:100=22 "
                           "--set 2/P_bit:63.15=1 --set 1/D_bit:9999.0=1") +
                         faults.split(blank, Qt::SkipEmptyParts)));
    Program panel;
    QVERIFY(panel.start(
        kPanel, words("monitor --format json D_W:100*4 D_W:150*51 M_bit:3.0*6 M_W:3 "
                      "TX:6*3 T_W:7 CX:254*2 C_W:0 2/D_W:100 2/P_bit:63.14*2 D_bit:9999.0 K_W:31") +
                    options.split(blank, Qt::SkipEmptyParts) +
                    QStringList{QLatin1String("--link"), link(kind, plc)}));
    // A station that does not answer at first is greeted again.
    QVERIFY(!panel.waitForLine([&](const QByteArray &) { return goodItems(panel.lines()) == 12; })
                 .isEmpty());
    panel.signal(SIGINT);
    QCOMPARE(panel.exitCode(), 0);
    const QList<QJsonObject> lines = jsonLines(panel.lines());
    QVERIFY(!lines.contains(QJsonObject()));
    QStringList zeros;
    for (int i = 0; i < 50; ++i) {
        zeros.append(QLatin1String("0"));
    }
    QCOMPARE(finalValues(lines), (QStringList{
                                     QLatin1String("1/D_W:100*4=4660,65535,0,7"),
                                     QLatin1String("1/D_W:150*51=") + zeros.join(QLatin1Char(',')) +
                                         QLatin1String(",5"),
                                     QLatin1String("1/M_bit:3.0*6=1,0,0,0,0,1"),
                                     QLatin1String("1/M_W:3=33"),
                                     QLatin1String("1/TX:6*3=0,1,0"),
                                     QLatin1String("1/T_W:7=99"),
                                     QLatin1String("1/CX:254*2=0,1"),
                                     QLatin1String("1/C_W:0=1000"),
                                     QLatin1String("2/D_W:100=22"),
                                     QLatin1String("2/P_bit:63.14*2=0,1"),
                                     QLatin1String("1/D_bit:9999.0=1"),
                                     QLatin1String("1/K_W:31=0"),
                                 }));
    // The changes tell the same, and each value that was read is among them.
    const QStringList changes = lastChanges(lines);
    QCOMPARE(changes.size(), 4 + 51 + 6 + 1 + 3 + 1 + 2 + 1 + 1 + 2 + 1 + 1);
    for (const char *change : {"1/D_W:100=4660", "1/D_W:200=5", "1/M_bit:3.5=1", "1/TX:7=1",
                               "2/P_bit:63.15=1", "1/K_W:31=0"}) {
        QVERIFY2(changes.contains(QLatin1String(change)), change);
    }
}

void TestMonitorProgram::reportsStations()
{
    PlcProgram plc;
    QVERIFY(plc.serve(place(QLatin1String("tcp")), words("--model k120s --set D_W:1=6")));
    Program panel;
    QVERIFY(panel.start(kPanel, words("monitor --count 2 --timeout 200 --retries 2 --format json "
                                      "D_W:1 D_W:5000 2/D_W:1 --link") +
                                    QStringList{link(QLatin1String("tcp"), plc)}));
    QCOMPARE(panel.exitCode(), 1);
    const QList<QJsonObject> lines = jsonLines(panel.lines());
    QCOMPARE(finalValues(lines),
             (QStringList{QLatin1String("1/D_W:1=6"), QLatin1String("1/D_W:5000=null"),
                          QLatin1String("2/D_W:1=null")}));
    const QJsonObject &first = lines.at(lines.size() - 2);
    QCOMPARE(first.value(QLatin1String("station")).toInt(), 1);
    QCOMPARE(first.value(QLatin1String("answers")).toInt(), 3); // of a greeting and two rounds
    QCOMPARE(first.value(QLatin1String("refusals")).toInt(), 1);
    QCOMPARE(first.value(QLatin1String("frames")).toInt(), 4);
    const QJsonObject &second = lines.last();
    QCOMPARE(second.value(QLatin1String("state")).toString(), QLatin1String("silent"));
    const int frames = second.value(QLatin1String("frames")).toInt();
    QVERIFY(frames > 0);
    QCOMPARE(second.value(QLatin1String("timeouts")).toInt(), frames);
    QCOMPARE(second.value(QLatin1String("retries")).toInt(), 0);
    // Each is said once.
    QCOMPARE(panel.errors().count('\n'), 2);
    QVERIFY(panel.errors().contains("cnet-panel: station 1 refuses D_W:5000*1: 1132, no such "
                                    "device, or address outside the device\n"));
    QVERIFY(panel.errors().contains("cnet-panel: station 2 does not answer (1 attempt)\n"));
}

void TestMonitorProgram::survivesARestart_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("pty") << "pty";
    QTest::newRow("tcp") << "tcp";
}

void TestMonitorProgram::survivesARestart()
{
    QFETCH(QString, kind);
    Program panel;
    QString servedAt;
    {
        PlcProgram plc;
        QVERIFY(plc.serve(place(kind), words("--set D_W:100=41")));
        servedAt = plc.place();
        QVERIFY(panel.start(kPanel, words("monitor --format json --interval 5 D_W:100 --link") +
                                        QStringList{link(kind, plc)}));
        QVERIFY(!panel.waitForLine([](const QByteArray &line) { return hasValue(line, 41); })
                     .isEmpty());
        plc.signal(SIGTERM);
        QCOMPARE(plc.exitCode(), 0);
    }
    PlcProgram again;
    const QString option =
        kind == QLatin1String("tcp") ? QLatin1String("--tcp") : QLatin1String("--pty");
    QVERIFY(again.serve({option, servedAt}, words("--set D_W:100=42")));
    QVERIFY(
        !panel.waitForLine([](const QByteArray &line) { return hasValue(line, 42); }).isEmpty());
    QVERIFY(panel.isRunning());
    panel.signal(SIGINT);
    QCOMPARE(panel.exitCode(), 0);
    QCOMPARE(finalValues(jsonLines(panel.lines())), QStringList{QLatin1String("1/D_W:100=42")});
    const QByteArray errors = panel.errors();
    QCOMPARE(errors.count(" is lost: "), 1);
    QCOMPARE(errors.count(" is open again after "), 1);
}

void TestMonitorProgram::followsChanges()
{
    PlcProgram plc;
    QVERIFY(plc.serve(place(QLatin1String("pty")), words("--ramp D_W:100=10..13@50")));
    Program panel;
    QVERIFY(panel.start(kPanel, words("monitor --format json D_W:100 --link") +
                                    QStringList{link(QLatin1String("pty"), plc)}));
    for (const int value : {10, 11, 12, 13}) {
        QVERIFY(!panel.waitForLine([=](const QByteArray &line) { return hasValue(line, value); })
                     .isEmpty());
    }
}

void TestMonitorProgram::endsInOrder_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void TestMonitorProgram::endsInOrder()
{
    QFETCH(int, number);
    Program panel;
    QVERIFY(panel.start(kPanel, words("monitor --format json F_W:9")));
    QVERIFY(!panel.waitForLine([](const QByteArray &line) { return hasValue(line, 0); }).isEmpty());
    panel.signal(number);
    QCOMPARE(panel.exitCode(), 0);
    QCOMPARE(finalValues(jsonLines(panel.lines())), QStringList{QLatin1String("1/F_W:9=0")});
}

void TestMonitorProgram::runsForATime()
{
    Program panel;
    QElapsedTimer clock;
    clock.start();
    QVERIFY(panel.start(kPanel, words("monitor --format csv --for 0.4 F_W:9 2/F_W:8")));
    QCOMPARE(panel.exitCode(), 0);
    QVERIFY(clock.elapsed() >= 400);
    const QList<QByteArray> lines = panel.lines();
    QCOMPARE(lines.size(), 5);
    QCOMPARE(lines.first(), QByteArray("time,station,register,address,count,value,quality"));
    QVERIFY(lines.at(1).endsWith(",1,F_W,9,1,0,good"));
    QVERIFY(lines.at(2).endsWith(",1,F_W,9,1,,good"));
    QVERIFY(lines.at(3).endsWith(",2,F_W,8,1,0,good"));
    QVERIFY(lines.at(4).endsWith(",2,F_W,8,1,,good"));
}

void TestMonitorProgram::hasThePlcInside()
{
    Program panel;
    QVERIFY(panel.start(kPanel, words("monitor D_W:100 T_W:0")));
    // A timer's current value goes up ten times a second.
    for (const char *end : {"  1/T_W:0  3 0x0003", "  1/T_W:0  4 0x0004"}) {
        QVERIFY(!panel.waitForLine([=](const QByteArray &line) { return line.endsWith(end); })
                     .isEmpty());
    }
}

void TestMonitorProgram::tracesToStandardError()
{
    PlcProgram plc;
    QVERIFY(plc.serve(place(QLatin1String("tcp")), words("--set D_W:100=0x1234")));
    Program panel;
    QVERIFY(panel.start(kPanel, words("monitor --trace --count 1 D_W:100 --link") +
                                    QStringList{link(QLatin1String("tcp"), plc)}));
    QCOMPARE(panel.exitCode(), 0);
    QCOMPARE(panel.lines().size(), 2); // the value and its quality
    const QByteArray errors = panel.errors();
    QVERIFY(errors.contains("station 1, rSS answered: ")); // is it there at all?
    QVERIFY(errors.contains("-> 21 bytes [05 30 31 72 53 42 30 38 25 44 57 30 30 31 30 30 30 31 04 "
                            "45 42] station 1, read 1 words from %DW00100\n"));
    QVERIFY(errors.contains("station 1, rSB answered: 1234\n"));
    QVERIFY(errors.contains("station 1: answers, 2 frames, 2 answers, 0 retries, "));
    QCOMPARE(errors.count("-> "), 2);
}

void TestMonitorProgram::exitCodes_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<bool>("data");    // something on standard output
    QTest::addColumn<int>("messages"); // lines on standard error
    const auto row = [](const char *arguments, int exitCode, bool data, int messages) {
        QTest::newRow(arguments) << words(arguments) << exitCode << data << messages;
    };
    row("--help", 0, true, 0);
    row("monitor --help", 0, true, 0);
    row("--version", 0, true, 0);
    row("describe", 0, true, 0);
    row("monitor --count 1 F_W:1", 0, true, 1);
    row("", 2, false, 1);
    row("unknown", 2, false, 1);
    row("monitor D_W:10000", 2, false, 1);
    row("monitor --link nowhere D_W:1", 2, false, 1);
    row("monitor --link serial:/nowhere/tty D_W:1", 3, false, 1);
    row("monitor --link tcp:127.0.0.1:1 D_W:1", 3, false, 1);
    row("--driver /nowhere/lib.so describe", 4, false, 1);
}

void TestMonitorProgram::exitCodes()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, data);
    QFETCH(int, messages);
    Program panel;
    QVERIFY(panel.start(kPanel, arguments));
    QTEST(panel.exitCode(), "exitCode");
    QCOMPARE(!panel.lines().isEmpty(), data);
    QCOMPARE(panel.errors().count('\n'), messages);
}

void TestMonitorProgram::describes()
{
    Program panel;
    QVERIFY(panel.start(kPanel, words("describe")));
    QCOMPARE(panel.exitCode(), 0);
    const QList<QByteArray> lines = panel.lines();
    QVERIFY(lines.contains("version         2.0.0.0"));
    QVERIFY(lines.contains("  D_bit     bit          DDDD.dd   0.0      9999.15  read, write"));
}

QTEST_GUILESS_MAIN(TestMonitorProgram)
#include "test_monitor_program.moc"
