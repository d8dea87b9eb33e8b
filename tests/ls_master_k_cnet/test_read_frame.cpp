#include <climits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/read_frame.h"
#include "support/driver_fixture.h"
#include "support/rows.h"

static int build(const VARIABLE &item)
{
    QList<VARIABLE> list;
    list.append(item);
    return getReadFrame(list);
}

static const struct
{
    const char *what;
    int stationNo;
    const char *name;
    int startAddr, count;
    QByteArray request;
    int recvLen;
} kRequestIsBuilt[] = {
    // clang-format off
    {"D_W, five words", 1, "D_W", 100, 5, "\x05" "01rSB08%DW0010005\x04" "EF", 33},
    {"D_W, highest", 1, "D_W", 9999, 1, "\x05" "01rSB08%DW0999901\x04" "0E", 17},
    {"C_W", 1, "C_W", 255, 1, "\x05" "01rSB08%CW0025501\x04" "F5", 17},
    {"T_W", 1, "T_W", 7, 16, "\x05" "01rSB08%TW0000710\x04" "01", 77},
    {"K_W", 1, "K_W", 31, 31, "\x05" "01rSB08%KW000311F\x04" "0B", 137},
    {"P_W", 1, "P_W", 63, 2, "\x05" "01rSB08%PW0006302\x04" "00", 21},
    {"F_W", 1, "F_W", 0, 8, "\x05" "01rSB08%FW0000008\x04" "F3", 45},
    {"L_W", 1, "L_W", 127, 3, "\x05" "01rSB08%LW0012703\x04" "FE", 25},
    {"M_W", 1, "M_W", 2, 1, "\x05" "01rSB08%MW0000201\x04" "F5", 17},
    {"P_bit as words", 1, "P_bit", 3, 1, "\x05" "01rSB08%PW0000301\x04" "F9", 17},
    {"K_bit as words", 1, "K_bit", 4, 1, "\x05" "01rSB08%KW0000401\x04" "F5", 17},
    {"M_bit as words", 1, "M_bit", 2, 1, "\x05" "01rSB08%MW0000201\x04" "F5", 17},
    {"L_bit as words", 1, "L_bit", 6, 1, "\x05" "01rSB08%LW0000601\x04" "F8", 17},
    {"F_bit as words", 1, "F_bit", 7, 1, "\x05" "01rSB08%FW0000701\x04" "F3", 17},
    {"D_bit as words", 1, "D_bit", 8, 1, "\x05" "01rSB08%DW0000801\x04" "F2", 17},
    {"TX", 1, "TX", 10, 1, "\x05" "01rSS0107%TX0010\x04" "DC", 15},
    {"TX, one contact whatever the count", 1, "TX", 10, 4, "\x05" "01rSS0107%TX0010\x04" "DC", 15},
    {"CX", 1, "CX", 255, 1, "\x05" "01rSS0107%CX0255\x04" "D6", 15},
    {"lowest station", 0, "D_W", 0, 1, "\x05" "00rSB08%DW0000001\x04" "E9", 17},
    {"station in hexadecimal, check 00", 31, "D_W", 0, 1, "\x05" "1FrSB08%DW0000001\x04" "00", 17},
    {"low 8 bits of the station", -1, "D_W", 0, 1, "\x05" "FFrSB08%DW0000001\x04" "15", 17},
    {"16 words", 1, "D_W", 0, 16, "\x05" "01rSB08%DW0000010\x04" "EA", 77},
    {"255 words", 1, "D_W", 0, 255, "\x05" "01rSB08%DW00000FF\x04" "15", 1033},
    {"256 words do not fit two digits", 1, "D_W", 0, 256, "\x05" "01rSB08%DW0000000\x04" "E9", 1037},
    {"no words", 1, "D_W", 0, 0, "\x05" "01rSB08%DW0000000\x04" "E9", 13},
    {"first five digits of a word number", 1, "D_W", 123456, 1, "\x05" "01rSB08%DW1234501\x04" "F9", 17},
    {"first four digits of a contact number", 1, "TX", 12345, 1, "\x05" "01rSS0107%TX1234\x04" "E5", 15},
    // clang-format on
};

static const Given<const char *> kNothingIsBuilt[] = {
    {"unknown register", "Q_W"},
    {"letter case counts", "d_w"},
    {"register letter alone", "D"},
    {"empty name", ""},
};

static const struct
{
    const char *what, *name;
    int startAddr, count, sendLen;
} kOddNumbersStayWithinTheFrame[] = {
    {"negative word number", "D_W", -5, 1, 21},
    {"negative contact number", "TX", -5, 1, 20},
    {"negative count", "D_W", 0, -1, 21},
    {"bottom of the numbers", "D_W", INT_MIN, INT_MIN, 21},
    {"top of the numbers", "D_W", INT_MAX, INT_MAX, 21},
    {"contact at the top of the numbers", "CX", INT_MAX, INT_MAX, 20},
};

class TestReadFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requestIsBuilt_data() { addRows(kRequestIsBuilt); }
    void requestIsBuilt()
    {
        const auto &row = currentRow(kRequestIsBuilt);
        DriverFixture fixture;
        QCOMPARE(build(makeItem(row.stationNo, row.name, row.startAddr, row.count)), 1);
        QCOMPARE(sizeOf(driver.frames), 1);
        const FRAME_PRO &frame = driver.frames.at(0);
        QCOMPARE(sentBytes(frame), row.request);
        QCOMPARE(numbersText(frame),
                 latin("%1 %2 10 %3 0").arg(row.request.size()).arg(row.recvLen).arg(row.count));
    }

    void itemGoesWithTheFrame()
    {
        DriverFixture fixture;
        VARIABLE item = makeItem(3, "M_W", 20, 7, QByteArray(kValueAreaSize, '\x5A'));
        item.opKind = 42;
        QCOMPARE(build(item), 1);

        const VARIABLE &var = driver.frames.at(0).var;
        QVERIFY(isSameRequest(var, item));
        QCOMPARE(var.opKind, 42);
        QCOMPARE(std::memcmp(var.data, item.data, sizeof(var.data)), 0);
    }

    void frameIsAppended()
    {
        DriverFixture fixture;
        QCOMPARE(build(makeItem(1, "D_W", 100, 5)), 1);
        QCOMPARE(build(makeItem(1, "TX", 10, 1)), 1);

        QCOMPARE(sizeOf(driver.frames), 2);
        QCOMPARE(driver.frames.at(0).sendLen, 21);
        QCOMPARE(driver.frames.at(1).sendLen, 20);
    }

    void otherItemsAreIgnored()
    {
        DriverFixture fixture;
        QList<VARIABLE> list;
        list.append(makeItem(1, "D_W", 100, 5));
        list.append(makeItem(2, "M_W", 1, 1));
        list.append(makeItem(2, "nothing", 1, 1));

        QCOMPARE(getReadFrame(list), 1);
        QCOMPARE(sizeOf(driver.frames), 1);
        QCOMPARE(driver.frames.at(0).var.startAddr, 100);
    }

    void nothingIsBuilt_data() { addRows(kNothingIsBuilt); }
    void nothingIsBuilt()
    {
        const auto &row = currentRow(kNothingIsBuilt);
        DriverFixture fixture;
        QList<VARIABLE> list;
        QCOMPARE(getReadFrame(list), 0);
        list.append(makeItem(1, row.given, 0, 1));
        list.append(makeItem(1, "D_W", 0, 1));
        QCOMPARE(getReadFrame(list), 0);
        QVERIFY(driver.frames.isEmpty());
    }

    void oddNumbersStayWithinTheFrame_data() { addRows(kOddNumbersStayWithinTheFrame); }
    void oddNumbersStayWithinTheFrame()
    {
        const auto &row = currentRow(kOddNumbersStayWithinTheFrame);
        DriverFixture fixture;
        QCOMPARE(build(makeItem(1, row.name, row.startAddr, row.count)), 1);
        QCOMPARE(driver.frames.at(0).sendLen, row.sendLen);
        QCOMPARE(int(driver.frames.at(0).sendBuf[row.sendLen - 3]), 0x04);
        QCOMPARE(driver.frames.at(0).unitCount, row.count);
    }
};

QTEST_APPLESS_MAIN(TestReadFrame)
#include "test_read_frame.moc"
