#include <host/wire/block_check.h>

#include <QtTest>

using namespace cnet;

class TestBlockCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addsUp_data();
    void addsUp();
    void completesRequests_data();
    void completesRequests();
    void knowsWholeAnswers_data();
    void knowsWholeAnswers();
};

void TestBlockCheck::addsUp_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<QByteArray>("check");
    QTest::newRow("a request") << QByteArray("\x05"
                                             "01rSB08%DW0010005\x04")
                               << QByteArray("EF");
    QTest::newRow("an answer") << QByteArray("\x06"
                                             "01wSB\x03")
                               << QByteArray("76");
    QTest::newRow("low byte of the sum") << QByteArray(3, '\xFF') << QByteArray("FD");
    QTest::newRow("nothing") << QByteArray() << QByteArray("00");
}

void TestBlockCheck::addsUp()
{
    QFETCH(QByteArray, frame);
    QTEST(blockCheck(frame + "zz", static_cast<int>(frame.size())), "check");
}

void TestBlockCheck::completesRequests_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("frame");
    const QByteArray whole("\x05"
                           "01rSB08%DW0010005\x04"
                           "EF");
    const QByteArray unchecked("\x05"
                               "01RSB08%DW0010005\x04");
    QTest::newRow("text alone") << whole.mid(1, 17) << whole;
    QTest::newRow("without its end") << whole.left(18) << whole;
    QTest::newRow("without a check") << whole.left(19) << whole;
    QTest::newRow("with a wrong check") << whole.left(19) + "00" << whole;
    QTest::newRow("whole") << whole << whole;
    QTest::newRow("in upper case") << unchecked.mid(1, 17) << unchecked;
    QTest::newRow("nothing") << QByteArray() << QByteArray("\x05\x04");
    QTest::newRow("an end within") << QByteArray("01R\x04"
                                                 "123")
                                   << QByteArray("\x05"
                                                 "01R\x04"
                                                 "123\x04");
}

void TestBlockCheck::completesRequests()
{
    QFETCH(QByteArray, text);
    QTEST(completedRequest(text), "frame");
}

void TestBlockCheck::knowsWholeAnswers_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("whole");
    QTest::newRow("right") << QByteArray("\x06"
                                         "01wSB\x03"
                                         "76")
                           << true;
    QTest::newRow("first character wrong") << QByteArray("\x06"
                                                         "01wSB\x03"
                                                         "86")
                                           << false;
    QTest::newRow("second character wrong") << QByteArray("\x06"
                                                          "01wSB\x03"
                                                          "77")
                                            << false;
    QTest::newRow("a value wrong") << QByteArray("\x06"
                                                 "02wSB\x03"
                                                 "76")
                                   << false;
    // A command in capitals asks for none.
    QTest::newRow("without a check") << QByteArray("\x06"
                                                   "01WSB\x03"
                                                   "zz")
                                     << true;
    QTest::newRow("refusal") << QByteArray("\x15"
                                           "01RSB1132\x03"
                                           "00")
                             << true;
    QTest::newRow("a request") << QByteArray("\x05"
                                             "01WSB\x03"
                                             "00")
                               << false;
    QTest::newRow("no ETX") << QByteArray("\x06"
                                          "01WSB000")
                            << false;
    QTest::newRow("too short") << QByteArray("\x06"
                                             "01WS\x03"
                                             "00")
                               << false;
    QTest::newRow("nothing") << QByteArray() << false;
}

void TestBlockCheck::knowsWholeAnswers()
{
    QFETCH(QByteArray, answer);
    QTEST(isWholeAnswer(answer), "whole");
}

QTEST_APPLESS_MAIN(TestBlockCheck)

#include "test_block_check.moc"
