#include "host/wire/late_answers.h"

#include <QtTest>

using namespace cnet;

class TestLateAnswers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void judges_data();
    void judges();
    void forgetsAfterJudging();
    void forgetsWhenCleared();
    void belongs_data();
    void belongs();
};

void TestLateAnswers::judges_data()
{
    QTest::addColumn<QList<QByteArray>>("missed");
    QTest::addColumn<bool>("usable");
    QTest::addColumn<int>("underway");
    const QByteArray same("\x05"
                          "01rSBaaa");
    const QByteArray other("\x05"
                           "01rSBbbb");
    const QByteArray otherStation("\x05"
                                  "02rSBbbb");
    const QByteArray otherCommand("\x05"
                                  "01rSSbbb");
    QTest::newRow("nothing missed") << QList<QByteArray>() << true << 0;
    QTest::newRow("the same missed") << QList<QByteArray>{same} << true << 1;
    QTest::newRow("the same missed twice") << QList<QByteArray>{same, same} << true << 2;
    QTest::newRow("another missed") << QList<QByteArray>{other} << false << 1;
    QTest::newRow("both missed") << QList<QByteArray>{other, same} << false << 2;
    QTest::newRow("another station missed") << QList<QByteArray>{otherStation} << true << 0;
    QTest::newRow("another command missed") << QList<QByteArray>{otherCommand} << true << 0;
}

void TestLateAnswers::judges()
{
    QFETCH(QList<QByteArray>, missed);
    LateAnswers late;
    for (const QByteArray &request : missed) {
        late.missed(request);
    }
    const auto verdict = late.judge("\x05"
                                    "01rSBaaa");
    QTEST(verdict.usable, "usable");
    QTEST(verdict.underway, "underway");
}

void TestLateAnswers::forgetsAfterJudging()
{
    LateAnswers late;
    late.missed("\x05"
                "01rSBbbb");
    QVERIFY(!late.judge("\x05"
                        "01rSBaaa")
                 .usable);
    QVERIFY(late.judge("\x05"
                       "01rSBaaa")
                .usable);
}

void TestLateAnswers::forgetsWhenCleared()
{
    LateAnswers late;
    late.missed("\x05"
                "01rSBbbb");
    late.clear();
    QVERIFY(late.judge("\x05"
                       "01rSBaaa")
                .usable);
}

void TestLateAnswers::belongs_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("belongs");
    QTest::newRow("same station and command") << QByteArray("\x06"
                                                            "01rSB0102")
                                              << true;
    QTest::newRow("refusal") << QByteArray("\x15"
                                           "01rSB1132")
                             << true;
    QTest::newRow("another station") << QByteArray("\x06"
                                                   "02rSB0102")
                                     << false;
    QTest::newRow("another command") << QByteArray("\x06"
                                                   "01wSB0102")
                                     << false;
    QTest::newRow("another type") << QByteArray("\x06"
                                                "01rSS0102")
                                  << false;
    QTest::newRow("too short") << QByteArray("\x06"
                                             "01rSB")
                               << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestLateAnswers::belongs()
{
    QFETCH(QByteArray, answer);
    QTEST(belongsTogether("\x05"
                          "01rSB08%DW0010001",
                          answer),
          "belongs");
}

QTEST_APPLESS_MAIN(TestLateAnswers)
#include "test_late_answers.moc"
