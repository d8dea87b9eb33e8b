#include "gateway/lines/status_reporter.h"
#include "host/support/virtual_plant.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** What is told of a line and its stations in virtual time. */
class TestStatusReporter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsAllFromTheStart();
    void tellsWhyALineCannotBeOpened();
    void tellsALostLineAndItsReturn();
    void tellsAStationThatIsAway();
    void takesARefusalForAnAnswer();
    void watchesOtherStations();
    void tellsTheEnd();
};

namespace {

/** "line good", "2 bad: no answer" */
QString textOf(const LineStatus &status)
{
    const QString who = status.station ? QString::number(*status.station) : QLatin1String("line");
    const bool isGood = status.state == LineStatus::State::Good;
    return who + (isGood ? QLatin1String(" good") : QLatin1String(" bad: ") + status.cause);
}

struct Told
{
    explicit Told(const char *items = "1/D_W:0 2/D_W:0")
        : plant(options(), {1, 2})
    {
        reporter = std::make_unique<StatusReporter>(
            QLatin1String("press"), *plant.session, plant.clock,
            [this](const LineStatus &status) { all.append(status); });
        reporter->watch({1, 2});
        plant.monitor(items);
    }

    static SessionOptions options()
    {
        SessionOptions options;
        options.firstOpen = FirstOpen::Again;
        options.timeoutMs = 100;
        options.attempts = 2;
        return options;
    }

    QString take()
    {
        QStringList texts;
        for (const LineStatus &status : std::exchange(all, {})) {
            texts.append(textOf(status));
            last = status;
        }
        return texts.join(QLatin1String("; "));
    }

    VirtualPlant plant;
    std::unique_ptr<StatusReporter> reporter;
    QVector<LineStatus> all;
    LineStatus last; ///< of what was taken
};

} // namespace

void TestStatusReporter::tellsAllFromTheStart()
{
    Told told;
    QCOMPARE(told.take(),
             QLatin1String("line bad: not read yet; 1 bad: not read yet; 2 bad: not read yet"));
    QCOMPARE(told.last.line, QLatin1String("press"));
    told.plant.open();
    QCOMPARE(told.take(), QLatin1String("line good; 1 good; 2 good"));
    QVERIFY(told.last.atMs > 1700000000000 && told.last.atMs < told.plant.clock.wallMs());
    QCOMPARE(told.reporter->lineCause(), QString());
    told.plant.run(60000);
    QCOMPARE(told.take(), QString());
}

void TestStatusReporter::tellsWhyALineCannotBeOpened()
{
    Told told;
    told.plant.line->opensFine = false;
    told.take();
    told.plant.open(60000);
    QCOMPARE(told.take(), QLatin1String("line bad: no such device; "
                                        "1 bad: the line is down: no such device; "
                                        "2 bad: the line is down: no such device"));
    QCOMPARE(told.last.atMs, 1700000000000); // it has been bad since the start
    told.plant.line->opensFine = true;
    told.plant.run(60000);
    QCOMPARE(told.take(), QLatin1String("line good; 1 bad: not read yet; 2 bad: not read yet; "
                                        "1 good; 2 good"));
}

void TestStatusReporter::tellsALostLineAndItsReturn()
{
    Told told;
    told.plant.open();
    told.take();
    told.plant.line->opensFine = false;
    const qint64 brokenMs = told.plant.clock.wallMs();
    told.plant.line->breakDown();
    QCOMPARE(told.take(), QLatin1String("line bad: unplugged; "
                                        "1 bad: the line is down: unplugged; "
                                        "2 bad: the line is down: unplugged"));
    QCOMPARE(told.last.atMs, brokenMs);
    told.plant.run(60000);
    QVERIFY(told.take().startsWith(QLatin1String("line bad: no such device; ")));
    QCOMPARE(told.last.atMs, brokenMs);
    told.plant.line->opensFine = true;
    told.plant.run(60000);
    QVERIFY(told.take().endsWith(QLatin1String("1 good; 2 good")));
}

void TestStatusReporter::tellsAStationThatIsAway()
{
    Told told;
    told.plant.open();
    told.take();
    told.plant.silence(2);
    told.plant.run(1000);
    QCOMPARE(told.take(), QLatin1String("2 bad: no answer"));
    told.plant.silence(2, false);
    told.plant.run(60000);
    QCOMPARE(told.take(), QLatin1String("2 good"));
    told.plant.line->mannersOf[1].damaged = 100;
    told.plant.run(3000);
    QCOMPARE(told.take(), QLatin1String("1 bad: answers cannot be used"));
}

void TestStatusReporter::takesARefusalForAnAnswer()
{
    Told told("1/D_W:0 2/D_W:5000");
    told.plant.line->bus.add(2, plc::Model::K120s);
    told.plant.open();
    QVERIFY(told.take().endsWith(QLatin1String("line good; 1 good; 2 good")));
}

void TestStatusReporter::watchesOtherStations()
{
    Told told;
    told.plant.open();
    told.take();
    told.reporter->watch({2, 3});
    QCOMPARE(told.take(), QLatin1String("1 bad: not watched any more; 3 bad: not read yet"));
    told.reporter->watch({1, 2, 3}); // it was heard of before
    QCOMPARE(told.take(), QLatin1String("1 good"));
}

void TestStatusReporter::tellsTheEnd()
{
    Told told;
    told.plant.open();
    told.take();
    told.reporter->end(QLatin1String("the gateway ended"));
    QCOMPARE(told.take(), QLatin1String("line bad: the gateway ended; 1 bad: the gateway ended; "
                                        "2 bad: the gateway ended"));
    told.plant.session->close();
    told.plant.run(1000);
    QCOMPARE(told.take(), QString());
}

QTEST_GUILESS_MAIN(TestStatusReporter)
#include "test_status_reporter.moc"
