#include "host/scan/scan_bench.h"
#include "host/support/frames.h"

#include <host/decode/frame_decoder.h>
#include <host/scan/likely_settings.h>

#include <QtTest>

using namespace cnet;

Q_DECLARE_METATYPE(cnet::LineManners)

class TestScan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsStationsAndRegisters();
    void onlyReads();
    void findsSettings_data();
    void findsSettings();
    void noSettingsFitNobody();
    void slowStationsAreFound();
    void lateAnswersCountForTheirSettings_data();
    void lateAnswersCountForTheirSettings();
    void badLinesGiveNoWrongResult_data();
    void badLinesGiveNoWrongResult();
    void saysThatTheLineFails();
    void canBeCancelled();
};

void TestScan::findsStationsAndRegisters()
{
    Bench bench(optionsFor(firstStations(32), kRegisters), {0, 5, 31});
    QVERIFY(bench.run());
    QCOMPARE(bench.scan->found().size(), 3);
    for (int i = 0; i < 3; ++i) {
        const FoundStation &found = bench.scan->found().at(i);
        QCOMPARE(found.station, (QVector<int>{0, 5, 31}).at(i));
        QCOMPARE(qRound(found.meanMs), 10);
        QCOMPARE(qRound(found.worstMs), 10);
        QVERIFY(found.answers > 20);
        QCOMPARE(found.registers.size(), 3);
        QCOMPARE(found.registers.at(0).highest, 4999);
        QVERIFY(!found.registers.at(0).toLimit);
        QCOMPARE(found.registers.at(1).highest, 191);
        QCOMPARE(found.registers.at(2).highest, 255);
        QVERIFY(found.registers.at(2).toLimit);
    }
    QVERIFY2(bench.scan->frames() <= bench.most(), qPrintable(QString::number(bench.sent.size())));
    // A fence; then what is there once, what is not twice, and what is behind the last one again.
    const int questions = 1 + (2 + 2 * 13 + 1) + (3 + 2 * 7 + 1) + 2;
    QCOMPARE(static_cast<int>(bench.sent.size()), 32 + 29 + 3 * questions);
}

void TestScan::onlyReads()
{
    Bench bench(optionsFor(firstStations(3), kRegisters), {1});
    QVERIFY(bench.run());
    for (const QByteArray &frame : bench.sent) {
        const DecodedFrame decoded = decodeFrame(frame);
        QVERIFY2(decoded.isGood() && !decoded.writes(), frame.constData());
    }
}

void TestScan::findsSettings_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("first") << 0;
    QTest::newRow("third") << 2;
    QTest::newRow("even parity") << 9;
    QTest::newRow("last") << 47;
}

void TestScan::findsSettings()
{
    QFETCH(int, index);
    const LineSettings spoken = likelySettings().at(index);
    ScanOptions options = optionsFor(firstStations(32));
    options.settings = likelySettings();
    Bench bench(options, {7, 9}, spoken);
    QVERIFY(bench.run());
    QCOMPARE(bench.tried.size(), index + 1);
    QCOMPARE(bench.scan->found().size(), 2);
    QCOMPARE(bench.scan->found().at(0).station, 7);
    QCOMPARE(bench.scan->found().at(0).line.text(), spoken.text());
    QVERIFY(bench.scan->frames() <= bench.most());
}

void TestScan::noSettingsFitNobody()
{
    ScanOptions options = optionsFor(firstStations(32), kRegisters);
    options.settings = likelySettings();
    Bench bench(options, {});
    QVERIFY(bench.run());
    QCOMPARE(bench.tried.size(), 48);
    QVERIFY(bench.scan->found().isEmpty());
    QCOMPARE(bench.scan->frames(), 48 * 32);
    QVERIFY(bench.clock.nowMs() < 15 * 60000);
}

// Their answers come while others are asked, or after all were.
void TestScan::slowStationsAreFound()
{
    for (const int station : {2, 31}) {
        Bench bench(optionsFor(firstStations(32), kRegisters), {2, 4, 31});
        bench.prepare = [station](VirtualLine &line) {
            line.mannersOf[station].lowMs = 700;
            line.mannersOf[station].highMs = 800;
        };
        QVERIFY(bench.run());
        QCOMPARE(bench.scan->found().size(), 3);
        for (const FoundStation &found : bench.scan->found()) {
            QCOMPARE(found.registers.at(0).highest, 4999);
            QCOMPARE(found.registers.at(1).highest, 191);
            QVERIFY(found.station != station || found.worstMs >= 700);
        }
    }
}

void TestScan::lateAnswersCountForTheirSettings_data()
{
    QTest::addColumn<QByteArray>("refusals");
    QTest::newRow("answer") << QByteArray();
    QTest::newRow("refusal") << refusalFrame("01rSS1132") + refusalFrame("01rSB1132");
}

// The answer to a question of the first settings gets to those who try the next ones.
void TestScan::lateAnswersCountForTheirSettings()
{
    QFETCH(QByteArray, refusals);
    ScanOptions options = optionsFor({1});
    options.settings = likelySettings();
    Bench bench(options, {});
    Link *open = nullptr;
    bench.prepare = [&](VirtualLine &line) { open = &line; };
    QObject::connect(bench.scan.get(), &Scan::frameSent, bench.scan.get(),
                     [&](const QByteArray &frame) {
                         if (bench.tried.size() > 1) {
                             return;
                         }
                         plc::Bus bus;
                         const QByteArray late =
                             refusals.isEmpty() ? bus.add(1).station.answer(frame) : refusals;
                         for (const int ms : {800, 1700, 2500, 4000, 9000}) {
                             bench.clock.after(ms, [&open, late] { Q_EMIT open->received(late); });
                         }
                     });
    QVERIFY(bench.run());
    QVERIFY(bench.scan->found().isEmpty());
    QCOMPARE(bench.tried.size(), 48);
}

void TestScan::badLinesGiveNoWrongResult_data()
{
    QTest::addColumn<LineManners>("manners");
    const auto row = [](const char *name, int LineManners::*manner, int percent) {
        LineManners manners;
        manners.*manner = percent;
        QTest::newRow(name) << manners;
    };
    row("requests are lost", &LineManners::lost, 20);
    row("answers are lost", &LineManners::lostAnswers, 20);
    row("answers come twice", &LineManners::repeated, 50);
    row("answers are damaged", &LineManners::damaged, 20);
    row("answers are cut", &LineManners::cut, 20);
    row("noise", &LineManners::noise, 30);
    LineManners all;
    all.lost = all.lostAnswers = all.damaged = all.cut = 5;
    all.repeated = all.split = all.noise = 20;
    all.highMs = 900;
    QTest::newRow("all of it, and slow") << all;
}

void TestScan::badLinesGiveNoWrongResult()
{
    QFETCH(LineManners, manners);
    int known = 0;
    for (quint32 seed = 1; seed <= 10; ++seed) {
        Bench bench(optionsFor({1, 2, 3, 4}, kRegisters), {1, 3});
        bench.manners = manners;
        bench.seed = seed;
        QVERIFY(bench.run());
        for (const FoundStation &found : bench.scan->found()) {
            QVERIFY(found.station == 1 || found.station == 3);
            for (const RegisterReach &reach : found.registers) {
                const int right = reach.reg.name == QLatin1String("D_W")   ? 4999
                                  : reach.reg.name == QLatin1String("M_W") ? 191
                                                                           : 255;
                QVERIFY(reach.state != RegisterReach::State::Absent);
                if (reach.state == RegisterReach::State::Present) {
                    QCOMPARE(reach.highest, right);
                    ++known;
                }
            }
        }
        QVERIFY2(bench.scan->frames() <= bench.most(),
                 qPrintable(QString::number(bench.scan->frames())));
    }
    QVERIFY2(known >= 30, qPrintable(QString::number(known)));
}

void TestScan::saysThatTheLineFails()
{
    Bench bench(optionsFor({1}));
    bench.opensFine = false;
    QVERIFY(bench.run());
    QCOMPARE(bench.scan->lineError(), QLatin1String("virtual line: no such device"));
    Bench lost(optionsFor(firstStations(32)), {});
    VirtualLine *line = nullptr;
    lost.prepare = [&](VirtualLine &made) { line = &made; };
    lost.scan->start();
    lost.clock.runFor(2000);
    line->breakDown();
    QVERIFY(lost.scan->isFinished());
    QCOMPARE(lost.scan->lineError(), QLatin1String("virtual line: unplugged"));
    lost.clock.runFor(60000);
}

void TestScan::canBeCancelled()
{
    Bench bench(optionsFor(firstStations(32), kRegisters), {1});
    bench.scan->start();
    QVERIFY(bench.clock.runUntil([&] { return bench.scan->frames() == 70; }, 100000));
    bench.scan->cancel();
    QVERIFY(bench.scan->isFinished());
    QCOMPARE(bench.scan->found().size(), 1);
    QCOMPARE(bench.scan->found().at(0).registers.size(), 3);
    bench.clock.runFor(60000);
    QCOMPARE(bench.scan->frames(), 70);
}

QTEST_GUILESS_MAIN(TestScan)
#include "test_scan.moc"
