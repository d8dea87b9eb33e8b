#include "gateway.h"

#include "gateway/change/batch_codec.h"
#include "gateway/store/database.h"

#include "support/random.h"

#include <QtTest>

#include <csignal>

using namespace cnet;
using namespace cnet::gateway;

/** cnet-gateway is killed, its history cannot be written: what the ledger took comes there. */
class TestGatewayCuts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void losesNothing();

private:
    void prepare();
    void runAndKill(int round);
    bool block(Database &history) const;
    void runToTheEnd();
    QVector<qint64> inLedger() const;
    qint64 lastNumber() const;
    QVector<qint64> inHistory() const;
    QString path(const char *name) const { return m_gateway.path(name); }

    GatewayProgram m_gateway;
    PlcProgram m_plc;
    Random m_random{5};
};

namespace {

const int kRounds = 6;

// Of the only tag: values of what has been read, in order; the same value comes again at a start.
qint64 valueOf(const Scalar &value)
{
    const auto *whole = std::get_if<qint64>(&value);
    return whole == nullptr ? -1 : *whole;
}

QVector<qint64> valuesIn(Database &database)
{
    QVector<qint64> values;
    Statement read(database, "SELECT body FROM batch ORDER BY number");
    while (read.step() == Statement::Step::Row) {
        const auto changes = readBatch(read.bytes(0));
        for (const Change &change : changes.value_or(QVector<Change>())) {
            values.append(valueOf(change.value));
        }
    }
    return values;
}

/** Whether some values stand within others, in their order and one behind the other. */
bool isWithin(const QVector<qint64> &some, const QVector<qint64> &all)
{
    return std::search(all.begin(), all.end(), some.begin(), some.end()) != all.end();
}

} // namespace

void TestGatewayCuts::prepare()
{
    QVERIFY(m_plc.serve({QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")},
                        {QLatin1String("--counter"), QLatin1String("D_W:100@20")}));
    QVERIFY(m_gateway.store("tags.csv", "name,register,address,type\ncounter,D_W,100,u32\n"));
    QVERIFY(
        m_gateway.store("gateway.toml", "[batch]\nchanges = 1\n[line.press]\ntags = \"tags.csv\"\n"
                                        "interval = \"0\"\nlink = \"tcp:" +
                                            m_plc.place().toLatin1() + "\"\n"));
}

QVector<qint64> TestGatewayCuts::inLedger() const
{
    Database ledger;
    ledger.openToRead(path("ledger.sqlite"));
    return valuesIn(ledger);
}

qint64 TestGatewayCuts::lastNumber() const
{
    Database ledger;
    ledger.openToRead(path("ledger.sqlite"));
    Statement read(ledger, "SELECT seq FROM sqlite_sequence WHERE name = 'batch'");
    return read.step() == Statement::Step::Row ? read.number(0) : 0;
}

QVector<qint64> TestGatewayCuts::inHistory() const
{
    QVector<qint64> values;
    Database history;
    history.openToRead(path("history.sqlite"));
    Statement read(history, "SELECT value FROM change ORDER BY id");
    while (read.step() == Statement::Step::Row) {
        values.append(valueOf(read.scalar(0)));
    }
    return values;
}

/** Keeps the gateway from writing into its history, as soon as it is not just writing. */
bool TestGatewayCuts::block(Database &history) const
{
    bool isBlocked = false;
    for (int tries = 0; tries < 1000 && !isBlocked; ++tries) {
        isBlocked = history.isOpen() && history.run("BEGIN IMMEDIATE").isNone();
        if (!history.isOpen()) {
            history.open(path("history.sqlite"), Database::Durability::Normal,
                         Database::Sharing::Readers);
        } else if (!isBlocked) {
            QTest::qWait(3);
        }
    }
    return isBlocked;
}

void TestGatewayCuts::runAndKill(int round)
{
    const auto before = inHistory().size();
    Program program;
    QVERIFY(m_gateway.start(program, {"run", QFile::encodeName(path("gateway.toml"))}));
    QTRY_VERIFY_WITH_TIMEOUT(inHistory().size() > before + 5, 30000);
    Database blocker;
    if (round % 2 == 1) {
        // Somebody else writes into the history for long: a backlog grows.
        QVERIFY(block(blocker));
        QTest::qWait(700);
    }
    QTest::qWait(m_random.below(200));
    program.signal(SIGKILL);
    QCOMPARE(program.exitCode(), -1);
    blocker.run("ROLLBACK");
}

void TestGatewayCuts::runToTheEnd()
{
    const auto before = inHistory().size();
    Program program;
    QVERIFY(m_gateway.start(program, {"run", QFile::encodeName(path("gateway.toml"))}));
    QTRY_VERIFY_WITH_TIMEOUT(inHistory().size() > before + 5, 30000);
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
}

void TestGatewayCuts::losesNothing()
{
    prepare();
    QVector<qint64> longest;
    for (int round = 0; round < kRounds; ++round) {
        runAndKill(round);
        const QVector<qint64> waiting = inLedger();
        QVERIFY(!waiting.isEmpty());
        longest = waiting.size() > longest.size() ? waiting : longest;
        runToTheEnd();
        const QVector<qint64> values = inHistory();
        QVERIFY2(isWithin(waiting, values), "a change that the ledger took is not in the history");
        // Each batch has one change: as many came as were ever taken, and none twice.
        QCOMPARE(qint64(values.size()), lastNumber());
    }
    QVERIFY2(longest.size() > 10, "nothing ever waited");
    // In order; a value that is told again at a start or an end is no other, and one that was never
    // read is none.
    QVector<qint64> values = inHistory();
    values.removeAll(-1);
    QVERIFY(std::is_sorted(values.begin(), values.end()));
}

QTEST_GUILESS_MAIN(TestGatewayCuts)
#include "test_gateway_cuts.moc"
