#include "plc/wire/wire.h"

#include "plc/support/wire_text.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const Case<QByteArray, QByteArray> kBlockCheck[] = {
    {"nothing", QByteArray(), "00"},
    {"one byte", wire("[05]"), "05"},
    // 05+30+31+72+53+53+04 = 182
    {"low byte of the sum", wire("[ENQ]01rSS[EOT]"), "82"},
    {"upper-case digits", wire("[AF]"), "AF"},
    {"bytes are unsigned", wire("[FF][FF]"), "FE"},
};

static const struct
{
    const char *what;
    uint value;
    int digits;
    QByteArray text;
} kHex[] = {
    {"filled with zeros", 0xAU, 4, "000A"},
    {"upper case", 0xBEEFU, 4, "BEEF"},
    {"high digits cut", 0x1234U, 2, "34"},
};

static const Case<char, bool> kCaseDecidesOnBlockCheck[] = {
    // clang-format off
    {"r", 'r', true},
    {"w", 'w', true},
    {"R", 'R', false},
    {"W", 'W', false},
    {"no letter", '1', false},
    // clang-format on
};

static const Case<QByteArray, int> kReaderTakesHex[] = {
    // clang-format off
    {"FFFF", "FFFF", 0xFFFF},
    {"either case", "aBcD", 0xABCD},
    {"no sign", "-001", -1},
    {"no blank", " 001", -1},
    {"no 0x", "0x12", -1},
    {"G is no digit", "000G", -1},
    {"too short", "000", -1},
    // clang-format on
};

class TestWire : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blockCheck_data() { addRows(kBlockCheck); }
    void blockCheck()
    {
        const auto &row = currentRow(kBlockCheck);
        QCOMPARE(plc::blockCheck(row.given), row.expected);
    }

    void hex_data() { addRows(kHex); }
    void hex()
    {
        const auto &row = currentRow(kHex);
        QCOMPARE(plc::hex(row.value, row.digits), row.text);
    }

    void caseDecidesOnBlockCheck_data() { addRows(kCaseDecidesOnBlockCheck); }
    void caseDecidesOnBlockCheck()
    {
        const auto &row = currentRow(kCaseDecidesOnBlockCheck);
        QCOMPARE(wantsBlockCheck(row.given), row.expected);
    }

    void readerStaysInside()
    {
        FieldReader reader("0AXY");
        QCOMPARE(reader.take(5).has_value(), false);
        QCOMPARE(reader.take(-1).has_value(), false);
        QCOMPARE(reader.left(), 4);
        QCOMPARE(reader.takeHex(2).value_or(-1), 10);
        QCOMPARE(reader.takeHex(2).has_value(), false);
        QCOMPARE(reader.left(), 2);
        QCOMPARE(reader.take(2).value_or(QByteArray()), QByteArray("XY"));
        QVERIFY(reader.atEnd());
        QCOMPARE(reader.take(1).has_value(), false);
        QCOMPARE(reader.takeHex(1).has_value(), false);
    }

    void readerTakesHex_data() { addRows(kReaderTakesHex); }
    void readerTakesHex()
    {
        const auto &row = currentRow(kReaderTakesHex);
        QCOMPARE(FieldReader(row.given).takeHex(4).value_or(-1), row.expected);
    }
};

QTEST_APPLESS_MAIN(TestWire)
#include "test_wire.moc"
