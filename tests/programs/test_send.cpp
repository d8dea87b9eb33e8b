#include "program.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

/** cnet-panel send at a simulated PLC, on TCP and on a pseudo-terminal. */
class TestSend : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void explainsTheAnswer_data();
    void explainsTheAnswer();
    void sendsNoWriteUnasked();
    void saysThatNothingCame();
    void saysThatTheLinkIsLost();

private:
    int send(const QList<QByteArray> &arguments, const QByteArray &link);

    QTemporaryDir m_directory;
    PlcProgram m_tcp;
    PlcProgram m_pty;
    std::unique_ptr<Program> m_panel; ///< the last one
};

namespace {

const int kDeviceFailed = 1;
const int kUsage = 2;

} // namespace

void TestSend::initTestCase()
{
    QVERIFY(m_tcp.serve({QLatin1String("--tcp"), QLatin1String("0")},
                        {QLatin1String("--set"), QLatin1String("D_W:100=4660")}));
    QVERIFY(m_pty.serve({QLatin1String("--pty"), m_directory.filePath(QLatin1String("plc"))},
                        {QLatin1String("--set"), QLatin1String("D_W:100=4660")}));
}

int TestSend::send(const QList<QByteArray> &arguments, const QByteArray &link)
{
    const QByteArray place = link == "tcp" ? "tcp:" + m_tcp.place().toLocal8Bit()
                                           : "serial:" + m_pty.place().toLocal8Bit();
    m_panel = std::make_unique<Program>();
    return m_panel->startBytes(CNET_PANEL, QList<QByteArray>{"send", "--link", place} + arguments)
               ? m_panel->exitCode()
               : -1;
}

void TestSend::explainsTheAnswer_data()
{
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("says");
    const auto row = [](const char *name, const QList<QByteArray> &arguments, int exitCode,
                        const char *says) {
        QTest::newRow(name) << arguments << exitCode << QByteArray(says);
    };
    row("completed", {"--bcc", "01rSB08%DW0010001"}, 0,
        " ms answer: station 1, rSB answered: 1/D_W:100 = 4660 0x1234");
    row("whole", {"<ENQ>01rSB08%DW0010001<EOT>EB"}, 0,
        " ms answer: station 1, rSB answered: 1/D_W:100 = 4660 0x1234");
    row("hexadecimal",
        {"--bcc", "05", "30", "31", "52", "53", "53", "30", "31", "30", "35", "25", "44", "57",
         "31", "30", "04"},
        0, " ms answer: station 1, RSS answered: 1/D_W:10 = ");
    row("refused", {"--bcc", "01rSB08%DW9999901"}, kDeviceFailed,
        " ms refusal: station 1, rSB refused: 1132, no such device, or address outside the device");
    row("malformed", {"--bcc", "01rSB08%DW00100ZZ"}, kDeviceFailed, " ms refusal: station 1, rSB");
}

void TestSend::explainsTheAnswer()
{
    QFETCH(QList<QByteArray>, arguments);
    QFETCH(QByteArray, says);
    for (const QByteArray link : {"tcp", "pty"}) {
        QTEST(send(arguments, link), "exitCode");
        QVERIFY(m_panel->lines().value(0).startsWith("sent request: station 1, "));
        QByteArray all;
        for (const QByteArray &line : m_panel->lines()) {
            all += line + '\n';
        }
        QVERIFY2(all.contains(says), all.constData());
        QCOMPARE(m_panel->errors(), QByteArray());
    }
}

void TestSend::sendsNoWriteUnasked()
{
    const QList<QByteArray> write{"--bcc", "01wSB08%DW00200010007"};
    QCOMPARE(send(write, "tcp"), kUsage);
    QCOMPARE(m_panel->errors(), QByteArray("cnet-panel: the frame writes; --yes sends it\n"));
    QCOMPARE(send(QList<QByteArray>{"--yes", "--format=json"} + write, "tcp"), 0);
    const QList<QJsonObject> lines = jsonLines(m_panel->lines());
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(1).value(QLatin1String("event")).toString(), QLatin1String("answer"));
    QCOMPARE(lines.at(1).value(QLatin1String("summary")).toString(),
             QLatin1String("station 1, wSB done"));
    QVERIFY(lines.at(1).value(QLatin1String("took_ms")).toDouble() > 0);
}

// Of a wrong block check a PLC takes no notice.
void TestSend::saysThatNothingCame()
{
    QCOMPARE(send({"--timeout", "100", "--format=json", "<ENQ>01rSB08%DW0010001<EOT>EC"}, "pty"),
             kDeviceFailed);
    QVERIFY2(m_panel->errors().startsWith("cnet-panel: no answer within 1"), m_panel->errors());
    const QList<QJsonObject> lines = jsonLines(m_panel->lines());
    QCOMPARE(lines.at(0).value(QLatin1String("verdict")).toString(), QLatin1String("wrong check"));
    QCOMPARE(lines.at(1).value(QLatin1String("event")).toString(), QLatin1String("no answer"));
}

void TestSend::saysThatTheLinkIsLost()
{
    QTcpServer plc;
    QVERIFY(plc.listen(QHostAddress(QHostAddress::LocalHost), 0));
    const QByteArray place = "tcp:127.0.0.1:" + QByteArray::number(plc.serverPort());
    Program panel;
    QVERIFY(panel.startBytes(
        CNET_PANEL, {"send", "--link", place, "--timeout", "60000", "--bcc", "01rSB08%DW0010001"}));
    QVERIFY(plc.waitForNewConnection(30000));
    QTcpSocket *const socket = plc.nextPendingConnection();
    QVERIFY(socket->waitForReadyRead(30000));
    socket->close();
    QCOMPARE(panel.exitCode(), kDeviceFailed);
    QVERIFY2(panel.errors().contains(" is lost: "), panel.errors());
    Program nobody;
    QVERIFY(nobody.startBytes(CNET_PANEL,
                              {"send", "--link", "tcp:127.0.0.1:1", "--bcc", "01rSB08%DW0010001"}));
    QCOMPARE(nobody.exitCode(), 3);
    QVERIFY2(nobody.errors().contains("cannot open tcp 127.0.0.1:1: "), nobody.errors());
}

QTEST_GUILESS_MAIN(TestSend)
#include "test_send.moc"
