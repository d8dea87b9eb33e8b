#include "host/support/virtual_plant.h"

#include <QtTest>

using namespace cnet;

namespace {

enum class Kind { Read, Write, KeptWrite, RecipeRead, RecipeWrite };

enum class End {
    Done,
    Refused,
    Silence,
    CancelAtOnce,
    CancelUnderway,
    CancelTwice,
    Close,
    CloseTwice,
    DeleteSession,
    LineLost,
    LineLostAndCancelled,
};

struct KindName
{
    Kind kind;
    const char *name;
};

const KindName kKinds[] = {{Kind::Read, "read"},
                           {Kind::Write, "write"},
                           {Kind::KeptWrite, "write that outlives the line"},
                           {Kind::RecipeRead, "recipe from the PLC"},
                           {Kind::RecipeWrite, "recipe to the PLC"}};

struct EndName
{
    End end;
    const char *name;
    Job::State state;
};

const EndName kEnds[] = {
    {End::Done, "done", Job::State::Done},
    {End::Refused, "refused", Job::State::Failed},
    {End::Silence, "silence", Job::State::Failed},
    {End::CancelAtOnce, "cancelled at once", Job::State::Cancelled},
    {End::CancelUnderway, "cancelled underway", Job::State::Cancelled},
    {End::CancelTwice, "cancelled twice", Job::State::Cancelled},
    {End::Close, "closed", Job::State::Cancelled},
    {End::CloseTwice, "closed twice", Job::State::Cancelled},
    {End::DeleteSession, "session deleted", Job::State::Cancelled},
    {End::LineLost, "line lost", Job::State::Failed},
    {End::LineLostAndCancelled, "line lost, then cancelled", Job::State::Cancelled},
};

} // namespace

Q_DECLARE_METATYPE(Kind)
Q_DECLARE_METATYPE(const EndName *)

// Jobs end once, whatever ends them, and leave the line to the next one.
class TestJobs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void finishesOnce_data();
    void finishesOnce();
    void canBeDeletedAtAnyTime_data();
    void canBeDeletedAtAnyTime();
    void cancelWaitsForWhatIsOut();
    void jobsWithoutItems();
    void severalJobsAndMonitorsAtOnce();
    void finishesBeforeTheLineIsOpen();

private:
    static Job *start(VirtualPlant &plant, Kind kind, int from = 0);
    static void bring(End end, VirtualPlant &plant, Job &job);
};

Job *TestJobs::start(VirtualPlant &plant, Kind kind, int from)
{
    const Item words = plant.item(QString::fromLatin1("D_W:%1*200").arg(from));
    const QVector<quint16> values(200, 7);
    switch (kind) {
    case Kind::Read:
        return plant.session->read({words});
    case Kind::Write:
    case Kind::KeptWrite:
        return plant.session->write({{words, values}});
    case Kind::RecipeRead:
        return plant.session->transfer({{words, {}, 0}}, RecipeDirection::Read);
    case Kind::RecipeWrite:
        return plant.session->transfer({{words, values, 0}}, RecipeDirection::Write);
    }
    return nullptr;
}

void TestJobs::finishesOnce_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<const EndName *>("end");
    for (const KindName &kind : kKinds) {
        for (const EndName &end : kEnds) {
            QTest::addRow("%s, %s", kind.name, end.name) << kind.kind << &end;
        }
    }
}

void TestJobs::bring(End end, VirtualPlant &plant, Job &job)
{
    switch (end) {
    case End::Done:
    case End::Refused:
        break;
    case End::Silence:
        plant.silence(1);
        break;
    case End::CancelTwice:
        job.cancel();
        job.cancel();
        break;
    case End::CancelAtOnce:
    case End::CancelUnderway:
        job.cancel();
        break;
    case End::CloseTwice:
        plant.session->close();
        plant.session->close();
        break;
    case End::Close:
        plant.session->close();
        break;
    case End::DeleteSession:
        plant.session.reset();
        break;
    case End::LineLost:
        plant.line->breakDown();
        break;
    case End::LineLostAndCancelled:
        plant.line->breakDown();
        job.cancel();
        break;
    }
}

void TestJobs::finishesOnce()
{
    QFETCH(Kind, kind);
    QFETCH(const EndName *, end);
    SessionOptions options;
    const bool keeps = kind == Kind::KeptWrite;
    options.pendingWrites = keeps ? WriteJob::OnLoss::Keep : WriteJob::OnLoss::Drop;
    VirtualPlant plant(options);
    plant.line->bus.add(1, plc::Model::K120s);
    plant.monitor("D_W:0*3");
    plant.open();
    Job *const job = start(plant, kind, end->end == End::Refused ? 4900 : 0);
    int finished = 0;
    Job::State state = Job::State::Waiting;
    QString failure;
    connect(job, &Job::finished, this, [&] {
        ++finished;
        state = job->state();
        failure = job->failure();
    });
    if (end->end != End::CancelAtOnce && end->end != End::Done) {
        plant.run(25); // a block is out
        QCOMPARE(job->state(), Job::State::Running);
    }
    bring(end->end, plant, *job);
    plant.run(30000);
    QCOMPARE(finished, 1);
    const bool lost = end->end == End::LineLost || end->end == End::LineLostAndCancelled;
    const bool outlives = kind == Kind::Read || keeps;
    if (!lost) {
        QCOMPARE(state, end->state);
    } else if (end->end == End::LineLost || !outlives) {
        QCOMPARE(state, keeps ? Job::State::Done : Job::State::Failed);
    }
    QCOMPARE(failure.isEmpty(), state == Job::State::Done);
    if (plant.session) {
        plant.session->close();
    }
    plant.session.reset();
    QCOMPARE(finished, 1);
}

void TestJobs::canBeDeletedAtAnyTime_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<int>("afterMs");
    for (const KindName &kind : kKinds) {
        for (const int afterMs : {0, 3, 12, 25, 40}) {
            QTest::addRow("%s after %d ms", kind.name, afterMs) << kind.kind << afterMs;
        }
    }
}

// The frame that is out is waited for; what comes next is as right as ever.
void TestJobs::canBeDeletedAtAnyTime()
{
    QFETCH(Kind, kind);
    QFETCH(int, afterMs);
    VirtualPlant plant;
    Monitor *const monitor = plant.monitor("D_W:300*3");
    plant.open();
    Job *const job = start(plant, kind);
    int finished = 0;
    connect(job, &Job::finished, this, [&finished] { ++finished; });
    plant.run(afterMs);
    delete job;
    plant.setWord(301, 4711);
    RecipeJob *const recipe = plant.session->transfer(
        {{plant.item(QLatin1String("D_W:500*70")), QVector<quint16>(70, 9), 0}},
        RecipeDirection::Write);
    ReadJob *const read = plant.read("D_W:301");
    QVERIFY(plant.finishes(recipe));
    QCOMPARE(recipe->failure(), QString());
    QCOMPARE(plant.word(500), 9);
    QCOMPARE(plant.word(569), 9);
    QVERIFY(plant.finishes(read));
    QCOMPARE(read->results().first().values, QVector<quint16>{4711});
    plant.run(300);
    QCOMPARE(monitor->items().first().values.at(1).value, quint16(4711));
    QVERIFY(monitor->isGood());
    QCOMPARE(finished, 0);
    QVERIFY2(plant.notices.isEmpty(), qPrintable(plant.notices.join(QLatin1Char('\n'))));
}

// The PLC may be at it already.
void TestJobs::cancelWaitsForWhatIsOut()
{
    VirtualPlant plant;
    plant.open();
    QVERIFY(plant.finishes(plant.read("D_W:0"))); // the station is known
    WriteJob *const job = plant.write("D_W:5=1 D_W:6=2");
    plant.run(2); // the first one is on its way
    job->cancel();
    QVERIFY(!job->isFinished());
    QVERIFY(plant.finishes(job));
    QCOMPARE(job->state(), Job::State::Cancelled);
    QCOMPARE(job->results().at(0).outcome, WriteOutcome::Written);
    QCOMPARE(job->results().at(1).outcome, WriteOutcome::NotSent);
    plant.run(1000);
    QCOMPARE(plant.word(5), 1);
    QCOMPARE(plant.word(6), 0);
}

void TestJobs::jobsWithoutItems()
{
    VirtualPlant plant;
    plant.open();
    plant.takeFrames();
    const QVector<Job *> jobs = {plant.session->read({}), plant.session->write({}),
                                 plant.session->transfer({}, RecipeDirection::Write)};
    for (const Job *job : jobs) {
        QVERIFY(!job->isFinished()); // never from within the call
    }
    for (const Job *job : jobs) {
        QVERIFY(plant.finishes(job));
        QCOMPARE(job->state(), Job::State::Done);
    }
    QVERIFY(plant.takeFrames().isEmpty());
}

void TestJobs::severalJobsAndMonitorsAtOnce()
{
    VirtualPlant plant(SessionOptions(), {1, 2});
    for (int i = 0; i < 400; ++i) {
        plant.setWord(i, i + 1, 1);
        plant.setWord(i, i + 1001, 2);
    }
    plant.memory().setContact('T', 3, true);
    Monitor *const left = plant.monitor("1/D_W:0*5 2/D_W:0*70 TX:3");
    Monitor *const right = plant.monitor("1/D_W:3*4 2/D_W:50 M_bit:0.5");
    plant.open(0);
    ReadJob *const read = plant.read("1/D_W:100*100 TX:2*2 2/D_W:7");
    WriteJob *const write = plant.write("1/D_W:4=44 M_bit:0.5=1");
    RecipeJob *const recipe = plant.session->transfer(
        {{plant.item(QLatin1String("2/D_W:300*61")), {}, 0}}, RecipeDirection::Read);
    QVERIFY(plant.finishes(read) && plant.finishes(write) && plant.finishes(recipe));
    delete plant.monitor("1/D_W:390");
    plant.run(500);
    QVERIFY(left->isGood() && right->isGood());
    QCOMPARE(left->items().at(0).values.at(4).value, quint16(44));
    QCOMPARE(left->items().at(1).values.at(69).value, quint16(1070));
    QCOMPARE(left->items().at(2).values.at(0).value, quint16(1));
    QCOMPARE(right->items().at(0).values.at(1).value, quint16(44));
    QCOMPARE(right->items().at(1).values.at(0).value, quint16(1051));
    QCOMPARE(right->items().at(2).values.at(0).value, quint16(1));
    QCOMPARE(read->results().at(0).values.at(99), quint16(200));
    QCOMPARE(read->results().at(1).values, (QVector<quint16>{0, 1}));
    QCOMPARE(recipe->values().first().at(60), quint16(1361));
    QVERIFY(write->results().at(0).isWritten() && write->results().at(1).isWritten());
}

void TestJobs::finishesBeforeTheLineIsOpen()
{
    VirtualPlant plant;
    ReadJob *const read = plant.read("D_W:5");
    WriteJob *const write = plant.write("D_W:6=6");
    write->cancel();
    QVERIFY(plant.finishes(write));
    plant.run(1000);
    QVERIFY(!read->isFinished());
    plant.open();
    QVERIFY(read->isFinished());
    QCOMPARE(plant.word(6), 0);
    plant.session->close();
    ReadJob *const late = plant.read("D_W:5");
    QVERIFY(plant.finishes(late)); // closed for good
    QCOMPARE(late->state(), Job::State::Cancelled);
}

QTEST_GUILESS_MAIN(TestJobs)

#include "test_jobs.moc"
