#include "host/driver/driver_library.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;

class TestDriverLibrary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsItBesideTheProgram_data();
    void findsItBesideTheProgram();
    void loads();
    void refusesWhatIsNoDriver_data();
    void refusesWhatIsNoDriver();
};

void TestDriverLibrary::findsItBesideTheProgram_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("first");
    const QString besideLib = QLatin1String("lib/" CNET_HOST_DRIVER_NAME);
    const QString installed = QDir::cleanPath(
        QLatin1String("bin/" CNET_HOST_DRIVER_DIRECTORY "/" CNET_HOST_DRIVER_NAME));
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
    QVERIFY2(driver.load(QLatin1String(DRIVER_FILE)), qPrintable(driver.errorText()));
    QVERIFY(driver.errorText().isEmpty());
    QCOMPARE(driver.functions().getVersion(), QLatin1String("2.0.0.0"));
}

void TestDriverLibrary::refusesWhatIsNoDriver_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("message");
    QTest::newRow("no file") << "/nowhere/libx.so"
                             << "cannot load the driver: .*libx.*";
    QTest::newRow("another library")
        << QT_CORE_FILE << ".*is not this driver: it has no function intf_.*";
}

void TestDriverLibrary::refusesWhatIsNoDriver()
{
    QFETCH(QString, path);
    QFETCH(QString, message);
    DriverLibrary driver;
    QVERIFY(!driver.load(path));
    const QRegularExpression expected(QRegularExpression::anchoredPattern(message));
    QVERIFY2(expected.match(driver.errorText()).hasMatch(), qPrintable(driver.errorText()));
}

QTEST_GUILESS_MAIN(TestDriverLibrary)
#include "test_driver_library.moc"
