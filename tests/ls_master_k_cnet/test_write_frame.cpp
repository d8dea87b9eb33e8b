#include <climits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/write_frame.h"
#include "support/driver_fixture.h"
#include "support/rows.h"

static QByteArray request(const char *text, const char *check)
{
    return QByteArray("\x05") + text + "\x04" + check;
}

static const struct
{
    const char *what;
    int stationNo;
    const char *name;
    int startAddr, count;
    QByteArray values, sent;
} kSingleRequestIsBuilt[] = {
    // clang-format off
    {"D_W, low byte first", 1, "D_W", 100, 2, "\x34\x12\xCD\xAB", request("01wSB08%DW00100021234ABCD", "C5")},
    {"C_W", 1, "C_W", 255, 1, "\xFF\xFF", request("01wSB08%CW0025501FFFF", "12")},
    {"T_W, zero", 1, "T_W", 7, 1, QByteArray(), request("01wSB08%TW00007010000", "C6")},
    {"K_W, lowest digit", 1, "K_W", 31, 1, "\x0A", request("01wSB08%KW0003101000A", "CB")},
    {"P_W, highest digit", 1, "P_W", 63, 1, QByteArray("\x00\xA0", 2), request("01wSB08%PW0006301A000", "D5")},
    {"F_W, low byte", 1, "F_W", 0, 1, "\xFF", request("01wSB08%FW000000100FF", "DD")},
    {"L_W, high byte", 1, "L_W", 127, 1, QByteArray("\x00\xFF", 2), request("01wSB08%LW0012701FF00", "ED")},
    {"M_W", 1, "M_W", 2, 1, "\x02\x01", request("01wSB08%MW00002010102", "BD")},
    {"no words", 1, "D_W", 0, 0, "\x34\x12", request("01wSB08%DW0000000", "EE")},
    {"M_bit, bit 0 of word 1", 1, "M_bit", 16, 1, "\x01", request("01wSS0109%MX00001001", "9D")},
    {"M_bit, bit 10 in upper case", 1, "M_bit", 26, 1, "\x01", request("01wSS0109%MX00001A01", "AE")},
    {"M_bit, off", 1, "M_bit", 26, 1, QByteArray(), request("01wSS0109%MX00001A00", "AD")},
    {"M_bit, only the first byte counts", 1, "M_bit", 26, 1, QByteArray("\x00\x01", 2), request("01wSS0109%MX00001A00", "AD")},
    {"P_bit, any byte but 0 is on", 1, "P_bit", 15, 1, "\x80", request("01wSS0109%PX00000F01", "B5")},
    {"K_bit, highest", 1, "K_bit", 4095, 1, "\x01", request("01wSS0109%KX00255F01", "BC")},
    {"L_bit, lowest", 1, "L_bit", 0, 1, "\x01", request("01wSS0109%LX00000001", "9B")},
    {"F_bit", 1, "F_bit", 197, 1, "\xFF", request("01wSS0109%FX00012501", "9D")},
    {"TX, six digits", 1, "TX", 10, 1, "\x01", request("01wSS0109%TX00001001", "A4")},
    {"TX, one contact whatever the count", 1, "TX", 10, 3, QByteArray("\x00\x01\x01", 3), request("01wSS0109%TX00001000", "A3")},
    {"TX, count of none", 1, "TX", 10, 0, "\x01", request("01wSS0109%TX00001001", "A4")},
    {"CX", 1, "CX", 255, 1, "\x02", request("01wSS0109%CX00025501", "9E")},
    {"station in hexadecimal", 0x11F, "TX", 7, 1, "\x01", request("1FwSS0109%TX00000701", "C0")},
    // clang-format on
};

static const struct
{
    const char *what, *name;
    int startAddr, count;
    QByteArray read;
    int recvLen;
    QByteArray write;
} kPairIsBuilt[] = {
    // clang-format off
    {"D_bit, one bit", "D_bit", 7, 1, request("01rSB08%DW0000001", "EA"), 17, request("01wSB08%DW00000010000", "AF")},
    {"D_bit, several bits", "D_bit", 1603, 4, request("01rSB08%DW0010001", "EB"), 17, request("01wSB08%DW00100010000", "B0")},
    {"D_bit, highest", "D_bit", 159999, 1, request("01rSB08%DW0999901", "0E"), 17, request("01wSB08%DW09999010000", "D3")},
    {"M_bit, two bits across two words ask for one", "M_bit", 15, 2, request("01rSB08%MW0000001", "F3"), 17, request("01wSB08%MW00000010000", "B8")},
    {"M_bit, nine bits ask for two words", "M_bit", 16, 9, request("01rSB08%MW0000102", "F5"), 21, request("01wSB08%MW000010200000000", "7A")},
    {"M_bit, no bits", "M_bit", 5, 0, request("01rSB08%MW0000000", "F2"), 13, request("01wSB08%MW0000000", "F7")},
    {"M_bit, fewer bits than none", "M_bit", 5, -3, request("01rSB08%MW0000001", "F3"), 17, request("01wSB08%MW00000010000", "B8")},
    {"P_bit", "P_bit", 32, 16, request("01rSB08%PW0000201", "F8"), 17, request("01wSB08%PW00002010000", "BD")},
    {"K_bit", "K_bit", 47, 2, request("01rSB08%KW0000201", "F3"), 17, request("01wSB08%KW00002010000", "B8")},
    {"L_bit", "L_bit", 33, 8, request("01rSB08%LW0000201", "F4"), 17, request("01wSB08%LW00002010000", "B9")},
    {"F_bit", "F_bit", 34, 3, request("01rSB08%FW0000201", "EE"), 17, request("01wSB08%FW00002010000", "B3")},
    // clang-format on
};

static const struct
{
    const char *what;
    int bits, words;
} kBitsAskForTheirWords[] = {
    // clang-format off
    {"2 bits", 2, 1},
    {"8 bits", 8, 1},
    {"9 bits", 9, 2},
    {"15 bits", 15, 2},
    {"16 bits", 16, 1},
    {"17 bits", 17, 2},
    {"24 bits", 24, 2},
    {"25 bits", 25, 3},
    {"32 bits", 32, 2},
    {"480 bits", 480, 30},
    {"1024 bits", 1024, 64},
    // clang-format on
};

static const struct
{
    const char *what, *name;
    int count, frames;
} kItemGoesWithEveryFrame[] = {
    {"block", "D_W", 5, 1},
    {"bit", "M_bit", 1, 1},
    {"contact", "TX", 1, 1},
    {"several bits", "M_bit", 5, 2},
    {"data-register bit", "D_bit", 1, 2},
};

static const Given<const char *> kNothingIsBuilt[] = {
    {"unknown word register", "Q_W"},
    {"unknown bit register", "Q_bit"},
    {"letter case counts", "m_bit"},
    {"empty name", ""},
};

static const struct
{
    const char *what, *name;
    int count, sendLen;
    QByteArray head;
} kLongBlockIsCutAtItsEnd[] = {
    // clang-format off
    {"250 words fit", "D_W", 250, 1021, "\x05" "01wSB08%DW00000FA1111"},
    {"251 words", "D_W", 251, 1024, "\x05" "01wSB08%DW00000FB1111"},
    {"256 words", "D_W", 256, 1024, "\x05" "01wSB08%DW00000001111"},
    {"more words than the value area", "D_W", 513, 1024, "\x05" "01wSB08%DW00000011111"},
    {"top of the numbers", "D_W", INT_MAX, 1024, "\x05" "01wSB08%DW00000FF1111"},
    {"bits of 251 words", "M_bit", 4016, 1024, "\x05" "01wSB08%MW00000FB0000"},
    {"bits of 6250 words", "M_bit", 100000, 1024, "\x05" "01wSB08%MW000006A0000"},
    // clang-format on
};

static const struct
{
    const char *what, *name;
    int startAddr, count, sendLen;
} kOddNumbersStayWithinTheFrame[] = {
    {"negative word number", "D_W", -5, 1, 25},
    {"negative count of words", "D_W", 0, -1, 21},
    {"bottom of the count", "D_W", 0, INT_MIN, 21},
    {"negative bit number", "M_bit", -5, 1, 24},
    {"bottom of the bit numbers", "M_bit", INT_MIN, 1, 24},
    {"top of the bit numbers", "M_bit", INT_MAX, 1, 24},
    {"negative count of bits", "M_bit", 0, -160, 21},
    {"bottom of the bit count", "M_bit", 0, INT_MIN, 21},
    {"negative contact number", "TX", -5, 1, 24},
    {"top of the contact numbers", "TX", INT_MAX, INT_MAX, 24},
};

class TestWriteFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void singleRequestIsBuilt_data() { addRows(kSingleRequestIsBuilt); }
    void singleRequestIsBuilt()
    {
        const auto &row = currentRow(kSingleRequestIsBuilt);
        DriverFixture fixture;
        getWriteFrame(makeItem(row.stationNo, row.name, row.startAddr, row.count, row.values));
        QCOMPARE(sizeOf(driver.frames), 1);
        const FRAME_PRO &frame = driver.frames.at(0);
        QCOMPARE(sentBytes(frame), row.sent);
        QCOMPARE(numbersText(frame), latin("%1 9 0 0 0").arg(row.sent.size()));
    }

    void pairIsBuilt_data() { addRows(kPairIsBuilt); }
    void pairIsBuilt()
    {
        const auto &row = currentRow(kPairIsBuilt);
        DriverFixture fixture;
        getWriteFrame(makeItem(1, row.name, row.startAddr, row.count, QByteArray(1024, '\x01')));
        QCOMPARE(sizeOf(driver.frames), 2);
        const FRAME_PRO &readHalf = driver.frames.at(0);
        QCOMPARE(sentBytes(readHalf), row.read);
        QCOMPARE(numbersText(readHalf),
                 latin("21 %1 10 %2 0").arg(row.recvLen).arg((row.recvLen - 13) / 4));
        const FRAME_PRO &writeHalf = driver.frames.at(1);
        QCOMPARE(sentBytes(writeHalf), row.write);
        QCOMPARE(numbersText(writeHalf), latin("%1 9 18 0 0").arg(row.write.size()));
    }

    void bitsAskForTheirWords_data() { addRows(kBitsAskForTheirWords); }
    void bitsAskForTheirWords()
    {
        const auto &row = currentRow(kBitsAskForTheirWords);
        DriverFixture fixture;
        getWriteFrame(makeItem(1, "M_bit", 0, row.bits));
        QCOMPARE(driver.frames.at(0).unitCount, row.words);
        QCOMPARE(driver.frames.at(0).recvLen, 13 + 4 * row.words);
        QCOMPARE(driver.frames.at(1).sendLen, 21 + 4 * row.words);
        QCOMPARE(sentBytes(driver.frames.at(1)).mid(18, 4 * row.words),
                 QByteArray(4 * row.words, '0'));
    }

    void itemGoesWithEveryFrame_data() { addRows(kItemGoesWithEveryFrame); }
    void itemGoesWithEveryFrame()
    {
        const auto &row = currentRow(kItemGoesWithEveryFrame);
        DriverFixture fixture;
        VARIABLE item = makeItem(3, row.name, 35, row.count, QByteArray(1024, '\x5A'));
        item.opKind = 42;
        const VARIABLE before = item;
        getWriteFrame(item);

        QCOMPARE(sizeOf(driver.frames), row.frames);
        for (int i = 0; i < row.frames; ++i) {
            const VARIABLE &var = driver.frames.at(i).var;
            QVERIFY(isSameRequest(var, item));
            QCOMPARE(var.opKind, 42);
            QCOMPARE(std::memcmp(var.data, item.data, sizeof(var.data)), 0);
        }
        QVERIFY(isSameRequest(item, before));
        QCOMPARE(std::memcmp(item.data, before.data, sizeof(item.data)), 0);
    }

    void framesAreAppended()
    {
        DriverFixture fixture;
        getWriteFrame(makeItem(1, "D_W", 100, 1));
        getWriteFrame(makeItem(1, "TX", 10, 1));

        QCOMPARE(sizeOf(driver.frames), 2);
        QCOMPARE(driver.frames.at(0).sendLen, 25);
        QCOMPARE(driver.frames.at(1).sendLen, 24);
    }

    void nothingIsBuilt_data() { addRows(kNothingIsBuilt); }
    void nothingIsBuilt()
    {
        const auto &row = currentRow(kNothingIsBuilt);
        DriverFixture fixture;
        getWriteFrame(makeItem(1, row.given, 0, 1));
        getWriteFrame(makeItem(1, row.given, 0, 5));
        QVERIFY(driver.frames.isEmpty());
    }

    void longBlockIsCutAtItsEnd_data() { addRows(kLongBlockIsCutAtItsEnd); }
    void longBlockIsCutAtItsEnd()
    {
        const auto &row = currentRow(kLongBlockIsCutAtItsEnd);
        DriverFixture fixture;
        getWriteFrame(makeItem(1, row.name, 0, row.count, QByteArray(1024, '\x11')));
        const FRAME_PRO &frame = driver.frames.at(driver.frames.size() - 1);
        QCOMPARE(frame.sendLen, row.sendLen);
        QCOMPARE(sentBytes(frame).left(22), row.head);
        QCOMPARE(frame.recvLen, 9);
        QCOMPARE(int(frame.sendBuf[row.sendLen - 3]),
                 row.sendLen < 1024 ? 0x04 : int(row.head.at(18)));
    }

    void oddNumbersStayWithinTheFrame_data() { addRows(kOddNumbersStayWithinTheFrame); }
    void oddNumbersStayWithinTheFrame()
    {
        const auto &row = currentRow(kOddNumbersStayWithinTheFrame);
        DriverFixture fixture;
        getWriteFrame(makeItem(1, row.name, row.startAddr, row.count));
        const FRAME_PRO &frame = driver.frames.at(driver.frames.size() - 1);
        QCOMPARE(frame.sendLen, row.sendLen);
        QCOMPARE(int(frame.sendBuf[0]), 0x05);
        QCOMPARE(int(frame.sendBuf[row.sendLen - 3]), 0x04);
    }
};

QTEST_APPLESS_MAIN(TestWriteFrame)
#include "test_write_frame.moc"
