#include <climits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/read_frame.h"
#include "support/driver_fixture.h"

class TestReadFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requestIsBuilt_data();
    void requestIsBuilt();
    void itemGoesWithTheFrame();
    void frameIsAppended();
    void otherItemsAreIgnored();
    void nothingIsBuilt_data();
    void nothingIsBuilt();
    void oddNumbersStayWithinTheFrame_data();
    void oddNumbersStayWithinTheFrame();
};

static int build(const VARIABLE &item)
{
    QList<VARIABLE> list;
    list.append(item);
    return getReadFrame(list);
}

void TestReadFrame::requestIsBuilt_data()
{
    QTest::addColumn<int>("stationNo");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<int>("recvLen");

    // clang-format off
    QTest::newRow("D_W, five words") << 1 << "D_W" << 100 << 5 << QByteArray("\x05" "01rSB08%DW0010005\x04" "EF") << 33;
    QTest::newRow("D_W, highest") << 1 << "D_W" << 9999 << 1 << QByteArray("\x05" "01rSB08%DW0999901\x04" "0E") << 17;
    QTest::newRow("C_W") << 1 << "C_W" << 255 << 1 << QByteArray("\x05" "01rSB08%CW0025501\x04" "F5") << 17;
    QTest::newRow("T_W") << 1 << "T_W" << 7 << 16 << QByteArray("\x05" "01rSB08%TW0000710\x04" "01") << 77;
    QTest::newRow("K_W") << 1 << "K_W" << 31 << 31 << QByteArray("\x05" "01rSB08%KW000311F\x04" "0B") << 137;
    QTest::newRow("P_W") << 1 << "P_W" << 63 << 2 << QByteArray("\x05" "01rSB08%PW0006302\x04" "00") << 21;
    QTest::newRow("F_W") << 1 << "F_W" << 0 << 8 << QByteArray("\x05" "01rSB08%FW0000008\x04" "F3") << 45;
    QTest::newRow("L_W") << 1 << "L_W" << 127 << 3 << QByteArray("\x05" "01rSB08%LW0012703\x04" "FE") << 25;
    QTest::newRow("M_W") << 1 << "M_W" << 2 << 1 << QByteArray("\x05" "01rSB08%MW0000201\x04" "F5") << 17;
    QTest::newRow("P_bit as words") << 1 << "P_bit" << 3 << 1 << QByteArray("\x05" "01rSB08%PW0000301\x04" "F9") << 17;
    QTest::newRow("K_bit as words") << 1 << "K_bit" << 4 << 1 << QByteArray("\x05" "01rSB08%KW0000401\x04" "F5") << 17;
    QTest::newRow("M_bit as words") << 1 << "M_bit" << 2 << 1 << QByteArray("\x05" "01rSB08%MW0000201\x04" "F5") << 17;
    QTest::newRow("L_bit as words") << 1 << "L_bit" << 6 << 1 << QByteArray("\x05" "01rSB08%LW0000601\x04" "F8") << 17;
    QTest::newRow("F_bit as words") << 1 << "F_bit" << 7 << 1 << QByteArray("\x05" "01rSB08%FW0000701\x04" "F3") << 17;
    QTest::newRow("D_bit as words") << 1 << "D_bit" << 8 << 1 << QByteArray("\x05" "01rSB08%DW0000801\x04" "F2") << 17;
    QTest::newRow("TX") << 1 << "TX" << 10 << 1 << QByteArray("\x05" "01rSS0107%TX0010\x04" "DC") << 15;
    QTest::newRow("TX, one contact whatever the count") << 1 << "TX" << 10 << 4 << QByteArray("\x05" "01rSS0107%TX0010\x04" "DC") << 15;
    QTest::newRow("CX") << 1 << "CX" << 255 << 1 << QByteArray("\x05" "01rSS0107%CX0255\x04" "D6") << 15;
    QTest::newRow("lowest station") << 0 << "D_W" << 0 << 1 << QByteArray("\x05" "00rSB08%DW0000001\x04" "E9") << 17;
    QTest::newRow("station in hexadecimal, check 00") << 31 << "D_W" << 0 << 1 << QByteArray("\x05" "1FrSB08%DW0000001\x04" "00") << 17;
    QTest::newRow("low 8 bits of the station") << -1 << "D_W" << 0 << 1 << QByteArray("\x05" "FFrSB08%DW0000001\x04" "15") << 17;
    QTest::newRow("16 words") << 1 << "D_W" << 0 << 16 << QByteArray("\x05" "01rSB08%DW0000010\x04" "EA") << 77;
    QTest::newRow("255 words") << 1 << "D_W" << 0 << 255 << QByteArray("\x05" "01rSB08%DW00000FF\x04" "15") << 1033;
    QTest::newRow("256 words do not fit two digits") << 1 << "D_W" << 0 << 256 << QByteArray("\x05" "01rSB08%DW0000000\x04" "E9") << 1037;
    QTest::newRow("no words") << 1 << "D_W" << 0 << 0 << QByteArray("\x05" "01rSB08%DW0000000\x04" "E9") << 13;
    QTest::newRow("first five digits of a word number") << 1 << "D_W" << 123456 << 1 << QByteArray("\x05" "01rSB08%DW1234501\x04" "F9") << 17;
    QTest::newRow("first four digits of a contact number") << 1 << "TX" << 12345 << 1 << QByteArray("\x05" "01rSS0107%TX1234\x04" "E5") << 15;
    // clang-format on
}

void TestReadFrame::requestIsBuilt()
{
    QFETCH(int, stationNo);
    QFETCH(QString, name);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(QByteArray, request);
    QFETCH(int, recvLen);

    DriverFixture fixture;
    QCOMPARE(build(makeItem(stationNo, qPrintable(name), startAddr, count)), 1);
    QCOMPARE(static_cast<int>(driver.frames.size()), 1);
    const FRAME_PRO &frame = driver.frames.at(0);
    QCOMPARE(sentBytes(frame), request);
    QCOMPARE(frame.recvLen, recvLen);
    QCOMPARE(frame.dataPos, 10);
    QCOMPARE(frame.unitCount, count);
    QCOMPARE(frame.spare, 0);
}

void TestReadFrame::itemGoesWithTheFrame()
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

void TestReadFrame::frameIsAppended()
{
    DriverFixture fixture;
    QCOMPARE(build(makeItem(1, "D_W", 100, 5)), 1);
    QCOMPARE(build(makeItem(1, "TX", 10, 1)), 1);

    QCOMPARE(static_cast<int>(driver.frames.size()), 2);
    QCOMPARE(driver.frames.at(0).sendLen, 21);
    QCOMPARE(driver.frames.at(1).sendLen, 20);
}

void TestReadFrame::otherItemsAreIgnored()
{
    DriverFixture fixture;
    QList<VARIABLE> list;
    list.append(makeItem(1, "D_W", 100, 5));
    list.append(makeItem(2, "M_W", 1, 1));
    list.append(makeItem(2, "nothing", 1, 1));

    QCOMPARE(getReadFrame(list), 1);
    QCOMPARE(static_cast<int>(driver.frames.size()), 1);
    QCOMPARE(driver.frames.at(0).var.startAddr, 100);
}

void TestReadFrame::nothingIsBuilt_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("unknown register") << "Q_W";
    QTest::newRow("letter case counts") << "d_w";
    QTest::newRow("register letter alone") << "D";
    QTest::newRow("empty name") << "";
}

void TestReadFrame::nothingIsBuilt()
{
    QFETCH(QString, name);

    DriverFixture fixture;
    QList<VARIABLE> list;
    QCOMPARE(getReadFrame(list), 0);
    list.append(makeItem(1, qPrintable(name), 0, 1));
    list.append(makeItem(1, "D_W", 0, 1));
    QCOMPARE(getReadFrame(list), 0);
    QVERIFY(driver.frames.isEmpty());
}

void TestReadFrame::oddNumbersStayWithinTheFrame_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("sendLen");

    QTest::newRow("negative word number") << "D_W" << -5 << 1 << 21;
    QTest::newRow("negative contact number") << "TX" << -5 << 1 << 20;
    QTest::newRow("negative count") << "D_W" << 0 << -1 << 21;
    QTest::newRow("bottom of the numbers") << "D_W" << INT_MIN << INT_MIN << 21;
    QTest::newRow("top of the numbers") << "D_W" << INT_MAX << INT_MAX << 21;
    QTest::newRow("contact at the top of the numbers") << "CX" << INT_MAX << INT_MAX << 20;
}

void TestReadFrame::oddNumbersStayWithinTheFrame()
{
    QFETCH(QString, name);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(int, sendLen);

    DriverFixture fixture;
    QCOMPARE(build(makeItem(1, qPrintable(name), startAddr, count)), 1);
    QCOMPARE(driver.frames.at(0).sendLen, sendLen);
    QCOMPARE(int(driver.frames.at(0).sendBuf[sendLen - 3]), 0x04);
    QCOMPARE(driver.frames.at(0).unitCount, count);
}

QTEST_APPLESS_MAIN(TestReadFrame)
#include "test_read_frame.moc"
