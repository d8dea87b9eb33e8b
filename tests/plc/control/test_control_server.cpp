#include "plc/control/control_server.h"
#include "support/rows.h"

#include <QFileInfo>
#include <QLocalSocket>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <vector>

using namespace plc;

namespace {

/** The next line that comes, within some time. */
QByteArray lineOf(QIODevice &device)
{
    for (int i = 0; i < 1000 && !device.canReadLine(); ++i) {
        QTest::qWait(5);
    }
    return device.readLine();
}

} // namespace

class TestControlServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_bus = Bus();
        m_bus.add(1);
        m_target.bus = &m_bus;
        m_nowMs = 0;
        m_target.nowMs = [this] { return m_nowMs; };
        m_server = std::make_unique<ControlServer>(m_target, ReplyFormat::Text);
        QVERIFY(m_server->listen(QHostAddress(QHostAddress::LocalHost), 0));
    }

    void severalTalkAtATime()
    {
        const auto first = connected();
        const auto second = connected();
        first->write("json\nset D_W:");
        second->write("set D_W:1=7\n");
        QTRY_COMPARE(second->bytesAvailable(), qint64(3));
        QTRY_COMPARE(first->bytesAvailable(), qint64(12));
        first->readAll();
        first->write("2=8\nshow D_W:1*2\n");
        second->readAll();
        second->write("show D_W:1*2\n");
        QTRY_VERIFY(first->bytesAvailable() > 60);
        QVERIFY(first->readAll().endsWith("\"values\":[7,8]}]}\n"));
        QCOMPARE(lineOf(*second), QByteArray("1/D_W:1 = 7 8\n"));
    }

    void furtherClientsAreLeft()
    {
        std::vector<std::unique_ptr<QTcpSocket>> clients(ControlServer::kMostClients);
        for (auto &client : clients) {
            client = connected();
        }
        QTRY_COMPARE(m_server->clients(), ControlServer::kMostClients);
        const auto further = connected();
        QTRY_COMPARE(further->state(), QAbstractSocket::UnconnectedState);
        clients.front()->abort();
        QTRY_COMPARE(m_server->clients(), ControlServer::kMostClients - 1);
        const auto next = connected();
        next->write("stations\n");
        QCOMPARE(lineOf(*next), QByteArray("1 full\n"));
    }

    void whoIsSilentLongestMakesRoom()
    {
        std::vector<std::unique_ptr<QTcpSocket>> clients;
        for (int i = 0; i < ControlServer::kMostClients; ++i) {
            m_nowMs = i;
            clients.push_back(connected());
            QTRY_COMPARE(m_server->clients(), i + 1);
        }
        // The first one is there still.
        m_nowMs = ControlServer::kIdleMs;
        clients.at(0)->write("stations\n");
        QCOMPARE(lineOf(*clients.at(0)), QByteArray("1 full\n"));
        const auto early = connected();
        QTRY_COMPARE(early->state(), QAbstractSocket::UnconnectedState);
        m_nowMs = ControlServer::kIdleMs + 1;
        const auto further = connected();
        further->write("stations\n");
        QCOMPARE(lineOf(*further), QByteArray("1 full\n"));
        QTRY_COMPARE(clients.at(1)->state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(m_server->clients(), ControlServer::kMostClients);
        for (std::size_t i = 0; i < clients.size(); ++i) {
            QCOMPARE(clients.at(i)->state() == QAbstractSocket::ConnectedState, i != 1);
        }
    }

    void nonsenseIsLeftWithAWord()
    {
        const auto client = connected();
        client->write(QByteArray(5000, 'x'));
        QTRY_COMPARE(client->state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(client->readAll(), QByteArray("error: a line is longer than 4096 bytes\n"));
        QTRY_COMPARE(m_server->clients(), 0);
    }

    void whoDoesNotReadHasToWait()
    {
        const auto greedy = connected();
        greedy->setReadBufferSize(1);
        const int asked = 200;
        greedy->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, 65536);
        for (int i = 0; i < asked; ++i) {
            greedy->write("show D_W:0*4096\n");
        }
        greedy->write("set M_W:7=9\n");
        // Another one is served meanwhile, and what was not read is not carried out to its end.
        const auto other = connected();
        other->write("stations\n");
        QCOMPARE(lineOf(*other), QByteArray("1 full\n"));
        QTest::qWait(400);
        QCOMPARE(*m_bus.find(1)->station.memory().word('M', 7), quint16(0));
        QCOMPARE(m_server->clients(), 2);
        // Once it reads, it gets all.
        greedy->setReadBufferSize(0);
        int replies = 0;
        QElapsedTimer clock;
        clock.start();
        while (replies < asked + 1 && clock.elapsed() < 60000) {
            QTest::qWait(1);
            replies += static_cast<int>(greedy->readAll().count('\n'));
        }
        QCOMPARE(replies, asked + 1);
        QCOMPARE(*m_bus.find(1)->station.memory().word('M', 7), quint16(9));
    }

    void localSocket()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(latin("plc"));
        auto server = std::make_unique<ControlServer>(m_target, ReplyFormat::Text);
        QVERIFY2(server->listenLocally(path), qPrintable(server->errorString()));
        QCOMPARE(server->address(), path);
        const auto others =
            QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
        QVERIFY(!(QFileInfo(path).permissions() & others));
        QLocalSocket client;
        client.connectToServer(path);
        client.write("stations\n");
        QCOMPARE(lineOf(client), QByteArray("1 full\n"));
        // Nobody takes it from one who lives.
        ControlServer second(m_target, ReplyFormat::Text);
        QVERIFY(!second.listenLocally(path));
        QVERIFY(!second.errorString().isEmpty());
        server.reset();
        QVERIFY(!QFileInfo::exists(path));
    }

    void replacesWhatADeadOneLeft()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(latin("plc"));
        QLocalServer dead;
        QVERIFY(dead.listen(path));
        const QString kept = folder.filePath(latin("kept"));
        QVERIFY(QFile::link(path, kept) && QFile::rename(path, kept + latin("2")));
        dead.close();
        QVERIFY(QFile::rename(kept + latin("2"), path));
        ControlServer server(m_target, ReplyFormat::Text);
        QVERIFY2(server.listenLocally(path), qPrintable(server.errorString()));
    }

    void leavesOtherFilesAlone()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(latin("plc"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("mine") == 4);
        file.close();
        ControlServer server(m_target, ReplyFormat::Text);
        QVERIFY(!server.listenLocally(path));
        QVERIFY(server.errorString().contains(latin("exists")));
        QCOMPARE(QFileInfo(path).size(), qint64(4));
        QVERIFY(!server.listenLocally(folder.filePath(latin("no/plc"))));
    }

private:
    std::unique_ptr<QTcpSocket> connected() const
    {
        auto socket = std::make_unique<QTcpSocket>();
        const QString port = m_server->address().section(QLatin1Char(':'), 1);
        socket->connectToHost(QHostAddress(QHostAddress::LocalHost), port.toUShort());
        socket->waitForConnected();
        return socket;
    }

    Bus m_bus;
    qint64 m_nowMs = 0;
    ControlTarget m_target;
    std::unique_ptr<ControlServer> m_server;
};

QTEST_GUILESS_MAIN(TestControlServer)
#include "test_control_server.moc"
