#include "program.h"

#include <QFileInfo>
#include <QJsonObject>
#include <QLocalSocket>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

/** cnet-plc that is commanded while it runs. */
class TestPlcCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void standardInput();
    void standardInputInJson();
    void badCommandsChangeNothing();
    void goesOnWithoutInput_data();
    void goesOnWithoutInput();
    void severalConnections();
    void localSocketIsRemoved();
    void mastersSeeWhatIsSet();
    void mastersAreListed();
};

namespace {

QStringList options(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

bool says(Program &program, const QByteArray &line)
{
    return !program.waitForLine([&](const QByteArray &each) { return each == line; }).isNull();
}

/** Where it takes commands: the port. */
quint16 controlPort(Program &plc)
{
    const QByteArray line = plc.waitForLine(
        [](const QByteArray &each) { return each.startsWith("taking commands at "); });
    return line.mid(line.lastIndexOf(':') + 1).toUShort();
}

QByteArray answerTo(QIODevice &device, const QByteArray &command)
{
    device.write(command + '\n');
    while (!device.canReadLine() && device.waitForReadyRead(30000)) {
    }
    return device.readLine();
}

} // namespace

void TestPlcCommands::standardInput()
{
    PlcProgram plc;
    QVERIFY(plc.serve(options("--tcp 0"), {}));
    plc.type("set D_W:100=5\nshow D_W:100*2\n");
    QVERIFY(says(plc, "1/D_W:100 = 5 0"));
    plc.type("clients\nfault silence*3\nfaults\n");
    QVERIFY(says(plc, "1:silence*3"));
    plc.type("quit");
    plc.endInput();
    QCOMPARE(plc.exitCode(), 0);
    QCOMPARE(plc.lines().mid(1),
             QList<QByteArray>({"ok", "1/D_W:100 = 5 0", "none", "ok", "1:silence*3", "ok"}));
    QCOMPARE(plc.errors(), QByteArray());
}

// An answer in one line for each of them, fit for a terminal, and then it goes on.
void TestPlcCommands::badCommandsChangeNothing()
{
    const QList<QByteArray> bad{"set",
                                "set D_W:1",
                                "set D_W:1=65536",
                                "set D_W:10000=1",
                                "set 9/D_W:1=1",
                                "set D_W:1=1 D_W:2=x",
                                "set D_W:" + QByteArray(1000, '9') + "=1",
                                "show",
                                "show D_W:1*99999",
                                "ramp D_W:2-1",
                                "ramp D_W:1@0",
                                "sine D_W:1=0..99999",
                                "square",
                                "walk D_W:1*0",
                                "counter D_W:1-3",
                                "motions D_W:1",
                                "fault bogus",
                                "fault 9:silence",
                                "fault silence*0",
                                "faults 1",
                                "clients x",
                                "save",
                                "help set",
                                "quit now",
                                "load",
                                "\x1b[2J",
                                "\xff\xfe",
                                QByteArray(4000, 'x'),
                                QByteArray(4097, 'x')};
    PlcProgram plc;
    QVERIFY(plc.serve(options("--tcp 0"), {}));
    plc.type(bad.join('\n') + "\nshow D_W:1*2\nfaults\nmotions\nquit\n");
    QCOMPARE(plc.exitCode(), 0);
    const QList<QByteArray> answers = plc.lines().mid(1);
    QCOMPARE(answers.size(), bad.size() + 4);
    for (int i = 0; i < bad.size(); ++i) {
        const QByteArray &answer = answers.at(i);
        QVERIFY2(answer.startsWith("error: ") && !answer.contains('\x1b') && answer.size() < 1000,
                 bad.at(i).left(50) + " -> " + answer.left(1000));
    }
    QCOMPARE(answers.mid(bad.size()), QList<QByteArray>({"1/D_W:1 = 0 0", "none", "none", "ok"}));
    QCOMPARE(plc.errors(), QByteArray());
}

void TestPlcCommands::standardInputInJson()
{
    PlcProgram plc;
    QVERIFY(plc.serve(options("--tcp 0 --control-format json"), {}));
    plc.type("show D_W:1\nnonsense\nquit\n");
    QCOMPARE(plc.exitCode(), 0);
    const QList<QJsonObject> answers = jsonLines(plc.lines().mid(1));
    QCOMPARE(answers.size(), 3);
    QVERIFY(answers.at(0).contains(QLatin1String("values")));
    QVERIFY(answers.at(1).contains(QLatin1String("error")));
    QCOMPARE(answers.at(2).value(QLatin1String("ok")).toBool(), true);
}

void TestPlcCommands::goesOnWithoutInput_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::newRow("that ends") << QByteArray("</dev/null");
    QTest::newRow("that is closed") << QByteArray("<&-");
    QTest::newRow("that is a directory") << QByteArray("</");
    QTest::newRow("that never ends") << QByteArray("</dev/zero");
}

void TestPlcCommands::goesOnWithoutInput()
{
    QFETCH(QByteArray, input);
    Program plc;
    const QString command = QString::fromLatin1("exec '%1' --tcp 0 --control 0 %2")
                                .arg(QLatin1String(CNET_PLC), QLatin1String(input));
    QVERIFY(plc.start(QLatin1String("/bin/sh"), {QLatin1String("-c"), command}));
    QTcpSocket socket;
    socket.connectToHost(QLatin1String("127.0.0.1"), controlPort(plc));
    QVERIFY(socket.waitForConnected(30000));
    QTest::qWait(100);
    QCOMPARE(answerTo(socket, "show D_W:1"), QByteArray("1/D_W:1 = 0\n"));
    plc.signal(SIGTERM);
    QCOMPARE(plc.exitCode(), 0);
}

void TestPlcCommands::severalConnections()
{
    PlcProgram plc;
    QVERIFY(plc.serve(options("--tcp 0 --control 0"), {}));
    const quint16 port = controlPort(plc);
    QTcpSocket first;
    QTcpSocket second;
    for (QTcpSocket *const socket : {&first, &second}) {
        socket->connectToHost(QLatin1String("127.0.0.1"), port);
        QVERIFY(socket->waitForConnected(30000));
    }
    QCOMPARE(answerTo(first, "json"), QByteArray("{\"ok\":true}\n"));
    QCOMPARE(answerTo(second, "set D_W:7=8"), QByteArray("ok\n"));
    QVERIFY(answerTo(first, "show D_W:7").contains("\"values\":[8]"));
    // A web page that is opened on the same machine.
    QCOMPARE(answerTo(second, "POST / HTTP/1.1"), QByteArray("error: this is no web server\n"));
    QVERIFY(answerTo(first, "quit").contains("\"ok\":true"));
    QCOMPARE(plc.exitCode(), 0);
}

void TestPlcCommands::localSocketIsRemoved()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QLatin1String("control"));
    const QStringList arguments = options("--tcp 0 --control") << path;
    {
        // One that is killed leaves it behind.
        PlcProgram killed;
        QVERIFY(killed.serve(arguments, {}));
        killed.signal(SIGKILL);
        killed.exitCode();
        QVERIFY(QFileInfo::exists(path));
    }
    PlcProgram plc;
    QVERIFY(plc.serve(arguments, {}));
    QLocalSocket socket;
    socket.connectToServer(path);
    QVERIFY(socket.waitForConnected(30000));
    QCOMPARE(answerTo(socket, "stations"), QByteArray("1 full\n"));
    plc.signal(SIGTERM);
    QCOMPARE(plc.exitCode(), 0);
    QVERIFY(!QFileInfo::exists(path));
}

void TestPlcCommands::mastersSeeWhatIsSet()
{
    PlcProgram plc;
    QVERIFY(plc.serve(options("--tcp 0"), {}));
    plc.type("set D_W:100=1234 M_bit:3.5=1\n");
    QVERIFY(says(plc, "ok"));
    Program panel;
    const QString link = QLatin1String("tcp:") + plc.place();
    QVERIFY(panel.start(QLatin1String(CNET_PANEL), options("read --link")
                                                       << link << options("D_W:100 M_bit:3.5")));
    QVERIFY2(panel.exitCode() == 0, panel.errors().constData());
    const QByteArray values = panel.lines().join('\n');
    QVERIFY2(values.contains("1234"), values.constData());
}

void TestPlcCommands::mastersAreListed()
{
    PlcProgram plc;
    QVERIFY(plc.serve(options("--tcp 0"), {}));
    QTcpSocket master;
    master.connectToHost(QLatin1String("127.0.0.1"),
                         plc.place().section(QLatin1Char(':'), 1).toUShort());
    QVERIFY(master.waitForConnected(30000));
    master.write("\x05"
                 "01RSS0107%DW0100\x04");
    QVERIFY(master.waitForReadyRead(30000));
    plc.type("clients\n");
    const QByteArray line =
        plc.waitForLine([](const QByteArray &each) { return each.contains(", requests: "); });
    QVERIFY2(line.startsWith("127.0.0.1:" + QByteArray::number(master.localPort())) &&
                 line.endsWith(", requests: 1"),
             line.constData());
}

QTEST_GUILESS_MAIN(TestPlcCommands)
#include "test_plc_commands.moc"
