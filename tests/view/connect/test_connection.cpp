#include "support/rows.h"

#include "view/connect/connection.h"

#include <QJsonDocument>
#include <QtTest>

using namespace cnet;
using namespace cnet::view;

namespace {

struct Row
{
    const char *what;
    const char *json;
    const char *text; ///< empty: it is not taken
};

const Row kRows[] = {
    {"the simulator", R"({"link":"simulator"})", "simulated press line"},
    {"TCP", R"({"link":"tcp:plc.local:8000","station":5})", "tcp:plc.local:8000"},
    {"serial", R"({"link":"serial:/dev/ttyS1,9600,7,EVEN,2"})", "serial:/dev/ttyS1,9600,7,EVEN,2"},
    {"nothing", "{}", ""},
    {"no link", R"({"link":5})", ""},
    {"a port beyond all", R"({"link":"tcp:a:70000"})", ""},
    {"a station beyond all", R"({"link":"simulator","station":32})", ""},
    {"a station that is none", R"({"link":"simulator","station":"x"})", ""},
    {"an interval below 0", R"({"link":"simulator","intervalMs":-1})", ""},
    {"a time-out beyond all", R"({"link":"simulator","timeoutMs":60001})", ""},
};

Connection tcp(const QString &host)
{
    Connection connection;
    connection.kind = Connection::Kind::Tcp;
    connection.address.host = host;
    connection.address.port = 8000;
    return connection;
}

} // namespace

class TestConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isRestored_data() { addRows(kRows); }
    void isRestored();
    void keepsAll();
};

void TestConnection::isRestored()
{
    const auto &row = currentRow(kRows);
    const auto connection = Connection::restored(QJsonDocument::fromJson(row.json).object());
    QCOMPARE(connection ? connection->text() : QString(), QString::fromLatin1(row.text));
    if (connection) {
        const auto again = Connection::restored(connection->saved());
        QVERIFY(again && *again == *connection);
    }
}

void TestConnection::keepsAll()
{
    Connection connection = tcp(QLatin1String("::1"));
    connection.address.line.baud = 19200;
    connection.address.line.parity = Parity::Odd;
    connection.station = 31;
    connection.intervalMs = 0;
    connection.timeoutMs = 60000;
    const auto again = Connection::restored(connection.saved());
    QVERIFY(again);
    QCOMPARE(again->address.host, connection.address.host);
    QCOMPARE(again->address.line.text(), connection.address.line.text());
    QCOMPARE(again->station, 31);
    QCOMPARE(again->intervalMs, 0);
    QCOMPARE(again->timeoutMs, 60000);
}

QTEST_GUILESS_MAIN(TestConnection)
#include "test_connection.moc"
