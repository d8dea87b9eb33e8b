#include <climits>
#include <cstring>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/frame_writer.h"
#include "support/driver_fixture.h"

class TestFrameWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headNamesStationAndCommand_data();
    void headNamesStationAndCommand();
    void headReplacesAnOlderFrame();
    void byteIsTwoHexCharacters_data();
    void byteIsTwoHexCharacters();
    void deviceIsTwoLetters_data();
    void deviceIsTwoLetters();
    void numberFillsItsPlaces_data();
    void numberFillsItsPlaces();
    void textMayHaveAnyCharacter();
    void endCarriesTheBlockCheck();
    void frameIsCutAtItsEnd_data();
    void frameIsCutAtItsEnd();
};

// What `head` wrote is 6 characters long: ENQ, station, command.
static QByteArray behindHead(const FRAME_PRO &frame)
{
    return sentBytes(frame).mid(6);
}

void TestFrameWriter::headNamesStationAndCommand_data()
{
    QTest::addColumn<int>("stationNo");
    QTest::addColumn<QByteArray>("expected");

    // clang-format off
    QTest::newRow("lowest station") << 0 << QByteArray("\x05" "00rSB");
    QTest::newRow("upper case") << 0x1F << QByteArray("\x05" "1FrSB");
    QTest::newRow("high digit first") << 0xA0 << QByteArray("\x05" "A0rSB");
    QTest::newRow("highest station") << 255 << QByteArray("\x05" "FFrSB");
    QTest::newRow("only the low 8 bits") << 0x102 << QByteArray("\x05" "02rSB");
    QTest::newRow("negative") << -1 << QByteArray("\x05" "FFrSB");
    QTest::newRow("bottom of the numbers") << INT_MIN << QByteArray("\x05" "00rSB");
    // clang-format on
}

void TestFrameWriter::headNamesStationAndCommand()
{
    QFETCH(int, stationNo);

    FRAME_PRO frame = FRAME_PRO();
    const FrameWriter writer(frame, stationNo, "rSB");
    QTEST(sentBytes(frame), "expected");
}

void TestFrameWriter::headReplacesAnOlderFrame()
{
    FRAME_PRO frame = FRAME_PRO();
    frame.sendLen = 500;
    const FrameWriter writer(frame, 1, "wSS");

    QCOMPARE(frame.sendLen, 6);
}

void TestFrameWriter::byteIsTwoHexCharacters_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("one digit") << 5 << QByteArray("05");
    QTest::newRow("sixteen") << 16 << QByteArray("10");
    QTest::newRow("upper case") << 0xAB << QByteArray("AB");
    QTest::newRow("highest") << 255 << QByteArray("FF");
    QTest::newRow("only the low 8 bits") << 256 << QByteArray("00");
    QTest::newRow("negative") << -2 << QByteArray("FE");
    QTest::newRow("top of the numbers") << INT_MAX << QByteArray("FF");
}

void TestFrameWriter::byteIsTwoHexCharacters()
{
    QFETCH(int, value);

    FRAME_PRO frame = FRAME_PRO();
    FrameWriter writer(frame, 1, "rSB");
    writer.hexByte(value);
    QTEST(behindHead(frame), "expected");
}

void TestFrameWriter::deviceIsTwoLetters_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("word device") << "DW" << QByteArray("%DW");
    QTest::newRow("bit device") << "MX" << QByteArray("%MX");
    QTest::newRow("only two letters") << "MXY" << QByteArray("%MX");
}

void TestFrameWriter::deviceIsTwoLetters()
{
    QFETCH(QString, command);

    FRAME_PRO frame = FRAME_PRO();
    FrameWriter writer(frame, 1, "rSB");
    writer.device(command);
    QTEST(behindHead(frame), "expected");
}

void TestFrameWriter::numberFillsItsPlaces_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("digits");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("zeros on the left") << 7 << 5 << QByteArray("00007");
    QTest::newRow("zero") << 0 << 4 << QByteArray("0000");
    QTest::newRow("all places") << 65535 << 5 << QByteArray("65535");
    QTest::newRow("contact of a write") << 255 << 6 << QByteArray("000255");
    QTest::newRow("one place") << 7 << 1 << QByteArray("7");
    QTest::newRow("first digits of a longer number") << 123456 << 5 << QByteArray("12345");
    QTest::newRow("top of the numbers") << INT_MAX << 4 << QByteArray("2147");
    QTest::newRow("all digits there are") << INT_MAX << 10 << QByteArray("2147483647");
    QTest::newRow("negative") << -5 << 5 << QByteArray("-0005");
    QTest::newRow("nearest negative") << -1 << 5 << QByteArray("-0001");
    QTest::newRow("bottom of the numbers") << INT_MIN << 5 << QByteArray("-2147");
}

void TestFrameWriter::numberFillsItsPlaces()
{
    QFETCH(int, value);
    QFETCH(int, digits);

    FRAME_PRO frame = FRAME_PRO();
    FrameWriter writer(frame, 1, "rSB");
    writer.decimal(value, digits);
    QTEST(behindHead(frame), "expected");
}

void TestFrameWriter::textMayHaveAnyCharacter()
{
    FRAME_PRO frame = FRAME_PRO();
    FrameWriter writer(frame, 1, "rSB");
    writer.text("a\x80\xFFz");
    QCOMPARE(behindHead(frame), QByteArray("a\x80\xFFz"));
}

void TestFrameWriter::endCarriesTheBlockCheck()
{
    FRAME_PRO frame = FRAME_PRO();
    FrameWriter writer(frame, 1, "rSB");
    writer.text("08");
    writer.device(QString::fromLatin1("DW"));
    writer.decimal(100, 5);
    writer.hexByte(5);
    writer.finish();

    // clang-format off
    QCOMPARE(sentBytes(frame), QByteArray("\x05" "01rSB08%DW0010005\x04" "EF"));
    // clang-format on
    QCOMPARE(frame.sendLen, 21);
}

void TestFrameWriter::frameIsCutAtItsEnd_data()
{
    QTest::addColumn<int>("characters");
    QTest::addColumn<int>("sendLen");
    QTest::addColumn<QByteArray>("end");

    // The head is 6 characters long and the end 3; the area holds 1024.
    // clang-format off
    QTest::newRow("fits") << 1015 << 1024 << QByteArray("x\x04" "39");
    QTest::newRow("second check digit is cut") << 1016 << 1024 << QByteArray("xx\x04" "B");
    QTest::newRow("block check is cut") << 1017 << 1024 << QByteArray("xxx\x04");
    QTest::newRow("end is cut") << 1018 << 1024 << QByteArray("xxxx");
    QTest::newRow("text is cut") << 1019 << 1024 << QByteArray("xxxx");
    QTest::newRow("far too long") << 100000 << 1024 << QByteArray("xxxx");
    // clang-format on
}

void TestFrameWriter::frameIsCutAtItsEnd()
{
    QFETCH(int, characters);
    QFETCH(int, sendLen);
    QFETCH(QByteArray, end);

    FRAME_PRO frame = FRAME_PRO();
    frame.recvLen = 0x11223344;
    frame.dataPos = 0x55667788;
    FrameWriter writer(frame, 1, "rSB");
    writer.text(QByteArray(characters, 'x').constData());
    writer.finish();

    QCOMPARE(frame.sendLen, sendLen);
    QCOMPARE(sentBytes(frame).right(4), end);
    // clang-format off
    QCOMPARE(sentBytes(frame).left(8), QByteArray("\x05" "01rSBxx"));
    // clang-format on
    QCOMPARE(frame.recvLen, 0x11223344);
    QCOMPARE(frame.dataPos, 0x55667788);
}

QTEST_APPLESS_MAIN(TestFrameWriter)
#include "test_frame_writer.moc"
