#include <host/driver/driver_library.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;

namespace {

const QString kFile = QLatin1String(DRIVER_FILE);

// Files under the driver's short name that are mapped into this process.
QStringList copies()
{
    QFile maps(QLatin1String("/proc/self/maps"));
    QStringList files;
    if (maps.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : maps.readAll().split('\n')) {
            const QString file = QString::fromUtf8(line.mid(line.indexOf('/')));
            if (file.endsWith(QLatin1String(CNET_HOST_DRIVER_NAME)) && !files.contains(file)) {
                files.append(file);
            }
        }
    }
    return files;
}

} // namespace

class TestDriverLibrary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsItBesideTheProgram_data();
    void findsItBesideTheProgram();
    void loads();
    void loadsACopyWhereItIsInUse();
    void takesTheFileAgainWhenItIsFree();
    void removesTheCopy();
    void refusesWhatIsNoDriver_data();
    void refusesWhatIsNoDriver();
};

void TestDriverLibrary::findsItBesideTheProgram_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("first");
    const QString besideLib = QLatin1String("lib/" CNET_HOST_DRIVER_NAME);
    const QString installed =
        QDir::cleanPath(QLatin1String("bin/" CNET_HOST_DRIVER_DIRECTORY "/" CNET_HOST_DRIVER_NAME));
    const QString besideProgram = QLatin1String("bin/" CNET_HOST_DRIVER_NAME);
    QTest::newRow("nowhere") << QStringList() << CNET_HOST_DRIVER_NAME;
    QTest::newRow("in lib") << QStringList{besideLib} << besideLib;
    QTest::newRow("where it is installed") << QStringList{installed} << installed;
    QTest::newRow("beside the program") << QStringList{besideProgram} << besideProgram;
    QTest::newRow("lib goes first") << QStringList{besideProgram, besideLib} << besideLib;
    QTest::newRow("of another interface")
        << QStringList{QLatin1String("bin/libls_master_k_cnet.so.1"), besideProgram}
        << besideProgram;
}

void TestDriverLibrary::findsItBesideTheProgram()
{
    QFETCH(QStringList, files);
    QFETCH(QString, first);
    const QTemporaryDir directory;
    for (const QString &name : files) {
        QFile file(directory.filePath(name));
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    const QStringList found = DriverLibrary::candidates(directory.filePath(QLatin1String("bin")));
    QCOMPARE(found.first(), files.isEmpty() ? first : directory.filePath(first));
    QCOMPARE(found.last(), QLatin1String(CNET_HOST_DRIVER_NAME));
}

void TestDriverLibrary::loads()
{
    DriverLibrary driver;
    QString error;
    QVERIFY2(driver.load(kFile, error), qPrintable(error));
    QCOMPARE(driver.fileName(), kFile);
    QCOMPARE(driver.functions().getVersion(), QLatin1String("2.0.0.0"));
}

void TestDriverLibrary::loadsACopyWhereItIsInUse()
{
    DriverLibrary first;
    DriverLibrary second;
    DriverLibrary third;
    QString error;
    QVERIFY2(first.load(kFile, error), qPrintable(error));
    QVERIFY2(second.load(kFile, error), qPrintable(error));
    QVERIFY2(third.load(kFile, error), qPrintable(error));
    QCOMPARE(second.fileName(), kFile); // that was asked for
    QVERIFY(first.functions().getSendFrame != second.functions().getSendFrame);
    QVERIFY(first.functions().getSendFrame != third.functions().getSendFrame);
    QVERIFY(second.functions().getSendFrame != third.functions().getSendFrame);
}

// Under whatever name.
void TestDriverLibrary::takesTheFileAgainWhenItIsFree()
{
    const QTemporaryDir directory;
    const QString other = directory.filePath(QLatin1String("other.so"));
    QVERIFY(QFile::link(kFile, other));
    decltype(DriverFunctions::getSendFrame) function = nullptr;
    QString error;
    {
        DriverLibrary first;
        QVERIFY2(first.load(kFile, error), qPrintable(error));
        function = first.functions().getSendFrame;
        DriverLibrary second;
        QVERIFY2(second.load(other, error), qPrintable(error));
        QVERIFY(second.functions().getSendFrame != function);
    }
    DriverLibrary again;
    QVERIFY2(again.load(other, error), qPrintable(error));
    QVERIFY(again.functions().getSendFrame == function);
}

void TestDriverLibrary::removesTheCopy()
{
    const QStringList before = copies();
    QStringList during;
    {
        DriverLibrary first;
        DriverLibrary second;
        QString error;
        QVERIFY2(first.load(kFile, error), qPrintable(error));
        QVERIFY2(second.load(kFile, error), qPrintable(error));
        during = copies();
        QVERIFY(during.size() > before.size());
        QVERIFY(QFile::exists(during.last()));
    }
    QCOMPARE(copies(), before);
    for (const QString &file : during) {
        QVERIFY2(before.contains(file) || !QFile::exists(file), qPrintable(file));
    }
}

void TestDriverLibrary::refusesWhatIsNoDriver_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("message");
    QTest::newRow("no file") << "/nowhere/libx.so"
                             << "cannot load the driver: there is no file /nowhere/libx.so";
    QTest::newRow("a folder") << "/tmp"
                              << "cannot load the driver: /tmp is no regular file";
    QTest::newRow("another library")
        << QT_CORE_FILE << ".*is not this driver: it has no function intf_.*";
}

void TestDriverLibrary::refusesWhatIsNoDriver()
{
    QFETCH(QString, path);
    QFETCH(QString, message);
    DriverLibrary driver;
    QString error;
    QVERIFY(!driver.load(path, error));
    const QRegularExpression expected(QRegularExpression::anchoredPattern(message));
    QVERIFY2(expected.match(error).hasMatch(), qPrintable(error));
}

QTEST_GUILESS_MAIN(TestDriverLibrary)
#include "test_driver_library.moc"
