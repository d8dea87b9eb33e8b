#include "host/support/fake_link.h"
#include "host/support/frames.h"
#include "host/support/test_registers.h"
#include "host/support/virtual_clock.h"

#include <host/jobs/write_job.h>
#include <host/schedule/job_request.h>

#include <QtTest>

#include <memory>

using namespace cnet;

namespace {

// A driver, the request of a job, and a test as the PLC.
struct Desk
{
    Desk()
        : conversation(link, clock, times, ConversationSettings())
        , carrier(core, conversation)
        , poller(core, registers, health, clock, PollSettings())
        , request(core, carrier, poller)
    {
        QString error;
        if (!core.load(QLatin1String(DRIVER_FILE), error)) {
            qFatal("%s", qPrintable(error));
        }
        core.start(DriverProperties());
        QObject::connect(&conversation, &Conversation::ended, [this](const Reply &reply) {
            const ExchangeReport report = carrier.take(reply);
            concerned = request.concerns(report);
            over = concerned && request.take(report);
            failure = report.failure();
        });
    }

    std::unique_ptr<Job> reading(const char *item)
    {
        return std::make_unique<ReadJob>(testItems(item), registers, 60, Merging::Together);
    }
    std::unique_ptr<WriteJob> writing(const Item &item)
    {
        const QVector<Assignment> assignments = {{item, {1}}};
        return std::make_unique<WriteJob>(assignments, registers, 60, ReadBack::Never,
                                          WriteJob::OnLoss::Drop);
    }

    /** What went out last, without its frame. */
    QByteArray asked() const { return textOf(link.sentFrames.last()); }

    RegisterCatalog registers = testCatalog();
    VirtualClock clock;
    FakeLink link;
    ResponseTimes times;
    DriverCore core;
    Conversation conversation;
    FrameCarrier carrier;
    StationHealth health;
    Poller poller;
    JobRequest request;
    bool concerned = false;
    bool over = false;
    Failure failure;
};

} // namespace

class TestJobRequest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWords();
    void readsAContactAndNothingElse();
    void writesABitWithinItsWord();
    void leavesCyclicBlocksToOthers();
    void tellsOfARefusal();
    void endsWithTheWordOfABit();
    void outlivesItsJob();
};

void TestJobRequest::readsWords()
{
    Desk desk;
    const auto job = desk.reading("D_W:5*2");
    QVERIFY(!desk.request.isOpen());
    QVERIFY(desk.request.begin(job.get(), *job->next()));
    QVERIFY(desk.request.isOpen() && !desk.request.isRecipe());
    QCOMPARE(job->state(), Job::State::Running);
    desk.link.say(answerFrame("01rSB010400070008"));
    QVERIFY(desk.over);
    QVERIFY(desk.request.finish(desk.failure) == job.get());
    QVERIFY(!desk.request.isOpen());
    QCOMPARE(qobject_cast<ReadJob *>(job.get())->results().first().values,
             (QVector<quint16>{7, 8}));
    QVERIFY(!job->next());
}

// The driver reads it cyclically, since its one-off read reads others than meant.
void TestJobRequest::readsAContactAndNothingElse()
{
    Desk desk;
    const auto job = desk.reading("TX:3");
    QVERIFY(desk.request.begin(job.get(), *job->next()));
    desk.link.say(answerFrame("01rSS010101"));
    QVERIFY(desk.over);
    desk.request.finish(desk.failure);
    QCOMPARE(qobject_cast<ReadJob *>(job.get())->results().first().values, QVector<quint16>{1});
    QVERIFY(!desk.carrier.carry());
}

// The word is read first: that is not the end of the write.
void TestJobRequest::writesABitWithinItsWord()
{
    Desk desk;
    const auto job = desk.writing(testItem("D_bit", 5 * 16 + 2, 1));
    QVERIFY(desk.request.begin(job.get(), *job->next()));
    QCOMPARE(desk.asked().mid(2, 3), QByteArray("rSB"));
    desk.link.say(answerFrame("01rSB01020001"));
    QVERIFY(desk.concerned && !desk.over);
    QVERIFY(desk.carrier.carry());
    QCOMPARE(desk.asked(), QByteArray("01wSB08%DW00005010005"));
    desk.link.say(answerFrame("01wSB"));
    QVERIFY(desk.over);
    desk.request.finish(desk.failure);
    QVERIFY(job->results().first().isWritten());
}

// After ten requests in a row the driver puts a cyclic one in.
void TestJobRequest::leavesCyclicBlocksToOthers()
{
    Desk desk;
    desk.core.merge({keyOf(testItem("D_W", 9, 1))});
    ExchangeReport cyclic;
    cyclic.purpose = Purpose::Cyclic;
    const auto read = desk.reading("D_W:5");
    QVERIFY(desk.request.begin(read.get(), *read->next()));
    QVERIFY(!desk.request.concerns(cyclic));
    desk.request.drop();
    QVERIFY(!desk.request.isOpen());
    ExchangeReport once;
    once.purpose = Purpose::Read;
    QVERIFY(!desk.request.concerns(once)); // of nobody any more
}

void TestJobRequest::tellsOfARefusal()
{
    Desk desk;
    const auto job = desk.writing(testItem("D_W", 5, 1));
    QVERIFY(desk.request.begin(job.get(), *job->next()));
    desk.link.say(refusalFrame("01wSB1132"));
    QVERIFY(desk.over);
    desk.request.finish(desk.failure);
    QCOMPARE(job->results().first().outcome, WriteOutcome::Refused);
    QCOMPARE(job->results().first().failure.code, 0x1132);
}

// Where its word cannot be read, a bit is not written.
void TestJobRequest::endsWithTheWordOfABit()
{
    Desk desk;
    const auto job = desk.writing(testItem("D_bit", 5 * 16 + 2, 1));
    QVERIFY(desk.request.begin(job.get(), *job->next()));
    desk.link.say(refusalFrame("01rSB1132"));
    QVERIFY(desk.over);
    desk.request.finish(desk.failure);
    QCOMPARE(job->results().first().outcome, WriteOutcome::Refused);
    QVERIFY(!desk.carrier.carry());
}

void TestJobRequest::outlivesItsJob()
{
    Desk desk;
    auto job = desk.reading("D_W:5");
    QVERIFY(desk.request.begin(job.get(), *job->next()));
    job.reset();
    QVERIFY(desk.request.isOpen()); // its answer is still to come
    desk.link.say(answerFrame("01rSB01020007"));
    QVERIFY(desk.over);
    QVERIFY(desk.request.finish(desk.failure).isNull());
    QVERIFY(!desk.request.isOpen());
}

QTEST_GUILESS_MAIN(TestJobRequest)

#include "test_job_request.moc"
