#include "program.h"

#include <QTemporaryDir>
#include <QtTest>

/** What cnet-panel says to people who have made one of the usual mistakes. */
class TestMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDeviceInUse();
    void specialRelaysAreReadOnly();
};

void TestMessages::aDeviceInUse()
{
    const QTemporaryDir directory;
    PlcProgram plc;
    QVERIFY(plc.serve({QLatin1String("--pty"), directory.filePath(QLatin1String("plc"))}, {}));
    const QStringList arguments{QLatin1String("D_W:1"), QLatin1String("--link"),
                                QLatin1String("serial:") + plc.place()};
    Program first;
    QVERIFY(first.start(
        QLatin1String(CNET_PANEL),
        QStringList{QLatin1String("monitor"), QLatin1String("--format"), QLatin1String("csv")} +
            arguments));
    QVERIFY(
        !first.waitForLine([](const QByteArray &line) { return line.endsWith("good"); }).isEmpty());
    Program second;
    QVERIFY(
        second.start(QLatin1String(CNET_PANEL), QStringList{QLatin1String("read")} + arguments));
    QCOMPARE(second.exitCode(), 3);
    QCOMPARE(second.lines(), QList<QByteArray>());
    QVERIFY2(second.errors().endsWith(": the device is in use by another program\n"),
             second.errors().constData());
    QCOMPARE(second.errors().count('\n'), 1);
}

// The driver takes them for writable, so the PLC is asked.
void TestMessages::specialRelaysAreReadOnly()
{
    PlcProgram plc;
    QVERIFY(plc.serve({QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")}, {}));
    Program panel;
    QVERIFY(panel.start(QLatin1String(CNET_PANEL),
                        {QLatin1String("write"), QLatin1String("F_W:0=1"), QLatin1String("--link"),
                         QLatin1String("tcp:") + plc.place()}));
    QCOMPARE(panel.exitCode(), 1);
    QVERIFY2(panel.lines().value(0).endsWith("; the special relays F can only be read"),
             panel.lines().value(0).constData());
}

QTEST_GUILESS_MAIN(TestMessages)
#include "test_messages.moc"
