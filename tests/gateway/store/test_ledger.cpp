#include "gateway/store/ledger_fixture.h"
#include "support/random.h"

#include <QtTest>

#include <deque>

using namespace cnet;
using namespace cnet::gateway;

namespace {

constexpr qint64 kHour = 60LL * 60 * 1000;
constexpr qint64 kRowBytes = 32; // what a row costs beside its body

const QString kMqtt = QLatin1String("mqtt");
const QString kSql = QLatin1String("sql");

} // namespace

class TestLedger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_bounds = LedgerBounds();
        open({kMqtt, kSql});
    }

    void keepsOrderUntilAllConfirm()
    {
        QCOMPARE(store({1, 2, 3}), QVector<qint64>({1, 2, 3}));
        QCOMPARE(m_ledger->after(0, 2).at(1).body, batchOf(2).body);
        m_ledger->confirm(kMqtt, 2);
        store({});
        QCOMPARE(numbersOf(m_ledger->after(0, 9)), QVector<qint64>({1, 2, 3}));
        m_ledger->confirm(kSql, 1);
        store({});
        QCOMPARE(numbersOf(m_ledger->after(0, 9)), QVector<qint64>({2, 3}));
        m_ledger->confirm(kSql, 3);
        m_ledger->confirm(kSql, 2);
        m_ledger->confirm(kMqtt, 3);
        store({});
        QCOMPARE(m_ledger->state().batches, 0);
        QCOMPARE(store({4}), QVector<qint64>({4}));
    }

    void knowsWhatWaits()
    {
        QCOMPARE(m_ledger->waitingMs(kSql), Q_INT64_C(0));
        store({1});
        m_clock.pass(5000);
        store({2, 3});
        m_clock.pass(1000);
        m_ledger->confirm(kMqtt, 1);
        QCOMPARE(m_ledger->waitingBatches(kMqtt), Q_INT64_C(2));
        QCOMPARE(m_ledger->waitingMs(kMqtt), Q_INT64_C(1000));
        QCOMPARE(m_ledger->waitingBatches(kSql), Q_INT64_C(3));
        QCOMPARE(m_ledger->waitingMs(kSql), Q_INT64_C(6000));
        m_ledger->confirm(kMqtt, 3);
        QCOMPARE(m_ledger->waitingBatches(kMqtt), Q_INT64_C(0));
        QCOMPARE(m_ledger->waitingMs(kMqtt), Q_INT64_C(0));
    }

    // Newer ones overtook a backlog, and a bound takes that, and some of them.
    void whatABoundTookDoesNotWait()
    {
        m_bounds.bytes = 4 * (100 + kRowBytes);
        open({kMqtt});
        store({1, 1, 1, 1});
        m_ledger->noteAhead(kMqtt, {2, 4});
        QCOMPARE(m_ledger->waitingBatches(kMqtt), Q_INT64_C(2));
        store({1, 1, 1});
        QCOMPARE(m_ledger->lastGone(), Q_INT64_C(3));
        QCOMPARE(m_ledger->waitingBatches(kMqtt), Q_INT64_C(3));
        m_ledger->noteAhead(kMqtt, {2, 7});
        QCOMPARE(m_ledger->waitingBatches(kMqtt), Q_INT64_C(0));
        QCOMPARE(m_ledger->waitingMs(kMqtt), Q_INT64_C(0));
    }

    void comesBackAsItWas()
    {
        store({5, 6, 7});
        m_ledger->confirm(kMqtt, 2);
        store({8});
        const QString identity = m_ledger->identity();
        const LedgerState before = m_ledger->state();
        open({kMqtt, kSql});
        QCOMPARE(m_ledger->identity(), identity);
        QCOMPARE(m_ledger->state().bytes, before.bytes);
        QCOMPARE(m_ledger->state().values, 26);
        QCOMPARE(m_ledger->confirmed(kMqtt), 2);
        QCOMPARE(m_ledger->confirmed(kSql), 0);
        QCOMPARE(numbersOf(m_ledger->after(2, 9)), QVector<qint64>({3, 4}));
    }

    void confirmsNothingThatIsStillToCome()
    {
        store({1});
        m_ledger->confirm(kMqtt, 100);
        m_ledger->confirm(kSql, 100);
        store({1});
        QCOMPARE(numbersOf(m_ledger->after(0, 9)), QVector<qint64>({2}));
    }

    void numbersAreNeverGivenTwice()
    {
        store({1, 2});
        m_ledger->confirm(kMqtt, 2);
        m_ledger->confirm(kSql, 2);
        store({});
        open({kMqtt, kSql});
        QCOMPARE(store({3}), QVector<qint64>({3}));
    }

    void sinksComeAndGo()
    {
        store({1, 2});
        open({kMqtt});
        m_ledger->confirm(kMqtt, 2);
        store({});
        QCOMPARE(m_ledger->state().batches, 0);
        store({3});
        open({kMqtt, kSql});
        QCOMPARE(m_ledger->confirmed(kSql), 3);
        QCOMPARE(m_ledger->confirmed(kMqtt), 2);
    }

    // Taken for a table without rows, it would have each sink begin behind all that waits.
    void doesNotOpenWhereItsSinksCannotBeRead()
    {
        store({1});
        m_ledger.reset();
        {
            Database file;
            QVERIFY(file.open(path(), Database::Durability::Normal).isNone());
            QVERIFY(file.run("DROP TABLE sink; CREATE TABLE sink (other TEXT);").isNone());
        }
        Ledger ledger(m_clock);
        QVERIFY(!ledger.open(path(), Database::Durability::Normal, m_bounds, {}).isNone());
    }

    void keepsAllWithoutSink()
    {
        open({});
        store({1, 2});
        QCOMPARE(m_ledger->state().batches, 2);
    }

    void dropsTheOldestOverItsBytes()
    {
        m_bounds.bytes = 3 * (100 + kRowBytes);
        open({kMqtt, kSql});
        store({1, 2, 4});
        m_ledger->confirm(kMqtt, 1);
        store({8, 16});
        QCOMPARE(numbersOf(m_ledger->after(0, 9)), QVector<qint64>({3, 4, 5}));
        const LedgerState state = m_ledger->state();
        QCOMPARE(state.sinks.value(kMqtt).droppedValues, 2);
        QCOMPARE(state.sinks.value(kSql).droppedValues, 3);
        QCOMPARE(state.bytes, m_bounds.bytes);
    }

    void dropsWhatIsTooOld()
    {
        m_bounds.ageMs = kHour;
        open({kMqtt});
        store({1});
        m_clock.pass(kHour / 2);
        store({2});
        m_clock.pass(kHour / 2 + 1);
        QCOMPARE(m_ledger->state().oldestAgeMs, kHour + 1);
        store({});
        QCOMPARE(numbersOf(m_ledger->after(0, 9)), QVector<qint64>({2}));
        QCOMPARE(m_ledger->state().sinks.value(kMqtt).droppedValues, 1);
    }

    void aStepOfTheWallClockDropsNothing_data()
    {
        QTest::addColumn<qint64>("stepMs");
        QTest::newRow("forward") << 1000 * kHour;
        QTest::newRow("back") << -1000 * kHour;
    }
    void aStepOfTheWallClockDropsNothing()
    {
        QFETCH(qint64, stepMs);
        m_bounds.ageMs = kHour;
        open({kMqtt});
        store({1});
        m_clock.wall += stepMs;
        m_clock.pass(1000);
        store({2});
        open({kMqtt});
        store({});
        QCOMPARE(m_ledger->state().batches, 2);
        QCOMPARE(m_ledger->state().oldestAgeMs, 1000);
    }

    void timeOffCounts()
    {
        store({1});
        m_clock.wall += kHour;
        open({kMqtt, kSql});
        QCOMPARE(m_ledger->state().oldestAgeMs, kHour);
        // Set back while nothing ran: no time has passed, and the age does not fall.
        store({});
        m_clock.wall -= 9 * kHour;
        open({kMqtt, kSql});
        QCOMPARE(m_ledger->state().oldestAgeMs, kHour);
    }

    void saysHowLongTheRoomLasts()
    {
        m_bounds.bytes = 1000 * (100 + kRowBytes);
        open({kMqtt});
        QVERIFY(!m_ledger->state().hoursLeft);
        for (int i = 0; i < 100; ++i) {
            m_clock.pass(kHour / 100);
            store({1});
        }
        const double hours = m_ledger->state().hoursLeft.value_or(-1);
        QVERIFY2(hours > 8.9 && hours < 9.1, qPrintable(QString::number(hours)));
        m_bounds.ageMs = 2 * kHour;
        open({kMqtt});
        m_clock.pass(kHour / 2);
        store({1});
        QVERIFY(m_ledger->state().hoursLeft.value_or(-1) < 1);
    }

    void oneProgramHasIt()
    {
        Ledger other(m_clock);
        const StoreError failed = other.open(path(), Database::Durability::Full, m_bounds, {});
        QCOMPARE(failed.kind, StoreError::Kind::InUse);
    }

    /** Any order of everything, against a list in memory. */
    void agreesWithAModel()
    {
        Random random(7);
        m_bounds.bytes = 40 * (100 + kRowBytes);
        open({kMqtt, kSql});
        std::deque<LedgerBatch> model;
        QMap<QString, LedgerSink> sinks{{kMqtt, {}}, {kSql, {}}};
        qint64 last = 0;
        for (int i = 0; i < 2000; ++i) {
            QVector<int> sizes;
            for (int count = random.below(5); count > 0; --count) {
                sizes.append(random.between(1, 50));
                model.push_back({++last, sizes.last(), QByteArray()});
            }
            for (const QString &name : {kMqtt, kSql}) {
                // A while in which one sink is away.
                if (random.chance(60) && (i / 200) % 3 != (name == kMqtt ? 1 : 2)) {
                    LedgerSink &sink = sinks[name];
                    const qint64 known = last - sizes.size();
                    sink.confirmed = std::max(
                        sink.confirmed,
                        known - random.below(static_cast<int>(std::min<qint64>(known + 1, 30))));
                    m_ledger->confirm(name, sink.confirmed);
                }
            }
            store(sizes);
            const qint64 all = std::min(sinks[kMqtt].confirmed, sinks[kSql].confirmed);
            while (!model.empty() && (model.front().number <= all || model.size() > 40)) {
                for (LedgerSink &sink : sinks) {
                    const bool lost = model.front().number > sink.confirmed;
                    sink.droppedValues += lost ? model.front().values : 0;
                }
                model.pop_front();
            }
            QCOMPARE(m_ledger->state().batches, static_cast<qint64>(model.size()));
            for (const QString &name : {kMqtt, kSql}) {
                const LedgerSink sink = m_ledger->state().sinks.value(name);
                QCOMPARE(sink.droppedValues, sinks[name].droppedValues);
                QCOMPARE(sink.confirmed, sinks[name].confirmed);
            }
            if (random.chance(2)) {
                open({kMqtt, kSql});
            }
            const QVector<LedgerBatch> first = m_ledger->after(0, 1);
            QCOMPARE(first.isEmpty() ? 0 : first.first().number,
                     model.empty() ? 0 : model.front().number);
        }
        QVERIFY(sinks[kMqtt].droppedValues > 0 && sinks[kSql].droppedValues > 0);
    }

private:
    QString path() const { return m_directory->filePath(QLatin1String("ledger")); }

    void open(const QStringList &sinks)
    {
        m_ledger.reset();
        m_ledger = std::make_unique<Ledger>(m_clock);
        const StoreError failed =
            m_ledger->open(path(), Database::Durability::Normal, m_bounds, sinks);
        QVERIFY2(failed.isNone(), qPrintable(failed.text));
    }

    QVector<qint64> store(const QVector<int> &sizes)
    {
        QVector<LedgerBatch> batches;
        for (const int values : sizes) {
            batches.append(batchOf(values));
        }
        const StoreError failed = m_ledger->commit(batches);
        if (!failed.isNone()) {
            QTest::qFail(qPrintable(failed.text), __FILE__, __LINE__);
        }
        return numbersOf(batches);
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    HandClock m_clock;
    LedgerBounds m_bounds;
    std::unique_ptr<Ledger> m_ledger;
};

QTEST_APPLESS_MAIN(TestLedger)

#include "test_ledger.moc"
