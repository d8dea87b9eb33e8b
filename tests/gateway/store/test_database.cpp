#include "gateway/store/database.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace cnet::gateway;

class TestDatabase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        const StoreError failed = m_database.open(path(), Database::Durability::Full);
        QVERIFY2(failed.isNone(), qPrintable(failed.text));
        QVERIFY(m_database.run("CREATE TABLE t (a INTEGER PRIMARY KEY, b)").isNone());
    }
    void cleanup() { m_database.close(); }

    void givesBackWhatItWasGiven()
    {
        const QByteArray bytes("\0\xff x", 4);
        Statement insert(m_database, "INSERT INTO t VALUES (?, ?)");
        QVERIFY(insert.bind(1, Q_INT64_C(9223372036854775807)).bind(2, bytes).run());
        QVERIFY(insert.bind(1, 2).bind(2, QString::fromUtf8("\xc2\xb5m")).run());
        QVERIFY(insert.bind(1, 3).bind(2, QByteArray("")).run());
        Statement read(m_database, "SELECT a, b FROM t ORDER BY a DESC");
        QCOMPARE(read.step(), Statement::Step::Row);
        QCOMPARE(read.number(0), Q_INT64_C(9223372036854775807));
        QCOMPARE(read.bytes(1), bytes);
        QCOMPARE(read.step(), Statement::Step::Row);
        QCOMPARE(read.bytes(1), QByteArray());
        QCOMPARE(read.step(), Statement::Step::Row);
        QCOMPARE(read.text(1), QString::fromUtf8("\xc2\xb5m"));
        QCOMPARE(read.step(), Statement::Step::Done);
    }

    void transactionsAreWholeOrNothing()
    {
        {
            Transaction transaction(m_database);
            QVERIFY(m_database.run("INSERT INTO t VALUES (1, 1)").isNone());
        }
        QCOMPARE(rows(), 0);
        Transaction transaction(m_database);
        QVERIFY(m_database.run("INSERT INTO t VALUES (1, 1)").isNone());
        QVERIFY(transaction.commit().isNone());
        QCOMPARE(rows(), 1);
        QVERIFY(m_database.fileBytes() > 0);
    }

    void saysWhatFailed()
    {
        Statement wrong(m_database, "SELECT a FROM nowhere");
        QCOMPARE(wrong.step(), Statement::Step::Failed);
        QCOMPARE(m_database.error().kind, StoreError::Kind::Other);
        QCOMPARE(m_database.error().text, QLatin1String("no such table: nowhere"));
        QCOMPARE(wrong.number(0), 0);
        QCOMPARE(wrong.bytes(0), QByteArray());
        m_database.run("PRAGMA max_page_count = 10");
        Statement insert(m_database, "INSERT INTO t VALUES (1, zeroblob(1000000))");
        QVERIFY(!insert.run());
        QCOMPARE(m_database.error().kind, StoreError::Kind::Full);
    }

    /** A power cut is not to be had in a test; that SQLite was told to wait for the disk is. */
    void waitsForTheDisk()
    {
        for (const auto durability : {Database::Durability::Full, Database::Durability::Normal}) {
            m_database.close();
            QVERIFY(m_database.open(path(), durability).isNone());
            Statement mode(m_database, "PRAGMA synchronous");
            QCOMPARE(mode.step(), Statement::Step::Row);
            QCOMPARE(mode.number(0), durability == Database::Durability::Full ? 2 : 1);
        }
    }

    void saysWhatIsWrongWithTheFile()
    {
        Database other;
        QCOMPARE(other.open(path(), Database::Durability::Full).kind, StoreError::Kind::InUse);
        QVERIFY(!other.isOpen());
        QCOMPARE(other.fileBytes(), 0);
        QVERIFY(!other.error().isNone());
        const QString text = m_directory->filePath(QLatin1String("text"));
        QFile file(text);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(5000, 'x'));
        file.close();
        QCOMPARE(other.open(text, Database::Durability::Full).kind, StoreError::Kind::Broken);
        const StoreError nowhere =
            other.open(QLatin1String("/nonexistent/file"), Database::Durability::Full);
        QCOMPARE(nowhere.kind, StoreError::Kind::Other);
        QVERIFY(!nowhere.text.isEmpty());
    }

private:
    QString path() const { return m_directory->filePath(QLatin1String("file")); }

    qint64 rows()
    {
        Statement count(m_database, "SELECT count(*) FROM t");
        return count.step() == Statement::Step::Row ? count.number(0) : -1;
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    Database m_database;
};

QTEST_APPLESS_MAIN(TestDatabase)

#include "test_database.moc"
