#include "view/values/list/group_tree.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::view;

/** The tree of groups shows their names as people wrote them. */
class TestValuesGroups : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsMarksOfANameAsTheyAre();
};

void TestValuesGroups::showsMarksOfANameAsTheyAre()
{
    Tag tag;
    tag.name = QLatin1String("oil");
    tag.group = QLatin1String("load in %2");
    GroupTree tree;
    tree.setTags(TagSet({tag}));
    const auto found =
        tree.findItems(QLatin1String("load in %2 (1)"), Qt::MatchExactly | Qt::MatchRecursive);
    QCOMPARE(int(found.size()), 1);
}

QTEST_MAIN(TestValuesGroups)
#include "test_values_groups.moc"
