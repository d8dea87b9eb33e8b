#include "host/link/link_serial.h"
#include "simulation/link_sim.h"
#include "host/link/link_tcp.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QtTest>

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

using namespace cnet;

namespace {

const QByteArray kReadWord("\x05"
                           "01RSB08%DW0000001\x04");

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
    void simAnswers();
    void simIsSilentForOthers();
    void simForgetsWhatIsUnderwayWhenClosed();
    void tcpCarriesBytes();
    void tcpTellsWhenTheOtherEndHangsUp();
    void tcpTellsWhenNobodyListens();
    void tcpIsSilentAboutItsOwnEnd();
    void serialCarriesBytes_data();
    void serialCarriesBytes();
    void serialTellsWhenTheDeviceGoes();
    void serialTellsWhenThereIsNoDevice();
};

void TestLinks::makesEachKind_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("sim") << "simulated PLC";
    QTest::newRow("tcp:plc:8000") << "tcp plc:8000";
    QTest::newRow("serial:/dev/ttyS9,9600") << "serial /dev/ttyS9,9600,8,NONE,1";
}

void TestLinks::makesEachKind()
{
    QString error;
    const auto address = parseLinkAddress(QLatin1String(QTest::currentDataTag()), error);
    QVERIFY2(address.has_value(), qPrintable(error));
    const std::unique_ptr<Link> link = makeLink(*address, {1});
    QTEST(link->name(), "name");
    QVERIFY(!link->isOpen());
}

void TestLinks::simAnswers()
{
    LinkSim link({1, 2}, 0);
    QVERIFY(link.bus().find(1)->station.memory().setWord('F', 0, 0x4321));
    QSignalSpy opened(&link, &Link::opened);
    QSignalSpy received(&link, &Link::received);
    link.open();
    QCOMPARE(opened.size(), 1);
    link.send(QByteArray(kReadWord).replace("%DW", "%FW"));
    QVERIFY(received.wait());
    QCOMPARE(joined(received), QByteArray("\x06"
                                          "01RSB01024321\x03"));
}

void TestLinks::simIsSilentForOthers()
{
    LinkSim link({1}, 0);
    QSignalSpy received(&link, &Link::received);
    link.send(kReadWord); // not open yet
    link.open();
    link.send(QByteArray(kReadWord).replace(1, 2, "02"));
    QVERIFY(!received.wait(20));
}

void TestLinks::simForgetsWhatIsUnderwayWhenClosed()
{
    LinkSim link({1}, 0);
    QSignalSpy received(&link, &Link::received);
    link.open();
    link.send(kReadWord);
    link.close();
    QVERIFY(!received.wait(20));
    QVERIFY(!link.isOpen());
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

QTEST_GUILESS_MAIN(TestLinks)
#include "test_links.moc"
