#include "host/support/frames.h"

#include <host/wire/answer_shape.h>

#include <QtTest>

using namespace cnet;

class TestAnswerShape : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void admits_data();
    void admits();
    void readsTheStation_data();
    void readsTheStation();
};

void TestAnswerShape::admits_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("admitted");
    QTest::newRow("its own") << answerFrame("01rSB01021234") << true;
    QTest::newRow("other values") << answerFrame("01rSB0102FFFF") << true;
    QTest::newRow("refusal") << refusalFrame("01rSB1132") << true;
    QTest::newRow("shorter") << answerFrame("01rSB010212") << false;
    QTest::newRow("longer") << answerFrame("01rSB010412345678") << false;
    QTest::newRow("another station") << answerFrame("02rSB01021234") << false;
    QTest::newRow("another command") << answerFrame("01wSB01021234") << false;
    QTest::newRow("another type") << answerFrame("01rSS01021234") << false;
    QTest::newRow("without a block check") << answerFrame("01RSB01021234") << false;
    QTest::newRow("refusal of another station") << refusalFrame("02rSB1132") << false;
    QTest::newRow("refusal of odd length") << refusalFrame("01rSB113") << false;
    QTest::newRow("too short for a station") << QByteArray("\x06") + "01" << false;
    QTest::newRow("nothing") << QByteArray() << false;
}

void TestAnswerShape::admits()
{
    QFETCH(QByteArray, answer);
    const AnswerShape shape = AnswerShape::toRequest(requestFrame("01rSB08%DW0010001"), 17);
    QTEST(shape.admits(answer), "admitted");
    QVERIFY(!AnswerShape().admits(answer));
}

void TestAnswerShape::readsTheStation_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<int>("station");
    QTest::newRow("request") << requestFrame("1FrSS") << 31;
    QTest::newRow("answer") << answerFrame("0awSB") << 10;
    QTest::newRow("no number") << answerFrame("zzrSB") << -1;
    QTest::newRow("a sign") << answerFrame("-5rSB") << -1;
    QTest::newRow("a blank") << answerFrame(" 5rSB") << -1;
    QTest::newRow("cut off") << answerFrame("01rSB").left(2) << -1;
    QTest::newRow("nothing") << QByteArray() << -1;
}

void TestAnswerShape::readsTheStation()
{
    QFETCH(QByteArray, frame);
    QTEST(stationOf(frame), "station");
}

QTEST_APPLESS_MAIN(TestAnswerShape)

#include "test_answer_shape.moc"
