#include "panel/captured_output.h"

#include "panel/main/command_line.h"
#include "panel/main/help_text.h"

#include <QRegularExpression>
#include <QtTest>

using namespace cnet::panel;

class TestHelpText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fitsATerminal_data();
    void fitsATerminal();
    void beginsWithTheUsage_data();
    void beginsWithTheUsage();
    void listsWhatTheCommandTakes_data();
    void listsWhatTheCommandTakes();
    void namesTheExitCodesOfTheDocuments_data();
    void namesTheExitCodesOfTheDocuments();
    void wraps();
};

namespace {

const char *const kCommands[] = {"monitor",     "read",     "write", "recipe write",
                                 "recipe read", "describe", "check", "series"};

const char *const kOptions[] = {"link",  "station",   "block-words", "retries", "timeout", "trace",
                                "count", "interval",  "for",         "format",  "output",  "words",
                                "bits",  "no-verify", "write",       "step",    "driver"};

QString said(const QStringList &arguments, QByteArray &printed)
{
    QStringList lines;
    Messages messages;
    messages.setSink([&](const QString &line) { lines.append(line); });
    CapturedOutput captured;
    runCommandLine(QStringList{QLatin1String("cnet-panel")} + arguments, messages);
    printed = captured.end();
    return lines.join(QLatin1Char('\n'));
}

QString helpOf(const QString &command)
{
    QByteArray printed;
    said(command.split(QLatin1Char(' '), Qt::SkipEmptyParts) + QStringList{QLatin1String("--help")},
         printed);
    return QString::fromLatin1(printed);
}

// "2 bad usage": each code and how its meaning begins.
QStringList codesIn(const QString &text, const char *pattern)
{
    const int kBeginning = 8;
    QStringList codes;
    QRegularExpressionMatchIterator all =
        QRegularExpression(QLatin1String(pattern), QRegularExpression::MultilineOption)
            .globalMatch(text);
    while (all.hasNext()) {
        const QRegularExpressionMatch match = all.next();
        codes.append(match.captured(1) + QLatin1Char(' ') +
                     match.captured(2).toLower().remove(QLatin1Char('.')).left(kBeginning));
    }
    return codes;
}

void addCommandRows()
{
    QTest::addColumn<QString>("command");
    for (const char *command : kCommands) {
        QTest::newRow(command) << QString::fromLatin1(command);
    }
}

} // namespace

void TestHelpText::fitsATerminal_data()
{
    addCommandRows();
    QTest::newRow("no command") << QString();
}

void TestHelpText::fitsATerminal()
{
    QFETCH(QString, command);
    const QStringList lines = helpOf(command).split(QLatin1Char('\n'));
    QVERIFY(lines.size() > 10);
    for (const QString &line : lines) {
        QVERIFY2(line.size() < 80, qPrintable(line));
    }
}

void TestHelpText::beginsWithTheUsage_data()
{
    addCommandRows();
}

void TestHelpText::beginsWithTheUsage()
{
    QFETCH(QString, command);
    QVERIFY(
        helpOf({}).startsWith(QLatin1String("Usage: cnet-panel COMMAND [options] [arguments]\n")));
    const QString help = helpOf(command);
    QVERIFY2(help.startsWith(QLatin1String("Usage: cnet-panel ") + command +
                             QLatin1String(" [options]")),
             qPrintable(help));
    QVERIFY(!help.contains(QLatin1String(" \n")));
    QVERIFY(help.contains(QLatin1String("\nExamples:\n  cnet-panel ") + command));
}

void TestHelpText::listsWhatTheCommandTakes_data()
{
    addCommandRows();
}

// Neither is an option listed that the command refuses, nor one left out that it takes.
void TestHelpText::listsWhatTheCommandTakes()
{
    QFETCH(QString, command);
    const QString help = helpOf(command);
    QByteArray printed;
    for (const char *option : kOptions) {
        const QString name = QLatin1String("--") + QLatin1String(option);
        const QString answer = said(command.split(QLatin1Char(' ')) + QStringList{name}, printed);
        const bool refused = answer.contains(QLatin1String("Unknown option"));
        const QString listed = QLatin1String("  ") + name + QLatin1Char(' ');
        QVERIFY2(help.contains(listed) != refused, option);
    }
}

void TestHelpText::namesTheExitCodesOfTheDocuments_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("pattern");
    QTest::newRow("panel.md") << "doc/panel.md" << QByteArray("^\\| ([0-9]) \\| (.*) \\|$");
    QTest::newRow("manual page") << "doc/man/cnet-panel.1" << QByteArray("^\\.It ([0-9])\\n(.*)$");
}

void TestHelpText::namesTheExitCodesOfTheDocuments()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, pattern);
    QFile document(QLatin1String(PROJECT_DIRECTORY) + QLatin1Char('/') + file);
    QVERIFY(document.open(QIODevice::ReadOnly));
    const QStringList codes = codesIn(helpOf({}), "^  ([0-9])  (.*)$");
    QCOMPARE(codes.size(), 6);
    QCOMPARE(codesIn(QString::fromUtf8(document.readAll()), pattern.constData()), codes);
}

void TestHelpText::wraps()
{
    const QString word(30, QLatin1Char('x'));
    QCOMPARE(wrapped(word + QLatin1Char(' ') + word + QLatin1Char(' ') + word, 4),
             QLatin1String("    ") + word + QLatin1Char(' ') + word + QLatin1String("\n    ") +
                 word + QLatin1Char('\n'));
    QCOMPARE(wrapped({}, 0), QLatin1String("\n"));
}

QTEST_GUILESS_MAIN(TestHelpText)
#include "test_help_text.moc"
