#include "gateway/support/read_config.h"
#include "support/rows.h"

using namespace cnet;
using namespace cnet::gateway;

/** A broker and its topics are configured, and all mistakes are said. */
class TestMqttKind : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasUsualValues();
    void readsAll();
    void saysWhatIsWrong_data();
    void saysWhatIsWrong();
};

namespace {

// The sink begins in line 4; what a row adds, in line 6.
const QByteArray kLeast = "[line.press]\nlink = \"simulated\"\ntags = \"press.csv\"\n"
                          "[sink.centre]\nkind = \"mqtt\"\n";
const char kUsual[] = "site = \"plant\"\nbrokers = \"tcp:10.0.0.1:1883\"\n";

const Case<const char *, const char *> kMistakes[] = {
    {"no broker", "site = \"a\"",
     "4:1: sink.centre: there is no brokers; for example brokers = \"tls:broker.example:8883\""},
    {"no site", "brokers = \"tcp:a:1\"\nstatus = \"s\"",
     "4:1: sink.centre.topic: there is no site"},
    {"a broker without a port", "site = \"a\"\nbrokers = \"tcp:a:1, tls:b\"",
     "7:11: sink.centre.brokers: expected tcp:HOST:PORT or tls:HOST:PORT, up to 8 of them"},
    {"a serial line", "site = \"a\"\nbrokers = \"serial:/dev/ttyS0\"",
     "7:11: sink.centre.brokers: expected tcp:HOST:PORT"},
    {"a wildcard", "brokers = \"tcp:a:1\"\nsite = \"a\"\ntopic = \"{site}/{line}/#\"",
     "8:9: sink.centre.topic: a topic has no +, #"},
    {"a topic without a line", "brokers = \"tcp:a:1\"\nsite = \"a\"\ntopic = \"{site}/{tag}\"",
     "8:9: sink.centre.topic: expected {line} in it"},
    {"a group that is retained",
     "brokers = \"tcp:a:1\"\nsite = \"a\"\ntopic = \"{site}/{line}\"\nretain = true",
     "9:10: sink.centre.retain: without {tag} in the topic"},
    {"a truth in words", "brokers = \"tcp:a:1\"\nsite = \"a\"\nretain = \"on\"",
     "8:10: sink.centre.retain: expected true or false"},
    {"commands on the topics of values",
     "brokers = \"tcp:a:1\"\nsite = \"a\"\ncommands = \"{site}/set/{line}/{tag}\"",
     "8:12: sink.centre.commands: the gateway itself publishes on such topics"},
    {"commands without a tag",
     "brokers = \"tcp:a:1\"\nsite = \"a\"\ncommands = \"{site}/set/{line}\"",
     "8:12: sink.centre.commands: expected {line} and {tag}"},
    {"answers without commands", "brokers = \"tcp:a:1\"\nsite = \"a\"\nanswers = \"{site}/x\"",
     "8:11: sink.centre.answers: there are no commands"},
    {"a password for nobody", "brokers = \"tcp:a:1\"\nsite = \"a\"\npassword_file = \"/p\"",
     "4:1: sink.centre: there is a password, and no user"},
    {"two passwords",
     "brokers = \"tcp:a:1\"\nsite = \"a\"\nuser = \"u\"\npassword_file = \"/p\"\n"
     "password_credential = \"p\"",
     "10:23: sink.centre.password_credential: there is a password_file as well"},
    {"half a certificate", "brokers = \"tls:a:1\"\nsite = \"a\"\nkey = \"/k\"",
     "4:1: sink.centre: certificate and key need each other"},
    {"a CA without TLS", "brokers = \"tcp:a:1\"\nsite = \"a\"\nca = \"/ca\"",
     "8:6: sink.centre.ca: no broker begins with tls:"},
    {"a keep-alive that is too short", "brokers = \"tcp:a:1\"\nsite = \"a\"\nkeep_alive = \"1s\"",
     "8:14: sink.centre.keep_alive: expected a time from \"5s\" to \"1h\""},
    {"an escape that a topic needs", "brokers = \"tcp:a:1\"\nsite = \"a\"\nescape = \"/\"",
     "8:10: sink.centre.escape: expected signs like \".\" and \" \""},
    {"a site that is to be escaped",
     "brokers = \"tcp:a:1\"\nsite = \"a.b\"\nescape = \".\"\nstatus = \"s\"",
     "4:1: sink.centre.topic: 'a.b' has a character that is to be escaped"},
    {"a typing error", "brokers = \"tcp:a:1\"\nsite = \"a\"\ncomands = \"a\"",
     "8:1: sink.centre.comands: there is no such key; did you mean commands?"},
};

} // namespace

void TestMqttKind::hasUsualValues()
{
    QStringList mistakes;
    const auto config = readConfigText(kLeast + kUsual, mistakes);
    QCOMPARE(mistakes, QStringList());
    const auto &settings = std::get<MqttSettings>(config->sinks.first().settings);
    QCOMPARE(settings.connection.brokers.size(), 1);
    QCOMPARE(settings.connection.brokers.first().host, QLatin1String("10.0.0.1"));
    QCOMPARE(int(settings.connection.brokers.first().port), 1883);
    QVERIFY(!settings.connection.brokers.first().isTls);
    QVERIFY(settings.connection.version == MqttConnectionSettings::Version::V311);
    QVERIFY(settings.connection.checksName);
    QCOMPARE(settings.connection.keepAliveS, 10);
    QCOMPARE(settings.topic.filter(), QLatin1String("plant/+/+/+"));
    QCOMPARE(settings.status.filter(), QLatin1String("plant/status"));
    QVERIFY(!settings.commands);
    QVERIFY(!settings.isRetained);
}

void TestMqttKind::readsAll()
{
    QStringList mistakes;
    const auto config = readConfigText(kLeast + R"(site = "plant"
brokers = "tls:a.example:8883, tcp:[::1]:1883"
version = "5"
client_id = "gw1"
keep_alive = "30s"
user = "gateway"
password_credential = "mqtt"
ca = "/pki/ca.crt"
certificate = "gw.crt"
key = "keys/gw.key"
check_name = false
topic = "{site}/{line}/{tag}"
escape = ". "
status = "{site}/state"
retain = true
in_flight = 7
commands = "{site}/write/{line}/{tag}/set"
answers = "{site}/write/{line}/{tag}/done"
)",
                                       mistakes);
    QCOMPARE(mistakes, QStringList());
    const auto &settings = std::get<MqttSettings>(config->sinks.first().settings);
    const MqttConnectionSettings &connection = settings.connection;
    QVERIFY(connection.brokers.first().isTls && !connection.brokers.last().isTls);
    QCOMPARE(settings.topic.topic({QLatin1String("a b"), QString(), QLatin1String("c.d")}),
             QLatin1String("plant/a%20b/c%2ed"));
    QCOMPARE(connection.brokers.last().host, QLatin1String("::1"));
    QVERIFY(connection.version == MqttConnectionSettings::Version::V5);
    // Where a file has no folder, it is in that of the configuration.
    const QStringList texts{connection.clientId,
                            connection.user,
                            connection.password.credential,
                            connection.caFile,
                            connection.certificateFile,
                            connection.keyFile};
    QCOMPARE(texts.join(QLatin1Char(' ')),
             QLatin1String("gw1 gateway mqtt /pki/ca.crt /etc/gw/gw.crt /etc/gw/keys/gw.key"));
    QCOMPARE(connection.keepAliveS, 30);
    QVERIFY(!connection.checksName);
    QVERIFY(settings.isRetained);
    QCOMPARE(settings.retainedFile, QLatin1String("/var/lib/gw/centre.retained"));
    QCOMPARE(settings.inFlight, 7);
    QCOMPARE(settings.commands->filter(), QLatin1String("plant/write/+/+/set"));
    QCOMPARE(settings.answers.filter(), QLatin1String("plant/write/+/+/done"));
}

void TestMqttKind::saysWhatIsWrong_data()
{
    addRows(kMistakes);
}

void TestMqttKind::saysWhatIsWrong()
{
    const auto &row = currentRow(kMistakes);
    findsOneMistake(kLeast + row.given + '\n', row.expected);
}

QTEST_APPLESS_MAIN(TestMqttKind)
#include "test_mqtt_kind.moc"
