#include "gateway/write/audit_file.h"
#include "support/full_disk.h"

#include <QTemporaryDir>
#include <QtTest>

using cnet::FullDisk;
using namespace cnet::gateway;

/** Whole lines, in files of a bounded number and size. */
class TestAuditFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_directory = std::make_unique<QTemporaryDir>(); }
    void putsLinesBehindEachOther();
    void beginsTheNextFile();
    void writesWholeLinesOnly();
    void goesOnBehindALineThatWasCutOff();
    void readsTheNewestLines();
    void saysWhatIsWrong();

private:
    AuditConfig config(qint64 bytes = 1000, int files = 3) const
    {
        return {m_directory->filePath(QLatin1String("writes.jsonl")), bytes, files};
    }
    QByteArray content(const char *name = "writes.jsonl") const
    {
        QFile file(m_directory->filePath(QLatin1String(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

void TestAuditFile::putsLinesBehindEachOther()
{
    {
        AuditFile file(config());
        QCOMPARE(file.append("a"), QString());
        QCOMPARE(content(), QByteArray("a\n")); // a kill would not cost it
        QCOMPARE(file.append("b"), QString());
        QCOMPARE(file.sync(), QString());
    }
    AuditFile again(config());
    QCOMPARE(again.append("c"), QString());
    QCOMPARE(content(), QByteArray("a\nb\nc\n"));
    QVERIFY(!(QFile::permissions(again.path()) & (QFile::ReadOther | QFile::WriteGroup)));
}

void TestAuditFile::beginsTheNextFile()
{
    AuditFile file(config(10, 3));
    for (const char *line :
         {"1111", "2222", "3333", "4444", "5555", "6666", "7777", "8888888888"}) {
        QCOMPARE(file.append(line), QString());
    }
    QCOMPARE(content(), QByteArray("8888888888\n")); // longer than a file, and alone in it
    QCOMPARE(content("writes.jsonl.1"), QByteArray("7777\n"));
    QCOMPARE(content("writes.jsonl.2"), QByteArray("5555\n6666\n"));
    QCOMPARE(content("writes.jsonl.3"), QByteArray("no file"));
}

void TestAuditFile::writesWholeLinesOnly()
{
    AuditFile file(config(100000));
    QCOMPARE(file.append(QByteArray(600, 'a')), QString());
    {
        const FullDisk full(1000);
        const QString error = file.append(QByteArray(600, 'b'));
        QCOMPARE(error,
                 QLatin1String("cannot write ") + file.path() + QLatin1String(": File too large"));
        QCOMPARE(content(), QByteArray(600, 'a') + '\n');
        QVERIFY(!file.append(QByteArray(600, 'c')).isEmpty());
        QCOMPARE(file.append("short"), QString());
    }
    QCOMPARE(file.append("d"), QString());
    QCOMPARE(content(), QByteArray(600, 'a') + "\nshort\nd\n");
}

void TestAuditFile::goesOnBehindALineThatWasCutOff()
{
    QFile before(config().path);
    QVERIFY(before.open(QIODevice::WriteOnly));
    before.write("a\nb");
    before.close();
    AuditFile file(config());
    QCOMPARE(file.tail(100), QList<QByteArray>({"a"}));
    QCOMPARE(file.append("c"), QString());
    QCOMPARE(content(), QByteArray("a\nb\nc\n"));
}

void TestAuditFile::readsTheNewestLines()
{
    AuditFile file(config(10, 3));
    QCOMPARE(file.tail(100), QList<QByteArray>());
    for (const char *line : {"1111", "2222", "3333", "4444", "5555"}) {
        QCOMPARE(file.append(line), QString());
    }
    QCOMPARE(file.tail(100), QList<QByteArray>({"3333", "4444", "5555"}));
    QCOMPARE(file.tail(8), QList<QByteArray>({"4444", "5555"}));
    QCOMPARE(file.tail(4), QList<QByteArray>());
}

void TestAuditFile::saysWhatIsWrong()
{
    AuditConfig nowhere = config();
    nowhere.path = m_directory->filePath(QLatin1String("none/writes.jsonl"));
    AuditFile file(nowhere);
    QVERIFY(file.append("a").startsWith(QLatin1String("cannot write ")));
    QVERIFY(QDir(m_directory->path()).mkdir(QLatin1String("none")));
    QCOMPARE(file.append("a"), QString());
}

QTEST_APPLESS_MAIN(TestAuditFile)
#include "test_audit_file.moc"
