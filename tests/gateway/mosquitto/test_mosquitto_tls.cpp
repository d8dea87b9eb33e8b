#include "gateway/support/mosquitto_broker.h"
#include "gateway/support/mqtt_talker.h"
#include "gateway/support/test_certificates.h"

using namespace cnet;
using namespace cnet::gateway;

/** Broker and gateway prove to each other who they are, and what is wrong is said in words. */
class TestMosquittoTls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void speaksTls_data() { addRows(kVersions); }
    void speaksTls();
    void saysWhatIsWrongWithTls_data();
    void saysWhatIsWrongWithTls();
    void saysThatThePasswordIsWrong_data() { addRows(kVersions); }
    void saysThatThePasswordIsWrong();
    void readsPasswords();

private:
    MqttConnectionSettings settingsForTls(const MosquittoBroker &broker) const
    {
        MqttConnectionSettings settings;
        settings.brokers = {{latin("localhost"), broker.port(), true}};
        settings.caFile = m_certificates.path("ca.crt");
        return settings;
    }
    QByteArray tlsBroker(const char *certificate) const
    {
        const QString base = m_certificates.path(certificate);
        return "allow_anonymous true\ncertfile " + QFile::encodeName(base) + ".crt\nkeyfile " +
               QFile::encodeName(base) + ".key\n";
    }

    QTemporaryDir m_folder;
    TestCertificates m_certificates{m_folder.path()};
};

void TestMosquittoTls::initTestCase()
{
    QVERIFY(m_certificates.make());
}

void TestMosquittoTls::speaksTls()
{
    MosquittoBroker broker;
    QVERIFY(broker.start(tlsBroker("good") + "require_certificate true\ncafile " +
                         QFile::encodeName(m_certificates.path("ca.crt")) + '\n'));
    MqttConnectionSettings settings = settingsForTls(broker);
    settings.version = currentRow(kVersions).given;
    settings.certificateFile = m_certificates.path("client.crt");
    settings.keyFile = m_certificates.path("client.key");
    Talker talker(settings);
    QVERIFY2(talker.open(), qPrintable(talker.reasons.join(latin("\n"))));
    QVector<int> tokens;
    for (int i = 0; i < 300; ++i) {
        tokens.append(talker.connection.publish(messageOf("plant/a", QByteArray(10000, 'x'))));
    }
    QVERIFY(QTest::qWaitFor([&] { return talker.tokens.size() == tokens.size(); }, 20000));
    talker.connection.subscribe({latin("b")}, 1);
    Talker other(settings);
    QVERIFY(other.open());
    QVERIFY(other.publish(messageOf("b", QByteArray(100000, 'y'))));
    QVERIFY(QTest::qWaitFor([&] { return !talker.received.isEmpty(); }, 10000));
    QCOMPARE(int(talker.received.first().payload.size()), 100000);
}

namespace {

struct TlsCase
{
    const char *what;
    const char *certificate; ///< of the broker
    const char *ca;          ///< that we trust
    const char *client;      ///< our certificate; empty: none
    bool checksName;
    bool wantsClient;
    const char *expected;
};

const TlsCase kTls[] = {
    {"good", "good", "ca.crt", "", true, false, "it is connected"},
    {"wrong name", "other", "ca.crt", "", true, false,
     "its certificate is for another name than localhost"},
    {"a wrong name that does not matter", "other", "ca.crt", "", false, false, "it is connected"},
    {"expired", "expired", "ca.crt", "", true, false, "its certificate has expired"},
    {"expired, with any name", "expired", "ca.crt", "", false, false,
     "its certificate has expired"},
    {"unknown CA", "good", "strange.crt", "", true, false,
     "its certificate is of a CA that is not known"},
    {"no such CA file", "good", "none.crt", "", true, false,
     "cannot use the ca FOLDER/none.crt: there is no such file"},
    {"no client certificate", "good", "ca.crt", "", true, true, "the connection ended while TLS"},
    {"the key of another certificate", "good", "ca.crt", "good.crt client.key", true, true,
     "cannot use the key FOLDER/client.key: "},
};

} // namespace

void TestMosquittoTls::saysWhatIsWrongWithTls_data()
{
    addRows(kTls);
}

void TestMosquittoTls::saysWhatIsWrongWithTls()
{
    const auto &row = currentRow(kTls);
    MosquittoBroker broker;
    QByteArray config = tlsBroker(row.certificate);
    if (row.wantsClient) {
        config += "require_certificate true\ncafile " +
                  QFile::encodeName(m_certificates.path("ca.crt")) + '\n';
    }
    QVERIFY(broker.start(config));
    MqttConnectionSettings settings = settingsForTls(broker);
    settings.caFile = m_certificates.path(row.ca);
    settings.checksName = row.checksName;
    const QStringList client = latin(row.client).split(QLatin1Char(' '));
    if (client.size() == 2) {
        settings.certificateFile = QDir(m_folder.path()).filePath(client.first());
        settings.keyFile = QDir(m_folder.path()).filePath(client.last());
    }
    const QString complaint =
        Talker(settings).complaint().replace(m_folder.path(), latin("FOLDER"));
    QVERIFY2(complaint.startsWith(latin(row.expected)), qPrintable(complaint));
}

void TestMosquittoTls::saysThatThePasswordIsWrong()
{
    MosquittoBroker broker;
    const QString passwords = QDir(m_folder.path()).filePath(latin("passwords"));
    QCOMPARE(QProcess::execute(latin("mosquitto_passwd"), {latin("-b"), latin("-c"), passwords,
                                                           latin("gateway"), latin("secret")}),
             0);
    QVERIFY(broker.start("allow_anonymous false\npassword_file " + QFile::encodeName(passwords) +
                         '\n'));
    QFile file(QDir(m_folder.path()).filePath(latin("mine")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("wrong\n");
    file.close();
    MqttConnectionSettings settings = settingsFor(broker, currentRow(kVersions).given);
    QCOMPARE(Talker(settings).complaint(), latin("it does not accept the user or the password"));
    settings.user = latin("gateway");
    settings.password.file = file.fileName();
    QCOMPARE(Talker(settings).complaint(), latin("it does not accept the user or the password"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("secret\n");
    file.close();
    QCOMPARE(Talker(settings).complaint(), latin("it is connected"));
    qputenv("CREDENTIALS_DIRECTORY", QFile::encodeName(m_folder.path()));
    settings.password.file.clear();
    settings.password.credential = latin("mine");
    QCOMPARE(Talker(settings).complaint(), latin("it is connected"));
}

void TestMosquittoTls::readsPasswords()
{
    MqttConnectionSettings settings;
    settings.brokers = {{latin("127.0.0.1"), freePort(), false}};
    settings.user = latin("gateway");
    settings.password.file = latin("/nowhere/password");
    QCOMPARE(Talker(settings).complaint(),
             latin("cannot read the password in /nowhere/password: No such file or directory"));
    settings.password.file.clear();
    settings.password.credential = latin("mqtt");
    qunsetenv("CREDENTIALS_DIRECTORY");
    QCOMPARE(Talker(settings).complaint(),
             latin("the service manager hands over no credential mqtt"));
}

QTEST_GUILESS_MAIN(TestMosquittoTls)
#include "test_mosquitto_tls.moc"
