#include "program.h"
#include "terminal.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <cstring>

namespace {

const int kPatienceMs = 30000;
const QByteArray kShowCursor("\x1b[?25h");
const QByteArray kHideCursor("\x1b[?25l");

} // namespace

/** cnet-panel and cnet-plc end in order when they are told to: the terminal and the line as before.
 */
class TestSignals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void leavesTheTerminalAsItWas_data();
    void leavesTheTerminalAsItWas();
    void stoppedTerminal_data();
    void stoppedTerminal();
    void secondInterruptCutsARecipeOff();
    void leavesTheLineAsItWas_data();
    void leavesTheLineAsItWas();
    void plcEndsWithAReaderWhoNeverReads();
    void plcRemovesItsLink_data();
    void plcRemovesItsLink();

private:
    QByteArray link() const;

    QTemporaryDir m_directory;
    QByteArray m_recipe;
    QTcpServer m_silentPlc; ///< accepts, and answers nothing
};

void TestSignals::initTestCase()
{
    QVERIFY(m_silentPlc.listen(QHostAddress(QHostAddress::LocalHost), 0));
    const QString path = m_directory.filePath(QLatin1String("recipe.csv"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write("register,address,value\nD_W,1,5\n") > 0);
    m_recipe = path.toLocal8Bit();
}

QByteArray TestSignals::link() const
{
    return "tcp:127.0.0.1:" + QByteArray::number(m_silentPlc.serverPort());
}

void TestSignals::leavesTheTerminalAsItWas_data()
{
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::addColumn<QByteArray>("shown"); // when it is under way
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<int>("signal");
    const QList<QByteArray> silent{"--link", link(), "--timeout", "600000", "--trace"};
    const auto row = [](const char *name, const QList<QByteArray> &arguments, const char *shown,
                        int exitCode) {
        const auto add = [&](const char *signalName, int signal) {
            QTest::newRow(qPrintable(
                QString::fromLatin1("%1, %2").arg(QLatin1String(name), QLatin1String(signalName))))
                << arguments << QByteArray(shown) << exitCode << signal;
        };
        add("SIGINT", SIGINT);
        add("SIGTERM", SIGTERM);
        add("SIGHUP", SIGHUP);
    };
    row("monitor", {"monitor", "D_W:5000"}, "0 0x0000", 0);
    row("monitor of a silent PLC", QList<QByteArray>{"monitor", "D_W:1"} + silent, " -> ", 1);
    row("read", QList<QByteArray>{"read", "D_W:1"} + silent, " -> ", 1);
    row("write", QList<QByteArray>{"write", "D_W:1=1"} + silent, " -> ", 1);
}

void TestSignals::leavesTheTerminalAsItWas()
{
    QFETCH(QList<QByteArray>, arguments);
    QFETCH(QByteArray, shown);
    QFETCH(int, signal);
    Terminal terminal;
    QVERIFY(terminal.start(QList<QByteArray>{CNET_PANEL} + arguments));
    QVERIFY2(terminal.shows(shown), terminal.shown().constData());
    QCOMPARE(terminal.isAsBefore(), arguments.first() != "monitor");
    terminal.signal(signal);
    QTEST(terminal.wait(), "exitCode");
    QVERIFY(terminal.isAsBefore());
    QCOMPARE(terminal.shown().count(kHideCursor), terminal.shown().count(kShowCursor));
    QVERIFY(terminal.shown().lastIndexOf(kHideCursor) <= terminal.shown().lastIndexOf(kShowCursor));
}

void TestSignals::stoppedTerminal_data()
{
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::newRow("table") << QList<QByteArray>{"monitor", "D_W:1"};
    QTest::newRow("rows") << QList<QByteArray>{"monitor", "D_W:1", "--format", "csv"};
    QTest::newRow("objects") << QList<QByteArray>{"monitor", "D_W:1", "--format", "json"};
}

// Whoever writes there waits, but not when the user wants the program to end.
void TestSignals::stoppedTerminal()
{
    QFETCH(QList<QByteArray>, arguments);
    Terminal terminal;
    QVERIFY(terminal.start(QList<QByteArray>{CNET_PANEL} + arguments));
    QVERIFY2(terminal.shows("D_W"), terminal.shown().constData());
    QVERIFY(terminal.stopOutput(true));
    const int exitCode = terminal.signalUntilEnd(SIGTERM);
    QVERIFY2(exitCode == 0 || exitCode == 1, qPrintable(QString::number(exitCode)));
    QVERIFY(terminal.stopOutput(false));
    QVERIFY(terminal.isAsBefore());
}

// Half a recipe is worse than none, so the first one only asks for the end.
void TestSignals::secondInterruptCutsARecipeOff()
{
    Terminal terminal;
    QVERIFY(terminal.start({CNET_PANEL, "recipe", "write", m_recipe, "--link", link(), "--timeout",
                            "600000", "--trace"}));
    QVERIFY2(terminal.shows(" -> "), terminal.shown().constData());
    terminal.signal(SIGINT);
    QVERIFY2(terminal.shows("interrupt again"), terminal.shown().constData());
    terminal.signal(SIGINT);
    QCOMPARE(terminal.wait(), 1);
    QVERIFY2(terminal.shown().contains("0 of 1 words had been transferred"),
             terminal.shown().constData());
    QVERIFY(terminal.isAsBefore());
}

void TestSignals::leavesTheLineAsItWas_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGHUP") << SIGHUP;
}

// The line's settings are those that the next program finds, and nobody keeps it for himself.
void TestSignals::leavesTheLineAsItWas()
{
    QFETCH(int, signal);
    int plcEnd = -1;
    int panelEnd = -1;
    QVERIFY(openpty(&plcEnd, &panelEnd, nullptr, nullptr, nullptr) == 0);
    termios before{};
    QCOMPARE(tcgetattr(panelEnd, &before), 0);
    Program panel;
    QVERIFY(panel.startBytes(CNET_PANEL, {"monitor", "D_W:1", "--timeout", "600000", "--link",
                                          "serial:" + QByteArray(ptsname(plcEnd))}));
    char enq = 0;
    QCOMPARE(read(plcEnd, &enq, 1), ssize_t(1));
    QCOMPARE(enq, '\x05');
    termios during{};
    QCOMPARE(tcgetattr(panelEnd, &during), 0);
    QVERIFY(during.c_lflag != before.c_lflag);
    panel.signal(signal);
    QCOMPARE(panel.exitCode(), 1);
    termios after{};
    QCOMPARE(tcgetattr(panelEnd, &after), 0);
    QCOMPARE(after.c_iflag, before.c_iflag);
    QCOMPARE(after.c_oflag, before.c_oflag);
    QCOMPARE(after.c_cflag, before.c_cflag);
    QCOMPARE(after.c_lflag, before.c_lflag);
    QCOMPARE(std::memcmp(after.c_cc, before.c_cc, sizeof before.c_cc), 0);
    int exclusive = -1;
    QCOMPARE(ioctl(panelEnd, TIOCGEXCL, &exclusive), 0);
    QCOMPARE(exclusive, 0);
    close(panelEnd);
    close(plcEnd);
}

void TestSignals::plcEndsWithAReaderWhoNeverReads()
{
    Terminal terminal;
    QVERIFY(terminal.start({CNET_PLC, "--tcp", "0", "--trace"}));
    QVERIFY(terminal.shows("listening on 127.0.0.1:"));
    QVERIFY(terminal.shows("\n"));
    const QByteArray line = terminal.shown().trimmed();
    QVERIFY(terminal.stopOutput(true));
    QTcpSocket client;
    client.connectToHost(QHostAddress(QHostAddress::LocalHost),
                         line.mid(line.lastIndexOf(':') + 1).toUShort());
    client.write(QByteArray("\x05"
                            "01RSS0107%DW0100\x04")
                     .repeated(100));
    QVERIFY(client.waitForBytesWritten(kPatienceMs));
    // A request is traced before it is answered, so now it waits.
    constexpr int kLongEnoughMs = 500;
    QVERIFY(!client.waitForReadyRead(kLongEnoughMs));
    QCOMPARE(terminal.signalUntilEnd(SIGTERM), 0);
    QVERIFY(terminal.stopOutput(false));
}

void TestSignals::plcRemovesItsLink_data()
{
    leavesTheLineAsItWas_data();
}

void TestSignals::plcRemovesItsLink()
{
    QFETCH(int, signal);
    const QString path = m_directory.filePath(QLatin1String("plc"));
    PlcProgram plc;
    QVERIFY(plc.serve({QLatin1String("--pty"), path}, {}));
    QVERIFY(QFileInfo(path).isSymLink());
    plc.signal(signal);
    QCOMPARE(plc.exitCode(), 0);
    QVERIFY(!QFileInfo(path).isSymLink());
}

QTEST_GUILESS_MAIN(TestSignals)
#include "test_signals.moc"
