#include "gateway.h"

#include "gateway/support/mosquitto_broker.h"
#include "gateway/support/test_certificates.h"
#include "support/rows.h"

#include <csignal>

using namespace cnet::gateway;

namespace {

struct Row
{
    const char *what;
    const char *certificate; ///< of the broker
    const char *password;    ///< the broker wants "secret"
    const char *expected;
};

const Row kRows[] = {
    {"a wrong name", "other", "secret", "its certificate is for another name than localhost"},
    {"an expired certificate", "expired", "secret", "its certificate has expired"},
    {"a wrong password", "good", "guess", "it does not accept the user or the password"},
};

/**
 * How often somebody spoke TLS to a broker. It calls the connection new or failed, for it may hear
 * at once that its certificate is not trusted. Those that ended without a word are the test's own.
 */
int connectionsOf(const QByteArray &log)
{
    return int(log.count("onnection from 127.0.0.1") - log.count("unexpected eof"));
}

} // namespace

/** cnet-gateway and a broker that one of them does not trust. */
class TestGatewayTls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void saysItOnceAndGoesOn_data() { addRows(kRows); }
    void saysItOnceAndGoesOn();

private:
    /** What stands behind the port of a broker that speaks TLS. */
    QByteArray brokerWith(const char *certificate) const
    {
        return "certfile " + file(certificate) + ".crt\nkeyfile " + file(certificate) +
               ".key\nallow_anonymous false\npassword_file " + file("passwords") + '\n';
    }
    QByteArray file(const char *name) const
    {
        return QFile::encodeName(m_folder.filePath(QLatin1String(name)));
    }
    static bool setPassword(const GatewayProgram &gateway, const QByteArray &password)
    {
        return gateway.store("mqtt.password", password + '\n');
    }
    // The files are beside the configuration.
    bool configure(const GatewayProgram &gateway, quint16 port) const
    {
        QFile ca(m_certificates.path("ca.crt"));
        return ca.open(QIODevice::ReadOnly) && gateway.store("ca.crt", ca.readAll()) &&
               gateway.store("press.csv", "name,register,address\npress.position,D_W,111\n") &&
               gateway.store(
                   "gateway.toml",
                   "[line.press]\nlink = \"simulated\"\ntags = \"press.csv\"\n"
                   "[sink.history]\n"
                   "[sink.centre]\nkind = \"mqtt\"\nsite = \"plant\"\nuser = \"gateway\"\n"
                   "password_file = \"mqtt.password\"\nca = \"ca.crt\"\n"
                   "brokers = \"tls:localhost:" +
                       QByteArray::number(port) + "\"\n");
    }

    QTemporaryDir m_folder;
    TestCertificates m_certificates{m_folder.path()};
};

void TestGatewayTls::initTestCase()
{
    QVERIFY(m_certificates.make());
    QCOMPARE(QProcess::execute(QLatin1String("mosquitto_passwd"),
                               {QLatin1String("-b"), QLatin1String("-c"),
                                m_folder.filePath(QLatin1String("passwords")),
                                QLatin1String("gateway"), QLatin1String("secret")}),
             0);
}

void TestGatewayTls::saysItOnceAndGoesOn()
{
    const auto &row = currentRow(kRows);
    MosquittoBroker broker;
    QVERIFY(broker.start(brokerWith(row.certificate)));
    GatewayProgram gateway;
    QVERIFY(configure(gateway, broker.port()) && setPassword(gateway, row.password));
    const auto attempts = [&broker] { return connectionsOf(broker.log()); };
    const int before = attempts();
    Program program;
    QVERIFY(gateway.start(program, {"run", QFile::encodeName(gateway.path("gateway.toml"))}));
    // Two more than the first: it goes on.
    QTRY_VERIFY_WITH_TIMEOUT(attempts() > before + 2, 60000);
    const QByteArray said = program.errors();
    QCOMPARE(int(said.count("sink centre: ")), 1);
    QVERIFY2(said.contains(QByteArray("sink centre: broker localhost:") +
                           QByteArray::number(broker.port()) + ": " + row.expected),
             said.constData());
    QVERIFY(!said.contains("guess") && !said.contains("secret"));
    QVERIFY(!gateway.history("press.position").isEmpty());
    // Mended, it is found without a restart of the gateway.
    QVERIFY(setPassword(gateway, "secret"));
    broker.kill();
    QVERIFY(broker.restartWith(brokerWith("good")));
    QTRY_VERIFY_WITH_TIMEOUT(program.errors().contains("sink centre: works again"), 60000);
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestGatewayTls)
#include "test_gateway_tls.moc"
