#include "view/connect/line.h"
#include "view/connect/line_test.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr int kPatienceMs = 60000;

Connection tcp(quint16 port)
{
    Connection connection;
    connection.kind = Connection::Kind::Tcp;
    connection.address.host = QLatin1String("127.0.0.1");
    connection.address.port = port;
    connection.timeoutMs = 20;
    return connection;
}

} // namespace

/** The line of a window. */
class TestLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void doesWithoutADriver();
    void readsTheSimulator();
    void beginsAnewWithEachConnection();
    void saysWhatIsWrong();
    void findsTheStationsOfATest();
    void saysThatNothingAnswersATest();
};

// As where it is not installed: the window says so, and goes on.
void TestLine::doesWithoutADriver()
{
    Line line;
    QSignalSpy began(&line, &Line::sessionBegan);
    line.open(Connection());
    QCOMPARE(began.count(), 0);
    QVERIFY(line.session() == nullptr && !line.isOpen());
}

void TestLine::readsTheSimulator()
{
    Line line;
    QCOMPARE(line.prepare(), QString());
    QVERIFY(!line.isOpen());
    QCOMPARE(line.stateText(), QLatin1String("not connected"));
    Connection fast;
    fast.address.line.baud = 0; // as fast as it goes
    line.open(fast);
    QVERIFY(line.session() != nullptr && line.simulator() != nullptr);
    QTRY_VERIFY_WITH_TIMEOUT(line.isOpen(), kPatienceMs);
    QCOMPARE(line.stateText(), QLatin1String("connected"));
    QTRY_VERIFY_WITH_TIMEOUT(line.session()->state() == Session::State::Open, kPatienceMs);
    line.close();
    QVERIFY(line.session() == nullptr && line.simulator() == nullptr);
    line.close(); // harmless
}

void TestLine::beginsAnewWithEachConnection()
{
    Line line;
    QCOMPARE(line.prepare(), QString());
    QSignalSpy began(&line, &Line::sessionBegan);
    QSignalSpy ending(&line, &Line::sessionEnding);
    line.open(Connection());
    line.open(Connection());
    QCOMPARE(began.count(), 2);
    QCOMPARE(ending.count(), 1);
}

void TestLine::saysWhatIsWrong()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    server.close();
    Line line;
    QCOMPARE(line.prepare(), QString());
    line.open(tcp(port));
    QTRY_VERIFY_WITH_TIMEOUT(line.stateText().startsWith(QLatin1String("cannot connect: ")),
                             kPatienceMs);
    QVERIFY(line.simulator() == nullptr);
    // It goes on trying: the PLC may be switched on later.
    QVERIFY(server.listen(QHostAddress::LocalHost, port));
    QTRY_VERIFY_WITH_TIMEOUT(line.isOpen(), kPatienceMs);
    while (QTcpSocket *socket = server.nextPendingConnection()) {
        socket->abort();
    }
    server.close();
    QTRY_VERIFY_WITH_TIMEOUT(line.stateText().startsWith(QLatin1String("lost: ")), kPatienceMs);
}

void TestLine::findsTheStationsOfATest()
{
    LineTest test;
    QSignalSpy ended(&test, &LineTest::ended);
    Connection fast;
    fast.station = 7;
    fast.timeoutMs = 20;
    fast.address.line.baud = 0;
    test.start(fast);
    QVERIFY(test.isRunning());
    QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, kPatienceMs);
    QVERIFY2(ended.at(0).at(0).toString().startsWith(QLatin1String("Answered: station 7 (")),
             qPrintable(ended.at(0).at(0).toString()));
    QVERIFY(ended.at(0).at(1).toBool());
    QVERIFY(!test.isRunning());
}

void TestLine::saysThatNothingAnswersATest()
{
    QTcpServer server; // takes connections, and says nothing
    QVERIFY(server.listen(QHostAddress::LocalHost));
    LineTest test;
    QSignalSpy ended(&test, &LineTest::ended);
    test.start(tcp(server.serverPort()));
    QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, kPatienceMs);
    QCOMPARE(ended.at(0).at(0).toString(), QLatin1String("No station has answered."));
    // Ended early, it tells of the end, too.
    test.start(tcp(server.serverPort()));
    test.cancel();
    QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 2, kPatienceMs);
    QVERIFY(!ended.at(1).at(1).toBool());
}

QTEST_GUILESS_MAIN(TestLine)
#include "test_line.moc"
