#include <host/driver/driver.h>
#include <host/link/link_serial.h>
#include <host/link/link_tcp.h>
#include <host/session.h>

#include <plc/servers/pty_server.h>
#include <plc/servers/tcp_server.h>
#include <plc/stations/bus.h>

#include <QSignalSpy>
#include <QTcpServer>
#include <QtTest>

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

using namespace cnet;

namespace {

// The far end of a pseudo-terminal.
class Terminal
{
public:
    Terminal()
        : m_master(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        if (grantpt(m_master) == 0 && unlockpt(m_master) == 0) {
            m_name = QString::fromLatin1(ptsname(m_master));
        }
    }
    ~Terminal() { hangUp(); }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    void hangUp()
    {
        if (m_master >= 0) {
            close(m_master);
        }
        m_master = -1;
    }

    QString name() const { return m_name; }
    bool write(const QByteArray &bytes) const
    {
        return ::write(m_master, bytes.constData(), static_cast<size_t>(bytes.size())) ==
               bytes.size();
    }
    QByteArray read() const
    {
        QByteArray bytes(256, '\0');
        const ssize_t count = ::read(m_master, bytes.data(), static_cast<size_t>(bytes.size()));
        return bytes.left(static_cast<int>(std::max<ssize_t>(0, count)));
    }

private:
    int m_master;
    QString m_name;
};

QByteArray joined(const QSignalSpy &received)
{
    QByteArray bytes;
    for (const QList<QVariant> &call : received) {
        bytes += call.first().toByteArray();
    }
    return bytes;
}

} // namespace

class TestLinks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesEachKind_data();
    void makesEachKind();
    void tcpCarriesBytes();
    void tcpWaitsForWhatIsExpected();
    void tcpTellsWhenTheOtherEndHangsUp();
    void tcpTellsWhenNobodyListens();
    void tcpIsSilentAboutItsOwnEnd();
    void serialCarriesBytes_data();
    void serialCarriesBytes();
    void serialTellsWhenTheDeviceGoes();
    void serialTellsWhenThereIsNoDevice();
    void talksToAPlc_data();
    void talksToAPlc();
    void babbleComesInBits();
};

void TestLinks::makesEachKind_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("tcp:plc:8000") << "tcp plc:8000";
    QTest::newRow("serial:/dev/ttyS9,9600") << "serial /dev/ttyS9,9600,8,NONE,1";
}

void TestLinks::makesEachKind()
{
    QString error;
    const auto address = parseLinkAddress(QLatin1String(QTest::currentDataTag()), error);
    QVERIFY2(address.has_value(), qPrintable(error));
    const std::unique_ptr<Link> link = makeLink(*address);
    QVERIFY(link != nullptr);
    QTEST(link->name(), "name");
    QVERIFY(!link->isOpen());
}

void TestLinks::tcpCarriesBytes()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    LinkTcp link(QLatin1String("127.0.0.1"), server.serverPort());
    QSignalSpy opened(&link, &Link::opened);
    QSignalSpy received(&link, &Link::received);
    link.open();
    link.open(); // a second call while opening changes nothing
    QTRY_COMPARE(opened.size(), 1);
    QTRY_VERIFY(server.hasPendingConnections());
    QTcpSocket *far = server.nextPendingConnection();
    link.send("ping");
    QTRY_COMPARE(far->bytesAvailable(), 4);
    QCOMPARE(far->readAll(), QByteArray("ping"));
    far->write("pong");
    QTRY_COMPARE(joined(received), QByteArray("pong"));
    QVERIFY(!server.hasPendingConnections());
}

void TestLinks::tcpWaitsForWhatIsExpected()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    LinkTcp link(QLatin1String("127.0.0.1"), server.serverPort());
    QSignalSpy received(&link, &Link::received);
    link.open();
    QTRY_VERIFY(link.isOpen());
    QTRY_VERIFY(server.hasPendingConnections());
    QTcpSocket *far = server.nextPendingConnection();
    const auto write = [&far](const char *bytes) {
        far->write(bytes);
        far->flush();
    };
    link.expect(6);
    write("pong");
    QVERIFY(!received.wait(30));
    write("pong");
    QTRY_COMPARE(received.size(), 1);
    QCOMPARE(joined(received), QByteArray("pongpong"));
    write("ping");
    QVERIFY(!received.wait(30));
    link.expect(0);
    QCOMPARE(joined(received), QByteArray("pongpongping"));
    link.expect(6);
    link.expect(0);
    QVERIFY(link.isOpen());
    write("!");
    QTRY_COMPARE(joined(received), QByteArray("pongpongping!"));
    // Another connection knows nothing of what was expected.
    link.expect(6);
    far->close();
    QTRY_VERIFY(!link.isOpen());
    link.open();
    QTRY_VERIFY(link.isOpen());
    QTRY_VERIFY(server.hasPendingConnections());
    far = server.nextPendingConnection();
    link.expect(6);
    received.clear();
    write("ping");
    QVERIFY(!received.wait(30));
}

void TestLinks::tcpTellsWhenTheOtherEndHangsUp()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    LinkTcp link(QLatin1String("127.0.0.1"), server.serverPort());
    QSignalSpy failed(&link, &Link::failed);
    link.open();
    QTRY_VERIFY(link.isOpen());
    QTRY_VERIFY(server.hasPendingConnections());
    server.nextPendingConnection()->abort();
    QTRY_COMPARE(failed.size(), 1);
    QVERIFY(!link.isOpen());
    link.open();
    QTRY_VERIFY(link.isOpen());
    QCOMPARE(failed.size(), 1);
}

void TestLinks::tcpTellsWhenNobodyListens()
{
    quint16 port = 0;
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        port = server.serverPort();
    }
    LinkTcp link(QLatin1String("127.0.0.1"), port);
    QSignalSpy failed(&link, &Link::failed);
    link.open();
    QTRY_COMPARE(failed.size(), 1);
    QVERIFY(!failed.first().first().toString().isEmpty());
    link.open();
    QTRY_COMPARE(failed.size(), 2);
}

void TestLinks::tcpIsSilentAboutItsOwnEnd()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    LinkTcp link(QLatin1String("127.0.0.1"), server.serverPort());
    QSignalSpy failed(&link, &Link::failed);
    link.open();
    QTRY_VERIFY(link.isOpen());
    link.close();
    QVERIFY(!link.isOpen());
    QVERIFY(!failed.wait(20));
}

void TestLinks::serialCarriesBytes_data()
{
    QTest::addColumn<QString>("settings");
    // A pseudo-terminal has no parity and no speed, yet must be usable with any settings.
    QTest::newRow("usual") << "";
    QTest::newRow("7 bits, odd, 2 stop bits") << ",9600,7,ODD,2";
    QTest::newRow("8 bits, even") << ",115200,8,EVEN,1";
    QTest::newRow("odd speed") << ",12345";
}

void TestLinks::serialCarriesBytes()
{
    QFETCH(QString, settings);
    const Terminal terminal;
    QVERIFY(!terminal.name().isEmpty());
    QString error;
    const auto address =
        parseLinkAddress(QLatin1String("serial:") + terminal.name() + settings, error);
    QVERIFY2(address.has_value(), qPrintable(error));
    LinkSerial link(address->device, address->line);
    QSignalSpy received(&link, &Link::received);
    QSignalSpy failed(&link, &Link::failed);
    link.open();
    QVERIFY(link.isOpen());
    const QByteArray bytes("\x05 0123 \x04\x0D\x0A\x11\x13", 12);
    QByteArray sent;
    link.send(bytes);
    QTRY_COMPARE(sent += terminal.read(), bytes);
    QVERIFY(terminal.write(bytes));
    QTRY_COMPARE(joined(received), bytes);
    QVERIFY(failed.isEmpty());
}

void TestLinks::serialTellsWhenTheDeviceGoes()
{
    Terminal terminal;
    LinkSerial link(terminal.name(), LineSettings());
    QSignalSpy failed(&link, &Link::failed);
    link.open();
    QVERIFY(link.isOpen());
    terminal.hangUp();
    QTRY_COMPARE(failed.size(), 1);
    QVERIFY(!link.isOpen());
    link.send("into the void");
    link.open();
    QCOMPARE(failed.size(), 2);
}

void TestLinks::serialTellsWhenThereIsNoDevice()
{
    LinkSerial link(QLatin1String("/nowhere/ttyS0"), LineSettings());
    QSignalSpy failed(&link, &Link::failed);
    link.open();
    QCOMPARE(failed.size(), 1);
    QVERIFY(!link.isOpen());
}

void TestLinks::talksToAPlc_data()
{
    QTest::addColumn<bool>("serial");
    QTest::newRow("tcp") << false;
    QTest::newRow("serial") << true;
}

// A whole session over a real line.
void TestLinks::talksToAPlc()
{
    QFETCH(bool, serial);
    plc::Bus bus;
    bus.add(1).station.memory().setWord('D', 5, 4711);
    plc::ServerSetup setup;
    setup.bus = &bus;
    setup.clock.start();
    plc::TcpServer tcp(setup);
    plc::PtyServer terminal(setup);
    LinkAddress address;
    if (serial) {
        QVERIFY2(terminal.open(QString()), qPrintable(terminal.errorString()));
        address.kind = LinkAddress::Kind::Serial;
        address.device = terminal.device();
    } else {
        QVERIFY2(tcp.listen(QHostAddress::LocalHost, 0), qPrintable(tcp.errorString()));
        address.kind = LinkAddress::Kind::Tcp;
        address.host = QLatin1String("127.0.0.1");
        address.port = tcp.port();
    }
    Driver driver;
    QString error;
    QVERIFY2(driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
    Session session(driver, makeLink(address));
    const Item item{1, *driver.registers().find(QLatin1String("D_W")), 5, 2};
    Monitor *const monitor = session.monitor({item});
    WriteJob *const write = session.write({{item, {7, 8}}});
    session.open();
    QTRY_VERIFY(monitor->isGood());
    QCOMPARE(write->failure(), QString());
    QCOMPARE(monitor->items().first().values.at(1).value, quint16(8));
    QCOMPARE(bus.find(1)->station.memory().word('D', 5).value_or(0), quint16(7));
}

// A line that talks without end leaves time for everything else.
void TestLinks::babbleComesInBits()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    LinkTcp link(QLatin1String("127.0.0.1"), server.serverPort());
    QSignalSpy received(&link, &Link::received);
    link.open();
    QTRY_VERIFY(server.hasPendingConnections());
    const int length = 1000000;
    server.nextPendingConnection()->write(QByteArray(length, 'x'));
    QTRY_COMPARE(static_cast<int>(joined(received).size()), length);
    for (const QList<QVariant> &call : received) {
        QVERIFY(call.first().toByteArray().size() <= kMostBytesAtOnce);
    }
}

QTEST_GUILESS_MAIN(TestLinks)
#include "test_links.moc"
