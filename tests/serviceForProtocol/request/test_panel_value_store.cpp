#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/cache/monitor_flags.h"
#include "serviceForProtocol/request/panel_value_store.h"
#include "support/area_helpers.h"

class TestPanelValueStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valuesOfWidths_data();
    void valuesOfWidths();
    void bitsOfUnits_data();
    void bitsOfUnits();
    void changeIsAgainstTheCurrentValue_data();
    void changeIsAgainstTheCurrentValue();
    void bitMarks_data();
    void bitMarks();
    void registers_data();
    void registers();
    void hostStillSeesTheOldValue();
    void sameValueTwiceIsReportedOnce();
    void hostMayEmptyTheAreaMeanwhile();
    void whatTheHostWritesMeanwhileIsOverwritten_data();
    void whatTheHostWritesMeanwhileIsOverwritten();
};

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

void TestPanelValueStore::valuesOfWidths_data()
{
    QTest::addColumn<int>("unitBits");
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QString>("pending"); // of the bytes 11 22 .. 88, written from unit 4 on
    QTest::addColumn<QString>("calls");

    QTest::newRow("32 over words, the high unit first")
        << 32 << 16 << 4 << 2 << latin("4=1122 5=3344 6=5566 7=7788")
        << latin("7 1 M_W 5, 7 1 M_W 4, 7 1 M_W 7, 7 1 M_W 6");
    QTest::newRow("32 over words, odd word dropped")
        << 32 << 16 << 3 << 2 << latin("4=1122 5=3344") << latin("7 1 M_W 5, 7 1 M_W 4");
    QTest::newRow("32 over words, too few") << 32 << 16 << 1 << 2 << QString() << QString();
    QTest::newRow("32 over bytes") << 32 << 8 << 2 << 1 << latin("4=11 5=22 6=33 7=44")
                                   << latin("7 1 M_B 4, 7 1 M_B 5, 7 1 M_B 6, 7 1 M_B 7");
    QTest::newRow("32 over bytes, too few") << 32 << 8 << 1 << 1 << QString() << QString();
    QTest::newRow("32 whole") << 32 << 32 << 4 << 4 << latin("4=11223344 5=55667788")
                              << latin("7 1 M 4, 7 1 M 5");
    QTest::newRow("16 over bytes") << 16 << 8 << 2 << 1 << latin("4=11 5=22 6=33 7=44")
                                   << latin("7 1 M_B 4, 7 1 M_B 5, 7 1 M_B 6, 7 1 M_B 7");
    QTest::newRow("16 over words")
        << 16 << 16 << 2 << 2 << latin("4=1122 5=3344") << latin("7 1 M_W 4, 7 1 M_W 5");
    QTest::newRow("16 over double words: reported as words")
        << 16 << 32 << 2 << 2 << latin("4=1122 5=3344") << latin("7 1 M_W 4, 7 1 M_W 5");
    QTest::newRow("8 over bytes") << 8 << 8 << 2 << 1 << latin("4=11 5=22")
                                  << latin("7 1 M_B 4, 7 1 M_B 5");
    QTest::newRow("single bits: the contact itself")
        << 1 << 1 << 2 << 1 << latin("4=11 5=22") << latin("7 1 M 4, 7 1 M 5");
    QTest::newRow("1 over words without bit name: reported as a word")
        << 1 << 16 << 2 << 1 << latin("4=11 5=22") << latin("7 1 M_W 4, 7 1 M_W 5");
    QTest::newRow("none") << 16 << 16 << 0 << 2 << QString() << QString();
    QTest::newRow("negative") << 16 << 16 << -1 << 2 << QString() << QString();
    QTest::newRow("most negative") << 32 << 16 << INT_MIN << 2 << QString() << QString();
    QTest::newRow("any other width") << 64 << 16 << 2 << 2 << QString() << QString();
}

void TestPanelValueStore::valuesOfWidths()
{
    QFETCH(int, unitBits);
    QFETCH(int, wordBits);
    QFETCH(int, count);
    QFETCH(int, bytes);
    QFETCH(QString, pending);
    QFETCH(QString, calls);

    DriverFixture fixture;
    for (int unitAddr = 0; unitAddr < 10; ++unitAddr) {
        unitAt(1, "M", unitAddr).monitorFlags = 1;
    }
    const QByteArray data = QByteArray::fromHex("1122334455667788");
    storePanelValues(makeWidths(unitBits, wordBits), 1, latin("M_W"), 4, count, dataOf(data));
    QCOMPARE(pendingText(bytes), pending);
    QCOMPARE(callsText(), calls);
    QCOMPARE(hexOf(unitAt(1, "M", 4).readValue, 4), QByteArray("00000000"));
}

void TestPanelValueStore::bitsOfUnits_data()
{
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<QByteArray>("values");
    QTest::addColumn<QString>("pending"); // unit 2 holds 0x8000 or 0x80
    QTest::addColumn<QString>("calls");

    QTest::newRow("bits of words, across units")
        << 16 << 46 << QByteArray::fromHex("01000101") << latin("2=0040 3=0300")
        << latin("7 1 M_bit 46, 7 1 M_W 2, 7 1 M_bit 47, 7 1 M_W 2, 7 1 M_bit 48, 7 1 M_W 3, "
                 "7 1 M_bit 49, 7 1 M_W 3");
    QTest::newRow("bits of words that stay")
        << 16 << 46 << QByteArray::fromHex("0001") << latin("2=0080") << QString();
    QTest::newRow("only 1 sets a bit")
        << 16 << 46 << QByteArray::fromHex("0201") << latin("2=0080") << QString();
    QTest::newRow("anything but 1 clears a bit")
        << 16 << 47 << QByteArray::fromHex("FF") << latin("2=0000")
        << latin("7 1 M_bit 47, 7 1 M_W 2");
    QTest::newRow("bits of bytes, across units")
        << 8 << 22 << QByteArray::fromHex("010001") << latin("2=4000 3=0100")
        << latin("7 1 M_bit 22, 7 1 M_B 2, 7 1 M_bit 23, 7 1 M_B 2, 7 1 M_bit 24, 7 1 M_B 3");
    QTest::newRow("bits of 32: nothing")
        << 32 << 46 << QByteArray::fromHex("01") << QString() << QString();
    QTest::newRow("no bits") << 16 << 46 << QByteArray() << QString() << QString();
}

void TestPanelValueStore::bitsOfUnits()
{
    QFETCH(int, wordBits);
    QFETCH(int, startAddr);
    QFETCH(QByteArray, values);
    QFETCH(QString, pending);
    QFETCH(QString, calls);

    DriverFixture fixture;
    for (int unitAddr = 0; unitAddr < 10; ++unitAddr) {
        _DATA_ &record = unitAt(1, "M", unitAddr);
        record.monitorFlags = 1;
        record.bitMonitorFlags = 0xFFFF;
    }
    setBytes(unitAt(1, "M", 2).readValue, wordBits == 8 ? "80" : "0080");
    storePanelValues(makeWidths(1, wordBits, true), 1, latin("M_bit"), startAddr, sizeOf(values),
                     dataOf(values));
    QCOMPARE(pendingText(2), pending);
    QCOMPARE(callsText(), calls);
}

void TestPanelValueStore::changeIsAgainstTheCurrentValue_data()
{
    QTest::addColumn<int>("writePending");
    QTest::addColumn<QByteArray>("written"); // the PLC said 0111, the panel wrote 0222 before
    QTest::addColumn<QString>("calls");

    QTest::newRow("nothing pending, as the PLC said") << 0 << QByteArray("1101") << QString();
    QTest::newRow("nothing pending, as written before")
        << 0 << QByteArray("2202") << latin("7 1 D_W 5");
    QTest::newRow("pending, as the PLC said") << 1 << QByteArray("1101") << latin("7 1 D_W 5");
    QTest::newRow("pending, as written before") << 1 << QByteArray("2202") << QString();
    QTest::newRow("only the high byte differs") << 0 << QByteArray("1102") << latin("7 1 D_W 5");
}

void TestPanelValueStore::changeIsAgainstTheCurrentValue()
{
    QFETCH(int, writePending);
    QFETCH(QByteArray, written);
    QFETCH(QString, calls);

    DriverFixture fixture;
    _DATA_ &record = unitAt(1, "D", 5);
    record.monitorFlags = 1;
    record.writePending = static_cast<quint8>(writePending);
    setBytes(record.readValue, "1101");
    setBytes(record.writeValue, "2202");
    const QByteArray data = QByteArray::fromHex(written);
    write_saveDataToArea(1, latin("D_W"), 5, 1, dataOf(data));
    QCOMPARE(callsText(), calls);
    QCOMPARE(hexOf(driver.dataArea.at(0).writeValue, 2), written);
    QCOMPARE(hexOf(driver.dataArea.at(0).readValue, 2), QByteArray("1101"));
    QCOMPARE(static_cast<int>(driver.dataArea.at(0).writePending), 1);
}

void TestPanelValueStore::bitMarks_data()
{
    QTest::addColumn<int>("marks");
    QTest::addColumn<int>("queued");       // writes of this very bit
    QTest::addColumn<QByteArray>("other"); // one more, which differs in this
    QTest::addColumn<int>("marksAfter");   // of bit 5: 0x400 a write, 0x800 a second one

    QTest::newRow("first write") << 0 << 1 << QByteArray() << 0x400;
    QTest::newRow("first write, none queued") << 0 << 0 << QByteArray() << 0x400;
    QTest::newRow("first write, whatever is queued") << 0 << 2 << QByteArray() << 0x400;
    QTest::newRow("second write, two queued") << 0x400 << 2 << QByteArray() << 0xC00;
    QTest::newRow("second write, one queued") << 0x400 << 1 << QByteArray() << 0x400;
    QTest::newRow("second write, three queued") << 0x400 << 3 << QByteArray() << 0x400;
    QTest::newRow("third write") << 0xC00 << 2 << QByteArray() << 0xC00;
    QTest::newRow("first gone, the second waits") << 0x800 << 1 << QByteArray() << 0xC00;
    QTest::newRow("marks of other bits stay") << 0x3 << 1 << QByteArray() << 0x403;
    QTest::newRow("another station does not count") << 0x400 << 1 << QByteArray("station") << 0x400;
    QTest::newRow("another register does not count")
        << 0x400 << 1 << QByteArray("register") << 0x400;
    QTest::newRow("another address does not count") << 0x400 << 1 << QByteArray("address") << 0x400;
    QTest::newRow("another count does not count") << 0x400 << 1 << QByteArray("count") << 0x400;
}

void TestPanelValueStore::bitMarks()
{
    QFETCH(int, marks);
    QFETCH(int, queued);
    QFETCH(QByteArray, other);
    QFETCH(int, marksAfter);

    DriverFixture fixture;
    unitAt(1, "M", 3).pendingBits = marks;
    for (int i = 0; i < queued; ++i) {
        driver.pendingWrites.append(makeItem(1, "M_bit", 53, 1));
    }
    if (!other.isEmpty()) {
        driver.pendingWrites.append(
            makeItem(other == "station" ? 2 : 1, other == "register" ? "K_bit" : "M_bit",
                     other == "address" ? 54 : 53, other == "count" ? 2 : 1));
    }
    const unsigned char value = 1;
    write_saveDataToArea(1, latin("M_bit"), 53, 1, &value);
    QCOMPARE(driver.dataArea.at(0).pendingBits, marksAfter);
    QVERIFY2(driver.listMutex.tryLock(), "the list is locked no longer than for the count");
    driver.listMutex.unlock();
}

void TestPanelValueStore::registers_data()
{
    QTest::addColumn<QByteArray>("regName");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<QString>("calls");
    QTest::addColumn<QByteArray>("current"); // of the unit that is watched, as a word

    QTest::newRow("word") << QByteArray("D_W") << 3 << latin("7 1 D_W 3") << QByteArray("0100");
    QTest::newRow("bit and its word")
        << QByteArray("M_bit") << 50 << latin("7 1 M_W 3") << QByteArray("0400");
    QTest::newRow("contact") << QByteArray("TX") << 3 << latin("7 1 TX 3") << QByteArray("0100");
    QTest::newRow("unknown bit name: a bit of a word")
        << QByteArray("Q_bit") << 50 << latin("7 1 Q_W 3") << QByteArray("0400");
    QTest::newRow("unknown name: a byte of a word")
        << QByteArray("Q_W") << 3 << latin("7 1 Q_W 3") << QByteArray("0100");
}

void TestPanelValueStore::registers()
{
    QFETCH(QByteArray, regName);
    QFETCH(int, startAddr);
    QFETCH(QString, calls);
    QFETCH(QByteArray, current);

    DriverFixture fixture;
    const QByteArray letter = regName.left(regName == "TX" ? 2 : 1);
    unitAt(1, letter.constData(), 3).monitorFlags = 1;
    const unsigned char value[2] = {1, 0};
    write_saveDataToArea(1, latin(regName.constData()), startAddr, 1, value);
    QCOMPARE(callsText(), calls);
    QCOMPARE(hexOf(currentBytes(unitAt(1, letter.constData(), 3)), 2), current);
}

static QByteArray &seen()
{
    static QByteArray bytes;
    return bytes;
}

static void readWatchedWord()
{
    unsigned char buffer[2] = {0, 0};
    QString name = latin("D_W");
    intf_getData(1, name, 5, 1, buffer);
    seen() += hexOf(buffer, 2);
}

void TestPanelValueStore::hostStillSeesTheOldValue()
{
    DriverFixture fixture;
    seen().clear();
    DriverFixture::hook() = &readWatchedWord;
    unitAt(1, "D", 5).monitorFlags = 1;
    setBytes(unitAt(1, "D", 5).readValue, "1101");
    const unsigned char value[2] = {0x22, 0x02};
    write_saveDataToArea(1, latin("D_W"), 5, 1, value);
    QCOMPARE(seen(), QByteArray("1101"));
    QCOMPARE(hexOf(currentBytes(unitAt(1, "D", 5)), 2), QByteArray("2202"));
}

void TestPanelValueStore::sameValueTwiceIsReportedOnce()
{
    DriverFixture fixture;
    _setDataAreaMonitorFlag(1, latin("D_W"), 5, 1);
    const unsigned char value[2] = {0x22, 0x02};
    write_saveDataToArea(1, latin("D_W"), 5, 1, value);
    write_saveDataToArea(1, latin("D_W"), 5, 1, value);
    QCOMPARE(callsText(), latin("7 1 D_W 5"));
    QCOMPARE(static_cast<int>(unitAt(1, "D", 5).writePending), 1);
}

static void emptyArea()
{
    driver.dataArea.clear();
}

void TestPanelValueStore::hostMayEmptyTheAreaMeanwhile()
{
    DriverFixture fixture;
    DriverFixture::hook() = &emptyArea;
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

typedef void (*Hook)();
Q_DECLARE_METATYPE(Hook)

void TestPanelValueStore::whatTheHostWritesMeanwhileIsOverwritten_data()
{
    QTest::addColumn<QByteArray>("regName");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<Hook>("hook");
    QTest::addColumn<QByteArray>("current");
    QTest::addColumn<int>("marks");

    QTest::newRow("another bit of the word")
        << QByteArray("M_bit") << 49 << Hook(writeBit50) << QByteArray("0200") << 0x14;
    QTest::newRow("the word of the bit")
        << QByteArray("M_bit") << 49 << Hook(writeWord3) << QByteArray("0200") << 0x04;
    QTest::newRow("a bit of the word")
        << QByteArray("M_W") << 3 << Hook(writeBit50) << QByteArray("0101") << 0x10;
    QTest::newRow("the same word")
        << QByteArray("M_W") << 3 << Hook(writeWord3) << QByteArray("0101") << 0;
}

void TestPanelValueStore::whatTheHostWritesMeanwhileIsOverwritten()
{
    QFETCH(QByteArray, regName);
    QFETCH(int, startAddr);
    QFETCH(Hook, hook);
    QFETCH(QByteArray, current);
    QFETCH(int, marks);

    DriverFixture fixture;
    DriverFixture::hook() = hook;
    _setDataAreaMonitorFlag(1, latin("M_W"), 3, 1);
    const unsigned char ones[2] = {1, 1};
    write_saveDataToArea(1, latin(regName.constData()), startAddr, 1, ones);
    QVERIFY(callsText().startsWith(latin("7 1 M_W 3")));
    QCOMPARE(hexOf(currentBytes(unitAt(1, "M", 3)), 2), current);
    QCOMPARE(unitAt(1, "M", 3).pendingBits, marks);
}

QTEST_APPLESS_MAIN(TestPanelValueStore)
#include "test_panel_value_store.moc"
