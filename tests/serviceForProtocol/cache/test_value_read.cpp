#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/cache/value_read.h"
#include "support/area_helpers.h"

// Unit n of letter M holds the bytes 1n 2n 3n 4n.
static void fillUnits()
{
    for (int n = 0; n < 10; ++n) {
        _DATA_ &record = unitAt(1, "M", n);
        for (int i = 0; i < 4; ++i) {
            record.readValue[i] = static_cast<unsigned char>(0x10 * (i + 1) + n);
        }
    }
}

static const struct
{
    const char *what;
    int unitBits, wordBits;
    bool bitName;
    int startAddr, count;
    QByteArray hex;
} kLayoutOfWidths[] = {
    {"32 over words, low unit first", 32, 16, false, 2, 4, "1222132314241525"},
    {"32 over words, odd word dropped", 32, 16, false, 2, 3, "12221323"},
    {"32 over words, too few", 32, 16, false, 2, 1, QByteArray()},
    {"32 over bytes", 32, 8, false, 2, 2, "12131415"},
    {"32 over bytes, two values", 32, 8, false, 2, 4, "1213141516171819"},
    {"32 over bytes, too few", 32, 8, false, 2, 1, QByteArray()},
    {"32 whole", 32, 32, false, 2, 4, "1222324213233343"},
    {"32 whole, too few", 32, 32, false, 2, 1, QByteArray()},
    {"16 over bytes", 16, 8, false, 2, 2, "12131415"},
    {"16 over words", 16, 16, false, 2, 2, "12221323"},
    {"16 over anything else", 16, 32, false, 2, 1, "1222"},
    {"16, none", 16, 16, false, 2, 0, QByteArray()},
    {"16, negative", 16, 16, false, 2, -1, QByteArray()},
    {"8", 8, 8, false, 2, 3, "121314"},
    {"1 without bit name", 1, 1, false, 2, 3, "121314"},
    // Unit 2 is 0x2212: bits 1, 4, 9 and 13.
    {"bits of a word", 1, 16, true, 32, 16, "00010000010000000001000000010000"},
    {"bits across words", 1, 16, true, 45, 5, "0100000101"},
    // Units 2 and 3 are 0x12 and 0x13.
    {"bits across bytes", 1, 8, true, 20, 6, "010000000101"},
    {"8 with bit name", 8, 16, true, 41, 1, "01"},
    {"bits of 32: nothing", 1, 32, true, 32, 4, QByteArray()},
    {"other width: nothing", 64, 16, false, 2, 4, QByteArray()},
};

static const struct
{
    const char *what, *regName;
    int startAddr, count;
    QByteArray hex;
} kBitsOfRegisters[] = {
    {"M_bit 27: bit 3 of the high byte of word 1", "M_bit", 27, 1, "01"},
    {"M_bit 19: bit 3 of the low byte of word 1", "M_bit", 19, 1, "00"},
    {"M_W 1", "M_W", 1, 1, "0008"},
    {"TX 4", "TX", 4, 2, "0100"},
    {"the letter of an unknown name, a byte a unit", "M_Q", 1, 1, "00"},
    {"an unknown bit name, a bit of a word", "M_bitQ", 27, 1, "01"},
};

static const struct
{
    const char *what;
    int unitBits, wordBits;
    bool bitName;
    int count, written;
} kNeverMoreThanTheValueArea[] = {
    {"512 words", 16, 16, false, 512, 1024},
    {"513 words", 16, 16, false, 513, 1024},
    {"endless words", 16, 16, false, INT_MAX, 1024},
    {"endless double words of words", 32, 16, false, INT_MAX, 1024},
    {"endless double words of bytes", 32, 8, false, INT_MAX, 1024},
    {"endless whole double words", 32, 32, false, INT_MAX, 1024},
    {"endless contacts", 1, 1, false, INT_MAX, 1024},
    {"endless bits", 1, 16, true, INT_MAX, 1024},
    {"most negative", 16, 16, false, INT_MIN, 0},
};

class TestValueRead : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void layoutOfWidths_data() { addRows(kLayoutOfWidths); }
    void layoutOfWidths()
    {
        const auto &row = currentRow(kLayoutOfWidths);
        DriverFixture fixture;
        fillUnits();
        unsigned char buffer[40];
        std::memset(buffer, 0xEE, sizeof buffer);
        readValues(makeWidths(row.unitBits, row.wordBits, row.bitName), 1, latin("M"),
                   row.startAddr, row.count, buffer);
        QCOMPARE(hexOf(buffer, 40), row.hex + QByteArray(80 - sizeOf(row.hex), 'E'));
    }

    void bitsOfRegisters_data() { addRows(kBitsOfRegisters); }
    void bitsOfRegisters()
    {
        const auto &row = currentRow(kBitsOfRegisters);
        DriverFixture fixture;
        setBytes(unitAt(1, "M", 1).readValue, "0008");
        setBytes(unitAt(1, "TX", 4).readValue, "01");
        QCOMPARE(panelRead(row.regName, row.startAddr, row.count, 4),
                 row.hex + QByteArray(8 - sizeOf(row.hex), 'E'));
    }

    void unknownUnitsReadAsZero()
    {
        DriverFixture fixture;
        QString name = latin("D_W");
        unsigned char buffer[6];
        std::memset(buffer, 0xEE, sizeof buffer);
        QCOMPARE(intf_getData(9, name, 300, 2, buffer), 1);
        QCOMPARE(hexOf(buffer, 6), QByteArray("00000000EEEE"));
        QCOMPARE(sizeOf(driver.dataArea), 2);
        QCOMPARE(driver.dataArea.at(1).stationNo, 9);
        QCOMPARE(driver.dataArea.at(1).regPrefix, latin("D"));
        QCOMPARE(driver.dataArea.at(1).unitAddr, 301);
        QCOMPARE(DriverFixture::calls(), QStringList());
    }

    void pendingWriteShowsAtOnce()
    {
        DriverFixture fixture;
        fillUnits();
        _DATA_ &record = unitAt(1, "M", 3);
        setBytes(record.writeValue, "A1A2A3A4");
        record.writePending = 1;
        QCOMPARE(panelRead("M_W", 2, 3, 6), QByteArray("1222A1A21424"));
        QCOMPARE(panelRead("M_bit", 3 * 16 + 5, 3, 3), QByteArray("010001")); // of 0xA2A1
    }

    void panelWriteShowsBeforeTheAnswer()
    {
        DriverFixture fixture;
        panelWrite("D_W", 5, 1, "\x34\x12");
        QCOMPARE(panelRead("D_W", 5, 1, 2), QByteArray("3412"));
        QCOMPARE(hexOf(unitAt(1, "D", 5).readValue, 2), QByteArray("0000"));
    }

    void neverMoreThanTheValueArea_data() { addRows(kNeverMoreThanTheValueArea); }
    void neverMoreThanTheValueArea()
    {
        const auto &row = currentRow(kNeverMoreThanTheValueArea);
        DriverFixture fixture;
        QByteArray buffer(1100, '\xEE');
        readValues(makeWidths(row.unitBits, row.wordBits, row.bitName), 1, latin("D"), 0, row.count,
                   DriverFixture::bytes(buffer));
        QCOMPARE(buffer, QByteArray(row.written, '\0') + QByteArray(1100 - row.written, '\xEE'));
    }

    void nullBuffer()
    {
        DriverFixture fixture;
        QString name = latin("D_W");
        QCOMPARE(intf_getData(1, name, 0, 1, nullptr), 1);
    }
};

QTEST_APPLESS_MAIN(TestValueRead)
#include "test_value_read.moc"
