#include "gateway/service/service_manager.h"
#include "gateway/support/notify_socket.h"

#include <QtTest>

#include <unistd.h>

using namespace cnet::gateway;

/** The datagrams that a service manager gets. */
class TestServiceManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void tells();
    void doesNothingWithoutAManager_data();
    void doesNothingWithoutAManager();
    void knowsTheWatchdog_data();
    void knowsTheWatchdog();
    void waitsForNobody();

private:
    NotifySocket m_socket;
};

void TestServiceManager::init()
{
    QVERIFY(m_socket.isBound());
    m_socket.heard();
    qputenv("NOTIFY_SOCKET", m_socket.path());
}

void TestServiceManager::tells()
{
    ServiceManager manager;
    QVERIFY(!qEnvironmentVariableIsSet("NOTIFY_SOCKET"));
    manager.tellReady();
    manager.tellAlive();
    manager.tellStatus(QLatin1String("one\ntwo"));
    manager.tellStatus(QLatin1String("one\ntwo"));
    manager.tellStopping();
    QCOMPARE(m_socket.heard(),
             QList<QByteArray>({"READY=1", "WATCHDOG=1", "STATUS=one two", "STOPPING=1"}));
    manager.tellReloading();
    const QList<QByteArray> parts = m_socket.heard().value(0).split('\n');
    QCOMPARE(parts.value(0), QByteArray("RELOADING=1"));
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const QByteArray clock = "MONOTONIC_USEC=";
    QVERIFY(parts.value(1).startsWith(clock));
    const qint64 us = parts.value(1).mid(clock.size()).toLongLong();
    QVERIFY(us > 0 && us / 1000000 >= now.tv_sec - 60 && us / 1000000 <= now.tv_sec);
}

void TestServiceManager::doesNothingWithoutAManager_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("no path") << QByteArray("notify");
    QTest::newRow("nobody there") << QByteArray("/nonexistent/notify");
    QTest::newRow("too long") << '/' + QByteArray(200, 'a');
    QTest::newRow("of another kind") << QByteArray("vsock:2:1234");
}

void TestServiceManager::doesNothingWithoutAManager()
{
    QFETCH(QByteArray, name);
    qputenv("NOTIFY_SOCKET", name);
    ServiceManager manager;
    manager.tellReady();
    manager.tellStopping();
    QVERIFY(m_socket.heard().isEmpty());
}

void TestServiceManager::knowsTheWatchdog_data()
{
    QTest::addColumn<QByteArray>("us");
    QTest::addColumn<QByteArray>("process");
    QTest::addColumn<qint64>("ms"); // 0: none
    const QByteArray own = QByteArray::number(qint64{getpid()});
    QTest::newRow("none") << QByteArray() << QByteArray() << Q_INT64_C(0);
    QTest::newRow("a minute") << QByteArray("60000000") << own << Q_INT64_C(60000);
    QTest::newRow("of whichever process") << QByteArray("5000") << QByteArray() << Q_INT64_C(5);
    QTest::newRow("of another process") << QByteArray("5000") << QByteArray("1") << Q_INT64_C(0);
    QTest::newRow("no number") << QByteArray("often") << own << Q_INT64_C(0);
    QTest::newRow("below zero") << QByteArray("-5000") << own << Q_INT64_C(0);
}

void TestServiceManager::knowsTheWatchdog()
{
    QFETCH(QByteArray, us);
    QFETCH(QByteArray, process);
    QFETCH(qint64, ms);
    qputenv("WATCHDOG_USEC", us);
    qputenv("WATCHDOG_PID", process);
    const ServiceManager manager;
    QCOMPARE(manager.watchdogMs().value_or(0), ms);
    QVERIFY(!qEnvironmentVariableIsSet("WATCHDOG_USEC"));
    QVERIFY(!qEnvironmentVariableIsSet("WATCHDOG_PID"));
}

void TestServiceManager::waitsForNobody()
{
    ServiceManager manager;
    // More than any socket holds.
    for (int i = 0; i < 10000; ++i) {
        manager.tellAlive();
    }
    QVERIFY(m_socket.heard().size() < 10000);
}

QTEST_APPLESS_MAIN(TestServiceManager)
#include "test_service_manager.moc"
