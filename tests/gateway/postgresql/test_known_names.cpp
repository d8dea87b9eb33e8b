#include "gateway/postgresql/known_names.h"
#include "gateway/support/changes.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** What a database knows is not told to it again. */
class TestKnownNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksOnceForEach();
    void knowsTheNextTime();
    void tellsWhatChanged();
    void tellsAStationApart();
    void forgets();

private:
    /** Looks, and notes numbers from a first one on. @return tags and states that were missing */
    static QVector<int> noteAll(KnownNames &names, const QVector<Change> &changes, qint64 first)
    {
        names.beginLook();
        names.look(changes);
        for (const ChangeSource *tag : names.missingTags()) {
            names.noteTag(tag->line, tag->station, tag->tag, first++);
        }
        for (const Change *of : names.missingStates()) {
            names.noteState(of->quality, of->cause, first++);
        }
        return {int(names.missingTags().size()), int(names.missingStates().size())};
    }
};

void TestKnownNames::asksOnceForEach()
{
    KnownNames names;
    auto down = changeOf(sourceOf("b"), qint64(3));
    down.quality = Quality::LineDown;
    const QVector<Change> changes{changeOf(sourceOf("a"), qint64(1)),
                                  changeOf(sourceOf("a"), qint64(2)), down, down};
    QCOMPARE(noteAll(names, changes, 10), QVector<int>({2, 2}));
    QCOMPARE(names.numberOf(*changes.at(0).source), qint64(10));
    QCOMPARE(names.numberOf(*changes.at(1).source), qint64(10));
    QCOMPARE(names.numberOf(*changes.at(2).source), qint64(11));
    QCOMPARE(names.numberOf(Quality::Good, QString()), qint64(12));
    QCOMPARE(names.numberOf(Quality::LineDown, QString()), qint64(13));
    QCOMPARE(names.numberOf(Quality::LineDown, QLatin1String("cable")), qint64(0));
}

void TestKnownNames::knowsTheNextTime()
{
    KnownNames names;
    noteAll(names, {changeOf(sourceOf("a"), qint64(1))}, 10);
    const QVector<Change> later{changeOf(sourceOf("a"), qint64(2)),
                                changeOf(sourceOf("b"), qint64(2))};
    QCOMPARE(noteAll(names, later, 20), QVector<int>({1, 0}));
    QCOMPARE(names.numberOf(*later.at(0).source), qint64(10));
    QCOMPARE(names.numberOf(*later.at(1).source), qint64(20));
}

void TestKnownNames::tellsWhatChanged()
{
    KnownNames names;
    noteAll(names, {changeOf(sourceOf("a"), qint64(1))}, 10);
    auto source = sourceOf("a");
    source->unit = QLatin1String("bar");
    QCOMPARE(noteAll(names, {changeOf(source, qint64(2))}, 10), QVector<int>({1, 0}));
    QCOMPARE(noteAll(names, {changeOf(source, qint64(2))}, 10), QVector<int>({0, 0}));
}

void TestKnownNames::tellsAStationApart()
{
    KnownNames names;
    auto other = sourceOf("a");
    other->station = 2;
    const QVector<Change> changes{changeOf(sourceOf("a"), qint64(1)), changeOf(other, qint64(1))};
    QCOMPARE(noteAll(names, changes, 10), QVector<int>({2, 1}));
    QVERIFY(names.numberOf(*changes.at(0).source) != names.numberOf(*changes.at(1).source));
}

void TestKnownNames::forgets()
{
    KnownNames names;
    const QVector<Change> changes{changeOf(sourceOf("a"), qint64(1))};
    names.look(changes); // and the database never answered
    names.clear();
    QCOMPARE(noteAll(names, changes, 10), QVector<int>({1, 1}));
}

QTEST_APPLESS_MAIN(TestKnownNames)
#include "test_known_names.moc"
