#include "plc/servers/chunk_sender.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const Case<int, int> kGivesUpWhenTooMuchWaits[] = {
    {"many bytes", 256, ChunkSender::kMostPending / 256},
    {"many chunks", 0, ChunkSender::kMostChunks},
};

class TestChunkSender : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsAtOnceWhatIsDue()
    {
        QByteArray sent;
        ChunkSender sender([&sent](const QByteArray &bytes) { sent += bytes; }, nullptr);
        QVERIFY(sender.add({{0, "ab"}, {0, "cd"}}));
        QCOMPARE(sent, QByteArray("abcd"));
        QVERIFY(sender.add({}));
        QCOMPARE(sent, QByteArray("abcd"));
    }

    void waitsForWhatIsNot()
    {
        QByteArray sent;
        QElapsedTimer clock;
        qint64 lastMs = 0;
        ChunkSender sender(
            [&](const QByteArray &bytes) {
                sent += bytes;
                lastMs = clock.elapsed();
            },
            nullptr);
        clock.start();
        QVERIFY(sender.add({{0, "a"}, {20, "b"}, {30, "c"}}));
        QCOMPARE(sent, QByteArray("a"));
        QTRY_COMPARE(sent, QByteArray("abc"));
        QVERIFY2(lastMs >= 49, qPrintable(QString::number(lastMs)));
    }

    void laterAnswersFollow()
    {
        // The second request came while the first one's answer waited: it is served only then.
        QByteArray sent;
        QElapsedTimer clock;
        qint64 lastMs = 0;
        ChunkSender sender(
            [&](const QByteArray &bytes) {
                sent += bytes;
                lastMs = clock.elapsed();
            },
            nullptr);
        clock.start();
        QVERIFY(sender.add({{20, "a"}}));
        QVERIFY(sender.add({{30, "b"}}));
        QCOMPARE(sent, QByteArray());
        QTRY_COMPARE(sent, QByteArray("ab"));
        QVERIFY2(lastMs >= 49, qPrintable(QString::number(lastMs)));
    }

    void givesUpWhenTooMuchWaits_data() { addRows(kGivesUpWhenTooMuchWaits); }
    void givesUpWhenTooMuchWaits()
    {
        const auto &row = currentRow(kGivesUpWhenTooMuchWaits);
        QByteArray sent;
        ChunkSender sender([&sent](const QByteArray &bytes) { sent += bytes; }, nullptr);
        const Chunk late{100000, QByteArray(row.given, 'x')};
        int added = 0;
        while (sender.add({late}) && added <= ChunkSender::kMostPending) {
            ++added;
        }
        QCOMPARE(added, row.expected);
        // What waited is forgotten.
        QVERIFY(sender.add({{0, "a"}}));
        QCOMPARE(sent, QByteArray("a"));
    }
};

QTEST_GUILESS_MAIN(TestChunkSender)
#include "test_chunk_sender.moc"
