#include "host/link/link_address.h"

#include <QtTest>

using namespace cnet;

class TestLinkAddress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tcp_data();
    void tcp();
    void serial_data();
    void serial();
    void refuses_data();
    void refuses();
    void characterTime_data();
    void characterTime();
    void line_data();
    void line();
};

void TestLinkAddress::tcp_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<int>("port");
    QTest::newRow("tcp:192.168.0.100:8000") << "192.168.0.100" << 8000;
    QTest::newRow("tcp:plc.local:1") << "plc.local" << 1;
    QTest::newRow("tcp:[::1]:65535") << "::1" << 65535;
}

void TestLinkAddress::tcp()
{
    QString error;
    const auto address = parseLinkAddress(QLatin1String(QTest::currentDataTag()), error);
    QVERIFY2(address.has_value(), qPrintable(error));
    QVERIFY(address->kind == LinkAddress::Kind::Tcp);
    QTEST(address->host, "host");
    QTEST(static_cast<int>(address->port), "port");
}

void TestLinkAddress::serial_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("line");
    QTest::newRow("serial:/dev/ttyS0") << "/dev/ttyS0"
                                       << "38400,8,NONE,1";
    QTest::newRow("serial:/dev/ttyS0,9600") << "/dev/ttyS0"
                                            << "9600,8,NONE,1";
    QTest::newRow("serial:/dev/ttyS0,9600,7") << "/dev/ttyS0"
                                              << "9600,7,NONE,1";
    QTest::newRow("serial:/dev/ttyS0,9600,7,even") << "/dev/ttyS0"
                                                   << "9600,7,EVEN,1";
    QTest::newRow("serial:ttyS0,9600,7,ODD,2") << "ttyS0"
                                               << "9600,7,ODD,2";
}

void TestLinkAddress::serial()
{
    QString error;
    const auto address = parseLinkAddress(QLatin1String(QTest::currentDataTag()), error);
    QVERIFY2(address.has_value(), qPrintable(error));
    QVERIFY(address->kind == LinkAddress::Kind::Serial);
    QTEST(address->device, "device");
    QTEST(address->line.text(), "line");
}

void TestLinkAddress::refuses_data()
{
    QTest::addColumn<QString>("expected");
    const char any[] = "expected tcp:HOST:PORT or serial:DEVICE";
    const char tcp[] = "expected tcp:HOST:PORT";
    const char serial[] = "expected serial:DEVICE[,BAUD,7|8,NONE|EVEN|ODD,1|2]";
    for (const char *text : {"", "sim", "TCP:a:1", "udp:a:1", "/dev/ttyS0"}) {
        QTest::newRow(text) << any;
    }
    for (const char *text : {"tcp:", "tcp:a", "tcp::1", "tcp:a:", "tcp:a:0", "tcp:a:65536",
                             "tcp:a:x", "tcp:[]:1", "tcp:a:-1"}) {
        QTest::newRow(text) << tcp;
    }
    for (const char *text :
         {"serial:", "serial:,9600", "serial:d,", "serial:d,x", "serial:d,0", "serial:d,9600,6",
          "serial:d,9600,8,MARK", "serial:d,9600,8,NONE,3", "serial:d,9600,8,NONE,1,1"}) {
        QTest::newRow(text) << serial;
    }
}

void TestLinkAddress::refuses()
{
    QFETCH(QString, expected);
    QString error;
    QVERIFY(!parseLinkAddress(QLatin1String(QTest::currentDataTag()), error).has_value());
    QVERIFY2(error.contains(expected), qPrintable(error));
}

void TestLinkAddress::characterTime_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<int>("microseconds");
    QTest::newRow("10 bits at 38400") << "serial:d" << 260;
    QTest::newRow("12 bits at 9600") << "serial:d,9600,8,EVEN,2" << 1250;
    QTest::newRow("9 bits at 9000") << "serial:d,9000,7,NONE,1" << 1000;
}

void TestLinkAddress::characterTime()
{
    QFETCH(QString, link);
    QString error;
    const auto address = parseLinkAddress(link, error);
    QVERIFY(address.has_value());
    QTEST(address->line.characterMicroseconds(), "microseconds");
}

void TestLinkAddress::line_data()
{
    QTest::addColumn<QString>("line"); // empty: none
    QTest::newRow("9600") << "9600,8,NONE,1";
    QTest::newRow("9600,7,odd") << "9600,7,ODD,1";
    QTest::newRow("4000000,8,EVEN,2") << "4000000,8,EVEN,2";
    QTest::newRow("") << "";
    QTest::newRow("49") << "";
    QTest::newRow("9600,9") << "";
    QTest::newRow("9600,8,EVEN,3") << "";
    QTest::newRow("9600,8,EVEN,1,") << "";
}

void TestLinkAddress::line()
{
    QFETCH(QString, line);
    QString error;
    const auto settings = parseLineSettings(QLatin1String(QTest::currentDataTag()), error);
    QCOMPARE(settings ? settings->text() : QString(), line);
    QCOMPARE(error.startsWith(QLatin1String("expected BAUD[")), line.isEmpty());
}

QTEST_APPLESS_MAIN(TestLinkAddress)
#include "test_link_address.moc"
