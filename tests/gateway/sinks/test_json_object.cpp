#include "gateway/sinks/json_object.h"

#include "support/rows.h"

using namespace cnet::gateway;

/** An object from outside is taken where it is clear what it says. */
class TestJsonObject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
};

namespace {

const char kTwice[] = "has a key twice";
const char kNone[] = "is no JSON";

// Nothing is expected: it is taken.
const Case<QByteArray, const char *> kObjects[] = {
    {"empty", "{}", ""},
    {"a value", R"({"v":1})", ""},
    {"the same key at two places", R"({"a":{"v":1},"b":[{"v":2},{"v":3}],"v":4})", ""},
    {"a key as a value", R"({"a":"b","b":"a","c":["a","a"]})", ""},
    {"a colon within a text", R"({"a":"x\":1","b":"\\","c":":"})", ""},
    {"a key twice", R"({"v":{"":1},"v":2})", kTwice},
    {"a key twice, deeper", R"({"a":[0,{"v":[1],"v":[2]}]})", kTwice},
    {"a key that is written in two ways", R"({"v":{"a":1},"\u0076":2})", kTwice},
    {"an empty key twice", R"({"":{"":2},"":4})", kTwice},
    {"with blanks", "{ \"v\" : {} , \"v\"\n:\t1 }", kTwice},
    {"a list", "[1]", kNone},
    {"a number", "1", kNone},
    {"nothing", "", kNone},
    {"half", R"({"v":)", kNone},
    {"a text without an end", R"({"v":"\)", kNone},
    {"too many ends", "}}]]", kNone},
    {"very deep", "{\"v\":" + QByteArray(4000, '['), kNone},
    {"a colon alone", ":", kNone},
};

} // namespace

void TestJsonObject::reads_data()
{
    addRows(kObjects);
}

void TestJsonObject::reads()
{
    const auto &row = currentRow(kObjects);
    QString error;
    const auto object = readJsonObject(row.given, error);
    QCOMPARE(error, QString::fromLatin1(row.expected));
    QCOMPARE(object.has_value(), error.isEmpty());
}

QTEST_APPLESS_MAIN(TestJsonObject)
#include "test_json_object.moc"
