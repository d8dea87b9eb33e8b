#include "view/frames/trace/frame_filter.h"

#include "recorded_trace.h"

using namespace cnet;
using namespace cnet::view;

namespace {

// Enough for each test, and few enough for each row to be looked at after each change.
constexpr int kMost = 80;

} // namespace

/** How many rows a trace keeps, and when the table gets them. */
class TestFrameBounds : public QObject, private RecordedTrace
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(kMost); }
    void isBounded();
    void handsOverEarlyWhereManyWait();
    void givesUpTheOldestFirst();
    void holdsTheTable();
    void dropsTheOldestOfAPause();
};

void TestFrameBounds::isBounded()
{
    const int batches = 60;
    const int perBatch = 7;
    for (int batch = 0; batch < batches; ++batch) {
        for (int i = 0; i < perBatch; ++i) {
            exchange(readRequest(), readAnswer());
        }
        m_recorder->flush();
        QVERIFY(m_model->log().exchanges() <= kMost);
    }
    QVERIFY(m_model->log().exchanges() > kMost - 2 * m_model->batch());
    QCOMPARE(m_recorder->total(), batches * perBatch);
    QCOMPARE(m_model->log().end(), 2 * batches * perBatch);
    // An exchange goes as a whole.
    QCOMPARE(row(0).request, m_model->log().first());
    QCOMPARE(row(1).request, row(0).request);
}

void TestFrameBounds::handsOverEarlyWhereManyWait()
{
    for (int turn = 1; turn <= 3; ++turn) {
        for (int i = 0; i < kMost / 4 + 1; ++i) {
            exchange(readRequest(), readAnswer());
        }
        QCoreApplication::processEvents(); // at once, and not a few times a second
        QCOMPARE(m_model->log().end(), qint64(turn) * 2 * (kMost / 4 + 1));
    }
}

void TestFrameBounds::givesUpTheOldestFirst()
{
    QSignalSpy removed(m_model.get(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
    for (int i = 0; i < kMost; ++i) {
        exchange(readRequest(), {}, Outcome::TimedOut);
    }
    m_recorder->flush();
    QCOMPARE(removed.count(), 0);
    FrameFilter filter;
    filter.setFrames(m_model.get());
    FrameQuery query;
    query.station = 1;
    filter.setQuery(query);
    m_recorder->noteLate(1, readAnswer(), 1);
    m_recorder->flush();
    exchange(readRequest(), readAnswer());
    m_recorder->flush();
    QCOMPARE(removed.count(), 1);
    QCOMPARE(inserted.count(), 3);
    QCOMPARE(m_model->rowCount(), 2 * kMost - 2 * m_model->batch() + 3);
    QCOMPARE(filter.rowCount(), m_model->rowCount());
}

void TestFrameBounds::holdsTheTable()
{
    exchange(readRequest(), readAnswer());
    m_recorder->setPaused(true);
    QCOMPARE(m_model->rowCount(), 2);
    QSignalSpy counted(m_recorder.get(), &LineRecorder::counted);
    exchange(readRequest(), readAnswer());
    QTRY_VERIFY_WITH_TIMEOUT(counted.count() > 0, 60000);
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(m_recorder->waiting(), 1);
    QCOMPARE(m_recorder->total(), 2);
    m_recorder->setPaused(false);
    QCOMPARE(m_model->rowCount(), 4);
    QCOMPARE(row(3).request, 2);
}

void TestFrameBounds::dropsTheOldestOfAPause()
{
    exchange(readRequest(), readAnswer());
    m_recorder->setPaused(true);
    const int many = kMost + 30;
    for (int i = 0; i < many; ++i) {
        exchange(readRequest(), i + 1 < many ? readAnswer() : readAnswer("00090009"));
    }
    QVERIFY(m_recorder->waiting() <= kMost);
    QCOMPARE(m_recorder->total(), many + 1);
    QCOMPARE(m_model->rowCount(), 2);
    m_recorder->setPaused(false);
    QCOMPARE(m_model->log().end(), 2 * (many + 1));
    QVERIFY(m_model->log().exchanges() <= kMost);
    QVERIFY(text(m_model->rowCount() - 1, FrameModel::Meaning).contains(QLatin1String("= 9")));
    QCOMPARE(row(0).request, m_model->log().first());
}

QTEST_MAIN(TestFrameBounds)
#include "test_frame_bounds.moc"
