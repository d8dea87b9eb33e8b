#include "gateway/delivery/recorder.h"
#include "gateway/sinks/history_reader.h"
#include "gateway/support/changes.h"
#include "host/support/virtual_clock.h"
#include "support/full_disk.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** From the lines into the history, also over a full disk. */
class TestRecorder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void bringsChangesToTheHistory();
    void goesOnAfterAFullDisk();
    void saysWhatTheMemoryCouldNotHold();
    void saysWhatIsLostAtTheEnd();
    void startsNotWithoutALedger();
    void startsOnAFullDisk();
    void countsWhatIsLostWithoutALedger();
    void takesOtherSinks();
    void saysWhatOfTheLedgerIsFixed();
    void tellsHowItStands();
    void givesAnotherSinkOfTheSameNameTheRest();

private:
    QVector<qint64> history() const;
    /** @return changes that are lost */
    qint64 finish()
    {
        qint64 lost = -1;
        connect(m_recorder.get(), &Recorder::finished, this, [&lost](qint64 all) { lost = all; });
        m_recorder->finish();
        m_clock.runUntil([&lost] { return lost >= 0; }, 3000);
        return lost;
    }
    void make()
    {
        m_recorder = std::make_unique<Recorder>(
            m_config, *m_inbox, m_clock, [this](const QString &line) { m_said.append(line); });
    }
    void put(qint64 value, int count = 1)
    {
        m_inbox->put(batchWith(QVector<qint64>(count, value)));
        m_recorder->commit();
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    VirtualClock m_clock;
    GatewayConfig m_config;
    std::unique_ptr<Inbox> m_inbox;
    std::unique_ptr<Recorder> m_recorder;
    QStringList m_said;
};

void TestRecorder::init()
{
    m_recorder.reset();
    m_directory = std::make_unique<QTemporaryDir>();
    m_inbox = std::make_unique<Inbox>(100000);
    m_said.clear();
    SqliteSettings settings;
    settings.path = m_directory->filePath(QLatin1String("history"));
    settings.ageMs = Q_INT64_C(3600000) * 24 * 365 * 100;
    m_config.sinks = {{QLatin1String("history"), settings}};
    m_config.ledger.path = m_directory->filePath(QLatin1String("ledger"));
    make();
}

QVector<qint64> TestRecorder::history() const
{
    QVector<qint64> values;
    HistoryReader reader;
    reader.open(m_directory->filePath(QLatin1String("history")));
    reader.read({QLatin1String("*"), QString()}, [&values](const HistoryRow &row) {
        values.append(std::get<qint64>(row.value.value));
        return true;
    });
    return values;
}

void TestRecorder::bringsChangesToTheHistory()
{
    QVERIFY(m_recorder->start().isNone());
    put(1);
    m_clock.runFor(1);
    QCOMPARE(history(), QVector<qint64>({1}));
    put(2);
    m_inbox->put(batchWith({3}));
    QCOMPARE(finish(), 0);
    QCOMPARE(history(), QVector<qint64>({1, 2, 3}));
    QVERIFY(m_inbox->isEmpty());
    QCOMPARE(m_said, QStringList());
}

void TestRecorder::goesOnAfterAFullDisk()
{
    QVERIFY(m_recorder->start().isNone());
    put(1);
    m_clock.runFor(1);
    {
        const FullDisk full(1000);
        for (qint64 value = 2; value < 20; ++value) {
            put(value);
            m_clock.runFor(1000);
        }
    }
    QCOMPARE(history(), QVector<qint64>({1}));
    m_clock.runFor(60000);
    QVector<qint64> all;
    for (qint64 value = 1; value < 20; ++value) {
        all.append(value);
    }
    QCOMPARE(history(), all);
    QVERIFY2(m_said.size() >= 2 && m_said.size() <= 4, qPrintable(m_said.join(QLatin1Char('\n'))));
    QVERIFY2(m_said.first().startsWith(QLatin1String("ledger: cannot store in ")),
             qPrintable(m_said.first()));
    QVERIFY(m_said.contains(QLatin1String("ledger: works again")));
}

void TestRecorder::saysWhatTheMemoryCouldNotHold()
{
    QVERIFY(m_recorder->start().isNone());
    {
        const FullDisk full(1000);
        for (qint64 value = 1; value <= 20; ++value) {
            put(value, 5000);
        }
    }
    m_clock.runFor(60000);
    const QVector<qint64> kept = history();
    QCOMPARE(kept.last(), 20);
    const qint64 dropped = 20 * 5000 - kept.size();
    QVERIFY(dropped > 0);
    QVERIFY2(m_said.contains(QString::fromLatin1("ledger: %1 changes did not fit the memory "
                                                 "meanwhile and are lost")
                                 .arg(dropped)),
             qPrintable(m_said.join(QLatin1Char('\n'))));
}

void TestRecorder::saysWhatIsLostAtTheEnd()
{
    QVERIFY(m_recorder->start().isNone());
    const FullDisk full(1000);
    put(1, 2);
    put(2, 3);
    QCOMPARE(finish(), 5);
}

void TestRecorder::startsNotWithoutALedger()
{
    m_config.ledger.path = QLatin1String("/nonexistent/ledger");
    Recorder recorder(m_config, *m_inbox, m_clock, [](const QString &) {});
    QVERIFY(!recorder.start().isNone());
}

// The lines are watched, and what they tell waits.
void TestRecorder::startsOnAFullDisk()
{
    {
        const FullDisk full(1000);
        QVERIFY(m_recorder->start().isNone());
        for (qint64 value = 1; value < 10; ++value) {
            put(value);
            m_clock.runFor(10000);
        }
        const RecorderState state = m_recorder->state();
        QVERIFY2(state.trouble.startsWith(QLatin1String("cannot open ")),
                 qPrintable(state.trouble));
        QVERIFY(state.memoryBytes > 0);
        QCOMPARE(state.sinks.value(0).name, QLatin1String("history"));
        QVERIFY(!state.sinks.value(0).isReady);
        QCOMPARE(state.sinks.value(0).trouble, QLatin1String("it waits for the ledger"));
    }
    m_clock.runFor(60000);
    QCOMPARE(history(), QVector<qint64>({1, 2, 3, 4, 5, 6, 7, 8, 9}));
    QCOMPARE(m_said.size(), 2);
    QVERIFY2(m_said.first().startsWith(QLatin1String("ledger: cannot open ")),
             qPrintable(m_said.first()));
    QCOMPARE(m_said.last(), QLatin1String("ledger: works again"));
    QCOMPARE(m_recorder->state().trouble, QString());
    QCOMPARE(finish(), 0);
}

void TestRecorder::countsWhatIsLostWithoutALedger()
{
    const FullDisk full(1000);
    QVERIFY(m_recorder->start().isNone());
    put(1, 3);
    put(2, 4);
    QCOMPARE(finish(), 7);
}

void TestRecorder::takesOtherSinks()
{
    QVERIFY(m_recorder->start().isNone());
    put(1);
    m_clock.runFor(1);
    SqliteSettings settings = std::get<SqliteSettings>(m_config.sinks.first().settings);
    settings.path = m_directory->filePath(QLatin1String("second"));
    const SinkConfig second{QLatin1String("second"), settings, QLatin1String("second")};
    m_config.sinks.append(second);
    m_recorder->reload(m_config);
    put(2);
    m_clock.runFor(1);
    m_config.sinks = {second};
    m_recorder->reload(m_config);
    put(3);
    QCOMPARE(finish(), 0);
    QCOMPARE(history(), QVector<qint64>({1, 2}));
    HistoryReader reader;
    reader.open(settings.path);
    QVector<qint64> values;
    reader.read({QLatin1String("*"), QString()}, [&values](const HistoryRow &row) {
        values.append(std::get<qint64>(row.value.value));
        return true;
    });
    QCOMPARE(values, QVector<qint64>({2, 3})); // what came since it stands there
    QCOMPARE(m_said, QStringList({QLatin1String("sink second: begins"),
                                  QLatin1String("sink history: ends")}));
    // Nothing waits for the one that is gone.
    m_recorder.reset();
    Ledger ledger(m_clock);
    QVERIFY(ledger
                .open(m_config.ledger.path, Database::Durability::Normal, LedgerBounds(),
                      {QLatin1String("second")})
                .isNone());
    QCOMPARE(ledger.state().batches, 0);
}

void TestRecorder::saysWhatOfTheLedgerIsFixed()
{
    QVERIFY(m_recorder->start().isNone());
    const QString path = m_config.ledger.path;
    m_config.ledger.path = m_directory->filePath(QLatin1String("other"));
    m_config.ledger.durability = Database::Durability::Normal;
    m_recorder->reload(m_config);
    QCOMPARE(m_said,
             QStringList({QString::fromLatin1("ledger: stays in %1 until the next start").arg(path),
                          QLatin1String("ledger: another durability counts from the next start "
                                        "on")}));
}

void TestRecorder::tellsHowItStands()
{
    QVERIFY(m_recorder->start().isNone());
    put(1, 4);
    m_clock.runFor(1);
    RecorderState state = m_recorder->state();
    QCOMPARE(state.sinks.value(0).name, QLatin1String("history"));
    QVERIFY(state.sinks.value(0).isReady);
    QCOMPARE(state.sinks.value(0).values, Q_INT64_C(4));
    QCOMPARE(state.sinks.value(0).waitingBatches, Q_INT64_C(0));
    QCOMPARE(state.sinks.value(0).waitingMs, Q_INT64_C(0));
    QCOMPARE(state.trouble, QString());
    QCOMPARE(state.ledger.batches, Q_INT64_C(0));
    QCOMPARE(state.ledger.oldestAgeMs, Q_INT64_C(0));
    {
        const FullDisk full(1000);
        put(2);
        state = m_recorder->state();
        QVERIFY(state.memoryBytes > 0);
        QVERIFY2(state.trouble.startsWith(QLatin1String("cannot store in ")),
                 qPrintable(state.trouble));
    }
    m_clock.runFor(60000);
    QCOMPARE(m_recorder->state().trouble, QString());
    QCOMPARE(m_recorder->state().memoryBytes, Q_INT64_C(0));
}

// A long backlog goes to the file that was there, and what comes meanwhile to the other one.
void TestRecorder::givesAnotherSinkOfTheSameNameTheRest()
{
    const int count = 2000;
    {
        Ledger ledger(m_clock);
        QVERIFY(ledger
                    .open(m_config.ledger.path, Database::Durability::Normal, LedgerBounds(),
                          {QLatin1String("history")})
                    .isNone());
        QVector<LedgerBatch> batches(count, batchWith({7}));
        QVERIFY(ledger.commit(batches).isNone());
    }
    QVERIFY(m_recorder->start().isNone());
    GatewayConfig next = m_config;
    next.sinks.first().written = QLatin1String("another one");
    auto &settings = std::get<SqliteSettings>(next.sinks.first().settings);
    settings.path = m_directory->filePath(QLatin1String("second"));
    m_recorder->reload(next);
    QVERIFY(history().size() < count / 10); // it did not wait for all of it
    put(8);
    m_clock.runFor(1);
    QCOMPARE(int(history().size()), count);
    QCOMPARE(finish(), 0);
    QCOMPARE(int(history().size()), count);
    HistoryReader reader;
    reader.open(settings.path);
    QVector<qint64> values;
    reader.read({QLatin1String("*"), QString()}, [&values](const HistoryRow &row) {
        values.append(std::get<qint64>(row.value.value));
        return true;
    });
    QCOMPARE(values, QVector<qint64>({8}));
}

QTEST_APPLESS_MAIN(TestRecorder)
#include "test_recorder.moc"
