#include "panel/system/output_file.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

using namespace cnet;
using namespace cnet::panel;

class TestOutputFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replacesWhenComplete();
    void leavesWhatIsNoFile_data();
    void leavesWhatIsNoFile();
    void refuses_data();
    void refuses();

private:
    QString path(const char *name) const { return m_directory.filePath(QLatin1String(name)); }

    QTemporaryDir m_directory;
};

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
}

} // namespace

void TestOutputFile::replacesWhenComplete()
{
    QFile before(path("file"));
    QVERIFY(before.open(QIODevice::WriteOnly));
    before.write("before");
    before.close();
    QString error;
    auto file = openOutputFile(path("file"), error);
    QVERIFY2(file, qPrintable(error));
    file->write("half");
    file.reset();
    QCOMPARE(contentOf(path("file")), QByteArray("before"));
    file = openOutputFile(path("file"), error);
    QVERIFY(file);
    file->write("all");
    QCOMPARE(contentOf(path("file")), QByteArray("before"));
    QVERIFY(file->commit());
    QCOMPARE(contentOf(path("file")), QByteArray("all"));
}

void TestOutputFile::leavesWhatIsNoFile_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("pipe") << int(S_IFIFO);
    QTest::newRow("socket") << int(S_IFSOCK);
}

// A file would take its place.
void TestOutputFile::leavesWhatIsNoFile()
{
    QFETCH(int, kind);
    const QByteArray name = path("node").toLocal8Bit();
    QFile::remove(path("node"));
    QCOMPARE(mknod(name.constData(), static_cast<mode_t>(kind) | 0600, 0), 0);
    QString error;
    QVERIFY(!openOutputFile(path("node"), error));
    QCOMPARE(error,
             QString::fromLatin1("cannot write %1: it is no regular file").arg(path("node")));
    struct stat status = {};
    QCOMPARE(lstat(name.constData(), &status), 0);
    QCOMPARE(int(status.st_mode & S_IFMT), kind);
}

void TestOutputFile::refuses_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QString &path, const char *error) {
        QTest::newRow(name) << path << QString::fromLatin1(error);
    };
    row("no name", QString(), "cannot write : the name is empty");
    row("no directory", QLatin1String("/nowhere/x"),
        "cannot write /nowhere/x: No such file or directory");
    row("directory", QLatin1String("/"), "cannot write /: it is no regular file");
    row("device", QLatin1String("/dev/null"), "cannot write /dev/null: it is no regular file");
}

void TestOutputFile::refuses()
{
    QFETCH(QString, path);
    QString error;
    QVERIFY(!openOutputFile(path, error));
    QTEST(error, "error");
}

QTEST_GUILESS_MAIN(TestOutputFile)
#include "test_output_file.moc"
