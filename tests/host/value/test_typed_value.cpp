#include "host/value/typed_value.h"

#include "support/rows.h"

#include <limits>

using namespace cnet;

class TestTypedValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comparesWithoutRounding_data();
    void comparesWithoutRounding();
    void keepsWholeNumbersSmall();
    void isGoodWithAValueAndNoFault();
};

namespace {

const qint64 kLowest = std::numeric_limits<qint64>::min();
const qint64 kHighest = std::numeric_limits<qint64>::max();
const quint64 kGreatest = std::numeric_limits<quint64>::max();
const qint64 kExact = qint64(1) << 53;
const double kTwo63 = 9223372036854775808.0;
const double kTwo64 = 18446744073709551616.0;

struct Comparison
{
    const char *what;
    Scalar number;
    double bound;
    int sign;
};

const Comparison kComparisons[] = {
    {"below a fraction", qint64(2), 2.5, -1},
    {"above a fraction", qint64(3), 2.5, 1},
    {"equal", qint64(-3), -3.0, 0},
    {"a double below", 2.4, 2.5, -1},
    {"a double above", 2.6, 2.5, 1},
    {"a double equal", 2.5, 2.5, 0},
    {"one above what a double can tell", kExact + 1, 9007199254740992.0, 1},
    {"one below what a double can tell", -kExact - 1, -9007199254740992.0, -1},
    {"large, equal", kExact * 4, 36028797018963968.0, 0},
    {"large, and a small bound", kExact * 4, 7.0, 1},
    {"the highest", kHighest, kTwo63, -1},
    {"the lowest", kLowest, -kTwo63, 0},
    {"the lowest, and less", kLowest, -kTwo64, 1},
    {"above the highest", quint64(1) << 63, kTwo63, 0},
    {"one above it", (quint64(1) << 63) + 1, kTwo63, 1},
    {"the greatest", kGreatest, kTwo64, -1},
    {"the greatest, and a negative bound", kGreatest, -1.0, 1},
};

} // namespace

void TestTypedValue::comparesWithoutRounding_data()
{
    addRows(kComparisons);
}

void TestTypedValue::comparesWithoutRounding()
{
    const Comparison &row = currentRow(kComparisons);
    QCOMPARE(compareNumber(row.number, row.bound), row.sign);
}

void TestTypedValue::keepsWholeNumbersSmall()
{
    QVERIFY(wholeScalar(static_cast<quint64>(kHighest)) == Scalar(kHighest));
    QVERIFY(wholeScalar(static_cast<quint64>(kHighest) + 1) == Scalar(quint64(1) << 63));
}

void TestTypedValue::isGoodWithAValueAndNoFault()
{
    QVERIFY(!TypedValue().isGood());
    QVERIFY((TypedValue{false, ValueFault::None}).isGood());
    QVERIFY(!(TypedValue{qint64(3), ValueFault::BelowMin}).isGood());
    QVERIFY((TypedValue{qint64(3), ValueFault::BelowMin}).isKnown());
}

QTEST_APPLESS_MAIN(TestTypedValue)
#include "test_typed_value.moc"
