#include "host/decode/wire_text.h"
#include "support/rows.h"

#include <host/decode/frame_decoder.h>
#include <host/decode/frame_text.h>

using namespace cnet;

class TestFrameText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsBytes();
    void putsTheCaretBelow();
    void summarizes_data();
    void summarizes();
};

void TestFrameText::showsBytes()
{
    QCOMPARE(visibleText(wireText("<ENQ><EOT><ETX><ACK><NAK>a \\\\\\x1b\\xfF")),
             QLatin1String("<ENQ><EOT><ETX><ACK><NAK>a \\\\\\x1B\\xFF"));
}

void TestFrameText::putsTheCaretBelow()
{
    const DecodedFrame frame = decodeFrame(wireText("<ENQ>01rSB08%DW001000G<EOT>??"));
    const QString line = faultLine(frame);
    QCOMPARE(visibleText(frame.bytes).at(static_cast<int>(line.indexOf(QLatin1Char('^')))),
             QLatin1Char('G'));
    QVERIFY(line.endsWith(QLatin1String("^ expected a hexadecimal digit")));
    QCOMPARE(faultLine(decodeFrame(wireText("<ACK>01wSB<ETX>??"))), QString());
}

namespace {

const Case<const char *, const char *> kSummaries[] = {
    {"no frame", "hello", "no frame: a frame begins with ENQ (05), ACK (06) or NAK (15)"},
    {"no station", "<ENQ>", "no station; malformed at byte 1: the station is missing"},
    {"no body", "<ENQ>01wSB<EOT>??",
     "station 1, wSB; malformed at byte 6: the name length is missing"},
    {"part of it", "<ENQ>01rSB08%DW0010005<EOT>FF",
     "station 1, read 1/D_W:100*5; wrong check at byte 19: expected EF"},
    {"many", "<ENQ>01rSS0505%MW0105%MW0205%MW0305%MW0405%MW05<EOT>??",
     "station 1, read 1/M_W:1; 1/M_W:2; 1/M_W:3; 1/M_W:4; ... (5)"},
};

} // namespace

void TestFrameText::summarizes_data()
{
    addRows(kSummaries);
}

void TestFrameText::summarizes()
{
    const auto &row = currentRow(kSummaries);
    QCOMPARE(frameSummary(decodeFrame(wireText(row.given))), QString::fromLatin1(row.expected));
}

QTEST_APPLESS_MAIN(TestFrameText)
#include "test_frame_text.moc"
