#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/cache/change_notify.h"
#include "support/area_helpers.h"

static void watch(int unitAddr, int monitorFlags, int bitMonitorFlags)
{
    _DATA_ &record = unitAt(2, "M", unitAddr);
    record.monitorFlags = monitorFlags;
    record.bitMonitorFlags = bitMonitorFlags;
}

// `before` and `after` may be null: nothing is compared then.
static void change(int bytes, const int *before, const int *after, int index, int skipBits)
{
    if (bytes == 1) {
        const unsigned char oldByte = static_cast<unsigned char>(before != nullptr ? *before : 0);
        const unsigned char newByte = static_cast<unsigned char>(after != nullptr ? *after : 0);
        _byteDataChange(before != nullptr ? &oldByte : nullptr,
                        after != nullptr ? &newByte : nullptr, index, skipBits);
    } else if (bytes == 2) {
        _wordDataChange(before, after, index, skipBits);
    } else {
        _dwordDataChange(before, after, index, skipBits);
    }
}

static void changeUnits(int index)
{
    change(1, nullptr, nullptr, index, 0);
    change(2, nullptr, nullptr, index, 0);
    change(4, nullptr, nullptr, index, 0);
    _bitDataChange(index);
}

static const struct
{
    const char *what;
    int bytes, unitAddr, monitorFlags, bitFlags;
    bool compare;
    int before, after, skipBits;
    const char *calls;
} kViewsOfUnit[] = {
    {"word: only the bit that differs, before the word", 2, 3, 1, 0x5, true, 0, 4, 0,
     "7 2 M_bit 50, 7 2 M_W 3"},
    {"word: bits ascend from 0 to 15", 2, 1, 0, 0x8101, true, 0, 0xFFFF, 0,
     "7 2 M_bit 16, 7 2 M_bit 24, 7 2 M_bit 31"},
    {"word: a bit above 15 is none of its bits", 2, 1, 0, 0x10000, false, 0, 0, 0, ""},
    {"word: unwatched bits say nothing", 2, 3, 0, 0x2, true, 0, 4, 0, ""},
    {"word: bits that stay say nothing", 2, 3, 0, 0xFFFF, true, 0x1234, 0x1234, 0, ""},
    {"word: null values report every watched bit", 2, 3, 0, 0x5, false, 0, 0, 0,
     "7 2 M_bit 48, 7 2 M_bit 50"},
    {"word: skipped bits, and nothing else", 2, 3, 0x7, 0x5, true, 0, 5, 1,
     "7 2 M_W 3, 7 2 M_D 3, 7 2 M_D 2"},
    {"word: the unit without a comparison", 2, 3, 1, 0, true, 9, 9, 0, "7 2 M_W 3"},
    {"word: low half", 2, 3, 2, 0, true, 0, 1, 0, "7 2 M_D 3"},
    {"word: high half", 2, 3, 4, 0, true, 0, 1, 0, "7 2 M_D 2"},
    {"word: no double word below address 0", 2, 0, 4, 0, true, 0, 1, 0, ""},
    {"word: flags of four units mean nothing", 2, 3, 0x78, 0, true, 0, 1, 0, ""},
    {"word: unwatched", 2, 3, 0, 0, true, 0, 1, 0, ""},

    {"byte: bits, byte, words, double words", 1, 5, 0x7F, 0x81, true, 0, 0xFF, 0,
     "7 2 M_bit 40, 7 2 M_bit 47, 7 2 M_B 5, 7 2 M_W 5, 7 2 M_W 4, 7 2 M_D 5, "
     "7 2 M_D 4, 7 2 M_D 3, 7 2 M_D 2"},
    {"byte: a bit above 7 is none of its bits", 1, 5, 0, 0x100, false, 0, 0, 0, ""},
    {"byte: null values report every watched bit", 1, 5, 0, 0x21, false, 0, 0, 0,
     "7 2 M_bit 40, 7 2 M_bit 45"},
    {"byte: only the bit that differs", 1, 5, 0, 0xFF, true, 0x0F, 0x1F, 0, "7 2 M_bit 44"},
    {"byte: skipped bits, and nothing else", 1, 5, 1, 0xFF, true, 0, 0xFF, 1, "7 2 M_B 5"},
    {"byte: nothing below address 0", 1, 1, 0x7E, 0, true, 0, 1, 0,
     "7 2 M_W 1, 7 2 M_W 0, 7 2 M_D 1, 7 2 M_D 0"},
    {"byte: second part at address 0", 1, 0, 0x74, 0, true, 0, 1, 0, ""},

    {"double word: bits, then the letter alone", 4, 2, 0x7F, INT_MIN | 1, true, 0, -1, 0,
     "7 2 M_bit 64, 7 2 M_bit 95, 7 2 M 2"},
    {"double word: null values report every watched bit", 4, 2, 0, 0x10, false, 0, 0, 0,
     "7 2 M_bit 68"},
    {"double word: skipped bits, and nothing else", 4, 2, 1, 0x10, true, 0, -1, 2, "7 2 M 2"},
};

static const struct
{
    const char *what;
    int bytes;
    bool nullOld;
    const char *calls;
} kOneNullValueReportsEveryBit[] = {
    {"byte, no new value", 1, false, "7 2 M_bit 8, 7 2 M_bit 10"},
    {"word, no new value", 2, false, "7 2 M_bit 16, 7 2 M_bit 18"},
    {"double word, no new value", 4, false, "7 2 M_bit 32, 7 2 M_bit 34"},
    {"byte, no old value", 1, true, "7 2 M_bit 8, 7 2 M_bit 10"},
    {"word, no old value", 2, true, "7 2 M_bit 16, 7 2 M_bit 18"},
    {"double word, no old value", 4, true, "7 2 M_bit 32, 7 2 M_bit 34"},
};

static const struct
{
    const char *what;
    int monitorFlags, bitFlags;
    const char *calls;
} kContactUnit[] = {
    {"watched", 1, 0, "7 2 M 4"},
    {"unwatched", 0, 0, ""},
    {"only as a unit", 0x7E, 0xFFFF, ""},
};

static const Case<int, const char *> kRoutineOfTheWidth[] = {
    {"byte", 1, "7 2 M_bit 14, 7 2 M_B 1"},
    {"word", 2, "7 2 M_bit 22, 7 2 M_W 1"},
    {"double word", 4, "7 2 M_bit 38, 7 2 M 1"},
};

static const Given<int> kIndexOutsideReportsNothing[] = {
    {"negative", -1},
    {"behind the last", 1},
    {"most negative", INT_MIN},
    {"largest", INT_MAX},
};

static QStringList namesHeard;

static int hearName(QString &name)
{
    namesHeard.append(name);
    return 0;
}

static const Given<ValueChangeCallback> kNameIsRightWhateverTheHostDoes[] = {
    // clang-format off
    {"leaves it", [](int, int, QString &name, int) { return hearName(name); }},
    {"writes into it", [](int, int, QString &name, int) { hearName(name); name[0] = QLatin1Char('?'); return 0; }},
    {"empties it", [](int, int, QString &name, int) { hearName(name); name.clear(); return 0; }},
    // clang-format on
};

static void growArea()
{
    for (int i = 0; i < 100; ++i) {
        unitAt(9, "Z", i + 100 * sizeOf(DriverFixture::calls()));
    }
}

class TestChangeNotify : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void viewsOfUnit_data() { addRows(kViewsOfUnit); }
    void viewsOfUnit()
    {
        const auto &row = currentRow(kViewsOfUnit);
        DriverFixture fixture;
        watch(row.unitAddr, row.monitorFlags, row.bitFlags);
        change(row.bytes, row.compare ? &row.before : nullptr, row.compare ? &row.after : nullptr,
               0, row.skipBits);
        QCOMPARE(callsText(), latin(row.calls));
    }

    void oneNullValueReportsEveryBit_data() { addRows(kOneNullValueReportsEveryBit); }
    void oneNullValueReportsEveryBit()
    {
        const auto &row = currentRow(kOneNullValueReportsEveryBit);
        DriverFixture fixture;
        watch(1, 0, 0x5);
        const int number = 4;
        change(row.bytes, row.nullOld ? nullptr : &number, row.nullOld ? &number : nullptr, 0, 0);
        QCOMPARE(callsText(), latin(row.calls));
    }

    void contactUnit_data() { addRows(kContactUnit); }
    void contactUnit()
    {
        const auto &row = currentRow(kContactUnit);
        DriverFixture fixture;
        watch(4, row.monitorFlags, row.bitFlags);
        _bitDataChange(0);
        QCOMPARE(callsText(), latin(row.calls));
    }

    void routineOfTheWidth_data() { addRows(kRoutineOfTheWidth); }
    void routineOfTheWidth()
    {
        const auto &row = currentRow(kRoutineOfTheWidth);
        DriverFixture fixture;
        watch(1, 1, 0x41);
        notifyUnitChange(row.given, 0x01, 0x41, 0);
        QCOMPARE(callsText(), latin(row.expected));
    }

    void indexOutsideReportsNothing_data() { addRows(kIndexOutsideReportsNothing); }
    void indexOutsideReportsNothing()
    {
        const auto &row = currentRow(kIndexOutsideReportsNothing);
        DriverFixture fixture;
        watch(1, 0x7F, 0xFF);
        changeUnits(row.given);
        QCOMPARE(callsText(), QString());
    }

    void hostMayChangeTheName()
    {
        DriverFixture fixture; // its callback overwrites each name
        const QString name = latin("M_W");
        notifyHost(1, 2, name, 3);
        notifyHost(4, 5, name, 6);
        QCOMPARE(name, latin("M_W"));
        QCOMPARE(callsText(), latin("1 2 M_W 3, 4 5 M_W 6"));
        DriverFixture::calls().clear();
        watch(3, 0x7, 0);
        const int values[] = {0, 1};
        change(2, &values[0], &values[1], 0, 0);
        QCOMPARE(callsText(), latin("7 2 M_W 3, 7 2 M_D 3, 7 2 M_D 2"));
        QCOMPARE(driver.dataArea.at(0).regPrefix, latin("M"));
    }

    void nameIsRightWhateverTheHostDoes_data() { addRows(kNameIsRightWhateverTheHostDoes); }
    void nameIsRightWhateverTheHostDoes()
    {
        const auto &row = currentRow(kNameIsRightWhateverTheHostDoes);
        DriverFixture fixture;
        intf_setAddrValueChangeCallBack(row.given);
        namesHeard.clear();
        watch(3, 0x7, 0x3);
        const int values[] = {0, 3};
        change(2, &values[0], &values[1], 0, 0);
        QCOMPARE(namesHeard.join(latin(" ")), latin("M_bit M_bit M_W M_D M_D"));
    }

    void everyBitOfADoubleWord()
    {
        DriverFixture fixture;
        watch(0, 0, -1);
        const int values[] = {0, -1};
        change(4, &values[0], &values[1], 0, 0);
        QCOMPARE(sizeOf(DriverFixture::calls()), 32);
        QCOMPARE(DriverFixture::calls().last(), latin("7 2 M_bit 31"));
    }

    // One notifier serves a whole answer, the fixture's host changes the name at each call, and
    // letters that no register has stand between those that have one.
    void namesFollowTheUnits()
    {
        DriverFixture fixture;
        const char *const letters[] = {"D", "D", "Q", "D", "Q", "R", "M", "TX"};
        for (int i = 0; i < 8; ++i) {
            unitAt(1, letters[i], i).monitorFlags = 1;
        }
        ChangeNotifier notifier;
        for (int i = 0; i < 8; ++i) {
            notifier.unitChanged(driver.dataArea.at(i), 2, 1);
        }
        QCOMPARE(callsText(), latin("7 1 D_W 0, 7 1 D_W 1, 7 1 Q_W 2, 7 1 D_W 3, 7 1 Q_W 4, "
                                    "7 1 R_W 5, 7 1 M_W 6, 7 1 TX_W 7"));
    }

    void noCallbackNoCall()
    {
        DriverFixture fixture;
        watch(1, 0x7F, 0xFF);
        intf_setAddrValueChangeCallBack(nullptr);
        changeUnits(0);
        notifyHost(1, 2, latin("M_W"), 3);
        QCOMPARE(callsText(), QString());
    }

    void recordMayMoveDuringTheCall()
    {
        DriverFixture fixture;
        DriverFixture::hook() = &growArea;
        watch(5, 0x7F, 0x3);
        change(1, nullptr, nullptr, 0, 0);
        QCOMPARE(callsText(), latin("7 2 M_bit 40, 7 2 M_bit 41, 7 2 M_B 5, 7 2 M_W 5, 7 2 M_W 4, "
                                    "7 2 M_D 5, 7 2 M_D 4, 7 2 M_D 3, 7 2 M_D 2"));
    }
};

QTEST_APPLESS_MAIN(TestChangeNotify)
#include "test_change_notify.moc"
