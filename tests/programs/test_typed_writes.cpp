#include "terminal.h"

#include <QtTest>

#include <csignal>

/** Writes that a user types into the monitor's terminal. */
class TestTypedWrites : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesWhatIsTyped();
    void restoresTheTerminal_data();
    void restoresTheTerminal();
};

void TestTypedWrites::writesWhatIsTyped()
{
    Terminal terminal;
    QVERIFY(terminal.start({CNET_PANEL, "monitor", "D_W:5000", "F_W:100"}));
    QVERIFY2(terminal.displays("w: write"), terminal.shown().constData());
    QVERIFY(!terminal.isAsUsual());
    QVERIFY(terminal.type("w"));
    QVERIFY(terminal.displays("write ITEM=VALUE (Esc leaves): _"));
    QVERIFY(terminal.type("D_W:10000=1\r"));
    QVERIFY(terminal.shows("an address of D_W is a number from 0 to 9999"));
    QVERIFY(terminal.type("\x15"
                          "D_W:5000=0x1234\r"));
    QVERIFY(terminal.shows("1/D_W:5000=4660: written"));
    QVERIFY(terminal.displays("4660 0x1234"));
    QVERIFY(terminal.type("wF_W:100=1\r"));
    QVERIFY(terminal.shows("1/F_W:100=1: not written (refused: 1132"));
    QVERIFY(terminal.displays("1/F_W:100   0 0x0000"));
    QVERIFY(terminal.type("\x03"));
    QCOMPARE(terminal.wait(), 0);
}

void TestTypedWrites::restoresTheTerminal_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<QByteArray>("keys"); // typed before
    QTest::newRow("SIGINT") << SIGINT << QByteArray();
    QTest::newRow("SIGTERM") << SIGTERM << QByteArray();
    QTest::newRow("SIGTERM in the middle of a line") << SIGTERM << QByteArray("wD_W:");
    QTest::newRow("Ctrl-C in the middle of a line") << 0 << QByteArray("wD_W:\x03");
}

void TestTypedWrites::restoresTheTerminal()
{
    QFETCH(int, signal);
    QFETCH(QByteArray, keys);
    Terminal terminal;
    QVERIFY(terminal.start({CNET_PANEL, "monitor", "D_W:5000", "F_W:100"}));
    QVERIFY2(terminal.displays("w: write"), terminal.shown().constData());
    QVERIFY(terminal.displays("0 0x0000"));
    if (!keys.isEmpty()) {
        QVERIFY(terminal.type(keys));
    }
    if (signal != 0) {
        QVERIFY(keys.isEmpty() || terminal.displays("D_W:_"));
        terminal.signal(signal);
    }
    QVERIFY(terminal.shows("\x1b[?25h")); // the cursor is back
    QCOMPARE(terminal.wait(), 0);
    QVERIFY(terminal.isAsUsual());
}

QTEST_GUILESS_MAIN(TestTypedWrites)
#include "test_typed_writes.moc"
