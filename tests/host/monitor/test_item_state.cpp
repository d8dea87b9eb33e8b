#include <host/monitor/item_state.h>

#include <QtTest>

using namespace cnet;

class TestItemState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsWhatWaits();
    void isAsOldAsItsOldestPart();
    void tellsTheFirstReason();
    void hasWordsForQuality();
    void wallTimeHasItsZone();
};

void TestItemState::showsWhatWaits()
{
    ItemValue cell;
    QVERIFY(!cell.isShown());
    cell.written = 7;
    cell.writes = 1;
    QVERIFY(cell.isShown() && cell.isWaiting());
    QCOMPARE(cell.shown(), quint16(7));
    cell.writes = 0;
    QVERIFY(!cell.isShown());
    cell.known = true;
    QVERIFY(cell.isShown());
    QCOMPARE(cell.shown(), quint16(0));
}

void TestItemState::isAsOldAsItsOldestPart()
{
    ItemState state;
    state.blocks = {{{0, 60}, 300, {}, false}, {{60, 60}, -1, {}, false}};
    QCOMPARE(state.ageMs(500), qint64(ItemState::kNeverRead));
    state.blocks[1].lastReadMs = 200;
    QCOMPARE(state.ageMs(500), 300);
    state.blocks[1].lastReadMs = 400;
    QCOMPARE(state.ageMs(500), 200);
}

void TestItemState::tellsTheFirstReason()
{
    ItemState state;
    state.blocks.resize(3);
    QCOMPARE(state.reason(), QString());
    state.blocks[1].failure.kind = Failure::NoAnswer;
    state.blocks[2].failure.kind = Failure::BadAnswer;
    QCOMPARE(state.reason(), QLatin1String("no answer"));
}

void TestItemState::hasWordsForQuality()
{
    QSet<QString> words;
    for (const auto quality : {Quality::NeverRead, Quality::Good, Quality::Waiting, Quality::Stale,
                               Quality::Refused, Quality::NoAnswer, Quality::LineDown}) {
        words.insert(qualityText(quality));
    }
    QCOMPARE(static_cast<int>(words.size()), 7);
    QCOMPARE(qualityText(Quality::NeverRead), QLatin1String("never read"));
}

void TestItemState::wallTimeHasItsZone()
{
    QVERIFY(wallTime(0).isNull());
    const QDateTime time = wallTime(1700000000123);
    QCOMPARE(time.toMSecsSinceEpoch(), 1700000000123);
    QVERIFY(time.timeSpec() != Qt::LocalTime); // which would be written without it
}

QTEST_APPLESS_MAIN(TestItemState)

#include "test_item_state.moc"
