#include "host/support/tag_files.h"
#include "support/rows.h"

#include <host/tag/tag_set.h>

#include <QtTest>

using namespace cnet;

class TestTagSet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void finds();
    void selects_data();
    void selects();
    void knowsGlobs_data();
    void knowsGlobs();
};

namespace {

TagSet testSet()
{
    return TagSet(testTagFile("name,register,address,group\n"
                              "press.speed,D_W,1,press\n"
                              "press.temp,D_W,2,press/oil\n"
                              "oven.temp,D_W,3,oven\n"
                              "press/oil,D_W,4,oven\n"
                              "pressure,D_W,5,\n")
                      .tags());
}

// Words by blanks, and the names they choose, or what is wrong.
const Case<const char *, const char *> kSelections[] = {
    {"nothing is all", "", "press.speed press.temp oven.temp press/oil pressure"},
    {"a name", "oven.temp", "oven.temp"},
    {"several, each once", "pressure oven.temp pressure", "pressure oven.temp"},
    {"a group and those within", "press", "press.speed press.temp"},
    {"a name goes before a group", "press/oil", "press/oil"},
    {"a pattern", "press.*", "press.speed press.temp"},
    {"another pattern", "*.temp", "press.temp oven.temp"},
    {"a pattern that no name fits", "x*", "no tag fits 'x*'"},
    {"near a name", "pressur", "no tag or group 'pressur'; did you mean pressure?"},
    {"near a group", "ovne", "no tag or group 'ovne'; did you mean oven?"},
    {"another case", "Oven.temp", "no tag or group 'Oven.temp'; did you mean oven.temp?"},
    {"near nothing", "zzzzz", "no tag or group 'zzzzz'"},
    {"one of several is wrong", "oven.temp zzzzz", "no tag or group 'zzzzz'"},
};

struct Fit
{
    const char *what;
    const char *name;
    const char *glob;
    bool fits;
};

const Fit kFits[] = {
    {"anything", "abc", "*", true},
    {"nothing at all", "", "*", true},
    {"one letter", "abc", "a?c", true},
    {"no letter", "ac", "a?c", false},
    {"the beginning", "abc", "a*", true},
    {"the end", "abc", "*c", true},
    {"within", "abcabd", "*ab?", true},
    {"not to the end", "abcx", "*c", false},
    {"several", "press.oil.temp", "p*.*.t*p", true},
    {"over slashes and points", "a/b.c", "a*c", true},
    {"case matters", "abc", "A*", false},
    {"longer than the name", "ab", "abc", false},
    {"shorter than the name", "abc", "ab", false},
};

} // namespace

void TestTagSet::finds()
{
    const TagSet set = testSet();
    QCOMPARE(set.indexOf(QLatin1String("oven.temp")), 2);
    QCOMPARE(set.find(QLatin1String("oven.temp"))->item.start, 3);
    QVERIFY(set.find(QLatin1String("oven")) == nullptr);
    QCOMPARE(set.groups().join(QLatin1Char(' ')), QLatin1String("press press/oil oven"));
    QVERIFY(TagSet().isEmpty() && !set.isEmpty());
}

void TestTagSet::selects_data()
{
    addRows(kSelections);
}

void TestTagSet::selects()
{
    const auto &row = currentRow(kSelections);
    const TagSet set = testSet();
    QString error;
    const auto chosen = set.select(
        QString::fromLatin1(row.given).split(QLatin1Char(' '), Qt::SkipEmptyParts), error);
    QStringList names;
    for (const int index : chosen.value_or(QVector<int>())) {
        names.append(set.all().at(index).name);
    }
    QCOMPARE(chosen ? names.join(QLatin1Char(' ')) : error, QLatin1String(row.expected));
}

void TestTagSet::knowsGlobs_data()
{
    addRows(kFits);
}

void TestTagSet::knowsGlobs()
{
    const auto &row = currentRow(kFits);
    QCOMPARE(fitsGlob(QLatin1String(row.name), QLatin1String(row.glob)), row.fits);
}

QTEST_APPLESS_MAIN(TestTagSet)
#include "test_tag_set.moc"
