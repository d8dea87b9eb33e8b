#include <climits>

#include <QtTest/QtTest>

#include "shared/bytes.h"
#include "support/rows.h"

static const struct
{
    const char *what;
    QByteArray text;
    int pos, expected;
} kHexPairIsDecoded[] = {
    {"digit and letter", "3F", 0, 63},
    {"lower case", "a5", 0, 165},
    {"highest", "FF", 0, 255},
    {"in the middle of an answer", "01rSB1234", 5, 0x12},
    {"one character alone is the high digit", "4", 0, 64},
    {"last character of a text", "12C", 2, 0xC0},
    {"at the end of the text", "4", 1, 0},
    {"beyond the text", "44", 7, 0},
    {"far beyond the text", "44", INT_MAX, 0},
    {"before the text", "44", -1, 0},
    {"far before the text", "44", INT_MIN, 0},
    {"empty text", QByteArray(), 0, 0},
    {"colon in the second place adds 10", "0:", 0, 10},
    {"colon in the first place", ":0", 0, 160},
    {"question marks", "??", 0, 255},
    {"at sign counts as 0", "@5", 0, 5},
    {"at sign in the second place", "5@", 0, 80},
    {"characters below the digits count as 0", "/1", 0, 1},
    {"blank in the second place", "7 ", 0, 0x70},
    {"NUL characters", QByteArray(2, '\0'), 0, 0},
    {"letters after F keep their low bits", "GZ", 0, 0x03},
    {"characters are unsigned", "\xFF\x80", 0, 0x89},
};

static const Case<int, int> kHexDigitIsDecoded[] = {
    {"NUL", 0x00, 0},
    {"last below 0", 0x2F, 0},
    {"0", '0', 0},
    {"9", '9', 9},
    {"first above 9", 0x3A, 10},
    {"last below @", 0x3F, 15},
    {"@", 0x40, 0},
    {"A", 'A', 10},
    {"F", 'F', 15},
    {"G", 'G', 0},
    {"a", 'a', 10},
    {"f", 'f', 15},
    {"first with the high bit", 0x80, 9},
    {"last of all", 0xFF, 8},
};

static const Case<int, int> kHexCharacterIsUpperCase[] = {
    {"0", 0, '0'},
    {"9", 9, '9'},
    {"10", 10, 'A'},
    {"15", 15, 'F'},
    {"only the low four bits", 0x1B, 'B'},
    {"negative", -1, 'F'},
};

static const struct
{
    const char *what;
    int lo, hi, expected;
} kTwoBytesAreLowFirst[] = {
    {"low byte first", 0x34, 0x12, 0x1234},
    {"nothing", 0, 0, 0},
    {"highest is not negative", 0xFF, 0xFF, 65535},
};

static const Case<QByteArray, int> kFourBytesAreLowFirst[] = {
    {"low byte first", "\x78\x56\x34\x12", 0x12345678},
    {"second byte", QByteArray("\0\xFF\0\0", 4), 0xFF00},
    {"third byte", QByteArray("\0\0\xFF\0", 4), 0xFF0000},
    {"top bit is the sign", QByteArray("\0\0\0\x80", 4), INT_MIN},
    {"all ones", QByteArray(4, '\xFF'), -1},
};

static const struct
{
    const char *what;
    int value, bit, on, expected;
} kBitIsSetAndCleared[] = {
    {"cleared", 0x0F, 2, 0, 0x0B},
    {"top bit set", 0, 31, 1, INT_MIN},
    {"top bit cleared", -1, 31, 0, INT_MAX},
    {"set again", 0x0F, 2, 1, 0x0F},
    {"cleared again", 0x0B, 2, 0, 0x0B},
    {"anything but 0 sets", 0, 4, -7, 0x10},
    {"below the bits", 5, -1, 1, 5},
    {"above the bits", 4, 32, 1, 4},
    {"far above the bits", 5, INT_MAX, 0, 5},
};

class TestBytes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hexPairIsDecoded_data() { addRows(kHexPairIsDecoded); }
    void hexPairIsDecoded()
    {
        const auto &row = currentRow(kHexPairIsDecoded);
        QCOMPARE(asc2hex(row.text, row.pos), row.expected);
    }

    void twoDigitsAreDecodedAlike()
    {
        for (int high = 0; high < 256; ++high) {
            for (int low = 0; low < 256; ++low) {
                const char digits[2] = {static_cast<char>(high), static_cast<char>(low)};
                QCOMPARE(byteOfDigits(digits), asc2hex(QByteArray(digits, 2), 0));
            }
        }
    }

    void hexDigitIsDecoded_data() { addRows(kHexDigitIsDecoded); }
    void hexDigitIsDecoded()
    {
        const auto &row = currentRow(kHexDigitIsDecoded);
        QCOMPARE(hexDigitValue(static_cast<unsigned char>(row.given)), row.expected);
    }

    // Below "0", and "@": 0. From "0" on the characters count upwards, and from "A" on anew from
    // 10, of which the low half is kept.
    void everyCharacterIsDecoded()
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

    void hexCharacterIsUpperCase_data() { addRows(kHexCharacterIsUpperCase); }
    void hexCharacterIsUpperCase()
    {
        const auto &row = currentRow(kHexCharacterIsUpperCase);
        QCOMPARE(int(hexCharacter(row.given)), row.expected);
    }

    void everyByteSurvivesBothDirections()
    {
        for (int byte = 0; byte < 256; ++byte) {
            QByteArray text;
            text.append(static_cast<char>(hexCharacter(byte >> 4)));
            text.append(static_cast<char>(hexCharacter(byte)));
            QCOMPARE(text, QByteArray::number(256 + byte, 16).toUpper().right(2));
            QCOMPARE(asc2hex(text, 0), byte);
        }
    }

    void twoBytesAreLowFirst_data() { addRows(kTwoBytesAreLowFirst); }
    void twoBytesAreLowFirst()
    {
        const auto &row = currentRow(kTwoBytesAreLowFirst);
        QCOMPARE(
            uchar2int16(static_cast<unsigned char>(row.lo), static_cast<unsigned char>(row.hi)),
            row.expected);
    }

    void fourBytesAreLowFirst_data() { addRows(kFourBytesAreLowFirst); }
    void fourBytesAreLowFirst()
    {
        const auto &row = currentRow(kFourBytesAreLowFirst);
        const unsigned char *const b =
            reinterpret_cast<const unsigned char *>(row.given.constData());
        QCOMPARE(uchar2int32(b[0], b[1], b[2], b[3]), row.expected);
    }

    void bitIsSetAndCleared_data() { addRows(kBitIsSetAndCleared); }
    void bitIsSetAndCleared()
    {
        const auto &row = currentRow(kBitIsSetAndCleared);
        QCOMPARE(_setBitValue(row.value, row.bit, row.on), row.expected);
        const int isSet = row.on != 0 ? 1 : 0;
        QCOMPARE(bitOf(row.expected, row.bit), row.bit < 0 || row.bit > 31 ? 0 : isSet);
    }

    void everyBitIsItsOwn()
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
};

QTEST_APPLESS_MAIN(TestBytes)
#include "test_bytes.moc"
