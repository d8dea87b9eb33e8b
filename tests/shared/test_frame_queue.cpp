#include <QtTest/QtTest>

#include "shared/frame_queue.h"
#include "support/area_helpers.h"

class TestFrameQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesComeOutInOrder_data();
    void framesComeOutInOrder();
    void newFrameIsBlank_data();
    void newFrameIsBlank();
    void frameServesItsItem_data();
    void frameServesItsItem();
    void emptyQueueStaysEmpty();
};

static FRAME_PRO &appendNumbered(FrameQueue &queue, int number)
{
    FRAME_PRO &frame = queue.append(makeItem(number, "D_W", number, 1));
    frame.sendLen = number;
    return frame;
}

static QString numbersIn(const FrameQueue &queue)
{
    QStringList numbers;
    for (int i = 0; i < queue.size(); ++i) {
        numbers.append(QString::number(queue.at(i).sendLen));
    }
    return numbers.join(QLatin1String(" "));
}

void TestFrameQueue::framesComeOutInOrder_data()
{
    QTest::addColumn<QByteArray>("steps"); // a digit: append it; "-": the first goes; "0": clear
    QTest::addColumn<QString>("left");

    QTest::newRow("none") << QByteArray("") << latin("");
    QTest::newRow("one") << QByteArray("1") << latin("1");
    QTest::newRow("two") << QByteArray("12") << latin("1 2");
    QTest::newRow("the first goes") << QByteArray("12-") << latin("2");
    QTest::newRow("and one more comes") << QByteArray("12-3") << latin("2 3");
    QTest::newRow("round and round") << QByteArray("12-3-4-5-6") << latin("5 6");
    QTest::newRow("all go") << QByteArray("12--") << latin("");
    QTest::newRow("all go and others come") << QByteArray("12-3--45") << latin("4 5");
    QTest::newRow("cleared") << QByteArray("12-0") << latin("");
    QTest::newRow("cleared and filled") << QByteArray("12-3034") << latin("3 4");
    QTest::newRow("full: the last is replaced") << QByteArray("123") << latin("1 3");
    QTest::newRow("full, the first in the second place") << QByteArray("12-34") << latin("2 4");
}

void TestFrameQueue::framesComeOutInOrder()
{
    QFETCH(QByteArray, steps);
    QFETCH(QString, left);

    FrameQueue queue;
    for (const char step : steps) {
        if (step == '-') {
            queue.removeFirst();
        } else if (step == '0') {
            queue.clear();
        } else {
            appendNumbered(queue, step - '0');
        }
    }
    QCOMPARE(numbersIn(queue), left);
    QCOMPARE(queue.isEmpty(), left.isEmpty());
    if (!queue.isEmpty()) {
        queue[0].sendLen = 9;
        QCOMPARE(queue.at(0).sendLen, 9);
    }
}

static bool isAll(const unsigned char *bytes, int size, unsigned char value)
{
    for (int i = 0; i < size; ++i) {
        if (bytes[i] != value) {
            return false;
        }
    }
    return true;
}

// Fills every byte and every number of both places with frames of the given length.
static void useUp(FrameQueue &queue, int sendLen)
{
    for (int i = 0; i < FrameQueue::kCapacity; ++i) {
        FRAME_PRO &frame = queue.append(makeItem(5, "M_W", 6, 7, QByteArray(1024, '\x55')));
        const int used = sendLen < 0 || sendLen > kSendBufSize ? int(kSendBufSize) : sendLen;
        std::memset(frame.sendBuf, 0x55, static_cast<size_t>(used));
        frame.sendLen = sendLen;
        frame.recvLen = frame.dataPos = frame.unitCount = frame.spare = 8;
    }
    queue.clear();
}

void TestFrameQueue::newFrameIsBlank_data()
{
    QTest::addColumn<int>("sendLen"); // of the frames before

    QTest::newRow("handshake") << 0;
    QTest::newRow("read") << 21;
    QTest::newRow("longest write") << 1024;
    QTest::newRow("a length that no frame has") << 1025;
    QTest::newRow("a negative length") << -1;
}

void TestFrameQueue::newFrameIsBlank()
{
    QFETCH(int, sendLen);

    FrameQueue queue;
    for (int round = 0; round < 6; ++round) {
        useUp(queue, sendLen);
        if (round % 2 == 1) {
            queue.append(VARIABLE()); // the read behind it is in the second place
        }
        const FRAME_PRO *frame = nullptr;
        if (round / 2 == 0) {
            frame = &queue.append(VARIABLE());
        } else if (round / 2 == 1) {
            frame = &queue.appendRead(VARIABLE());
        } else {
            queue.appendBlank();
            frame = &queue.at(queue.size() - 1);
        }
        QVERIFY(isAll(frame->sendBuf, kSendBufSize, 0));
        QVERIFY(isAll(frame->var.data, kValueAreaSize, 0));
        QCOMPARE(frame->sendLen, 0);
        QCOMPARE(frame->recvLen, 0);
        QCOMPARE(frame->dataPos, 0);
        QCOMPARE(frame->unitCount, 0);
        QCOMPARE(frame->spare, 0);
        QCOMPARE(itemText(frame->var), latin("0  0 x0"));
    }
}

void TestFrameQueue::frameServesItsItem_data()
{
    QTest::addColumn<bool>("isRead");

    QTest::newRow("with values") << false;
    QTest::newRow("without") << true;
}

void TestFrameQueue::frameServesItsItem()
{
    QFETCH(bool, isRead);

    FrameQueue queue;
    useUp(queue, 30);
    for (int i = 0; i < 4; ++i) {
        VARIABLE item = makeItem(i, i % 2 == 0 ? "D_W" : "M_W", 10 + i, 20 + i,
                                 isRead ? QByteArray() : QByteArray(1024, '\x33'));
        item.opKind = i;
        const FRAME_PRO &frame = isRead ? queue.appendRead(item) : queue.append(item);
        QCOMPARE(itemText(frame.var), itemText(item));
        QCOMPARE(frame.var.opKind, i);
        QVERIFY(isAll(frame.var.data, kValueAreaSize, isRead ? 0 : 0x33));
    }
}

void TestFrameQueue::emptyQueueStaysEmpty()
{
    FrameQueue queue;
    queue.removeFirst();
    queue.removeFirst();
    QVERIFY(queue.isEmpty());
    QCOMPARE(queue.size(), 0);
    appendNumbered(queue, 4);
    QCOMPARE(numbersIn(queue), latin("4"));
}

QTEST_APPLESS_MAIN(TestFrameQueue)
#include "test_frame_queue.moc"
