#include "captured_output.h"

#include "panel/commands.h"
#include "panel/exit_code.h"

#include <QtTest>

using namespace panel;

class TestCommandRecipe : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prints_data();
    void prints();
};

void TestCommandRecipe::prints_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("output"); // how standard output begins, lines divided by "|"
    QTest::addColumn<QString>("said");   // part of what is said; empty: nothing is
    const auto row = [](const char *arguments, int exitCode, const char *output,
                        const char *said = "") {
        QTest::newRow(arguments) << exitCode << QString::fromLatin1(output)
                                 << QString::fromLatin1(said);
    };
    row("", kUsage, "", "expected recipe write FILE or recipe read FILE");
    row("write", kUsage, "", "expected recipe write FILE");
    row("send x", kUsage, "", "expected recipe write FILE");
    row("read a b", kUsage, "", "expected recipe write FILE");
    row("write /nowhere/file", kUsage, "", "cannot read /nowhere/file: No such file");
    row("read /nowhere/file", kUsage, "", "cannot read /nowhere/file: No such file");
    row("write /", kUsage, "", "cannot read /");
    row("write /dev/zero", kUsage, "", "/dev/zero is no recipe: it is longer than");
    row("write /dev/null", kUsage, "", "/dev/null:1: the file has no items");
    row("write x --output y", kUsage, "", "--output is for recipe read");
    row("write x --link y", kUsage, "", "expected sim, tcp:HOST:PORT");
}

void TestCommandRecipe::prints()
{
    QFETCH(QString, output);
    QFETCH(QString, said);
    QStringList lines;
    Messages messages;
    messages.setSink([&](const QString &line) { lines.append(line); });
    QStringList arguments{QLatin1String("cnet-panel"), QLatin1String("--driver"),
                          QLatin1String(DRIVER_FILE), QLatin1String("recipe")};
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

QTEST_GUILESS_MAIN(TestCommandRecipe)
#include "test_command_recipe.moc"
