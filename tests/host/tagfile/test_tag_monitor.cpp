#include "host/support/virtual_plant.h"

#include <host/tagfile/tag_monitor.h>

#include <QSignalSpy>
#include <QtTest>

using namespace cnet;

/** Tags of a session in virtual time, and their file that changes meanwhile. */
class TestTagMonitor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTags();
    void keepsWhatStays();
    void badFileChangesNothing();
    void meansTheSame();
    void reloadsAtAnyTime();
    void reloadsFromWithin();
};

namespace {

const QByteArray kHeader("name,register,address,type,count,unit\n");

struct Watched
{
    explicit Watched(const QByteArray &rows)
    {
        tags = new TagMonitor(plant.session->monitor());
        QObject::connect(tags, &TagMonitor::valuesChanged, tags, [this](const QVector<int> &some) {
            for (const int tag : some) {
                told.append(tags->tags().all().at(tag).name);
            }
        });
        reload(rows);
        plant.open();
    }

    TagReload reload(const QByteArray &rows)
    {
        return tags->reload(
            kHeader + rows,
            {plant.driver.registers(), [this](const Item &item, TagAccess, QString &error) {
                 return plant.driver.check(item, Access::Read, error);
             }});
    }

    QString shown(const char *name) const
    {
        const int tag = tags->tags().indexOf(QLatin1String(name));
        return tag < 0 ? QString() : QString::number(tags->state(tag).values.first().shown());
    }

    QString takeTold() { return std::exchange(told, {}).join(QLatin1Char(' ')); }

    VirtualPlant plant;
    TagMonitor *tags = nullptr; ///< the session's
    QStringList told;
};

} // namespace

void TestTagMonitor::showsTags()
{
    Watched watched("a,D_W,5\nb,D_W,10,f32,2\n");
    QCOMPARE(watched.takeTold(), QLatin1String("a b")); // each once
    QCOMPARE(int(watched.tags->state(1).values.size()), 4);
    QCOMPARE(watched.tags->state(1).quality, Quality::Good);
    watched.plant.setWord(13, 7);
    watched.plant.run(300);
    QCOMPARE(watched.takeTold(), QLatin1String("b"));
    QSignalSpy states(watched.tags, &TagMonitor::tagStateChanged);
    watched.plant.silence(1);
    watched.plant.run(5000);
    QCOMPARE(int(states.size()), 2);
}

void TestTagMonitor::keepsWhatStays()
{
    Watched watched("a,D_W,5\nb,D_W,600\nc,D_W,1200\n");
    watched.plant.setWord(600, 66);
    watched.plant.run(500);
    const qint64 changedAtMs = watched.tags->state(1).changedAtMs;
    watched.takeTold();
    QSignalSpy changed(watched.tags, &TagMonitor::tagsChanged);
    const TagReload reload = watched.reload("d,D_W,7\nb,D_W,600,,,mm\nc,D_W,1201\n");
    QCOMPARE(reload.diff.text(), QLatin1String("tags: 1 added, 1 removed, 2 changed (b: unit; "
                                               "c: address)"));
    QCOMPARE(int(changed.size()), 1);
    QCOMPARE(watched.shown("b"), QLatin1String("66"));
    QCOMPARE(watched.tags->state(1).quality, Quality::Good);
    QCOMPARE(watched.tags->state(1).changedAtMs, changedAtMs);
    QCOMPARE(watched.tags->state(2).quality, Quality::NeverRead);
    watched.plant.run(1000);
    QCOMPARE(watched.takeTold(), QLatin1String("d c")); // nothing of b, which did not change
    QVERIFY(watched.tags->monitor().isGood());
}

void TestTagMonitor::badFileChangesNothing()
{
    Watched watched("a,D_W,5\nb,D_W,6\n");
    QSignalSpy changed(watched.tags, &TagMonitor::tagsChanged);
    QSignalSpy items(&watched.tags->monitor(), &Monitor::itemsChanged);
    const TagReload reload = watched.reload("a,D_W,7\nb,D_W,10000\n");
    QCOMPARE(reload.file.mistakes().count(), 1);
    QVERIFY(reload.diff.isEmpty());
    QCOMPARE(int(watched.tags->tags().all().size()), 2);
    QCOMPARE(watched.tags->state(0).item.start, 5);
    QVERIFY(changed.isEmpty() && items.isEmpty());
}

// Other words for the same items do not set up the polls again.
void TestTagMonitor::meansTheSame()
{
    Watched watched("a,D_W,5\nb,D_W,6\n");
    QSignalSpy changed(watched.tags, &TagMonitor::tagsChanged);
    QSignalSpy items(&watched.tags->monitor(), &Monitor::itemsChanged);
    watched.reload("a,D_W,5\n# a comment\nb,D_W,06\n");
    QVERIFY(changed.isEmpty() && items.isEmpty());
    watched.reload("a,D_W,5,i16,,mm\nb,D_W,6\n");
    QCOMPARE(int(changed.size()), 1);
    QVERIFY(items.isEmpty());
    watched.reload("b,D_W,6\na,D_W,5,i16,,mm\n");
    QCOMPARE(int(changed.size()), 1);
    QCOMPARE(int(items.size()), 1);
}

// At each moment of a poll: between request and answer, too.
void TestTagMonitor::reloadsAtAnyTime()
{
    Watched watched("a,D_W,5\nb,D_W,600\n");
    for (int i = 0; i < 300; ++i) {
        watched.plant.setWord(600, i);
        watched.reload(i % 2 == 0 ? "b,D_W,600\nc,D_W,1200\n" : "a,D_W,5\nb,D_W,600\n");
        watched.plant.run(7);
        QCOMPARE(watched.tags->state(watched.tags->tags().indexOf(QLatin1String("b"))).quality,
                 Quality::Good);
    }
    watched.plant.run(500);
    QCOMPARE(watched.shown("b"), QLatin1String("299"));
    QVERIFY(watched.tags->monitor().isGood());
    QVERIFY(watched.plant.notices.isEmpty());
}

void TestTagMonitor::reloadsFromWithin()
{
    Watched watched("a,D_W,5\nb,D_W,600\n");
    bool once = false;
    QObject::connect(watched.tags, &TagMonitor::valuesChanged, watched.tags, [&] {
        if (!std::exchange(once, true)) {
            watched.reload("c,D_W,7\n");
        }
    });
    watched.plant.setWord(5, 1);
    watched.plant.run(1000);
    QCOMPARE(int(watched.tags->tags().all().size()), 1);
    QVERIFY(watched.tags->monitor().isGood());
}

QTEST_GUILESS_MAIN(TestTagMonitor)
#include "test_tag_monitor.moc"
