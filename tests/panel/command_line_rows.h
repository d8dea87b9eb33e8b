#pragma once

#include "panel/captured_output.h"

#include "panel/main/command_line.h"

#include <QtTest>

/**
 * Rows of a table that is a command's arguments (the row's name), its exit code, how its standard
 * output begins (lines divided by "|") and a part of what it says (empty: it says nothing).
 */
inline void addCommandLineColumns()
{
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("said");
}

inline void addCommandLine(const char *arguments, int exitCode, const char *output,
                           const char *said = "")
{
    QTest::newRow(arguments) << exitCode << QString::fromLatin1(output)
                             << QString::fromLatin1(said);
}

/** Runs `cnet-panel COMMAND` with the arguments of the current row, and looks at what came of it.
 */
inline void checkCommandLine(const char *command)
{
    QFETCH(QString, output);
    QFETCH(QString, said);
    const QLatin1Char divider('|');
    QStringList lines;
    cnet::panel::Messages messages;
    messages.setSink([&](const QString &line) { lines.append(line); });
    QStringList arguments{QLatin1String("cnet-panel"), QLatin1String("--driver"),
                          QLatin1String(DRIVER_FILE), QLatin1String(command)};
    arguments +=
        QString::fromLatin1(QTest::currentDataTag()).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    CapturedOutput captured;
    const int exitCode = cnet::panel::runCommandLine(arguments, messages);
    const QString printed = QString::fromLatin1(captured.end()).replace(QLatin1Char('\n'), divider);
    QTEST(exitCode, "exitCode");
    QVERIFY2(printed.left(output.size()) == output && printed.isEmpty() == output.isEmpty(),
             qPrintable(printed));
    QCOMPARE(lines.size(), said.isEmpty() ? 0 : 1);
    QVERIFY2(lines.join(divider).contains(said), qPrintable(lines.join(divider)));
}
