#include <QtTest/QtTest>

#include "shared/frame_queue.h"
#include "support/area_helpers.h"

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

static const struct
{
    const char *what;
    QByteArray steps; // a digit: append it; "-": the first goes; "0": clear
    const char *left;
} kFramesComeOutInOrder[] = {
    {"none", "", ""},
    {"one", "1", "1"},
    {"two", "12", "1 2"},
    {"the first goes", "12-", "2"},
    {"and one more comes", "12-3", "2 3"},
    {"round and round", "12-3-4-5-6", "5 6"},
    {"all go", "12--", ""},
    {"all go and others come", "12-3--45", "4 5"},
    {"cleared", "12-0", ""},
    {"cleared and filled", "12-3034", "3 4"},
    {"full: the last is replaced", "123", "1 3"},
    {"full, the first in the second place", "12-34", "2 4"},
};

static bool isAll(const unsigned char *bytes, int size, char value)
{
    return bytesOf(bytes, size) == QByteArray(size, value);
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

static const struct
{
    const char *what;
    int sendLen; // of the frames before
} kNewFrameIsBlank[] = {
    // clang-format off
    {"handshake", 0},
    {"read", 21},
    {"longest write", 1024},
    {"a length that no frame has", 1025},
    {"a negative length", -1},
    // clang-format on
};

static const Given<bool> kFrameServesItsItem[] = {
    {"with values", false},
    {"without", true},
};

class TestFrameQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesComeOutInOrder_data() { addRows(kFramesComeOutInOrder); }
    void framesComeOutInOrder()
    {
        const auto &row = currentRow(kFramesComeOutInOrder);
        FrameQueue queue;
        for (const char step : row.steps) {
            if (step == '-') {
                queue.removeFirst();
            } else if (step == '0') {
                queue.clear();
            } else {
                appendNumbered(queue, step - '0');
            }
        }
        QCOMPARE(numbersIn(queue), latin(row.left));
        QCOMPARE(queue.isEmpty(), latin(row.left).isEmpty());
        if (!queue.isEmpty()) {
            queue[0].sendLen = 9;
            QCOMPARE(queue.at(0).sendLen, 9);
        }
    }

    void newFrameIsBlank_data() { addRows(kNewFrameIsBlank); }
    void newFrameIsBlank()
    {
        const auto &row = currentRow(kNewFrameIsBlank);
        FrameQueue queue;
        for (int round = 0; round < 6; ++round) {
            useUp(queue, row.sendLen);
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
            QCOMPARE(numbersText(*frame), latin("0 0 0 0 0"));
            QCOMPARE(itemText(frame->var), latin("0  0 x0"));
        }
    }

    void frameServesItsItem_data() { addRows(kFrameServesItsItem); }
    void frameServesItsItem()
    {
        const auto &row = currentRow(kFrameServesItsItem);
        FrameQueue queue;
        useUp(queue, 30);
        for (int i = 0; i < 4; ++i) {
            VARIABLE item = makeItem(i, i % 2 == 0 ? "D_W" : "M_W", 10 + i, 20 + i,
                                     row.given ? QByteArray() : QByteArray(1024, '\x33'));
            item.opKind = i;
            const FRAME_PRO &frame = row.given ? queue.appendRead(item) : queue.append(item);
            QCOMPARE(itemText(frame.var), itemText(item));
            QCOMPARE(frame.var.opKind, i);
            QVERIFY(isAll(frame.var.data, kValueAreaSize, row.given ? 0 : 0x33));
        }
    }

    void emptyQueueStaysEmpty()
    {
        FrameQueue queue;
        queue.removeFirst();
        queue.removeFirst();
        QVERIFY(queue.isEmpty());
        QCOMPARE(queue.size(), 0);
        appendNumbered(queue, 4);
        QCOMPARE(numbersIn(queue), latin("4"));
    }
};

QTEST_APPLESS_MAIN(TestFrameQueue)
#include "test_frame_queue.moc"
