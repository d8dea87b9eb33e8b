#include "gateway/support/served_pages.h"

#include <QtTest>

#include <sys/socket.h>

using namespace cnet;
using namespace cnet::gateway;

/** Who means no good gets a refusal or nothing, and who asks next is served as ever. */
class TestHttpAttacks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void answers_data();
    void answers();
    void answersHalfClosedConnections_data();
    void answersHalfClosedConnections();
    void answersOneOfManyAtOnce();
    void outlivesIdleConnections();

private:
    std::unique_ptr<ServedPages> m_pages;
};

void TestHttpAttacks::init()
{
    m_pages = std::make_unique<ServedPages>();
    QVERIFY(m_pages->start());
}

void TestHttpAttacks::answers_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("begin"); // empty: nothing need come
    const auto row = [](const char *name, const QByteArray &request, const char *begin) {
        QTest::newRow(name) << request << QByteArray(begin);
    };
    const QByteArray get = "GET /metrics HTTP/1.1\r\n";
    const QByteArray own = "Host: localhost\r\n";
    row("a page that leads here by its name", get + "Host: evil.example:9464\r\n\r\n",
        "HTTP/1.1 403 ");
    row("a strange name for another page", "GET /x HTTP/1.1\r\nHost: evil.example\r\n\r\n",
        "HTTP/1.1 403 ");
    row("two names", get + own + "Host: evil.example\r\n\r\n", "HTTP/1.1 4");
    row("two names, the other way", get + "hOST: evil.example\r\n" + own + "\r\n", "HTTP/1.1 4");
    row("an empty name", get + "Host:\r\n\r\n", "HTTP/1.1 403 ");
    row("a whole address", "GET http://evil.example/metrics HTTP/1.1\r\n" + own + "\r\n",
        "HTTP/1.1 404 ");
    for (const char *path : {"/../../etc/passwd", "/metrics/../../../etc/passwd",
                             "/%2e%2e/%2e%2e/etc/passwd", "/..%00/metrics", "//etc/passwd"}) {
        row(path, QByteArray("GET ") + path + " HTTP/1.1\r\n" + own + "\r\n", "HTTP/1.1 404 ");
    }
    for (const char *method : {"POST", "DELETE", "TRACE", "CONNECT", "OPTIONS", "G", "get"}) {
        row(method, QByteArray(method) + " /metrics HTTP/1.1\r\n" + own + "\r\n", "HTTP/1.1 405 ");
    }
    row("another page", "GET / HTTP/1.1\r\n" + own + "\r\n", "HTTP/1.1 404 ");
    row("a body", "PUT /metrics HTTP/1.1\r\n" + own + "Content-Length: 3\r\n\r\nabc",
        "HTTP/1.1 405 ");
    row("a body that does not end",
        "POST /metrics HTTP/1.1\r\n" + own + "Content-Length: 999999999\r\n\r\nabc",
        "HTTP/1.1 405 ");
    row("a long address", "GET /" + QByteArray(100000, 'a') + " HTTP/1.1\r\n" + own + "\r\n",
        "HTTP/1.1 4");
    row("many headers", get + QByteArray("X: y\r\n").repeated(20000) + "\r\n", "HTTP/1.1 4");
    row("no name", get + "\r\n", "HTTP/1.1 200 ");
    row("a zero in an address", "GET /metr\\ics%00%ff HTTP/1.1\r\n" + own + "\r\n",
        "HTTP/1.1 404 ");
    row("the beginning of TLS", "\x16\x03\x01\r\n\r\n", "");
    row("a header of 1 MB", get + own + "X: " + QByteArray(1000000, 'y') + "\r\n\r\n",
        "HTTP/1.1 4");
    row("a name of 1 MB", get + "Host: " + QByteArray(1000000, 'y') + "\r\n\r\n", "HTTP/1.1 4");
    row("a method of 1 MB", QByteArray(1000000, 'G') + " / HTTP/1.1\r\n\r\n", "");
    row("a length below nothing", get + own + "Content-Length: -1\r\n\r\n", "HTTP/1.1 4");
    row("a length beyond all", get + own + "Content-Length: 99999999999999999999\r\n\r\n",
        "HTTP/1.1 4");
    row("a part beyond all",
        "POST /metrics HTTP/1.1\r\n" + own +
            "Transfer-Encoding: chunked\r\n\r\nffffffffffffffff\r\nx",
        "HTTP/1.1 4");
    row("a header that is none", get + own + "nothing\r\n\r\n", "HTTP/1.1 ");
    row("a zero in a header", get + own + QByteArray("X: a\0b\r\n\r\n", 10), "");
    row("another protocol", QByteArray("\x10\x0c\0\x04MQTT\x04\x02\0\x0a\0\0\r\n\r\n", 18), "");
}

void TestHttpAttacks::answers()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, begin);
    const QByteArray answer = m_pages->ask(request);
    // The rest of a request that is refused may cut its answer off.
    QVERIFY2(answer.isEmpty() ? begin.isEmpty() || request.size() > 50000
                              : answer.startsWith(begin),
             answer.constData());
    QVERIFY2(!answer.contains("cnet_gateway_line_up") || answer.startsWith("HTTP/1.1 200 "),
             answer.constData());
    QVERIFY(!answer.contains("root:"));
    QVERIFY(m_pages->servesOthers());
}

void TestHttpAttacks::answersHalfClosedConnections_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("begin");
    QTest::newRow("behind a request")
        << QByteArray("GET /health HTTP/1.0\r\n\r\n") << QByteArray("HTTP/1.1 200 OK\r\n");
    QTest::newRow("within a request") << QByteArray("GET /health HT") << QByteArray();
    QTest::newRow("without a request") << QByteArray() << QByteArray();
}

void TestHttpAttacks::answersHalfClosedConnections()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, begin);
    const auto socket = m_pages->connected();
    socket->write(request);
    QVERIFY(request.isEmpty() || socket->waitForBytesWritten(5000));
    QCOMPARE(::shutdown(static_cast<int>(socket->socketDescriptor()), SHUT_WR), 0);
    const QByteArray answer = ServedPages::rest(*socket);
    QVERIFY2(answer.startsWith(begin) && answer.isEmpty() == begin.isEmpty(), answer.constData());
    QVERIFY(m_pages->servesOthers());
}

// One answer a connection, however many requests are in it.
void TestHttpAttacks::answersOneOfManyAtOnce()
{
    const QByteArray one = "GET /metrics HTTP/1.1\r\nHost: localhost\r\n\r\n";
    const QByteArray answer = m_pages->ask(one.repeated(5000));
    QVERIFY(answer.count("HTTP/1.1 200 OK\r\n") <= 1);
    QVERIFY(m_pages->servesOthers());
}

// More than have a place: they have it for a few seconds.
void TestHttpAttacks::outlivesIdleConnections()
{
    std::vector<std::unique_ptr<QTcpSocket>> idle;
    for (int i = 0; i < HttpServer::kMostConnections + 10; ++i) {
        idle.push_back(m_pages->connected());
        idle.back()->write(i % 2 == 0 ? "" : "GET /metrics HTTP/1.1\r\nX: ");
        idle.back()->waitForBytesWritten(0);
    }
    QTRY_VERIFY_WITH_TIMEOUT(m_pages->servesOthers(), 30000);
}

QTEST_GUILESS_MAIN(TestHttpAttacks)
#include "test_http_attacks.moc"
