#include "captured_output.h"

#include "panel/commands.h"
#include "panel/exit_code.h"

#include <QtTest>

using namespace panel;

class TestCommandSeries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prints_data();
    void prints();
};

void TestCommandSeries::prints_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("output"); // how standard output begins, lines divided by "|"
    QTest::addColumn<QString>("said");   // part of what is said; empty: nothing is
    const auto row = [](const char *arguments, int exitCode, const char *output,
                        const char *said = "") {
        QTest::newRow(arguments) << exitCode << QString::fromLatin1(output)
                                 << QString::fromLatin1(said);
    };
    row("D_W 100 --count 3", kFine, "100  100|101  101|102  102|");
    row("D_W 100 --count 3 --step 10", kFine, "100  100|110  110|120  120|");
    row("D_W 100 --count 2 --step word", kFine, "100  100|101  101|");
    row("D_W 100 --count 2 --step dword", kFine, "100  100|102  102|");
    row("M_bit 3.15 --count 2 --step dword", kFine, "3.15  63|4.0  64|");
    row("TX 7 --count 1", kFine, "7  7|");
    row("D_W 9998 --count 4", kFine, "9998  9998|9999  9999|9999  9999|9999  9999|",
        "some would lie beyond the highest address and were set to it, 9999");
    row("", kUsage, "", "expected a register and its first address");
    row("D_W 1", kUsage, "", "expected --count N");
    row("D_W 1 --count 0", kUsage, "", "expected a number from 1 to 1000000");
    row("D_W 1 --count 1000001", kUsage, "", "expected a number from 1 to 1000000");
    row("D_W 1 --count 1 --step 0", kUsage, "",
        "expected a number from 1 to 1000000, word or dword");
    row("D_W 1 --count 1 --step x", kUsage, "",
        "expected a number from 1 to 1000000, word or dword");
    row("D_W 10000 --count 1", kUsage, "", "'10000': out of range; an address of D_W is a number");
    row("M_bit 3 --count 1", kUsage, "",
        "'3': not in the register's format; an address of M_bit is WORD.BIT");
    row("Q_W 3 --count 1", kUsage, "", "the driver has no register 'Q_W', it has D_W ");
}

void TestCommandSeries::prints()
{
    QFETCH(QString, output);
    QFETCH(QString, said);
    QStringList lines;
    Messages messages;
    messages.setSink([&](const QString &line) { lines.append(line); });
    QStringList arguments{QLatin1String("cnet-panel"), QLatin1String("--driver"),
                          QLatin1String(DRIVER_FILE), QLatin1String("series")};
    arguments +=
        QString::fromLatin1(QTest::currentDataTag()).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    CapturedOutput captured;
    const int exitCode = runCommandLine(arguments, messages);
    const QString printed =
        QString::fromLatin1(captured.end()).replace(QLatin1Char('\n'), QLatin1Char('|'));
    QTEST(exitCode, "exitCode");
    QVERIFY2(printed.left(output.size()) == output && printed.isEmpty() == output.isEmpty(),
             qPrintable(printed));
    QCOMPARE(lines.size(), said.isEmpty() ? 0 : 1);
    QVERIFY2(lines.join(QLatin1Char('|')).contains(said), qPrintable(lines.join(QLatin1Char('|'))));
}

QTEST_GUILESS_MAIN(TestCommandSeries)
#include "test_command_series.moc"
