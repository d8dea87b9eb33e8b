#include "host/support/test_registers.h"

#include <host/jobs/job_queue.h>
#include <host/jobs/write_job.h>

#include <QtTest>

#include <memory>

using namespace cnet;

namespace {

std::unique_ptr<Job> reading()
{
    return std::make_unique<ReadJob>(testItems("D_W:0"), testCatalog(), 60, Merging::Together);
}

std::unique_ptr<Job> writing(WriteJob::OnLoss onLoss = WriteJob::OnLoss::Drop)
{
    const QVector<Assignment> assignments = {{testItem("D_W", 0, 1), {7}}};
    return std::make_unique<WriteJob>(assignments, testCatalog(), 60, ReadBack::OnFailure, onLoss);
}

} // namespace

class TestJobQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesGoFirst();
    void endsWhatIsNotKept();
    void endsAll();
    void survivesJobsThatGo();
};

void TestJobQueue::writesGoFirst()
{
    JobQueue queue;
    QVERIFY(queue.next() == nullptr);
    const auto read = reading();
    const auto first = writing();
    const auto second = writing();
    for (Job *const job : {read.get(), first.get(), second.get()}) {
        queue.add(job);
    }
    for (Job *const job : {first.get(), second.get(), read.get()}) {
        QVERIFY(queue.next() == job);
        QVERIFY(queue.next() == job); // until it ends
        queue.end(job, Failure());
        QVERIFY(job->isFinished());
    }
    QVERIFY(queue.next() == nullptr);
}

void TestJobQueue::endsWhatIsNotKept()
{
    JobQueue queue;
    const auto read = reading();
    const auto dropped = writing();
    const auto kept = writing(WriteJob::OnLoss::Keep);
    for (Job *const job : {read.get(), dropped.get(), kept.get()}) {
        queue.add(job);
    }
    queue.endUnkept();
    QCOMPARE(dropped->state(), Job::State::Failed);
    QCOMPARE(dropped->failure(), QLatin1String("the line is down"));
    QVERIFY(!read->isFinished() && !kept->isFinished());
    QVERIFY(queue.next() == kept.get());
}

void TestJobQueue::endsAll()
{
    JobQueue queue;
    const auto sent = writing();
    const auto waiting = writing();
    queue.add(sent.get());
    queue.add(waiting.get());
    queue.endAll(sent.get());
    const auto outcome = [](const std::unique_ptr<Job> &job) {
        return qobject_cast<WriteJob *>(job.get())->results().first().outcome;
    };
    QCOMPARE(sent->state(), Job::State::Cancelled);
    QCOMPARE(outcome(sent), WriteOutcome::NotConfirmed);
    QCOMPARE(outcome(waiting), WriteOutcome::NotSent);
    QVERIFY(queue.next() == nullptr);
}

void TestJobQueue::survivesJobsThatGo()
{
    JobQueue queue;
    auto first = reading();
    auto second = reading();
    queue.add(first.get());
    queue.add(second.get());
    connect(second.get(), &Job::finished, this, [] { QFAIL("nobody is left to be told"); });
    connect(first.get(), &Job::finished, this, [&second] { second.reset(); });
    queue.endAll(nullptr);
    QVERIFY(first->isFinished());
    queue.add(first.get());
    first.reset();
    QVERIFY(queue.next() == nullptr);
}

QTEST_APPLESS_MAIN(TestJobQueue)

#include "test_job_queue.moc"
