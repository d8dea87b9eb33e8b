#include <climits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/write_frame.h"
#include "serviceForProtocol/exchange/answer_decode.h"
#include "serviceForProtocol/exchange/bit_patch.h"
#include "support/area_helpers.h"

class TestBitPatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void patchedWrite_data();
    void patchedWrite();
    void patchedBytes_data();
    void patchedBytes();
    void withoutPairNothingHappens_data();
    void withoutPairNothingHappens();
    void extremesStayInside_data();
    void extremesStayInside();
    void placesBelowZeroAreLeftOut();
    void answerReachesTheWriteThroughTheDecoder();
};

static const int kDataPos = 10;

static QByteArray bits(const char *hex)
{
    return QByteArray::fromHex(hex);
}

void TestBitPatch::patchedWrite_data()
{
    QTest::addColumn<QByteArray>("regName");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<QByteArray>("values"); // one byte a bit
    QTest::addColumn<int>("unitCount");
    QTest::addColumn<QByteArray>("data"); // of the answer
    QTest::addColumn<QByteArray>("write");

    QTest::newRow("bit 5 set: nibble 1, bit 1")
        << QByteArray("D_bit") << 53 << bits("01") << 1 << QByteArray("1204")
        << requestBytes("01wSB08%DW00003011224", "BB");
    QTest::newRow("bit 5 cleared")
        << QByteArray("D_bit") << 53 << bits("00") << 1 << QByteArray("1234")
        << requestBytes("01wSB08%DW00003011214", "BA");
    QTest::newRow("a character behind the digits counts on from 9")
        << QByteArray("D_bit") << 53 << bits("01") << 1 << QByteArray("12?4")
        << requestBytes("01wSB08%DW000030112F4", "CF");
    QTest::newRow("a bit that is set already")
        << QByteArray("D_bit") << 2 << bits("01") << 1 << QByteArray("1234")
        << requestBytes("01wSB08%DW00000011234", "B9");
    QTest::newRow("any byte but 0 sets")
        << QByteArray("D_bit") << 0 << bits("80") << 1 << QByteArray("0000")
        << requestBytes("01wSB08%DW00000010001", "B0");
    QTest::newRow("several bits across nibbles, one cleared")
        << QByteArray("M_bit") << 35 << bits("01000101") << 1 << QByteArray("FFFF")
        << requestBytes("01wSB08%MW0000201FFEF", "11");
    QTest::newRow("several bits across nibbles, three set")
        << QByteArray("M_bit") << 35 << bits("01000101") << 1 << QByteArray("0000")
        << requestBytes("01wSB08%MW00002010068", "C8");
    QTest::newRow("a whole word but its highest bit")
        << QByteArray("M_bit") << 16 << bits("01010101010101010101010101010100") << 1
        << QByteArray("8000") << requestBytes("01wSB08%MW00001017FFF", "02");
    QTest::newRow("bits that reach over the word are left out")
        << QByteArray("M_bit") << 15 << bits("0101") << 1 << QByteArray("0000")
        << requestBytes("01wSB08%MW00000018000", "C0");
    QTest::newRow("two words: the steps overlap")
        << QByteArray("M_bit") << 16 << bits("010101010101010101") << 2 << QByteArray("12345678")
        << requestBytes("01wSB08%MW000010257FFon00", "2F");
    QTest::newRow("a character between the digits and the letters is its place")
        << QByteArray("D_bit") << 0 << bits("00") << 1 << QByteArray("000:")
        << requestBytes("01wSB08%DW0000001000A", "C0");
    QTest::newRow("a character beyond F stays what it is; below 0 and @ are 0")
        << QByteArray("D_bit") << 0 << bits("00") << 1 << QByteArray("aG@/")
        << requestBytes("01wSB08%DW0000001aG00", "F7");
    QTest::newRow("its bits are set all the same")
        << QByteArray("D_bit") << 12 << bits("01") << 1 << QByteArray("aG@/")
        << requestBytes("01wSB08%DW0000001bG00", "F8");
    QTest::newRow("fewer units than the write has: the rest stays 0")
        << QByteArray("M_bit") << 16 << bits("000000000000000000") << 1 << QByteArray("12345678")
        << requestBytes("01wSB08%MW000010212000000", "7D");
}

void TestBitPatch::patchedWrite()
{
    QFETCH(QByteArray, regName);
    QFETCH(int, startAddr);
    QFETCH(QByteArray, values);
    QFETCH(int, unitCount);
    QFETCH(QByteArray, data);
    QFETCH(QByteArray, write);

    DriverFixture fixture;
    const VARIABLE item = makeItem(1, regName.constData(), startAddr, sizeOf(values), values);
    getWriteFrame(item);
    QCOMPARE(sizeOf(driver.frames), 2);
    const QByteArray readHalf = sentBytes(driver.frames.at(0));
    patchBitsIntoWrite(makeWidths(1, 16, true), readAnswer(data), unitCount, kDataPos, item);
    QCOMPARE(sentBytes(driver.frames.at(1)), write);
    QCOMPARE(sentBytes(driver.frames.at(0)), readHalf);
    QCOMPARE(driver.frames.at(1).dataPos, 18);
}

// A pair of a read and a write of `characters` data characters, as no register asks for it today.
static void queuePair(int characters)
{
    FRAME_PRO write = FRAME_PRO();
    const QByteArray text = requestBytes("01wSB08%MB0000102" + QByteArray(characters, '0'), "??");
    std::memcpy(write.sendBuf, text.constData(), static_cast<size_t>(text.size()));
    write.sendLen = sizeOf(text);
    write.dataPos = 18;
    queueFrame(FRAME_PRO());
    queueFrame(write);
}

void TestBitPatch::patchedBytes_data()
{
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<QByteArray>("values");
    QTest::addColumn<int>("unitCount");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("write");

    // The block check is the sum itself, low byte first: 0x04DA and so on.
    QTest::newRow("bits of two bytes")
        << 8 << 11 << bits("01010000000101") << 2 << QByteArray("12A8")
        << requestBytes("01wSB08%MB00001021AAB", "\xDA\x04");
    QTest::newRow("bits of eight bytes")
        << 8 << 8 << (QByteArray(63, '\0') + '\x01') << 8 << QByteArray("FFFFFFFFFFFFFFFF")
        << requestBytes("01wSB08%MB00001020000000000000080", "\xED\x06");
    QTest::newRow("bits of a 32-bit unit") << 32 << 41 << bits("01") << 1 << QByteArray("00000000")
                                           << requestBytes("01wSB08%MB000010200020000", "\x67\x05");
    QTest::newRow("a bit beyond the answer is left out")
        << 8 << 8 << bits("01") << 2 << QByteArray("")
        << requestBytes("01wSB08%MB00001020000", "\xA5\x04");
    QTest::newRow("single bits: nothing") << 1 << 8 << bits("01") << 2 << QByteArray("12A8")
                                          << requestBytes("01wSB08%MB00001020000", "??");
}

void TestBitPatch::patchedBytes()
{
    QFETCH(int, wordBits);
    QFETCH(int, startAddr);
    QFETCH(QByteArray, values);
    QFETCH(int, unitCount);
    QFETCH(QByteArray, data);
    QFETCH(QByteArray, write);

    DriverFixture fixture;
    queuePair(sizeOf(write) - 21);
    const QByteArray answer = data.isEmpty() ? QByteArray("\x06", 1) : readAnswer(data);
    patchBitsIntoWrite(makeWidths(1, wordBits, true), answer, unitCount, kDataPos,
                       makeItem(1, "M_bit", startAddr, sizeOf(values), values));
    QCOMPARE(sentBytes(driver.frames.at(1)), write);
}

void TestBitPatch::withoutPairNothingHappens_data()
{
    QTest::addColumn<int>("frames");

    QTest::newRow("no frame") << 0;
    QTest::newRow("no second frame") << 1;
}

void TestBitPatch::withoutPairNothingHappens()
{
    QFETCH(int, frames);

    DriverFixture fixture;
    const VARIABLE item = makeItem(1, "D_bit", 0, 1, bits("01"));
    getWriteFrame(item);
    const FRAME_PRO read = driver.frames.at(0);
    driver.frames.clear();
    if (frames == 1) {
        queueFrame(read);
    }
    const QByteArray before = frames == 0 ? QByteArray() : sentBytes(driver.frames.at(0));
    patchBitsIntoWrite(makeWidths(1, 16, true), readAnswer("0000"), 1, kDataPos, item);
    QCOMPARE(sizeOf(driver.frames), frames);
    QCOMPARE(frames == 0 ? QByteArray() : sentBytes(driver.frames.at(0)), before);
}

void TestBitPatch::extremesStayInside_data()
{
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("unitCount");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QByteArray>("data"); // of the write, 8 characters

    const QByteArray zero("00000000");
    QTest::newRow("negative address: bits below the word are left out")
        << 16 << -2 << 4 << 2 << readAnswer(zero) << QByteArray("0003gg00");
    QTest::newRow("negative count")
        << 16 << 0 << -1 << 1 << readAnswer("1234") << QByteArray("12340000");
    QTest::newRow("endless count")
        << 16 << 0 << INT_MAX << 1 << readAnswer("0000") << QByteArray("FFFF0000");
    QTest::newRow("endless words") << 16 << 0 << 0 << INT_MAX << QByteArray() << zero;
    QTest::newRow("endless bytes") << 8 << 0 << 0 << INT_MAX << QByteArray() << zero;
    QTest::newRow("endless double words") << 32 << 0 << 0 << INT_MAX << QByteArray() << zero;
    QTest::newRow("no units") << 16 << 0 << 4 << 0 << readAnswer(zero) << zero;
    QTest::newRow("negative units") << 16 << 0 << 4 << -1 << readAnswer(zero) << zero;
    QTest::newRow("most negative units") << 8 << 0 << 4 << INT_MIN << readAnswer(zero) << zero;
    QTest::newRow("no answer: its places are 0, and no bit has a place")
        << 16 << 0 << 4 << 1 << QByteArray() << zero;
    QTest::newRow("two data characters: bits without a place are left out")
        << 16 << 0 << 16 << 1
        << QByteArray("\x06"
                      "01rSB0104"
                      "12")
        << QByteArray("00FF0000");
    QTest::newRow("most negative double words")
        << 32 << 0 << 4 << INT_MIN << readAnswer(zero) << zero;
}

void TestBitPatch::extremesStayInside()
{
    QFETCH(int, wordBits);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(int, unitCount);
    QFETCH(QByteArray, answer);
    QFETCH(QByteArray, data);

    DriverFixture fixture;
    queuePair(8);
    VARIABLE item = makeItem(1, "M_bit", startAddr, count, QByteArray(1024, '\x01'));
    patchBitsIntoWrite(makeWidths(1, wordBits, true), answer, unitCount, kDataPos, item);
    const FRAME_PRO &write = driver.frames.at(1);
    QCOMPARE(bytesOf(write.sendBuf, 18), QByteArray("\x05"
                                                    "01wSB08%MB0000102"));
    QCOMPARE(bytesOf(write.sendBuf + 18, 8), data);
    QCOMPARE(bytesOf(write.sendBuf + write.sendLen, 10), QByteArray(10, '\0'));
}

void TestBitPatch::placesBelowZeroAreLeftOut()
{
    DriverFixture fixture;
    queuePair(4);
    driver.frames[1].dataPos = -2;
    patchBitsIntoWrite(makeWidths(1, 16, true), QByteArray("3412"), 1, -2,
                       makeItem(1, "M_bit", 0, 16, QByteArray(16, '\x01')));
    const FRAME_PRO &write = driver.frames.at(1);
    // Of the four places the last two are there; they take the two first, which are none.
    QCOMPARE(bytesOf(write.sendBuf, 6), QByteArray("001wSB"));
}

void TestBitPatch::answerReachesTheWriteThroughTheDecoder()
{
    DriverFixture fixture;
    driver.sendState = kJobWrite;
    const VARIABLE item = makeItem(1, "D_bit", 53, 1, bits("01"));
    getWriteFrame(item);
    analyzeFrameOfVal(readAnswer("1204"), 1, kDataPos, driver.frames.at(0).var);
    QCOMPARE(sentBytes(driver.frames.at(1)), requestBytes("01wSB08%DW00003011224", "BB"));
    QCOMPARE(sizeOf(driver.dataArea), 0);
}

QTEST_APPLESS_MAIN(TestBitPatch)
#include "test_bit_patch.moc"
