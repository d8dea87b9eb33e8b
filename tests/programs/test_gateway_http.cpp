#include "gateway.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QtTest>

#include <csignal>
#include <memory>
#include <vector>

/** cnet-gateway while somebody asks it for its numbers in all wrong ways. */
class TestGatewayHttp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void goesOnPollingAndStaysSmall();

private:
    static int portOf(const QByteArray &errors)
    {
        static const QRegularExpression place(
            QLatin1String("metrics: http://127\\.0\\.0\\.1:([0-9]+)/metrics\\n"));
        return place.match(QString::fromUtf8(errors)).captured(1).toInt();
    }
};

namespace {

// Some MB for what a busy process keeps.
constexpr qint64 kGrowth = 16LL * 1024 * 1024;
constexpr int kConnections = 300;
constexpr qint64 kAttackMs = 4000;

/** What a connection sends, by its number. */
QByteArray nuisance(int number)
{
    static const QByteArray megabyte(1000000, 'x');
    switch (number % 6) {
    case 0:
        return QByteArray();
    case 1:
        return "GET /metrics HTTP/1.1\r\nX: ";
    case 2:
        return "GET /metrics HTTP/1.1\r\nX: " + megabyte;
    case 3:
        return QByteArray("GET /metrics HTTP/1.1\r\nHost: localhost\r\n\r\n").repeated(1000);
    case 4:
        return "POST /status HTTP/1.1\r\nHost: localhost\r\nContent-Length: 100000000\r\n\r\n" +
               megabyte;
    default:
        return "GET /status HTTP/1.1\r\nHost: localhost\r\n\r\n"; // and its answer is not taken
    }
}

void attack(int port)
{
    std::vector<std::unique_ptr<QTcpSocket>> sockets(kConnections);
    QElapsedTimer clock;
    clock.start();
    for (int number = 0; clock.elapsed() < kAttackMs; ++number) {
        auto &socket = sockets.at(static_cast<size_t>(number % kConnections));
        socket = std::make_unique<QTcpSocket>();
        socket->setReadBufferSize(1);
        socket->connectToHost(QHostAddress(QHostAddress::LocalHost), static_cast<quint16>(port));
        socket->write(nuisance(number));
        QCoreApplication::processEvents();
    }
}

QByteArray fetch(int port, const QByteArray &path)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), static_cast<quint16>(port));
    socket.write("GET " + path + " HTTP/1.1\r\nHost: localhost\r\n\r\n");
    while (socket.state() != QAbstractSocket::UnconnectedState && socket.waitForReadyRead(10000)) {
    }
    return socket.readAll();
}

} // namespace

void TestGatewayHttp::goesOnPollingAndStaysSmall()
{
    PlcProgram plc;
    // A count each 200 ms: whoever does not look for so long misses one.
    QVERIFY(plc.serve({QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")},
                      {QLatin1String("--ramp"), QLatin1String("D_W:100=0..60000@200")}));
    GatewayProgram gateway;
    QVERIFY(gateway.store("tags.csv", "name,register,address\ncounter,D_W,100\n"));
    QVERIFY(
        gateway.store("gateway.toml", "[metrics]\nlisten = \"127.0.0.1:0\"\n[line.press]\n"
                                      "tags = \"tags.csv\"\ninterval = \"20ms\"\nlink = \"tcp:" +
                                          plc.place().toLatin1() + "\"\n"));
    Program program;
    // What a sanitizer keeps of freed memory is no growth.
    const QByteArray options = qgetenv("ASAN_OPTIONS");
    program.setVariable(
        "ASAN_OPTIONS",
        (options + (options.isEmpty() ? "" : ":") + "quarantine_size_mb=1").constData());
    QVERIFY(gateway.start(program, {"run", QFile::encodeName(gateway.path("gateway.toml"))}));
    QTRY_VERIFY_WITH_TIMEOUT(portOf(program.errors()) > 0, 60000);
    const int port = portOf(program.errors());
    const auto serves = [port] { return fetch(port, "/health").startsWith("HTTP/1.1 200 OK\r\n"); };
    QTRY_VERIFY_WITH_TIMEOUT(serves(), 60000);
    attack(port); // what is laid out once
    const qint64 before = program.memory();
    attack(port);
    const qint64 after = program.memory();
    qInfo("memory before %lld kB, after %lld kB", static_cast<long long>(before / 1024),
          static_cast<long long>(after / 1024));
    QVERIFY(before > 0 && after - before < kGrowth);
    QTRY_VERIFY_WITH_TIMEOUT(serves(), 30000);
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
    const QList<QJsonObject> rows = gateway.history("counter");
    QVERIFY(rows.size() > 2 * kAttackMs / 200);
    for (int i = 1; i + 1 < rows.size(); ++i) {
        const auto valueOf = [&rows](int row) {
            return rows.at(row).value(QLatin1String("value")).toInt();
        };
        QCOMPARE(valueOf(i), valueOf(i - 1) + 1);
    }
}

QTEST_GUILESS_MAIN(TestGatewayHttp)
#include "test_gateway_http.moc"
