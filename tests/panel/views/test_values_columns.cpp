#include "panel/watched_items.h"

#include "panel/views/values_columns.h"
#include "support/rows.h"

using namespace cnet;
using namespace cnet::panel;

namespace {

// columns, and what of the list they have room for: of the mark, the address and the value always
const Case<int, const char *> kCases[] = {
    {"20", 20, "decimal"},         {"30", 30, "decimal, quality 10"},
    {"40", 40, "quality 13"},      {"50", 50, "quality 21"},
    {"60", 60, "quality 21, age"}, {"80", 80, "quality 21, age, change"},
};

const Case<int, const char *> kTrends[] = {
    {"40", 40, "quality 13"},
    {"70", 70, "quality 21, age, change"},
    {"80", 80, "quality 21, extremes"},
    {"110", 110, "quality 21, extremes, age, change"},
};

QString text(const ValueColumns &widths)
{
    QStringList parts;
    if (widths.isDecimalOnly) {
        parts += QLatin1String("decimal");
    }
    if (widths.quality > 0) {
        parts += QString::fromLatin1("quality %1").arg(widths.quality);
    }
    const auto add = [&parts](int width, const char *name) {
        parts += width > 0 ? QStringList{QLatin1String(name)} : QStringList();
    };
    add(widths.extremes, "extremes");
    add(widths.age, "age");
    add(widths.change, "change");
    return parts.join(QLatin1String(", "));
}

} // namespace

class TestValuesColumns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cutsTheQualityLast_data() { addRows(kCases); }
    void cutsTheQualityLast();
    void hasRoomForTrends_data() { addRows(kTrends); }
    void hasRoomForTrends();
    void putsSeveralOnALine_data();
    void putsSeveralOnALine();
};

void TestValuesColumns::cutsTheQualityLast()
{
    const auto &row = currentRow(kCases);
    Monitor monitor(60);
    monitor.setItems({testItem("D_W", 100, 4)});
    const ValueColumns widths = valueColumns(monitor, Trend::Hidden, row.given);
    QCOMPARE(text(widths), QLatin1String(row.expected));
    QCOMPARE(widths.address, 11); // "1/D_W:103"
}

void TestValuesColumns::hasRoomForTrends()
{
    const auto &row = currentRow(kTrends);
    Monitor monitor(60);
    monitor.setItems({testItem("D_W", 100, 1)});
    QCOMPARE(text(valueColumns(monitor, Trend::Shown, row.given)), QLatin1String(row.expected));
}

void TestValuesColumns::putsSeveralOnALine_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("words");
    QTest::addColumn<int>("bits");
    QTest::newRow("20") << 20 << 1 << 3;
    QTest::newRow("80") << 80 << 1 << 10;
    QTest::newRow("100") << 100 << 2 << 16;
    QTest::newRow("500") << 500 << 4 << 16;
}

void TestValuesColumns::putsSeveralOnALine()
{
    QFETCH(int, columns);
    Monitor monitor(60);
    const Item words = testItem("D_W", 100, 4);
    const Item bits = testItem("M_bit", 48, 16);
    monitor.setItems({words, bits});
    const ValueColumns widths = valueColumns(monitor, Trend::Hidden, columns);
    QTEST(valuesOfLine(words.reg, widths, Trend::Hidden), "words");
    QTEST(valuesOfLine(bits.reg, widths, Trend::Hidden), "bits");
    QCOMPARE(valuesOfLine(bits.reg, widths, Trend::Shown), 1);
}

QTEST_APPLESS_MAIN(TestValuesColumns)
#include "test_values_columns.moc"
