#include "host/support/virtual_plant.h"

#include <host/driver/driver_core.h>

#include <QtTest>

using namespace cnet;

Q_DECLARE_METATYPE(cnet::WriteJob::OnLoss)
Q_DECLARE_METATYPE(cnet::WriteOutcome)

// The line comes and goes.
class TestLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensAndCloses();
    void tellsWhenItCannotBeOpened();
    void keepsTryingWhereToldTo();
    void comesBack();
    void pendingWrites_data();
    void pendingWrites();
    void jobsOfALostLine();
    void lostByItsUse_data();
    void lostByItsUse();
    void writeThatWasConfirmedAtTheEnd();
    void writeThatWasOut_data();
    void writeThatWasOut();
    void recipeFails();
    void lostAnswerOfAWrite_data();
    void lostAnswerOfAWrite();
    void tellsOfASlowStation();
    void twoSessions();
};

void TestLine::opensAndCloses()
{
    VirtualPlant plant;
    QList<Session::State> states;
    connect(plant.session.get(), &Session::stateChanged, this,
            [&states](Session::State state) { states.append(state); });
    QCOMPARE(plant.session->state(), Session::State::Closed);
    plant.open();
    plant.session->open(); // is open already
    plant.session->close();
    QVERIFY(!plant.line->isOpen());
    plant.run(1000);
    QCOMPARE(states, (QList<Session::State>{Session::State::Opening, Session::State::Open,
                                            Session::State::Closed}));
    QCOMPARE(plant.session->linkName(), QLatin1String("virtual line"));
    QVERIFY(plant.notices.isEmpty());
}

void TestLine::tellsWhenItCannotBeOpened()
{
    VirtualPlant plant;
    plant.line->opensFine = false;
    ReadJob *const job = plant.read("D_W:0");
    plant.open(60000);
    QCOMPARE(plant.session->state(), Session::State::Closed);
    QCOMPARE(plant.session->lineError(), QLatin1String("no such device"));
    QCOMPARE(plant.notices, QStringList{QLatin1String("cannot open virtual line: no such device")});
    QVERIFY(job->isFinished());
}

void TestLine::keepsTryingWhereToldTo()
{
    SessionOptions options;
    options.firstOpen = FirstOpen::Again;
    VirtualPlant plant(options);
    Monitor *const monitor = plant.monitor("D_W:0");
    plant.line->opensFine = false;
    plant.open(60000);
    QCOMPARE(plant.session->state(), Session::State::Opening);
    QCOMPARE(plant.session->lineError(), QLatin1String("no such device"));
    plant.line->opensFine = true;
    plant.run(5500);
    QCOMPARE(plant.session->state(), Session::State::Open);
    QCOMPARE(plant.session->lineError(), QString());
    QVERIFY(monitor->isGood());
}

void TestLine::comesBack()
{
    VirtualPlant plant;
    Monitor *const monitor = plant.monitor("D_W:0");
    ReadJob *const job = plant.read("D_W:0*300");
    plant.open(35);
    QCOMPARE(job->state(), Job::State::Running);
    plant.line->opensFine = false;
    plant.line->breakDown();
    QCOMPARE(plant.session->state(), Session::State::Lost);
    plant.run(20000);
    QCOMPARE(monitor->items().first().quality, Quality::LineDown);
    QVERIFY(!job->isFinished());
    plant.line->opensFine = true;
    plant.run(6000);
    QCOMPARE(plant.session->state(), Session::State::Open);
    QVERIFY(monitor->isGood());
    QVERIFY(job->isFinished());
    QVERIFY(job->results().first().known.at(299));
    QCOMPARE(static_cast<int>(plant.notices.size()), 2);
    QCOMPARE(plant.notices.first(), QLatin1String("virtual line is lost: unplugged"));
    QVERIFY2(plant.notices.last().startsWith(QLatin1String("virtual line is open again after 2")),
             qPrintable(plant.notices.last()));
}

void TestLine::pendingWrites_data()
{
    QTest::addColumn<WriteJob::OnLoss>("onLoss");
    QTest::addColumn<int>("written");
    QTest::newRow("dropped") << WriteJob::OnLoss::Drop << 0;
    QTest::newRow("kept") << WriteJob::OnLoss::Keep << 1;
}

void TestLine::pendingWrites()
{
    QFETCH(WriteJob::OnLoss, onLoss);
    QFETCH(int, written);
    SessionOptions options;
    options.pendingWrites = onLoss;
    VirtualPlant plant(options);
    plant.open();
    WriteJob *const job = plant.write("D_W:5=1");
    plant.line->breakDown(); // before anything was sent
    QCOMPARE(job->isFinished(), written == 0);
    plant.run(10000);
    QVERIFY(job->isFinished());
    QCOMPARE(plant.word(5), written);
    QCOMPARE(job->results().first().text(),
             QLatin1String(written == 1
                               ? "1/D_W:5=1: written"
                               : "1/D_W:5=1: not written (the line is down); nothing was sent"));
}

// Those that are started while it is lost.
void TestLine::jobsOfALostLine()
{
    VirtualPlant plant;
    plant.open();
    plant.line->opensFine = false;
    plant.line->breakDown();
    plant.run(1000);
    ReadJob *const read = plant.read("D_W:5");
    WriteJob *const write = plant.write("D_W:5=1");
    RecipeJob *const recipe = plant.session->transfer({{plant.item(QLatin1String("D_W:5")), {}, 0}},
                                                      RecipeDirection::Read);
    QVERIFY(!write->isFinished()); // never from within the call
    plant.run(1000);
    QCOMPARE(write->results().first().outcome, WriteOutcome::NotSent);
    QCOMPARE(write->state(), Job::State::Failed);
    QCOMPARE(recipe->state(), Job::State::Failed);
    QVERIFY(!read->isFinished());
    plant.line->opensFine = true;
    plant.run(10000);
    QCOMPARE(read->state(), Job::State::Done);
    QCOMPARE(plant.word(5), 0);
}

void TestLine::lostByItsUse_data()
{
    QTest::addColumn<QString>("use");
    for (const char *const use : {"cyclic read", "read", "write", "recipe", "greeting"}) {
        QTest::addRow("%s", use) << QString::fromLatin1(use);
    }
}

// A link may find out that it is lost when something is sent.
void TestLine::lostByItsUse()
{
    QFETCH(QString, use);
    VirtualPlant plant(SessionOptions(), {1, 2});
    Monitor *const monitor = plant.monitor("D_W:0");
    plant.open();
    Job *job = nullptr;
    if (use == QLatin1String("read")) {
        job = plant.read("D_W:5");
    } else if (use == QLatin1String("write")) {
        job = plant.write("D_W:5=1");
    } else if (use == QLatin1String("recipe")) {
        job = plant.session->transfer({{plant.item(QLatin1String("D_W:5")), {}, 0}},
                                      RecipeDirection::Read);
    } else if (use == QLatin1String("greeting")) {
        job = plant.read("2/D_W:5");
    }
    plant.line->breaksWhenUsed = true;
    plant.clock.runUntil([&] { return !plant.line->breaksWhenUsed; }, 1000);
    QCOMPARE(plant.session->state(), Session::State::Lost);
    QCOMPARE(monitor->items().first().quality, Quality::LineDown);
    plant.run(10000);
    QVERIFY(monitor->isGood());
    QVERIFY(job == nullptr || job->isFinished());
    QVERIFY(use != QLatin1String("greeting") || job->state() == Job::State::Done);
    QCOMPARE(static_cast<int>(plant.notices.size()), 2);
}

// Whoever closes the session when the PLC has just confirmed a write is not told that nothing was
// sent.
void TestLine::writeThatWasConfirmedAtTheEnd()
{
    VirtualPlant plant;
    plant.open();
    const WriteJob *const job = plant.write("D_W:5=7");
    connect(plant.session.get(), &Session::exchangeEnded, this,
            [&plant](const ExchangeReport &report) {
                if (report.purpose == Purpose::Write) {
                    plant.session->close();
                }
            });
    QVERIFY(plant.finishes(job));
    QCOMPARE(plant.word(5), 7);
    QCOMPARE(job->results().first().outcome, WriteOutcome::NotConfirmed);
}

void TestLine::writeThatWasOut_data()
{
    QTest::addColumn<WriteJob::OnLoss>("onLoss");
    QTest::addColumn<WriteOutcome>("first");
    QTest::addColumn<WriteOutcome>("second");
    QTest::newRow("dropped") << WriteJob::OnLoss::Drop << WriteOutcome::NotConfirmed
                             << WriteOutcome::NotSent;
    QTest::newRow("kept, and read back")
        << WriteJob::OnLoss::Keep << WriteOutcome::Written << WriteOutcome::Written;
}

void TestLine::writeThatWasOut()
{
    QFETCH(WriteJob::OnLoss, onLoss);
    SessionOptions options;
    options.pendingWrites = onLoss;
    VirtualPlant plant(options);
    plant.open();
    QVERIFY(plant.finishes(plant.read("D_W:0"))); // the station is known
    WriteJob *const job = plant.write("D_W:5=1 D_W:6=2");
    plant.run(7); // the PLC has it, and has not answered yet
    QCOMPARE(plant.word(5), 1);
    plant.takeFrames();
    plant.line->breakDown();
    plant.run(10000);
    QTEST(job->results().at(0).outcome, "first");
    QTEST(job->results().at(1).outcome, "second");
    QVERIFY(plant.takeFrames("wSB08%DW00005").isEmpty()); // not sent again
}

void TestLine::recipeFails()
{
    VirtualPlant plant;
    plant.open();
    RecipeJob *const recipe = plant.session->transfer(
        {{plant.item(QLatin1String("D_W:0*300")), QVector<quint16>(300, 1), 0}},
        RecipeDirection::Write);
    plant.run(60);
    QVERIFY(recipe->progress().blocks > 0);
    plant.line->breakDown();
    QCOMPARE(recipe->state(), Job::State::Failed);
    QVERIFY2(recipe->failure().contains(QLatin1String("the line is down")),
             qPrintable(recipe->failure()));
    plant.takeFrames();
    plant.run(10000);
    QVERIFY(plant.takeFrames("wSB").isEmpty());
}

void TestLine::lostAnswerOfAWrite_data()
{
    QTest::addColumn<int>("goneMs"); // how long answers are lost
    QTest::addColumn<WriteOutcome>("outcome");
    QTest::newRow("one answer") << 400 << WriteOutcome::Written;
    QTest::newRow("all answers, then it is read back") << 1700 << WriteOutcome::Written;
    QTest::newRow("for good") << 100000 << WriteOutcome::NotConfirmed;
}

void TestLine::lostAnswerOfAWrite()
{
    QFETCH(int, goneMs);
    VirtualPlant plant;
    plant.monitor("D_W:0");
    plant.open();
    plant.line->mannersOf[1].lostAnswers = 100;
    WriteJob *const job = plant.write("D_W:5=1 D_W:6=2");
    plant.run(goneMs);
    plant.line->mannersOf.clear();
    QVERIFY(plant.finishes(job));
    QCOMPARE(plant.word(5), 1);
    const WriteResult &result = job->results().first();
    QTEST(result.outcome, "outcome");
    QVERIFY(!result.text().contains(QLatin1String("not written")));
    const WriteResult &other = job->results().at(1);
    QCOMPARE(other.isWritten(), plant.word(6) == 2);
}

void TestLine::tellsOfASlowStation()
{
    SessionOptions options;
    options.timeoutMs = 100;
    options.attempts = 1;
    VirtualPlant plant(options);
    plant.line->manners.lowMs = plant.line->manners.highMs = 195; // 200 ms with the request
    plant.monitor("D_W:0");
    plant.open(20000);
    const QString expected =
        QLatin1String("station 1 answers after 200 ms, the time-out is 100 ms: 301 ms would do");
    QCOMPARE(plant.notices.filter(QLatin1String("would do")), QStringList(expected));
    QVERIFY(plant.session->stations().value(1).late > 1);
}

void TestLine::twoSessions()
{
    VirtualPlant first;
    VirtualPlant second;
    QVERIFY(first.driver.core().functions().getData != second.driver.core().functions().getData);
    first.setWord(0, 111);
    second.setWord(0, 222);
    Monitor *const left = first.monitor("D_W:0*2");
    Monitor *const right = second.monitor("D_W:0*2");
    first.session->open();
    second.session->open();
    for (int i = 0; i < 50; ++i) {
        first.run(7);
        second.run(7);
    }
    QVERIFY(left->isGood() && right->isGood());
    QCOMPARE(left->items().first().values.at(0).value, quint16(111));
    QCOMPARE(right->items().first().values.at(0).value, quint16(222));
    QVERIFY(first.finishes(first.write("D_W:1=5")));
    second.run(500);
    QCOMPARE(right->items().first().values.at(1).value, quint16(0));
    first.session.reset();
    second.setWord(0, 333);
    second.run(500);
    QCOMPARE(right->items().first().values.at(0).value, quint16(333));
}

QTEST_GUILESS_MAIN(TestLine)

#include "test_line.moc"
