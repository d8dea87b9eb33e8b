#include "host/support/test_registers.h"

#include <host/address/assignment.h>
#include <host/jobs/write_job.h>

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace cnet;

namespace {

const int kBlockWords = 1;

std::unique_ptr<WriteJob> makeJob(const char *assignments, ReadBack readBack = ReadBack::OnFailure)
{
    QVector<Assignment> all;
    for (const QString &text : QString::fromLatin1(assignments).split(QLatin1Char(' '))) {
        QString error;
        all.append(parseAssignment(text, 1, testCatalog(), error).value_or(Assignment()));
    }
    return std::make_unique<WriteJob>(all, testCatalog(), kBlockWords, readBack,
                                      WriteJob::OnLoss::Drop);
}

// One letter for each write, g for a good one; what is read back holds `holds`.
QStringList play(WriteJob &job, const QByteArray &writes, int holds, bool readable = true)
{
    int next = 0;
    QStringList requests;
    while (const auto request = job.next()) {
        requests.append((request->kind == BlockRequest::Read ? QLatin1String("read ")
                                                             : QLatin1String("write ")) +
                        request->item.text());
        const char letter = request->kind == BlockRequest::Write ? writes.at(next++)
                            : readable                           ? 'g'
                                                                 : 's';
        BlockResult result;
        result.failure.kind = letter == 'r'                    ? Failure::Refused
                              : letter == 's' || letter == 'n' ? Failure::NoAnswer
                              : letter == 'b'                  ? Failure::BadAnswer
                                                               : Failure::None;
        result.failure.sent = letter != 'n';
        result.failure.code = letter == 'r' ? 0x1132 : 0;
        result.values = QVector<quint16>(request->item.count, static_cast<quint16>(holds));
        job.ended(*request, result);
    }
    return requests;
}

} // namespace

class TestWriteJob : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cuts_data();
    void cuts();
    void tellsTheOutcome_data();
    void tellsTheOutcome();
    void readsBackAlways();
    void readsBackNever();
    void sparesASilentStation();
    void settlesEveryBlock();
    void givesUp();
};

void TestWriteJob::cuts_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<int>("blockWords");
    QTest::addColumn<QString>("blocks");
    QTest::newRow("58 words fit a frame of 256 bytes") << "D_W:0*58" << 60 << "0+58";
    QTest::newRow("59 do not") << "D_W:0*59" << 60 << "0+58 58+1";
    QTest::newRow("nor with longer blocks") << "D_W:0*100" << 255 << "0+58 58+42";
    QTest::newRow("shorter blocks") << "D_W:0*5" << 2 << "0+2 2+2 4+1";
    QTest::newRow("blocks of nothing") << "D_W:0*2" << 0 << "0+1 1+1";
    QTest::newRow("each bit") << "M_bit:3.15*3" << 60 << "0+1 1+1 2+1";
    QTest::newRow("each contact") << "TX:0*2" << 60 << "0+1 1+1";
}

void TestWriteJob::cuts()
{
    QFETCH(QString, item);
    QFETCH(int, blockWords);
    QStringList blocks;
    for (const ItemBlock &block : writeBlocksOf(testItems(item).first(), blockWords)) {
        blocks.append(QString::fromLatin1("%1+%2").arg(block.offset).arg(block.count));
    }
    QTEST(blocks.join(QLatin1Char(' ')), "blocks");
}

void TestWriteJob::tellsTheOutcome_data()
{
    QTest::addColumn<QByteArray>("writes"); // g good, r refused, s silent, b bad, n not sent
    QTest::addColumn<int>("holds");
    QTest::addColumn<bool>("readable");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *writes, int holds, bool readable,
                        const QByteArray &text) {
        QTest::newRow(name) << QByteArray(writes) << holds << readable << QString::fromLatin1(text);
    };
    const QByteArray refusedText =
        "not written (refused: 1132, no such device, or address outside the device)";
    row("taken", "gg", 7, true, "written");
    row("refused", "gr", 0, true, refusedText + "; it holds 0 0x0000, 0 0x0000");
    row("refused although it holds it", "rg", 7, true,
        refusedText + "; it holds 7 0x0007, 7 0x0007");
    row("answer lost, carried out", "gs", 7, true, "written");
    row("answer lost, not carried out", "gs", 3, true,
        "not confirmed (no answer); it holds 3 0x0003, 3 0x0003");
    row("answer lost, then silence", "gs", 7, false,
        "not confirmed (no answer); what it holds is not known (no answer)");
    row("answer damaged, carried out", "bg", 7, true, "written");
    row("not sent", "n", 0, false, "not written (no answer); nothing was sent");
    row("a part not sent", "gn", 0, false, "not written (no answer); nothing was sent");
    row("refused, then silence", "rs", 7, true,
        "not confirmed (no answer); it holds 7 0x0007, 7 0x0007");
}

void TestWriteJob::tellsTheOutcome()
{
    QFETCH(QByteArray, writes);
    QFETCH(int, holds);
    QFETCH(bool, readable);
    QFETCH(QString, text);
    const auto job = makeJob("D_W:0*2=7"); // two blocks
    QCOMPARE(job->results().first().text(), QLatin1String("1/D_W:0*2=7,7: not settled"));
    play(*job, writes, holds, readable);
    job->conclude();
    QCOMPARE(job->results().first().text(), QLatin1String("1/D_W:0*2=7,7: ") + text);
    const bool written = text == QLatin1String("written");
    QCOMPARE(job->results().first().isWritten(), written);
    QCOMPARE(job->state(), written ? Job::State::Done : Job::State::Failed);
}

void TestWriteJob::readsBackAlways()
{
    const auto job = makeJob("D_W:0=7 D_W:5=8", ReadBack::Always);
    QCOMPARE(play(*job, "gg", 7).join(QLatin1Char(' ')),
             QLatin1String("write 1/D_W:0 write 1/D_W:5 read 1/D_W:0 read 1/D_W:5"));
    QCOMPARE(job->results().at(0).text(), QLatin1String("1/D_W:0=7: written"));
    QCOMPARE(
        job->results().at(1).text(),
        QLatin1String("1/D_W:5=8: not written (the PLC confirmed it and holds something else); "
                      "it holds 7 0x0007"));
    QCOMPARE(job->results().at(1).outcome, WriteOutcome::Mismatch);
}

void TestWriteJob::readsBackNever()
{
    const auto job = makeJob("D_W:0=7", ReadBack::Never);
    QCOMPARE(play(*job, "s", 7), QStringList{QLatin1String("write 1/D_W:0")});
    QCOMPARE(job->results().first().text(),
             QLatin1String("1/D_W:0=7: not confirmed (no answer); what it holds is not known (not "
                           "read again)"));
}

void TestWriteJob::sparesASilentStation()
{
    const auto job = makeJob("2/D_W:0*2=7 D_W:5=8 2/D_W:9=1", ReadBack::Never);
    QCOMPARE(play(*job, "sg", 7).join(QLatin1Char(' ')),
             QLatin1String("write 2/D_W:0 write 1/D_W:5"));
    QCOMPARE(job->results().at(0).outcome, WriteOutcome::NotConfirmed);
    QCOMPARE(job->results().at(1).outcome, WriteOutcome::Written);
    QCOMPARE(job->results().at(2).outcome, WriteOutcome::NotSent);
}

// Whoever shows them as waiting is told once of each, whatever happens to the job.
void TestWriteJob::settlesEveryBlock()
{
    auto job = makeJob("D_W:0=1 D_W:1=2 D_W:2=3 D_W:3=4");
    QStringList settled;
    connect(job.get(), &WriteJob::blockSettled, this,
            [&settled](const Item &item, const QVector<quint16> &, Confirmation confirmation) {
                const bool given = confirmation == Confirmation::Given;
                settled.append(item.text() + QLatin1String(given ? "+" : "-"));
            });
    QVERIFY(job->goesFirst());
    job->ended(*job->next(), BlockResult());
    BlockResult refused;
    refused.failure.kind = Failure::Refused;
    job->ended(*job->next(), refused);
    job.reset();
    QCOMPARE(settled.join(QLatin1Char(' ')), QLatin1String("1/D_W:0+ 1/D_W:1- 1/D_W:2- 1/D_W:3-"));
}

void TestWriteJob::givesUp()
{
    const auto job = makeJob("D_W:0=1 D_W:1=2");
    QSignalSpy finished(job.get(), &Job::finished);
    QSignalSpy settled(job.get(), &WriteJob::blockSettled);
    job->ended(*job->next(), BlockResult());
    Failure failure;
    failure.kind = Failure::LineDown;
    job->conclude(failure);
    QCOMPARE(static_cast<int>(finished.size()), 1);
    QCOMPARE(static_cast<int>(settled.size()), 2);
    QCOMPARE(job->state(), Job::State::Failed);
    QCOMPARE(job->failure(), QLatin1String("the line is down"));
    QCOMPARE(job->results().at(0).outcome, WriteOutcome::Written);
    QCOMPARE(job->results().at(1).outcome, WriteOutcome::NotSent);
    QVERIFY(!job->next());
    QVERIFY(!job->outlivesLine());
}

QTEST_APPLESS_MAIN(TestWriteJob)

#include "test_write_job.moc"
