#include "program.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <csignal>

/** cnet-panel at a line that talks without end: its memory stays what it was, and it can be ended.
 */
class TestBabblingLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEnded_data();
    void isEnded();
};

namespace {

const int kPatienceMs = 30000;
const qint64 kMegabyte = 1048576;

// As much as goes. @return bytes, negative when the line is closed
ssize_t push(const QTcpSocket &line, const QByteArray &bytes)
{
    constexpr int kPauseMs = 10;
    pollfd ready{static_cast<int>(line.socketDescriptor()), POLLOUT, 0};
    poll(&ready, 1, kPauseMs);
    const ssize_t sent = send(ready.fd, bytes.constData(), static_cast<size_t>(bytes.size()),
                              MSG_DONTWAIT | MSG_NOSIGNAL);
    return sent < 0 && errno == EAGAIN ? 0 : sent;
}

} // namespace

void TestBabblingLine::isEnded_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("babble");
    QTest::newRow("monitor, zeros") << QByteArray("monitor") << QByteArray(65536, '\0');
    QTest::newRow("monitor, ACK") << QByteArray("monitor") << QByteArray(65536, '\x06');
    QTest::newRow("monitor, NAK") << QByteArray("monitor") << QByteArray(65536, '\x15');
    QTest::newRow("monitor, ETX") << QByteArray("monitor") << QByteArray(65536, '\x03');
    QTest::newRow("read, zeros") << QByteArray("read") << QByteArray(65536, '\0');
}

void TestBabblingLine::isEnded()
{
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, babble);
    constexpr int kBabbleMs = 1000; // beyond the first time-outs
    constexpr qint64 kMostGrowth = 16 * kMegabyte;
    QTcpServer plc;
    QVERIFY(plc.listen(QHostAddress(QHostAddress::LocalHost), 0));
    Program panel;
    // Memory that is given back is not kept for the sanitizer's sake.
    panel.setVariable("ASAN_OPTIONS", "quarantine_size_mb=0:thread_local_quarantine_size_kb=0");
    QVERIFY(
        panel.startBytes(CNET_PANEL, {command, "D_W:1", "--timeout", "100", "--link",
                                      "tcp:127.0.0.1:" + QByteArray::number(plc.serverPort())}));
    QVERIFY(plc.waitForNewConnection(kPatienceMs));
    const QTcpSocket *const line = plc.nextPendingConnection();
    const qint64 before = panel.memory();
    qint64 most = before;
    qint64 sent = 0;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < kBabbleMs) {
        const ssize_t count = push(*line, babble);
        // A busy computer may come here late, when the panel has given up.
        QVERIFY(count >= 0 || clock.elapsed() > kBabbleMs);
        // Not each time: it takes longer than the panel needs to come after.
        if (sent / kMegabyte != (sent + count) / kMegabyte) {
            most = std::max(most, panel.memory());
        }
        sent += std::max<ssize_t>(count, 0);
    }
    QVERIFY2(before > 0 && most - before < kMostGrowth,
             qPrintable(QString::fromLatin1("grew by %1 bytes").arg(most - before)));
    // The line does not fall silent for it, and the panel does not have to hear it out: beside what
    // is under way, it takes next to nothing any more.
    constexpr qint64 kMostAfter = 24 * kMegabyte;
    panel.signal(SIGTERM);
    qint64 after = 0;
    for (ssize_t count = 0; count >= 0 && after < kMostAfter; after += count) {
        count = push(*line, babble);
    }
    QVERIFY2(after < kMostAfter, "it went on and on");
    QCOMPARE(panel.exitCode(), 1);
}

QTEST_GUILESS_MAIN(TestBabblingLine)
#include "test_babbling_line.moc"
