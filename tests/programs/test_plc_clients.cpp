#include "program.h"

#include <QTcpSocket>
#include <QtTest>

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <memory>
#include <vector>

/** cnet-plc and clients that flood it: its memory stays what it was, and others are served. */
class TestPlcClients : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listensForThisMachineOnly();
    void listensForOthersWhenTold();
    void memoryStaysBounded_data();
    void memoryStaysBounded();

private:
    static std::unique_ptr<QTcpSocket> connectTo(const QString &host, const QString &place);
    static bool isServed(const QString &place);
};

namespace {

const int kPatienceMs = 30000;
const qint64 kMegabyte = 1048576;
const QByteArray kRead("\x05"
                       "01RSS0107%DW0100\x04");
// Of the station that is flooded.
const QByteArray kShortRead("\x05"
                            "02RSS0107%DW0100\x04");
const QByteArray kLongRead("\x05"
                           "02RSB07%DW01003C\x04");

quint16 portOf(const QString &place)
{
    return place.section(QLatin1Char(':'), -1).toUShort();
}

QStringList options(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

// Clients that send as much as goes, and read nothing.
class Flood
{
public:
    Flood(int clients, quint16 port)
    {
        for (int i = 0; i < clients; ++i) {
            m_clients.push_back(std::make_unique<QTcpSocket>());
            m_clients.back()->connectToHost(QLatin1String("127.0.0.1"), port);
            m_clients.back()->waitForConnected(kPatienceMs);
            m_clients.back()->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, 4096);
        }
    }

    void push(const QByteArray &bytes)
    {
        std::vector<pollfd> ready;
        for (const auto &client : m_clients) {
            ready.push_back({static_cast<int>(client->socketDescriptor()), POLLOUT, 0});
        }
        constexpr int kPauseMs = 10;
        poll(ready.data(), ready.size(), kPauseMs);
        m_gone = 0;
        for (const pollfd &client : ready) {
            const ssize_t count =
                send(client.fd, bytes.constData(), static_cast<size_t>(bytes.size()),
                     MSG_DONTWAIT | MSG_NOSIGNAL);
            m_gone += count < 0 && errno != EAGAIN ? 1 : 0;
            m_sent += std::max<ssize_t>(count, 0);
        }
    }

    /** Clients whose connection is broken. */
    int gone() const { return m_gone; }
    qint64 sent() const { return m_sent; }

private:
    std::vector<std::unique_ptr<QTcpSocket>> m_clients;
    int m_gone = 0;
    qint64 m_sent = 0;
};

} // namespace

std::unique_ptr<QTcpSocket> TestPlcClients::connectTo(const QString &host, const QString &place)
{
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(host, portOf(place));
    socket->waitForConnected(kPatienceMs);
    return socket;
}

bool TestPlcClients::isServed(const QString &place)
{
    const auto client = connectTo(QLatin1String("127.0.0.1"), place);
    client->write(kRead);
    while (client->bytesAvailable() < 13 && client->waitForReadyRead(kPatienceMs)) {
    }
    return client->readAll() == "\x06"
                                "01RSS01020007\x03";
}

void TestPlcClients::listensForThisMachineOnly()
{
    PlcProgram plc;
    QVERIFY(plc.serve(options("--tcp 0"), {}));
    QVERIFY2(plc.place().startsWith(QLatin1String("127.0.0.1:")), qPrintable(plc.place()));
    // Another address of this machine stands for all the others.
    const auto other = connectTo(QLatin1String("127.0.0.2"), plc.place());
    QCOMPARE(other->error(), QAbstractSocket::ConnectionRefusedError);
    const auto same = connectTo(QLatin1String("127.0.0.1"), plc.place());
    QCOMPARE(same->state(), QAbstractSocket::ConnectedState);
}

void TestPlcClients::listensForOthersWhenTold()
{
    PlcProgram plc;
    QVERIFY(plc.serve(options("--tcp 0.0.0.0:0"), {}));
    const auto other = connectTo(QLatin1String("127.0.0.2"), plc.place());
    QCOMPARE(other->state(), QAbstractSocket::ConnectedState);
}

void TestPlcClients::memoryStaysBounded_data()
{
    QTest::addColumn<QByteArray>("flood");
    QTest::addColumn<QString>("fault"); // of the station that is flooded
    QTest::addColumn<bool>("dropped");  // whoever floods like that
    QByteArray noise;
    for (int i = 0; i < 4096; ++i) {
        noise += static_cast<char>(i * 7 + i / 256);
    }
    const auto row = [](const char *name, const QByteArray &flood, const char *fault,
                        bool dropped) {
        QTest::newRow(name) << flood << QString::fromLatin1(fault) << dropped;
    };
    row("zeros", QByteArray(4096, '\0'), "", false);
    row("noise", noise, "", false);
    row("frames that begin only", QByteArray(4096, '\x05'), "", false);
    row("a frame without end", "\x05" + QByteArray(65536, 'A'), "", false);
    row("requests that are lost", kShortRead.repeated(200), "2:silence", false);
    row("never reads", kLongRead.repeated(200), "", true);
    row("never reads long answers", kLongRead.repeated(200), "2:oversize=4096", true);
    row("does not wait for answers", kShortRead.repeated(200), "2:delay=600000", true);
    row("answers in single bytes", kLongRead.repeated(200), "2:split=10000", true);
}

void TestPlcClients::memoryStaysBounded()
{
    QFETCH(QByteArray, flood);
    QFETCH(QString, fault);
    QFETCH(bool, dropped);
    constexpr int kFlooders = 8;
    constexpr qint64 kMostGrowth = 24 * kMegabyte;
    PlcProgram plc;
    // Memory that is given back is not kept for the sanitizer's sake.
    plc.setVariable("ASAN_OPTIONS", "quarantine_size_mb=0:thread_local_quarantine_size_kb=0");
    QVERIFY(
        plc.serve(options("--tcp 0 --station 1 --station 2 --set 1/D_W:100=7"),
                  fault.isEmpty() ? QStringList() : QStringList{QLatin1String("--fault"), fault}));
    QVERIFY(isServed(plc.place()));
    Flood clients(kFlooders, portOf(plc.place()));
    const qint64 before = plc.memory();
    qint64 most = before;
    QElapsedTimer clock;
    clock.start();
    int pushes = 0;
    // What is never read is kept by the system, too, up to some megabytes for each client.
    while (clock.elapsed() < kPatienceMs &&
           (dropped ? clients.gone() < kFlooders : clients.sent() < 8 * kMegabyte)) {
        clients.push(flood);
        if (++pushes == 3) {
            QVERIFY(isServed(plc.place())); // while there is more of the flood to be worked off
        }
        most = std::max(most, plc.memory());
    }
    QVERIFY2(before > 0 && most - before < kMostGrowth,
             qPrintable(QString::fromLatin1("grew by %1 bytes").arg(most - before)));
    QCOMPARE(clients.gone(), dropped ? kFlooders : 0);
    QVERIFY(isServed(plc.place()));
    QVERIFY(plc.isRunning());
}

QTEST_GUILESS_MAIN(TestPlcClients)
#include "test_plc_clients.moc"
