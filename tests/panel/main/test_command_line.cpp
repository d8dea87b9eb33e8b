#include "panel/captured_output.h"

#include "panel/main/command_line.h"
#include "panel/system/exit_code.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refuses_data();
    void refuses();
    void saysItsVersion_data();
    void saysItsVersion();
};

// Every refusal is one line that says what was expected.
void TestCommandLine::refuses_data()
{
    QTest::addColumn<QString>("arguments"); // divided by blanks
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *arguments, int exitCode, const char *message) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << exitCode
                                 << QString::fromLatin1(message);
    };
    row("", kUsage, "expected a command");
    row("bogus", kUsage, "no command 'bogus'");
    row("--link sim bogus", kUsage, "no command 'bogus'");
    row("--wrong monitor D_W:1", kUsage, "Unknown option 'wrong'");
    row("describe extra", kUsage, "describe takes no arguments");
    row("describe --count 3", kUsage, "Unknown option 'count'");
    row("monitor", kUsage, "expected at least one item");
    row("monitor D_W:x", kUsage, "an address of D_W is a number from 0 to 9999");
    row("monitor D_W:1 D_Q:1", kUsage, "no register 'D_Q'");
    row("monitor --link x D_W:1", kUsage, "serial:DEVICE, or sim for the simulated PLC");
    row("monitor --format x D_W:1", kUsage, "expected text, json or csv");
    row("monitor --count 0 D_W:1", kUsage, "expected a number from 1 to");
    row("monitor --count x D_W:1", kUsage, "expected a number from 1 to");
    row("monitor --for 0 D_W:1", kUsage, "expected a number of seconds above 0");
    row("monitor --for -1 D_W:1", kUsage, "expected a number of seconds above 0");
    row("monitor --for nan D_W:1", kUsage, "expected a number of seconds above 0");
    row("monitor --for 1e99 D_W:1", kUsage,
        "expected a number of seconds above 0, at most 2000000");
    row("monitor --station 32 D_W:1", kUsage, "expected a number from 0 to 31");
    row("monitor --station -1 D_W:1", kUsage, "expected a number from 0 to 31");
    row("monitor --block-words 0 D_W:1", kUsage, "expected a number from 1 to 255");
    row("monitor --block-words 256 D_W:1", kUsage, "expected a number from 1 to 255");
    row("monitor --retries 0 D_W:1", kUsage, "expected a number from 1 to 1000");
    row("monitor --timeout 0 D_W:1", kUsage, "expected a number from 1 to");
    row("monitor --interval -1 D_W:1", kUsage, "expected a number from 0 to");
    row("monitor --count", kUsage, "Missing value");
    row("write D_W:1=1", kUsage, "expected --link, where to write");
    row("write D_W:x=1", kUsage, "expected --link, where to write");
    row("write --link sim", kUsage, "expected at least one ITEM=VALUE");
    row("write --link sim --interval 5 D_W:1=1", kUsage, "Unknown option 'interval'");
    row("read --interval 5 D_W:1", kUsage, "Unknown option 'interval'");
    row("recipe", kUsage, "expected recipe write FILE or recipe read FILE");
    row("read D_W:1-5", kUsage, "did you mean D_W:1*5?");
    row("monitor 2/D_W:10-19", kUsage, "did you mean 2/D_W:10*10?");
    row("read D_W:5-1", kUsage, "an address of D_W is a number from 0 to 9999");
    row("read @no-such-list", kUsage, "cannot read no-such-list: No such file");
    row("read @/dev/null", kUsage, "expected at least one item");
    row("read @/dev/zero", kUsage, "/dev/zero cannot be used: it is longer than");
    row("read D_W:1@float", kUsage, "'float' is no type; expected bool, u16");
    row("read D_W:9999@f32", kUsage, "1 value of f32 would take 2 words");
    row("read M_bit:1.0@u16", kUsage, "u16 takes words, and M_bit has bits");
    row("read D_W:1@i16*0", kUsage, "a scale is a number other than 0");
    row("write --link sim D_W:1@i16=40000", kUsage, "40000 does not fit i16");
    row("write --link sim D_W:1@f32=nan", kUsage, "'nan' is no value of f32");
    row("write --link sim D_W:1@bcd4=12345", kUsage, "12345 does not fit bcd4");
    row("write --link sim D_W:1@string2=abc", kUsage, "'abc' has 3 characters");
    row("write --link sim T_W:1@bit3=1", kUsage, "a bit of T_W cannot be written by itself");
    row("write --link sim D_W:1=1 D_W:1@f32=x", kUsage, "'x' is no value of f32");
    row("identify", kUsage, "expected at least one item");
    row("identify D_W:1 D_W:2", kUsage, "expected one item of 1 to 60 words without a type");
    row("identify M_bit:1.0", kUsage, "expected one item of 1 to 60 words");
    row("identify D_W:1@f32", kUsage, "expected one item of 1 to 60 words");
    row("identify D_W:1*61", kUsage, "for example D_W:100*4");
    row("monitor --link serial:/nowhere/tty D_W:1", kNoLink, "cannot open serial /nowhere/tty");
    row("read D_W:1*0", kUsage, "expected a count of 1 to 9999, since an address of D_W is");
    row("read D_W:9999*2", kUsage, "expected a count of 1, since an address of D_W is");
    row("--driver /nowhere/lib.so describe", kNoDriver, "there is no file /nowhere/lib.so");
    row("describe --driver /nowhere/lib.so", kNoDriver, "cannot load the driver");
}

void TestCommandLine::refuses()
{
    QFETCH(QString, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, message);
    QStringList said;
    Messages messages;
    messages.setSink([&](const QString &line) { said.append(line); });
    QStringList all{QLatin1String("cnet-panel")};
    if (!arguments.contains(QLatin1String("--driver"))) {
        all += {QLatin1String("--driver"), QLatin1String(DRIVER_FILE)};
    }
    all += arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QCOMPARE(runCommandLine(all, messages), exitCode);
    QCOMPARE(said.size(), 1);
    QVERIFY2(said.first().startsWith(QLatin1String("cnet-panel: ")), qPrintable(said.first()));
    QVERIFY2(said.first().contains(message), qPrintable(said.first()));
    QVERIFY(!said.first().contains(QLatin1Char('\n')));
}

void TestCommandLine::saysItsVersion_data()
{
    QTest::addColumn<QStringList>("arguments");
    const QString panel = QLatin1String("cnet-panel");
    QTest::newRow("-v") << QStringList{panel, QLatin1String("-v")};
    QTest::newRow("--version") << QStringList{panel, QLatin1String("--version")};
    QTest::newRow("of a command") << QStringList{panel, QLatin1String("read"), QLatin1String("-v")};
}

void TestCommandLine::saysItsVersion()
{
    QFETCH(QStringList, arguments);
    Messages messages;
    CapturedOutput captured;
    const int exitCode = runCommandLine(arguments, messages);
    const QByteArray printed = captured.end();
    QCOMPARE(exitCode, static_cast<int>(kFine));
    QVERIFY2(printed.startsWith("cnet-panel 2."), printed.constData());
}

QTEST_GUILESS_MAIN(TestCommandLine)
#include "test_command_line.moc"
