#include "host/decode/wire_text.h"
#include "support/rows.h"

#include <host/decode/frame_decoder.h>
#include <host/decode/frame_text.h>

using namespace cnet;

class TestFrameDecoder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void explains_data();
    void explains();
    void findsTheWrongByte_data();
    void findsTheWrongByte();
    void coversEveryByte_data() { findsTheWrongByte_data(); }
    void coversEveryByte();
    void comparesBlockChecks();
    void givesAnswersTheirAddresses();
    void tellsWhoseAnswerItIs_data();
    void tellsWhoseAnswerItIs();
    void knowsTheLengthOfAnAnswer();
    void survivesEveryCut_data() { explains_data(); }
    void survivesEveryCut();
};

namespace {

struct Good
{
    const char *what;
    const char *frame;
    const char *summary;
};

const Good kGood[] = {
    {"block read", "<ENQ>01rSB08%DW0010005<EOT>EF", "station 1, read 1/D_W:100*5"},
    {"contact", "<ENQ>1FrSS0107%TX0010<EOT>??", "station 31, read 31/TX:10"},
    {"several names", "<ENQ>01rSS0206%MW00206%DW001<EOT>??", "station 1, read 1/M_W:2; 1/D_W:1"},
    {"block write", "<ENQ>01wSB08%DW0010002000100FF<EOT>??",
     "station 1, write 1/D_W:100*2 = 1 0x0001, 255 0x00FF"},
    {"bit in hexadecimal", "<ENQ>01wSS0109%MX00001A01<EOT>??", "station 1, write 1/M_bit:1.10 = 1"},
    {"name in lower case", "<ENQ>01rSB05%Dw0703<EOT>??", "station 1, read 1/D_W:7*3"},
    {"no block check", "<ENQ>01RSB08%DW0010001<EOT>", "station 1, read 1/D_W:100"},
    {"words", "<ACK>01rSB010400FF1234<ETX>??",
     "station 1, rSB answered: 2 words = 255 0x00FF, 4660 0x1234"},
    {"words of a larger CPU", "<ACK>01rSB0400FF1234<ETX>??",
     "station 1, rSB answered: 2 words = 255 0x00FF, 4660 0x1234"},
    {"one word that looks like blocks", "<ACK>01rSB01020001<ETX>??",
     "station 1, rSB answered: 1 word = 1 0x0001"},
    {"bit and bit", "<ACK>01rSS0201010100<ETX>??", "station 1, rSS answered: 1 bit = 1; 1 bit = 0"},
    {"written", "<ACK>01wSB<ETX>??", "station 1, wSB done"},
    {"refused", "<NAK>02rSB1132<ETX>??",
     "station 2, rSB refused: 1132, no such device, or address outside the device"},
};

struct Wrong
{
    const char *what;
    const char *frame;
    FrameVerdict verdict;
    int at;
    const char *fault;
};

const FrameVerdict kMalformed = FrameVerdict::Malformed;

const Wrong kWrong[] = {
    {"nothing", "", FrameVerdict::NoFrame, 0, "a frame begins with ENQ"},
    {"no head", "01rSB08%DW0010005<EOT>EF", FrameVerdict::NoFrame, 0, "a frame begins with ENQ"},
    {"head alone", "<ENQ>", kMalformed, 1, "the station is missing"},
    {"station", "<ENQ>0GrSB08%DW0010005<EOT>??", kMalformed, 2, "hexadecimal digit"},
    {"station too high", "<ENQ>20rSB08%DW0010005<EOT>??", kMalformed, 1, "0 to 31"},
    {"command", "<ENQ>01xSB08%DW0010005<EOT>??", kMalformed, 3, "the commands are"},
    {"type", "<ENQ>01rSX08%DW0010005<EOT>??", kMalformed, 5, "the types are"},
    {"no blocks", "<ENQ>01rSS00<EOT>??", kMalformed, 6, "at least one block"},
    {"seventeen blocks", "<ENQ>01rSS11<EOT>??", kMalformed, 6, "0003"},
    {"long name", "<ENQ>01rSB11%DW0000000000000005<EOT>??", kMalformed, 6, "0004"},
    {"name without %", "<ENQ>01rSB08DDW0010005<EOT>??", kMalformed, 8, "begins with %"},
    {"device", "<ENQ>01rSB08%QW0010005<EOT>??", kMalformed, 9, "the devices are"},
    {"type of a name", "<ENQ>01rSB08%DB0010005<EOT>??", kMalformed, 10, "X for a bit"},
    {"bits of D", "<ENQ>01rSS0108%DX00100<EOT>??", kMalformed, 12, "0007"},
    {"block of bits", "<ENQ>01rSB08%MX0010005<EOT>??", kMalformed, 10, "0007"},
    {"digit", "<ENQ>01rSB08%DW0O10005<EOT>??", kMalformed, 12, "decimal digit"},
    {"bits and words", "<ENQ>01rSS0206%MX00106%MW001<EOT>??", kMalformed, 18, "1332"},
    {"no words", "<ENQ>01rSB08%DW0010000<EOT>??", kMalformed, 16, "at least one word"},
    {"61 words", "<ENQ>01rSB08%DW001003D<EOT>??", kMalformed, 16, "1232"},
    {"data not hexadecimal", "<ENQ>01wSB08%DW0010001000G<EOT>??", kMalformed, 21, "hexadecimal"},
    {"data missing", "<ENQ>01wSB08%DW00100020001<EOT>??", kMalformed, 22, "data is missing"},
    {"bit of 2", "<ENQ>01wSS0109%MX00001A02<EOT>??", kMalformed, 19, "00 or 01"},
    {"too much", "<ENQ>01rSB08%DW001000500<EOT>??", kMalformed, 18, "1234"},
    {"wrong tail", "<ENQ>01rSB08%DW0010005<ETX>EE", kMalformed, 18, "expected EOT (04)"},
    {"control character", "<ENQ>01r\\x07", kMalformed, 4, "the type is missing"},
    {"behind its end", "<ENQ>01rSB08%DW0010005<EOT>EFF", kMalformed, 21, "ends before this"},
    {"check that none wants", "<ENQ>01RSB08%DW0010005<EOT>CF", kMalformed, 19, "no block check"},
    {"blocks of an answer", "<ACK>01rSB02020001<ETX>??", kMalformed, 6, "has one block"},
    {"odd bytes", "<ACK>01rSB0103000100<ETX>??", kMalformed, 8, "words of 2 bytes"},
    {"answer too long", "<ACK>01wSB00<ETX>??", kMalformed, 6, "more characters than"},
    {"error code", "<NAK>01rSB11<ETX>??", kMalformed, 8, "error code has 2 of 4"},
    {"no end", "<ENQ>01rSB08%DW0010005", FrameVerdict::Cut, 18, "EOT is missing"},
    {"no check", "<ENQ>01rSB08%DW0010005<EOT>", FrameVerdict::Cut, 19, "expected EF"},
    {"half a check", "<ENQ>01rSB08%DW0010005<EOT>E", FrameVerdict::Cut, 20, "expected EF"},
    {"wrong check", "<ENQ>01rSB08%DW0010005<EOT>FF", FrameVerdict::WrongCheck, 19, "expected EF"},
    {"check in lower case", "<ENQ>01rSB08%DW0010005<EOT>ef", FrameVerdict::WrongCheck, 19,
     "in upper case"},
};

} // namespace

void TestFrameDecoder::explains_data()
{
    addRows(kGood);
}

void TestFrameDecoder::explains()
{
    const Good &row = currentRow(kGood);
    const DecodedFrame frame = decodeFrame(wireText(row.frame));
    QCOMPARE(frameSummary(frame), QString::fromLatin1(row.summary));
    QCOMPARE(frame.verdict, FrameVerdict::Good);
    QCOMPARE(frame.faultAt, -1);
}

void TestFrameDecoder::findsTheWrongByte_data()
{
    addRows(kWrong);
}

void TestFrameDecoder::findsTheWrongByte()
{
    const Wrong &row = currentRow(kWrong);
    const DecodedFrame frame = decodeFrame(wireText(row.frame));
    QVERIFY2(frame.fault.contains(QLatin1String(row.fault)), qPrintable(frame.fault));
    QCOMPARE(frame.verdict, row.verdict);
    QCOMPARE(frame.faultAt, row.at);
    QVERIFY(!frame.isGood());
}

void TestFrameDecoder::coversEveryByte()
{
    const QByteArray bytes = wireText(currentRow(kWrong).frame);
    int next = 0;
    for (const FrameField &field : decodeFrame(bytes).fields) {
        QCOMPARE(field.offset, next);
        next += field.length;
    }
    QCOMPARE(next, static_cast<int>(bytes.size()));
}

void TestFrameDecoder::comparesBlockChecks()
{
    const DecodedFrame wrong = decodeFrame(wireText("<ENQ>01rSB08%DW0010005<EOT>EE"));
    QCOMPARE(wrong.checkFound, QByteArray("EE"));
    QCOMPARE(wrong.checkExpected, QByteArray("EF"));
    QCOMPARE(decodeFrame(wireText("<ENQ>01RSB08%DW0010005<EOT>")).checkExpected, QByteArray());
    // 60 words are one frame too long to be written, for a frame has 256 bytes.
    const QByteArray data = QByteArray("0000").repeated(60);
    const DecodedFrame frame = decodeFrame(requestFrame("01wSB08%DW001003C" + data));
    QCOMPARE(frame.verdict, FrameVerdict::Malformed);
    QCOMPARE(frame.faultAt, 256);
}

void TestFrameDecoder::givesAnswersTheirAddresses()
{
    FrameDecoder decoder;
    decoder.next(wireText("<ENQ>01rSS0209%MX00001A06%TX007<EOT>??"));
    decoder.next(wireText("<ENQ>02rSB08%DW0010002<EOT>??"));
    const DecodedFrame words = decoder.next(wireText("<ACK>02rSB01040001FFFF<ETX>??"));
    QCOMPARE(frameSummary(words),
             QLatin1String("station 2, rSB answered: 2/D_W:100*2 = 1 0x0001, 65535 0xFFFF"));
    QCOMPARE(words.ranges.at(0).valueOffsets, (QVector<int>{10, 14}));
    // Station 1 was asked before, and answers late.
    const DecodedFrame bits = decoder.next(wireText("<ACK>01rSS0201010100<ETX>??"));
    QCOMPARE(frameSummary(bits),
             QLatin1String("station 1, rSS answered: 1/M_bit:1.10 = 1; 1/TX:7 = 0"));
    // An answer without a request has no addresses, and nothing is wrong with it.
    const DecodedFrame again = decoder.next(wireText("<ACK>02rSB01040001FFFF<ETX>??"));
    QVERIFY(again.isGood());
    QVERIFY(!again.ranges.at(0).hasAddress);
}

namespace {

struct Pair
{
    const char *what;
    const char *request;
    const char *answer;
    int at; ///< -1: they belong together
};

const Pair kPairs[] = {
    {"its own", "<ENQ>01rSB08%DW0010002<EOT>??", "<ACK>01rSB010400010002<ETX>??", -1},
    {"refused", "<ENQ>01rSB08%DW0010002<EOT>??", "<NAK>01rSB1132<ETX>??", -1},
    {"other station", "<ENQ>01rSB08%DW0010002<EOT>??", "<ACK>02rSB010400010002<ETX>??", 1},
    {"other command", "<ENQ>01rSB08%DW0010002<EOT>??", "<ACK>01wSB<ETX>??", 3},
    {"refusal of another", "<ENQ>01rSB08%DW0010002<EOT>??", "<NAK>01wSB1132<ETX>??", 3},
    {"other count", "<ENQ>01rSB08%DW0010002<EOT>??", "<ACK>01rSB01020001<ETX>??", 8},
    {"other blocks", "<ENQ>01rSS0106%DW001<EOT>??", "<ACK>01rSS02020001020002<ETX>??", 6},
    {"wrong request", "<ENQ>01rSB08%DW0010002<EOT>FF", "<ACK>02rSB010400010002<ETX>??", -1},
};

} // namespace

void TestFrameDecoder::tellsWhoseAnswerItIs_data()
{
    addRows(kPairs);
}

void TestFrameDecoder::tellsWhoseAnswerItIs()
{
    const Pair &row = currentRow(kPairs);
    FrameDecoder decoder;
    decoder.next(wireText(row.request));
    const DecodedFrame answer = decoder.next(wireText(row.answer));
    QCOMPARE(answer.verdict, row.at < 0 ? FrameVerdict::Good : FrameVerdict::Mismatch);
    QCOMPARE(answer.faultAt, row.at);
}

void TestFrameDecoder::knowsTheLengthOfAnAnswer()
{
    const auto length = [](const char *frame) {
        return answerLength(decodeFrame(wireText(frame)));
    };
    QCOMPARE(length("<ENQ>01rSB08%DW0010005<EOT>EF"), 33);
    QCOMPARE(length("<ENQ>01rSS0107%TX0010<EOT>??"), 15);
    QCOMPARE(length("<ENQ>01wSS0109%MX00001A01<EOT>??"), 9);
    QCOMPARE(length("<ENQ>01RSB08%DW0010005<EOT>"), 31);
    QCOMPARE(length("<ENQ>01rSB08%DW0010005<EOT>EE"), 256);
    QCOMPARE(length("<ACK>01wSB<ETX>??"), 256);
}

void TestFrameDecoder::survivesEveryCut()
{
    const QByteArray bytes = wireText(currentRow(kGood).frame);
    for (int size = 0; size < bytes.size(); ++size) {
        const DecodedFrame frame = decodeFrame(bytes.left(size));
        QVERIFY2(!frame.isGood(), qPrintable(QString::number(size)));
        QVERIFY(frame.faultAt >= 0 && frame.faultAt <= size);
    }
}

QTEST_APPLESS_MAIN(TestFrameDecoder)
#include "test_frame_decoder.moc"
