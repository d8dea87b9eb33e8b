#include "gateway/lines/tag_reporter.h"
#include "gateway/support/changes.h"
#include "host/support/virtual_plant.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** What is told of the tags of a line in virtual time. */
class TestTagReporter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsEachChange();
    void tellsOutsideTheDeadband();
    void tellsNoSoonerThanTheLeastInterval();
    void tellsAgainAfterTheLongestInterval();
    void tellsEachQualityAtOnce();
    void tellsWhyAValueIsImplausible();
    void tellsOfValuesOfAnArray();
    void tellsEachOfAnArrayWhenItIsDue();
    void tellsAWrittenValueWhenThePlcHasIt();
    void tellsTheEnd();
};

namespace {

struct Told
{
    explicit Told(const QByteArray &rows, const ReportRules &rules = ReportRules())
    {
        const TagFile file = TagFile::parse(
            "name,register,address,type,count,scale,deadband,max\n" + rows,
            {plant.driver.registers(), [](const Item &, TagAccess, QString &) { return true; }});
        tags = new TagMonitor(plant.session->monitor(), TagSet(file.tags()));
        reporter = std::make_unique<TagReporter>(
            QLatin1String("press"), *tags, rules, plant.clock,
            [this](const Change &change) { changes.append(change); },
            [this] { return plant.session->lineError(); });
        plant.open();
    }

    QString take()
    {
        QStringList texts;
        for (const Change &change : std::exchange(changes, {})) {
            texts.append(textOf(change));
            last = change;
        }
        return texts.join(QLatin1Char(' '));
    }

    QString after(int address, int value, qint64 ms = 300)
    {
        plant.setWord(address, value);
        plant.run(ms);
        return take();
    }

    VirtualPlant plant;
    TagMonitor *tags = nullptr; ///< the session's
    std::unique_ptr<TagReporter> reporter;
    QVector<Change> changes;
    Change last; ///< of what was taken
};

} // namespace

void TestTagReporter::tellsEachChange()
{
    Told told("a,D_W,5,,,,,\nb,D_W,6,,,,,\n");
    QCOMPARE(told.take(), QLatin1String("a=0 b=0"));
    const qint64 beforeMs = told.plant.clock.wallMs();
    QCOMPARE(told.after(5, 7), QLatin1String("a=7"));
    QVERIFY(told.last.atMs > beforeMs && told.last.atMs < told.plant.clock.wallMs());
    QCOMPARE(told.last.source->line, QLatin1String("press"));
    QCOMPARE(told.after(5, 7, 60000), QString());
    QCOMPARE(told.after(6, 8), QLatin1String("b=8"));
}

void TestTagReporter::tellsOutsideTheDeadband()
{
    Told told("a,D_W,5,u16,,,5,\n");
    QCOMPARE(told.take(), QLatin1String("a=0"));
    QCOMPARE(told.after(5, 4), QString());
    QCOMPARE(told.after(5, 5), QLatin1String("a=5"));
    QCOMPARE(told.after(5, 1), QString()); // from what was told, not from what was read
    QCOMPARE(told.after(5, 0), QLatin1String("a=0"));
}

void TestTagReporter::tellsNoSoonerThanTheLeastInterval()
{
    Told told("a,D_W,5,,,,,\n", {2000, 0});
    QCOMPARE(told.take(), QLatin1String("a=0"));
    QCOMPARE(told.after(5, 1), QString());
    QCOMPARE(told.after(5, 2), QString());
    const qint64 changedMs = told.plant.clock.wallMs();
    QCOMPARE(told.after(5, 2, 2000), QLatin1String("a=2")); // the newest, and in time
    QVERIFY(told.last.atMs <= changedMs);
    QCOMPARE(told.after(5, 3), QString());
    QCOMPARE(told.after(5, 2, 10000), QString()); // there and back again
    QCOMPARE(told.after(5, 4), QLatin1String("a=4"));
}

void TestTagReporter::tellsAgainAfterTheLongestInterval()
{
    Told told("a,D_W,5,,,,,\n", {0, 10000});
    QCOMPARE(told.take(), QLatin1String("a=0"));
    told.plant.run(9000);
    QCOMPARE(told.take(), QString());
    told.plant.run(1000);
    QCOMPARE(told.take(), QLatin1String("a=0"));
    QVERIFY(told.plant.clock.wallMs() - told.last.atMs < 1500); // when it was read last
    QCOMPARE(told.after(5, 1, 5000), QLatin1String("a=1"));
    told.plant.run(4000);
    QCOMPARE(told.take(), QString());
    told.plant.run(20000);
    QCOMPARE(told.take(), QLatin1String("a=1 a=1"));
}

void TestTagReporter::tellsEachQualityAtOnce()
{
    Told told("a,D_W,5,,,,,\n", {3600000, 0});
    QCOMPARE(told.after(5, 9), QLatin1String("a=0"));
    told.plant.silence(1);
    told.plant.run(10000);
    const QString worse = told.take();
    QVERIFY2(worse.endsWith(QLatin1String("a=9(no answer)")), qPrintable(worse));
    QVERIFY(!told.last.cause.isEmpty());
    told.plant.silence(1, false);
    told.plant.run(30000);
    QCOMPARE(told.take(), QLatin1String("a=9"));
    told.plant.line->breakDown();
    told.plant.run(10);
    QCOMPARE(told.take(), QLatin1String("a=9(line down)"));
    QCOMPARE(told.last.cause, QLatin1String("unplugged"));
}

void TestTagReporter::tellsWhyAValueIsImplausible()
{
    Told told("a,D_W,5,bcd4,,,,\nb,D_W,6,u16,,,,10\n");
    QCOMPARE(told.take(), QLatin1String("a=0 b=0"));
    QCOMPARE(told.after(5, 0xA), QLatin1String("a=-(implausible)"));
    QVERIFY(told.last.cause.contains(QLatin1String("BCD")));
    QCOMPARE(told.after(6, 11), QLatin1String("b=11(implausible)"));
    QCOMPARE(told.after(6, 10), QLatin1String("b=10"));
    QCOMPARE(told.last.cause, QString());
}

void TestTagReporter::tellsOfValuesOfAnArray()
{
    Told told("a,D_W,5,u32,3,,,\n");
    QCOMPARE(told.take(), QLatin1String("a[0]=0 a[1]=0 a[2]=0"));
    QCOMPARE(told.after(8, 1), QLatin1String("a[1]=65536"));
}

void TestTagReporter::tellsEachOfAnArrayWhenItIsDue()
{
    Told told("a,D_W,5,u16,3,,,\nb,D_W,9,,,,,\nc,D_W,10,,,,,\n", {2000, 0});
    QCOMPARE(told.take(), QLatin1String("a[0]=0 a[1]=0 a[2]=0 b=0 c=0"));
    for (int i = 0; i < 6; ++i) {
        told.plant.setWord(5 + i, 1 + i);
    }
    told.plant.run(300);
    QCOMPARE(told.take(), QString());
    told.plant.run(2000);
    QCOMPARE(told.take(), QLatin1String("a[0]=1 a[1]=2 a[2]=3 b=5 c=6"));
}

void TestTagReporter::tellsAWrittenValueWhenThePlcHasIt()
{
    Told told("a,D_W,5,,,,,\nb,D_W,6,,,,,\n", {0, 5000});
    QCOMPARE(told.take(), QLatin1String("a=0 b=0"));
    told.plant.line->swallows = [](const QByteArray &request) { return request.mid(3, 2) == "wS"; };
    WriteJob *const lost = told.plant.write("D_W:5=7");
    QVERIFY(told.plant.finishes(lost));
    told.plant.run(1000);
    const QString meanwhile = told.take();
    QVERIFY2(!meanwhile.contains(QLatin1String("a=7")), qPrintable(meanwhile));
    told.plant.line->swallows = nullptr;
    told.plant.run(10000);
    // It is told again after the longest interval, as before.
    const QString again = told.take();
    QVERIFY2(again.contains(QLatin1String("a=0")) && !again.contains(QLatin1String("a=7")),
             qPrintable(again));
    told.plant.write("D_W:5=8");
    told.plant.run(300);
    QCOMPARE(told.take().count(QLatin1String("a=8")), 1);
}

void TestTagReporter::tellsTheEnd()
{
    Told told("a,D_W,5,,,,,\n");
    told.take();
    told.plant.session->close();
    QCOMPARE(told.take(), QLatin1String("a=0(line down)"));
}

QTEST_GUILESS_MAIN(TestTagReporter)
#include "test_tag_reporter.moc"
