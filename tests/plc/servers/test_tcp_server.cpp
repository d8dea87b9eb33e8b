#include "plc/servers/tcp_server.h"

#include "plc/support/served_bus.h"
#include "support/rows.h"

#include <QSignalSpy>
#include <QTcpSocket>
#include <QtTest>

#include <memory>
#include <vector>

using namespace plc;

static const Given<int> kClientWhoNeverReadsIsDropped[] = {
    {"answers wait for their time", 600000},
    {"answers wait for the client", 0},
};

class TestTcpServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_served = std::make_unique<ServedBus>();
        m_server = std::make_unique<TcpServer>(m_served->setup);
        QVERIFY(m_server->listen(QHostAddress(QHostAddress::LocalHost), 0));
        QVERIFY(m_server->port() != 0);
        QCOMPARE(m_server->address(), latin("127.0.0.1:%1").arg(m_server->port()));
    }

    void cleanup() { m_server.reset(); }

    void answers()
    {
        const auto client = connected();
        client->write(kRead);
        QTRY_COMPARE(client->bytesAvailable(), qint64(kData.size()));
        QCOMPARE(client->readAll(), kData);
    }

    void eachClientHasItsLine()
    {
        const auto first = connected();
        const auto second = connected();
        first->write(kRead.left(9));
        second->write(wire("[ENQ]01WSS0107%DW0100BEEF[EOT]"));
        QTRY_COMPARE(second->bytesAvailable(), qint64(7));
        first->write(kRead.mid(9));
        QTRY_COMPARE(first->bytesAvailable(), qint64(kData.size()));
        QCOMPARE(first->readAll(), wire("[ACK]01RSS0102BEEF[ETX]"));
        QCOMPARE(m_server->clients(), 2);
    }

    void answersInPieces()
    {
        m_served->bus.find(1)->faults.add(usualFault(FaultKind::Split));
        const auto client = connected();
        int pieces = 0;
        connect(client.get(), &QTcpSocket::readyRead, this, [&pieces] { ++pieces; });
        client->write(kRead);
        QTRY_COMPARE(client->bytesAvailable(), qint64(kData.size()));
        QCOMPARE(client->readAll(), kData);
        QVERIFY(pieces > 1);
    }

    void clientWhoNeverReadsIsDropped_data() { addRows(kClientWhoNeverReadsIsDropped); }
    void clientWhoNeverReadsIsDropped()
    {
        const auto &row = currentRow(kClientWhoNeverReadsIsDropped);
        m_served->bus.find(1)->faults.add({FaultKind::Delay, row.given, row.given});
        const auto client = connected();
        client->setReadBufferSize(1);
        QSignalSpy dropped(m_server.get(), &TcpServer::clientGone);
        // What the system itself keeps for both ends is some megabytes; no answer is shorter than
        // this.
        const QByteArray many = wire("[ENQ]01RSB07%DW01003C[EOT]").repeated(1000);
        connect(client.get(), &QTcpSocket::bytesWritten, this, [&client, &many] {
            if (client->bytesToWrite() < many.size()) {
                client->write(many);
            }
        });
        client->write(many);
        QTRY_COMPARE_WITH_TIMEOUT(dropped.count(), 1, 30000);
        QCOMPARE(m_server->clients(), 0);
    }

    void tooManyClients()
    {
        std::vector<std::unique_ptr<QTcpSocket>> clients;
        clients.reserve(TcpServer::kMostClients);
        for (int i = 0; i < TcpServer::kMostClients; ++i) {
            clients.push_back(connected());
        }
        QTRY_COMPARE(m_server->clients(), TcpServer::kMostClients);
        const auto rejected = connected();
        QSignalSpy left(rejected.get(), &QTcpSocket::disconnected);
        QTRY_COMPARE(left.count(), 1);
        clients.pop_back();
        QTRY_COMPARE(m_server->clients(), TcpServer::kMostClients - 1);
        const auto accepted = connected();
        accepted->write(kRead);
        QTRY_COMPARE(accepted->bytesAvailable(), qint64(kData.size()));
    }

    void portTaken()
    {
        TcpServer other(m_served->setup);
        QVERIFY(!other.listen(QHostAddress(QHostAddress::LocalHost), m_server->port()));
        QVERIFY(!other.errorString().isEmpty());
    }

    void clientsMayLeaveBeforeTheAnswer()
    {
        m_served->bus.find(1)->faults.add({FaultKind::Delay, 30, 30});
        auto client = connected();
        client->write(kRead);
        QTRY_COMPARE(client->bytesToWrite(), qint64(0));
        client.reset();
        const auto next = connected();
        next->write(kRead);
        QTRY_COMPARE(next->bytesAvailable(), qint64(kData.size()));
        QTRY_COMPARE(m_server->clients(), 1);
    }

    void trace()
    {
        QString name;
        QByteArray request;
        m_served->setup.trace = [&](const QString &connection, const Exchange &exchange) {
            name = connection;
            request = exchange.request;
        };
        const auto client = connected();
        client->write(kRead);
        QTRY_COMPARE(request, kRead);
        QCOMPARE(name, latin("127.0.0.1:%1").arg(client->localPort()));
    }

private:
    std::unique_ptr<QTcpSocket> connected() const
    {
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost(QHostAddress(QHostAddress::LocalHost), m_server->port());
        return socket;
    }

    std::unique_ptr<ServedBus> m_served;
    std::unique_ptr<TcpServer> m_server;
};

QTEST_GUILESS_MAIN(TestTcpServer)
#include "test_tcp_server.moc"
