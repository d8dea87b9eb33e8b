#include <climits>
#include <vector>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/cnet_frame.h"
#include "support/driver_fixture.h"

class TestCnetFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blockCheckIsTheSum_data();
    void blockCheckIsTheSum();
    void handshakeHasNoBytes();
    void handshakeGoesBehindOtherFrames();
    void answerIsJudged_data();
    void answerIsJudged();
    void writeAnswerIsTold();
    void readingOfNegativeCountIsAReading();
    void longAnswerIsJudgedWhole();
    void firstFrameCounts();
    void answerWithoutFrameIsRejected();
    void impossibleLengthIsRejected_data();
    void impossibleLengthIsRejected();
};

// A copy of exactly the answer's size, so that a look beyond its end is seen.
static int judge(const QByteArray &answer)
{
    const std::vector<unsigned char> bytes(answer.constBegin(), answer.constEnd());
    return check_rcv_data(bytes.data(), QList<VARIABLE>(), static_cast<int>(answer.size()));
}

static FRAME_PRO frameInFlight(int recvLen, int unitCount)
{
    FRAME_PRO frame = FRAME_PRO();
    frame.recvLen = recvLen;
    frame.unitCount = unitCount;
    return frame;
}

void TestCnetFrame::blockCheckIsTheSum_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("len");
    QTest::addColumn<int>("expected");

    // clang-format off
    QTest::newRow("request for five words") << QByteArray("\x05" "01rSB08%DW0010005\x04") << 19 << 0x3EF;
    QTest::newRow("sum of 256") << QByteArray("\x80\x80") << 2 << 0x100;
    QTest::newRow("characters are unsigned") << QByteArray("\xFF\xFF") << 2 << 0x1FE;
    QTest::newRow("only the first bytes") << QByteArray("\x01\x02\x04\x08") << 3 << 7;
    QTest::newRow("nothing") << QByteArray("\x05") << 0 << 0;
    QTest::newRow("sum above 16 bits") << QByteArray(300, '\xFF') << 300 << 76500 - 65536;
    QTest::newRow("longest area") << QByteArray(65535, '\x03') << 65535 << 65533;
    // clang-format on
}

void TestCnetFrame::blockCheckIsTheSum()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, len);
    QFETCH(int, expected);

    const unsigned short sum =
        computate_check(DriverFixture::bytes(bytes), static_cast<unsigned short>(len));
    QCOMPARE(int(sum), expected);
}

void TestCnetFrame::handshakeHasNoBytes()
{
    DriverFixture fixture;
    handShakeFrame();

    QCOMPARE(static_cast<int>(driver.frames.size()), 1);
    const FRAME_PRO &frame = driver.frames.at(0);
    QCOMPARE(frame.sendLen, 0);
    QCOMPARE(frame.recvLen, 0);
    QCOMPARE(frame.dataPos, 0);
    QCOMPARE(frame.unitCount, 0);
    QCOMPARE(frame.spare, 0);
    QVERIFY(frame.var.regName.isNull());
    QCOMPARE(frame.var.opKind | frame.var.stationNo | frame.var.startAddr | frame.var.count, 0);
}

void TestCnetFrame::handshakeGoesBehindOtherFrames()
{
    DriverFixture fixture;
    queueFrame(frameInFlight(9, 0));
    handShakeFrame();

    QCOMPARE(static_cast<int>(driver.frames.size()), 2);
    QCOMPARE(driver.frames.at(0).recvLen, 9);
    QCOMPARE(driver.frames.at(1).recvLen, 0);
}

void TestCnetFrame::answerIsJudged_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<int>("recvLen");
    QTest::addColumn<int>("expected");

    // clang-format off
    QTest::newRow("word read") << QByteArray("\x06" "01rSB0102ABCD\x03" "3E") << 17 << 1;
    QTest::newRow("contact read") << QByteArray("\x06" "01rSS010101\x03" "A5") << 15 << 1;
    QTest::newRow("block check of 00") << QByteArray("\x06" "01rSB01040019\x03" "00") << 17 << 1;
    QTest::newRow("station is not compared") << QByteArray("\x06" "02rSB0102ABCD\x03" "3F") << 17 << 1;
    QTest::newRow("command is not compared") << QByteArray("\x06" "01wSB\x03" "76") << 9 << 1;
    QTest::newRow("bytes above 7 bits are unsigned") << QByteArray("\x06" "01rSB0102\xFF\xFF\xFF\xFF\x03" "30") << 17 << 1;
    QTest::newRow("shortest with a block check") << QByteArray("\x06\x03" "09") << 4 << 1;
    QTest::newRow("one byte longer") << QByteArray("\x06" "01rSB0102ABCDE\x03" "83") << 17 << 0;
    QTest::newRow("one byte behind the end") << QByteArray("\x06" "01rSB0102ABCD\x03" "3E0") << 17 << 0;
    QTest::newRow("one byte shorter") << QByteArray("\x06" "01rSB0102ABCD\x03" "3E") << 18 << 0;
    QTest::newRow("refusal") << QByteArray("\x15" "01rSB01020004\x03" "07") << 17 << 0;
    QTest::newRow("opened by nothing known") << QByteArray("\x05" "01rSB0102ABCD\x03" "3D") << 17 << 0;
    QTest::newRow("closed by EOT") << QByteArray("\x06" "01rSB0102ABCD\x04" "3F") << 17 << 0;
    QTest::newRow("closed by STX") << QByteArray("\x06" "01rSB0102ABCD\x02" "3D") << 17 << 0;
    QTest::newRow("closed by a byte above 7 bits") << QByteArray("\x06" "01rSB0102ABCD\xFF" "3A") << 17 << 0;
    QTest::newRow("wrong first check digit") << QByteArray("\x06" "01rSB0102ABCD\x03" "2E") << 17 << 0;
    QTest::newRow("wrong second check digit") << QByteArray("\x06" "01rSB0102ABCD\x03" "3F") << 17 << 0;
    QTest::newRow("lower-case check in second place") << QByteArray("\x06" "01rSB0102ABCD\x03" "3e") << 17 << 0;
    QTest::newRow("lower-case check in first place") << QByteArray("\x06" "01rSS010101\x03" "a5") << 15 << 0;
    QTest::newRow("changed value") << QByteArray("\x06" "01rSB0102ABCE\x03" "3E") << 17 << 0;
    QTest::newRow("nothing came") << QByteArray() << 17 << 0;
    QTest::newRow("nothing came, nothing expected") << QByteArray() << 0 << 0;
    QTest::newRow("one byte as expected") << QByteArray("\x06") << 1 << 0;
    QTest::newRow("two bytes as expected") << QByteArray("00") << 2 << 0;
    QTest::newRow("three bytes, ETX is also the first") << QByteArray("\x06" "06") << 3 << 0;
    // clang-format on
}

void TestCnetFrame::answerIsJudged()
{
    QFETCH(QByteArray, answer);
    QFETCH(int, recvLen);

    DriverFixture fixture;
    queueFrame(frameInFlight(recvLen, 1));
    QTEST(judge(answer), "expected");
}

void TestCnetFrame::writeAnswerIsTold()
{
    DriverFixture fixture;
    queueFrame(frameInFlight(9, 0));

    // clang-format off
    QCOMPARE(judge(QByteArray("\x06" "01wSB\x03" "76")), 2);
    QCOMPARE(judge(QByteArray("\x06" "01wSS\x03" "87")), 2);
    QCOMPARE(judge(QByteArray("\x06" "01wSS\x03" "88")), 0);
    // clang-format on
}

// A host may ask for any count; only that of a write is none.
void TestCnetFrame::readingOfNegativeCountIsAReading()
{
    DriverFixture fixture;
    queueFrame(frameInFlight(17, -1));

    // clang-format off
    QCOMPARE(judge(QByteArray("\x06" "01rSB0102ABCD\x03" "3E")), 1);
    // clang-format on
}

void TestCnetFrame::longAnswerIsJudgedWhole()
{
    DriverFixture fixture;
    QByteArray answer = makeAnswer(QByteArray(64000, '\xFF'));
    queueFrame(frameInFlight(static_cast<int>(answer.size()), 16000));

    QCOMPARE(answer.right(2), QByteArray("09"));
    QCOMPARE(judge(answer), 1);
    answer[63999] = '\xFE';
    QCOMPARE(judge(answer), 0);
}

void TestCnetFrame::firstFrameCounts()
{
    DriverFixture fixture;
    queueFrame(frameInFlight(9, 0));
    queueFrame(frameInFlight(17, 1));

    QCOMPARE(judge(makeAnswer("01rSB0102ABCD")), 0);
    QCOMPARE(judge(makeAnswer("01wSB")), 2);
}

void TestCnetFrame::answerWithoutFrameIsRejected()
{
    DriverFixture fixture;

    QCOMPARE(judge(makeAnswer("01wSB")), 0);
}

void TestCnetFrame::impossibleLengthIsRejected_data()
{
    QTest::addColumn<int>("len");

    QTest::newRow("0") << 0;
    QTest::newRow("1") << 1;
    QTest::newRow("2") << 2;
    QTest::newRow("negative") << -1;
    QTest::newRow("bottom of the numbers") << INT_MIN;
}

void TestCnetFrame::impossibleLengthIsRejected()
{
    QFETCH(int, len);

    DriverFixture fixture;
    queueFrame(frameInFlight(len, 1));
    QCOMPARE(check_rcv_data(nullptr, QList<VARIABLE>(), len), 0);
}

QTEST_APPLESS_MAIN(TestCnetFrame)
#include "test_cnet_frame.moc"
