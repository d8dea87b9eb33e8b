#include "gateway/store/ledger_fixture.h"
#include "support/full_disk.h"
#include "support/random.h"

#include <QCoreApplication>
#include <QProcess>
#include <QtTest>

#include <cstdio>

using namespace cnet;
using namespace cnet::gateway;

/** A ledger's process is killed, its disk is full: what it said was stored is there. */

namespace {

const char kWriterOption[] = "--write";
const QStringList kSinks{QLatin1String("fast"), QLatin1String("slow")};

/** Stores and confirms until it is killed; says "s NUMBER" behind a commit, "c NUMBER" before a
 * confirmation of the slow sink. */
int writeForEver(const QString &path, int seed)
{
    HandClock clock;
    Ledger ledger(clock);
    if (!ledger.open(path, Database::Durability::Full, LedgerBounds(), kSinks).isNone()) {
        return 1;
    }
    Random random(static_cast<std::uint64_t>(seed));
    for (;;) {
        QVector<LedgerBatch> batches;
        for (int count = random.between(1, 4); count > 0; --count) {
            batches.append(batchOf(1, random.between(10, 9000)));
        }
        if (!ledger.commit(batches).isNone()) {
            return 1;
        }
        const qint64 last = batches.last().number;
        std::printf("s %lld\n", static_cast<long long>(last));
        const qint64 behind = last - random.below(20);
        std::printf("c %lld\n", static_cast<long long>(behind));
        std::fflush(stdout);
        ledger.confirm(kSinks.first(), last);
        ledger.confirm(kSinks.last(), behind);
    }
}

} // namespace

class TestLedgerCuts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void losesNothingWhenKilled()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(QLatin1String("ledger"));
        Random random(11);
        qint64 stored = 0;
        qint64 confirmed = 0;
        for (int cut = 0; cut < 25; ++cut) {
            QProcess writer;
            writer.start(QCoreApplication::applicationFilePath(),
                         {QLatin1String(kWriterOption), path, QString::number(cut)});
            QVERIFY(writer.waitForReadyRead(30000));
            QTest::qWait(random.below(40));
            writer.kill();
            QVERIFY(writer.waitForFinished());
            const QList<QByteArray> lines = writer.readAllStandardOutput().split('\n');
            // The last line may have been cut, too.
            for (int i = 0; i + 1 < lines.size(); ++i) {
                qint64 &highest = lines.at(i).startsWith('s') ? stored : confirmed;
                highest = std::max(highest, lines.at(i).mid(2).toLongLong());
            }
            HandClock clock;
            Ledger ledger(clock);
            QVERIFY(ledger.open(path, Database::Durability::Full, LedgerBounds(), kSinks).isNone());
            QVERIFY(ledger.confirmed(kSinks.last()) <= confirmed);
            const QVector<LedgerBatch> left = ledger.after(confirmed, 1000000);
            qint64 expected = confirmed;
            for (const LedgerBatch &batch : left) {
                QCOMPARE(batch.number, ++expected);
                QVERIFY(batch.body.startsWith("1."));
            }
            QVERIFY2(expected >= stored, qPrintable(QString::number(stored)));
            stored = std::max(stored, expected);
        }
        QVERIFY(stored > 100);
    }

    void goesOnWhenTheDiskHasRoomAgain()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(QLatin1String("ledger"));
        HandClock clock;
        Ledger ledger(clock);
        QVERIFY(ledger.open(path, Database::Durability::Full, LedgerBounds(), kSinks).isNone());
        QVector<LedgerBatch> batches{batchOf(3)};
        QVERIFY(ledger.commit(batches).isNone());
        QVector<LedgerBatch> large{batchOf(5, 5000000), batchOf(6)};
        {
            const FullDisk full(1000000);
            const StoreError failed = ledger.commit(large);
            QCOMPARE(failed.kind, StoreError::Kind::Full);
            QCOMPARE(numbersOf(large), QVector<qint64>({0, 0}));
            QCOMPARE(ledger.state().batches, 1);
            QCOMPARE(numbersOf(ledger.after(0, 9)), QVector<qint64>({1}));
            QVector<LedgerBatch> small{batchOf(4)};
            QVERIFY(ledger.commit(small).isNone());
            QCOMPARE(small.first().number, 2);
        }
        QVERIFY(ledger.commit(large).isNone());
        QCOMPARE(numbersOf(ledger.after(0, 9)), QVector<qint64>({1, 2, 3, 4}));
        QCOMPARE(ledger.state().values, 18);
    }
};

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments.at(1) == QLatin1String(kWriterOption)) {
        return writeForEver(arguments.at(2), arguments.at(3).toInt());
    }
    TestLedgerCuts test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_ledger_cuts.moc"
