#include "host/support/virtual_plant.h"

#include <host/driver/driver_core.h>

#include <QtTest>

using namespace cnet;

Q_DECLARE_METATYPE(cnet::RecipeDirection)
Q_DECLARE_METATYPE(cnet::Verify)

class TestRecipeJob : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writes();
    void reads();
    void tellsWhatItsBlocksAreFor();
    void hidesNoChangeFromMonitors();
    void fitsThePlc_data();
    void fitsThePlc();
    void verifies_data();
    void verifies();
    void verifiesWhatCanBeRead();
    void failsAtABlock_data();
    void failsAtABlock();
    void saysAtWhichBlockTheLineWasLost();
    void beginsAtTheFirstBlockAgain_data();
    void beginsAtTheFirstBlockAgain();
    void givesTheDriverBackItsBlocks();

private:
    static RecipeJob *start(VirtualPlant &plant, const char *items, RecipeDirection direction,
                            Verify verify = Verify::Yes);
};

// Values count on from 0x100 in the order of the items.
RecipeJob *TestRecipeJob::start(VirtualPlant &plant, const char *items, RecipeDirection direction,
                                Verify verify)
{
    QVector<RecipeItem> recipe;
    int next = 0x100;
    for (const Item &item : plant.items(QLatin1String(items))) {
        RecipeItem one{item, {}, 0};
        for (int i = 0; i < item.count; ++i, ++next) {
            one.values.append(static_cast<quint16>(next));
        }
        recipe.append(one);
    }
    return plant.session->transfer(recipe, direction, verify);
}

void TestRecipeJob::writes()
{
    SessionOptions options;
    options.blockWords = 4;
    VirtualPlant plant(options);
    plant.open();
    RecipeJob *const job =
        start(plant, "M_W:3 D_W:12*4 D_W:10*2", RecipeDirection::Write, Verify::No);
    QSignalSpy progressed(job, &Job::progressed);
    QVERIFY(plant.finishes(job));
    QCOMPARE(plant.takeFrames("SB"),
             (QStringList{QLatin1String("01wSB08%DW00010040105010601010102"),
                          QLatin1String("01wSB08%DW000140201030104"),
                          QLatin1String("01wSB08%MW00003010100")}));
    QCOMPARE(job->failure(), QString());
    QCOMPARE(job->progress().blocks, 3);
    QCOMPARE(job->progress().words, 7);
    QCOMPARE(job->progress().total, 7);
    QCOMPARE(static_cast<int>(progressed.size()), 3);
    QVERIFY(job->values().isEmpty());
}

void TestRecipeJob::reads()
{
    SessionOptions options;
    options.blockWords = 4;
    VirtualPlant plant(options, {1, 2});
    for (int i = 0; i < 6; ++i) {
        plant.setWord(10 + i, 0xFF00 + i);
    }
    plant.memory(2).setWord('M', 3, 9);
    plant.open();
    RecipeJob *const job = start(plant, "2/M_W:3 D_W:12*4 D_W:10*2", RecipeDirection::Read);
    QVERIFY(plant.finishes(job));
    QCOMPARE(job->failure(), QString());
    QCOMPARE(job->values(),
             (QVector<QVector<quint16>>{{9}, {0xFF02, 0xFF03, 0xFF04, 0xFF05}, {0xFF00, 0xFF01}}));
}

// The driver has no tag for them: what it says is that of the frame before.
void TestRecipeJob::tellsWhatItsBlocksAreFor()
{
    VirtualPlant plant;
    plant.monitor("D_W:500");
    plant.open();
    QVERIFY(plant.finishes(plant.read("D_W:600")));
    QVector<Purpose> purposes;
    connect(plant.session.get(), &Session::exchangeEnded, this,
            [&purposes](const ExchangeReport &report) {
                if (report.range.start == 10) {
                    purposes.append(report.purpose);
                }
            });
    QVERIFY(plant.finishes(start(plant, "D_W:10*2", RecipeDirection::Write)));
    QVERIFY(purposes == (QVector<Purpose>{Purpose::Recipe, Purpose::Read}));
}

// The driver starts anew for a recipe that is written: a value that is 0 now is no change to it.
void TestRecipeJob::hidesNoChangeFromMonitors()
{
    VirtualPlant plant;
    plant.setWord(500, 7);
    Monitor *const monitor = plant.monitor("D_W:500");
    plant.open(300);
    QCOMPARE(monitor->items().first().values.first().value, quint16(7));
    RecipeJob *const job = start(plant, "D_W:10*2", RecipeDirection::Write, Verify::No);
    plant.setWord(500, 0);
    QVERIFY(plant.finishes(job));
    plant.run(500);
    QCOMPARE(monitor->items().first().values.first().value, quint16(0));
}

void TestRecipeJob::fitsThePlc_data()
{
    QTest::addColumn<int>("words");
    QTest::addColumn<QString>("counts"); // of the frames, in hexadecimal
    QTest::newRow("58") << 58 << "3A";
    QTest::newRow("59") << 59 << "3A 01";
    QTest::newRow("60") << 60 << "3A 02";
    QTest::newRow("300") << 300 << "3A 3A 3A 3A 3A 0A";
}

// A frame of 256 characters is the most that a PLC takes.
void TestRecipeJob::fitsThePlc()
{
    QFETCH(int, words);
    VirtualPlant plant;
    plant.open();
    RecipeJob *const job = start(plant, qPrintable(QString::fromLatin1("D_W:0*%1").arg(words)),
                                 RecipeDirection::Write);
    QVERIFY(plant.finishes(job));
    QCOMPARE(job->failure(), QString());
    QStringList counts;
    for (const QString &frame : plant.takeFrames("wSB")) {
        QVERIFY(frame.size() + 4 <= 256);
        counts.append(frame.mid(15, 2));
    }
    QTEST(counts.join(QLatin1Char(' ')), "counts");
    for (int i = 0; i < words; ++i) {
        QCOMPARE(plant.word(i), 0x100 + i);
    }
}

void TestRecipeJob::verifies_data()
{
    QTest::addColumn<Verify>("verify");
    QTest::addColumn<QString>("failure");
    QTest::newRow("verified") << Verify::Yes
                              << "verifying: 58 of 200 words differ; 1/D_W:0 holds 0, 256 was "
                                 "written";
    QTest::newRow("not verified") << Verify::No << "";
}

// The PLC has confirmed every block; then its power went, and with it the first one.
void TestRecipeJob::verifies()
{
    QFETCH(Verify, verify);
    VirtualPlant plant;
    plant.open();
    RecipeJob *const job = start(plant, "D_W:0*200", RecipeDirection::Write, verify);
    QVERIFY(plant.clock.runUntil([job] { return job->progress().blocks == 1; }, 1000));
    plant.line->bus.add(1);
    QVERIFY(plant.finishes(job));
    QTEST(job->failure(), "failure");
    QCOMPARE(plant.word(0), 0);
    QCOMPARE(plant.word(199), 0x100 + 199);
    QCOMPARE(plant.takeFrames("01rSB").isEmpty(), verify == Verify::No);
}

void TestRecipeJob::verifiesWhatCanBeRead()
{
    VirtualPlant plant;
    plant.open();
    RecipeJob *const job = start(plant, "D_W:4990*20", RecipeDirection::Write);
    QVERIFY(plant.clock.runUntil([job] { return job->progress().blocks == 1; }, 1000));
    plant.line->bus.add(1, plc::Model::K120s); // the whole PLC was exchanged
    QVERIFY(plant.finishes(job));
    QVERIFY2(job->failure().startsWith(QLatin1String("verifying: 1/D_W:4990*20: refused: 1132")),
             qPrintable(job->failure()));
}

void TestRecipeJob::failsAtABlock_data()
{
    QTest::addColumn<RecipeDirection>("direction");
    QTest::addColumn<bool>("silent"); // else refused
    QTest::addColumn<QString>("failure");
    for (const auto direction : {RecipeDirection::Write, RecipeDirection::Read}) {
        const char *const name = direction == RecipeDirection::Write ? "write" : "read";
        QTest::addRow("%s, silence", name)
            << direction << true << "block 2 (1/D_W:4999*2): no answer";
        QTest::addRow("%s, refused", name)
            << direction << false << "block 2 (1/D_W:4999*2): refused: 1132";
    }
}

void TestRecipeJob::failsAtABlock()
{
    QFETCH(RecipeDirection, direction);
    QFETCH(bool, silent);
    QFETCH(QString, failure);
    VirtualPlant plant(SessionOptions(), {1, 2});
    plant.line->bus.add(1, plc::Model::K120s);
    plant.open();
    RecipeJob *const job = start(plant, "1/D_W:4000 1/D_W:4999*2 2/D_W:0", direction);
    QVERIFY(plant.clock.runUntil([&] { return !plant.takeFrames("SB").isEmpty(); }, 1000));
    plant.silence(1, silent); // from the second block on
    QVERIFY(plant.finishes(job));
    QVERIFY2(job->failure().startsWith(failure), qPrintable(job->failure()));
    QCOMPARE(job->progress().blocks, 1);
    QVERIFY(job->values().isEmpty());
    // The next transfer begins at its first block.
    RecipeJob *const next = start(plant, "2/D_W:100*2 2/D_W:200", direction);
    QVERIFY(plant.finishes(next));
    QCOMPARE(next->failure(), QString());
    QCOMPARE(next->progress().blocks, 2);
}

void TestRecipeJob::saysAtWhichBlockTheLineWasLost()
{
    VirtualPlant plant;
    plant.open();
    RecipeJob *const job = start(plant, "D_W:0 D_W:10 D_W:20", RecipeDirection::Write);
    QVERIFY(plant.clock.runUntil([&] { return job->progress().blocks == 1; }, 1000));
    plant.line->breakDown();
    QVERIFY(plant.finishes(job));
    QCOMPARE(job->failure(), QLatin1String("block 2: the line is down"));
}

void TestRecipeJob::beginsAtTheFirstBlockAgain_data()
{
    QTest::addColumn<int>("blocks"); // transferred before
    for (int blocks = 0; blocks < 3; ++blocks) {
        QTest::addRow("%d", blocks) << blocks;
    }
}

void TestRecipeJob::beginsAtTheFirstBlockAgain()
{
    QFETCH(int, blocks);
    VirtualPlant plant;
    plant.open();
    RecipeJob *const first = start(plant, "D_W:0 D_W:10 D_W:20", RecipeDirection::Write);
    QVERIFY(plant.clock.runUntil([&] { return first->progress().blocks == blocks; }, 1000));
    plant.run(2);
    first->cancel();
    QCOMPARE(first->state(), Job::State::Cancelled);
    QCOMPARE(first->failure(), QString::fromLatin1("block %1: cancelled").arg(blocks + 1));
    plant.run(50);
    plant.takeFrames();
    RecipeJob *const second =
        start(plant, "D_W:0 D_W:10 D_W:20", RecipeDirection::Write, Verify::No);
    QVERIFY(plant.finishes(second));
    QCOMPARE(second->progress().blocks, 3);
    QCOMPARE(static_cast<int>(plant.takeFrames("wSB").size()), 3);
}

// Of a recipe that is written blocks are shorter; the cyclic reads have theirs again afterwards.
void TestRecipeJob::givesTheDriverBackItsBlocks()
{
    VirtualPlant plant;
    Monitor *const monitor = plant.monitor("D_W:500*60");
    plant.open();
    QCOMPARE(plant.driver.core().blockWords(), 60);
    RecipeJob *const job = start(plant, "D_W:0*100", RecipeDirection::Write);
    QVERIFY(plant.finishes(job));
    QCOMPARE(plant.driver.core().blockWords(), 60);
    plant.setWord(559, 3);
    plant.takeFrames();
    plant.run(300);
    QCOMPARE(monitor->items().first().values.at(59).value, quint16(3));
    QVERIFY(!plant.takeFrames("01rSB08%DW005003C").isEmpty());
}

QTEST_GUILESS_MAIN(TestRecipeJob)

#include "test_recipe_job.moc"
