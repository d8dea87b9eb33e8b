#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/exchange/error_info.h"
#include "support/area_helpers.h"

static void putInFlight(const VARIABLE &item)
{
    FRAME_PRO frame = FRAME_PRO();
    frame.var = item;
    queueFrame(frame);
}

static const struct
{
    const char *what;
    int stationNo;
    const char *regName;
    int startAddr, count, answerSize;
    const char *text;
} kDescription[] = {
    {"a word", 1, "D_W", 100, 2, 7, "1#D_W100(2)(7)"},
    {"no answer", 31, "T_W", 0, 1, 0, "31#T_W0(1)(0)"},
    {"a bit as word.bit", 1, "M_bit", 53, 1, 9, "1#M_bit3.5(1)(9)"},
    {"a data-register bit", 0, "D_bit", 159999, 16, 9, "0#D_bit9999.15(16)(9)"},
    {"a contact is a plain number", 2, "TX", 10, 1, 15, "2#TX10(1)(15)"},
    {"a negative address without its sign", 2, "D_W", -1, 1, 0, "2#D_W4294967295(1)(0)"},
    {"negative station and count", -1, "D_W", 3, -4, 0, "-1#D_W3(-4)(0)"},
    {"the longest text", INT_MIN, "M_bit", INT_MIN, INT_MIN, 65535,
     "-2147483648#M_bit-134217728.0(-2147483648)(65535)"},
    {"the largest numbers", INT_MAX, "D_W", INT_MAX, INT_MAX, 0,
     "2147483647#D_W2147483647(2147483647)(0)"},
    {"unknown register", 1, "Q_W", 1, 1, 7, ""},
    {"unknown bit register", 1, "Q_bit", 1, 1, 7, ""},
    {"wrong case", 1, "d_W", 1, 1, 7, ""},
    {"no register: the handshake", 0, "", 0, 0, 0, ""},
};

static const struct
{
    const char *what;
    int address;
    const char *regName, *format, *text;
} kAddressOfFormat[] = {
    {"decimal", 255, "D_W", "DDDD", "255"},
    {"octal", 255, "D_W", "OOO", "377"},
    {"hexadecimal", 255, "D_W", "HHHH", "ff"},
    {"hexadecimal, negative", -1, "D_W", "H", "ffffffff"},
    {"no format", 255, "D_W", "", "255"},
    {"a bit name goes by word.bit, whatever the format", 255, "M_bit", "HHHH", "15.15"},
    {"a negative bit", -17, "M_bit", "DDD.dd", "-1.-1"},
};

class TestErrorInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void description_data() { addRows(kDescription); }
    void description()
    {
        const auto &row = currentRow(kDescription);
        DriverFixture fixture;
        putInFlight(makeItem(row.stationNo, row.regName, row.startAddr, row.count));
        QCOMPARE(getErrorInfo(QByteArray(row.answerSize, '%')), latin(row.text));
    }

    void nothingInFlight()
    {
        DriverFixture fixture;
        QCOMPARE(getErrorInfo(QByteArray("1234567")), QString());
    }

    void firstFrameIsDescribed()
    {
        DriverFixture fixture;
        putInFlight(makeItem(1, "D_W", 1, 1));
        putInFlight(makeItem(2, "M_W", 2, 2));
        QCOMPARE(getErrorInfo(QByteArray()), latin("1#D_W1(1)(0)"));
    }

    void addressOfFormat_data() { addRows(kAddressOfFormat); }
    void addressOfFormat()
    {
        const auto &row = currentRow(kAddressOfFormat);
        QCOMPARE(addressText(row.address, latin(row.regName), latin(row.format)), latin(row.text));
    }
};

QTEST_APPLESS_MAIN(TestErrorInfo)
#include "test_error_info.moc"
