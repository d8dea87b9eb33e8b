#include "exchange/exchange_test.h"

#include <QtTest>

using namespace exchange;

// The output contacts of timers and counters, which go one to a frame.
class TestContacts : public ExchangeTest
{
    Q_OBJECT

private Q_SLOTS:
    // A frame reads one contact, whatever the count of its key: the others of the key stay off.
    void oneOfAKeyIsRead()
    {
        loop.setPlc("TX", 4, {1, 1, 1});
        QVERIFY(loop.show({key("TX", 4, 3)}));
        QCOMPARE(loop.requests().first(), QLatin1String("01rSS0107%TX0004"));
        QCOMPARE(loop.inPanel("TX", 4, 3), (Values{1, 0, 0}));
        QCOMPARE(loop.counts().givenUp, 0);
    }

    // The byte that the frame brings has one bit for each of the key, of which the PLC sets the
    // first.
    void readingOfAKeyUndoesWrites()
    {
        loop.monitor({key("TX", 4, 3)});
        loop.write("TX", 4, {1, 1, 1});
        QCOMPARE(loop.turns(3), (Values{1, 1, 1}));
        QCOMPARE(loop.inPanel("TX", 4, 3), (Values{1, 1, 1}));
        QCOMPARE(loop.inPlc("TX", 4, 3), (Values{1, 1, 1}));
        loop.forget();
        QCOMPARE(loop.turns(1), Values{1});
        QCOMPARE(loop.inPanel("TX", 4, 3), (Values{1, 0, 0}));
        QCOMPARE(HostLoop::calls(), texts({"7 1 TX 5", "7 1 TX 6"}));
    }

    // One contact counts as the sixteen of a word, and the frame still brings one. The second eight
    // are taken from what follows the data: the end of the answer and its block check.
    void readingOnceUndoesFifteenMore()
    {
        const Values ones = numbers(18, 1, 0);
        loop.write("TX", 4, ones);
        QVERIFY(loop.settle());
        loop.readOnce("TX", 4, 1);
        QVERIFY(loop.settle());
        QCOMPARE(loop.requests().last(), QLatin1String("01rSS0107%TX0004"));
        QCOMPARE(loop.log().last().answer.right(5), QByteArray("01\x03"
                                                               "A5"));
        QCOMPARE(loop.inPanel("TX", 4, 18),
                 (Values{1, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 1}));
    }

    void writes()
    {
        loop.setPlc("TX", 20, {1});
        loop.write("TX", 9, {1, 0, 1});
        loop.write("CX", 255, {1});
        loop.write("TX", 20, {0});
        QCOMPARE(loop.inPanel("TX", 9, 3), (Values{1, 0, 1}));
        QVERIFY(loop.settle());
        QCOMPARE(loop.requests(),
                 texts({"01wSS0109%TX00000901", "01wSS0109%TX00001000", "01wSS0109%TX00001101",
                        "01wSS0109%CX00025501", "01wSS0109%TX00002000"}));
        QCOMPARE(loop.plcChanges(), texts({"TX 9=1", "TX 11=1", "TX 20=0", "CX 255=1"}));
        QCOMPARE(loop.differences(), QStringList());
    }

    void eachSettlesAlone()
    {
        QVERIFY(loop.show({key("TX", 5), key("TX", 6), key("TX", 7)}));
        loop.write("TX", 5, {1, 1, 1});
        loop.forget();
        QVERIFY(loop.turn());
        loop.refuse(3);
        QCOMPARE(loop.turns(3), (Values{8, 8, 2}));
        QCOMPARE(loop.inPanel("TX", 5, 3), (Values{1, 0, 1}));
        QCOMPARE(HostLoop::calls(), texts({"7 1 TX 6"}));
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPlc("TX", 5, 3), (Values{1, 0, 1}));
        QCOMPARE(loop.differences(), QStringList());
    }

    // Unlike a word, a contact whose reading has changed is shown as read even while a write of it
    // still waits.
    void readingEndsTheWait()
    {
        loop.setPlc("TX", 5, {1});
        QVERIFY(loop.show({key("TX", 5)}));
        loop.writeEach("D_W", 0, numbers(10, 1, 0));
        loop.write("TX", 5, {1});
        loop.turns(10);
        loop.setPlc("TX", 5, {0});
        loop.forget();
        QVERIFY(loop.turn());
        QCOMPARE(loop.inPanel("TX", 5), Values{0});
        QCOMPARE(HostLoop::calls(), texts({"7 1 TX 5"}));
        QVERIFY(loop.turn());
        QCOMPARE(loop.inPlc("TX", 5), Values{1});
        QCOMPARE(loop.inPanel("TX", 5), Values{1});
        QCOMPARE(loop.differencesAtRest(), QStringList());
    }
};

QTEST_APPLESS_MAIN(TestContacts)
#include "test_contacts.moc"
