#include "gateway/support/write_desk_fixture.h"

using namespace cnet;
using namespace cnet::gateway;

/** Each request is written down, wanted once, and answered once. */
class TestWriteDesk : public WriteDeskFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void writesDownBeforeItIsWanted();
    void refusesAllWhereItIsOff();
    void makesUpAnId();
    void refusesRetainedOnes();
    void refusesWhatTheSinkFoundWrong();
    void refusesWhatIsTooLong();
    void answersARepeatedOneTheSame();
    void answersARepeatedOneTogetherWithTheFirst();
    void refusesAnIdOfSomethingElse();
    void remembersOverARestart();
    void wantsNothingThatCouldNotBeWrittenDown();
    void wantsNothingThatIsNotOnTheDisk();
    void keepsAResultUntilThereIsRoom();
    void refusesTooMany();
    void answersAllAtTheEnd();
    void takesAnotherFile();
    void takesOtherBounds();
};

void TestWriteDesk::writesDownBeforeItIsWanted()
{
    ask("1", "12.5");
    m_clock.runFor(1);
    QCOMPARE(m_wanted.size(), 1);
    QCOMPARE(m_seen.size(), 1);
    QCOMPARE(readAuditLine(m_seen.first())->value, QLatin1String("12.5"));
    QCOMPARE(take(), QStringList());
    carryOut();
    QCOMPARE(take(), QStringList(QLatin1String("1 taken [12.5]")));
    QCOMPARE(audit().size(), 2);
    const auto result = readAuditLine(audit().last());
    QVERIFY(result->answer.outcome == WriteAnswer::Outcome::Taken);
    // An answer that nobody waits for is none.
    m_desk->settle(result->answer);
    QCOMPARE(take(), QStringList());
    QCOMPARE(m_said, QStringList());
}

void TestWriteDesk::refusesAllWhereItIsOff()
{
    m_desk->setAudit(std::nullopt);
    ask("1");
    QCOMPARE(take(), QStringList(QLatin1String("1 refused: nothing may be written from outside")));
    m_clock.runFor(1);
    QVERIFY(m_wanted.isEmpty());
    QVERIFY(!QFile::exists(config().path));
}

void TestWriteDesk::makesUpAnId()
{
    ask("");
    ask("");
    m_clock.runFor(1);
    QCOMPARE(m_wanted.size(), 2);
    QVERIFY(!m_wanted.first().id.isEmpty() && m_wanted.first().id != m_wanted.last().id);
    carryOut();
    QCOMPARE(take().size(), 2);
}

void TestWriteDesk::refusesRetainedOnes()
{
    WriteRequest request = requestOf("1", "a", "1");
    request.arrival = WriteRequest::Arrival::Retained;
    m_desk->ask(request);
    QCOMPARE(take(), QStringList(QLatin1String(
                         "1 refused: a retained command is not carried out: it was sent some time "
                         "ago")));
    QCOMPARE(audit().size(), 2);
    // It says nothing of one that is sent now, also after a restart.
    start();
    ask("1");
    carryOut();
    QCOMPARE(take(), QStringList(QLatin1String("1 taken [1]")));
}

void TestWriteDesk::refusesWhatTheSinkFoundWrong()
{
    WriteRequest request = requestOf("1", "a", "1");
    request.fault = QLatin1String("no such metric");
    m_desk->ask(request);
    m_clock.runFor(1);
    QVERIFY(m_wanted.isEmpty());
    QCOMPARE(take(), QStringList(QLatin1String("1 refused: no such metric")));
    QCOMPARE(audit().size(), 1);
}

void TestWriteDesk::refusesWhatIsTooLong()
{
    m_desk->ask(requestOf(QString(201, QLatin1Char('i')), QLatin1String("a"), QLatin1String("1")));
    m_desk->ask(requestOf(QLatin1String("2"), QLatin1String("a"), QString(1001, QLatin1Char('1'))));
    m_clock.runFor(1);
    QVERIFY(m_wanted.isEmpty());
    QCOMPARE(take().size(), 2);
}

void TestWriteDesk::answersARepeatedOneTheSame()
{
    ask("1");
    carryOut();
    take();
    m_clock.runFor(RecentRequests::kKeptMs - 10);
    WriteRequest again = requestOf("1", "a", "1");
    again.reply.correlation = "again";
    m_desk->ask(again);
    m_clock.runFor(1);
    QVERIFY(m_wanted.isEmpty());
    QCOMPARE(m_answers.value(0).reply.correlation, QByteArray("again"));
    QCOMPARE(take(), QStringList(QLatin1String("1 taken [1]")));
    QCOMPARE(audit().size(), 3);
    // Another sink's ids are its own, and after some minutes it is a new one.
    again.reply.sink = QLatin1String("other");
    m_desk->ask(again);
    m_clock.runFor(20);
    ask("1");
    m_clock.runFor(1);
    QCOMPARE(m_wanted.size(), 2);
}

void TestWriteDesk::answersARepeatedOneTogetherWithTheFirst()
{
    ask("1");
    ask("1");
    m_clock.runFor(1);
    ask("1");
    QCOMPARE(m_wanted.size(), 1);
    QCOMPARE(take(), QStringList());
    carryOut();
    const QString taken = QLatin1String("1 taken [1]");
    QCOMPARE(take(), QStringList({taken, taken, taken}));
}

void TestWriteDesk::refusesAnIdOfSomethingElse()
{
    const QString refused =
        QLatin1String("1 refused: another request had the same id; each needs its own");
    ask("1", "1");
    ask("1", "2");
    QCOMPARE(take(), QStringList(refused));
    carryOut();
    QCOMPARE(take(), QStringList(QLatin1String("1 taken [1]")));
    ask("1", "2");
    ask("1", "1");
    QCOMPARE(take(), QStringList({refused, QLatin1String("1 taken [1]")}));
    start();
    ask("1", "1");
    QCOMPARE(take(), QStringList(QLatin1String("1 taken [1]")));
}

// A broker delivers again what was not confirmed to it when the gateway was killed.
void TestWriteDesk::remembersOverARestart()
{
    ask("1");
    carryOut();
    ask("2");
    ask("2", "9"); // refused, between the request and what came of it
    m_clock.runFor(1);
    QCOMPARE(m_wanted.size(), 1);
    take();
    start();
    ask("1");
    ask("2");
    m_clock.runFor(1);
    QCOMPARE(m_wanted.size(), 1); // the one from before
    QCOMPARE(take(),
             QStringList({QLatin1String("1 taken [1]"),
                          QLatin1String("2 no answer: the gateway ended before it knew what came "
                                        "of it")}));
    m_clock.runFor(RecentRequests::kKeptMs);
    start();
    ask("1");
    m_clock.runFor(1);
    QCOMPARE(m_wanted.size(), 2);
}

void TestWriteDesk::wantsNothingThatCouldNotBeWrittenDown()
{
    ask("1");
    carryOut();
    take();
    {
        const FullDisk full(100);
        ask("2");
        ask("3");
        m_clock.runFor(1);
        QVERIFY(m_wanted.isEmpty());
        const QStringList refused = take();
        QCOMPARE(refused.size(), 2);
        QVERIFY2(refused.first().startsWith(QLatin1String(
                     "2 refused: what cannot be written down is not carried out: cannot write ")),
                 qPrintable(refused.first()));
    }
    ask("4");
    carryOut();
    QCOMPARE(take(), QStringList(QLatin1String("4 taken [1]")));
    QCOMPARE(m_said.size(), 2); // one line that it fails, one that it works again
    QVERIFY(m_said.first().startsWith(QLatin1String("audit log: cannot write ")));
}

// The system takes lines for /dev/null, and says that it cannot bring them to a disk.
void TestWriteDesk::wantsNothingThatIsNotOnTheDisk()
{
    QVERIFY(QFile::link(QLatin1String("/dev/null"), config().path));
    ask("1");
    m_clock.runFor(1);
    QVERIFY(m_wanted.isEmpty());
    const QStringList refused = take();
    QCOMPARE(refused.size(), 1);
    QVERIFY2(refused.first().startsWith(
                 QLatin1String("1 refused: what cannot be written down is not carried out: ")),
             qPrintable(refused.first()));
}

void TestWriteDesk::keepsAResultUntilThereIsRoom()
{
    ask("1");
    m_clock.runFor(1);
    {
        const FullDisk full(static_cast<rlim_t>(QFile(config().path).size()));
        carryOut();
        QCOMPARE(take(), QStringList(QLatin1String("1 taken [1]")));
        QCOMPARE(audit().size(), 1);
    }
    ask("2");
    QCOMPARE(audit().size(), 3);
    QCOMPARE(readAuditLine(audit().at(1))->answer.id, QLatin1String("1"));
    QVERIFY(readAuditLine(audit().at(1))->what == AuditLine::What::Result);
}

void TestWriteDesk::refusesTooMany()
{
    for (int i = 0; i < WriteDesk::kMostOpen; ++i) {
        m_desk->ask(requestOf(QString::number(i), QLatin1String("a"), QString::number(i)));
    }
    QCOMPARE(take(), QStringList());
    ask("more");
    QCOMPARE(take(), QStringList(QLatin1String("more refused: too many requests are open")));
    ask("0", "0"); // again
    QCOMPARE(take(), QStringList(QLatin1String("0 refused: too many requests are open")));
    carryOut();
    QCOMPARE(take().size(), WriteDesk::kMostOpen);
    ask("more"); // it was not carried out, so it may be asked for again
    carryOut();
    QCOMPARE(take(), QStringList(QLatin1String("more taken [1]")));
}

void TestWriteDesk::answersAllAtTheEnd()
{
    ask("1");
    m_clock.runFor(1);
    ask("2");
    ask("1");
    m_desk->finish();
    const QString ending = QLatin1String(" refused: the gateway is ending");
    QCOMPARE(take(), QStringList({QLatin1Char('1') + ending, QLatin1Char('1') + ending,
                                  QLatin1Char('2') + ending}));
    ask("3");
    QCOMPARE(take(), QStringList(QLatin1Char('3') + ending));
    carryOut();
    QCOMPARE(take(), QStringList());
    QCOMPARE(audit().size(), 5);
}

void TestWriteDesk::takesAnotherFile()
{
    ask("1");
    m_clock.runFor(1);
    m_desk->setAudit(config("other.jsonl"));
    carryOut();
    QCOMPARE(take(), QStringList(QLatin1String("1 taken [1]")));
    QCOMPARE(audit().size(), 1);
    QCOMPARE(audit("other.jsonl").size(), 1);
    ask("2");
    m_desk->setAudit(std::nullopt); // what was asked for before is carried out
    carryOut();
    QCOMPARE(take(), QStringList(QLatin1String("2 taken [1]")));
    QCOMPARE(audit("other.jsonl").size(), 3);
}

void TestWriteDesk::takesOtherBounds()
{
    ask("1");
    m_clock.runFor(1);
    carryOut();
    AuditConfig narrow = config();
    narrow.bytes = 1;
    m_desk->setAudit(narrow);
    QCOMPARE(take(), QStringList(QLatin1String("1 taken [1]")));
    ask("2");
    m_clock.runFor(1);
    carryOut();
    QCOMPARE(take(), QStringList(QLatin1String("2 taken [1]")));
    // Each line has a file of its own now; a repetition is known nevertheless.
    QCOMPARE(audit().size(), 2); // of two files
    QVERIFY(QFile::exists(narrow.path + QLatin1String(".2")));
    ask("1");
    QCOMPARE(take(), QStringList(QLatin1String("1 taken [1]")));
}

QTEST_APPLESS_MAIN(TestWriteDesk)
#include "test_write_desk.moc"
