#include "host/support/test_registers.h"

#include <host/jobs/read_job.h>

#include <QSignalSpy>
#include <QtTest>

using namespace cnet;

namespace {

const int kBlockWords = 10;

// "1,2,-": the values of all items, a dash for what is not known.
QString resultText(const ReadJob &job)
{
    QStringList items;
    for (const ReadResult &result : job.results()) {
        QStringList values;
        for (int i = 0; i < result.values.size(); ++i) {
            values.append(result.known.at(i) ? QString::number(result.values.at(i))
                                             : QLatin1String("-"));
        }
        items.append(values.join(QLatin1Char(',')) +
                     (result.isGood() ? QLatin1String("") : QLatin1String("!")));
    }
    return items.join(QLatin1Char(' '));
}

BlockResult failed(Failure::Kind kind)
{
    BlockResult result;
    result.failure.kind = kind;
    result.failure.code = kind == Failure::Refused ? 0x1132 : 0;
    return result;
}

} // namespace

Q_DECLARE_METATYPE(cnet::Failure::Kind)

class TestReadJob : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads();
    void fails_data();
    void fails();
    void endsOnce();
};

// Every address holds its own number.
void TestReadJob::reads()
{
    ReadJob job(testItems("D_W:5*2 D_W:8 M_bit:1.4 D_W:0*12"), testCatalog(), kBlockWords,
                Merging::Together);
    QSignalSpy progressed(&job, &Job::progressed);
    int requests = 0;
    while (const auto request = job.next()) {
        QCOMPARE(job.next()->item.text(), request->item.text()); // until it ended
        job.begun(*request);
        QCOMPARE(job.state(), Job::State::Running);
        BlockResult result;
        for (int i = 0; i < request->item.count; ++i) {
            result.values.append(static_cast<quint16>(request->item.start + i));
        }
        job.ended(*request, result);
        ++requests;
    }
    QCOMPARE(requests, 3); // D 0 to 9, D 10 and 11, M 1
    QCOMPARE(resultText(job), QLatin1String("5,6 8 0 0,1,2,3,4,5,6,7,8,9,10,11"));
    QCOMPARE(progressed.last().at(0).toInt(), 16);
    QCOMPARE(progressed.last().at(1).toInt(), 16);
    job.conclude();
    QCOMPARE(job.state(), Job::State::Done);
    QCOMPARE(job.failure(), QString());
}

void TestReadJob::fails_data()
{
    QTest::addColumn<Failure::Kind>("kind");
    QTest::addColumn<int>("requests");
    QTest::addColumn<QString>("results");
    // Station 1 fails: D 5 to 8 with two items, and D 100. Station 2 is good.
    QTest::newRow("refused: each by itself") << Failure::Refused << 5 << "-,-! -! -! 7";
    QTest::newRow("silent: it is not asked again") << Failure::NoAnswer << 2 << "-,-! -! -! 7";
    QTest::newRow("unusable answers: likewise") << Failure::BadAnswer << 2 << "-,-! -! -! 7";
}

void TestReadJob::fails()
{
    QFETCH(Failure::Kind, kind);
    ReadJob job(testItems("D_W:5*2 D_W:8 D_W:100 2/D_W:7"), testCatalog(), kBlockWords,
                Merging::Together);
    int requests = 0;
    while (const auto request = job.next()) {
        BlockResult good;
        good.values = {7};
        job.ended(*request, request->item.station == 2 ? good : failed(kind));
        ++requests;
    }
    QTEST(requests, "requests");
    QTEST(resultText(job), "results");
    job.conclude();
    QCOMPARE(job.state(), Job::State::Failed);
    QCOMPARE(job.failure(), failed(kind).failure.text());
}

void TestReadJob::endsOnce()
{
    ReadJob job(testItems("D_W:5 D_W:100"), testCatalog(), kBlockWords, Merging::Together);
    QSignalSpy finished(&job, &Job::finished);
    QSignalSpy cancelled(&job, &Job::cancelRequested);
    BlockResult good;
    good.values = {7};
    job.ended(*job.next(), good);
    job.cancel();
    job.cancel();
    QCOMPARE(static_cast<int>(cancelled.size()), 1);
    QVERIFY(job.isCancelRequested());
    QVERIFY(finished.isEmpty());
    job.conclude(failed(Failure::Cancelled).failure);
    job.conclude();
    job.cancel();
    QCOMPARE(static_cast<int>(finished.size()), 1);
    QCOMPARE(job.state(), Job::State::Cancelled);
    QCOMPARE(resultText(job), QLatin1String("7 -!"));
    QCOMPARE(job.failure(), QLatin1String("cancelled"));
    QVERIFY(!job.next());
}

QTEST_APPLESS_MAIN(TestReadJob)

#include "test_read_job.moc"
