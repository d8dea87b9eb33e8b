#include "host/support/frames.h"
#include "host/support/test_registers.h"
#include "host/support/virtual_line.h"

#include <host/decode/frame_decoder.h>
#include <host/scan/likely_settings.h>
#include <host/scan/scan.h>

#include <QtTest>

#include <random>

using namespace cnet;

Q_DECLARE_METATYPE(cnet::LineManners)

namespace {

RegisterInfo words(const char *name, int highest)
{
    RegisterInfo reg = testRegister("D_W");
    reg.name = QLatin1String(name);
    reg.highest = highest;
    return reg;
}

QVector<int> firstStations(int count)
{
    QVector<int> stations;
    for (int station = 0; station < count; ++station) {
        stations.append(station);
    }
    return stations;
}

// A serial line: stations take only what comes with their settings, and what they say gets to
// whoever has the line open by then.
class SerialLine : public VirtualLine
{
public:
    SerialLine(VirtualClock &clock, bool right, quint32 seed)
        : VirtualLine(clock, seed)
        , m_right(right)
    {}
    void send(const QByteArray &bytes) override
    {
        if (m_right) {
            VirtualLine::send(bytes);
        } else {
            ++requests;
        }
    }

private:
    bool m_right;
};

// A scan of stations that are there from the beginning.
struct Bench
{
    explicit Bench(const ScanOptions &options, const QVector<int> &stations = {1},
                   const LineSettings &spoken = LineSettings())
    {
        const auto factory = [this, stations, spoken](const LineSettings &line) {
            tried.append(line.text());
            auto made = std::make_unique<SerialLine>(clock, line.text() == spoken.text(), seed);
            made->manners = manners;
            made->opensFine = opensFine;
            for (const int station : stations) {
                made->bus.add(station, plc::Model::K120s);
            }
            if (prepare) {
                prepare(*made);
            }
            return made;
        };
        scan = std::make_unique<Scan>(factory, options, clock);
        QObject::connect(scan.get(), &Scan::frameSent, scan.get(),
                         [this](const QByteArray &frame) { sent.append(frame); });
    }
    bool run(qint64 ms = 3600000)
    {
        scan->start();
        return clock.runUntil([this] { return scan->isFinished(); }, ms);
    }
    int most() const
    {
        return scan->mostSearchFrames() +
               static_cast<int>(scan->found().size()) * scan->mostSurveyFrames();
    }

    VirtualClock clock;
    LineManners manners;
    bool opensFine = true;
    quint32 seed = 1;
    std::function<void(VirtualLine &)> prepare;
    QStringList tried;
    QList<QByteArray> sent;
    std::unique_ptr<Scan> scan;
};

ScanOptions optionsFor(const QVector<int> &stations, const QVector<RegisterInfo> &registers = {})
{
    ScanOptions options;
    options.stations = stations;
    options.registers = registers;
    return options;
}

// As a K120S has them: D to 4999, M to 191, T to 255.
const QVector<RegisterInfo> kRegisters{words("D_W", 9999), words("M_W", 255), words("T_W", 255)};

} // namespace

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
    void aRefusalForTheMomentIsNoLimit();
    void refusalsAtRandomAreNoLimit_data();
    void refusalsAtRandomAreNoLimit();
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

namespace {

// A K120S that refuses what it has whenever it likes.
class Moody
{
public:
    using Mood = std::function<bool(int frame)>;

    /** @param refuses of the first frame 1 and so on @param code "1132" */
    Moody(Bench &bench, const Mood &refuses, const QByteArray &code)
    {
        m_bus.add(1, plc::Model::K120s);
        bench.prepare = [this](VirtualLine &line) { m_open = &line; };
        QObject::connect(bench.scan.get(), &Scan::frameSent, bench.scan.get(),
                         [this, &bench, refuses, code](const QByteArray &frame) {
                             const QByteArray answer = refuses(static_cast<int>(bench.sent.size()))
                                                           ? refusalFrame(frame.mid(1, 5) + code)
                                                           : m_bus.find(1)->station.answer(frame);
                             bench.clock.after(10,
                                               [this, answer] { Q_EMIT m_open->received(answer); });
                         });
    }

private:
    plc::Bus m_bus;
    Link *m_open = nullptr;
};

} // namespace

// As while a program is loaded into it.
void TestScan::aRefusalForTheMomentIsNoLimit()
{
    for (int spoiled = 2; spoiled < 20; ++spoiled) {
        for (const char *code : {"1132", "9999"}) {
            Bench bench(optionsFor({1}, {words("D_W", 9999)}), {});
            const Moody plc(
                bench, [spoiled](int frame) { return frame == spoiled; }, code);
            QVERIFY(bench.run());
            const RegisterReach reach = bench.scan->found().at(0).registers.at(0);
            QVERIFY2(reach.state == RegisterReach::State::Present,
                     QByteArray::number(spoiled) + code);
            QCOMPARE(reach.highest, 4999);
        }
    }
}

void TestScan::refusalsAtRandomAreNoLimit_data()
{
    QTest::addColumn<int>("percent");
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<int>("known");
    QTest::addColumn<int>("misled");
    QTest::newRow("one in twenty") << 5 << QByteArray("1132") << 95 << 0;
    QTest::newRow("one in ten") << 10 << QByteArray("1132") << 95 << 0;
    QTest::newRow("one in ten, busy") << 10 << QByteArray("9999") << 75 << 0;
    QTest::newRow("one in four") << 25 << QByteArray("1132") << 75 << 10;
}

// How often all is right, of a hundred scans, and that no frame is sent that was not announced.
void TestScan::refusalsAtRandomAreNoLimit()
{
    QFETCH(int, percent);
    QFETCH(QByteArray, code);
    QFETCH(int, known);
    QFETCH(int, misled);
    int right = 0;
    int wrong = 0;
    for (quint32 seed = 1; seed <= 100; ++seed) {
        Bench bench(optionsFor({1}, kRegisters), {});
        std::minstd_rand random(seed);
        const auto mood = [&](int frame) {
            return frame > 1 && static_cast<int>(random() / 7 % 100) < percent;
        };
        const Moody plc(bench, mood, code);
        QVERIFY(bench.run());
        QVERIFY2(bench.scan->frames() <= bench.most(),
                 qPrintable(QString::number(bench.scan->frames())));
        const QVector<RegisterReach> reaches = bench.scan->found().at(0).registers;
        const QVector<int> highest{4999, 191, 255};
        int fine = 0;
        bool isWrong = false;
        for (int i = 0; i < reaches.size(); ++i) {
            const bool present = reaches.at(i).state == RegisterReach::State::Present;
            fine += present && reaches.at(i).highest == highest.at(i) ? 1 : 0;
            isWrong = isWrong || reaches.at(i).state == RegisterReach::State::Absent ||
                      (present && reaches.at(i).highest != highest.at(i));
        }
        right += fine == highest.size() ? 1 : 0;
        wrong += isWrong ? 1 : 0;
    }
    const QByteArray found = QByteArray::number(right) + " right, " + QByteArray::number(wrong);
    QVERIFY2(right >= known && wrong <= misled, found + " wrong");
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
