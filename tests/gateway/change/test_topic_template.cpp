#include "gateway/change/topic_template.h"

#include "support/rows.h"

using namespace cnet::gateway;

/** A topic is made of names, and read back; what cannot be a topic is refused in words. */
class TestTopicTemplate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesTopics_data();
    void makesTopics();
    void readsWhatItMade();
    void escapesWhatABrokerRefuses();
    void refuses_data();
    void refuses();
    void knowsWhatOverlaps_data();
    void knowsWhatOverlaps();
    void asksForAllNames();
};

namespace {

struct Made
{
    const char *what;
    const char *text;
    TopicNames names;
    const char *expected;
};

QString utf8(const char *text)
{
    return QString::fromUtf8(text);
}

const Made kMade[] = {
    {"plain",
     "{site}/{line}/{station}/{tag}",
     {utf8("press"), utf8("3"), utf8("temperature")},
     "plant/press/3/temperature"},
    {"words only", "{site}/status", {utf8("press"), utf8("3"), utf8("a")}, "plant/status"},
    {"a value of an array",
     "{line}/{tag}",
     {utf8("press"), utf8("3"), utf8("zones[2]")},
     "press/zones[2]"},
    {"what a subscriber would misread",
     "{line}/{tag}",
     {utf8("a/b"), utf8("3"), utf8("+#%")},
     "a%2fb/%2b%23%25"},
    {"other letters",
     "{line}",
     {utf8("Stra\xc3\x9f"
           "e"),
      utf8("3"), utf8("a")},
     "Stra\xc3\x9f"
     "e"},
    {"a control character", "{line}", {utf8("a\nb"), utf8("3"), utf8("a")}, "a%0ab"},
};

struct Refused
{
    const char *what;
    const char *text;
    const char *site;
    const char *expected;
};

const Refused kRefused[] = {
    {"a wildcard", "{site}/#", "plant", "a topic has no +, # and control characters"},
    {"a wildcard in the site", "{site}/{tag}", "pl+nt", "a topic has no +, # and control"},
    {"an unknown place", "{site}/{lin}", "plant",
     "'{lin}' is no level of a topic; expected a word"},
    {"a hint", "{site}/{lin}", "plant",
     "'{lin}' is no level of a topic; expected a word, or one of {line} {station} {tag} {site}; "
     "did you mean {line}?"},
    {"a place in a word", "{site}/line-{line}", "plant", "'line-{line}' is no level of a topic"},
    {"a place twice", "{line}/{line}", "", "{line} stands there twice"},
    {"nothing between", "{site}//{tag}", "plant", "a level of a topic is empty"},
    {"no site", "{site}/{tag}", "", "there is no site; for example site = \"plant\""},
    {"a broker's own", "$SYS/{tag}", "", "a topic has at most 200 characters, and no $"},
};

struct Pair
{
    const char *what;
    const char *left;
    const char *right;
    bool overlap;
};

const Pair kPairs[] = {
    {"the same", "a/{tag}", "a/{tag}", true},
    {"a word in place of a name", "a/{line}/{tag}", "a/write/{tag}", true},
    {"other words", "a/{line}/{tag}", "b/{line}/{tag}", false},
    {"more levels", "a/{line}/{tag}", "a/{line}/{tag}/set", false},
};

TopicTemplate parsed(const char *text)
{
    QString error;
    const auto topic = TopicTemplate::parse(utf8(text), utf8("plant"), error);
    return topic.value_or(TopicTemplate());
}

} // namespace

void TestTopicTemplate::makesTopics_data()
{
    addRows(kMade);
}

void TestTopicTemplate::makesTopics()
{
    const auto &row = currentRow(kMade);
    QCOMPARE(parsed(row.text).topic(row.names), utf8(row.expected));
}

void TestTopicTemplate::readsWhatItMade()
{
    const TopicTemplate topic = parsed("{site}/{line}/{tag}/set");
    const TopicNames names{utf8("Stra\xc3\x9f"
                                "e 1/b"),
                           QString(), utf8("a+b%2b")};
    const auto read = topic.read(topic.topic(names));
    QVERIFY(read);
    QCOMPARE(read->line, names.line);
    QCOMPARE(read->tag, names.tag);
    QVERIFY(!topic.read(utf8("plant/press/a")));
    QVERIFY(!topic.read(utf8("other/press/a/set")));
    QVERIFY(!topic.read(utf8("plant/press/a/set/more")));
}

void TestTopicTemplate::escapesWhatABrokerRefuses()
{
    QString error;
    const auto topic =
        TopicTemplate::parse(utf8("{site}/{line}/{tag}"), utf8("plant"), error, utf8(". "));
    QVERIFY2(topic, qPrintable(error));
    const TopicNames names{utf8("hall 2"), QString(), utf8("press.zones[2].%")};
    const QString made = topic->topic(names);
    QCOMPARE(made, utf8("plant/hall%202/press%2ezones[2]%2e%25"));
    QCOMPARE(topic->read(made)->line, names.line);
    QCOMPARE(topic->read(made)->tag, names.tag);
    QCOMPARE(topic->with({utf8("{station}")}).topic({utf8("a.b"), utf8("3"), utf8("c")}),
             utf8("plant/a%2eb/c/3"));
    QVERIFY(!TopicTemplate::parse(utf8("{site}/{tag}"), utf8("plant.1"), error, utf8(". ")));
    QCOMPARE(error, utf8("'plant.1' has a character that is to be escaped"));
}

void TestTopicTemplate::refuses_data()
{
    addRows(kRefused);
}

void TestTopicTemplate::refuses()
{
    const auto &row = currentRow(kRefused);
    QString error;
    QVERIFY(!TopicTemplate::parse(utf8(row.text), utf8(row.site), error));
    QVERIFY2(error.startsWith(utf8(row.expected)), qPrintable(error));
}

void TestTopicTemplate::knowsWhatOverlaps_data()
{
    addRows(kPairs);
}

void TestTopicTemplate::knowsWhatOverlaps()
{
    const auto &row = currentRow(kPairs);
    QCOMPARE(parsed(row.left).overlaps(parsed(row.right)), row.overlap);
    QCOMPARE(parsed(row.right).overlaps(parsed(row.left)), row.overlap);
}

void TestTopicTemplate::asksForAllNames()
{
    QCOMPARE(parsed("{site}/write/{line}/{tag}/set").filter(), utf8("plant/write/+/+/set"));
    QCOMPARE(parsed("{site}/status").with({utf8("{line}"), utf8("x")}).filter(),
             utf8("plant/status/+/x"));
}

QTEST_APPLESS_MAIN(TestTopicTemplate)
#include "test_topic_template.moc"
