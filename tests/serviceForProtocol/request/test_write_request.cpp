#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/request/write_request.h"
#include "support/area_helpers.h"

// Each entry as "start xcount=bytes": its first bytes in hexadecimal.
static QString entriesText(int bytes)
{
    QStringList texts;
    for (const VARIABLE &item : driver.pendingWrites) {
        texts.append(latin("%1 x%2=%3")
                         .arg(QString::number(item.startAddr), QString::number(item.count),
                              latin(hexOf(item.data, bytes).constData())));
    }
    return texts.join(QLatin1String(", "));
}

// 1024 bytes: 00 01 02 ... and again.
static QByteArray countingBytes()
{
    QByteArray bytes;
    for (int i = 0; i < 1024; ++i) {
        bytes.append(static_cast<char>(i & 0xFF));
    }
    return bytes;
}

static const Case<int, int> kBytesOfOneUnit[] = {
    {"bit register", 1, 1},
    {"8", 8, 2},
    {"16", 16, 2},
    {"32", 32, 2},
};

static const struct
{
    const char *what;
    int unitBits, wordBits;
    bool bitName;
    int count;
    const char *entries; // pieces of 4 words or 32 bits, from address 10 on
} kEntriesOfWidths[] = {
    {"16 over words", 16, 16, false, 3, "10 x3=0001020304050000"},
    {"16 over words, a full piece", 16, 16, false, 4, "10 x4=0001020304050607"},
    {"16 over words, pieces", 16, 16, false, 10,
     "10 x4=0001020304050607, 14 x4=08090A0B0C0D0E0F, 18 x2=1011121300000000"},
    {"16 over bytes: two units a word", 16, 8, false, 5,
     "10 x8=0001020304050607, 14 x2=0809000000000000"},
    {"32 over words", 32, 16, false, 2, "10 x2=0001020300000000"},
    {"32 whole: half as many, cut off", 32, 32, false, 3, "10 x1=0001020304050000"},
    {"8 over bytes", 8, 8, false, 2, "10 x4=0001020300000000"},
    {"bits of words count as bits", 1, 16, true, 6, "10 x6=0001020304050000"},
    {"bits of bytes count as bits", 1, 8, true, 2, "10 x2=0001000000000000"},
    {"single bits: an entry each, its own byte first", 1, 1, false, 3,
     "10 x1=0000000000000000, 11 x1=0100000000000000, 12 x1=0200000000000000"},
    {"single bits are not cut in pieces, but one by one", 1, 1, false, 1, "10 x1=0000000000000000"},
    {"16 over no width: the count as it is", 16, 0, false, 2, "10 x2=0001020300000000"},
    {"no units: an entry of none", 16, 16, false, 0, "10 x0=0000000000000000"},
    {"no single bits: none", 1, 1, false, 0, ""},
};

static const struct
{
    const char *what;
    const char *regName;
    int startAddr, count;
    const char *props, *list;
} kEntriesOfRegisters[] = {
    {"300 words in pieces of 120", "D_W", 0, 300, "7#0#0#3#120",
     "1 D_W 0 x120, 1 D_W 120 x120, 1 D_W 240 x60"},
    {"240 words in pieces of 120", "D_W", 5, 240, "7#0#0#3#120", "1 D_W 5 x120, 1 D_W 125 x120"},
    {"a bit keeps its name and its number", "M_bit", 53, 1, "7#0#0#3#60", "1 M_bit 53 x1"},
    {"bits in pieces of eight times the words", "M_bit", 0, 20, "7#0#0#3#1",
     "1 M_bit 0 x8, 1 M_bit 8 x8, 1 M_bit 16 x4"},
    {"contacts one by one", "TX", 7, 3, "7#0#0#3#60", "1 TX 7 x1, 1 TX 8 x1, 1 TX 9 x1"},
    {"contacts beyond a piece", "CX", 0, 9, "7#0#0#3#1",
     "1 CX 0 x1, 1 CX 1 x1, 1 CX 2 x1, 1 CX 3 x1, 1 CX 4 x1, 1 CX 5 x1, 1 CX 6 x1, "
     "1 CX 7 x1, 1 CX 8 x1"},
    {"unknown name: as the spare row says, bits", "Q_W", 3, 10, "7#0#0#3#1",
     "1 Q_W 3 x8, 1 Q_W 11 x2"},
};

static const struct
{
    const char *what;
    const char *regName;
    int count;
    bool taken;
} kSizeLimits[] = {
    {"512 words", "D_W", 512, true},
    {"513 words", "D_W", 513, false},
    {"1024 bits", "M_bit", 1024, true},
    {"1025 bits", "M_bit", 1025, false},
    {"1025 contacts", "TX", 1025, false},
    {"negative words", "D_W", -1, false},
    {"negative bits", "M_bit", -1, false},
    {"most words", "D_W", INT_MAX, false},
    {"most negative", "D_W", INT_MIN, false},
    {"a count whose bytes wrap round", "D_W", 0x40000001, false},
};

static const struct
{
    const char *what;
    const char *regName, *props;
    int entries;
} kNoPieceNoEntry[] = {
    {"words, no limit", "D_W", "7#0#0#3#0", 0},
    {"bits, no limit", "M_bit", "7#0#0#3#0", 0},
    {"contacts are not cut", "TX", "7#0#0#3#0", 1},
    {"words, negative", "D_W", "7#0#0#3#-1", 0},
    {"contacts, negative", "TX", "7#0#0#3#-1", 1},
    {"words, most negative", "D_W", "7#0#0#3#-2147483648", 0},
    {"words, one", "D_W", "7#0#0#3#1", 1},
};

// Larger than a request: the cache is not bound by the area that a request has for its values.
static const struct
{
    const char *what;
    const char *regName;
    int count;
    int bytes; // that the host hands over
    int units; // that are stored
} kCacheOnlyTakesAnyLength[] = {
    {"600 words", "D_W", 600, 1200, 600},
    {"1025 bits", "M_bit", 1025, 1025, 65},
    {"1025 contacts", "TX", 1025, 1025, 1025},
    {"as many words as have a number", "D_W", 100000, 200000, 100000},
    {"one more: nothing", "D_W", 100001, 0, 0},
    {"more bits than words", "M_bit", 100001, 100001, 6251},
    {"one contact more than that: nothing", "TX", 100001, 0, 0},
    {"one more bit: nothing", "M_bit", 1600001, 0, 0},
    {"most words", "D_W", INT_MAX, 0, 0},
    {"negative", "D_W", -1, 0, 0},
    {"most negative", "D_W", INT_MIN, 0, 0},
};

static QByteArray hostsValues;
static QString hostsName;

static const struct
{
    const char *what;
    const char *props;
    int words;
} kHostMayChangeItsValues[] = {
    {"a request", "7#0#0#3#60", 512},
    {"longer than a request", "7#1#0#3#60", 600},
};

class TestWriteRequest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bytesOfOneUnit_data() { addRows(kBytesOfOneUnit); }
    void bytesOfOneUnit()
    {
        const auto &row = currentRow(kBytesOfOneUnit);
        QCOMPARE(static_cast<int>(panelBytesPerUnit(makeWidths(row.given, 16))), row.expected);
        QCOMPARE(static_cast<int>(panelBytesPerUnit(makeWidths(row.given, 8, true))), row.expected);
    }

    void entriesOfWidths_data() { addRows(kEntriesOfWidths); }
    void entriesOfWidths()
    {
        const auto &row = currentRow(kEntriesOfWidths);
        DriverFixture fixture("7#0#0#3#4");
        QByteArray data = countingBytes();
        queueWrite(makeWidths(row.unitBits, row.wordBits, row.bitName), 1, latin("M_W"), 10,
                   row.count, DriverFixture::bytes(data), 0);
        QCOMPARE(entriesText(8), latin(row.entries));
    }

    void entriesOfRegisters_data() { addRows(kEntriesOfRegisters); }
    void entriesOfRegisters()
    {
        const auto &row = currentRow(kEntriesOfRegisters);
        DriverFixture fixture(row.props);
        QCOMPARE(panelWrite(row.regName, row.startAddr, row.count, countingBytes()), 1);
        QCOMPARE(listText(driver.pendingWrites), latin(row.list));
    }

    void laterBitPiecesComeFromTwiceAsFar()
    {
        DriverFixture fixture("7#0#0#3#1"); // pieces of 8 bits
        panelWrite("M_bit", 0, 40, countingBytes());
        QCOMPARE(entriesText(8),
                 latin("0 x8=0001020304050607, 8 x8=1011121314151617, 16 x8=2021222324252627, "
                       "24 x8=0000000000000000, 32 x8=0000000000000000"));
    }

    void valuesBeyondTheAreaAreZero()
    {
        DriverFixture fixture("7#0#0#3#60"); // pieces of 480 bits
        panelWrite("M_bit", 0, 1024, QByteArray(1024, '\x01'));
        QCOMPARE(listText(driver.pendingWrites),
                 latin("1 M_bit 0 x480, 1 M_bit 480 x480, 1 M_bit 960 x64"));
        QCOMPARE(bytesOf(driver.pendingWrites.at(0).data, 1024),
                 QByteArray(480, '\x01') + QByteArray(544, '\0'));
        QCOMPARE(bytesOf(driver.pendingWrites.at(1).data, 1024),
                 QByteArray(64, '\x01') + QByteArray(960, '\0'));
        QCOMPARE(bytesOf(driver.pendingWrites.at(2).data, 1024), QByteArray(1024, '\0'));
    }

    // Sixteen contacts a word: more of them than the area has values for are left out.
    void contactsOfWordsStayInTheArea()
    {
        DriverFixture fixture;
        QByteArray data = countingBytes();
        queueWrite(makeWidths(16, 1), 1, latin("M_W"), 0, 100, DriverFixture::bytes(data), 0);
        QCOMPARE(sizeOf(driver.pendingWrites), 513);
        QCOMPARE(itemText(driver.pendingWrites.last()), latin("1 M_W 1023 x1"));
    }

    void entryCarriesTheRequest()
    {
        DriverFixture fixture;
        QString name = latin("D_W");
        unsigned char value[4] = {0x34, 0x12, 0xCD, 0xAB};
        QCOMPARE(intf_setData(31, name, 100, 2, value, -7), 1);
        QCOMPARE(listText(driver.pendingWrites), latin("31 D_W 100 x2"));
        const VARIABLE &item = driver.pendingWrites.at(0);
        QCOMPARE(item.opKind, -7);
        QCOMPARE(bytesOf(item.data, 1024),
                 QByteArray("\x34\x12\xCD\xAB", 4) + QByteArray(1020, '\0'));
        QCOMPARE(hexOf(currentBytes(unitAt(31, "D", 101)), 2), QByteArray("CDAB"));
        QCOMPARE(name, latin("D_W"));
        QVERIFY(isFree(driver.listMutex));
    }

    void sizeLimits_data() { addRows(kSizeLimits); }
    void sizeLimits()
    {
        const auto &row = currentRow(kSizeLimits);
        DriverFixture fixture;
        QCOMPARE(panelWrite(row.regName, 0, row.count, countingBytes()), 1);
        QCOMPARE(driver.pendingWrites.isEmpty(), !row.taken);
        QCOMPARE(driver.dataArea.isEmpty(), !row.taken);
    }

    void noPieceNoEntry_data() { addRows(kNoPieceNoEntry); }
    void noPieceNoEntry()
    {
        const auto &row = currentRow(kNoPieceNoEntry);
        DriverFixture fixture(row.props);
        QCOMPARE(panelWrite(row.regName, 0, 1, QByteArray("\x01\x00", 2)), 1);
        QCOMPARE(sizeOf(driver.pendingWrites), row.entries);
        QCOMPARE(sizeOf(driver.dataArea), 1);
        QCOMPARE(hexOf(currentBytes(driver.dataArea.at(0)), 2), QByteArray("0100"));
    }

    void cacheOnly()
    {
        DriverFixture fixture("7#1#0#3#60");
        unitAt(1, "D", 5).monitorFlags = 1;
        QCOMPARE(panelWrite("D_W", 5, 1, QByteArray("\x34\x12")), 1);
        QCOMPARE(listText(driver.pendingWrites), QString());
        QCOMPARE(hexOf(currentBytes(unitAt(1, "D", 5)), 2), QByteArray("3412"));
        QCOMPARE(callsText(), latin("7 1 D_W 5"));

        fixture.start("7#-1#0#3#60"); // any number but 0
        panelWrite("D_W", 5, 600, QByteArray(1200, '\x34'));
        QCOMPARE(listText(driver.pendingWrites), QString());
        QCOMPARE(sizeOf(driver.dataArea), 600);
    }

    void noWordsAreAnEntry()
    {
        DriverFixture fixture;
        QCOMPARE(panelWrite("D_W", 5, 0, QByteArray()), 1);
        QCOMPARE(listText(driver.pendingWrites), latin("1 D_W 5 x0"));
        QVERIFY(driver.dataArea.isEmpty());
    }

    void repeatedWrites()
    {
        DriverFixture fixture;
        panelWrite("D_W", 9, 1, QByteArray("\x01\x00", 2));
        panelWrite("D_W", 9, 1, QByteArray("\x02\x00", 2));
        QCOMPARE(entriesText(2), latin("9 x1=0100, 9 x1=0200"));
        panelWrite("D_W", 9, 1, QByteArray("\x03\x00", 2), 5);
        panelWrite("D_W", 8, 1, QByteArray("\x04\x00", 2));
        panelWrite("D_W", 9, 2, QByteArray("\x05\x00\x00\x00", 4));
        panelWrite("D_W", 8, 1, QByteArray("\x06\x00", 2));
        QCOMPARE(entriesText(2), latin("9 x1=0100, 9 x1=0300, 8 x1=0600, 9 x2=0500"));
        QCOMPARE(driver.pendingWrites.at(1).opKind, 5);
    }

    void fullList()
    {
        DriverFixture fixture;
        for (int i = 0; i < 600; ++i) {
            panelWrite("D_W", i, 1, QByteArray("\x01\x00", 2));
        }
        QCOMPARE(sizeOf(driver.pendingWrites), 513);
        QCOMPARE(driver.pendingWrites.at(511).startAddr, 511);
        QCOMPARE(driver.pendingWrites.at(512).startAddr, 599);
        QCOMPARE(sizeOf(driver.dataArea), 600);
    }

    void nullData()
    {
        DriverFixture fixture;
        QString name = latin("D_W");
        QCOMPARE(intf_setData(1, name, 0, 1, nullptr, 0), 1);
        QVERIFY(driver.pendingWrites.isEmpty());
        QVERIFY(driver.dataArea.isEmpty());
    }

    void cacheOnlyTakesAnyLength_data() { addRows(kCacheOnlyTakesAnyLength); }
    void cacheOnlyTakesAnyLength()
    {
        const auto &row = currentRow(kCacheOnlyTakesAnyLength);
        DriverFixture fixture("7#1#0#3#60");
        QCOMPARE(panelWrite(row.regName, 0, row.count, QByteArray(row.bytes, '\x01')), 1);
        QVERIFY(driver.pendingWrites.isEmpty());
        QCOMPARE(sizeOf(driver.dataArea), row.units);
        if (row.units > 0) {
            QCOMPARE(static_cast<int>(currentBytes(driver.dataArea.last())[0]) & 1, 1);
        }
    }

    void hostMayChangeItsValues_data() { addRows(kHostMayChangeItsValues); }
    void hostMayChangeItsValues()
    {
        const auto &row = currentRow(kHostMayChangeItsValues);
        DriverFixture fixture(row.props);
        DriverFixture::hook() = [] { hostsValues.fill('\x55'); };
        unitAt(1, "D", 0).monitorFlags = 1;
        hostsValues = QByteArray(2 * row.words, '\x11');
        QString name = latin("D_W");
        intf_setData(1, name, 0, row.words, DriverFixture::bytes(hostsValues), 0);
        QCOMPARE(callsText(), latin("7 1 D_W 0"));
        QCOMPARE(sizeOf(driver.dataArea), row.words);
        for (int i = 0; i < row.words; ++i) {
            QCOMPARE(hexOf(currentBytes(driver.dataArea.at(i)), 2), QByteArray("1111"));
        }
    }

    void hostMayChangeTheName()
    {
        DriverFixture fixture;
        DriverFixture::hook() = [] { hostsName = latin("K_bit"); };
        hostsName = latin("D_W");
        unitAt(1, "D", 0).monitorFlags = 1;
        unitAt(1, "D", 1).monitorFlags = 1;
        unsigned char value[4] = {1, 0, 2, 0};
        intf_setData(1, hostsName, 0, 2, value, 0);
        QCOMPARE(callsText(), latin("7 1 D_W 0, 7 1 D_W 1"));
        QCOMPARE(hexOf(currentBytes(unitAt(1, "D", 1)), 2), QByteArray("0200"));
        QCOMPARE(listText(driver.pendingWrites), latin("1 D_W 0 x2"));
    }
};

QTEST_APPLESS_MAIN(TestWriteRequest)
#include "test_write_request.moc"
