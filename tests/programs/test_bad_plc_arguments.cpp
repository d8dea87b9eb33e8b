#include "complaint.h"
#include "program.h"

#include <QTemporaryDir>
#include <QtTest>

/** cnet-plc with command lines that are wrong: one line and the exit code. */
class TestBadPlcArguments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refuses_data();
    void refuses();
    void leavesOtherFilesAlone();
};

namespace {

const int kUsage = 2;
const int kCannotOpen = 3;

QByteArray longText(char letter = 'A')
{
    return QByteArray(100000, letter);
}

void row(const char *name, const QList<QByteArray> &arguments, int exitCode, const char *message)
{
    QTest::newRow(name) << arguments << exitCode << QByteArray(message);
}

// The one option that is wrong; everything else is fine.
void option(const char *name, const char *option, const QByteArray &value, const char *message)
{
    row(name, {"--tcp", "0", option, value}, kUsage, message);
}

void addPlaceRows()
{
    row("nothing to serve", {}, kUsage, "expected --tcp [HOST:]PORT or --pty [LINK]");
    row("argument that is no option", {"--tcp", "0", "x\ny"}, kUsage, "\"x?y\": expected options");
    row("line break in an option", {"--x\ny"}, kUsage, "Unknown option 'x?y'");
    row("endless option", {"--" + longText()}, kUsage, "Unknown option 'AAA");
    row("option without its value", {"--tcp"}, kUsage, "Missing value");
    row("value for an option that takes none", {"--tcp", "0", "--trace=1"}, kUsage, "trace");
    option("empty address", "--tcp", "", "expected [HOST:]PORT");
    option("negative port", "--tcp", "-1", "expected [HOST:]PORT");
    option("port beyond 16 bits", "--tcp", "65536", "expected [HOST:]PORT");
    option("endless port", "--tcp", longText('9'), "for example 127.0.0.1:8000");
    option("host that is a name", "--tcp", "plc.example:1", "with an IP address or localhost");
    option("line break in an address", "--tcp", "127.0.0.1\n:1", "expected [HOST:]PORT");
    row("address of another machine", {"--tcp", "192.0.2.1:0"}, kCannotOpen, "cannot listen on");
    row("file in the place of the link", {"--pty", "/etc/passwd"}, kCannotOpen, "File exists");
    row("directory in the place of the link", {"--pty", "/"}, kCannotOpen, "File exists");
    row("link in no directory", {"--pty", "/nowhere/a\nb"}, kCannotOpen, "/nowhere/a?b: No such");
    row("link that cannot be made", {"--pty", "/proc/x"}, kCannotOpen, "cannot make the link");
    row("endless link", {"--pty", "/" + longText()}, kCannotOpen, "File name too long");
}

void addSettingRows()
{
    option("station above 31", "--station", "32", "a number from 0 to 31");
    option("endless station", "--station", longText('1'), "a number from 0 to 31");
    option("station that is none", "--station", "1x", "a number from 0 to 31");
    option("unknown model", "--model", "k\n120s", "not \"k?120s\"");
    option("baud rate of none", "--baud", "0", "a number from 50 to 4000000");
    option("baud rate beyond 32 bits", "--baud", "4294967396", "a number from 50 to 4000000");
    option("negative seed", "--seed", "-1", "a number from 0 to 4294967295");
    option("seed beyond 32 bits", "--seed", "4294967296", "a number from 0 to 4294967295");
    option("empty setting", "--set", "", "expected [STATION/]REGISTER:ADDRESS=VALUE");
    option("terminal codes in a setting", "--set", "\x1b[2J", "\"?[2J\": expected");
    option("setting that is no text", "--set", "\xff\xfe", "expected [STATION/]REGISTER");
    option("endless setting", "--set", longText(), "for example M_W:3=0x1234");
    option("endless address", "--set", "D_W:" + longText('9') + "=1", "a decimal address");
    option("address at the edge of 32 bits", "--set", "D_W:2147483647=1,2", "a decimal address");
    option("address beyond the device", "--set", "D_W:10000=1", "D_W:10000 does not exist");
    option("values beyond the device", "--set", "D_W:9999=1,2", "D_W:10000 does not exist");
    option("value beyond 16 bits", "--set", "D_W:1=65536", "expected values from -32768");
    option("bit that is neither 0 nor 1", "--set", "M_bit:1.1=2", "expected values 0 or 1");
    option("setting of a station that is not there", "--set", "9/D_W:1=1", "no station 9");
    option("empty ramp", "--ramp", "", "expected REGISTER:ADDRESS");
    option("ramp to the edge of 32 bits", "--ramp", "D_W:0-2147483647", "expected FIRST-LAST");
    option("ramp beyond 32 bits", "--ramp", "D_W:0-99999999999", "expected FIRST-LAST");
    option("ramp beyond the device", "--ramp", "D_W:0-10000", "D_W:10000 does not exist");
    option("ramp of bits beyond the device", "--ramp", "M_bit:0.0-100000.15", "does not exist");
    option("ramp downwards", "--ramp", "D_W:2-1", "expected FIRST-LAST");
    option("ramp without a span", "--ramp", "D_W:1=5", "expected =LOW..HIGH");
    option("ramp in no time", "--ramp", "D_W:1@0", "expected @MS from 1 to 3600000");
    option("ramp in endless time", "--ramp", "D_W:1@" + longText('9'), "from 1 to 3600000");
    option("empty fault", "--fault", "", "expected one of silence");
    option("line break in a fault", "--fault", "a\nb", "fault \"a?b\": expected one of");
    option("fault of a station that is not there", "--fault", "9:silence", "no station 9");
    option("delay beyond 32 bits", "--fault", "delay=99999999999", "values from 0 to 600000");
    option("delay backwards", "--fault", "delay=2..1", "expected delay=MS[..MS]");
    option("likelihood above all", "--fault", "silence@101%", "PERCENT from 0 to 100");
    option("likelihood of nothing", "--fault", "silence@%", "PERCENT from 0 to 100");
    option("fault that never fires", "--fault", "silence*0", "TIMES from 1 to 1000000000");
    option("times without a number", "--fault", "silence**", "TIMES from 1 to 1000000000");
    option("times beyond 32 bits", "--fault", "silence*4294967297", "TIMES from 1 to 1000000000");
    option("no copies", "--fault", "repeat=0", "values from 1 to 5");
    option("too many copies", "--fault", "repeat=1..6", "values from 1 to 5");
    option("answer longer than any", "--fault", "oversize=4097", "values from 0 to 4096");
    option("capture without a name", "--capture", "", "expected the name of a file");
    row("capture in no format", {"--tcp", "0", "--capture", "/nowhere/x", "--capture-as", "a\nb"},
        kUsage, "--capture-as 'a?b': expected pdu or rtac");
    row("capture of endless size",
        {"--tcp", "0", "--capture", "x", "--capture-size", longText('9')}, kUsage,
        "expected bytes from 16k to 1024G");
    row("capture in no directory", {"--tcp", "0", "--capture", "/nowhere/a\nb"}, kCannotOpen,
        "cannot write the capture to /nowhere/a?b: No such file");
    row("ring of captures that is none", {"--tcp", "0", "--capture", "-", "--capture-age", "1"},
        kCannotOpen, "it is no regular file");
    option("ring of captures of nothing", "--capture-age", "5", "expected --capture FILE with it");
    row("ring of no captures", {"--tcp", "0", "--capture", "x", "--capture-files", "0"}, kUsage,
        "--capture-files '0': expected a number from 1 to 1000");
    row("capture of no age", {"--tcp", "0", "--capture", "x", "--capture-age", "-1"}, kUsage,
        "expected seconds from 1 to 366d");
    option("counter of one word", "--counter", "D_W:1-3", "a counter takes pairs of words");
    option("sine beyond 64 bits", "--sine", "D_W:1=0.." + longText('9'), "expected =LOW..HIGH");
    option("endless range", "--walk", "D_W:1*" + longText('9'), "FIRST*COUNT");
    row("bad setting behind a good one", {"--tcp", "0", "--set", "D_W:1=1", "--set", "D_W:1=x"},
        kUsage, "expected values from -32768");
}

void addControlRows()
{
    option("commands from other machines", "--control", "0.0.0.0:0", "--control-remote as well");
    option("commands from nowhere", "--control", "", "or a path with a \"/\"");
    option("line break in a control address", "--control", "x\ny", "expected [HOST:]PORT");
    option("unknown format", "--control-format", "x\ny", "expected text or json, not \"x?y\"");
    option("replay of nothing", "--replay", "", "expected the name of a capture");
    option("line of no replay", "--replay-line", "x", "expected --replay FILE with it");
    row("replay of no file", {"--tcp", "0", "--replay", "/nowhere/a\nb"}, kCannotOpen,
        "--replay: /nowhere/a?b: No such file");
    row("replay of a directory", {"--tcp", "0", "--replay", "/"}, kCannotOpen, "--replay: /: ");
    row("endless replay", {"--tcp", "0", "--replay", "/dev/zero"}, kCannotOpen, "longer than");
    row("empty replay", {"--tcp", "0", "--replay", "/dev/null"}, kCannotOpen, "it is empty");
    row("replay of text", {"--tcp", "0", "--replay", "/etc/passwd"}, kCannotOpen,
        "/etc/passwd: it is no pcapng file");
    row("line that is not there",
        {"--tcp", "0", "--replay", PRESS_CAPTURE, "--replay-line", "x\ny"}, kUsage,
        "no line 'x?y' in it; there is '");
    option("port of commands beyond 16 bits", "--control", "127.0.0.1:65536", "a port from 0 to");
    row("value for an option of commands", {"--tcp", "0", "--control-remote=1"}, kUsage, "remote");
    option("scenario without a name", "--scenario", "", "expected press, or list");
    option("script without a name", "--script", "", "expected the name of a file");
    option("memory without a name", "--memory", "", "expected the name of a file");
    row("directory as script", {"--tcp", "0", "--script", "/"}, kCannotOpen, "--script: /: ");
    row("script that is no text", {"--tcp", "0", "--script", "/bin/true"}, kCannotOpen,
        ":1: a zero byte; expected text");
    row("memory that is no text", {"--tcp", "0", "--memory", "/bin/true"}, kCannotOpen,
        ":1: a zero byte; expected text");
    option("unknown scenario", "--scenario", "x\ny", "expected press, or list");
    row("file in the place of the socket", {"--tcp", "0", "--control", "/etc/passwd"}, kCannotOpen,
        "cannot take commands at /etc/passwd: File exists");
    row("socket in no directory", {"--tcp", "0", "--control", "/nowhere/a"}, kCannotOpen,
        "cannot take commands at /nowhere/a");
    row("endless socket", {"--tcp", "0", "--control", "/" + longText()}, kCannotOpen,
        "cannot take commands at");
    row("no script", {"--tcp", "0", "--script", "/nowhere/a\nb"}, kCannotOpen, "/nowhere/a?b: No");
    row("endless script", {"--tcp", "0", "--script", "/dev/zero"}, kCannotOpen, "longer than");
    row("directory as memory", {"--tcp", "0", "--memory", "/"}, kCannotOpen, "--memory: /: ");
    row("memory in no directory", {"--tcp", "0", "--memory", "/nowhere/a"}, kCannotOpen,
        "--memory: /nowhere/a cannot be made in its folder");
    row("endless memory", {"--tcp", "0", "--memory", "/dev/zero"}, kCannotOpen, "longer than");
}

} // namespace

void TestBadPlcArguments::refuses_data()
{
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("message");
    addPlaceRows();
    addSettingRows();
    addControlRows();
}

void TestBadPlcArguments::refuses()
{
    QFETCH(QList<QByteArray>, arguments);
    QFETCH(QByteArray, message);
    Program plc;
    QVERIFY(plc.startBytes(CNET_PLC, arguments));
    QTEST(plc.exitCode(), "exitCode");
    QCOMPARE(plc.lines(), QList<QByteArray>());
    QCOMPARE(faultOfComplaint(plc.errors(), "cnet-plc", message), QByteArray());
}

void TestBadPlcArguments::leavesOtherFilesAlone()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QLatin1String("link"));
    QVERIFY(QFile::link(QLatin1String("/etc/passwd"), path));
    Program plc;
    QVERIFY(plc.start(QLatin1String(CNET_PLC), {QLatin1String("--pty"), path}));
    QCOMPARE(plc.exitCode(), kCannotOpen);
    QCOMPARE(QFile::symLinkTarget(path), QLatin1String("/etc/passwd"));
}

QTEST_GUILESS_MAIN(TestBadPlcArguments)
#include "test_bad_plc_arguments.moc"
