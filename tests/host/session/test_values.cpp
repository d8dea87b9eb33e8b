#include "host/support/virtual_plant.h"

#include <QtTest>

using namespace cnet;

namespace {

// "unknown", "5", "7?": a question mark where it waits for the PLC.
QString shown(const Monitor *monitor, int item = 0, int offset = 0)
{
    const ItemValue &cell = monitor->items().at(item).values.at(offset);
    if (!cell.isShown()) {
        return QLatin1String("unknown");
    }
    return QString::number(cell.shown()) +
           (cell.isWaiting() ? QLatin1String("?") : QLatin1String(""));
}

// Every quality that an item's signals told of, in order.
struct Qualities
{
    explicit Qualities(Monitor *monitor)
    {
        QObject::connect(monitor, &Monitor::itemStateChanged, monitor, [this, monitor](int item) {
            const Quality quality = monitor->items().at(item).quality;
            if (item == 0 && (told.isEmpty() || told.last() != qualityText(quality))) {
                told.append(qualityText(quality));
            }
        });
    }

    QString take() { return std::exchange(told, {}).join(QLatin1String(", ")); }

    QStringList told;
};

} // namespace

// What is shown of the PLC's values, and how far it can be trusted.
class TestValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void qualityComesAndGoes();
    void staleWhereNobodyFindsTime();
    void firstWriteShows_data();
    void firstWriteShows();
    void severalWritesWait();
    void writtenBitsAndWords();
    void tellsChangesOnce();
    void newItemsKeepWhatIsKnown();
    void itemsMayBeSetFromWithin();
    void changesDuringAJobAreSeen_data();
    void changesDuringAJobAreSeen();
    void changesThatAJobSeesFirstAreSeen_data();
    void changesThatAJobSeesFirstAreSeen();
    void driverThatStartedAnewIsNotBelieved();
    void readsOfAJobShowAtOnce();
    void agesAndTimes();
};

void TestValues::qualityComesAndGoes()
{
    VirtualPlant plant;
    Monitor *const monitor = plant.monitor("D_W:4999");
    Qualities qualities(monitor);
    plant.line->bus.add(1, plc::Model::K120s);
    plant.open();
    QCOMPARE(qualities.take(), QLatin1String("good"));
    plant.silence(1);
    plant.run(5000);
    QCOMPARE(qualities.take(), QLatin1String("no answer"));
    plant.silence(1, false);
    plant.run(30000);
    QCOMPARE(qualities.take(), QLatin1String("good"));
    plant.line->breakDown();
    QCOMPARE(qualities.take(), QLatin1String("line down"));
    plant.run(5000);
    QCOMPARE(qualities.take(), QLatin1String("stale, good"));
    plant.write("D_W:4999=7");
    plant.run(1000);
    QCOMPARE(qualities.take(), QLatin1String("waiting for the PLC, good"));
    monitor->setItems({plant.item(QLatin1String("D_W:5000"))});
    plant.run(1000);
    QCOMPARE(qualities.take(), QLatin1String("refused"));
    plant.line->breakDown();
    plant.line->bus.add(1, plc::Model::Full);
    plant.run(5000);
    QCOMPARE(qualities.take(), QLatin1String("line down, refused, good"));
    plant.line->mannersOf[1].damaged = 100;
    plant.run(5000);
    QCOMPARE(qualities.take(), QLatin1String("no answer"));
    QVERIFY(!monitor->items().first().reason().isEmpty());
}

void TestValues::staleWhereNobodyFindsTime()
{
    SessionOptions options;
    options.staleMs = 300;
    VirtualPlant plant(options);
    Monitor *const monitor = plant.monitor("D_W:0");
    plant.open();
    Qualities qualities(monitor);
    RecipeJob *const job = plant.session->transfer(
        {{plant.item(QLatin1String("D_W:1000*3000")), QVector<quint16>(3000, 1), 0}},
        RecipeDirection::Write);
    QVERIFY(plant.finishes(job));
    plant.run(1000);
    QCOMPARE(qualities.take(), QLatin1String("stale, good"));
}

void TestValues::firstWriteShows_data()
{
    QTest::addColumn<bool>("fails");
    QTest::addColumn<QString>("after");
    QTest::newRow("taken") << false << "7";
    QTest::newRow("not answered") << true << "unknown";
}

void TestValues::firstWriteShows()
{
    QFETCH(bool, fails);
    QFETCH(QString, after);
    VirtualPlant plant;
    Monitor *const monitor = plant.monitor("D_W:5");
    Qualities qualities(monitor);
    plant.silence(1, fails);
    QCOMPARE(shown(monitor), QLatin1String("unknown"));
    WriteJob *const job = plant.write("D_W:5=7");
    QCOMPARE(shown(monitor), QLatin1String("7?"));
    plant.open(0);
    QVERIFY(plant.finishes(job));
    QCOMPARE(shown(monitor), after);
    QVERIFY(monitor->items().first().values.first().known != fails);
    plant.silence(1, false);
    plant.run(30000);
    QCOMPARE(shown(monitor), QLatin1String(fails ? "0" : "7"));
}

void TestValues::severalWritesWait()
{
    VirtualPlant plant;
    Monitor *const monitor = plant.monitor("D_W:4*3");
    plant.open();
    QSignalSpy changed(monitor, &Monitor::valuesChanged);
    WriteJob *const first = plant.write("D_W:5=7");
    WriteJob *const second = plant.write("D_W:5=8");
    QCOMPARE(shown(monitor, 0, 1), QLatin1String("8?"));
    QCOMPARE(shown(monitor, 0, 0), QLatin1String("0"));
    QVERIFY(plant.finishes(first));
    QCOMPARE(shown(monitor, 0, 1), QLatin1String("8?"));
    QVERIFY(plant.finishes(second));
    QCOMPARE(shown(monitor, 0, 1), QLatin1String("8"));
    // A refused write leaves what the PLC has.
    plant.line->bus.add(1, plc::Model::K120s);
    plant.setWord(5, 9);
    Monitor *const beyond = plant.monitor("D_W:5000");
    WriteJob *const refused = plant.write("D_W:5000=1");
    QCOMPARE(shown(beyond), QLatin1String("1?"));
    QVERIFY(plant.finishes(refused));
    QCOMPARE(shown(beyond), QLatin1String("unknown"));
    QCOMPARE(refused->results().first().outcome, WriteOutcome::Refused);
    // Of a deleted job nothing waits any more.
    delete plant.write("D_W:5=1");
    plant.run(500);
    QCOMPARE(shown(monitor, 0, 1), QLatin1String("9"));
}

void TestValues::writtenBitsAndWords()
{
    VirtualPlant plant;
    Monitor *const bits = plant.monitor("M_bit:3.4*3 D_bit:8.2");
    Monitor *const words = plant.monitor("M_W:3 D_W:8");
    plant.open();
    WriteJob *const job = plant.write("M_bit:3.5=1 D_bit:8.2=1 D_W:9=1");
    QCOMPARE(shown(bits, 0, 1), QLatin1String("1?"));
    QCOMPARE(shown(bits, 1), QLatin1String("1?"));
    // The words do not show what no PLC has confirmed.
    plant.run(4);
    QCOMPARE(shown(words, 0), QLatin1String("0"));
    QCOMPARE(shown(words, 1), QLatin1String("0"));
    QVERIFY(plant.finishes(job));
    QCOMPARE(job->failure(), QString());
    plant.run(500);
    QCOMPARE(shown(bits, 0, 1), QLatin1String("1"));
    QCOMPARE(shown(bits, 1), QLatin1String("1"));
    QCOMPARE(shown(words, 0), QLatin1String("32"));
    QCOMPARE(shown(words, 1), QLatin1String("4"));
    QVERIFY(bits->isGood() && words->isGood());
}

void TestValues::tellsChangesOnce()
{
    VirtualPlant plant;
    plant.setWord(6, 3);
    Monitor *const monitor = plant.monitor("D_W:5*3 D_W:6");
    QStringList told;
    connect(monitor, &Monitor::valuesChanged, this, [&told](const QVector<ValueChange> &changes) {
        for (const ValueChange &change : changes) {
            told.append(QString::fromLatin1("%1+%2=%3")
                            .arg(change.item)
                            .arg(change.offset)
                            .arg(change.value));
        }
    });
    plant.open();
    QCOMPARE(told.join(QLatin1Char(' ')), QLatin1String("0+0=0 0+1=3 0+2=0 1+0=3"));
    told.clear();
    plant.run(1000);
    QVERIFY(told.isEmpty());
    plant.setWord(6, 4);
    plant.run(1000);
    QCOMPARE(told.join(QLatin1Char(' ')), QLatin1String("0+1=4 1+0=4"));
}

void TestValues::newItemsKeepWhatIsKnown()
{
    VirtualPlant plant;
    plant.setWord(5, 55);
    Monitor *const monitor = plant.monitor("D_W:5 D_W:6");
    plant.open();
    monitor->setItems(plant.items(QLatin1String("D_W:7 D_W:5")));
    QCOMPARE(shown(monitor, 0), QLatin1String("unknown"));
    QCOMPARE(shown(monitor, 1), QLatin1String("55"));
    QVERIFY(!monitor->isComplete());
    plant.run(300);
    QCOMPARE(shown(monitor, 0), QLatin1String("0"));
    plant.takeFrames();
    monitor->setItems({});
    plant.run(1000);
    QVERIFY(plant.takeFrames().size() <= 1);
}

void TestValues::itemsMayBeSetFromWithin()
{
    VirtualPlant plant;
    Monitor *const monitor = plant.monitor("D_W:5 D_W:900 D_W:1800");
    bool once = false;
    connect(monitor, &Monitor::valuesChanged, this, [&] {
        if (!std::exchange(once, true)) {
            monitor->setItems(plant.items(QLatin1String("D_W:7")));
        }
    });
    connect(monitor, &Monitor::itemStateChanged, this,
            [&](int item) { QVERIFY(item < monitor->items().size()); });
    plant.open();
    QVERIFY(monitor->isGood());
    QCOMPARE(static_cast<int>(monitor->items().size()), 1);
}

void TestValues::changesDuringAJobAreSeen_data()
{
    QTest::addColumn<QString>("job");
    QTest::newRow("a contact") << "TX:9";
    QTest::newRow("a part of the block, and contacts") << "D_W:5 TX:9 D_W:5 TX:10";
    QTest::newRow("more than the block") << "D_W:0*60 TX:9";
    QTest::newRow("monitored contact") << "TX:3*2";
}

// Meanwhile the driver reads something else cyclically, or has the new value already.
void TestValues::changesDuringAJobAreSeen()
{
    QFETCH(QString, job);
    VirtualPlant plant;
    Monitor *const monitor = plant.monitor("D_W:4*3 TX:3 M_bit:3.5");
    plant.open();
    int step = 0;
    for (int round = 0; round < 8; ++round) {
        ReadJob *const read = plant.session->read(plant.items(job));
        for (int ms = 0; ms < 40; ++ms) {
            plant.run(1);
            ++step;
            plant.setWord(5, step);
            plant.memory().setContact('T', 3, step % 2 == 1);
            plant.memory().setBit('M', 3, 5, step % 3 == 1);
        }
        QVERIFY(plant.finishes(read));
        plant.run(250);
        QCOMPARE(shown(monitor, 0, 1), QString::number(step));
        QCOMPARE(shown(monitor, 1), QString::number(step % 2));
        QCOMPARE(shown(monitor, 2), QString::number(step % 3 == 1 ? 1 : 0));
        step += round;
    }
    QVERIFY(monitor->isGood());
}

void TestValues::changesThatAJobSeesFirstAreSeen_data()
{
    QTest::addColumn<QString>("job");
    QTest::newRow("a part of the block") << "D_W:5";
    QTest::newRow("a part of the block, and a contact") << "D_W:5 TX:9";
    QTest::newRow("the block") << "D_W:4*3";
    QTest::newRow("the contact") << "TX:3";
    QTest::newRow("the word of the bit") << "M_W:3";
    QTest::newRow("a recipe") << "";
}

// The driver has them then, and reports no change when they are read cyclically.
void TestValues::changesThatAJobSeesFirstAreSeen()
{
    QFETCH(QString, job);
    VirtualPlant plant;
    Monitor *const monitor = plant.monitor("D_W:4*3 TX:3 M_bit:3.5");
    plant.open();
    plant.setWord(5, 55);
    plant.memory().setContact('T', 3, true);
    plant.memory().setBit('M', 3, 5, true);
    if (job.isEmpty()) {
        QVERIFY(plant.finishes(plant.session->transfer(
            {{plant.item(QLatin1String("D_W:5")), {}, 0}}, RecipeDirection::Read)));
    } else {
        QVERIFY(plant.finishes(plant.session->read(plant.items(job))));
    }
    plant.run(250);
    QCOMPARE(shown(monitor, 0, 1), QLatin1String("55"));
    QCOMPARE(shown(monitor, 1), QLatin1String("1"));
    QCOMPARE(shown(monitor, 2), QLatin1String("1"));
}

// For a recipe with shorter blocks the driver starts anew. Then all its values are 0, and one that
// has become 0 meanwhile is no change to it.
void TestValues::driverThatStartedAnewIsNotBelieved()
{
    VirtualPlant plant;
    plant.setWord(5, 55);
    Monitor *const monitor = plant.monitor("D_W:4*3");
    plant.open();
    QCOMPARE(shown(monitor, 0, 1), QLatin1String("55"));
    RecipeJob *const recipe = plant.session->transfer(
        {{plant.item(QLatin1String("D_W:1000*100")), QVector<quint16>(100, 1), 0}},
        RecipeDirection::Write, Verify::No);
    plant.setWord(5, 0);
    QVERIFY(plant.finishes(recipe));
    plant.run(250);
    QCOMPARE(shown(monitor, 0, 1), QLatin1String("0"));
}

void TestValues::readsOfAJobShowAtOnce()
{
    SessionOptions options;
    options.intervalMs = 10000;
    VirtualPlant plant(options);
    Monitor *const monitor = plant.monitor("D_W:5");
    plant.open(2000);
    plant.setWord(5, 50);
    QVERIFY(plant.finishes(plant.read("D_W:0*10")));
    plant.run(1);
    QCOMPARE(shown(monitor), QLatin1String("50"));
}

void TestValues::agesAndTimes()
{
    SessionOptions options;
    options.intervalMs = 1000;
    VirtualPlant plant(options);
    Monitor *const monitor = plant.monitor("D_W:0*120");
    QCOMPARE(monitor->items().first().ageMs(plant.session->nowMs()), qint64(ItemState::kNeverRead));
    plant.open(2000);
    const ItemState &state = monitor->items().first();
    const qint64 ageMs = state.ageMs(plant.session->nowMs());
    QVERIFY2(ageMs > 0 && ageMs < 1100, qPrintable(QString::number(ageMs)));
    QVERIFY(state.changedAtMs < state.readAtMs);
    QVERIFY(qAbs(state.readAtMs - plant.clock.wallMs()) <= ageMs);
    plant.silence(1);
    plant.run(10000);
    QVERIFY(monitor->items().first().ageMs(plant.session->nowMs()) > 10000);
}

QTEST_GUILESS_MAIN(TestValues)

#include "test_values.moc"
