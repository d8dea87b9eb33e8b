#include "gateway/sinks/secret_file.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace cnet::gateway;

/** A password comes from where it is kept. */
class TestSecretFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAFile_data();
    void readsAFile();
    void readsACredential();
    void saysWhatIsMissing();

private:
    bool store(const char *name, const QByteArray &content) const
    {
        QFile file(m_folder.filePath(QLatin1String(name)));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }
    static QByteArray read(const Secret &secret)
    {
        QString error;
        const auto password = readSecret(secret, error);
        return password ? *password : "! " + error.toUtf8();
    }

    QTemporaryDir m_folder;
};

void TestSecretFile::readsAFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("password");

    QTest::newRow("alone") << QByteArray("geheim") << QByteArray("geheim");
    QTest::newRow("with a line end") << QByteArray("geheim\n") << QByteArray("geheim");
    QTest::newRow("from Windows") << QByteArray("geheim\r\n") << QByteArray("geheim");
    QTest::newRow("blanks are part of it") << QByteArray(" ge heim ") << QByteArray(" ge heim ");
    QTest::newRow("empty") << QByteArray() << QByteArray();
}

void TestSecretFile::readsAFile()
{
    QFETCH(QByteArray, content);
    QVERIFY(store("password", content));
    QTEST(read({m_folder.filePath(QLatin1String("password")), QString()}), "password");
}

void TestSecretFile::readsACredential()
{
    QVERIFY(store("db", "geheim\n"));
    qputenv("CREDENTIALS_DIRECTORY", m_folder.path().toLocal8Bit());
    QCOMPARE(read({QString(), QLatin1String("db")}), QByteArray("geheim"));
    qunsetenv("CREDENTIALS_DIRECTORY");
    QCOMPARE(read({QString(), QLatin1String("db")}),
             QByteArray("! the service manager hands over no credential db"));
}

void TestSecretFile::saysWhatIsMissing()
{
    QCOMPARE(read({}), QByteArray());
    QCOMPARE(read({QLatin1String("/nowhere"), QString()}),
             QByteArray("! cannot read the password in /nowhere: No such file or directory"));
}

QTEST_APPLESS_MAIN(TestSecretFile)
#include "test_secret_file.moc"
