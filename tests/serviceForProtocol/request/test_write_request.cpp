#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/request/write_request.h"
#include "support/area_helpers.h"

class TestWriteRequest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bytesOfOneUnit_data();
    void bytesOfOneUnit();
    void entriesOfWidths_data();
    void entriesOfWidths();
    void entriesOfRegisters_data();
    void entriesOfRegisters();
    void laterBitPiecesComeFromTwiceAsFar();
    void valuesBeyondTheAreaAreZero();
    void contactsOfWordsStayInTheArea();
    void entryCarriesTheRequest();
    void sizeLimits_data();
    void sizeLimits();
    void noPieceNoEntry_data();
    void noPieceNoEntry();
    void cacheOnly();
    void cacheOnlyTakesAnyLength_data();
    void cacheOnlyTakesAnyLength();
    void noWordsAreAnEntry();
    void repeatedWrites();
    void fullList();
    void nullData();
    void hostMayChangeTheName();
    void hostMayChangeItsValues_data();
    void hostMayChangeItsValues();
};

// Each entry as "start xcount=bytes": its first bytes in hexadecimal.
static QString entriesText(int bytes)
{
    QStringList texts;
    for (const VARIABLE &item : driver.pendingWrites) {
        texts.append(QString::fromLatin1("%1 x%2=%3")
                         .arg(QString::number(item.startAddr), QString::number(item.count),
                              latin(hexOf(item.data, bytes).constData())));
    }
    return texts.join(QLatin1String(", "));
}

static int write(const char *regName, int startAddr, int count, QByteArray data, int opKind = 0)
{
    QString name = latin(regName);
    return intf_setData(1, name, startAddr, count, DriverFixture::bytes(data), opKind);
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

void TestWriteRequest::bytesOfOneUnit_data()
{
    QTest::addColumn<int>("unitBits");
    QTest::addColumn<int>("bytes");

    QTest::newRow("bit register") << 1 << 1;
    QTest::newRow("8") << 8 << 2;
    QTest::newRow("16") << 16 << 2;
    QTest::newRow("32") << 32 << 2;
}

void TestWriteRequest::bytesOfOneUnit()
{
    QFETCH(int, unitBits);
    QFETCH(int, bytes);

    QCOMPARE(static_cast<int>(panelBytesPerUnit(makeWidths(unitBits, 16))), bytes);
    QCOMPARE(static_cast<int>(panelBytesPerUnit(makeWidths(unitBits, 8, true))), bytes);
}

void TestWriteRequest::entriesOfWidths_data()
{
    QTest::addColumn<int>("unitBits");
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<bool>("bitName");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("entries"); // pieces of 4 words or 32 bits, from address 10 on

    QTest::newRow("16 over words") << 16 << 16 << false << 3 << latin("10 x3=0001020304050000");
    QTest::newRow("16 over words, a full piece")
        << 16 << 16 << false << 4 << latin("10 x4=0001020304050607");
    QTest::newRow("16 over words, pieces")
        << 16 << 16 << false << 10
        << latin("10 x4=0001020304050607, 14 x4=08090A0B0C0D0E0F, 18 x2=1011121300000000");
    QTest::newRow("16 over bytes: two units a word")
        << 16 << 8 << false << 5 << latin("10 x8=0001020304050607, 14 x2=0809000000000000");
    QTest::newRow("32 over words") << 32 << 16 << false << 2 << latin("10 x2=0001020300000000");
    QTest::newRow("32 whole: half as many, cut off")
        << 32 << 32 << false << 3 << latin("10 x1=0001020304050000");
    QTest::newRow("8 over bytes") << 8 << 8 << false << 2 << latin("10 x4=0001020300000000");
    QTest::newRow("bits of words count as bits")
        << 1 << 16 << true << 6 << latin("10 x6=0001020304050000");
    QTest::newRow("bits of bytes count as bits")
        << 1 << 8 << true << 2 << latin("10 x2=0001000000000000");
    QTest::newRow("single bits: an entry each, its own byte first")
        << 1 << 1 << false << 3
        << latin("10 x1=0000000000000000, 11 x1=0100000000000000, 12 x1=0200000000000000");
    QTest::newRow("single bits are not cut in pieces, but one by one")
        << 1 << 1 << false << 1 << latin("10 x1=0000000000000000");
    QTest::newRow("16 over no width: the count as it is")
        << 16 << 0 << false << 2 << latin("10 x2=0001020300000000");
    QTest::newRow("no units: an entry of none")
        << 16 << 16 << false << 0 << latin("10 x0=0000000000000000");
    QTest::newRow("no single bits: none") << 1 << 1 << false << 0 << QString();
}

void TestWriteRequest::entriesOfWidths()
{
    QFETCH(int, unitBits);
    QFETCH(int, wordBits);
    QFETCH(bool, bitName);
    QFETCH(int, count);
    QFETCH(QString, entries);

    DriverFixture fixture("7#0#0#3#4");
    QByteArray data = countingBytes();
    queueWrite(makeWidths(unitBits, wordBits, bitName), 1, latin("M_W"), 10, count,
               DriverFixture::bytes(data), 0);
    QCOMPARE(entriesText(8), entries);
}

void TestWriteRequest::entriesOfRegisters_data()
{
    QTest::addColumn<QByteArray>("regName");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("props");
    QTest::addColumn<QString>("list");

    QTest::newRow("300 words in pieces of 120")
        << QByteArray("D_W") << 0 << 300 << QByteArray("7#0#0#3#120")
        << latin("1 D_W 0 x120, 1 D_W 120 x120, 1 D_W 240 x60");
    QTest::newRow("240 words in pieces of 120")
        << QByteArray("D_W") << 5 << 240 << QByteArray("7#0#0#3#120")
        << latin("1 D_W 5 x120, 1 D_W 125 x120");
    QTest::newRow("a bit keeps its name and its number")
        << QByteArray("M_bit") << 53 << 1 << QByteArray("7#0#0#3#60") << latin("1 M_bit 53 x1");
    QTest::newRow("bits in pieces of eight times the words")
        << QByteArray("M_bit") << 0 << 20 << QByteArray("7#0#0#3#1")
        << latin("1 M_bit 0 x8, 1 M_bit 8 x8, 1 M_bit 16 x4");
    QTest::newRow("contacts one by one") << QByteArray("TX") << 7 << 3 << QByteArray("7#0#0#3#60")
                                         << latin("1 TX 7 x1, 1 TX 8 x1, 1 TX 9 x1");
    QTest::newRow("contacts beyond a piece")
        << QByteArray("CX") << 0 << 9 << QByteArray("7#0#0#3#1")
        << latin("1 CX 0 x1, 1 CX 1 x1, 1 CX 2 x1, 1 CX 3 x1, 1 CX 4 x1, 1 CX 5 x1, 1 CX 6 x1, "
                 "1 CX 7 x1, 1 CX 8 x1");
    QTest::newRow("unknown name: as the spare row says, bits")
        << QByteArray("Q_W") << 3 << 10 << QByteArray("7#0#0#3#1")
        << latin("1 Q_W 3 x8, 1 Q_W 11 x2");
}

void TestWriteRequest::entriesOfRegisters()
{
    QFETCH(QByteArray, regName);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(QByteArray, props);
    QFETCH(QString, list);

    DriverFixture fixture(props.constData());
    QCOMPARE(write(regName.constData(), startAddr, count, countingBytes()), 1);
    QCOMPARE(listText(driver.pendingWrites), list);
}

void TestWriteRequest::laterBitPiecesComeFromTwiceAsFar()
{
    DriverFixture fixture("7#0#0#3#1"); // pieces of 8 bits
    write("M_bit", 0, 40, countingBytes());
    QCOMPARE(entriesText(8),
             latin("0 x8=0001020304050607, 8 x8=1011121314151617, 16 x8=2021222324252627, "
                   "24 x8=0000000000000000, 32 x8=0000000000000000"));
}

void TestWriteRequest::valuesBeyondTheAreaAreZero()
{
    DriverFixture fixture("7#0#0#3#60"); // pieces of 480 bits
    write("M_bit", 0, 1024, QByteArray(1024, '\x01'));
    QCOMPARE(listText(driver.pendingWrites),
             latin("1 M_bit 0 x480, 1 M_bit 480 x480, 1 M_bit 960 x64"));
    QCOMPARE(bytesOf(driver.pendingWrites.at(0).data, 1024),
             QByteArray(480, '\x01') + QByteArray(544, '\0'));
    QCOMPARE(bytesOf(driver.pendingWrites.at(1).data, 1024),
             QByteArray(64, '\x01') + QByteArray(960, '\0'));
    QCOMPARE(bytesOf(driver.pendingWrites.at(2).data, 1024), QByteArray(1024, '\0'));
}

// Sixteen contacts a word: more of them than the area has values for are left out.
void TestWriteRequest::contactsOfWordsStayInTheArea()
{
    DriverFixture fixture;
    QByteArray data = countingBytes();
    queueWrite(makeWidths(16, 1), 1, latin("M_W"), 0, 100, DriverFixture::bytes(data), 0);
    QCOMPARE(sizeOf(driver.pendingWrites), 513);
    QCOMPARE(itemText(driver.pendingWrites.last()), latin("1 M_W 1023 x1"));
}

void TestWriteRequest::entryCarriesTheRequest()
{
    DriverFixture fixture;
    QString name = latin("D_W");
    unsigned char value[4] = {0x34, 0x12, 0xCD, 0xAB};
    QCOMPARE(intf_setData(31, name, 100, 2, value, -7), 1);
    QCOMPARE(listText(driver.pendingWrites), latin("31 D_W 100 x2"));
    const VARIABLE &item = driver.pendingWrites.at(0);
    QCOMPARE(item.opKind, -7);
    QCOMPARE(bytesOf(item.data, 1024), QByteArray("\x34\x12\xCD\xAB", 4) + QByteArray(1020, '\0'));
    QCOMPARE(hexOf(currentBytes(unitAt(31, "D", 101)), 2), QByteArray("CDAB"));
    QCOMPARE(name, latin("D_W"));
    QVERIFY(driver.listMutex.tryLock());
    driver.listMutex.unlock();
}

void TestWriteRequest::sizeLimits_data()
{
    QTest::addColumn<QByteArray>("regName");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("taken");

    QTest::newRow("512 words") << QByteArray("D_W") << 512 << true;
    QTest::newRow("513 words") << QByteArray("D_W") << 513 << false;
    QTest::newRow("1024 bits") << QByteArray("M_bit") << 1024 << true;
    QTest::newRow("1025 bits") << QByteArray("M_bit") << 1025 << false;
    QTest::newRow("1025 contacts") << QByteArray("TX") << 1025 << false;
    QTest::newRow("negative words") << QByteArray("D_W") << -1 << false;
    QTest::newRow("negative bits") << QByteArray("M_bit") << -1 << false;
    QTest::newRow("most words") << QByteArray("D_W") << INT_MAX << false;
    QTest::newRow("most negative") << QByteArray("D_W") << INT_MIN << false;
    QTest::newRow("a count whose bytes wrap round") << QByteArray("D_W") << 0x40000001 << false;
}

void TestWriteRequest::sizeLimits()
{
    QFETCH(QByteArray, regName);
    QFETCH(int, count);
    QFETCH(bool, taken);

    DriverFixture fixture;
    QCOMPARE(write(regName.constData(), 0, count, countingBytes()), 1);
    QCOMPARE(driver.pendingWrites.isEmpty(), !taken);
    QCOMPARE(driver.dataArea.isEmpty(), !taken);
}

void TestWriteRequest::noPieceNoEntry_data()
{
    QTest::addColumn<QByteArray>("regName");
    QTest::addColumn<QByteArray>("props");
    QTest::addColumn<int>("entries");

    QTest::newRow("words, no limit") << QByteArray("D_W") << QByteArray("7#0#0#3#0") << 0;
    QTest::newRow("bits, no limit") << QByteArray("M_bit") << QByteArray("7#0#0#3#0") << 0;
    QTest::newRow("contacts are not cut") << QByteArray("TX") << QByteArray("7#0#0#3#0") << 1;
    QTest::newRow("words, negative") << QByteArray("D_W") << QByteArray("7#0#0#3#-1") << 0;
    QTest::newRow("contacts, negative") << QByteArray("TX") << QByteArray("7#0#0#3#-1") << 1;
    QTest::newRow("words, most negative")
        << QByteArray("D_W") << QByteArray("7#0#0#3#-2147483648") << 0;
    QTest::newRow("words, one") << QByteArray("D_W") << QByteArray("7#0#0#3#1") << 1;
}

void TestWriteRequest::noPieceNoEntry()
{
    QFETCH(QByteArray, regName);
    QFETCH(QByteArray, props);
    QFETCH(int, entries);

    DriverFixture fixture(props.constData());
    QCOMPARE(write(regName.constData(), 0, 1, QByteArray("\x01\x00", 2)), 1);
    QCOMPARE(sizeOf(driver.pendingWrites), entries);
    QCOMPARE(sizeOf(driver.dataArea), 1);
    QCOMPARE(hexOf(currentBytes(driver.dataArea.at(0)), 2), QByteArray("0100"));
}

void TestWriteRequest::cacheOnly()
{
    DriverFixture fixture("7#1#0#3#60");
    unitAt(1, "D", 5).monitorFlags = 1;
    QCOMPARE(write("D_W", 5, 1, QByteArray("\x34\x12")), 1);
    QCOMPARE(listText(driver.pendingWrites), QString());
    QCOMPARE(hexOf(currentBytes(unitAt(1, "D", 5)), 2), QByteArray("3412"));
    QCOMPARE(callsText(), latin("7 1 D_W 5"));

    fixture.start("7#-1#0#3#60"); // any number but 0
    write("D_W", 5, 600, QByteArray(1200, '\x34'));
    QCOMPARE(listText(driver.pendingWrites), QString());
    QCOMPARE(sizeOf(driver.dataArea), 600);
}

void TestWriteRequest::noWordsAreAnEntry()
{
    DriverFixture fixture;
    QCOMPARE(write("D_W", 5, 0, QByteArray()), 1);
    QCOMPARE(listText(driver.pendingWrites), latin("1 D_W 5 x0"));
    QVERIFY(driver.dataArea.isEmpty());
}

void TestWriteRequest::repeatedWrites()
{
    DriverFixture fixture;
    write("D_W", 9, 1, QByteArray("\x01\x00", 2));
    write("D_W", 9, 1, QByteArray("\x02\x00", 2));
    QCOMPARE(entriesText(2), latin("9 x1=0100, 9 x1=0200"));
    write("D_W", 9, 1, QByteArray("\x03\x00", 2), 5);
    write("D_W", 8, 1, QByteArray("\x04\x00", 2));
    write("D_W", 9, 2, QByteArray("\x05\x00\x00\x00", 4));
    write("D_W", 8, 1, QByteArray("\x06\x00", 2));
    QCOMPARE(entriesText(2), latin("9 x1=0100, 9 x1=0300, 8 x1=0600, 9 x2=0500"));
    QCOMPARE(driver.pendingWrites.at(1).opKind, 5);
}

void TestWriteRequest::fullList()
{
    DriverFixture fixture;
    for (int i = 0; i < 600; ++i) {
        write("D_W", i, 1, QByteArray("\x01\x00", 2));
    }
    QCOMPARE(sizeOf(driver.pendingWrites), 513);
    QCOMPARE(driver.pendingWrites.at(511).startAddr, 511);
    QCOMPARE(driver.pendingWrites.at(512).startAddr, 599);
    QCOMPARE(sizeOf(driver.dataArea), 600);
}

void TestWriteRequest::nullData()
{
    DriverFixture fixture;
    QString name = latin("D_W");
    QCOMPARE(intf_setData(1, name, 0, 1, nullptr, 0), 1);
    QVERIFY(driver.pendingWrites.isEmpty());
    QVERIFY(driver.dataArea.isEmpty());
}

// Larger than a request: the cache is not bound by the area that a request has for its values.
void TestWriteRequest::cacheOnlyTakesAnyLength_data()
{
    QTest::addColumn<QByteArray>("regName");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("bytes"); // that the host hands over
    QTest::addColumn<int>("units"); // that are stored

    QTest::newRow("600 words") << QByteArray("D_W") << 600 << 1200 << 600;
    QTest::newRow("1025 bits") << QByteArray("M_bit") << 1025 << 1025 << 65;
    QTest::newRow("1025 contacts") << QByteArray("TX") << 1025 << 1025 << 1025;
    QTest::newRow("as many words as have a number")
        << QByteArray("D_W") << 100000 << 200000 << 100000;
    QTest::newRow("one more: nothing") << QByteArray("D_W") << 100001 << 0 << 0;
    QTest::newRow("more bits than words") << QByteArray("M_bit") << 100001 << 100001 << 6251;
    QTest::newRow("one contact more than that: nothing") << QByteArray("TX") << 100001 << 0 << 0;
    QTest::newRow("one more bit: nothing") << QByteArray("M_bit") << 1600001 << 0 << 0;
    QTest::newRow("most words") << QByteArray("D_W") << INT_MAX << 0 << 0;
    QTest::newRow("negative") << QByteArray("D_W") << -1 << 0 << 0;
    QTest::newRow("most negative") << QByteArray("D_W") << INT_MIN << 0 << 0;
}

void TestWriteRequest::cacheOnlyTakesAnyLength()
{
    QFETCH(QByteArray, regName);
    QFETCH(int, count);
    QFETCH(int, bytes);
    QFETCH(int, units);

    DriverFixture fixture("7#1#0#3#60");
    QCOMPARE(write(regName.constData(), 0, count, QByteArray(bytes, '\x01')), 1);
    QVERIFY(driver.pendingWrites.isEmpty());
    QCOMPARE(sizeOf(driver.dataArea), units);
    if (units > 0) {
        QCOMPARE(static_cast<int>(currentBytes(driver.dataArea.last())[0]) & 1, 1);
    }
}

static QByteArray &hostsValues()
{
    static QByteArray values;
    return values;
}

static void changeHostsValues()
{
    hostsValues().fill('\x55');
}

void TestWriteRequest::hostMayChangeItsValues_data()
{
    QTest::addColumn<QByteArray>("props");
    QTest::addColumn<int>("words");

    QTest::newRow("a request") << QByteArray("7#0#0#3#60") << 512;
    QTest::newRow("longer than a request") << QByteArray("7#1#0#3#60") << 600;
}

void TestWriteRequest::hostMayChangeItsValues()
{
    QFETCH(QByteArray, props);
    QFETCH(int, words);

    DriverFixture fixture(props.constData());
    DriverFixture::hook() = &changeHostsValues;
    unitAt(1, "D", 0).monitorFlags = 1;
    hostsValues() = QByteArray(2 * words, '\x11');
    QString name = latin("D_W");
    intf_setData(1, name, 0, words, DriverFixture::bytes(hostsValues()), 0);
    QCOMPARE(callsText(), latin("7 1 D_W 0"));
    QCOMPARE(sizeOf(driver.dataArea), words);
    for (int i = 0; i < words; ++i) {
        QCOMPARE(hexOf(currentBytes(driver.dataArea.at(i)), 2), QByteArray("1111"));
    }
}

static QString &hostsName()
{
    static QString name;
    return name;
}

static void changeHostsName()
{
    hostsName() = latin("K_bit");
}

void TestWriteRequest::hostMayChangeTheName()
{
    DriverFixture fixture;
    DriverFixture::hook() = &changeHostsName;
    hostsName() = latin("D_W");
    unitAt(1, "D", 0).monitorFlags = 1;
    unitAt(1, "D", 1).monitorFlags = 1;
    unsigned char value[4] = {1, 0, 2, 0};
    intf_setData(1, hostsName(), 0, 2, value, 0);
    QCOMPARE(callsText(), latin("7 1 D_W 0, 7 1 D_W 1"));
    QCOMPARE(hexOf(currentBytes(unitAt(1, "D", 1)), 2), QByteArray("0200"));
    QCOMPARE(listText(driver.pendingWrites), latin("1 D_W 0 x2"));
}

QTEST_APPLESS_MAIN(TestWriteRequest)
#include "test_write_request.moc"
