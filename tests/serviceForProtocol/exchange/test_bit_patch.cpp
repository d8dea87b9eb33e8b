#include <climits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/write_frame.h"
#include "serviceForProtocol/exchange/answer_decode.h"
#include "serviceForProtocol/exchange/bit_patch.h"
#include "support/area_helpers.h"

static const int kDataPos = 10;

static QByteArray bits(const char *hex)
{
    return QByteArray::fromHex(hex);
}

static const struct
{
    const char *what;
    QByteArray regName;
    int startAddr;
    QByteArray values; // one byte a bit
    int unitCount;
    QByteArray data; // of the answer
    QByteArray write;
} kPatchedWrite[] = {
    {"bit 5 set: nibble 1, bit 1", "D_bit", 53, bits("01"), 1, "1204",
     requestBytes("01wSB08%DW00003011224", "BB")},
    {"bit 5 cleared", "D_bit", 53, bits("00"), 1, "1234",
     requestBytes("01wSB08%DW00003011214", "BA")},
    {"a character behind the digits counts on from 9", "D_bit", 53, bits("01"), 1, "12?4",
     requestBytes("01wSB08%DW000030112F4", "CF")},
    {"a bit that is set already", "D_bit", 2, bits("01"), 1, "1234",
     requestBytes("01wSB08%DW00000011234", "B9")},
    {"any byte but 0 sets", "D_bit", 0, bits("80"), 1, "0000",
     requestBytes("01wSB08%DW00000010001", "B0")},
    {"several bits across nibbles, one cleared", "M_bit", 35, bits("01000101"), 1, "FFFF",
     requestBytes("01wSB08%MW0000201FFEF", "11")},
    {"several bits across nibbles, three set", "M_bit", 35, bits("01000101"), 1, "0000",
     requestBytes("01wSB08%MW00002010068", "C8")},
    {"a whole word but its highest bit", "M_bit", 16, bits("01010101010101010101010101010100"), 1,
     "8000", requestBytes("01wSB08%MW00001017FFF", "02")},
    {"bits that reach over the word are left out", "M_bit", 15, bits("0101"), 1, "0000",
     requestBytes("01wSB08%MW00000018000", "C0")},
    {"two words: the steps overlap", "M_bit", 16, bits("010101010101010101"), 2, "12345678",
     requestBytes("01wSB08%MW000010257FFon00", "2F")},
    {"a character between the digits and the letters is its place", "D_bit", 0, bits("00"), 1,
     "000:", requestBytes("01wSB08%DW0000001000A", "C0")},
    {"a character beyond F stays what it is; below 0 and @ are 0", "D_bit", 0, bits("00"), 1,
     "aG@/", requestBytes("01wSB08%DW0000001aG00", "F7")},
    {"its bits are set all the same", "D_bit", 12, bits("01"), 1, "aG@/",
     requestBytes("01wSB08%DW0000001bG00", "F8")},
    {"fewer units than the write has: the rest stays 0", "M_bit", 16, bits("000000000000000000"), 1,
     "12345678", requestBytes("01wSB08%MW000010212000000", "7D")},
};

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

static const struct
{
    const char *what;
    int wordBits, startAddr;
    QByteArray values;
    int unitCount;
    QByteArray data, write;
} kPatchedBytes[] = {
    // The block check is the sum itself, low byte first: 0x04DA and so on.
    {"bits of two bytes", 8, 11, bits("01010000000101"), 2, "12A8",
     requestBytes("01wSB08%MB00001021AAB", "\xDA\x04")},
    {"bits of eight bytes", 8, 8, (QByteArray(63, '\0') + '\x01'), 8, "FFFFFFFFFFFFFFFF",
     requestBytes("01wSB08%MB00001020000000000000080", "\xED\x06")},
    {"bits of a 32-bit unit", 32, 41, bits("01"), 1, "00000000",
     requestBytes("01wSB08%MB000010200020000", "\x67\x05")},
    {"a bit beyond the answer is left out", 8, 8, bits("01"), 2, "",
     requestBytes("01wSB08%MB00001020000", "\xA5\x04")},
    {"single bits: nothing", 1, 8, bits("01"), 2, "12A8",
     requestBytes("01wSB08%MB00001020000", "??")},
};

static const Given<int> kWithoutPairNothingHappens[] = {
    {"no frame", 0},
    {"no second frame", 1},
};

static const QByteArray zero("00000000");
static const struct
{
    const char *what;
    int wordBits, startAddr, count, unitCount;
    QByteArray answer;
    QByteArray data; // of the write, 8 characters
} kExtremesStayInside[] = {
    {"negative address: bits below the word are left out", 16, -2, 4, 2, readAnswer(zero),
     "0003gg00"},
    {"negative count", 16, 0, -1, 1, readAnswer("1234"), "12340000"},
    {"endless count", 16, 0, INT_MAX, 1, readAnswer("0000"), "FFFF0000"},
    {"endless words", 16, 0, 0, INT_MAX, QByteArray(), zero},
    {"endless bytes", 8, 0, 0, INT_MAX, QByteArray(), zero},
    {"endless double words", 32, 0, 0, INT_MAX, QByteArray(), zero},
    {"no units", 16, 0, 4, 0, readAnswer(zero), zero},
    {"negative units", 16, 0, 4, -1, readAnswer(zero), zero},
    {"most negative units", 8, 0, 4, INT_MIN, readAnswer(zero), zero},
    {"no answer: its places are 0, and no bit has a place", 16, 0, 4, 1, QByteArray(), zero},
    {"two data characters: bits without a place are left out", 16, 0, 16, 1,
     "\x06"
     "01rSB0104"
     "12",
     "00FF0000"},
    {"most negative double words", 32, 0, 4, INT_MIN, readAnswer(zero), zero},
};

class TestBitPatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void patchedWrite_data() { addRows(kPatchedWrite); }
    void patchedWrite()
    {
        const auto &row = currentRow(kPatchedWrite);
        DriverFixture fixture;
        const VARIABLE item =
            makeItem(1, row.regName.constData(), row.startAddr, sizeOf(row.values), row.values);
        getWriteFrame(item);
        QCOMPARE(sizeOf(driver.frames), 2);
        const QByteArray readHalf = sentBytes(driver.frames.at(0));
        patchBitsIntoWrite(makeWidths(1, 16, true), readAnswer(row.data), row.unitCount, kDataPos,
                           item);
        QCOMPARE(sentBytes(driver.frames.at(1)), row.write);
        QCOMPARE(sentBytes(driver.frames.at(0)), readHalf);
        QCOMPARE(driver.frames.at(1).dataPos, 18);
    }

    void patchedBytes_data() { addRows(kPatchedBytes); }
    void patchedBytes()
    {
        const auto &row = currentRow(kPatchedBytes);
        DriverFixture fixture;
        queuePair(sizeOf(row.write) - 21);
        const QByteArray answer = row.data.isEmpty() ? QByteArray("\x06", 1) : readAnswer(row.data);
        patchBitsIntoWrite(makeWidths(1, row.wordBits, true), answer, row.unitCount, kDataPos,
                           makeItem(1, "M_bit", row.startAddr, sizeOf(row.values), row.values));
        QCOMPARE(sentBytes(driver.frames.at(1)), row.write);
    }

    void withoutPairNothingHappens_data() { addRows(kWithoutPairNothingHappens); }
    void withoutPairNothingHappens()
    {
        const auto &row = currentRow(kWithoutPairNothingHappens);
        DriverFixture fixture;
        const VARIABLE item = makeItem(1, "D_bit", 0, 1, bits("01"));
        getWriteFrame(item);
        const FRAME_PRO read = driver.frames.at(0);
        driver.frames.clear();
        if (row.given == 1) {
            queueFrame(read);
        }
        const QByteArray before = row.given == 0 ? QByteArray() : sentBytes(driver.frames.at(0));
        patchBitsIntoWrite(makeWidths(1, 16, true), readAnswer("0000"), 1, kDataPos, item);
        QCOMPARE(sizeOf(driver.frames), row.given);
        QCOMPARE(row.given == 0 ? QByteArray() : sentBytes(driver.frames.at(0)), before);
    }

    void extremesStayInside_data() { addRows(kExtremesStayInside); }
    void extremesStayInside()
    {
        const auto &row = currentRow(kExtremesStayInside);
        DriverFixture fixture;
        queuePair(8);
        VARIABLE item = makeItem(1, "M_bit", row.startAddr, row.count, QByteArray(1024, '\x01'));
        patchBitsIntoWrite(makeWidths(1, row.wordBits, true), row.answer, row.unitCount, kDataPos,
                           item);
        const FRAME_PRO &write = driver.frames.at(1);
        QCOMPARE(bytesOf(write.sendBuf, 18), QByteArray("\x05"
                                                        "01wSB08%MB0000102"));
        QCOMPARE(bytesOf(write.sendBuf + 18, 8), row.data);
        QCOMPARE(bytesOf(write.sendBuf + write.sendLen, 10), QByteArray(10, '\0'));
    }

    void placesBelowZeroAreLeftOut()
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

    void answerReachesTheWriteThroughTheDecoder()
    {
        DriverFixture fixture;
        driver.sendState = kJobWrite;
        const VARIABLE item = makeItem(1, "D_bit", 53, 1, bits("01"));
        getWriteFrame(item);
        analyzeFrameOfVal(readAnswer("1204"), 1, kDataPos, driver.frames.at(0).var);
        QCOMPARE(sentBytes(driver.frames.at(1)), requestBytes("01wSB08%DW00003011224", "BB"));
        QCOMPARE(sizeOf(driver.dataArea), 0);
    }
};

QTEST_APPLESS_MAIN(TestBitPatch)
#include "test_bit_patch.moc"
