#include "host/wire/frame_words.h"

#include <QtTest>

using namespace cnet;

namespace {

// Puts a correct block check where "??" stands at the end.
QByteArray wire(QByteArray text)
{
    text.replace("<ACK>", "\x06")
        .replace("<NAK>", "\x15")
        .replace("<ENQ>", "\x05")
        .replace("<EOT>", "\x04")
        .replace("<ETX>", "\x03");
    if (text.endsWith("??")) {
        text.chop(2);
        int sum = 0;
        for (const char byte : text) {
            sum += static_cast<unsigned char>(byte);
        }
        text += QByteArray::number(sum & 0xFF, 16).rightJustified(2, '0').toUpper();
    }
    return text;
}

} // namespace

class TestFrameWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysInWords_data();
    void saysInWords();
    void survivesEveryCut_data() { saysInWords_data(); }
    void survivesEveryCut();
    void refusalCode_data();
    void refusalCode();
    void refusalInWords_data();
    void refusalInWords();
    void knowsWrites_data();
    void knowsWrites();
    void hex();
};

void TestFrameWords::saysInWords_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<QString>("words");
    const auto row = [](const char *frame, const char *words) {
        QTest::newRow(frame) << wire(frame) << QString::fromLatin1(words);
    };
    row("<ENQ>01rSB08%DW0010005<EOT>EF", "station 1, read 5 words from %DW00100");
    row("<ENQ>1FrSS0107%TX0010<EOT>??", "station 31, read %TX0010");
    row("<ENQ>01rSS0206%MW00206%DW001<EOT>??", "station 1, read %MW002, %DW001");
    row("<ENQ>01wSB08%DW001000212345678<EOT>??",
        "station 1, write 2 words from %DW00100 = 1234 5678");
    row("<ENQ>01wSS0109%MX00003501<EOT>??", "station 1, write %MX000035 = 01");
    row("<ENQ>01wSS0106%MW0021234<EOT>??", "station 1, write %MW002 = 1234");
    row("<ENQ>01xYZ<EOT>??", "station 1, command xYZ");
    row("<ACK>01rSB010400FF1234<ETX>??", "station 1, rSB answered: 00FF 1234");
    row("<ACK>01rSS0201010201FF<ETX>??", "station 1, rSS answered: 01, 01FF");
    row("<ACK>01wSB<ETX>??", "station 1, done");
    row("<NAK>02rSB1132<ETX>??",
        "station 2, rSB refused: 1132, no such device, or address outside the device");
    row("<NAK>02wSBBEEF<ETX>??", "station 2, wSB refused: beef, an unknown error code");
    row("<NAK>02wSBxy<ETX>??", "station 2, wSB refused: ?");
    row("<ACK>xywSB<ETX>??", "no station, done");
    row("<ACK>01wSB<ETX>00", "station 1, done (block check wrong)");
    row("<ACK>01wSB<ETX>", "station 1, done (block check wrong)");
    row("<ACK>01WSB<ETX>", "station 1, done");
    row("<ENQ>01rSB08%DW0010005<EOT>EE",
        "station 1, read 5 words from %DW00100 (block check wrong)");
    row("<ACK>01rSB0106", "a frame without its end");
    row("<ACK><ETX>", "a frame without its end");
    row("hello", "no frame");
    row("", "nothing");
}

void TestFrameWords::saysInWords()
{
    QFETCH(QByteArray, frame);
    QTEST(frameInWords(frame), "words");
}

void TestFrameWords::survivesEveryCut()
{
    QFETCH(QByteArray, frame);
    for (int from = 0; from < frame.size(); ++from) {
        for (int length = 0; length <= frame.size() - from; ++length) {
            const QByteArray part = frame.mid(from, length);
            QVERIFY(!frameInWords(part).isEmpty());
            QVERIFY(!frameInWords("\x06" + part + "\x03").isEmpty());
            QVERIFY(!frameInWords("\x05" + part + "\x04").isEmpty());
        }
    }
}

void TestFrameWords::refusalCode_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<int>("code"); // -1: no refusal
    QTest::newRow("refusal") << wire("<NAK>01rSB1132<ETX>??") << 0x1132;
    QTest::newRow("good answer") << wire("<ACK>01rSB1132<ETX>??") << -1;
    QTest::newRow("code cut off") << wire("<NAK>01rSB") << -1;
    QTest::newRow("code is no number") << wire("<NAK>01rSBxxxx<ETX>??") << -1;
    QTest::newRow("nothing") << QByteArray() << -1;
}

void TestFrameWords::refusalCode()
{
    QFETCH(QByteArray, frame);
    QTEST(cnet::refusalCode(frame).value_or(-1), "code");
}

void TestFrameWords::refusalInWords_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("words");
    QTest::newRow("0003") << 0x0003 << "0003, more than 16 blocks";
    QTest::newRow("0004") << 0x0004 << "0004, name longer than 16 characters";
    QTest::newRow("0007") << 0x0007 << "0007, data type of the name not supported";
    QTest::newRow("0011") << 0x0011 << "0011, malformed data or name";
    QTest::newRow("1132") << 0x1132 << "1132, no such device, or address outside the device";
    QTest::newRow("1232") << 0x1232 << "1232, more than 60 words in one request";
    QTest::newRow("1234") << 0x1234 << "1234, more characters in the frame than the request needs";
    QTest::newRow("1332") << 0x1332 << "1332, data types of one request differ";
    QTest::newRow("1432") << 0x1432 << "1432, data that are not hexadecimal";
    QTest::newRow("another") << 0x9 << "0009, an unknown error code";
}

void TestFrameWords::refusalInWords()
{
    QFETCH(int, code);
    QTEST(cnet::refusalInWords(code), "words");
}

void TestFrameWords::knowsWrites_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<bool>("writes");
    QTest::newRow("wSB") << wire("<ENQ>01wSB08%DW0000101") << true;
    QTest::newRow("WSS") << wire("<ENQ>01WSS0109%MX") << true;
    QTest::newRow("rSB") << wire("<ENQ>01rSB08%DW0000101") << false;
    QTest::newRow("w as a station") << wire("<ENQ>w0r") << false;
    QTest::newRow("too short") << wire("<ENQ>01") << false;
    QTest::newRow("nothing") << QByteArray() << false;
}

void TestFrameWords::knowsWrites()
{
    QFETCH(QByteArray, frame);
    QTEST(isWriteRequest(frame), "writes");
}

void TestFrameWords::hex()
{
    QCOMPARE(hexText(QByteArray("\x06\x30\xFF", 3)), QLatin1String("06 30 FF"));
    QCOMPARE(hexText(QByteArray()), QString());
}

QTEST_APPLESS_MAIN(TestFrameWords)
#include "test_frame_words.moc"
