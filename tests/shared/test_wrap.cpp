#include <climits>

#include <QtTest/QtTest>

#include "shared/wrap.h"
#include "support/rows.h"

static const struct
{
    const char *what;
    int a, b, sum, difference, product;
} kOverflowWrapsRound[] = {
    {"small", 7, 3, 10, 4, 21},
    {"negative", -7, 3, -4, -10, -21},
    {"above the top", INT_MAX, 1, INT_MIN, INT_MAX - 1, INT_MAX},
    {"below the bottom", INT_MIN, -1, INT_MAX, INT_MIN + 1, INT_MIN},
    {"both at the top", INT_MAX, INT_MAX, -2, 0, 1},
    {"product beyond the top", INT_MAX, 4, INT_MIN + 3, INT_MAX - 4, -4},
};

static const Case<double, int> kFractionIsCut[] = {
    // clang-format off
    {"towards zero from above", 2.9, 2},
    {"towards zero from below", -2.9, -2},
    {"top", 2147483647.0, INT_MAX},
    {"bottom", -2147483648.0, INT_MIN},
    {"beyond the top", 1e18, INT_MAX},
    {"beyond the bottom", -1e18, INT_MIN},
    // clang-format on
};

class TestWrap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void overflowWrapsRound_data() { addRows(kOverflowWrapsRound); }
    void overflowWrapsRound()
    {
        const auto &row = currentRow(kOverflowWrapsRound);
        QCOMPARE(wrapAdd(row.a, row.b), row.sum);
        QCOMPARE(wrapSub(row.a, row.b), row.difference);
        QCOMPARE(wrapMul(row.a, row.b), row.product);
    }

    void fractionIsCut_data() { addRows(kFractionIsCut); }
    void fractionIsCut()
    {
        const auto &row = currentRow(kFractionIsCut);
        QCOMPARE(truncToInt(row.given), row.expected);
    }
};

QTEST_APPLESS_MAIN(TestWrap)
#include "test_wrap.moc"
