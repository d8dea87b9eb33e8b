#include "gateway/service/listening.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/socket.h>
#include <thread>
#include <unistd.h>

using namespace cnet::gateway;

/** Where a gateway listens, and asking it there. */
class TestListening : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_directory = std::make_unique<QTemporaryDir>(); }
    void findsAFreePort_data();
    void findsAFreePort();
    void saysWhoHasThePort();
    void replacesWhatWasLeft();
    void leavesAnotherGatewayAlone();
    void listensInDeepFolders();
    void asks_data();
    void asks();
    void saysThatNobodyIsThere();

private:
    QString folder() const { return m_directory->path(); }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_error;
};

void TestListening::findsAFreePort_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("version 4") << QString::fromLatin1("127.0.0.1:0");
    QTest::newRow("version 6") << QString::fromLatin1("[::1]:0");
}

void TestListening::findsAFreePort()
{
    QFETCH(QString, address);
    const auto socket = listenOnLoopback(*parseListenAddress(address), m_error);
    if (!socket && m_error.contains(QLatin1String("Cannot assign"))) {
        QSKIP("this machine has no such address");
    }
    QVERIFY2(socket.has_value(), qPrintable(m_error));
    QVERIFY(socket->port > 0);
    close(socket->descriptor);
}

void TestListening::saysWhoHasThePort()
{
    const auto socket =
        listenOnLoopback(*parseListenAddress(QLatin1String("127.0.0.1:0")), m_error);
    QVERIFY(socket.has_value());
    const QString taken = QString::fromLatin1("127.0.0.1:%1").arg(socket->port);
    QVERIFY(!listenOnLoopback(*parseListenAddress(taken), m_error));
    QCOMPARE(m_error,
             QString::fromLatin1("cannot listen at %1: Address already in use").arg(taken));
    close(socket->descriptor);
}

void TestListening::replacesWhatWasLeft()
{
    auto socket = listenInFolder(folder(), m_error);
    QVERIFY2(socket.has_value(), qPrintable(m_error));
    close(socket->descriptor); // as by a kill: the file stays
    QVERIFY(QFileInfo::exists(folder() + QLatin1Char('/') + listeningFile()));
    socket = listenInFolder(folder(), m_error);
    QVERIFY2(socket.has_value(), qPrintable(m_error));
    close(socket->descriptor);
    stopListeningInFolder(folder());
    QVERIFY(!QFileInfo::exists(folder() + QLatin1Char('/') + listeningFile()));
}

void TestListening::leavesAnotherGatewayAlone()
{
    const auto socket = listenInFolder(folder(), m_error);
    QVERIFY(socket.has_value());
    QVERIFY(!listenInFolder(folder(), m_error));
    QCOMPARE(m_error, QLatin1String("another gateway tells of itself in ") + folder());
    close(socket->descriptor);
    QVERIFY(!listenInFolder(QLatin1String("/nonexistent"), m_error));
    QVERIFY(m_error.startsWith(QLatin1String("cannot listen in /nonexistent: ")));
}

void TestListening::listensInDeepFolders()
{
    const QString deep = folder() + QLatin1Char('/') + QString(150, QLatin1Char('a'));
    QVERIFY(QDir().mkpath(deep));
    const auto socket = listenInFolder(deep, m_error);
    QVERIFY2(socket.has_value(), qPrintable(m_error));
    close(socket->descriptor);
}

void TestListening::asks_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QByteArray>("body"); // empty: it cannot be used
    const auto row = [](const char *name, const char *answer, const char *body) {
        QTest::newRow(name) << QByteArray(answer) << QByteArray(body);
    };
    row("good", "HTTP/1.1 200 OK\r\nA: b\r\n\r\n{}\n", "{}\n");
    row("older", "HTTP/1.0 200 OK\r\n\r\n{}\n", "{}\n");
    row("not yet", "HTTP/1.1 503 Service Unavailable\r\n\r\nThe gateway begins.\n", "");
    row("cut off", "HTTP/1.1 200 OK\r\nA: b\r\n", "");
    row("nothing", "", "");
    row("something else", "SSH-2.0-x 200\r\n\r\n", "");
}

void TestListening::asks()
{
    QFETCH(QByteArray, answer);
    QFETCH(QByteArray, body);
    const auto socket = listenInFolder(folder(), m_error);
    QVERIFY(socket.has_value());
    QByteArray request;
    std::thread server([&] {
        const int connection = accept(socket->descriptor, nullptr, nullptr);
        char part[1000];
        const ssize_t count = recv(connection, part, sizeof part, 0);
        request = QByteArray(part, static_cast<int>(qMax<ssize_t>(0, count)));
        send(connection, answer.constData(), static_cast<size_t>(answer.size()), MSG_NOSIGNAL);
        close(connection);
    });
    const auto got = askInFolder(folder(), "/status", m_error);
    server.join();
    close(socket->descriptor);
    QVERIFY(request.startsWith("GET /status HTTP/1.0\r\n"));
    QCOMPARE(got.has_value(), !body.isEmpty());
    QCOMPARE(got.value_or(QByteArray()), body);
}

void TestListening::saysThatNobodyIsThere()
{
    QVERIFY(!askInFolder(folder(), "/status", m_error));
    QCOMPARE(m_error, QLatin1String("no gateway runs in ") + folder());
    QVERIFY(!askInFolder(QLatin1String("/nonexistent"), "/status", m_error));
    QCOMPARE(m_error, QLatin1String("no gateway runs in /nonexistent"));
    close(listenInFolder(folder(), m_error)->descriptor);
    QVERIFY(!askInFolder(folder(), "/status", m_error));
    QCOMPARE(m_error, QLatin1String("no gateway runs in ") + folder());
}

QTEST_APPLESS_MAIN(TestListening)
#include "test_listening.moc"
