#include "gateway/support/served_pages.h"

#include <QtTest>

#include <sys/socket.h>
#include <unistd.h>

#include <array>

using namespace cnet;
using namespace cnet::gateway;

/** The pages over real connections, also slow ones and many. */
class TestHttpServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void servesThePages();
    void boundsConnections();
    void endsSlowClients();
    void leavesFilesAloneThatCameAfterAConnection();

private:
    std::unique_ptr<ServedPages> m_pages;
};

void TestHttpServer::init()
{
    m_pages = std::make_unique<ServedPages>();
    QVERIFY(m_pages->start());
}

void TestHttpServer::servesThePages()
{
    const QByteArray metrics = m_pages->ask("GET /metrics HTTP/1.1\r\nHost: localhost\r\n\r\n");
    QVERIFY2(metrics.startsWith("HTTP/1.1 200 OK\r\n"), metrics.constData());
    QVERIFY(metrics.contains("\r\nContent-Type: text/plain; version=0.0.4; charset=utf-8\r\n"));
    QVERIFY(metrics.contains("\ncnet_gateway_line_up{line=\"press\"} 1\n"));
    // With a query, as monitoring systems add one.
    QVERIFY(
        m_pages->ask("GET /health?verbose=1 HTTP/1.0\r\n\r\n").startsWith("HTTP/1.1 200 OK\r\n"));
    Snapshot hung = someSnapshot();
    hung.atMs = -60000;
    m_pages->board.put(std::make_shared<const Snapshot>(hung));
    const QByteArray health = m_pages->ask("GET /health HTTP/1.1\r\nHost: localhost\r\n\r\n");
    QVERIFY(health.startsWith("HTTP/1.1 503 "));
    QVERIFY2(health.contains("the gateway hangs since 60 s"), health.constData());
    const QByteArray head = m_pages->ask("HEAD /metrics HTTP/1.1\r\nHost: localhost\r\n\r\n");
    QVERIFY(head.startsWith("HTTP/1.1 200 OK\r\n"));
    QVERIFY(head.endsWith("\r\n\r\n"));
}

void TestHttpServer::boundsConnections()
{
    std::vector<std::unique_ptr<QTcpSocket>> idle;
    for (int i = 0; i < HttpServer::kMostConnections; ++i) {
        idle.push_back(m_pages->connected());
        idle.back()->write("GET /metrics HTTP/1.1\r\nX: ");
        QVERIFY(idle.back()->waitForBytesWritten(5000));
    }
    const auto next = m_pages->connected();
    next->write("GET /health HTTP/1.1\r\nHost: localhost\r\n\r\n");
    QVERIFY(!next->waitForReadyRead(500));
    // The others are ended for their silence.
    QVERIFY(next->waitForReadyRead(15000));
    QVERIFY(next->readAll().startsWith("HTTP/1.1 200 OK\r\n"));
    QVERIFY(idle.front()->state() != QAbstractSocket::ConnectedState ||
            idle.front()->waitForDisconnected(5000));
}

void TestHttpServer::endsSlowClients()
{
    const auto slow = m_pages->connected();
    slow->write("GET /metrics HTTP/1.1\r\n");
    QVERIFY(slow->waitForBytesWritten(5000));
    QVERIFY(m_pages->ask("GET /health HTTP/1.1\r\nHost: localhost\r\n\r\n")
                .startsWith("HTTP/1.1 200 OK\r\n"));
    m_pages->clock.runFor(HttpServer::kLongestMs);
    m_pages->server.endLongConnections();
    // Whoever sends something now and then is not idle.
    slow->write("X: y\r\n");
    QVERIFY(!slow->waitForDisconnected(100));
    m_pages->clock.runFor(1);
    m_pages->server.endLongConnections();
    // Sooner than for silence.
    QVERIFY(slow->state() != QAbstractSocket::ConnectedState || slow->waitForDisconnected(1500));
}

// They have the numbers of connections that are over.
void TestHttpServer::leavesFilesAloneThatCameAfterAConnection()
{
    QVERIFY(m_pages->servesOthers());
    QTest::qWait(100); // until the server has closed its end as well
    std::array<int, 16> others{};
    for (size_t i = 0; i < others.size(); i += 2) {
        QCOMPARE(socketpair(AF_UNIX, SOCK_STREAM, 0, &others.at(i)), 0);
    }
    m_pages->clock.runFor(HttpServer::kLongestMs + 1);
    m_pages->server.endLongConnections();
    for (const int other : others) {
        QCOMPARE(int(send(other, "x", 1, MSG_NOSIGNAL)), 1);
    }
    for (const int other : others) {
        close(other);
    }
}

QTEST_GUILESS_MAIN(TestHttpServer)
#include "test_http_server.moc"
