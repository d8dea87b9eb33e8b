#include <climits>
#include <vector>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/cnet_frame.h"
#include "support/driver_fixture.h"
#include "support/rows.h"

// A copy of exactly the answer's size, so that a look beyond its end is seen.
static int judge(const QByteArray &answer)
{
    const std::vector<unsigned char> bytes(answer.constBegin(), answer.constEnd());
    return check_rcv_data(bytes.data(), QList<VARIABLE>(), sizeOf(answer));
}

static FRAME_PRO frameInFlight(int recvLen, int unitCount)
{
    FRAME_PRO frame = FRAME_PRO();
    frame.recvLen = recvLen;
    frame.unitCount = unitCount;
    return frame;
}

static const struct
{
    const char *what;
    QByteArray bytes;
    int len, expected;
} kBlockCheckIsTheSum[] = {
    // clang-format off
    {"request for five words", "\x05" "01rSB08%DW0010005\x04", 19, 0x3EF},
    {"sum of 256", "\x80\x80", 2, 0x100},
    {"characters are unsigned", "\xFF\xFF", 2, 0x1FE},
    {"only the first bytes", "\x01\x02\x04\x08", 3, 7},
    {"nothing", "\x05", 0, 0},
    {"sum above 16 bits", QByteArray(300, '\xFF'), 300, 76500 - 65536},
    {"longest area", QByteArray(65535, '\x03'), 65535, 65533},
    // clang-format on
};

static const struct
{
    const char *what;
    QByteArray answer;
    int recvLen, expected;
} kAnswerIsJudged[] = {
    // clang-format off
    {"word read", "\x06" "01rSB0102ABCD\x03" "3E", 17, 1},
    {"contact read", "\x06" "01rSS010101\x03" "A5", 15, 1},
    {"block check of 00", "\x06" "01rSB01040019\x03" "00", 17, 1},
    {"station is not compared", "\x06" "02rSB0102ABCD\x03" "3F", 17, 1},
    {"command is not compared", "\x06" "01wSB\x03" "76", 9, 1},
    {"bytes above 7 bits are unsigned", "\x06" "01rSB0102\xFF\xFF\xFF\xFF\x03" "30", 17, 1},
    {"shortest with a block check", "\x06\x03" "09", 4, 1},
    {"one byte longer", "\x06" "01rSB0102ABCDE\x03" "83", 17, 0},
    {"one byte behind the end", "\x06" "01rSB0102ABCD\x03" "3E0", 17, 0},
    {"one byte shorter", "\x06" "01rSB0102ABCD\x03" "3E", 18, 0},
    {"refusal", "\x15" "01rSB01020004\x03" "07", 17, 0},
    {"opened by nothing known", "\x05" "01rSB0102ABCD\x03" "3D", 17, 0},
    {"closed by EOT", "\x06" "01rSB0102ABCD\x04" "3F", 17, 0},
    {"closed by STX", "\x06" "01rSB0102ABCD\x02" "3D", 17, 0},
    {"closed by a byte above 7 bits", "\x06" "01rSB0102ABCD\xFF" "3A", 17, 0},
    {"wrong first check digit", "\x06" "01rSB0102ABCD\x03" "2E", 17, 0},
    {"wrong second check digit", "\x06" "01rSB0102ABCD\x03" "3F", 17, 0},
    {"lower-case check in second place", "\x06" "01rSB0102ABCD\x03" "3e", 17, 0},
    {"lower-case check in first place", "\x06" "01rSS010101\x03" "a5", 15, 0},
    {"changed value", "\x06" "01rSB0102ABCE\x03" "3E", 17, 0},
    {"nothing came", QByteArray(), 17, 0},
    {"nothing came, nothing expected", QByteArray(), 0, 0},
    {"one byte as expected", "\x06", 1, 0},
    {"two bytes as expected", "00", 2, 0},
    {"three bytes, ETX is also the first", "\x06" "06", 3, 0},
    // clang-format on
};

static const Given<int> kImpossibleLengthIsRejected[] = {
    // clang-format off
    {"0", 0},
    {"1", 1},
    {"2", 2},
    {"negative", -1},
    {"bottom of the numbers", INT_MIN},
    // clang-format on
};

class TestCnetFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blockCheckIsTheSum_data() { addRows(kBlockCheckIsTheSum); }
    void blockCheckIsTheSum()
    {
        const auto &row = currentRow(kBlockCheckIsTheSum);
        QByteArray bytes = row.bytes;
        const unsigned short sum =
            computate_check(DriverFixture::bytes(bytes), static_cast<unsigned short>(row.len));
        QCOMPARE(int(sum), row.expected);
    }

    void handshakeHasNoBytes()
    {
        DriverFixture fixture;
        handShakeFrame();

        QCOMPARE(sizeOf(driver.frames), 1);
        const FRAME_PRO &frame = driver.frames.at(0);
        QCOMPARE(numbersText(frame), latin("0 0 0 0 0"));
        QVERIFY(frame.var.regName.isNull());
        QCOMPARE(frame.var.opKind | frame.var.stationNo | frame.var.startAddr | frame.var.count, 0);
    }

    void handshakeGoesBehindOtherFrames()
    {
        DriverFixture fixture;
        queueFrame(frameInFlight(9, 0));
        handShakeFrame();

        QCOMPARE(sizeOf(driver.frames), 2);
        QCOMPARE(driver.frames.at(0).recvLen, 9);
        QCOMPARE(driver.frames.at(1).recvLen, 0);
    }

    void answerIsJudged_data() { addRows(kAnswerIsJudged); }
    void answerIsJudged()
    {
        const auto &row = currentRow(kAnswerIsJudged);
        DriverFixture fixture;
        queueFrame(frameInFlight(row.recvLen, 1));
        QCOMPARE(judge(row.answer), row.expected);
    }

    void writeAnswerIsTold()
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
    void readingOfNegativeCountIsAReading()
    {
        DriverFixture fixture;
        queueFrame(frameInFlight(17, -1));

        // clang-format off
        QCOMPARE(judge(QByteArray("\x06" "01rSB0102ABCD\x03" "3E")), 1);
        // clang-format on
    }

    void longAnswerIsJudgedWhole()
    {
        DriverFixture fixture;
        QByteArray answer = makeAnswer(QByteArray(64000, '\xFF'));
        queueFrame(frameInFlight(sizeOf(answer), 16000));

        QCOMPARE(answer.right(2), QByteArray("09"));
        QCOMPARE(judge(answer), 1);
        answer[63999] = '\xFE';
        QCOMPARE(judge(answer), 0);
    }

    void firstFrameCounts()
    {
        DriverFixture fixture;
        queueFrame(frameInFlight(9, 0));
        queueFrame(frameInFlight(17, 1));

        QCOMPARE(judge(makeAnswer("01rSB0102ABCD")), 0);
        QCOMPARE(judge(makeAnswer("01wSB")), 2);
    }

    void answerWithoutFrameIsRejected()
    {
        DriverFixture fixture;

        QCOMPARE(judge(makeAnswer("01wSB")), 0);
    }

    void impossibleLengthIsRejected_data() { addRows(kImpossibleLengthIsRejected); }
    void impossibleLengthIsRejected()
    {
        const auto &row = currentRow(kImpossibleLengthIsRejected);
        DriverFixture fixture;
        queueFrame(frameInFlight(row.given, 1));
        QCOMPARE(check_rcv_data(nullptr, QList<VARIABLE>(), row.given), 0);
    }
};

QTEST_APPLESS_MAIN(TestCnetFrame)
#include "test_cnet_frame.moc"
