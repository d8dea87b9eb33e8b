#include "host/text/whole_file.h"
#include "support/full_disk.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

using namespace cnet;

class TestWholeFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replacesAll();
    void fullDiskLeavesTheOldOne_data();
    void fullDiskLeavesTheOldOne();
    void tellsFilesFromOthers();

private:
    QString path() const { return m_folder.filePath(QStringLiteral("file")); }

    QByteArray content() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_folder;
};

void TestWholeFile::replacesAll()
{
    for (const QByteArray &text : {QByteArray("a long text"), QByteArray("short"), QByteArray()}) {
        QSaveFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(replaceFile(file, text));
        QCOMPARE(content(), text);
    }
}

void TestWholeFile::tellsFilesFromOthers()
{
    const QString pipe = m_folder.filePath(QStringLiteral("pipe"));
    const QString plain = m_folder.filePath(QStringLiteral("plain"));
    QVERIFY(!isNoFile(plain)); // nothing yet
    QFile file(plain);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(!isNoFile(plain));
    QVERIFY(isNoFile(m_folder.path()));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(isNoFile(pipe));
}

void TestWholeFile::fullDiskLeavesTheOldOne_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("within the buffer") << 2000;
    QTest::newRow("beyond it") << 100000;
}

void TestWholeFile::fullDiskLeavesTheOldOne()
{
    QFETCH(int, size);
    QSaveFile before(path());
    QVERIFY(before.open(QIODevice::WriteOnly) && replaceFile(before, "before"));
    {
        const FullDisk full(1000);
        QSaveFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(!replaceFile(file, QByteArray(size, 'x')));
        QVERIFY(!file.errorString().isEmpty());
    }
    QCOMPARE(content(), QByteArray("before"));
    QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files).size(), 1);
}

QTEST_APPLESS_MAIN(TestWholeFile)
#include "test_whole_file.moc"
