#include <climits>
#include <cstring>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/frame_writer.h"
#include "support/driver_fixture.h"
#include "support/rows.h"

// What `head` wrote is 6 characters long: ENQ, station, command.
static QByteArray behindHead(const FRAME_PRO &frame)
{
    return sentBytes(frame).mid(6);
}

static const Case<int, QByteArray> kHeadNamesStationAndCommand[] = {
    // clang-format off
    {"lowest station", 0, "\x05" "00rSB"},
    {"upper case", 0x1F, "\x05" "1FrSB"},
    {"high digit first", 0xA0, "\x05" "A0rSB"},
    {"highest station", 255, "\x05" "FFrSB"},
    {"only the low 8 bits", 0x102, "\x05" "02rSB"},
    {"negative", -1, "\x05" "FFrSB"},
    {"bottom of the numbers", INT_MIN, "\x05" "00rSB"},
    // clang-format on
};

static const Case<int, QByteArray> kByteIsTwoHexCharacters[] = {
    {"one digit", 5, "05"},
    {"sixteen", 16, "10"},
    {"upper case", 0xAB, "AB"},
    {"highest", 255, "FF"},
    {"only the low 8 bits", 256, "00"},
    {"negative", -2, "FE"},
    {"top of the numbers", INT_MAX, "FF"},
};

static const Case<const char *, QByteArray> kDeviceIsTwoLetters[] = {
    {"word device", "DW", "%DW"},
    {"bit device", "MX", "%MX"},
    {"only two letters", "MXY", "%MX"},
};

static const struct
{
    const char *what;
    int value, digits;
    QByteArray expected;
} kNumberFillsItsPlaces[] = {
    {"zeros on the left", 7, 5, "00007"},
    {"zero", 0, 4, "0000"},
    {"all places", 65535, 5, "65535"},
    {"contact of a write", 255, 6, "000255"},
    {"one place", 7, 1, "7"},
    {"first digits of a longer number", 123456, 5, "12345"},
    {"top of the numbers", INT_MAX, 4, "2147"},
    {"all digits there are", INT_MAX, 10, "2147483647"},
    {"negative", -5, 5, "-0005"},
    {"nearest negative", -1, 5, "-0001"},
    {"bottom of the numbers", INT_MIN, 5, "-2147"},
};

static const struct
{
    const char *what;
    int characters, sendLen;
    QByteArray end;
} kFrameIsCutAtItsEnd[] = {
    // clang-format off
    // The head is 6 characters long and the end 3; the area holds 1024.
    {"fits", 1015, 1024, "x\x04" "39"},
    {"second check digit is cut", 1016, 1024, "xx\x04" "B"},
    {"block check is cut", 1017, 1024, "xxx\x04"},
    {"end is cut", 1018, 1024, "xxxx"},
    {"text is cut", 1019, 1024, "xxxx"},
    {"far too long", 100000, 1024, "xxxx"},
    // clang-format on
};

class TestFrameWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headNamesStationAndCommand_data() { addRows(kHeadNamesStationAndCommand); }
    void headNamesStationAndCommand()
    {
        const auto &row = currentRow(kHeadNamesStationAndCommand);
        FRAME_PRO frame = FRAME_PRO();
        const FrameWriter writer(frame, row.given, "rSB");
        QCOMPARE(sentBytes(frame), row.expected);
    }

    void headReplacesAnOlderFrame()
    {
        FRAME_PRO frame = FRAME_PRO();
        frame.sendLen = 500;
        const FrameWriter writer(frame, 1, "wSS");

        QCOMPARE(frame.sendLen, 6);
    }

    void byteIsTwoHexCharacters_data() { addRows(kByteIsTwoHexCharacters); }
    void byteIsTwoHexCharacters()
    {
        const auto &row = currentRow(kByteIsTwoHexCharacters);
        FRAME_PRO frame = FRAME_PRO();
        FrameWriter writer(frame, 1, "rSB");
        writer.hexByte(row.given);
        QCOMPARE(behindHead(frame), row.expected);
    }

    void deviceIsTwoLetters_data() { addRows(kDeviceIsTwoLetters); }
    void deviceIsTwoLetters()
    {
        const auto &row = currentRow(kDeviceIsTwoLetters);
        FRAME_PRO frame = FRAME_PRO();
        FrameWriter writer(frame, 1, "rSB");
        writer.device(latin(row.given));
        QCOMPARE(behindHead(frame), row.expected);
    }

    void numberFillsItsPlaces_data() { addRows(kNumberFillsItsPlaces); }
    void numberFillsItsPlaces()
    {
        const auto &row = currentRow(kNumberFillsItsPlaces);
        FRAME_PRO frame = FRAME_PRO();
        FrameWriter writer(frame, 1, "rSB");
        writer.decimal(row.value, row.digits);
        QCOMPARE(behindHead(frame), row.expected);
    }

    void textMayHaveAnyCharacter()
    {
        FRAME_PRO frame = FRAME_PRO();
        FrameWriter writer(frame, 1, "rSB");
        writer.text("a\x80\xFFz");
        QCOMPARE(behindHead(frame), QByteArray("a\x80\xFFz"));
    }

    void endCarriesTheBlockCheck()
    {
        FRAME_PRO frame = FRAME_PRO();
        FrameWriter writer(frame, 1, "rSB");
        writer.text("08");
        writer.device(latin("DW"));
        writer.decimal(100, 5);
        writer.hexByte(5);
        writer.finish();

        // clang-format off
        QCOMPARE(sentBytes(frame), QByteArray("\x05" "01rSB08%DW0010005\x04" "EF"));
        // clang-format on
        QCOMPARE(frame.sendLen, 21);
    }

    void frameIsCutAtItsEnd_data() { addRows(kFrameIsCutAtItsEnd); }
    void frameIsCutAtItsEnd()
    {
        const auto &row = currentRow(kFrameIsCutAtItsEnd);
        FRAME_PRO frame = FRAME_PRO();
        frame.recvLen = 0x11223344;
        frame.dataPos = 0x55667788;
        FrameWriter writer(frame, 1, "rSB");
        writer.text(QByteArray(row.characters, 'x').constData());
        writer.finish();

        QCOMPARE(frame.sendLen, row.sendLen);
        QCOMPARE(sentBytes(frame).right(4), row.end);
        // clang-format off
        QCOMPARE(sentBytes(frame).left(8), QByteArray("\x05" "01rSBxx"));
        // clang-format on
        QCOMPARE(frame.recvLen, 0x11223344);
        QCOMPARE(frame.dataPos, 0x55667788);
    }
};

QTEST_APPLESS_MAIN(TestFrameWriter)
#include "test_frame_writer.moc"
