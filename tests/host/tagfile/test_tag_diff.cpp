#include "host/support/tag_files.h"
#include "support/rows.h"

#include <host/tagfile/tag_diff.h>

#include <QtTest>

using namespace cnet;

class TestTagDiff : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tells_data();
    void tells();
    void seesEveryColumn();
};

namespace {

struct Difference
{
    const char *what;
    const char *before; // rows by "|", of name,register,address,unit
    const char *after;
    const char *text;
};

const Difference kDifferences[] = {
    {"nothing", "", "", "no tags"},
    {"the same in another order", "a,D_W,1|b,D_W,2", "b,D_W,2|a,D_W,1", "tags: 2 unchanged"},
    {"another way to write it", "a,D_W,1", "a,D_W,01,", "tags: 1 unchanged"},
    {"all of it", "a,D_W,1|b,D_W,2|c,D_W,3", "a,D_W,1|b,D_W,9,mm|d,D_W,4",
     "tags: 1 added, 1 removed, 1 changed (b: address, unit), 1 unchanged"},
    {"many changes", "a,D_W,1|b,D_W,2|c,D_W,3|d,D_W,4", "a,D_W,5|b,D_W,6|c,D_W,7|d,D_W,8",
     "tags: 4 changed (a: address; b: address; c: address; ...)"},
};

TagSet setOf(const char *rows)
{
    return TagSet(
        testTagFile("name,register,address,unit\n" + QByteArray(rows).replace('|', '\n')).tags());
}

} // namespace

void TestTagDiff::tells_data()
{
    addRows(kDifferences);
}

void TestTagDiff::tells()
{
    const auto &row = currentRow(kDifferences);
    const TagSet before = setOf(row.before);
    const TagSet after = setOf(row.after);
    const TagDiff diff = tagDiff(before, after);
    QCOMPARE(diff.text(), QLatin1String(row.text));
    const TagDiff back = tagDiff(after, before);
    QCOMPARE(back.added, diff.removed);
    QCOMPARE(back.removed, diff.added);
    QCOMPARE(back.isEmpty(), diff.isEmpty());
    QCOMPARE(diff.isEmpty(),
             diff.added.isEmpty() && diff.removed.isEmpty() && diff.changed.isEmpty());
    QVERIFY(tagDiff(after, after).isEmpty());
}

void TestTagDiff::seesEveryColumn()
{
    const TagFile left = testTagFile(
        "name,register,address,station,type,count,scale,offset,unit,min,max,deadband,access,texts,"
        "description,group\na,D_W,1\nb,D_W,9,,enum,,,,,,,,,0=a\n");
    const TagFile right = testTagFile(
        "name,register,address,station,type,count,scale,offset,unit,min,max,deadband,access,texts,"
        "description,group\na,M_W,2,2,f32,2,2,2,mm,1,2,1,r,,x,y\nb,D_W,9,,enum,,,,,,,,,0=b\n");
    QVERIFY(left.isGood() && right.isGood());
    const TagDiff diff = tagDiff(TagSet(left.tags()), TagSet(right.tags()));
    QCOMPARE(int(diff.changed.first().columns.size()), kTagColumns - 2); // not the name, no texts
    QCOMPARE(diff.changed.last().columns, QVector<TagColumn>{TagColumn::Texts});
}

QTEST_APPLESS_MAIN(TestTagDiff)
#include "test_tag_diff.moc"
