#include "gateway/support/written_line.h"
#include "gateway/write/allowed_values.h"
#include "host/support/tag_files.h"
#include "support/rows.h"

using namespace cnet;
using namespace cnet::gateway;

/** Which values may be written from outside, and to what. */
class TestAllowedValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plansWhatIsAllowed_data();
    void plansWhatIsAllowed();
    void refuses_data();
    void refuses();
    void allFittingRulesHold();
    void roundsNothingBeyondABound();
    void asksWhetherThePlcHasTheAddress();
    void findsMistakes_data();
    void findsMistakes();

private:
    static AllowedValues allowed(const QVector<AllowRule> &rules)
    {
        return {rules, tags(), testCatalog(), 60, [](const Item &, QString &) { return true; }};
    }
    static TagSet tags()
    {
        return TagSet(testTagFile("name,register,address,type,count,scale,min,max,access\n"
                                  "speed,D_W,10,u16,,0.1,0,120,\n"
                                  "count,D_W,11,u16,,,,,\n"
                                  "fixed,D_W,12,u16,,,,,read\n"
                                  "zones,D_W,20,i16,4,0.1,,,\n"
                                  "big,D_W,40,u64,,,,,\n"
                                  "flag,D_W,50,bit3,,,,,\n"
                                  "name,D_W,60,string8,,,,,\n"
                                  "ratio,D_W,70,f32,,,,,\n")
                          .tags());
    }
};

namespace {

struct Plan
{
    const char *what;
    const char *pattern;
    const char *tag;
    const char *value;
    const char *expected; ///< what is sent, or the beginning of why not
};

const Plan kPlans[] = {
    {"by name", "speed", "speed", "12.5", "1/D_W:10=125"},
    {"by a pattern", "sp*", "speed", "12.54", "1/D_W:10=125"},
    {"a value of an array", "zones[2]", "zones[2]", "-1", "1/D_W:22=65526"},
    {"any value of an array", "zones[*]", "zones[3]", "0", "1/D_W:23=0"},
    {"an array by its name", "zones", "zones[0]", "0.1", "1/D_W:20=1"},
    {"to the last of 64 bits", "*", "big", "18446744073709551615",
     "1/D_W:40*4=65535,65535,65535,65535"},
    {"a bit by itself", "flag", "flag", "on", "1/D_bit:50.3=1"},
    {"a text with a comma", "name", "name", "a,b", "1/D_W:60*4=11361,98,0,0"},
};

const Plan kRefusals[] = {
    {"an unknown tag", "*", "sped", "1", "no tag or group 'sped'; did you mean speed?"},
    {"not allowed", "speed", "count", "1", "count may not be written from outside"},
    {"another value of the array", "zones[2]", "zones[1]", "1",
     "zones[1] may not be written from outside"},
    {"a tag that is read only", "*", "fixed", "1", "fixed can only be read"},
    {"an array as a whole", "*", "zones", "1", "zones has 4 values, and one is written at a time"},
    {"beyond the array", "*", "zones[4]", "1", "'zones[4]': zones has 4 values"},
    {"several tags", "*", "s*", "1", "'s*' stands for several tags"},
    {"no number", "*", "count", "fast", "'fast' is no value of u16: expected a number"},
    {"two values", "*", "count", "1,2", "'1,2' is no value of u16"},
    {"a fraction of a whole type", "*", "count", "1.5", "count: "},
    {"too great for the type", "*", "count", "65536", "count: "},
    {"beyond the tag's own bounds", "*", "speed", "120.1", "speed: 120.1 is above the maximum"},
    {"too long", "*", "name", "123456789", "name: "},
    {"not a number", "*", "ratio", "nan", "'nan' is no value of f32"},
};

QString planText(const std::optional<PlannedWrite> &plan, const QString &error)
{
    QStringList texts;
    for (const Assignment &assignment : plan ? plan->assignments : QVector<Assignment>()) {
        texts.append(assignment.text());
    }
    return plan ? texts.join(QLatin1Char(' ')) : error;
}

AllowRule limited(const char *pattern, std::optional<double> min, std::optional<double> max,
                  std::optional<double> step = std::nullopt)
{
    AllowRule rule = ruleOf(pattern);
    rule.min = min;
    rule.max = max;
    rule.step = step;
    rule.place = {3, 7};
    return rule;
}

} // namespace

void TestAllowedValues::plansWhatIsAllowed_data()
{
    addRows(kPlans);
}

void TestAllowedValues::plansWhatIsAllowed()
{
    const Plan &row = currentRow(kPlans);
    QString error;
    const auto plan = allowed({ruleOf(row.pattern)})
                          .plan(QLatin1String(row.tag), QLatin1String(row.value), error);
    QCOMPARE(planText(plan, error), QLatin1String(row.expected));
}

void TestAllowedValues::refuses_data()
{
    addRows(kRefusals);
}

void TestAllowedValues::refuses()
{
    const Plan &row = currentRow(kRefusals);
    QString error;
    QVERIFY(!allowed({ruleOf(row.pattern)})
                 .plan(QLatin1String(row.tag), QLatin1String(row.value), error));
    QVERIFY2(error.startsWith(QLatin1String(row.expected)), qPrintable(error));
}

void TestAllowedValues::allFittingRulesHold()
{
    const AllowedValues values =
        allowed({limited("*", std::nullopt, 100), limited("speed", 20, 180, 0.5),
                 limited("count", 1, std::nullopt, 3)});
    const auto why = [&values](const char *tag, const char *value) {
        QString error;
        const bool isFine =
            values.plan(QLatin1String(tag), QLatin1String(value), error).has_value();
        return isFine ? QString() : error;
    };
    QCOMPARE(why("speed", "20"), QString());
    QCOMPARE(why("speed", "20.5"), QString());
    QCOMPARE(why("speed", "100"), QString());
    QCOMPARE(why("speed", "100.5"), QLatin1String("100.5 is above what may be written to speed "
                                                  "from outside, which is 100 or less"));
    QCOMPARE(why("speed", "19.5"), QLatin1String("19.5 is below what may be written to speed from "
                                                 "outside, which is 20 or more"));
    QCOMPARE(why("speed", "20.6"),
             QLatin1String("20.6 is between the steps of 0.5 for speed, counted from 20"));
    QCOMPARE(why("count", "100"), QString()); // 1 + 33 * 3
    QVERIFY(!why("count", "99").isEmpty());
    QVERIFY(!why("count", "0").isEmpty());
    QVERIFY(why("name", "1").contains(QLatin1String("numbers only")));
}

// With a scale of 0.1, 100.04 is written as 100.0, and 99.96 as 100.0 as well.
void TestAllowedValues::roundsNothingBeyondABound()
{
    QString error;
    const AllowedValues values = allowed({limited("speed", std::nullopt, 99.97)});
    QVERIFY(!values.plan(QLatin1String("speed"), QLatin1String("99.96"), error));
    QVERIFY2(error.startsWith(QLatin1String("100.0 is above")), qPrintable(error));
    QVERIFY(values.plan(QLatin1String("speed"), QLatin1String("99.94"), error));
    // A float has no step: 12.3 is what it says.
    QVERIFY(allowed({limited("ratio", std::nullopt, 12.3)})
                .plan(QLatin1String("ratio"), QLatin1String("12.3"), error));
}

void TestAllowedValues::asksWhetherThePlcHasTheAddress()
{
    const AllowedValues values{
        {ruleOf("*")}, tags(), testCatalog(), 60, [](const Item &item, QString &error) {
            error = QLatin1String("no ") + item.text();
            return false;
        }};
    QString error;
    QVERIFY(!values.plan(QLatin1String("flag"), QLatin1String("1"), error));
    QCOMPARE(error, QLatin1String("no 1/D_bit:50.3"));
}

namespace {

const Case<AllowRule, const char *> kMistakes[] = {
    {"nothing fits", ruleOf("sped"), "no tag fits 'sped'; did you mean speed?"},
    {"no pattern fits", ruleOf("x.*"), "no tag fits 'x.*'"},
    {"no such value", ruleOf("zones[4]"), "no tag fits 'zones[4]'"},
    {"read only", ruleOf("fixed"), "fixed can only be read"},
    {"bounds of a text", limited("name", 1, 2),
     "min, max and step are for numbers, and name is none"},
    {"a step of a bit", limited("f*g", std::nullopt, std::nullopt, 1), "min, max and step are for"},
    {"fine", limited("s*", 1, 2), ""},
    {"some of it is read only", ruleOf("*"), ""},
};

} // namespace

void TestAllowedValues::findsMistakes_data()
{
    addRows(kMistakes);
}

void TestAllowedValues::findsMistakes()
{
    const auto &row = currentRow(kMistakes);
    Findings findings(10);
    checkRules({row.given}, tags(), QLatin1String("writes.press.allow"), findings);
    QCOMPARE(findings.isEmpty(), *row.expected == '\0');
    if (!findings.isEmpty()) {
        const QString text = findings.first().first().placed();
        const QString place = QString::fromLatin1("%1:%2: writes.press.allow: ")
                                  .arg(row.given.place.line)
                                  .arg(row.given.place.column);
        QVERIFY2(text.endsWith(QLatin1String(row.expected)) ||
                     text.contains(QLatin1String(row.expected)),
                 qPrintable(text));
        QVERIFY2(row.given.place.line == 0 || text.startsWith(place), qPrintable(text));
    }
}

QTEST_APPLESS_MAIN(TestAllowedValues)
#include "test_allowed_values.moc"
