#include "host/decode/wire_text.h"
#include "support/rows.h"

#include <host/decode/frame_input.h>
#include <host/decode/frame_text.h>

#include <QStringList>

using namespace cnet;

class TestFrameInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void finds_data();
    void finds();
    void saysWhatIsWrong_data();
    void saysWhatIsWrong();
    void countsLines();
    void readsBytes();
    void keepsBytesOfALine();
};

namespace {

struct Found
{
    const char *what;
    const char *content;
    const char *frames; ///< as visibleText(), with a blank between them
};

const char kRead[] = "<ENQ>01rSS<EOT>5D";

const Found kFound[] = {
    {"blanks", "05 30 31 72 53 53 04 35 44", kRead},
    {"no blanks", "053031725353043544", kRead},
    {"commas and 0x", "0x05, 0x30,0x31,0x72, 0x53,0x53,0x4,0x35,0x44", kRead},
    {"dashes", "05-30-31-72-53-53-04-35-44\r\n", kRead},
    {"escapes", "\\x0501rSS\\x045D", kRead},
    {"names", "<enq>01rSS<EOT>5D", kRead},
    {"bytes",
     "\x05"
     "01rSS\x04"
     "5D",
     kRead},
    {"several in a line", "<ENQ>01rSS<EOT>5D <ACK>01wSB<ETX>FF",
     "<ENQ>01rSS<EOT>5D <ACK>01wSB<ETX>FF"},
    {"request and answer in hexadecimal", "053031725353043544 06303177534203 4646",
     "<ENQ>01rSS<EOT>5D <ACK>01wSB<ETX>FF"},
    {"on two lines", "05 30 31 72 53\n53 04 35 44\n", kRead},
    {"two on two lines", "05 30 31 72 53 53 04 35 44\n06 30 31 77 53 42 03 46 46\n",
     "<ENQ>01rSS<EOT>5D <ACK>01wSB<ETX>FF"},
    {"dump", "00000000  05 30 31 72 53 53 04 35  44           |.01rSS.5D|\n", kRead},
    {"trace",
     "12:00:00.000 -> 9 bytes [05 30 31 72 53 53 04 35 44] station 1, command rSS\n"
     "12:00:00.500 <- 500.0 ms no answer; given up\n",
     kRead},
    {"log in hexadecimal", "12:00:01 TX: 05 30 31 72 53 53 04 35 44 (sent)\nnothing else\n", kRead},
    {"log as text", "12:00:01 TX <ENQ>01rSS<EOT>5D sent\n12:00:02 nothing came\n", kRead},
    {"excess", "<ENQ>01rSS<EOT>5Dxx\n# remark\n", "<ENQ>01rSS<EOT>5Dxx"},
    {"cut", "<ENQ>01rSS<ENQ>02rSS\n\n", "<ENQ>01rSS <ENQ>02rSS"},
    {"no head among others", "01rSB08%DW0010005<EOT>EF\nhello\n", "01rSB08%DW0010005<EOT>EF"},
    {"something else", "hello", "hello"},
    {"hexadecimal without a head", "30 31 72", "01r"},
    {"only remarks", "# 05 30 31\n\nhello\n", ""},
};

struct Fault
{
    const char *what;
    const char *content;
    const char *error;
};

const Fault kFaults[] = {
    {"no digit", "05 30 3G 31", "line 1, column 8: expected two hexadecimal digits, as in 05"},
    {"half a byte", "05 30 3", "line 1, column 8: expected two hexadecimal digits, as in 05"},
    {"escape", "<ENQ>01\n\\x05rSS\\x4\n",
     "line 2, column 8: expected \\x and two hexadecimal digits, or \\\\"},
};

} // namespace

void TestFrameInput::finds_data()
{
    addRows(kFound);
}

void TestFrameInput::finds()
{
    const Found &row = currentRow(kFound);
    const FoundFrames found = findFrames(row.content);
    QStringList frames;
    for (const FoundFrame &frame : found.frames) {
        frames.append(visibleText(frame.bytes));
    }
    QCOMPARE(frames.join(QLatin1Char(' ')), QString::fromLatin1(row.frames));
    QCOMPARE(found.errors, QStringList());
}

void TestFrameInput::saysWhatIsWrong_data()
{
    addRows(kFaults);
}

void TestFrameInput::saysWhatIsWrong()
{
    const Fault &row = currentRow(kFaults);
    QCOMPARE(findFrames(row.content).errors, QStringList(QLatin1String(row.error)));
}

void TestFrameInput::countsLines()
{
    const FoundFrames found = findFrames("hello\n\n05 30\n31\n<ENQ>01\nbye\n");
    QCOMPARE(found.frames.size(), 2);
    QCOMPARE(found.frames.at(0).line, 3);
    QCOMPARE(found.frames.at(0).bytes, QByteArray("\x05"
                                                  "01"));
    QCOMPARE(found.frames.at(1).line, 5);
    QCOMPARE(found.skippedLines, 2);
    // A frame without its end is over where the next one begins.
    QCOMPARE(findFrames("05 30 31\n06 30 31\n").frames.at(1).line, 2);
    QCOMPARE(findFrames(QByteArray(100000, '0') + "\nx").errors.size(), 1);
}

void TestFrameInput::readsBytes()
{
    QString error;
    QCOMPARE(readBytes(QLatin1String("05 30"), error), QByteArray("\x05"
                                                                  "0"));
    QCOMPARE(readBytes(QLatin1String("<ENQ>01rSS"), error), QByteArray("\x05"
                                                                       "01rSS"));
    QVERIFY(error.isEmpty());
    QCOMPARE(readBytes(QLatin1String("05 3"), error), QByteArray());
    QVERIFY2(error.startsWith(QLatin1String("column 5: ")), qPrintable(error));
}

void TestFrameInput::keepsBytesOfALine()
{
    const QByteArray noisy("\x06\xff\x80"
                           "01wSB\x03"
                           "FF");
    const FoundFrames found = findFrames(noisy);
    QCOMPARE(found.frames.size(), 1);
    QCOMPARE(found.frames.at(0).bytes, noisy);
}

QTEST_APPLESS_MAIN(TestFrameInput)
#include "test_frame_input.moc"
