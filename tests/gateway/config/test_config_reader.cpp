#include "gateway/support/read_config.h"
#include "support/rows.h"

using namespace cnet;
using namespace cnet::gateway;

/** A configuration says what it says, and all that is wrong with it. */
class TestConfigReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasUsualValues();
    void readsAll();
    void saysWhatIsWrong_data();
    void saysWhatIsWrong();
    void saysAllAtOnce();
    void breaksOffAtEndlessKeys();
    void hasADemo();
    void knowsWhatIsTheSame();
};

namespace {

const SqliteSettings &sqliteOf(const GatewayConfig &config, int sink)
{
    return std::get<SqliteSettings>(config.sinks.at(sink).settings);
}

// Each is put behind the least configuration, whose line it goes on with.
const Case<const char *, const char *> kMistakes[] = {
    {"no TOML", "stat ion = 1", "4:6: Error while parsing key-value pair: expected '=', saw 'i'"},
    {"no key in brackets", "[=", "4:2: Error while parsing key: expected bare key"},
    {"a letter of another script", "\xd0\xb3", "4:1: "},
    {"a comment in brackets", "[# line", "4:2: Error while parsing key: expected bare key"},
    {"a key twice", "tags = \"b\"",
     "4:8: Error while parsing key-value pair: cannot redefine existing string 'tags'"},
    {"an unknown key", "intervall = \"1s\"",
     "4:1: line.press.intervall: there is no such key; did you mean interval?"},
    {"an audit log in the ledger", "[audit]\npath = \"ledger.sqlite\"",
     "4:1: audit: the ledger has its file already"},
    {"a history in the audit log", "[sink.a]\npath = \"writes.jsonl\"",
     "5:8: sink.a.path: the audit log has it already"},
    {"an unknown table", "[ledgr]", "4:2: ledgr: there is no such key; did you mean ledger?"},
    {"not a number", "station = \"1\"",
     "4:11: line.press.station: expected a whole number from 0 to 31"},
    {"a number that is too great", "station = 32",
     "4:11: line.press.station: expected a whole number from 0 to 31"},
    {"a time without a unit", "interval = 100",
     "4:12: line.press.interval: expected a time from \"0\" to \"10m\", as in \"250ms\", \"10s\", "
     "\"5m\", \"2h\" or \"30d\""},
    {"a time that is too long", "interval = \"11m\"",
     "4:12: line.press.interval: expected a time from \"0\" to \"10m\", as in \"250ms\", \"10s\", "
     "\"5m\", \"2h\" or \"30d\""},
    {"times that contradict", "report_least = \"2s\"\nreport_longest = \"1s\"",
     "5:18: line.press.report_longest: it is shorter than report_least"},
    {"a serial line", "serial = \"fast\"", "4:10: line.press.serial: "},
    {"a size that is too small", "[ledger]\nsize = \"1kB\"",
     "5:8: ledger.size: expected a size of 100kB or more, as in \"500kB\", \"100MB\" or \"4GB\""},
    {"a word", "[ledger]\ndurability = \"ful\"",
     "5:14: ledger.durability: expected \"full\" or \"normal\"; did you mean full?"},
    {"nothing but a wrong link", "[line.b]\ntags = \"b\"\nlink = \"x\"\nserial = \"9600\"",
     "6:8: line.b.link: "},
    {"a kind that is typed wrong", "[sink.a]\nkind = \"spakplug\"\ngroup = \"a\"\nnode = \"b\"",
     "5:8: sink.a.kind: expected \"sqlite\" or \"mqtt\" or \"postgresql\" or \"sparkplug\"; did "
     "you "
     "mean sparkplug?"},
    {"a kind", "[sink.a]\nkind = \"mysql\"", "5:8: sink.a.kind: expected \"sqlite\" or"},
    {"a text that is empty", "[sink.a]\npath = \"\"",
     "5:8: sink.a.path: expected a text in quotation marks that is not empty"},
    {"no table", "[sink]\nkind = \"sqlite\"",
     "5:1: sink.kind: expected a table with a name, [sink.press]"},
    {"a line without a name", "[line.\"\"]",
     "4:7: line.: expected a table with a name, [line.press]"},
    {"a sink that would be in another folder", "[sink.\"../a\"]",
     "4:1: sink.../a: expected a name without '/'"},
    {"a table within a line", "[line.press.x]", "4:13: line.press.x: there is no such key"},
    {"a link", "[line.b]\ntags = \"b\"\nlink = \"10.0.0.1\"", "6:8: line.b.link: "},
    {"metrics for everybody", "[metrics]\nlisten = \"0.0.0.0:9464\"",
     "5:10: metrics.listen: expected a port of this machine alone, as in \"127.0.0.1:9464\""},
    {"metrics nowhere", "[metrics]",
     "4:1: metrics: there is no listen; for example listen = \"127.0.0.1:9464\""},
    {"a line without a link", "[line.b]\ntags = \"b\"",
     "4:1: line.b: there is no link; for example link = \"tcp:192.168.0.100:8000\""},
    {"a line without tags", "[line.b]\nlink = \"simulated\"",
     "4:1: line.b: there is no tags; for example tags = \"press.csv\""},
    {"a port of two lines", "[line.b]\nlink = \"tcp:10.0.0.1:8000\"\ntags = \"b\"",
     "2:8: line.press.link: line.b has it already"},
    {"a device of two lines",
     "[line.b]\nlink = \"serial:/dev/tty\"\ntags = \"b\"\n"
     "[line.c]\ntags = \"b\"\nlink = \"serial:/dev/../dev/tty,9600\"",
     "9:8: line.c.link: line.b has it already"},
    {"a file of two sinks", "[sink.a]\npath = \"x\"\n[sink.b]\npath = \"/var/lib/gw/./x\"",
     "7:8: sink.b.path: sink.a has it already"},
    {"the usual file of two sinks", "[sink.a]\n[sink.b]", "5:1: sink.b.path: sink.a has it"},
    {"a sink in the ledger", "[sink.a]\npath = \"ledger.sqlite\"",
     "5:8: sink.a.path: the ledger has it already"},
};

} // namespace

void TestConfigReader::hasUsualValues()
{
    QStringList mistakes;
    const auto config = readConfigText(kLeastConfig, mistakes);
    QCOMPARE(mistakes, QStringList());
    QVERIFY(config);
    QCOMPARE(config->lines.first().name, QLatin1String("press"));
    QCOMPARE(config->lines.first().tagFile, QLatin1String("/etc/gw/press.csv"));
    QCOMPARE(config->lines.first().link->host, QLatin1String("10.0.0.1"));
    QVERIFY(config->lines.first().session.firstOpen == FirstOpen::Again);
    QCOMPARE(config->sinks.size(), 1);
    QCOMPARE(sqliteOf(*config, 0).path, QLatin1String("/var/lib/gw/history.sqlite"));
    QCOMPARE(config->ledger.path, QLatin1String("/var/lib/gw/ledger.sqlite"));
    QVERIFY(config->ledger.durability == Database::Durability::Full);
    QVERIFY(!config->metrics);
    QCOMPARE(config->stateFolder, QLatin1String("/var/lib/gw"));
}

void TestConfigReader::readsAll()
{
    QStringList mistakes;
    const auto config = readConfigText(R"(state = "/data"
[ledger]
path = "l.sqlite"
size = "2GB"
age = "7d"
durability = "normal"
[batch]
changes = 10
age = "200ms"
[metrics]
listen = "127.0.0.1:9464"
[line.oven]
link = "serial:/dev/ttyS0,19200,8,EVEN,1"
tags = "/tags/oven.csv"
station = 3
block_words = 50
attempts = 2
interval = "1s"
timeout = "300ms"
stale = "5s"
report_least = "2s"
report_longest = "10m"
[line.press]
link = "simulated"
serial = "9600"
tags = "press.csv"
[sink.long]
kind = "sqlite"
path = "long.sqlite"
age = "3650d"
size = "100GB"
[sink.short]
age = "1d"
)",
                                       mistakes);
    QCOMPARE(mistakes, QStringList());
    QVERIFY(config);
    QCOMPARE(config->ledger.path, QLatin1String("/data/l.sqlite"));
    QCOMPARE(config->ledger.bounds.bytes, Q_INT64_C(2000000000));
    QCOMPARE(config->ledger.bounds.ageMs, Q_INT64_C(604800000));
    QVERIFY(config->ledger.durability == Database::Durability::Normal);
    QCOMPARE(config->batch.changes, 10);
    QCOMPARE(config->batch.ageMs, 200);
    QCOMPARE(config->metrics->port, 9464);
    QCOMPARE(config->stateFolder, QLatin1String("/data"));
    const LineConfig &oven = config->lines.first();
    QCOMPARE(oven.session.line.text(), QLatin1String("19200,8,EVEN,1"));
    QVERIFY(oven.session.lineSpeed == LineSpeed::Known);
    QCOMPARE(oven.tagFile, QLatin1String("/tags/oven.csv"));
    const QVector<qint64> numbers{oven.station,           oven.session.blockWords,
                                  oven.session.attempts,  oven.session.intervalMs,
                                  oven.session.timeoutMs, oven.session.staleMs,
                                  oven.report.leastMs,    oven.report.longestMs};
    QCOMPARE(numbers, QVector<qint64>({3, 50, 2, 1000, 300, 5000, 2000, 600000}));
    QVERIFY(!config->lines.last().link);
    QCOMPARE(config->lines.last().session.line.baud, 9600);
    QCOMPARE(config->sinks.size(), 2);
    QCOMPARE(sqliteOf(*config, 0).path, QLatin1String("/data/long.sqlite"));
    QCOMPARE(sqliteOf(*config, 0).bytes, Q_INT64_C(100000000000));
    QCOMPARE(sqliteOf(*config, 1).ageMs, Q_INT64_C(86400000));
}

void TestConfigReader::saysWhatIsWrong_data()
{
    addRows(kMistakes);
}

void TestConfigReader::saysWhatIsWrong()
{
    const auto &row = currentRow(kMistakes);
    findsOneMistake(QByteArray(kLeastConfig) + row.given + '\n', row.expected);
}

void TestConfigReader::saysAllAtOnce()
{
    QStringList mistakes;
    QVERIFY(!readConfigText("[ledger]\nsize = 1\nage = 2\n[sink.a]\nkind = 3\nx = 4\n", mistakes));
    QCOMPARE(mistakes.size(), 4);
    QVERIFY2(mistakes.first().startsWith(QLatin1String("1:1: there is no line")),
             qPrintable(mistakes.first()));
    // Nobody knows whether it has a key x.
    QVERIFY2(mistakes.last().startsWith(QLatin1String("5:8: sink.a.kind")),
             qPrintable(mistakes.last()));
    findsOneMistake("\xff", "1:1: ");
}

// Tables within tables are as deep as a file likes, and a stack is not.
void TestConfigReader::breaksOffAtEndlessKeys()
{
    const QByteArray keys = QByteArray("a.").repeated(50000) + "a";
    const char *const expected = ": expected at most 1000 dots outside quotation marks in a line";
    findsOneMistake("[" + keys + "]\n", QByteArray("1:2003") + expected);
    findsOneMistake("x = 'a.b'\n" + keys + " = 1\n", QByteArray("2:2002") + expected);
    QStringList mistakes;
    QVERIFY(readConfigText("state = \"" + keys + "\"\n" + kLeastConfig, mistakes));
}

void TestConfigReader::hasADemo()
{
    const GatewayConfig demo = demoConfig(QLatin1String(":/tags.csv"), QLatin1String("/tmp"));
    QVERIFY(!demo.lines.first().link);
    QCOMPARE(demo.lines.first().tagFile, QLatin1String(":/tags.csv"));
    QCOMPARE(sqliteOf(demo, 0).path, QLatin1String("/tmp/history.sqlite"));
    QCOMPARE(demo.ledger.path, QLatin1String("/tmp/ledger.sqlite"));
}

void TestConfigReader::knowsWhatIsTheSame()
{
    const auto written = [](const QByteArray &more, bool isLine) {
        QStringList mistakes;
        const auto config = readConfigText(QByteArray(kLeastConfig) + more, mistakes);
        return !config  ? mistakes.join(QLatin1Char('\n'))
               : isLine ? config->lines.first().written
                        : config->sinks.first().written;
    };
    const QString line = written("", true);
    QCOMPARE(written("station = 2 # of the press\nreport_least = \"1s\"\n", true), line);
    QVERIFY(written("interval = \"1s\"\n", true) != line);
    QCOMPARE(written("attempts = 2\ninterval = \"1s\"\n", true),
             written("interval = \"1s\"\n\nattempts = 2\n", true));
    const QString sink = written("[sink.a]\nage = \"1d\"\n", false);
    QCOMPARE(written("[ledger]\n[sink.a]\nage='1d'\n", false), sink);
    QVERIFY(written("[sink.a]\nage = \"2d\"\n", false) != sink);
    QVERIFY(written("[sink.a]\nsize = \"1GB\"\n", false) != sink);
    QStringList none;
    const QByteArray press = "[line.press]\nlink = \"simulated\"\ntags = \"press.csv\"\n";
    QVERIFY(readConfigText(press, none)->lines.first().written !=
            readConfigText(press + "station = 2\n", none)->lines.first().written);
    // The sink that a configuration without any has moves with the folder.
    QVERIFY(demoConfig(QString(), QLatin1String("/a")).sinks.first().written !=
            demoConfig(QString(), QLatin1String("/b")).sinks.first().written);
}

QTEST_APPLESS_MAIN(TestConfigReader)
#include "test_config_reader.moc"
