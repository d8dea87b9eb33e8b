#include "exchange/exchange_test.h"
#include "support/columns.h"

#include <QtTest>

using namespace exchange;

using plc::FaultKind;

static const QString kGood = QString::fromLatin1("-1 -1 -1 0");

static const QString kFailed = QString::fromLatin1("-1 -1 -1 -1");

// One-off reads and their end signal: device -1, station -1, name "-1", and 0, or -1 for a failure.
class TestConditionReads : public ExchangeTest
{
    Q_OBJECT

private Q_SLOTS:
    void registers_data()
    {
        const Columns<QByteArray, QString> row("name", "request");
        for (const char *name : {"D_W", "C_W", "T_W", "K_W", "P_W", "F_W", "L_W", "M_W"}) {
            row(name, name, QString::fromLatin1("01rSB08%%1W0003002").arg(QLatin1Char(name[0])));
        }
    }

    void registers()
    {
        QFETCH(QByteArray, name);
        loop.setPlc(name, 30, {0x1234, 0xFEDC});
        loop.readOnce(name, 30, 2);
        QCOMPARE(HostLoop::calls(), QStringList());
        QVERIFY(loop.settle());
        QTEST(loop.requests().join(QLatin1Char('|')), "request");
        QCOMPARE(HostLoop::calls(), QStringList(kGood));
        QCOMPARE(loop.inPanel(name, 30, 2), (Values{0x1234, 0xFEDC}));
        QVERIFY(!loop.turn());
        QCOMPARE(loop.plcChanges(), QStringList());
    }

    void changesBeforeTheSignal()
    {
        QVERIFY(loop.show({key("D_W", 101), key("D_bit", 1600)}));
        loop.setPlc("D_W", 100, {1, 2, 3});
        loop.readOnce("D_W", 100, 3);
        Values seen;
        HostLoop::setCallbackHandler([&](const QString &) { seen += loop.inPanel("D_W", 100, 3); });
        QVERIFY(loop.turn());
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_bit 1600", "7 1 D_W 101", "-1 -1 -1 0"}));
        QCOMPARE(seen.mid(6), (Values{1, 2, 3}));
        QCOMPARE(loop.differences(), QStringList());
    }

    void failure_data()
    {
        const Columns<FaultKind, int, Values, QString> row("kind", "times", "results", "signal");
        row("refused 3 times", FaultKind::Refuse, 3, {8, 8, 2}, kFailed);
        row("silence 3 times", FaultKind::Silence, 3, {8, 8, 2}, kFailed);
        row("wrong check twice", FaultKind::WrongCheck, 2, {8, 8, 1}, kGood);
    }

    void failure()
    {
        QFETCH(FaultKind, kind);
        QFETCH(int, times);
        QFETCH(Values, results);
        QFETCH(QString, signal);
        loop.addStation(1).faults.add({kind, 0x1132, 0x1132, times});
        loop.setPlc("D_W", 100, {5});
        loop.readOnce("D_W", 100, 1);
        for (const int result : results) {
            QCOMPARE(HostLoop::calls(), QStringList());
            QCOMPARE(loop.turns(1), Values{result});
        }
        QCOMPARE(HostLoop::calls(), QStringList(signal));
        QCOMPARE(loop.inPanel("D_W", 100), Values{signal == kGood ? 5 : 0});
        QVERIFY(!loop.turn());

        loop.readOnce("D_W", 100, 1);
        QVERIFY(loop.settle());
        QCOMPARE(HostLoop::calls(), QStringList({signal, kGood}));
        QCOMPARE(loop.inPanel("D_W", 100), Values{5});
    }

    // The host waits for the read that it asked for last; the ends of the others are not told.
    void onlyTheLastIsSignalled()
    {
        loop.setPlc("D_W", 100, {1, 2, 3});
        for (const int address : {100, 101, 102}) {
            loop.readOnce("D_W", address, 1);
        }
        QCOMPARE(loop.turns(2), (Values{1, 1}));
        QCOMPARE(HostLoop::calls(), QStringList());
        QCOMPARE(loop.turns(1), Values{1});
        QCOMPARE(HostLoop::calls(), QStringList(kGood));
        QCOMPARE(loop.inPanel("D_W", 100, 3), (Values{1, 2, 3}));
    }

    void failureDropsAll_data()
    {
        // good: of three reads, how many are answered before one fails
        const Columns<int, QStringList> row("good", "calls");
        // Only the failure of the read that was asked for last is told.
        row("the first fails", 0, {});
        row("the second fails", 1, {});
        row("the last fails", 2, QStringList(kFailed));
    }

    void failureDropsAll()
    {
        QFETCH(int, good);
        loop.setPlc("D_W", 100, {1, 2, 3});
        for (const int address : {100, 101, 102}) {
            loop.readOnce("D_W", address, 1);
        }
        loop.turns(good);
        loop.unit().faults.add({FaultKind::Silence, 0, 0, 3});
        QCOMPARE(loop.turns(4), (Values{8, 8, 2, -1}));
        QTEST(HostLoop::calls(), "calls");
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(loop.inPanel("D_W", 100 + i), Values{i < good ? i + 1 : 0});
        }
    }

    void pieces()
    {
        const Values values = numbers(150, 1, 1);
        loop.setPlc("D_W", 1000, values);
        loop.readOnce("D_W", 1000, 150);
        QVERIFY(loop.settle());
        QCOMPARE(loop.requests(),
                 texts({"01rSB08%DW010003C", "01rSB08%DW010603C", "01rSB08%DW011201E"}));
        QCOMPARE(HostLoop::calls(), QStringList(kGood));
        QCOMPARE(loop.inPanel("D_W", 1000, 150), values);
    }

    void bitsAreNotRead()
    {
        loop.setPlc("M_bit", 35, {1});
        loop.readOnce("M_bit", 35, 3);
        loop.readOnce("D_bit", 35, 1);
        QVERIFY(!loop.turn());
        QCOMPARE(loop.counts().frames, 0);
        QCOMPARE(HostLoop::calls(), QStringList());
        QCOMPARE(loop.inPanel("M_bit", 35), Values{0});
    }

    // A read like one that waits takes its place, unless that one is the next to go.
    void folding()
    {
        for (const int address : {1, 2, 3, 2, 2, 3}) {
            loop.readOnce("D_W", address, 1);
        }
        QCOMPARE(loop.turns(4), (Values{1, 1, 1, -1}));
        QCOMPARE(loop.requests(),
                 texts({"01rSB08%DW0000101", "01rSB08%DW0000201", "01rSB08%DW0000301"}));
        QCOMPARE(HostLoop::calls(), QStringList(kGood));
    }

    // A read like the next one to go is read a second time, and both ends are told.
    void likeTheHead()
    {
        for (int i = 0; i < 4; ++i) {
            loop.readOnce("D_W", 1, 1);
        }
        QCOMPARE(loop.turns(3), (Values{1, 1, -1}));
        QCOMPARE(HostLoop::calls(), QStringList({kGood, kGood}));
    }

    void fairness_data()
    {
        const Columns<int, int, bool, QString> row("writes", "reads", "cyclic", "order");
        // W write, C condition read, R cyclic read, - idle
        row("three, then a cyclic read", 0, 7, true, "CCCRCCCRCRRR");
        row("three, then an idle turn", 0, 7, false, "CCC-CCC-C---");
        row("writes go first and are counted as well", 1, 4, true, "WCCRCCRRRRRR");
        row("two writes leave room for one read", 2, 4, true, "WWCRCCCRRRRR");
        row("three writes leave none", 3, 2, true, "WWWRCCRRRRRR");
        row("nor do three without cyclic reads", 3, 2, false, "WWW-CC------");
        row("ten writes", 10, 1, true, "WWWWWWWWWWRC");
        row("eleven writes", 11, 1, true, "WWWWWWWWWWRW");
    }

    void fairness()
    {
        QFETCH(int, writes);
        QFETCH(int, reads);
        QFETCH(bool, cyclic);
        if (cyclic) {
            loop.monitor({key("M_W", 0)});
        }
        for (int i = 0; i < reads; ++i) {
            loop.readOnce("D_W", i, 1);
        }
        loop.writeEach("C_W", 0, numbers(writes, 1, 0));
        QString order;
        for (int i = 0; i < 12; ++i) {
            if (!loop.turn()) {
                order += QLatin1Char('-');
                continue;
            }
            const QChar device = loop.requests().last().at(8);
            order += device == QLatin1Char('C')   ? QLatin1Char('W')
                     : device == QLatin1Char('D') ? QLatin1Char('C')
                                                  : QLatin1Char('R');
        }
        QTEST(order, "order");
        QVERIFY(loop.settle());
        QCOMPARE(HostLoop::calls(), QStringList(kGood));
        QCOMPARE(loop.differences(), QStringList());
    }

    void limit()
    {
        for (int address = 0; address < 600; ++address) {
            loop.setPlc("D_W", address, {1});
            loop.readOnce("D_W", address, 1);
        }
        QVERIFY(loop.settle());
        QCOMPARE(loop.counts().frames, 513);
        QCOMPARE(HostLoop::calls(), QStringList(kGood));
        QCOMPARE(loop.inPanel("D_W", 510, 4), (Values{1, 1, 0, 0}));
        QCOMPARE(loop.inPanel("D_W", 598, 2), (Values{0, 1}));
    }

    void askedFromWithinTheSignal_data()
    {
        const Columns<bool, int, int> row("good", "address", "framesAfter");
        row("another one", true, 200, 1);
        row("the same once more", true, 100, 1);
        // The list is emptied when the callback has returned.
        row("lost after a failure", false, 200, 0);
    }

    void askedFromWithinTheSignal()
    {
        QFETCH(bool, good);
        QFETCH(int, address);
        if (!good) {
            loop.unit().faults.add({FaultKind::Silence, 0, 0, 3});
        }
        loop.readOnce("D_W", 100, 1);
        int asked = 0;
        HostLoop::setCallbackHandler([&](const QString &) {
            if (asked++ == 0) {
                loop.readOnce("D_W", address, 1);
            }
        });
        loop.turns(good ? 1 : 3);
        QCOMPARE(asked, 1);
        loop.forget();
        QVERIFY(loop.settle());
        QTEST(static_cast<int>(loop.counts().frames), "framesAfter");
        QCOMPARE(asked, good ? 2 : 1);
    }
};

QTEST_APPLESS_MAIN(TestConditionReads)
#include "test_condition_reads.moc"
