#include "host/support/frames.h"

#include <host/wire/fence_frame.h>
#include <host/wire/open_questions.h>

#include <QtTest>

using namespace cnet;

namespace {

const QByteArray kFirst = requestFrame("01rSB08%DW0010001");
const QByteArray kSecond = requestFrame("01rSB08%DW0020001");
const QByteArray kAnswer = answerFrame("01rSB01021234");
const int kLength = 17;

AnswerShape shapeOf(const QByteArray &request, int length = kLength)
{
    return AnswerShape::toRequest(request, length);
}

AnswerShape shapeOfFence(int form)
{
    const FenceFrame fence = fenceFrame(1, form);
    return AnswerShape::toRequest(fence.request, fence.answerLength);
}

} // namespace

class TestOpenQuestions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsWhatIsConfusable();
    void settlesTheOldestThatFits();
    void keepsWhatMayHaveBeenACopy();
    void forgetsTheOldest();
    void findsAFreeFence_data();
    void findsAFreeFence();
    void findsSomeFenceWhereAllAreOpen();
};

void TestOpenQuestions::knowsWhatIsConfusable()
{
    OpenQuestions open;
    QVERIFY(!open.confusable(1, kSecond, shapeOf(kSecond)));
    open.asked(1, kFirst, shapeOf(kFirst), 0);
    QVERIFY(!open.confusable(1, kFirst, shapeOf(kFirst)));
    QVERIFY(open.confusable(1, kSecond, shapeOf(kSecond)));
    QVERIFY(open.confusable(1, kSecond, shapeOf(kSecond, 21))); // it may be refused
    QVERIFY(!open.confusable(2, kSecond, shapeOf(kSecond)));
    const QByteArray write = requestFrame("01wSB08%DW00100010007");
    QVERIFY(!open.confusable(1, write, shapeOf(write, 9)));
    QVERIFY(!open.isEmpty(1));
    QVERIFY(open.isEmpty(2));
    open.clear(1);
    QVERIFY(open.isEmpty(1));
    QVERIFY(!open.confusable(1, kSecond, shapeOf(kSecond)));
}

void TestOpenQuestions::settlesTheOldestThatFits()
{
    OpenQuestions open;
    const QByteArray longer = requestFrame("01rSB08%DW0020002");
    open.asked(1, longer, shapeOf(longer, 21), 10);
    open.asked(1, kFirst, shapeOf(kFirst), 20);
    open.asked(1, kSecond, shapeOf(kSecond), 30);
    QVERIFY(!open.settle(2, kAnswer));
    QVERIFY(!open.settle(1, answerFrame("01rSS01021234")));
    auto settled = open.settle(1, kAnswer);
    QVERIFY(settled.has_value());
    QCOMPARE(settled->request, kFirst);
    QCOMPARE(settled->askedMs, 20);
    settled = open.settle(1, kAnswer);
    QVERIFY(settled && settled->request == kSecond);
    QVERIFY(!open.settle(1, kAnswer));
    QVERIFY(open.settle(1, refusalFrame("01rSB1132")).has_value());
    QVERIFY(open.isEmpty(1));
}

void TestOpenQuestions::keepsWhatMayHaveBeenACopy()
{
    OpenQuestions open;
    open.keep(1, kFirst, shapeOf(kFirst));
    open.keep(1, kFirst, shapeOf(kFirst));
    QVERIFY(open.confusable(1, kSecond, shapeOf(kSecond)));
    QVERIFY(!open.settle(1, kAnswer)); // one answer more says nothing
    QVERIFY(open.confusable(1, kSecond, shapeOf(kSecond)));
    open.clear(1);
    QVERIFY(!open.confusable(1, kSecond, shapeOf(kSecond)));
}

// Of a station that never answers as many are kept as may still be answered.
void TestOpenQuestions::forgetsTheOldest()
{
    OpenQuestions open;
    const int many = 1000;
    for (int i = 0; i < many; ++i) {
        open.asked(1, kFirst, shapeOf(kFirst), i);
    }
    const auto oldest = open.settle(1, kAnswer);
    QVERIFY(oldest && oldest->askedMs >= many / 2 && oldest->askedMs < many - kFenceForms);
}

void TestOpenQuestions::findsAFreeFence_data()
{
    QTest::addColumn<QList<int>>("open");
    QTest::addColumn<int>("next");        // form of the next question
    QTest::addColumn<QByteArray>("last"); // answer
    QTest::addColumn<int>("free");
    const QByteArray copy = answerFrame("01rSS01020000");
    QTest::newRow("the cheapest") << QList<int>() << 9 << QByteArray() << 0;
    QTest::newRow("the first is open") << QList<int>{0} << 9 << QByteArray() << 1;
    QTest::newRow("some are open") << QList<int>{0, 1, 3} << 9 << QByteArray() << 2;
    QTest::newRow("the next question is one") << QList<int>() << 0 << QByteArray() << 1;
    QTest::newRow("the last answer may come again") << QList<int>() << 9 << copy << 1;
}

void TestOpenQuestions::findsAFreeFence()
{
    QFETCH(QList<int>, open);
    QFETCH(int, next);
    QFETCH(QByteArray, last);
    OpenQuestions questions;
    for (const int form : open) {
        questions.asked(1, fenceFrame(1, form).request, shapeOfFence(form), 0);
        questions.asked(2, fenceFrame(2, 2).request, shapeOfFence(2), 0);
    }
    QTEST(questions.freeFence(1, shapeOfFence(next), last), "free");
    QCOMPARE(questions.freeFence(3, AnswerShape(), QByteArray()), 0);
}

void TestOpenQuestions::findsSomeFenceWhereAllAreOpen()
{
    OpenQuestions questions;
    for (int form = 0; form < kFenceForms; ++form) {
        questions.asked(1, fenceFrame(1, form).request, shapeOfFence(form), 0);
    }
    QCOMPARE(questions.freeFence(1, AnswerShape(), QByteArray()), 0);
}

QTEST_APPLESS_MAIN(TestOpenQuestions)

#include "test_open_questions.moc"
