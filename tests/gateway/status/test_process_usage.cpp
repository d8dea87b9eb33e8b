#include "gateway/status/process_usage.h"

#include <QByteArray>
#include <QFile>
#include <QtTest>

using namespace cnet::gateway;

/** What the system says about this process. */
class TestProcessUsage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsWhatIsUsed();
};

void TestProcessUsage::followsWhatIsUsed()
{
    const ProcessUsage before = processUsage();
    QVERIFY(before.virtualBytes >= before.residentBytes);
    const QByteArray used(64 * 1024 * 1024, 'x');
    QFile file(QLatin1String("/proc/self/stat"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const ProcessUsage after = processUsage();
    QVERIFY(after.residentBytes >= before.residentBytes + used.size() / 2);
    QCOMPARE(after.openFiles, before.openFiles + 1);
    QVERIFY(after.cpuSeconds > 0);
    QVERIFY(after.cpuSeconds >= before.cpuSeconds);
}

QTEST_APPLESS_MAIN(TestProcessUsage)
#include "test_process_usage.moc"
