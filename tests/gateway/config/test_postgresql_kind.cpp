#include "gateway/support/read_config.h"
#include "support/rows.h"

using namespace cnet;
using namespace cnet::gateway;

/** A database is configured, and all mistakes are said. */
class TestPostgresqlKind : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsADatabase();
    void saysWhatIsWrong_data();
    void saysWhatIsWrong();
};

namespace {

// Each is put behind the least configuration, whose line it goes on with.
const Case<const char *, const char *> kMistakes[] = {
    {"no database", "[sink.a]\nkind = \"postgresql\"",
     "4:1: sink.a: there is no database; for example database = \"plant\""},
    {"two passwords",
     "[sink.a]\nkind = \"postgresql\"\ndatabase = \"d\"\npassword_file = \"f\"\n"
     "password_credential = \"c\"",
     "8:23: sink.a.password_credential: there is a password_file as well"},
    {"a certificate that nobody looks at",
     "[sink.a]\nkind = \"postgresql\"\ndatabase = \"d\"\nsslmode = \"require\"\n"
     "sslrootcert = \"ca.crt\"",
     "8:15: sink.a.sslrootcert: it is looked at with sslmode"},
    {"a certificate without a key",
     "[sink.a]\nkind = \"postgresql\"\ndatabase = \"d\"\nsslcert = \"c.crt\"",
     "7:11: sink.a.sslcert: sslcert and sslkey are needed together"},
    {"a schema that needs marks",
     "[sink.a]\nkind = \"postgresql\"\ndatabase = \"d\"\nschema = \"A b\"",
     "7:10: sink.a.schema: expected at most 40 of"},
    {"no truth", "[sink.a]\nkind = \"postgresql\"\ndatabase = \"d\"\ncreate = 1",
     "7:10: sink.a.create: expected true or false"},
};

} // namespace

void TestPostgresqlKind::readsADatabase()
{
    QStringList mistakes;
    const auto config = readConfigText(QByteArray(kLeastConfig) + R"([sink.least]
kind = "postgresql"
database = "plant"
[sink.more]
kind = "postgresql"
host = "db.example"
port = 5433
database = "plant"
user = "gateway"
password_file = "db.password"
sslrootcert = "/pki/ca.crt"
sslcert = "c.crt"
sslkey = "c.key"
schema = "press"
create = true
age = "365d"
timeout = "5s"
)",
                                       mistakes);
    QCOMPARE(mistakes, QStringList());
    const auto least = std::get<PostgresqlSettings>(config->sinks.first().settings);
    QCOMPARE(QStringList({least.host, least.user, least.password.file, least.password.credential,
                          least.sslMode, least.schema}),
             QStringList({QLatin1String("localhost"), QString(), QString(), QString(),
                          QLatin1String("prefer"), QLatin1String("cnet")}));
    QCOMPARE(QVector<qint64>({least.port, least.isCreating, least.ageMs, least.timeoutMs}),
             QVector<qint64>({5432, 0, 0, 30000}));
    const auto more = std::get<PostgresqlSettings>(config->sinks.last().settings);
    QCOMPARE(
        QStringList({more.host, more.database, more.user, more.password.file, more.sslMode,
                     more.rootCertificate, more.certificate, more.key, more.schema}),
        QStringList({QLatin1String("db.example"), QLatin1String("plant"), QLatin1String("gateway"),
                     QLatin1String("/etc/gw/db.password"), QLatin1String("verify-full"),
                     QLatin1String("/pki/ca.crt"), QLatin1String("/etc/gw/c.crt"),
                     QLatin1String("/etc/gw/c.key"), QLatin1String("press")}));
    QCOMPARE(QVector<qint64>({more.port, more.isCreating, more.ageMs, more.timeoutMs}),
             QVector<qint64>({5433, 1, Q_INT64_C(31536000000), 5000}));
}

void TestPostgresqlKind::saysWhatIsWrong_data()
{
    addRows(kMistakes);
}

void TestPostgresqlKind::saysWhatIsWrong()
{
    const auto &row = currentRow(kMistakes);
    findsOneMistake(QByteArray(kLeastConfig) + row.given + '\n', row.expected);
}

QTEST_APPLESS_MAIN(TestPostgresqlKind)
#include "test_postgresql_kind.moc"
