#include "captured_output.h"

#include "panel/commands.h"
#include "panel/exit_code.h"

#include <QtTest>

using namespace panel;

class TestCommandCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prints_data();
    void prints();
};

void TestCommandCheck::prints_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("output"); // how standard output begins, lines divided by "|"
    QTest::addColumn<QString>("said");   // part of what is said; empty: nothing is
    const auto row = [](const char *arguments, int exitCode, const char *output,
                        const char *said = "") {
        QTest::newRow(arguments) << exitCode << QString::fromLatin1(output)
                                 << QString::fromLatin1(said);
    };
    row("D_W 100", kFine,
        "D_W 100: valid|number    100|size      1 word|limits    a number from 0 to 9999|");
    row("M_bit 3.5", kFine,
        "M_bit 3.5: valid|number    53|size      1 bit|limits    WORD.BIT from 0.0 to 255.15|");
    row("TX 255 --bits 1 --write", kFine, "TX 255: valid|number    255|");
    row("F_W 3 --write --words 4", kFine, "F_W 3: valid|number    3|size      4 words|");
    row("D_W 9999 --words 2", kUsage,
        "D_W 9999: not valid, out of range|size      2 words|limits    a number from 0 to 9999|");
    row("D_W 10000", kUsage, "D_W 10000: not valid, out of range|");
    row("M_bit 255.15 --bits 2", kUsage, "M_bit 255.15: not valid, out of range|");
    row("M_bit 3.5 --words 1", kUsage, "M_bit 3.5: not valid, a bit register used as words");
    row("D_W 3 --bits 1", kUsage,
        "D_W 3: not valid, a bit register used as words, or a word register");
    row("D_W x", kUsage, "D_W x: not valid, not in the register's format|");
    row("M_bit 3.16", kUsage, "M_bit 3.16: not valid, not in the register's format|");
    row("Q_W 0", kUsage, "Q_W 0: not valid, no such register|registers D_W ");
    row("Q_W 5", kUsage, "Q_W 5: not valid, no such register|registers D_W ");
    row("", kUsage, "", "expected a register and an address");
    row("D_W", kUsage, "", "expected a register and an address");
    row("D_W 1 2", kUsage, "", "expected a register and an address");
    row("D_W 1 --words 1 --bits 1", kUsage, "", "expected --words or --bits, not both");
    row("D_W 1 --words 0", kUsage, "", "expected a number from 1");
    row("D_W 1 --words x", kUsage, "", "expected a number from 1");
    row("D_W 1 --count 1", kUsage, "", "Unknown option 'count'");
}

void TestCommandCheck::prints()
{
    QFETCH(QString, output);
    QFETCH(QString, said);
    QStringList lines;
    Messages messages;
    messages.setSink([&](const QString &line) { lines.append(line); });
    QStringList arguments{QLatin1String("cnet-panel"), QLatin1String("--driver"),
                          QLatin1String(DRIVER_FILE), QLatin1String("check")};
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

QTEST_GUILESS_MAIN(TestCommandCheck)
#include "test_command_check.moc"
