#include "exchange/exchange_test.h"
#include "support/columns.h"

#include <QtTest>

using namespace exchange;

namespace {

/** "W" for a write, "R" for a read, "-" for an idle turn, run by run: "W10 R1 W2". */
QString pattern(HostLoop &loop, int turns)
{
    QString letters;
    for (int i = 0; i < turns; ++i) {
        if (!loop.turn()) {
            letters += QLatin1Char('-');
        } else {
            letters += QLatin1Char(loop.log().last().request.at(3) == 'w' ? 'W' : 'R');
        }
    }
    QStringList runs;
    for (int i = 0; i < letters.size();) {
        int end = i;
        while (end < letters.size() && letters.at(end) == letters.at(i)) {
            ++end;
        }
        runs += letters.mid(i, 1) + QString::number(end - i);
        i = end;
    }
    return runs.join(QLatin1Char(' '));
}

/** Writes address + 1000 to each of `count` data registers. */
void flood(HostLoop &loop, int count)
{
    loop.writeEach("D_W", 0, numbers(count, 1000, 1));
}

QString change(int address)
{
    return QString::fromLatin1("D_W %1=%2").arg(address).arg(address + 1000);
}

QStringList changes(int count)
{
    QStringList list;
    for (int address = 0; address < count; ++address) {
        list += change(address);
    }
    return list;
}

} // namespace

class TestWriteFlood : public ExchangeTest
{
    Q_OBJECT

private Q_SLOTS:
    void twelveWrites_data()
    {
        const Columns<Keys, QString> row("keys", "pattern");
        row("a cyclic read after ten", {key("D_W", 0, 12)}, "W10 R1 W2 R7");
        row("without cyclic reads one idle turn after ten", Keys(), "W10 -1 W2 -7");
    }

    void twelveWrites()
    {
        QFETCH(Keys, keys);
        loop.monitor(keys);
        flood(loop, 12);
        QTEST(pattern(loop, 20), "pattern");
        const QStringList requests = loop.requests().filter(QLatin1String("wSB"));
        QCOMPARE(requests.size(), 12);
        QCOMPARE(requests.first(), QLatin1String("01wSB08%DW000000103E8"));
        QCOMPARE(requests.last(), QLatin1String("01wSB08%DW000110103F3"));
        QCOMPARE(loop.plcChanges(), changes(12));
        QCOMPARE(loop.differences(), QStringList());
        QCOMPARE(loop.counts().answers, loop.counts().frames);
    }

    // The reads between the writes go on where they were: no block is left out.
    void turnsOfTheBlocks()
    {
        loop.monitor({key("D_W", 1000), key("D_W", 2000), key("D_W", 3000)});
        loop.turn();
        flood(loop, 45);
        QCOMPARE(pattern(loop, 51), QLatin1String("W10 R1 W10 R1 W10 R1 W10 R1 W5 R2"));
        QString order;
        for (const QString &request : loop.requests().filter(QLatin1String("rSB"))) {
            order += request.at(11);
        }
        QCOMPARE(order, QLatin1String("1231231"));
    }

    // What is counted are writes, not frames: a write that is sent three times takes three frames.
    void resendsCountOnce()
    {
        loop.monitor({key("D_W", 0, 12)});
        flood(loop, 12);
        loop.unit().faults.add({plc::FaultKind::Silence, 0, 0, 36});
        QCOMPARE(pattern(loop, 30 + 3 + 3), QLatin1String("W30 R3 W3"));
        QCOMPARE(loop.counts().givenUp, 12);
        QVERIFY(loop.settle());
        // Eleven were given up while the station was away, and so was one read.
        QCOMPARE(loop.plcChanges(), QStringList(change(11)));
        QCOMPARE(loop.differences(), QStringList());
    }

    void sixHundredWrites_data()
    {
        const Columns<Keys, QString, QString> row("keys", "between", "end");
        row("with cyclic reads", {key("D_W", 0, 60)}, " R1 ", " R1 W3 R4");
        row("without", Keys(), " -1 ", " -1 W3 -4");
    }

    // 513 writes wait at most; each further one takes the place of the last.
    void sixHundredWrites()
    {
        QFETCH(Keys, keys);
        QFETCH(QString, between);
        QFETCH(QString, end);
        loop.monitor(keys);
        flood(loop, 600);
        QCOMPARE(driver.pendingWrites.size(), 513);
        QCOMPARE(loop.inPanel("D_W", 599), Values{1599});

        QStringList tens;
        for (int i = 0; i < 51; ++i) {
            tens += QLatin1String("W10");
        }
        QCOMPARE(pattern(loop, 51 * 11 + 3 + 4), tens.join(between) + end);
        QCOMPARE(loop.plcChanges(), changes(512) + QStringList(change(599)));
        QCOMPARE(loop.requests().filter(QLatin1String("wSB")).size(), 513);
        QCOMPARE(loop.requests().filter(QLatin1String("wSB")).last(),
                 QLatin1String("01wSB08%DW00599010") + QLatin1String("63F"));
        QCOMPARE(loop.inPanel("D_W", 0, 512), loop.inPlc("D_W", 0, 512));
        QCOMPARE(loop.inPanel("D_W", 599), Values{1599});
        QCOMPARE(loop.differences().size(), 599 - 512);
    }

    void queueLimit_data()
    {
        const Columns<int, int> row("writes", "sent");
        row("512", 512, 512);
        row("513", 513, 513);
        row("514: one is displaced", 514, 513);
        row("515", 515, 513);
    }

    void queueLimit()
    {
        QFETCH(int, writes);
        QFETCH(int, sent);
        flood(loop, writes);
        QVERIFY(loop.settle());
        QCOMPARE(loop.counts().frames, sent);
        QCOMPARE(loop.plcChanges(), changes(sent - 1) + QStringList(change(writes - 1)));
    }

    // A write that was displaced from the queue never ends. The panel shows its value until a
    // reading brings another one than the reading before.
    void displacedWriteStaysOnTheScreen()
    {
        loop.monitor({key("D_W", 550)});
        flood(loop, 600);
        QVERIFY(loop.settle());
        loop.turns(5);
        QCOMPARE(loop.inPanel("D_W", 550), Values{1550});
        QCOMPARE(loop.inPlc("D_W", 550), Values{0});

        loop.forget();
        loop.setPlc("D_W", 550, {7});
        loop.turn();
        QCOMPARE(loop.inPanel("D_W", 550), Values{7});
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 550"}));
    }

    // The panel goes on writing while the queue drains: nothing is lost below the limit, and reads
    // keep their share.
    void writesDuringTheFlood()
    {
        loop.monitor({key("D_W", 0, 60)});
        for (int address = 0; address < 600; ++address) {
            loop.write("D_W", address, {address + 1000});
            if (address % 3 == 0) {
                loop.turn();
            }
        }
        QVERIFY(loop.settle());
        QCOMPARE(loop.plcChanges(), changes(600));
        QCOMPARE(loop.differences(), QStringList());
        QCOMPARE(loop.requests().filter(QLatin1String("rSB")).size(), 60 - 1 + 1);
    }

    void orderOfTwoStations()
    {
        loop.addStation(2);
        for (int i = 0; i < 30; ++i) {
            loop.write("D_W", i, {i}, 1 + i % 2);
        }
        QVERIFY(loop.settle());
        QStringList expected;
        for (int i = 0; i < 30; ++i) {
            expected += QString::fromLatin1("0%1wSB08%DW%2")
                            .arg(1 + i % 2)
                            .arg(i, 5, 10, QLatin1Char('0')) +
                        QString::fromLatin1("01%1").arg(i, 4, 16, QLatin1Char('0')).toUpper();
        }
        QCOMPARE(loop.requests(), expected);
        QCOMPARE(loop.differences(), QStringList());
    }

    void longWrites_data()
    {
        // names: address and count of each request
        const Columns<int, int, QStringList> row("words", "limit", "names");
        row("58 words in one", 58, 58, {"002003A"});
        row("59 words in two", 59, 58, {"002003A", "0025801"});
        row("300 words in six", 300, 58,
            {"002003A", "002583A", "003163A", "003743A", "004323A", "004900A"});
        row("blocks of 7", 16, 7, {"0020007", "0020707", "0021402"});
        row("the largest request of all", 512, 58,
            {"002003A", "002583A", "003163A", "003743A", "004323A", "004903A", "005483A", "006063A",
             "0066430"});
        row("513 words do not fit a request", 513, 58, {});
    }

    void longWrites()
    {
        QFETCH(int, words);
        QFETCH(int, limit);
        loop.start((QByteArray("7#0#0#3#") + QByteArray::number(limit)).constData());
        const Values values = numbers(words, 1, 100);
        if (words <= 512) {
            loop.write("D_W", 200, values);
        } else {
            QByteArray bytes(2 * words, '\x01');
            QString name = QString::fromLatin1("D_W");
            intf_setData(1, name, 200, words, DriverFixture::bytes(bytes), 2);
        }
        QVERIFY(loop.settle());
        QStringList names;
        for (const QString &request : loop.requests()) {
            names += request.mid(10, 7);
        }
        QTEST(names, "names");
        QCOMPARE(loop.plcChanges().size(), words <= 512 ? words : 0);
        QCOMPARE(loop.differences(), QStringList());
        QCOMPARE(loop.counts().givenUp, 0);
    }

    // A PLC takes frames of 256 bytes: 21 and 4 for each word, so 58 words. It reads 60 words at a
    // time, but a host that sets blocks of 60 loses its writes of 59 and 60.
    void blockWriteBeyondThePlc()
    {
        const Values values = numbers(60, 1, 1);
        loop.monitor({key("D_W", 0, 60)});
        loop.write("D_W", 0, values);
        QCOMPARE(loop.turns(4), (Values{8, 8, 2, 1}));
        QCOMPARE(loop.log().first().request.size(), 261);
        QCOMPARE(loop.log().first().answer, QByteArray());
        QCOMPARE(loop.plcChanges(), QStringList());
        QCOMPARE(loop.differences(), QStringList());
    }
};

QTEST_APPLESS_MAIN(TestWriteFlood)
#include "test_write_flood.moc"
