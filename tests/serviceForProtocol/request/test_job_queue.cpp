#include <QtTest/QtTest>

#include "serviceForProtocol/request/job_queue.h"
#include "support/area_helpers.h"

// A job in short: "M_W:5x2a" is station 1, register, address, count and a letter as its value.
static VARIABLE jobOf(const QByteArray &text)
{
    const int colon = static_cast<int>(text.indexOf(':'));
    const int times = static_cast<int>(text.indexOf('x'));
    const int station = text.at(0) == '/' ? 2 : 1;
    VARIABLE job = makeItem(station, text.mid(station - 1, colon - station + 1).constData(),
                            text.mid(colon + 1, times - colon - 1).toInt(),
                            text.mid(times + 1, 1).toInt(), text.right(1));
    job.opKind = job.data[0];
    return job;
}

static QByteArray textOf(const VARIABLE &job)
{
    return QByteArray(job.stationNo == 2 ? "/" : "") + job.regName.toLatin1() + ':' +
           QByteArray::number(job.startAddr) + 'x' + QByteArray::number(job.count) +
           static_cast<char>(job.data[0]);
}

static QList<VARIABLE> listOf(const QByteArray &texts)
{
    QList<VARIABLE> list;
    const QList<QByteArray> parts = texts.split(' ');
    for (const QByteArray &part : parts) {
        if (!part.isEmpty()) {
            list.append(jobOf(part));
        }
    }
    return list;
}

static QByteArray textsOf(const QList<VARIABLE> &list)
{
    QByteArray texts;
    for (int i = 0; i < list.size(); ++i) {
        texts += (i == 0 ? "" : " ") + textOf(list.at(i));
    }
    return texts;
}

static const struct
{
    const char *what;
    QByteArray jobs, job, after;
} kInsertion[] = {
    {"the first", "", "D:1x1a", "D:1x1a"},
    {"another request goes to the end", "D:1x1a D:2x1b", "D:3x1c", "D:1x1a D:2x1b D:3x1c"},
    {"the head is never replaced", "D:1x1a", "D:1x1z", "D:1x1a D:1x1z"},
    {"one that waits is replaced in its place", "D:1x1a D:2x1b D:3x1c", "D:2x1z",
     "D:1x1a D:2x1z D:3x1c"},
    {"the last one, too", "D:1x1a D:2x1b", "D:2x1z", "D:1x1a D:2x1z"},
    {"the same as the head and behind it: the one behind", "D:1x1a D:1x1b", "D:1x1z",
     "D:1x1a D:1x1z"},
    {"only the newest of two", "D:9x1a D:1x1b D:2x1c D:1x1d D:3x1e", "D:1x1z",
     "D:9x1a D:1x1b D:2x1c D:1x1z D:3x1e"},
    {"another count is another request", "D:9x1a D:1x1b", "D:1x2z", "D:9x1a D:1x1b D:1x2z"},
    {"another register is another request", "D:9x1a D:1x1b", "M:1x1z", "D:9x1a D:1x1b M:1x1z"},
    {"another station is another request", "D:9x1a D:1x1b", "/D:1x1z", "D:9x1a D:1x1b /D:1x1z"},
    {"another address is another request", "D:9x1a D:1x1b", "D:2x1z", "D:9x1a D:1x1b D:2x1z"},
};

static const struct
{
    const char *what;
    int size; // addresses 0 .. size - 1
    int address, sizeAfter, place;
} kFullList[] = {
    {"511 wait: appended", 511, 1000, 512, 511},
    {"512 wait: appended", 512, 1000, 513, 512},
    {"513 wait: the last is replaced", 513, 1000, 513, 512},
    {"513 wait, the same as the head: the last is replaced", 513, 0, 513, 512},
    {"513 wait, one is the same: that one is replaced", 513, 100, 513, 100},
    {"513 wait, the last is the same", 513, 512, 513, 512},
    {"600 wait: entry 512 is replaced", 600, 1000, 600, 512},
    {"600 wait, one beyond is the same", 600, 599, 600, 599},
};

class TestJobQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void insertion_data() { addRows(kInsertion); }
    void insertion()
    {
        const auto &row = currentRow(kInsertion);
        QList<VARIABLE> list = listOf(row.jobs);
        insertJob(list, jobOf(row.job));
        QCOMPARE(textsOf(list), row.after);
    }

    void wholeEntryIsReplaced()
    {
        QList<VARIABLE> list = listOf("D:9x1a D:1x2b");
        VARIABLE job = makeItem(1, "D", 1, 2, "\x11\x22\x33\x44");
        job.opKind = 77;
        job.data[1023] = 0x55;
        insertJob(list, job);
        QCOMPARE(sizeOf(list), 2);
        QCOMPARE(list.at(1).opKind, 77);
        QCOMPARE(hexOf(list.at(1).data, 4), QByteArray("11223344"));
        QCOMPARE(static_cast<int>(list.at(1).data[1023]), 0x55);
    }

    void fullList_data() { addRows(kFullList); }
    void fullList()
    {
        const auto &row = currentRow(kFullList);
        QList<VARIABLE> list;
        for (int i = 0; i < row.size; ++i) {
            list.append(makeItem(1, "D_W", i, 1, "a"));
        }
        insertJob(list, makeItem(1, "D_W", row.address, 1, "z"));
        QCOMPARE(sizeOf(list), row.sizeAfter);
        for (int i = 0; i < row.sizeAfter; ++i) {
            QCOMPARE(list.at(i).startAddr, i == row.place ? row.address : i);
            QCOMPARE(static_cast<char>(list.at(i).data[0]), i == row.place ? 'z' : 'a');
        }
    }
};

QTEST_APPLESS_MAIN(TestJobQueue)
#include "test_job_queue.moc"
