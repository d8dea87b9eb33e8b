#include "program.h"

#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

// A real serial server between the panel and the PLC: a TCP port on one side, a serial device on
// the other. It holds bytes of its own, so late answers come later still.
class TestSerialServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void valuesStayAtTheirAddresses_data();
    void valuesStayAtTheirAddresses();

private:
    bool serve(const QString &device, QString &link);

    QTemporaryDir m_directory;
    QString m_program;
    Program m_server;
};

void TestSerialServer::initTestCase()
{
    m_program = QStandardPaths::findExecutable(
        QLatin1String("ser2net"), {QLatin1String("/usr/sbin"), QLatin1String("/usr/bin")});
    QVERIFY2(!m_program.isEmpty(), "ser2net is missing: script/bootstrap --test installs it");
}

bool TestSerialServer::serve(const QString &device, QString &link)
{
    QTcpServer probe;
    if (!probe.listen(QHostAddress::LocalHost)) {
        return false;
    }
    const quint16 port = probe.serverPort();
    probe.close();
    const QString path = m_directory.filePath(QLatin1String("ser2net.yaml"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        return false;
    }
    file.write(QString::fromLatin1("connection: &plc\n"
                                   "  accepter: tcp,127.0.0.1,%1\n"
                                   "  connector: serialdev,%2,38400n81,local\n")
                   .arg(QString::number(port), device)
                   .toLocal8Bit());
    file.close();
    link = QString::fromLatin1("tcp:127.0.0.1:%1").arg(port);
    if (!m_server.start(m_program, {QLatin1String("-n"), QLatin1String("-c"), path})) {
        return false;
    }
    return QTest::qWaitFor([port] {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port);
        return socket.waitForConnected(100);
    });
}

void TestSerialServer::valuesStayAtTheirAddresses_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("seconds");
    QTest::newRow("in time") << "delay=1"
                             << "3";
    QTest::newRow("later than the time-out") << "delay=1600"
                                             << "14";
    QTest::newRow("late at times") << "delay=50..1200@30%"
                                   << "8";
}

void TestSerialServer::valuesStayAtTheirAddresses()
{
    QFETCH(QString, fault);
    QFETCH(QString, seconds);
    const QString device = m_directory.filePath(QLatin1String("plc"));
    PlcProgram plc;
    QVERIFY(plc.serve({QLatin1String("--pty"), device},
                      {QLatin1String("--set"), QLatin1String("D_W:100=111"), QLatin1String("--set"),
                       QLatin1String("D_W:300=333"), QLatin1String("--set"),
                       QLatin1String("D_W:500=555"), QLatin1String("--fault"), fault}));
    QString link;
    QVERIFY(serve(device, link));
    Program panel;
    QVERIFY(panel.start(QLatin1String(CNET_PANEL),
                        {QLatin1String("monitor"), QLatin1String("--format"), QLatin1String("csv"),
                         QLatin1String("--for"), seconds, QLatin1String("--link"), link,
                         QLatin1String("D_W:100"), QLatin1String("D_W:300"),
                         QLatin1String("D_W:500")}));
    panel.exitCode();
    m_server.signal(SIGTERM);
    m_server.exitCode();
    int values = 0;
    for (const QByteArray &line : panel.lines()) {
        const QList<QByteArray> fields = line.split(',');
        if (fields.value(2) == "D_W" && !fields.value(5).isEmpty()) {
            ++values;
            QCOMPARE(fields.at(5).toInt(), fields.at(3).toInt() / 100 * 111);
        }
    }
    QVERIFY2(values >= 3, panel.errors().constData());
}

QTEST_GUILESS_MAIN(TestSerialServer)

#include "test_serial_server.moc"
