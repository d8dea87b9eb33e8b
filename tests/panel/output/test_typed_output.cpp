#include "panel/output/typed_output.h"

#include "host/support/test_types.h"

using namespace cnet;
using namespace cnet::panel;

class TestTypedOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void quotesFields();
    void namesEachValueOnce();
    void tellsOutsideTheDeadband_data();
    void tellsOutsideTheDeadband();
    void showsTheWorst();
};

void TestTypedOutput::quotesFields()
{
    QCOMPARE(csvField(QStringLiteral("a b")), QStringLiteral("a b"));
    QCOMPARE(csvField(QStringLiteral("a,b")), QStringLiteral("\"a,b\""));
    QCOMPARE(csvField(QStringLiteral("a\"b")), QStringLiteral("\"a\"\"b\""));
    QCOMPARE(csvField(QStringLiteral("a\nb")), QStringLiteral("\"a\nb\""));
    Tag tag = testTag("D_W:0@enum");
    tag.texts = {{1, QStringLiteral("on, slow")}};
    QCOMPARE(csvValue(tag, {qint64(1), ValueFault::None}), QStringLiteral("\"on, slow\""));
    QCOMPARE(csvValue(tag, TypedValue()), QString());
}

// Both words of a value change, or one; it is one change of the value.
void TestTypedOutput::namesEachValueOnce()
{
    const Tag tag = testTag("D_W:0*3@u32");
    ItemState state;
    state.item = tag.item;
    state.values.resize(6);
    for (ItemValue &value : state.values) {
        value.known = true;
    }
    state.values[5].known = false;
    state.quality = Quality::Good;
    const QVector<ValueChange> changes{
        {4, 0, 1, 7}, {4, 1, 1, 7}, {4, 3, 1, 8}, {4, 4, 1, 8}, {5, 0, 1, 9}};
    int next = 0;
    const auto typed = typedChanges(tag, state, changes, next);
    QCOMPARE(next, 4);
    QCOMPARE(static_cast<int>(typed.size()), 2);
    QCOMPARE(typed.at(0).index, 0);
    QCOMPARE(typed.at(1).index, 1);
    QCOMPARE(typed.at(1).atMs, 8);
}

void TestTypedOutput::tellsOutsideTheDeadband_data()
{
    QTest::addColumn<double>("deadband"); // negative: none
    QTest::addColumn<QVector<int>>("told");
    QTest::newRow("none") << -1.0 << QVector<int>{100, 103, 105, 103, 108, 98};
    QTest::newRow("half") << 0.5 << QVector<int>{100, 105, 98};
    QTest::newRow("zero") << 0.0 << QVector<int>{100, 103, 105, 103, 108, 98};
    QTest::newRow("large") << 100.0 << QVector<int>{100};
}

// It is the last value told that a change is measured by, or slow ones would never be told.
void TestTypedOutput::tellsOutsideTheDeadband()
{
    QFETCH(double, deadband);
    Tag tag = testTag("D_W:0*2@i16*0.1");
    tag.name = QLatin1String("speed");
    tag.deadband = deadband < 0 ? std::nullopt : std::optional<double>(deadband);
    ToldValues values;
    QVector<int> told;
    for (const quint16 word : QVector<quint16>{100, 103, 105, 103, 108, 98}) {
        const auto read = readTag(tag, {7, word}, {true, true}, Quality::Good);
        for (const TypedChange &change : values.toTell(tag, {{1, 0, read.at(1)}})) {
            told.append(qRound(approximately(change.value.value.value) * 10));
        }
    }
    QTEST(told, "told");
    // One that means something else now is told again, one that stays is not.
    const auto last = readTag(tag, {7, 98}, {true, true}, Quality::Good);
    values.forget({tag}, {3});
    QCOMPARE(values.toTell(tag, {{1, 0, last.at(1)}}).size(), deadband < 0 ? 1 : 0);
    values.forget({tag}, {-1});
    QCOMPARE(values.toTell(tag, {{1, 0, last.at(1)}}).size(), 1);
}

void TestTypedOutput::showsTheWorst()
{
    const Tag tag = testTag("D_W:0*2@bcd4");
    const auto good = readTag(tag, {1, 2}, {true, true}, Quality::Good);
    const auto wrong = readTag(tag, {1, 0xA}, {true, true}, Quality::Good);
    const auto old = readTag(tag, {1, 0xA}, {true, true}, Quality::Stale);
    QCOMPARE(wholeQuality(good, Quality::Good), Quality::Good);
    QCOMPARE(wholeQuality(wrong, Quality::Good), Quality::Implausible);
    QCOMPARE(wholeQuality(old, Quality::Stale), Quality::Stale);
    QCOMPARE(firstFault(good), QString());
    QCOMPARE(firstFault(wrong), QStringLiteral("wrong BCD digit"));
}

QTEST_APPLESS_MAIN(TestTypedOutput)
#include "test_typed_output.moc"
