#include "support/rows.h"

#include "view/shell/start.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::view;

namespace {

struct Row
{
    const char *what;
    const char *arguments; ///< divided by blanks
    int exitCode;          ///< negative: it starts
    const char *file;
    const char *connection; ///< empty: to none at once
    const char *output;     ///< the beginning, where it does not start
};

const Row kRows[] = {
    {"nothing", "", -1, "", "", ""},
    {"a project", "oven.cnet-view", -1, "oven.cnet-view", "", ""},
    {"a line", "--link tcp:plc:8000", -1, "", "tcp:plc:8000", ""},
    {"a line and tags", "--link serial:/dev/ttyS0,9600 tags.csv", -1, "tags.csv",
     "serial:/dev/ttyS0,9600,8,NONE,1", ""},
    {"help", "--help", 0, "", "", "Usage: "},
    {"the version", "--version", 0, "", "", "cnet-view "},
    {"two files", "a b", 2, "", "", "cnet-view: one file at a time, not 'b'"},
    {"an unknown option", "--what", 2, "", "", "cnet-view: Unknown option 'what'"},
    {"a line that is none", "--link udp:plc", 2, "", "", "cnet-view: "},
    {"a station that is none", "--station x", 2, "", "",
     "cnet-view: --station 'x': expected 0 to 31"},
    {"a station beyond all", "--station 32", 2, "", "",
     "cnet-view: --station '32': expected 0 to 31"},
};

} // namespace

/** What a start is asked for. */
class TestStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isRead_data() { addRows(kRows); }
    void isRead();
    void knowsWhenNothingWasSaid();
};

void TestStart::isRead()
{
    const auto &row = currentRow(kRows);
    QStringList arguments{QLatin1String("cnet-view")};
    arguments += QString::fromLatin1(row.arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QString output;
    int exitCode = -1;
    const auto start = readStart(arguments, output, exitCode);
    QCOMPARE(start.has_value(), row.exitCode < 0);
    if (!start) {
        QCOMPARE(exitCode, row.exitCode);
        QVERIFY2(output.startsWith(QLatin1String(row.output)), qPrintable(output));
        return;
    }
    QCOMPARE(start->file, QString::fromLatin1(row.file));
    QCOMPARE(start->connection ? start->connection->text() : QString(),
             QString::fromLatin1(row.connection));
}

void TestStart::knowsWhenNothingWasSaid()
{
    QString output;
    int exitCode = -1;
    const QString name = QLatin1String("cnet-view");
    QVERIFY(readStart({name}, output, exitCode)->isDemo);
    QVERIFY(!readStart({name, QLatin1String("tags.csv")}, output, exitCode)->isDemo);
    const auto start = readStart({name, QLatin1String("--link"), QLatin1String("tcp:a:1"),
                                  QLatin1String("--station"), QLatin1String("7")},
                                 output, exitCode);
    QVERIFY(!start->isDemo);
    QCOMPARE(start->connection->station, 7);
}

QTEST_GUILESS_MAIN(TestStart)
#include "test_start.moc"
