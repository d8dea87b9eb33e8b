#include "host/support/virtual_plant.h"

#include <QtTest>

using namespace cnet;

// What those who are told of something may do at once.
class TestSlots : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void slotsMayDeleteAndAdd();
    void slotsMayDeleteWhatWaits();
    void slotsMayClose_data();
    void slotsMayClose();
};

void TestSlots::slotsMayDeleteAndAdd()
{
    VirtualPlant plant;
    plant.open();
    int finished = 0;
    std::function<void()> next = [&] {
        WriteJob *const job = plant.write("D_W:5=1");
        connect(job, &Job::finished, this, [&, job] {
            delete job;
            if (++finished < 10) {
                next();
            }
        });
    };
    next();
    plant.run(2000);
    QCOMPARE(finished, 10);
    // The same when it is the session that ends them all.
    for (int i = 0; i < 3; ++i) {
        ReadJob *const job = plant.read("D_W:5*100");
        connect(job, &Job::finished, this, [&, job] {
            ++finished;
            delete job;
        });
    }
    plant.run(12);
    plant.session->close();
    QCOMPARE(finished, 13);
}

void TestSlots::slotsMayDeleteWhatWaits()
{
    VirtualPlant plant;
    plant.open();
    ReadJob *const first = plant.read("D_W:5");
    QPointer<ReadJob> second = plant.read("D_W:6");
    ReadJob *const third = plant.read("D_W:7");
    connect(first, &Job::finished, this, [&] { delete second.data(); });
    connect(third, &Job::progressed, third, [third] { third->cancel(); });
    QVERIFY(plant.finishes(third));
    QVERIFY(first->isFinished());
    QVERIFY(second.isNull());
    QVERIFY(third->results().first().isGood());
    WriteJob *const write = plant.write("D_W:5=1 D_W:6=2 D_W:7=3");
    QPointer<WriteJob> guard = write;
    connect(write, &Job::progressed, this, [write] { delete write; });
    plant.run(1000);
    QVERIFY(guard.isNull());
    QCOMPARE(plant.word(5), 1);
    QCOMPARE(plant.word(6), 0);
}

void TestSlots::slotsMayClose_data()
{
    QTest::addColumn<QByteArray>("signal");
    for (const char *const signal :
         {"the job's end", "its progress", "another job begun, too", "an exchange", "a round",
          "a station", "a value", "a quality"}) {
        QTest::addRow("%s", signal) << QByteArray(signal);
    }
}

// Whatever they were told: nothing is asked any more, and nothing is shown as good.
void TestSlots::slotsMayClose()
{
    QFETCH(QByteArray, signal);
    VirtualPlant plant(SessionOptions(), {1, 2});
    Monitor *const monitor = plant.monitor("1/D_W:0 2/D_W:0 3/D_W:0");
    Session *const session = plant.session.get();
    plant.open();
    ReadJob *const job = plant.read("1/D_W:5");
    const auto closesOn = [&](const char *name, auto *sender, auto what) {
        if (signal == name) {
            connect(sender, what, this, [&plant, session] {
                session->close();
                plant.takeFrames();
            });
        }
    };
    closesOn("the job's end", job, &Job::finished);
    closesOn("its progress", job, &Job::progressed);
    closesOn("an exchange", session, &Session::exchangeEnded);
    closesOn("a round", session, &Session::roundEnded);
    closesOn("a station", session, &Session::stationChanged);
    closesOn("a value", monitor, &Monitor::valuesChanged);
    closesOn("a quality", monitor, &Monitor::itemStateChanged);
    Job *late = nullptr;
    if (signal == "another job begun, too") {
        connect(job, &Job::finished, this, [&] {
            session->close();
            plant.takeFrames();
            late = plant.read("4/D_W:5");
        });
    }
    plant.setWord(0, 1);
    plant.silence(2);
    plant.run(20000);
    QCOMPARE(session->state(), Session::State::Closed);
    QVERIFY(plant.takeFrames().isEmpty());
    QVERIFY(job->isFinished());
    QVERIFY(late == nullptr || late->state() == Job::State::Cancelled);
    for (const ItemState &item : monitor->items()) {
        QCOMPARE(item.quality, Quality::LineDown);
    }
}

QTEST_GUILESS_MAIN(TestSlots)

#include "test_slots.moc"
