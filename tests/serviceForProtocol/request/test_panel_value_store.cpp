#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/cache/monitor_flags.h"
#include "serviceForProtocol/request/panel_value_store.h"
#include "support/area_helpers.h"

static const unsigned char *dataOf(const QByteArray &bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.constData());
}

// The pending units of letter M: "address=bytes", as many bytes as asked for.
static QString pendingText(int bytes)
{
    QStringList texts;
    for (int unitAddr = 0; unitAddr < 10; ++unitAddr) {
        const _DATA_ &record = unitAt(1, "M", unitAddr);
        if (record.writePending == 1) {
            texts.append(QString::number(unitAddr) + QLatin1Char('=') +
                         latin(hexOf(record.writeValue, bytes).constData()));
        }
    }
    return texts.join(QLatin1String(" "));
}

static const struct
{
    const char *what;
    int unitBits, wordBits, count, bytes;
    const char *pending; // of the bytes 11 22 .. 88, written from unit 4 on
    const char *calls;
} kValuesOfWidths[] = {
    {"32 over words, the high unit first", 32, 16, 4, 2, "4=1122 5=3344 6=5566 7=7788",
     "7 1 M_W 5, 7 1 M_W 4, 7 1 M_W 7, 7 1 M_W 6"},
    {"32 over words, odd word dropped", 32, 16, 3, 2, "4=1122 5=3344", "7 1 M_W 5, 7 1 M_W 4"},
    {"32 over words, too few", 32, 16, 1, 2, "", ""},
    {"32 over bytes", 32, 8, 2, 1, "4=11 5=22 6=33 7=44",
     "7 1 M_B 4, 7 1 M_B 5, 7 1 M_B 6, 7 1 M_B 7"},
    {"32 over bytes, too few", 32, 8, 1, 1, "", ""},
    {"32 whole", 32, 32, 4, 4, "4=11223344 5=55667788", "7 1 M 4, 7 1 M 5"},
    {"16 over bytes", 16, 8, 2, 1, "4=11 5=22 6=33 7=44",
     "7 1 M_B 4, 7 1 M_B 5, 7 1 M_B 6, 7 1 M_B 7"},
    {"16 over words", 16, 16, 2, 2, "4=1122 5=3344", "7 1 M_W 4, 7 1 M_W 5"},
    {"16 over double words: reported as words", 16, 32, 2, 2, "4=1122 5=3344",
     "7 1 M_W 4, 7 1 M_W 5"},
    {"8 over bytes", 8, 8, 2, 1, "4=11 5=22", "7 1 M_B 4, 7 1 M_B 5"},
    {"single bits: the contact itself", 1, 1, 2, 1, "4=11 5=22", "7 1 M 4, 7 1 M 5"},
    {"1 over words without bit name: reported as a word", 1, 16, 2, 1, "4=11 5=22",
     "7 1 M_W 4, 7 1 M_W 5"},
    {"none", 16, 16, 0, 2, "", ""},
    {"negative", 16, 16, -1, 2, "", ""},
    {"most negative", 32, 16, INT_MIN, 2, "", ""},
    {"any other width", 64, 16, 2, 2, "", ""},
};

static const struct
{
    const char *what;
    int wordBits, startAddr;
    QByteArray values;
    const char *pending; // unit 2 holds 0x8000 or 0x80
    const char *calls;
} kBitsOfUnits[] = {
    {"bits of words, across units", 16, 46, QByteArray::fromHex("01000101"), "2=0040 3=0300",
     "7 1 M_bit 46, 7 1 M_W 2, 7 1 M_bit 47, 7 1 M_W 2, 7 1 M_bit 48, 7 1 M_W 3, "
     "7 1 M_bit 49, 7 1 M_W 3"},
    {"bits of words that stay", 16, 46, QByteArray::fromHex("0001"), "2=0080", ""},
    {"only 1 sets a bit", 16, 46, QByteArray::fromHex("0201"), "2=0080", ""},
    {"anything but 1 clears a bit", 16, 47, QByteArray::fromHex("FF"), "2=0000",
     "7 1 M_bit 47, 7 1 M_W 2"},
    {"bits of bytes, across units", 8, 22, QByteArray::fromHex("010001"), "2=4000 3=0100",
     "7 1 M_bit 22, 7 1 M_B 2, 7 1 M_bit 23, 7 1 M_B 2, 7 1 M_bit 24, 7 1 M_B 3"},
    {"bits of 32: nothing", 32, 46, QByteArray::fromHex("01"), "", ""},
    {"no bits", 16, 46, QByteArray(), "", ""},
};

static const struct
{
    const char *what;
    int writePending;
    QByteArray written; // the PLC said 0111, the panel wrote 0222 before
    const char *calls;
} kChangeIsAgainstTheCurrentValue[] = {
    {"nothing pending, as the PLC said", 0, "1101", ""},
    {"nothing pending, as written before", 0, "2202", "7 1 D_W 5"},
    {"pending, as the PLC said", 1, "1101", "7 1 D_W 5"},
    {"pending, as written before", 1, "2202", ""},
    {"only the high byte differs", 0, "1102", "7 1 D_W 5"},
};

static const struct
{
    const char *what;
    int marks;
    int queued;       // writes of this very bit
    QByteArray other; // one more, which differs in this
    int marksAfter;   // of bit 5: 0x400 a write, 0x800 a second one
} kBitMarks[] = {
    {"first write", 0, 1, QByteArray(), 0x400},
    {"first write, none queued", 0, 0, QByteArray(), 0x400},
    {"first write, whatever is queued", 0, 2, QByteArray(), 0x400},
    {"second write, two queued", 0x400, 2, QByteArray(), 0xC00},
    {"second write, one queued", 0x400, 1, QByteArray(), 0x400},
    {"second write, three queued", 0x400, 3, QByteArray(), 0x400},
    {"third write", 0xC00, 2, QByteArray(), 0xC00},
    {"first gone, the second waits", 0x800, 1, QByteArray(), 0xC00},
    {"marks of other bits stay", 0x3, 1, QByteArray(), 0x403},
    {"another station does not count", 0x400, 1, "station", 0x400},
    {"another register does not count", 0x400, 1, "register", 0x400},
    {"another address does not count", 0x400, 1, "address", 0x400},
    {"another count does not count", 0x400, 1, "count", 0x400},
};

static const struct
{
    const char *what;
    const char *regName, *letter;
    int startAddr;
    const char *calls;
    QByteArray current; // of the unit that is watched, as a word
} kRegisters[] = {
    {"word", "D_W", "D", 3, "7 1 D_W 3", "0100"},
    {"bit and its word", "M_bit", "M", 50, "7 1 M_W 3", "0400"},
    {"contact", "TX", "TX", 3, "7 1 TX 3", "0100"},
    {"unknown bit name: a bit of a word", "Q_bit", "Q", 50, "7 1 Q_W 3", "0400"},
    {"unknown name: a byte of a word", "Q_W", "Q", 3, "7 1 Q_W 3", "0100"},
};

static QByteArray seen;

static void writeBit50()
{
    DriverFixture::hook() = nullptr;
    const unsigned char bit = 1;
    write_saveDataToArea(1, latin("M_bit"), 50, 1, &bit);
}

static void writeWord3()
{
    DriverFixture::hook() = nullptr;
    const unsigned char word[2] = {0xF0, 0xF0};
    write_saveDataToArea(1, latin("M_W"), 3, 1, word);
}

static const struct
{
    const char *what;
    const char *regName;
    int startAddr;
    void (*hook)();
    QByteArray current;
    int marks;
} kWhatTheHostWritesMeanwhileIsOverwritten[] = {
    {"another bit of the word", "M_bit", 49, &writeBit50, "0200", 0x14},
    {"the word of the bit", "M_bit", 49, &writeWord3, "0200", 0x04},
    {"a bit of the word", "M_W", 3, &writeBit50, "0101", 0x10},
    {"the same word", "M_W", 3, &writeWord3, "0101", 0},
};

class TestPanelValueStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valuesOfWidths_data() { addRows(kValuesOfWidths); }
    void valuesOfWidths()
    {
        const auto &row = currentRow(kValuesOfWidths);
        DriverFixture fixture;
        for (int unitAddr = 0; unitAddr < 10; ++unitAddr) {
            unitAt(1, "M", unitAddr).monitorFlags = 1;
        }
        const QByteArray data = QByteArray::fromHex("1122334455667788");
        storePanelValues(makeWidths(row.unitBits, row.wordBits), 1, latin("M_W"), 4, row.count,
                         dataOf(data));
        QCOMPARE(pendingText(row.bytes), latin(row.pending));
        QCOMPARE(callsText(), latin(row.calls));
        QCOMPARE(hexOf(unitAt(1, "M", 4).readValue, 4), QByteArray("00000000"));
    }

    void bitsOfUnits_data() { addRows(kBitsOfUnits); }
    void bitsOfUnits()
    {
        const auto &row = currentRow(kBitsOfUnits);
        DriverFixture fixture;
        for (int unitAddr = 0; unitAddr < 10; ++unitAddr) {
            _DATA_ &record = unitAt(1, "M", unitAddr);
            record.monitorFlags = 1;
            record.bitMonitorFlags = 0xFFFF;
        }
        setBytes(unitAt(1, "M", 2).readValue, row.wordBits == 8 ? "80" : "0080");
        storePanelValues(makeWidths(1, row.wordBits, true), 1, latin("M_bit"), row.startAddr,
                         sizeOf(row.values), dataOf(row.values));
        QCOMPARE(pendingText(2), latin(row.pending));
        QCOMPARE(callsText(), latin(row.calls));
    }

    void changeIsAgainstTheCurrentValue_data() { addRows(kChangeIsAgainstTheCurrentValue); }
    void changeIsAgainstTheCurrentValue()
    {
        const auto &row = currentRow(kChangeIsAgainstTheCurrentValue);
        DriverFixture fixture;
        _DATA_ &record = unitAt(1, "D", 5);
        record.monitorFlags = 1;
        record.writePending = static_cast<quint8>(row.writePending);
        setBytes(record.readValue, "1101");
        setBytes(record.writeValue, "2202");
        const QByteArray data = QByteArray::fromHex(row.written);
        write_saveDataToArea(1, latin("D_W"), 5, 1, dataOf(data));
        QCOMPARE(callsText(), latin(row.calls));
        QCOMPARE(hexOf(driver.dataArea.at(0).writeValue, 2), row.written);
        QCOMPARE(hexOf(driver.dataArea.at(0).readValue, 2), QByteArray("1101"));
        QCOMPARE(static_cast<int>(driver.dataArea.at(0).writePending), 1);
    }

    void bitMarks_data() { addRows(kBitMarks); }
    void bitMarks()
    {
        const auto &row = currentRow(kBitMarks);
        DriverFixture fixture;
        unitAt(1, "M", 3).pendingBits = row.marks;
        for (int i = 0; i < row.queued; ++i) {
            driver.pendingWrites.append(makeItem(1, "M_bit", 53, 1));
        }
        if (!row.other.isEmpty()) {
            driver.pendingWrites.append(makeItem(
                row.other == "station" ? 2 : 1, row.other == "register" ? "K_bit" : "M_bit",
                row.other == "address" ? 54 : 53, row.other == "count" ? 2 : 1));
        }
        const unsigned char value = 1;
        write_saveDataToArea(1, latin("M_bit"), 53, 1, &value);
        QCOMPARE(driver.dataArea.at(0).pendingBits, row.marksAfter);
        QVERIFY2(isFree(driver.listMutex), "the list is locked no longer than for the count");
    }

    void registers_data() { addRows(kRegisters); }
    void registers()
    {
        const auto &row = currentRow(kRegisters);
        DriverFixture fixture;
        unitAt(1, row.letter, 3).monitorFlags = 1;
        const unsigned char value[2] = {1, 0};
        write_saveDataToArea(1, latin(row.regName), row.startAddr, 1, value);
        QCOMPARE(callsText(), latin(row.calls));
        QCOMPARE(hexOf(currentBytes(unitAt(1, row.letter, 3)), 2), row.current);
    }

    void hostStillSeesTheOldValue()
    {
        DriverFixture fixture;
        seen.clear();
        DriverFixture::hook() = [] { seen += panelRead("D_W", 5, 1, 2); };
        unitAt(1, "D", 5).monitorFlags = 1;
        setBytes(unitAt(1, "D", 5).readValue, "1101");
        const unsigned char value[2] = {0x22, 0x02};
        write_saveDataToArea(1, latin("D_W"), 5, 1, value);
        QCOMPARE(seen, QByteArray("1101"));
        QCOMPARE(hexOf(currentBytes(unitAt(1, "D", 5)), 2), QByteArray("2202"));
    }

    void sameValueTwiceIsReportedOnce()
    {
        DriverFixture fixture;
        _setDataAreaMonitorFlag(1, latin("D_W"), 5, 1);
        const unsigned char value[2] = {0x22, 0x02};
        write_saveDataToArea(1, latin("D_W"), 5, 1, value);
        write_saveDataToArea(1, latin("D_W"), 5, 1, value);
        QCOMPARE(callsText(), latin("7 1 D_W 5"));
        QCOMPARE(static_cast<int>(unitAt(1, "D", 5).writePending), 1);
    }

    void hostMayEmptyTheAreaMeanwhile()
    {
        DriverFixture fixture;
        DriverFixture::hook() = [] { driver.dataArea.clear(); };
        unitAt(1, "K", 0);
        _setDataAreaMonitorFlag(1, latin("D_W"), 5, 1);
        const unsigned char values[4] = {0x22, 0x02, 0x33, 0x03};
        write_saveDataToArea(1, latin("D_W"), 5, 2, values);
        QCOMPARE(callsText(), latin("7 1 D_W 5"));
        QCOMPARE(sizeOf(driver.dataArea), 2);
        QCOMPARE(hexOf(currentBytes(unitAt(1, "D", 5)), 2), QByteArray("2202"));

        driver.dataArea.clear();
        _setDataAreaMonitorFlag(1, latin("M_bit"), 53, 1);
        const unsigned char bit = 1;
        write_saveDataToArea(1, latin("M_bit"), 53, 1, &bit);
        QCOMPARE(callsText(), latin("7 1 D_W 5, 7 1 M_bit 53"));
        QCOMPARE(hexOf(currentBytes(unitAt(1, "M", 3)), 2), QByteArray("2000"));
        QCOMPARE(unitAt(1, "M", 3).pendingBits, 0x400);
    }

    void whatTheHostWritesMeanwhileIsOverwritten_data()
    {
        addRows(kWhatTheHostWritesMeanwhileIsOverwritten);
    }
    void whatTheHostWritesMeanwhileIsOverwritten()
    {
        const auto &row = currentRow(kWhatTheHostWritesMeanwhileIsOverwritten);
        DriverFixture fixture;
        DriverFixture::hook() = row.hook;
        _setDataAreaMonitorFlag(1, latin("M_W"), 3, 1);
        const unsigned char ones[2] = {1, 1};
        write_saveDataToArea(1, latin(row.regName), row.startAddr, 1, ones);
        QVERIFY(callsText().startsWith(latin("7 1 M_W 3")));
        QCOMPARE(hexOf(currentBytes(unitAt(1, "M", 3)), 2), row.current);
        QCOMPARE(unitAt(1, "M", 3).pendingBits, row.marks);
    }
};

QTEST_APPLESS_MAIN(TestPanelValueStore)
#include "test_panel_value_store.moc"
