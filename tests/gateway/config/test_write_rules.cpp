#include "gateway/support/read_config.h"
#include "support/rows.h"

using namespace cnet;
using namespace cnet::gateway;

/** What may be written from outside is configured, and all mistakes are said. */
class TestWriteRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWrites();
    void saysWhatIsWrong_data();
    void saysWhatIsWrong();
};

namespace {

// Each is put behind the least configuration, whose line it goes on with.
const Case<const char *, const char *> kMistakes[] = {
    {"writes to an unknown line", "[writes.pres]\nallow = [\"a\"]",
     "4:1: writes.pres: there is no such line; did you mean press?"},
    {"writes of nothing", "[writes.press]",
     "4:1: writes.press: there is no allow: expected a list"},
    {"writes of no list", "[writes.press]\nallow = \"a\"",
     "5:9: writes.press.allow: expected a list of tags, as in "},
    {"writes of a number", "[writes.press]\nallow = [\"a\", 7]",
     "5:15: writes.press.allow: expected a list of tags, as in "},
    {"a rule without a tag", "[writes.press]\nallow = [{max = 1}]",
     "5:10: writes.press.allow: there is no tag; for example tag = \"press.speed\""},
    {"a rule with an unknown key", "[writes.press]\nallow = [{tag = \"a\", mx = 1}]",
     "5:22: writes.press.allow.mx: there is no such key; did you mean max?"},
    {"bounds that contradict", "[writes.press]\nallow = [{tag = \"a\", min = 2, max = 1.5}]",
     "5:37: writes.press.allow.max: it is less than min"},
    {"a bound that is no number", "[writes.press]\nallow = [{tag = \"a\", min = nan}]",
     "5:28: writes.press.allow.min: expected a number, for example 12.5"},
    {"a step of nothing", "[writes.press]\nallow = [{tag = \"a\", step = 0}]",
     "5:29: writes.press.allow.step: expected a number above 0, for example 0.5"},
    {"a rate of nothing", "[writes.press]\nallow = [\"a\"]\ntag_per_minute = 0",
     "6:18: writes.press.tag_per_minute: expected a whole number from 1 to 6000"},
    {"a wait that is too long", "[writes.press]\nallow = [\"a\"]\nwait = \"1h\"",
     "6:8: writes.press.wait: expected a time from \"100ms\" to \"10m\""},
    {"one audit file", "[audit]\nfiles = 1",
     "5:9: audit.files: expected a whole number from 2 to 1000"},
};

} // namespace

void TestWriteRules::readsWrites()
{
    QStringList mistakes;
    const auto off = readConfigText(kLeastConfig, mistakes);
    QVERIFY(off && off->lines.first().writes.allow.isEmpty());
    QCOMPARE(off->audit.path, QLatin1String("/var/lib/gw/writes.jsonl"));
    const auto config = readConfigText(QByteArray(kLeastConfig) + R"([writes.press]
allow = [
  "press.speed",
  {tag = "zones[*]", min = 20, max = 180.5, step = 0.5},
]
line_per_minute = 30
line_burst = 5
tag_per_minute = 6
tag_burst = 2
wait = "3s"
[audit]
path = "/log/w"
size = "1MB"
files = 4
)",
                                       mistakes);
    QCOMPARE(mistakes, QStringList());
    QVERIFY(config);
    const WriteRules &rules = config->lines.first().writes;
    QCOMPARE(rules.allow.size(), 2);
    QCOMPARE(rules.allow.first().pattern, QLatin1String("press.speed"));
    QVERIFY(!rules.allow.first().min);
    const AllowRule &zones = rules.allow.last();
    QCOMPARE(zones.place.line, 7);
    QCOMPARE(zones.place.column, 3);
    QVERIFY(zones.min == 20.0 && zones.max == 180.5 && zones.step == 0.5);
    const QVector<qint64> numbers{rules.line.perMinute, rules.line.burst, rules.value.perMinute,
                                  rules.value.burst,    rules.waitMs,     config->audit.bytes,
                                  config->audit.files};
    QCOMPARE(numbers, QVector<qint64>({30, 5, 6, 2, 3000, 1000000, 4}));
    QCOMPARE(config->audit.path, QLatin1String("/log/w"));
}

void TestWriteRules::saysWhatIsWrong_data()
{
    addRows(kMistakes);
}

void TestWriteRules::saysWhatIsWrong()
{
    const auto &row = currentRow(kMistakes);
    findsOneMistake(QByteArray(kLeastConfig) + row.given + '\n', row.expected);
}

QTEST_APPLESS_MAIN(TestWriteRules)
#include "test_write_rules.moc"
