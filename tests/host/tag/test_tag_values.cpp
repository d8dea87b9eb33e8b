#include "host/tag/tag_values.h"

#include "host/support/test_types.h"
#include "support/rows.h"

using namespace cnet;

class TestTagValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void judges_data();
    void judges();
    void readsEachValueOfARow();
    void showsWhatWaits();
    void waitsForTheDeadband();
};

namespace {

struct Judged
{
    const char *what;
    quint16 unit;
    bool known;
    Quality all;
    Quality own;
};

// 0x12A4 is no number of four decimal digits.
const Judged kJudged[] = {
    {"good", 0x1234, true, Quality::Good, Quality::Good},
    {"a wrong digit", 0x12A4, true, Quality::Good, Quality::Implausible},
    {"a wrong digit on its way", 0x12A4, true, Quality::Waiting, Quality::Implausible},
    {"a wrong digit of old", 0x12A4, true, Quality::Stale, Quality::Stale},
    {"a wrong digit without a line", 0x12A4, true, Quality::LineDown, Quality::LineDown},
    {"never read", 0x1234, false, Quality::Good, Quality::NeverRead},
    {"refused", 0, false, Quality::Refused, Quality::Refused},
};

} // namespace

void TestTagValues::judges_data()
{
    addRows(kJudged);
}

void TestTagValues::judges()
{
    const Judged &row = currentRow(kJudged);
    const auto values = readTag(testTag("D_W:0@bcd4"), {row.unit}, {row.known}, row.all);
    QCOMPARE(static_cast<int>(values.size()), 1);
    QCOMPARE(values.first().quality, row.own);
    QCOMPARE(values.first().units, row.known ? QVector<quint16>{row.unit} : QVector<quint16>());
    QCOMPARE(values.first().value.isKnown(), row.known && row.unit == 0x1234);
}

void TestTagValues::readsEachValueOfARow()
{
    Tag tag = testTag("D_W:0*3@u32*0.1");
    tag.max = 10;
    const auto values =
        readTag(tag, {5, 0, 6, 1, 7, 0}, {true, true, true, true, true, false}, Quality::Good);
    QCOMPARE(static_cast<int>(values.size()), 3);
    QVERIFY(values.at(0).value.value == Scalar(0.5));
    QCOMPARE(values.at(0).quality, Quality::Good);
    QVERIFY(values.at(1).value.value == Scalar(6554.2));
    QCOMPARE(values.at(1).value.fault, ValueFault::AboveMax);
    QCOMPARE(values.at(1).quality, Quality::Implausible);
    QVERIFY(!values.at(2).value.isKnown());
    QCOMPARE(values.at(2).quality, Quality::NeverRead);
}

void TestTagValues::showsWhatWaits()
{
    const Tag tag = testTag("D_W:0*2@i16");
    ItemState state;
    state.item = tag.item;
    state.values.resize(2);
    state.values[0].written = 0xFFFF;
    state.values[0].writes = 1;
    state.quality = Quality::Waiting;
    const auto values = readTag(tag, state);
    QVERIFY(values.at(0).value.value == Scalar(qint64(-1)));
    QCOMPARE(values.at(0).quality, Quality::Waiting);
    QVERIFY(!values.at(1).value.isKnown());
}

void TestTagValues::waitsForTheDeadband()
{
    Tag tag = testTag("D_W:0@i16*0.5");
    const TypedValue before{1.0, ValueFault::None};
    const TypedValue near{1.5, ValueFault::None};
    QVERIFY(isChange(tag, before, near));
    QVERIFY(!isChange(tag, before, before));
    tag.deadband = 0.6;
    QVERIFY(!isChange(tag, before, near));
    QVERIFY(isChange(tag, before, {2.0, ValueFault::None}));
    QVERIFY(isChange(tag, before, {0.0, ValueFault::None}));
    QVERIFY(isChange(tag, before, {1.0, ValueFault::AboveMax}));
    QVERIFY(isChange(tag, TypedValue(), near));
    tag.deadband = 0;
    QVERIFY(!isChange(tag, before, before));
}

QTEST_APPLESS_MAIN(TestTagValues)
#include "test_tag_values.moc"
