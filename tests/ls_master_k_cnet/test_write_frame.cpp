#include <climits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/write_frame.h"
#include "support/driver_fixture.h"

class TestWriteFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void singleRequestIsBuilt_data();
    void singleRequestIsBuilt();
    void pairIsBuilt_data();
    void pairIsBuilt();
    void bitsAskForTheirWords_data();
    void bitsAskForTheirWords();
    void itemGoesWithEveryFrame_data();
    void itemGoesWithEveryFrame();
    void framesAreAppended();
    void nothingIsBuilt_data();
    void nothingIsBuilt();
    void longBlockIsCutAtItsEnd_data();
    void longBlockIsCutAtItsEnd();
    void oddNumbersStayWithinTheFrame_data();
    void oddNumbersStayWithinTheFrame();
};

static QByteArray request(const char *text, const char *check)
{
    return QByteArray("\x05") + text + "\x04" + check;
}

void TestWriteFrame::singleRequestIsBuilt_data()
{
    QTest::addColumn<int>("stationNo");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("values");
    QTest::addColumn<QByteArray>("sent");

    // clang-format off
    QTest::newRow("D_W, low byte first") << 1 << "D_W" << 100 << 2 << QByteArray("\x34\x12\xCD\xAB") << request("01wSB08%DW00100021234ABCD", "C5");
    QTest::newRow("C_W") << 1 << "C_W" << 255 << 1 << QByteArray("\xFF\xFF") << request("01wSB08%CW0025501FFFF", "12");
    QTest::newRow("T_W, zero") << 1 << "T_W" << 7 << 1 << QByteArray() << request("01wSB08%TW00007010000", "C6");
    QTest::newRow("K_W, lowest digit") << 1 << "K_W" << 31 << 1 << QByteArray("\x0A") << request("01wSB08%KW0003101000A", "CB");
    QTest::newRow("P_W, highest digit") << 1 << "P_W" << 63 << 1 << QByteArray("\x00\xA0", 2) << request("01wSB08%PW0006301A000", "D5");
    QTest::newRow("F_W, low byte") << 1 << "F_W" << 0 << 1 << QByteArray("\xFF") << request("01wSB08%FW000000100FF", "DD");
    QTest::newRow("L_W, high byte") << 1 << "L_W" << 127 << 1 << QByteArray("\x00\xFF", 2) << request("01wSB08%LW0012701FF00", "ED");
    QTest::newRow("M_W") << 1 << "M_W" << 2 << 1 << QByteArray("\x02\x01") << request("01wSB08%MW00002010102", "BD");
    QTest::newRow("no words") << 1 << "D_W" << 0 << 0 << QByteArray("\x34\x12") << request("01wSB08%DW0000000", "EE");
    QTest::newRow("M_bit, bit 0 of word 1") << 1 << "M_bit" << 16 << 1 << QByteArray("\x01") << request("01wSS0109%MX00001001", "9D");
    QTest::newRow("M_bit, bit 10 in upper case") << 1 << "M_bit" << 26 << 1 << QByteArray("\x01") << request("01wSS0109%MX00001A01", "AE");
    QTest::newRow("M_bit, off") << 1 << "M_bit" << 26 << 1 << QByteArray() << request("01wSS0109%MX00001A00", "AD");
    QTest::newRow("M_bit, only the first byte counts") << 1 << "M_bit" << 26 << 1 << QByteArray("\x00\x01", 2) << request("01wSS0109%MX00001A00", "AD");
    QTest::newRow("P_bit, any byte but 0 is on") << 1 << "P_bit" << 15 << 1 << QByteArray("\x80") << request("01wSS0109%PX00000F01", "B5");
    QTest::newRow("K_bit, highest") << 1 << "K_bit" << 4095 << 1 << QByteArray("\x01") << request("01wSS0109%KX00255F01", "BC");
    QTest::newRow("L_bit, lowest") << 1 << "L_bit" << 0 << 1 << QByteArray("\x01") << request("01wSS0109%LX00000001", "9B");
    QTest::newRow("F_bit") << 1 << "F_bit" << 197 << 1 << QByteArray("\xFF") << request("01wSS0109%FX00012501", "9D");
    QTest::newRow("TX, six digits") << 1 << "TX" << 10 << 1 << QByteArray("\x01") << request("01wSS0109%TX00001001", "A4");
    QTest::newRow("TX, one contact whatever the count") << 1 << "TX" << 10 << 3 << QByteArray("\x00\x01\x01", 3) << request("01wSS0109%TX00001000", "A3");
    QTest::newRow("TX, count of none") << 1 << "TX" << 10 << 0 << QByteArray("\x01") << request("01wSS0109%TX00001001", "A4");
    QTest::newRow("CX") << 1 << "CX" << 255 << 1 << QByteArray("\x02") << request("01wSS0109%CX00025501", "9E");
    QTest::newRow("station in hexadecimal") << 0x11F << "TX" << 7 << 1 << QByteArray("\x01") << request("1FwSS0109%TX00000701", "C0");
    // clang-format on
}

void TestWriteFrame::singleRequestIsBuilt()
{
    QFETCH(int, stationNo);
    QFETCH(QString, name);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(QByteArray, values);

    DriverFixture fixture;
    getWriteFrame(makeItem(stationNo, qPrintable(name), startAddr, count, values));
    QCOMPARE(static_cast<int>(driver.frames.size()), 1);
    const FRAME_PRO &frame = driver.frames.at(0);
    QTEST(sentBytes(frame), "sent");
    QCOMPARE(frame.recvLen, 9);
    QCOMPARE(frame.dataPos, 0);
    QCOMPARE(frame.unitCount, 0);
    QCOMPARE(frame.spare, 0);
}

void TestWriteFrame::pairIsBuilt_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("read");
    QTest::addColumn<int>("recvLen");
    QTest::addColumn<QByteArray>("write");

    // clang-format off
    QTest::newRow("D_bit, one bit") << "D_bit" << 7 << 1 << request("01rSB08%DW0000001", "EA") << 17 << request("01wSB08%DW00000010000", "AF");
    QTest::newRow("D_bit, several bits") << "D_bit" << 1603 << 4 << request("01rSB08%DW0010001", "EB") << 17 << request("01wSB08%DW00100010000", "B0");
    QTest::newRow("D_bit, highest") << "D_bit" << 159999 << 1 << request("01rSB08%DW0999901", "0E") << 17 << request("01wSB08%DW09999010000", "D3");
    QTest::newRow("M_bit, two bits across two words ask for one") << "M_bit" << 15 << 2 << request("01rSB08%MW0000001", "F3") << 17 << request("01wSB08%MW00000010000", "B8");
    QTest::newRow("M_bit, nine bits ask for two words") << "M_bit" << 16 << 9 << request("01rSB08%MW0000102", "F5") << 21 << request("01wSB08%MW000010200000000", "7A");
    QTest::newRow("M_bit, no bits") << "M_bit" << 5 << 0 << request("01rSB08%MW0000000", "F2") << 13 << request("01wSB08%MW0000000", "F7");
    QTest::newRow("M_bit, fewer bits than none") << "M_bit" << 5 << -3 << request("01rSB08%MW0000001", "F3") << 17 << request("01wSB08%MW00000010000", "B8");
    QTest::newRow("P_bit") << "P_bit" << 32 << 16 << request("01rSB08%PW0000201", "F8") << 17 << request("01wSB08%PW00002010000", "BD");
    QTest::newRow("K_bit") << "K_bit" << 47 << 2 << request("01rSB08%KW0000201", "F3") << 17 << request("01wSB08%KW00002010000", "B8");
    QTest::newRow("L_bit") << "L_bit" << 33 << 8 << request("01rSB08%LW0000201", "F4") << 17 << request("01wSB08%LW00002010000", "B9");
    QTest::newRow("F_bit") << "F_bit" << 34 << 3 << request("01rSB08%FW0000201", "EE") << 17 << request("01wSB08%FW00002010000", "B3");
    // clang-format on
}

// Length of the answer, place of its data, units, spare.
static QString numbersOf(const FRAME_PRO &frame)
{
    return QString::fromLatin1("%1 %2 %3 %4")
        .arg(QString::number(frame.recvLen), QString::number(frame.dataPos),
             QString::number(frame.unitCount), QString::number(frame.spare));
}

void TestWriteFrame::pairIsBuilt()
{
    QFETCH(QString, name);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(QByteArray, read);
    QFETCH(int, recvLen);
    QFETCH(QByteArray, write);

    DriverFixture fixture;
    getWriteFrame(makeItem(1, qPrintable(name), startAddr, count, QByteArray(1024, '\x01')));
    QCOMPARE(static_cast<int>(driver.frames.size()), 2);
    const FRAME_PRO &readHalf = driver.frames.at(0);
    QCOMPARE(sentBytes(readHalf), read);
    QCOMPARE(numbersOf(readHalf),
             QString::fromLatin1("%1 10 %2 0").arg(recvLen).arg((recvLen - 13) / 4));
    const FRAME_PRO &writeHalf = driver.frames.at(1);
    QCOMPARE(sentBytes(writeHalf), write);
    QCOMPARE(numbersOf(writeHalf), QString::fromLatin1("9 18 0 0"));
}

void TestWriteFrame::bitsAskForTheirWords_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("words");

    QTest::newRow("2 bits") << 2 << 1;
    QTest::newRow("8 bits") << 8 << 1;
    QTest::newRow("9 bits") << 9 << 2;
    QTest::newRow("15 bits") << 15 << 2;
    QTest::newRow("16 bits") << 16 << 1;
    QTest::newRow("17 bits") << 17 << 2;
    QTest::newRow("24 bits") << 24 << 2;
    QTest::newRow("25 bits") << 25 << 3;
    QTest::newRow("32 bits") << 32 << 2;
    QTest::newRow("480 bits") << 480 << 30;
    QTest::newRow("1024 bits") << 1024 << 64;
}

void TestWriteFrame::bitsAskForTheirWords()
{
    QFETCH(int, bits);
    QFETCH(int, words);

    DriverFixture fixture;
    getWriteFrame(makeItem(1, "M_bit", 0, bits));
    QCOMPARE(driver.frames.at(0).unitCount, words);
    QCOMPARE(driver.frames.at(0).recvLen, 13 + 4 * words);
    QCOMPARE(driver.frames.at(1).sendLen, 21 + 4 * words);
    QCOMPARE(sentBytes(driver.frames.at(1)).mid(18, 4 * words), QByteArray(4 * words, '0'));
}

void TestWriteFrame::itemGoesWithEveryFrame_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("frames");

    QTest::newRow("block") << "D_W" << 5 << 1;
    QTest::newRow("bit") << "M_bit" << 1 << 1;
    QTest::newRow("contact") << "TX" << 1 << 1;
    QTest::newRow("several bits") << "M_bit" << 5 << 2;
    QTest::newRow("data-register bit") << "D_bit" << 1 << 2;
}

void TestWriteFrame::itemGoesWithEveryFrame()
{
    QFETCH(QString, name);
    QFETCH(int, count);
    QFETCH(int, frames);

    DriverFixture fixture;
    VARIABLE item = makeItem(3, qPrintable(name), 35, count, QByteArray(1024, '\x5A'));
    item.opKind = 42;
    const VARIABLE before = item;
    getWriteFrame(item);

    QCOMPARE(static_cast<int>(driver.frames.size()), frames);
    for (int i = 0; i < frames; ++i) {
        const VARIABLE &var = driver.frames.at(i).var;
        QVERIFY(isSameRequest(var, item));
        QCOMPARE(var.opKind, 42);
        QCOMPARE(std::memcmp(var.data, item.data, sizeof(var.data)), 0);
    }
    QVERIFY(isSameRequest(item, before));
    QCOMPARE(std::memcmp(item.data, before.data, sizeof(item.data)), 0);
}

void TestWriteFrame::framesAreAppended()
{
    DriverFixture fixture;
    getWriteFrame(makeItem(1, "D_W", 100, 1));
    getWriteFrame(makeItem(1, "TX", 10, 1));

    QCOMPARE(static_cast<int>(driver.frames.size()), 2);
    QCOMPARE(driver.frames.at(0).sendLen, 25);
    QCOMPARE(driver.frames.at(1).sendLen, 24);
}

void TestWriteFrame::nothingIsBuilt_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("unknown word register") << "Q_W";
    QTest::newRow("unknown bit register") << "Q_bit";
    QTest::newRow("letter case counts") << "m_bit";
    QTest::newRow("empty name") << "";
}

void TestWriteFrame::nothingIsBuilt()
{
    QFETCH(QString, name);

    DriverFixture fixture;
    getWriteFrame(makeItem(1, qPrintable(name), 0, 1));
    getWriteFrame(makeItem(1, qPrintable(name), 0, 5));
    QVERIFY(driver.frames.isEmpty());
}

void TestWriteFrame::longBlockIsCutAtItsEnd_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("sendLen");
    QTest::addColumn<QByteArray>("head");

    // clang-format off
    QTest::newRow("250 words fit") << "D_W" << 250 << 1021 << QByteArray("\x05" "01wSB08%DW00000FA1111");
    QTest::newRow("251 words") << "D_W" << 251 << 1024 << QByteArray("\x05" "01wSB08%DW00000FB1111");
    QTest::newRow("256 words") << "D_W" << 256 << 1024 << QByteArray("\x05" "01wSB08%DW00000001111");
    QTest::newRow("more words than the value area") << "D_W" << 513 << 1024 << QByteArray("\x05" "01wSB08%DW00000011111");
    QTest::newRow("top of the numbers") << "D_W" << INT_MAX << 1024 << QByteArray("\x05" "01wSB08%DW00000FF1111");
    QTest::newRow("bits of 251 words") << "M_bit" << 4016 << 1024 << QByteArray("\x05" "01wSB08%MW00000FB0000");
    QTest::newRow("bits of 6250 words") << "M_bit" << 100000 << 1024 << QByteArray("\x05" "01wSB08%MW000006A0000");
    // clang-format on
}

void TestWriteFrame::longBlockIsCutAtItsEnd()
{
    QFETCH(QString, name);
    QFETCH(int, count);
    QFETCH(int, sendLen);
    QFETCH(QByteArray, head);

    DriverFixture fixture;
    getWriteFrame(makeItem(1, qPrintable(name), 0, count, QByteArray(1024, '\x11')));
    const FRAME_PRO &frame = driver.frames.at(driver.frames.size() - 1);
    QCOMPARE(frame.sendLen, sendLen);
    QCOMPARE(sentBytes(frame).left(22), head);
    QCOMPARE(frame.recvLen, 9);
    QCOMPARE(int(frame.sendBuf[sendLen - 3]), sendLen < 1024 ? 0x04 : int(head.at(18)));
}

void TestWriteFrame::oddNumbersStayWithinTheFrame_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("sendLen");

    QTest::newRow("negative word number") << "D_W" << -5 << 1 << 25;
    QTest::newRow("negative count of words") << "D_W" << 0 << -1 << 21;
    QTest::newRow("bottom of the count") << "D_W" << 0 << INT_MIN << 21;
    QTest::newRow("negative bit number") << "M_bit" << -5 << 1 << 24;
    QTest::newRow("bottom of the bit numbers") << "M_bit" << INT_MIN << 1 << 24;
    QTest::newRow("top of the bit numbers") << "M_bit" << INT_MAX << 1 << 24;
    QTest::newRow("negative count of bits") << "M_bit" << 0 << -160 << 21;
    QTest::newRow("bottom of the bit count") << "M_bit" << 0 << INT_MIN << 21;
    QTest::newRow("negative contact number") << "TX" << -5 << 1 << 24;
    QTest::newRow("top of the contact numbers") << "TX" << INT_MAX << INT_MAX << 24;
}

void TestWriteFrame::oddNumbersStayWithinTheFrame()
{
    QFETCH(QString, name);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(int, sendLen);

    DriverFixture fixture;
    getWriteFrame(makeItem(1, qPrintable(name), startAddr, count));
    const FRAME_PRO &frame = driver.frames.at(driver.frames.size() - 1);
    QCOMPARE(frame.sendLen, sendLen);
    QCOMPARE(int(frame.sendBuf[0]), 0x05);
    QCOMPARE(int(frame.sendBuf[sendLen - 3]), 0x04);
}

QTEST_APPLESS_MAIN(TestWriteFrame)
#include "test_write_frame.moc"
