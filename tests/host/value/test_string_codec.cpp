#include "host/value/string_codec.h"

#include "host/support/test_types.h"
#include "support/rows.h"

using namespace cnet;

class TestStringCodec : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fillsUp_data();
    void fillsUp();
    void readsBlanksAndZeros();
};

namespace {

struct Filled
{
    const char *what; // and the type
    const char *text;
    QVector<quint16> units;
};

const Filled kFilled[] = {
    {"string4", "AB", {0x4241, 0}},
    {"string4 ", "", {0, 0}},
    {"string4 swapped", "ABC", {0x4142, 0x4300}},
    {"string4 spaces", "A", {0x2041, 0x2020}},
    {"string3 swapped spaces", "ABC", {0x4142, 0x4320}},
    {"string3", "ABC", {0x4241, 0x0043}},
};

} // namespace

void TestStringCodec::fillsUp_data()
{
    addRows(kFilled);
}

void TestStringCodec::fillsUp()
{
    const Filled &row = currentRow(kFilled);
    QString error;
    const auto units = encodeString(testType(row.what), QLatin1String(row.text), error);
    QVERIFY2(units.has_value(), qPrintable(error));
    QCOMPARE(*units, row.units);
    QCOMPARE(decodeString(testType(row.what), *units, 0), QLatin1String(row.text));
}

// A memory that was never written is full of zeros, and no text in it either way.
void TestStringCodec::readsBlanksAndZeros()
{
    QCOMPARE(decodeString(testType("string4 spaces"), {0, 0}, 0), QString());
    QCOMPARE(decodeString(testType("string4"), {0x2020, 0x2020}, 0), QLatin1String("    "));
    QCOMPARE(decodeString(testType("string4"), {9, 0x4100, 0x4242}, 1), QString());
}

QTEST_APPLESS_MAIN(TestStringCodec)
#include "test_string_codec.moc"
