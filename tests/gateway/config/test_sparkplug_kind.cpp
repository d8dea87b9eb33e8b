#include "gateway/support/read_config.h"
#include "support/rows.h"

using namespace cnet;
using namespace cnet::gateway;

/** An edge node is configured, and all mistakes are said. */
class TestSparkplugKind : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAnEdgeNode();
    void saysWhatIsWrong_data();
    void saysWhatIsWrong();
};

namespace {

const QByteArray kNode = "[line.press]\nlink = \"simulated\"\ntags = \"t.csv\"\n[sink.scada]\n"
                         "kind = \"sparkplug\"\nbrokers = \"tcp:10.0.0.1:1883\"\n";

// What a row adds is in line 7.
const Case<const char *, const char *> kMistakes[] = {
    {"no group", "node = \"a\"", "4:1: sink.scada: there is no group"},
    {"no node", "group = \"a\"", "4:1: sink.scada: there is no node"},
    {"a topic for a group", "group = \"a/b\"\nnode = \"a\"", "7:9: sink.scada.group: it has"},
    {"a filter for a node", "group = \"a\"\nnode = \"#\"", "8:8: sink.scada.node: it has"},
    {"a filter for a host", "group = \"a\"\nnode = \"a\"\nprimary_host = \"+\"",
     "9:16: sink.scada.primary_host: it has"},
    {"a word for a truth", "group = \"a\"\nnode = \"a\"\ncommands = \"yes\"",
     "9:12: sink.scada.commands: expected"},
    {"a key of another kind", "group = \"a\"\nnode = \"a\"\nretain = true",
     "9:1: sink.scada.retain: "},
};

} // namespace

void TestSparkplugKind::readsAnEdgeNode()
{
    QStringList mistakes;
    const auto config =
        readConfigText(kNode + "group = \"plant\"\nnode = \"hall-2\"\nprimary_host = "
                               "\"scada\"\ncommands = true\nkeep_alive = \"30s\"\nuser = \"u\"\n"
                               "password_file = \"p\"\nspread = \"1m\"\n",
                       mistakes);
    QCOMPARE(mistakes, QStringList());
    const auto settings = std::get<SparkplugSettings>(config->sinks.first().settings);
    QCOMPARE(settings.group, QLatin1String("plant"));
    QCOMPARE(settings.node, QLatin1String("hall-2"));
    QCOMPARE(settings.primaryHost, QLatin1String("scada"));
    QVERIFY(settings.takesCommands);
    QCOMPARE(settings.numberFile, QLatin1String("/var/lib/gw/scada.sparkplug"));
    QCOMPARE(settings.connection.keepAliveS, 30);
    QCOMPARE(settings.connection.password.file, QLatin1String("/etc/gw/p"));
    QCOMPARE(settings.spreadMs, 60000);
    const auto usual = readConfigText(kNode + "group = \"plant\"\nnode = \"hall-2\"\n", mistakes);
    const auto without = std::get<SparkplugSettings>(usual->sinks.first().settings);
    QVERIFY(!without.takesCommands && without.primaryHost.isEmpty());
    QCOMPARE(without.spreadMs, 5000);
}

void TestSparkplugKind::saysWhatIsWrong_data()
{
    addRows(kMistakes);
}

void TestSparkplugKind::saysWhatIsWrong()
{
    const auto &row = currentRow(kMistakes);
    findsOneMistake(kNode + row.given + '\n', row.expected);
}

QTEST_APPLESS_MAIN(TestSparkplugKind)
#include "test_sparkplug_kind.moc"
