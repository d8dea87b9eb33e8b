#include "plc/servers/tcp_server.h"

#include "plc/support/served_bus.h"

#include <QDir>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QtTest>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <memory>
#include <vector>

using namespace plc;

/** Many clients, clients that are gone, and clients that mean no good: the others are served. */

namespace {

int openDescriptors()
{
    return static_cast<int>(QDir(QLatin1String("/proc/self/fd")).entryList().size());
}

} // namespace

class TestTcpServerLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_served = std::make_unique<ServedBus>();
        m_server = std::make_unique<TcpServer>(m_served->setup);
        QVERIFY(m_server->listen(QHostAddress(QHostAddress::LocalHost), 0));
    }

    void cleanup() { m_server.reset(); }

    void servesAsManyAsItSays()
    {
        const Clients clients = connected(TcpServer::kMostClients);
        for (const auto &client : clients) {
            client->write(kRead);
        }
        for (const auto &client : clients) {
            QTRY_COMPARE_WITH_TIMEOUT(client->bytesAvailable(), qint64(kData.size()), 30000);
            QCOMPARE(client->readAll(), kData);
        }
        QCOMPARE(m_server->clients(), TcpServer::kMostClients);
    }

    void turnsFurtherOnesAwayAtOnce()
    {
        constexpr int kFurther = 100;
        Clients clients = connected(TcpServer::kMostClients);
        QTRY_COMPARE_WITH_TIMEOUT(m_server->clients(), TcpServer::kMostClients, 30000);
        for (const auto &further : connected(kFurther)) {
            QTRY_COMPARE(further->state(), QAbstractSocket::UnconnectedState);
            QCOMPARE(further->bytesAvailable(), qint64(0));
        }
        clients.front()->write(kRead);
        QTRY_COMPARE(clients.front()->bytesAvailable(), qint64(kData.size()));
        clients.pop_back();
        QTRY_COMPARE(m_server->clients(), TcpServer::kMostClients - 1);
        QVERIFY(isServed());
    }

    void idleClientsHoldNobodyUp()
    {
        const Clients idle = connected(TcpServer::kMostClients - 1);
        for (const auto &client : idle) {
            client->write(kRead.left(client == idle.front() ? 0 : 10));
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_server->clients(), TcpServer::kMostClients - 1, 30000);
        QVERIFY(isServed());
    }

    void bytesOneByOneFromMany()
    {
        const Clients clients = connected(100);
        QTRY_COMPARE_WITH_TIMEOUT(m_server->clients(), 100, 30000);
        for (const char byte : kRead) {
            for (const auto &client : clients) {
                client->write(&byte, 1);
                client->flush();
            }
            QCoreApplication::processEvents();
        }
        QVERIFY(isServed());
        for (const auto &client : clients) {
            QTRY_COMPARE_WITH_TIMEOUT(client->bytesAvailable(), qint64(kData.size()), 30000);
            QCOMPARE(client->readAll(), kData);
        }
    }

    void clientsThatAreGoneLeaveNothing()
    {
        constexpr int kRounds = 5;
        QVERIFY(isServed());
        QTRY_COMPARE(m_server->clients(), 0);
        const int before = openDescriptors();
        for (int round = 0; round < kRounds; ++round) {
            const Clients clients = connected(100);
            for (const auto &client : clients) {
                QVERIFY(client->waitForConnected(30000));
                client->write(kRead);
                client->flush();
                // Without reading: the system answers the server's bytes with a reset.
                client->abort();
            }
            QCoreApplication::processEvents();
        }
        QVERIFY(isServed());
        QTRY_COMPARE_WITH_TIMEOUT(m_server->clients(), 0, 30000);
        QCOMPARE(openDescriptors(), before);
    }

    void answersWhoHasClosedItsEnd()
    {
        const auto client = connected();
        QVERIFY(client->waitForConnected(30000));
        client->write(kRead);
        client->flush();
        QCOMPARE(shutdown(static_cast<int>(client->socketDescriptor()), SHUT_WR), 0);
        QTRY_COMPARE(client->state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(client->readAll(), kData);
        QTRY_COMPARE(m_server->clients(), 0);
    }

    // A machine that is gone cannot be shown here, but that the system looks for it can.
    void noticesAMachineThatIsGone()
    {
        const auto client = connected();
        QTRY_COMPARE(m_server->clients(), 1);
        int found = 0;
        for (const QString &name : QDir(QLatin1String("/proc/self/fd")).entryList()) {
            const int descriptor = name.toInt();
            sockaddr_in peer{};
            socklen_t size = sizeof peer;
            if (descriptor <= 0 ||
                getpeername(descriptor, reinterpret_cast<sockaddr *>(&peer), &size) != 0 ||
                ntohs(peer.sin_port) != client->localPort()) {
                continue;
            }
            ++found;
            const auto option = [descriptor](int level, int number) {
                int value = 0;
                socklen_t length = sizeof value;
                return getsockopt(descriptor, level, number, &value, &length) == 0 ? value : -1;
            };
            QCOMPARE(option(SOL_SOCKET, SO_KEEPALIVE), 1);
            const int seconds =
                option(IPPROTO_TCP, TCP_KEEPIDLE) +
                option(IPPROTO_TCP, TCP_KEEPINTVL) * option(IPPROTO_TCP, TCP_KEEPCNT);
            QVERIFY2(seconds <= 60, qPrintable(QString::number(seconds)));
            QVERIFY(option(IPPROTO_TCP, TCP_USER_TIMEOUT) <= 60000);
        }
        QCOMPARE(found, 1);
    }

    void acceptsAgainAfterDescriptorsRanOut()
    {
        rlimit usual{};
        QCOMPARE(getrlimit(RLIMIT_NOFILE, &usual), 0);
        Clients clients = connected(10);
        for (const auto &client : clients) {
            QVERIFY(client->waitForConnected(30000)); // the system does that, before it is accepted
        }
        rlimit few = usual;
        few.rlim_cur = static_cast<rlim_t>(openDescriptors());
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &few), 0);
        for (int i = 0; i < 20; ++i) {
            QCoreApplication::processEvents();
        }
        const int accepted = m_server->clients();
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &usual), 0);
        QVERIFY2(accepted < 10, qPrintable(QString::number(accepted)));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->clients(), 10, 30000);
        QVERIFY(isServed());
    }

    void everyClientMayAskWithoutReading()
    {
        const QByteArray request = wire("[ENQ]01RSB07%DW01003C[EOT]");
        const QByteArray answer = wire("[ACK]01RSB01");
        constexpr int kAtOnce = 200; // as a master that is far ahead of its reading may
        const Clients clients = connected(20);
        for (const auto &client : clients) {
            client->write(request.repeated(kAtOnce));
        }
        for (const auto &client : clients) {
            QTRY_VERIFY_WITH_TIMEOUT(client->bytesAvailable() > kAtOnce * 240, 30000);
            QCOMPARE(client->readAll().count(answer), kAtOnce);
        }
        QCOMPARE(m_server->clients(), 20);
    }

private:
    using Clients = std::vector<std::unique_ptr<QTcpSocket>>;

    std::unique_ptr<QTcpSocket> connected() const
    {
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost(QHostAddress(QHostAddress::LocalHost), m_server->port());
        return socket;
    }

    Clients connected(int count) const
    {
        Clients clients;
        while (static_cast<int>(clients.size()) < count) {
            clients.push_back(connected());
        }
        return clients;
    }

    bool isServed() const
    {
        const auto client = connected();
        client->write(kRead);
        return QTest::qWaitFor([&] { return client->bytesAvailable() >= kData.size(); }, 30000) &&
               client->readAll() == kData;
    }

    std::unique_ptr<ServedBus> m_served;
    std::unique_ptr<TcpServer> m_server;
};

QTEST_GUILESS_MAIN(TestTcpServerLimits)
#include "test_tcp_server_limits.moc"
