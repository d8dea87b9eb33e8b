#include "host/support/tag_files.h"
#include "host/support/test_types.h"
#include "support/rows.h"

#include <host/tag/tag_set.h>
#include <host/tag/typed_item.h>

#include <QtTest>

using namespace cnet;

class TestTagChoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choosesOne_data();
    void choosesOne();
    void chooses_data();
    void chooses();
    void keepsWhatATagIs();
};

namespace {

TagSet testSet()
{
    return TagSet(testTagFile("name,register,address,type,count,group,station,max,unit,scale\n"
                              "press.speed,D_W,1,,,press,,,,\n"
                              "mould.zones,D_W,100,f32,4,mould,,,,\n"
                              "mould.heats,D_W,200,u16,10,mould,3,50,kW,0.1\n"
                              "mould.valves,M_bit,3.14,bool,4,mould,,,,\n"
                              "mould.name,D_W,300,string6,2,,,,,\n")
                      .tags());
}

QString described(const Tag &tag)
{
    return QString::fromLatin1("%1 = %2").arg(tag.name, typedItemText(tag));
}

// A word, and the name and place of the tag that it stands for, or what is wrong.
const Case<const char *, const char *> kOne[] = {
    {"a name", "press.speed", "press.speed = 1/D_W:1@raw"},
    {"a whole array", "mould.zones", "mould.zones = 1/D_W:100*4@f32"},
    {"the first value", "mould.zones[0]", "mould.zones[0] = 1/D_W:100@f32"},
    {"the last value", "mould.zones[3]", "mould.zones[3] = 1/D_W:106@f32"},
    {"with scale and station", "mould.heats[9]", "mould.heats[9] = 3/D_W:209@u16*0.1"},
    {"leading zeros", "mould.zones[003]", "mould.zones[3] = 1/D_W:106@f32"},
    {"of bits, over a word", "mould.valves[2]", "mould.valves[2] = 1/M_bit:4.0@bool"},
    {"of texts", "mould.name[1]", "mould.name[1] = 1/D_W:303@string6"},
    {"behind the last", "mould.zones[4]",
     "'mould.zones[4]': mould.zones has 4 values, mould.zones[0] to mould.zones[3]"},
    {"far behind it", "mould.zones[4294967296]", "mould.zones has 4 values, mould.zones[0] to"},
    {"before the first", "mould.zones[-1]", "mould.zones has 4 values"},
    {"no index", "mould.zones[]", "mould.zones has 4 values"},
    {"no number", "mould.zones[x]", "mould.zones has 4 values"},
    {"a digit of another script", "mould.zones[\xc2\xb2]", "mould.zones has 4 values"},
    {"two indexes", "mould.zones[1][2]", "mould.zones has 4 values"},
    {"an open bracket", "mould.zones[1", "no tag or group 'mould.zones[1'"},
    {"something behind it", "mould.zones[1]x", "no tag or group 'mould.zones[1]x'"},
    {"no array", "press.speed[0]",
     "'press.speed[0]': press.speed is one value, not an array; expected press.speed"},
    {"a near miss", "mould.zone[1]", "no tag or group 'mould.zone'; did you mean mould.zones?"},
    {"a group", "mould", "'mould' stands for several tags; expected the name of one"},
    {"a group's value", "mould[1]", "'mould' stands for several tags; expected the name of one"},
    {"an item", "D_W:5", "no tag or group 'D_W:5'"},
    {"nothing", "", "no tag or group ''"},
};

const Case<const char *, const char *> kChoices[] = {
    {"a name", "press.speed", "press.speed = 1/D_W:1@raw"},
    {"a group", "mould",
     "mould.zones = 1/D_W:100*4@f32; mould.heats = 3/D_W:200*10@u16*0.1; "
     "mould.valves = 1/M_bit:3.14*4@bool"},
    {"a pattern", "*.z*", "mould.zones = 1/D_W:100*4@f32"},
    {"a value of an array", "mould.zones[1]", "mould.zones[1] = 1/D_W:102@f32"},
    {"an item", "D_W:5", " = 7/D_W:5"},
    {"an item with a station", "2/D_W:5", " = 2/D_W:5"},
    {"an item with a count", "D_W:5*3", " = 7/D_W:5*3"},
    {"an item with a type", "D_W:100*2@f32", " = 7/D_W:100*2@f32"},
    {"no item", "D_W:x", "an address of D_W is a number from 0 to 9999"},
    {"no type", "D_W:5@float", "'float' is no type"},
    {"no register", "Q_W:5", "the driver has no register 'Q_W'"},
    {"a value of an item", "D_W:5*3[1]", "'D_W:5*3[1]': expected [STATION/]REGISTER:ADDRESS"},
    {"no name", "presses", "no tag or group 'presses'; did you mean press?"},
    {"no pattern", "x*", "no tag fits 'x*'"},
};

} // namespace

void TestTagChoice::choosesOne_data()
{
    addRows(kOne);
}

void TestTagChoice::choosesOne()
{
    const auto &row = currentRow(kOne);
    QString error;
    const auto tag = oneTag(QString::fromUtf8(row.given), testSet(), error);
    const QString found = tag ? described(*tag) : error;
    QVERIFY2(tag ? found == QLatin1String(row.expected)
                 : found.contains(QLatin1String(row.expected)),
             qPrintable(found));
}

void TestTagChoice::chooses_data()
{
    addRows(kChoices);
}

void TestTagChoice::chooses()
{
    const auto &row = currentRow(kChoices);
    QString error;
    const auto tags =
        tagsOrItem(QString::fromLatin1(row.given), testSet(), 7, testCatalog(), error);
    QStringList found;
    for (const Tag &tag : tags.value_or(QVector<Tag>())) {
        found.append(described(tag));
    }
    const QString text = tags ? found.join(QLatin1String("; ")) : error;
    QVERIFY2(tags ? text == QLatin1String(row.expected)
                  : text.contains(QLatin1String(row.expected)),
             qPrintable(text));
}

void TestTagChoice::keepsWhatATagIs()
{
    QString error;
    const auto tag = oneTag(QLatin1String("mould.heats[2]"), testSet(), error);
    QVERIFY2(tag.has_value(), qPrintable(error));
    QCOMPARE(tag->count, 1);
    QCOMPARE(tag->item.count, 1);
    QCOMPARE(tag->max.value_or(0), 50.0);
    QCOMPARE(tag->unit, QLatin1String("kW"));
    QCOMPARE(tag->group, QLatin1String("mould"));
    const Tag item = oneValue(testTag("D_W:100*3@f32"), 2);
    QCOMPARE(item.name, QString());
    QCOMPARE(typedItemText(item), QLatin1String("1/D_W:104@f32"));
}

QTEST_APPLESS_MAIN(TestTagChoice)
#include "test_tag_choice.moc"
