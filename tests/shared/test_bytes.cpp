#include <climits>

#include <QtTest/QtTest>

#include "shared/bytes.h"

class TestBytes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hexPairIsDecoded_data();
    void hexPairIsDecoded();
    void twoDigitsAreDecodedAlike();
    void hexDigitIsDecoded_data();
    void hexDigitIsDecoded();
    void everyCharacterIsDecoded();
    void hexCharacterIsUpperCase_data();
    void hexCharacterIsUpperCase();
    void everyByteSurvivesBothDirections();
    void twoBytesAreLowFirst_data();
    void twoBytesAreLowFirst();
    void fourBytesAreLowFirst_data();
    void fourBytesAreLowFirst();
    void bitIsSetAndCleared_data();
    void bitIsSetAndCleared();
    void everyBitIsItsOwn();
};

void TestBytes::hexPairIsDecoded_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("pos");
    QTest::addColumn<int>("expected");

    QTest::newRow("digit and letter") << QByteArray("3F") << 0 << 63;
    QTest::newRow("lower case") << QByteArray("a5") << 0 << 165;
    QTest::newRow("highest") << QByteArray("FF") << 0 << 255;
    QTest::newRow("in the middle of an answer") << QByteArray("01rSB1234") << 5 << 0x12;
    QTest::newRow("one character alone is the high digit") << QByteArray("4") << 0 << 64;
    QTest::newRow("last character of a text") << QByteArray("12C") << 2 << 0xC0;
    QTest::newRow("at the end of the text") << QByteArray("4") << 1 << 0;
    QTest::newRow("beyond the text") << QByteArray("44") << 7 << 0;
    QTest::newRow("far beyond the text") << QByteArray("44") << INT_MAX << 0;
    QTest::newRow("before the text") << QByteArray("44") << -1 << 0;
    QTest::newRow("far before the text") << QByteArray("44") << INT_MIN << 0;
    QTest::newRow("empty text") << QByteArray() << 0 << 0;
    QTest::newRow("colon in the second place adds 10") << QByteArray("0:") << 0 << 10;
    QTest::newRow("colon in the first place") << QByteArray(":0") << 0 << 160;
    QTest::newRow("question marks") << QByteArray("??") << 0 << 255;
    QTest::newRow("at sign counts as 0") << QByteArray("@5") << 0 << 5;
    QTest::newRow("at sign in the second place") << QByteArray("5@") << 0 << 80;
    QTest::newRow("characters below the digits count as 0") << QByteArray("/1") << 0 << 1;
    QTest::newRow("blank in the second place") << QByteArray("7 ") << 0 << 0x70;
    QTest::newRow("NUL characters") << QByteArray(2, '\0') << 0 << 0;
    QTest::newRow("letters after F keep their low bits") << QByteArray("GZ") << 0 << 0x03;
    QTest::newRow("characters are unsigned") << QByteArray("\xFF\x80") << 0 << 0x89;
}

void TestBytes::hexPairIsDecoded()
{
    QFETCH(QByteArray, text);
    QFETCH(int, pos);
    QFETCH(int, expected);

    QCOMPARE(asc2hex(text, pos), expected);
}

void TestBytes::twoDigitsAreDecodedAlike()
{
    for (int high = 0; high < 256; ++high) {
        for (int low = 0; low < 256; ++low) {
            const char digits[2] = {static_cast<char>(high), static_cast<char>(low)};
            QCOMPARE(byteOfDigits(digits), asc2hex(QByteArray(digits, 2), 0));
        }
    }
}

void TestBytes::hexDigitIsDecoded_data()
{
    QTest::addColumn<int>("character");
    QTest::addColumn<int>("expected");

    QTest::newRow("NUL") << 0x00 << 0;
    QTest::newRow("last below 0") << 0x2F << 0;
    QTest::newRow("0") << int('0') << 0;
    QTest::newRow("9") << int('9') << 9;
    QTest::newRow("first above 9") << 0x3A << 10;
    QTest::newRow("last below @") << 0x3F << 15;
    QTest::newRow("@") << 0x40 << 0;
    QTest::newRow("A") << int('A') << 10;
    QTest::newRow("F") << int('F') << 15;
    QTest::newRow("G") << int('G') << 0;
    QTest::newRow("a") << int('a') << 10;
    QTest::newRow("f") << int('f') << 15;
    QTest::newRow("first with the high bit") << 0x80 << 9;
    QTest::newRow("last of all") << 0xFF << 8;
}

void TestBytes::hexDigitIsDecoded()
{
    QFETCH(int, character);
    QFETCH(int, expected);

    QCOMPARE(hexDigitValue(static_cast<unsigned char>(character)), expected);
}

// Below "0", and "@": 0. From "0" on the characters count upwards, and from "A" on anew from 10, of
// which the low half is kept.
void TestBytes::everyCharacterIsDecoded()
{
    for (int character = 0; character < 256; ++character) {
        int expected = 0;
        if (character > 0x40) {
            expected = (character - 'A' + 10) % 16;
        } else if (character >= '0' && character < 0x40) {
            expected = character - '0';
        }
        QCOMPARE(hexDigitValue(static_cast<unsigned char>(character)), expected);
        QCOMPARE(int(kHexDigitValues[character]), expected);
    }
}

void TestBytes::hexCharacterIsUpperCase_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("expected");

    QTest::newRow("0") << 0 << int('0');
    QTest::newRow("9") << 9 << int('9');
    QTest::newRow("10") << 10 << int('A');
    QTest::newRow("15") << 15 << int('F');
    QTest::newRow("only the low four bits") << 0x1B << int('B');
    QTest::newRow("negative") << -1 << int('F');
}

void TestBytes::hexCharacterIsUpperCase()
{
    QFETCH(int, value);
    QFETCH(int, expected);

    QCOMPARE(int(hexCharacter(value)), expected);
}

void TestBytes::everyByteSurvivesBothDirections()
{
    for (int byte = 0; byte < 256; ++byte) {
        QByteArray text;
        text.append(static_cast<char>(hexCharacter(byte >> 4)));
        text.append(static_cast<char>(hexCharacter(byte)));
        QCOMPARE(text, QByteArray::number(256 + byte, 16).toUpper().right(2));
        QCOMPARE(asc2hex(text, 0), byte);
    }
}

void TestBytes::twoBytesAreLowFirst_data()
{
    QTest::addColumn<int>("lo");
    QTest::addColumn<int>("hi");
    QTest::addColumn<int>("expected");

    QTest::newRow("low byte first") << 0x34 << 0x12 << 0x1234;
    QTest::newRow("nothing") << 0 << 0 << 0;
    QTest::newRow("highest is not negative") << 0xFF << 0xFF << 65535;
}

void TestBytes::twoBytesAreLowFirst()
{
    QFETCH(int, lo);
    QFETCH(int, hi);
    QFETCH(int, expected);

    QCOMPARE(uchar2int16(static_cast<unsigned char>(lo), static_cast<unsigned char>(hi)), expected);
}

void TestBytes::fourBytesAreLowFirst_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("expected");

    QTest::newRow("low byte first") << QByteArray("\x78\x56\x34\x12") << 0x12345678;
    QTest::newRow("second byte") << QByteArray("\0\xFF\0\0", 4) << 0xFF00;
    QTest::newRow("third byte") << QByteArray("\0\0\xFF\0", 4) << 0xFF0000;
    QTest::newRow("top bit is the sign") << QByteArray("\0\0\0\x80", 4) << INT_MIN;
    QTest::newRow("all ones") << QByteArray(4, '\xFF') << -1;
}

void TestBytes::fourBytesAreLowFirst()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, expected);

    const unsigned char *const b = reinterpret_cast<const unsigned char *>(bytes.constData());
    QCOMPARE(uchar2int32(b[0], b[1], b[2], b[3]), expected);
}

void TestBytes::bitIsSetAndCleared_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("bit");
    QTest::addColumn<int>("on");
    QTest::addColumn<int>("expected");

    QTest::newRow("cleared") << 0x0F << 2 << 0 << 0x0B;
    QTest::newRow("top bit set") << 0 << 31 << 1 << INT_MIN;
    QTest::newRow("top bit cleared") << -1 << 31 << 0 << INT_MAX;
    QTest::newRow("set again") << 0x0F << 2 << 1 << 0x0F;
    QTest::newRow("cleared again") << 0x0B << 2 << 0 << 0x0B;
    QTest::newRow("anything but 0 sets") << 0 << 4 << -7 << 0x10;
    QTest::newRow("below the bits") << 5 << -1 << 1 << 5;
    QTest::newRow("above the bits") << 4 << 32 << 1 << 4;
    QTest::newRow("far above the bits") << 5 << INT_MAX << 0 << 5;
}

void TestBytes::bitIsSetAndCleared()
{
    QFETCH(int, value);
    QFETCH(int, bit);
    QFETCH(int, on);
    QFETCH(int, expected);

    QCOMPARE(_setBitValue(value, bit, on), expected);
    const int isSet = on != 0 ? 1 : 0;
    QCOMPARE(bitOf(expected, bit), bit < 0 || bit > 31 ? 0 : isSet);
}

void TestBytes::everyBitIsItsOwn()
{
    for (int bit = 0; bit < 32; ++bit) {
        const int alone = _setBitValue(0, bit, 1);
        for (int other = 0; other < 32; ++other) {
            QCOMPARE(bitOf(alone, other), other == bit ? 1 : 0);
            QCOMPARE(bitOf(~alone, other), other == bit ? 0 : 1);
        }
        QCOMPARE(_setBitValue(-1, bit, 0), ~alone);
    }
}

QTEST_APPLESS_MAIN(TestBytes)
#include "test_bytes.moc"
