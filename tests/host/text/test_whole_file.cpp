#include "host/text/whole_file.h"
#include "support/full_disk.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;

class TestWholeFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replacesAll();
    void fullDiskLeavesTheOldOne_data();
    void fullDiskLeavesTheOldOne();

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
