#include "panel/terminal/sparkline.h"

#include "support/rows.h"

#include <cmath>

using namespace cnet::panel;

namespace {

const double kGap = std::nan("");

const Case<QVector<double>, const char *> kCases[] = {
    {"none", {}, ""},
    {"one", {5}, "_"},
    {"all alike", {5, 5, 5}, "___"},
    {"up", {0, 1, 2, 3, 4, 5, 6, 7}, "_.,-=+*#"},
    {"down to a negative one", {8, 0, -8}, "#=_"},
    {"a gap stays a gap", {0, kGap, kGap, 9}, "_  #"},
    {"gaps only", {kGap, kGap}, "  "},
};

} // namespace

class TestSparkline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void draws_data() { addRows(kCases); }
    void draws();
};

void TestSparkline::draws()
{
    const auto &row = currentRow(kCases);
    QCOMPARE(sparkline(row.given, Glyphs::Ascii), QLatin1String(row.expected));
    QString blocks = sparkline(row.given, Glyphs::Blocks);
    const char levels[] = "_.,-=+*#";
    for (int i = 0; levels[i] != '\0'; ++i) {
        blocks.replace(QChar(static_cast<ushort>(0x2581 + i)), QLatin1Char(levels[i]));
    }
    QCOMPARE(blocks, QLatin1String(row.expected));
}

QTEST_APPLESS_MAIN(TestSparkline)
#include "test_sparkline.moc"
