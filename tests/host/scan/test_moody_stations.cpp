#include "host/scan/scan_bench.h"
#include "host/support/frames.h"

#include <QtTest>

#include <random>

using namespace cnet;

/** A scan of a PLC that refuses now and then what it has. */
class TestMoodyStations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRefusalForTheMomentIsNoLimit();
    void refusalsAtRandomAreNoLimit_data();
    void refusalsAtRandomAreNoLimit();
};

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
void TestMoodyStations::aRefusalForTheMomentIsNoLimit()
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

void TestMoodyStations::refusalsAtRandomAreNoLimit_data()
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
void TestMoodyStations::refusalsAtRandomAreNoLimit()
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

QTEST_GUILESS_MAIN(TestMoodyStations)
#include "test_moody_stations.moc"
