#include "panel/system/input_file.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace cnet;
using namespace cnet::panel;

class TestInputFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAll_data();
    void readsAll();
    void readsPipe();
    void pipeThatNobodyWritesTo_data();
    void pipeThatNobodyWritesTo();
    void refuses_data();
    void refuses();

private:
    QString path(const char *name) const { return m_directory.filePath(QLatin1String(name)); }

    QTemporaryDir m_directory;
};

namespace {

const int kLongest = 100000;

} // namespace

void TestInputFile::readsAll_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("zero bytes") << QByteArray(10, '\0');
    QTest::newRow("more than a piece") << QByteArray(70000, 'x');
    QTest::newRow("the longest") << QByteArray(kLongest, 'x');
}

void TestInputFile::readsAll()
{
    QFETCH(QByteArray, content);
    QFile file(path("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
    file.close();
    QString error;
    const auto read = readInputFile(path("file"), kLongest, error);
    QVERIFY2(read.has_value(), qPrintable(error));
    QCOMPARE(*read, content);
    QVERIFY(!readInputFile(path("file"), static_cast<int>(content.size()) - 1, error));
}

void TestInputFile::readsPipe()
{
    int ends[2] = {-1, -1};
    QCOMPARE(pipe(ends), 0);
    QCOMPARE(write(ends[1], "abc", 3), ssize_t(3));
    close(ends[1]);
    QString error;
    const auto read =
        readInputFile(QString::fromLatin1("/proc/self/fd/%1").arg(ends[0]), kLongest, error);
    QVERIFY2(read.has_value(), qPrintable(error));
    QCOMPARE(*read, QByteArray("abc"));
    close(ends[0]);
}

void TestInputFile::pipeThatNobodyWritesTo_data()
{
    QTest::addColumn<bool>("hasWriter");
    QTest::newRow("no writer") << false;
    QTest::newRow("silent writer") << true;
}

void TestInputFile::pipeThatNobodyWritesTo()
{
    QFETCH(bool, hasWriter);
    const QByteArray pipe = path("pipe").toLocal8Bit();
    unlink(pipe.constData());
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    const int writer = hasWriter ? open(pipe.constData(), O_RDWR) : -1;
    QString error;
    const int patienceMs = 20;
    QVERIFY(!readInputFile(path("pipe"), kLongest, error, patienceMs));
    QCOMPARE(error, QString::fromLatin1("cannot read %1: nothing comes from it").arg(path("pipe")));
    close(writer);
}

void TestInputFile::refuses_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *path, const char *error) {
        QTest::newRow(path) << QString::fromLatin1(path) << QString::fromLatin1(error);
    };
    row("", "cannot read : No such file or directory");
    row("/nowhere/file", "cannot read /nowhere/file: No such file or directory");
    row("/", "cannot read /: Is a directory");
    row("/dev/zero", "/dev/zero cannot be used: it is longer than 100000 bytes");
}

void TestInputFile::refuses()
{
    QFETCH(QString, path);
    QString error;
    QVERIFY(!readInputFile(path, kLongest, error));
    QTEST(error, "error");
}

QTEST_GUILESS_MAIN(TestInputFile)
#include "test_input_file.moc"
