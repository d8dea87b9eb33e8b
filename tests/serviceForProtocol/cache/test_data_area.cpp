#include <climits>

#include <QtTest/QtTest>

#include "support/area_helpers.h"

static int find(int stationNo, const char *letter, int unitAddr)
{
    return getIndexOfDataArea(stationNo, latin(letter), unitAddr, driver.dataArea);
}

static const struct
{
    const char *what;
    int stationNo;
    const char *letter;
    int unitAddr;
    int index; // the area holds (1, M, 3) and (1, D, 3)
    int size;
} kOneRecordForEachKey[] = {
    // clang-format off
    {"the first", 1, "M", 3, 0, 2},
    {"the second", 1, "D", 3, 1, 2},
    {"another station", 2, "M", 3, 2, 3},
    {"another letter", 1, "K", 3, 2, 3},
    {"another case", 1, "m", 3, 2, 3},
    {"a longer letter", 1, "MX", 3, 2, 3},
    {"another address", 1, "M", 4, 2, 3},
    {"no letter", 1, "", 3, 2, 3},
    {"negative address", 1, "M", -3, 2, 3},
    {"extreme key", INT_MIN, "M", INT_MAX, 2, 3},
    // clang-format on
};

static const struct
{
    const char *what;
    int stationNo;
    const char *regName; // or null: the letter is typed by hand
    const char *letter;
} kCursorFindsWhatTheLookUpFinds[] = {
    {"a letter of the register table", 1, "D_W", nullptr},
    {"the same letter, typed by hand", 1, nullptr, "D"},
    {"another station", 2, "D_W", nullptr},
    {"another letter", 1, "M_W", nullptr},
    {"a letter that no register has", 1, nullptr, "Q"},
    {"no letter", 1, nullptr, nullptr},
};

static const struct
{
    const char *what;
    int unitAddr; // where the cursor starts
    int index, asked, likely;
    int found; // the area holds 10 to 19, then 5 of another station, then 20
} kCursorGuessesFromWhereAUnitWas[] = {
    {"where it was", 10, 0, 10, 0, 0},
    {"behind it", 10, 0, 17, 7, 7},
    {"before it", 17, 7, 11, 1, 1},
    {"it was elsewhere", 10, 3, 10, 3, 0},
    {"others lie between", 19, 9, 20, 10, 15},
    {"the other station's, whose addresses run on", 19, 9, 21, 11, 16},
    {"behind the area", 10, 16, 10, 16, 0},
    {"before the area", 10, -1, 10, -1, 0},
    {"far beyond", 10, INT_MAX, 10, INT_MAX, 0},
    {"a distance that wraps round", INT_MIN, 1, INT_MAX, 0, 16},
    {"an index that wraps round", 10, INT_MAX, 12, INT_MIN + 1, 2},
};

static const Case<int, QByteArray> kCurrentBytesOfRecord[] = {
    {"nothing pending: what the PLC said", 0, "01020304"},
    {"pending: what the panel wrote", 1, "A1A2A3A4"},
    {"only 1 means pending", 2, "01020304"},
};

static const struct
{
    const char *what;
    QByteArray hex;
    int bytes, number;
} kNumberOfUnit[] = {
    {"a byte, and none of what stands behind", "F1020304", 1, 0xF1},
    {"a word, low byte first", "34F20304", 2, 0xF234},
    {"a double word, low byte first", "78563412", 4, 0x12345678},
    {"a double word's highest bit", "00000080", 4, INT_MIN},
};

static const Case<int, QByteArray> kStoringKeepsToTheArea[] = {
    {"none", 0, "EEEEEEEEEE"},
    {"one of four", 1, "78EEEEEEEE"},
    {"two of four", 2, "7856EEEEEE"},
    {"four", 4, "78563412EE"},
    {"never more than four", 5, "78563412EE"},
    {"negative", -1, "EEEEEEEEEE"},
};

class TestDataArea : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newRecordIsEmpty()
    {
        DriverFixture fixture;
        QCOMPARE(find(5, "M", 37), 0);
        QCOMPARE(recordText(driver.dataArea.at(0)), QByteArray("5M37=00000000/00000000/0/0/0/0"));
        QCOMPARE(static_cast<int>(driver.dataArea.at(0).spareFlag), 0);
    }

    void oneRecordForEachKey_data() { addRows(kOneRecordForEachKey); }
    void oneRecordForEachKey()
    {
        const auto &row = currentRow(kOneRecordForEachKey);
        DriverFixture fixture;
        find(1, "M", 3);
        find(1, "D", 3);
        QCOMPARE(find(row.stationNo, row.letter, row.unitAddr), row.index);
        QCOMPARE(find(row.stationNo, row.letter, row.unitAddr), row.index);
        QCOMPARE(sizeOf(driver.dataArea), row.size);
    }

    void recordsKeepTheirIndex()
    {
        DriverFixture fixture;
        // Forwards twice, backwards and in leaps: whatever was asked before, a key leads to its
        // own.
        for (int i = 0; i < 200; ++i) {
            const int indexes[] = {i, i - 50, 149 - i, i * 17 % 50};
            QCOMPARE(find(1, "D", 2 * indexes[i / 50]), indexes[i / 50]);
        }
        QCOMPARE(sizeOf(driver.dataArea), 50);
    }

    void lookUpAfterRestart()
    {
        DriverFixture fixture;
        for (int i = 0; i < 20; ++i) {
            find(1, "D", i);
        }
        fixture.start("7#0#0#3#60");
        QCOMPARE(sizeOf(driver.dataArea), 0);
        QCOMPARE(find(1, "D", 19), 0);
        QCOMPARE(find(1, "D", 18), 1);
        QCOMPARE(find(1, "D", 19), 0);
    }

    void lookUpInAnotherList()
    {
        DriverFixture fixture;
        find(1, "D", 8);
        find(1, "D", 9);
        QList<_DATA_> other;
        QCOMPARE(getIndexOfDataArea(1, latin("D"), 9, other), 0);
        QCOMPARE(sizeOf(other), 1);
        QCOMPARE(sizeOf(driver.dataArea), 2);
        QCOMPARE(find(1, "D", 9), 1);
    }

    void cursorFindsWhatTheLookUpFinds_data() { addRows(kCursorFindsWhatTheLookUpFinds); }
    void cursorFindsWhatTheLookUpFinds()
    {
        const auto &row = currentRow(kCursorFindsWhatTheLookUpFinds);
        const QString letter =
            row.regName != nullptr ? registerLetter(latin(row.regName)) : latin(row.letter);
        DriverFixture fixture;
        for (int i = 0; i < 10; ++i) {
            getIndexOfDataArea(1, registerLetter(latin("D_W")), i, driver.dataArea);
            getIndexOfDataArea(2, registerLetter(latin("D_W")), i, driver.dataArea);
        }
        for (int i = 0; i < 10; ++i) {
            getIndexOfDataArea(row.stationNo, letter, i, driver.dataArea);
        }
        const int size = sizeOf(driver.dataArea);
        UnitCursor cursor(row.stationNo, letter, driver.dataArea);
        const int order[] = {3, 4, 5, 5, 5, 4, 9, 0, 1, 1, 2, 8, 8, 7, 9, 9};
        for (const int unitAddr : order) {
            QCOMPARE(cursor.indexOf(unitAddr),
                     getIndexOfDataArea(row.stationNo, letter, unitAddr, driver.dataArea));
        }
        QCOMPARE(sizeOf(driver.dataArea), size);
    }

    // The record beside the last one has the next address, but it is another register's.
    void cursorPassesOtherRegistersBy()
    {
        DriverFixture fixture;
        QCOMPARE(find(1, "D", 0), 0);
        QCOMPARE(find(1, "M", 1), 1);
        QCOMPARE(find(1, "D", 1), 2);
        QCOMPARE(find(2, "D", 2), 3);
        QCOMPARE(find(1, "D", 2), 4);
        const QString letter = registerLetter(latin("D_W"));
        UnitCursor cursor(1, letter, driver.dataArea);
        QCOMPARE(cursor.indexOf(0), 0);
        QCOMPARE(cursor.indexOf(1), 2);
        QCOMPARE(cursor.indexOf(2), 4);
    }

    void cursorAppendsWhatIsMissing()
    {
        DriverFixture fixture;
        const QString letter = registerLetter(latin("D_W"));
        UnitCursor cursor(1, letter, driver.dataArea);
        QCOMPARE(cursor.indexOf(7), 0);
        QCOMPARE(cursor.indexOf(8), 1);
        QCOMPARE(cursor.indexOf(7), 0);
        QCOMPARE(cursor.indexOf(-1), 2);
        QCOMPARE(sizeOf(driver.dataArea), 3);
        QCOMPARE(driver.dataArea.at(2).unitAddr, -1);
    }

    // What a callback appends between two units of an answer does not stand for the next unit.
    void cursorFollowsAGrowingArea()
    {
        DriverFixture fixture;
        const QString letter = registerLetter(latin("D_W"));
        UnitCursor cursor(1, letter, driver.dataArea);
        QCOMPARE(cursor.indexOf(1), 0);
        QCOMPARE(find(1, "D", 50), 1);
        QCOMPARE(cursor.indexOf(2), 2);
        for (int i = 0; i < 1000; ++i) {
            find(3, "M", i);
        }
        QCOMPARE(cursor.indexOf(3), 1003);
        QCOMPARE(cursor.indexOf(50), 1);
    }

    void cursorGuessesFromWhereAUnitWas_data() { addRows(kCursorGuessesFromWhereAUnitWas); }
    void cursorGuessesFromWhereAUnitWas()
    {
        const auto &row = currentRow(kCursorGuessesFromWhereAUnitWas);
        DriverFixture fixture;
        const QString letter = registerLetter(latin("D_W"));
        for (int i = 0; i < 16; ++i) {
            const bool isOther = i >= 10 && i < 15;
            getIndexOfDataArea(isOther ? 2 : 1, letter, i < 15 ? 10 + i : 20, driver.dataArea);
        }
        UnitCursor cursor(1, letter, driver.dataArea);
        cursor.startAt(row.unitAddr, row.index);
        QCOMPARE(cursor.likelyIndexOf(row.asked), row.likely);
        QCOMPARE(cursor.indexOf(row.asked), row.found);
        QCOMPARE(cursor.likelyIndexOf(row.asked), row.found);
        QCOMPARE(cursor.indexOf(12), 2);
    }

    void currentBytesOfRecord_data() { addRows(kCurrentBytesOfRecord); }
    void currentBytesOfRecord()
    {
        const auto &row = currentRow(kCurrentBytesOfRecord);
        _DATA_ record = _DATA_();
        setBytes(record.readValue, "01020304");
        setBytes(record.writeValue, "A1A2A3A4");
        record.writePending = static_cast<quint8>(row.given);
        QCOMPARE(hexOf(currentBytes(record), 4), row.expected);
    }

    void numberOfUnit_data() { addRows(kNumberOfUnit); }
    void numberOfUnit()
    {
        const auto &row = currentRow(kNumberOfUnit);
        unsigned char value[4];
        setBytes(value, row.hex.constData());
        QCOMPARE(unitNumber(value, row.bytes), row.number);

        unsigned char stored[4] = {0, 0, 0, 0};
        setUnitNumber(stored, row.bytes, row.number);
        QCOMPARE(hexOf(stored, 4).left(2 * row.bytes), row.hex.left(2 * row.bytes));
        QCOMPARE(hexOf(stored, 4).mid(2 * row.bytes), QByteArray(8 - 2 * row.bytes, '0'));
    }

    void storingKeepsToTheArea_data() { addRows(kStoringKeepsToTheArea); }
    void storingKeepsToTheArea()
    {
        const auto &row = currentRow(kStoringKeepsToTheArea);
        unsigned char value[5];
        std::memset(value, 0xEE, sizeof value);
        setUnitNumber(value, row.given, 0x12345678);
        QCOMPARE(hexOf(value, 5), row.expected);
    }
};

QTEST_APPLESS_MAIN(TestDataArea)
#include "test_data_area.moc"
