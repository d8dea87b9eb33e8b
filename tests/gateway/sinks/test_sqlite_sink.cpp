#include "gateway/sinks/history_reader.h"
#include "gateway/sinks/sqlite_sink.h"
#include "gateway/support/changes.h"
#include "host/support/virtual_clock.h"
#include "support/full_disk.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** When a history's old changes go, and what is said of it. */
class TestSqliteSink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void letsOldChangesGoOnceASecond();
    void letsOldChangesGoOnAFullDisk();

private:
    static constexpr int kHourMs = 3600000;

    void take(int changes);
    int count() const;

    VirtualClock m_clock;
    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<SqliteSink> m_sink;
    qint64 m_number = 0;
    qint64 m_safe = 0;
    QStringList m_failures;
};

void TestSqliteSink::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    m_number = m_safe = 0;
    m_failures.clear();
    SqliteSettings settings;
    settings.path = m_directory->filePath(QLatin1String("history.sqlite"));
    settings.ageMs = kHourMs;
    m_sink = std::make_unique<SqliteSink>(settings, m_clock);
    connect(m_sink.get(), &Sink::safe, this, [this](qint64 number) { m_safe = number; });
    connect(m_sink.get(), &Sink::failed, this,
            [this](const QString &reason) { m_failures.append(reason); });
    m_sink->begin(QLatin1String("ledger"));
}

void TestSqliteSink::take(int changes)
{
    const Change change = changeOf(sourceOf("a"), qint64(1), m_clock.wallMs());
    m_sink->take({{++m_number, QVector<Change>(changes, change)}});
}

int TestSqliteSink::count() const
{
    HistoryReader reader;
    int count = 0;
    reader.open(m_directory->filePath(QLatin1String("history.sqlite")));
    reader.read({QLatin1String("*"), QString()}, [&count](const HistoryRow &) {
        ++count;
        return true;
    });
    return count;
}

void TestSqliteSink::letsOldChangesGoOnceASecond()
{
    take(3000);
    m_clock.runFor(2 * kHourMs);
    take(1);
    QCOMPARE(count(), 1); // twice what came may go
    take(2000);
    m_clock.runFor(999);
    take(1);
    QCOMPARE(count(), 2002);
    QCOMPARE(m_safe, 4);
    QCOMPARE(m_failures, QStringList());
}

// So that it works again by itself where they were what filled it.
void TestSqliteSink::letsOldChangesGoOnAFullDisk()
{
    take(3000);
    m_clock.runFor(2 * kHourMs);
    {
        const FullDisk full(400000);
        take(20000);
    }
    QCOMPARE(m_safe, 1);
    QCOMPARE(int(m_failures.size()), 1);
    QCOMPARE(count(), 2000); // some of them
    m_sink->begin(QLatin1String("ledger"));
    m_sink->take({{m_number, {changeOf(sourceOf("a"), qint64(1), m_clock.wallMs())}}});
    QCOMPARE(m_safe, 2);
}

QTEST_APPLESS_MAIN(TestSqliteSink)
#include "test_sqlite_sink.moc"
