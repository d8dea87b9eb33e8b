#include "host/support/talk.h"

#include <host/exchange/answer_memory.h>

#include <QtTest>

using namespace cnet;

class TestAnswerMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsTheLastAnswer();
    void knowsWhatWouldRepeat_data();
    void knowsWhatWouldRepeat();
    void doesNotGrowForEver();
};

namespace {

AnswerShape shapeOf(const QByteArray &request)
{
    return AnswerShape::toRequest(request, request.at(3) == 'w' ? kWriteLength : kLength);
}

} // namespace

void TestAnswerMemory::knowsTheLastAnswer()
{
    AnswerMemory memory;
    QVERIFY(memory.last(1).isEmpty());
    memory.remember(1, kFirstAnswer, kFirst);
    QVERIFY(memory.repeats(1, kFirstAnswer));
    QVERIFY(!memory.repeats(1, kSecondAnswer));
    QVERIFY(!memory.repeats(2, kFirstAnswer));
    QVERIFY(memory.isLastRequest(1, kFirst));
    QVERIFY(!memory.isLastRequest(1, kSecond));
    memory.remember(1, kSecondAnswer, kSecond);
    QCOMPARE(memory.last(1), kSecondAnswer);
}

void TestAnswerMemory::knowsWhatWouldRepeat_data()
{
    QTest::addColumn<QByteArray>("request"); // and its answer, the last but one
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QByteArray>("other"); // and its answer, the last
    QTest::addColumn<QByteArray>("otherAnswer");
    QTest::addColumn<bool>("repeats");
    QTest::newRow("same answer") << kFirst << kFirstAnswer << kSecond << kFirstAnswer << true;
    QTest::newRow("different answers")
        << kFirst << kFirstAnswer << kSecond << kSecondAnswer << false;
    QTest::newRow("the last request") << kFirst << kFirstAnswer << kFirst << kFirstAnswer << false;
    QTest::newRow("the last write") << kWrite << kWritten << kWrite << kWritten << false;
    QTest::newRow("writes") << kWrite << kWritten << kOtherWrite << kWritten << true;
    QTest::newRow("a write after a read") << kWrite << kWritten << kFirst << kFirstAnswer << false;
}

void TestAnswerMemory::knowsWhatWouldRepeat()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, answer);
    QFETCH(QByteArray, other);
    QFETCH(QByteArray, otherAnswer);
    AnswerMemory memory;
    QVERIFY(!memory.wouldRepeat(1, request, shapeOf(request)));
    memory.remember(1, answer, request);
    memory.remember(1, otherAnswer, other);
    QTEST(memory.wouldRepeat(1, request, shapeOf(request)), "repeats");
    QVERIFY(!memory.wouldRepeat(2, request, shapeOf(request)));
}

// A program may read other addresses all its life.
void TestAnswerMemory::doesNotGrowForEver()
{
    AnswerMemory memory;
    memory.remember(1, kFirstAnswer, kFirst);
    for (int i = 0; i < 10000; ++i) {
        memory.remember(1, kFirstAnswer, requestFrame("01rSB08%DW" + QByteArray::number(i)));
    }
    QVERIFY(!memory.wouldRepeat(1, kFirst, shapeOf(kFirst))); // forgotten
    QVERIFY(memory.repeats(1, kFirstAnswer));
}

QTEST_APPLESS_MAIN(TestAnswerMemory)

#include "test_answer_memory.moc"
