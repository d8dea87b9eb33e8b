#include "gateway/sinks/history_file.h"
#include "gateway/store/ledger_fixture.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** A number of the ledger means one batch, also where a power cut took the last ones. */
class TestLedgerIdentity : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesWhereNumbersMayComeAgain_data();
    void changesWhereNumbersMayComeAgain();
    void costsNoBatchAfterAPowerCut();
    void knowsTheBoot();

private:
    using Durability = Database::Durability;

    /** Opens it, stores batches, and says which ledger it was. */
    QString run(Durability durability, const char *boot, int batches = 1)
    {
        Ledger ledger(m_clock);
        const StoreError failed = ledger.open(path("ledger"), durability, LedgerBounds(),
                                              {QLatin1String("history")}, QLatin1String(boot));
        for (int i = 0; failed.isNone() && i < batches; ++i) {
            QVector<LedgerBatch> one{batchOf(1)};
            if (ledger.commit(one).isNone()) {
                m_numbers.append(one.first().number);
            }
        }
        return ledger.identity();
    }

    static SinkBatch batch(qint64 number)
    {
        Change change;
        change.source = std::make_shared<ChangeSource>();
        change.value = number;
        return {number, {change}, SinkBatch::Age::Live};
    }

    QString path(const char *name) const { return m_directory.filePath(QLatin1String(name)); }

    HandClock m_clock;
    QTemporaryDir m_directory;
    QVector<qint64> m_numbers;
};

void TestLedgerIdentity::changesWhereNumbersMayComeAgain_data()
{
    QTest::addColumn<bool>("wasFull");
    QTest::addColumn<bool>("isFull");
    QTest::addColumn<bool>("isSameBoot");
    QTest::addColumn<bool>("isSame");
    QTest::newRow("full, killed") << true << true << true << true;
    QTest::newRow("full, a power cut") << true << true << false << true;
    QTest::newRow("normal, killed") << false << false << true << true;
    QTest::newRow("normal, a power cut") << false << false << false << false;
    QTest::newRow("normal, then full, killed") << false << true << true << true;
    QTest::newRow("normal, then full, a power cut") << false << true << false << false;
    QTest::newRow("full, then normal, a power cut") << true << false << false << true;
}

void TestLedgerIdentity::changesWhereNumbersMayComeAgain()
{
    QFETCH(bool, wasFull);
    QFETCH(bool, isFull);
    QFETCH(bool, isSameBoot);
    QFETCH(bool, isSame);
    QFile::remove(path("ledger"));
    const QString first = run(wasFull ? Durability::Full : Durability::Normal, "a");
    QVERIFY(!first.isEmpty());
    const auto durability = isFull ? Durability::Full : Durability::Normal;
    const char *const boot = isSameBoot ? "a" : "b";
    const QString second = run(durability, boot);
    QCOMPARE(second == first, isSame);
    QCOMPARE(run(durability, boot), second);
}

// What was there before the cut comes back as a copy of the file.
void TestLedgerIdentity::costsNoBatchAfterAPowerCut()
{
    QFile::remove(path("ledger"));
    m_numbers.clear();
    run(Durability::Normal, "a", 2);
    QVERIFY(QFile::copy(path("ledger"), path("before")));
    const QString lost = run(Durability::Normal, "a", 3);
    QVERIFY(QFile::remove(path("ledger")) && QFile::rename(path("before"), path("ledger")));
    const QString identity = run(Durability::Normal, "b", 3);
    QCOMPARE(m_numbers, QVector<qint64>({1, 2, 3, 4, 5, 3, 4, 5}));
    // The history had all five; what comes with their numbers is new to it.
    HistoryFile history;
    QVERIFY(history.open(path("history"), {}, lost).isNone());
    QVERIFY(history.store({batch(1), batch(2), batch(3), batch(4), batch(5)}).isNone());
    QVERIFY(history.open(path("history"), {}, identity).isNone());
    QVERIFY(history.store({batch(3), batch(4), batch(5)}).isNone());
    history.close();
    Database file;
    QVERIFY(file.openToRead(path("history")).isNone());
    Statement count(file, "SELECT count(*) FROM change");
    count.step();
    QCOMPARE(count.number(0), Q_INT64_C(8));
}

void TestLedgerIdentity::knowsTheBoot()
{
    QVERIFY(!currentBoot().isEmpty());
    QCOMPARE(currentBoot(), currentBoot());
}

QTEST_GUILESS_MAIN(TestLedgerIdentity)
#include "test_ledger_identity.moc"
