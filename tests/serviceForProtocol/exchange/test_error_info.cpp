#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/exchange/error_info.h"
#include "support/area_helpers.h"

class TestErrorInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void description_data();
    void description();
    void nothingInFlight();
    void firstFrameIsDescribed();
    void addressOfFormat_data();
    void addressOfFormat();
};

static void putInFlight(const VARIABLE &item)
{
    FRAME_PRO frame = FRAME_PRO();
    frame.var = item;
    queueFrame(frame);
}

void TestErrorInfo::description_data()
{
    QTest::addColumn<int>("stationNo");
    QTest::addColumn<QByteArray>("regName");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("answerSize");
    QTest::addColumn<QString>("text");

    QTest::newRow("a word") << 1 << QByteArray("D_W") << 100 << 2 << 7 << latin("1#D_W100(2)(7)");
    QTest::newRow("no answer") << 31 << QByteArray("T_W") << 0 << 1 << 0 << latin("31#T_W0(1)(0)");
    QTest::newRow("a bit as word.bit")
        << 1 << QByteArray("M_bit") << 53 << 1 << 9 << latin("1#M_bit3.5(1)(9)");
    QTest::newRow("a data-register bit")
        << 0 << QByteArray("D_bit") << 159999 << 16 << 9 << latin("0#D_bit9999.15(16)(9)");
    QTest::newRow("a contact is a plain number")
        << 2 << QByteArray("TX") << 10 << 1 << 15 << latin("2#TX10(1)(15)");
    QTest::newRow("a negative address without its sign")
        << 2 << QByteArray("D_W") << -1 << 1 << 0 << latin("2#D_W4294967295(1)(0)");
    QTest::newRow("negative station and count")
        << -1 << QByteArray("D_W") << 3 << -4 << 0 << latin("-1#D_W3(-4)(0)");
    QTest::newRow("the longest text")
        << INT_MIN << QByteArray("M_bit") << INT_MIN << INT_MIN << 65535
        << latin("-2147483648#M_bit-134217728.0(-2147483648)(65535)");
    QTest::newRow("the largest numbers") << INT_MAX << QByteArray("D_W") << INT_MAX << INT_MAX << 0
                                         << latin("2147483647#D_W2147483647(2147483647)(0)");
    QTest::newRow("unknown register") << 1 << QByteArray("Q_W") << 1 << 1 << 7 << QString();
    QTest::newRow("unknown bit register") << 1 << QByteArray("Q_bit") << 1 << 1 << 7 << QString();
    QTest::newRow("wrong case") << 1 << QByteArray("d_W") << 1 << 1 << 7 << QString();
    QTest::newRow("no register: the handshake") << 0 << QByteArray() << 0 << 0 << 0 << QString();
}

void TestErrorInfo::description()
{
    QFETCH(int, stationNo);
    QFETCH(QByteArray, regName);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(int, answerSize);
    QFETCH(QString, text);

    DriverFixture fixture;
    putInFlight(makeItem(stationNo, regName.constData(), startAddr, count));
    QCOMPARE(getErrorInfo(QByteArray(answerSize, '%')), text);
}

void TestErrorInfo::nothingInFlight()
{
    DriverFixture fixture;
    QCOMPARE(getErrorInfo(QByteArray("1234567")), QString());
}

void TestErrorInfo::firstFrameIsDescribed()
{
    DriverFixture fixture;
    putInFlight(makeItem(1, "D_W", 1, 1));
    putInFlight(makeItem(2, "M_W", 2, 2));
    QCOMPARE(getErrorInfo(QByteArray()), latin("1#D_W1(1)(0)"));
}

void TestErrorInfo::addressOfFormat_data()
{
    QTest::addColumn<int>("address");
    QTest::addColumn<QByteArray>("regName");
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QString>("text");

    QTest::newRow("decimal") << 255 << QByteArray("D_W") << QByteArray("DDDD") << latin("255");
    QTest::newRow("octal") << 255 << QByteArray("D_W") << QByteArray("OOO") << latin("377");
    QTest::newRow("hexadecimal") << 255 << QByteArray("D_W") << QByteArray("HHHH") << latin("ff");
    QTest::newRow("hexadecimal, negative")
        << -1 << QByteArray("D_W") << QByteArray("H") << latin("ffffffff");
    QTest::newRow("no format") << 255 << QByteArray("D_W") << QByteArray() << latin("255");
    QTest::newRow("a bit name goes by word.bit, whatever the format")
        << 255 << QByteArray("M_bit") << QByteArray("HHHH") << latin("15.15");
    QTest::newRow("a negative bit")
        << -17 << QByteArray("M_bit") << QByteArray("DDD.dd") << latin("-1.-1");
}

void TestErrorInfo::addressOfFormat()
{
    QFETCH(int, address);
    QFETCH(QByteArray, regName);
    QFETCH(QByteArray, format);
    QFETCH(QString, text);

    QCOMPARE(addressText(address, latin(regName.constData()), latin(format.constData())), text);
}

QTEST_APPLESS_MAIN(TestErrorInfo)
#include "test_error_info.moc"
