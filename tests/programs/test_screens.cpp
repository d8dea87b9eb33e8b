#include "program.h"
#include "terminal.h"

#include <QtTest>

#include <csignal>

/** The monitor's table on a terminal: what is not good can be seen, on a narrow one and of a long
 * list. */
class TestScreens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWriteToAStationThatIsNotThere();
    void aLostLink();
    void aNarrowTerminal();
    void scrollsALongList();

private:
    QByteArray serve(PlcProgram &plc);
};

QByteArray TestScreens::serve(PlcProgram &plc)
{
    return plc.serve({QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")},
                     {QLatin1String("--set"), QLatin1String("D_W:5=6")})
               ? "tcp:" + plc.place().toLatin1()
               : QByteArray();
}

// 0 is a legal value, so what nobody has ever read is none; what is typed is not what the PLC has.
void TestScreens::aWriteToAStationThatIsNotThere()
{
    PlcProgram plc;
    const QByteArray link = serve(plc);
    Terminal terminal;
    QVERIFY(terminal.start({CNET_PANEL, "monitor", "2/D_W:5*2", "--timeout", "200", "--retries",
                            "1", "--link", link}));
    QVERIFY2(terminal.shows("! 2/D_W:5"), terminal.shown().constData());
    QVERIFY(terminal.type("w2/D_W:5=7\r"));
    QVERIFY2(terminal.shows("2/D_W:5=7: not written (no answer); nothing was sent"),
             terminal.shown().constData());
    QVERIFY(terminal.shows("! 2/D_W:5   -             - "));
    QVERIFY2(!terminal.shown().contains("0x0000"), terminal.shown().constData());
    QVERIFY(terminal.type("\x03"));
    QCOMPARE(terminal.wait(), 1);
}

void TestScreens::aLostLink()
{
    PlcProgram plc;
    const QByteArray link = serve(plc);
    Terminal terminal;
    QVERIFY(terminal.start({CNET_PANEL, "monitor", "D_W:5", "D_W:200", "--link", link}));
    QVERIFY2(terminal.shows("  1/D_W:5    6 0x0006"), terminal.shown().constData());
    plc.signal(SIGTERM);
    QVERIFY2(terminal.shows("LINK DOWN: "), terminal.shown().constData());
    QVERIFY(terminal.shows("! 1/D_W:5    6 0x0006"));
    QVERIFY(terminal.shows("line down"));
    QVERIFY(terminal.shows("! 1/D_W:200"));
    QVERIFY(terminal.shows("1        line down"));
    QVERIFY(terminal.type("\x03"));
    QCOMPARE(terminal.wait(), 1);
}

// The mark stands in front, where nothing is cut away.
void TestScreens::aNarrowTerminal()
{
    PlcProgram plc;
    const QByteArray link = serve(plc);
    Terminal terminal;
    terminal.setSize(40, 24);
    QVERIFY(terminal.start({CNET_PANEL, "monitor", "D_W:5", "2/D_W:5", "--timeout", "200",
                            "--retries", "1", "--link", link}));
    QVERIFY2(terminal.shows("  1/D_W:5   6 0x0006"), terminal.shown().constData());
    QVERIFY2(terminal.shows("! 2/D_W:5   -"), terminal.shown().constData());
    terminal.signal(SIGTERM);
    QCOMPARE(terminal.wait(), 1);
}

void TestScreens::scrollsALongList()
{
    Terminal terminal;
    QList<QByteArray> command{CNET_PANEL, "monitor"};
    for (int i = 0; i < 500; ++i) {
        command.append("D_W:" + QByteArray::number(5000 + i));
    }
    QVERIFY(terminal.start(command));
    QVERIFY2(terminal.shows("1/D_W:5000 "), terminal.shown().constData());
    QVERIFY2(terminal.shows("... lines 1 to "), terminal.shown().constData());
    QVERIFY(terminal.type("\x1b[B"));
    QVERIFY2(terminal.shows("... lines 2 to "), terminal.shown().constData());
    QVERIFY(terminal.type("\x1b[6~"));
    QVERIFY(terminal.shows("... lines 20 to "));
    QVERIFY(terminal.type("\x1b[F"));
    QVERIFY(terminal.shows("1/D_W:5499 "));
    QVERIFY(terminal.shows(" to 500 of 500"));
    QVERIFY(terminal.type("\x1b[H"));
    QVERIFY(terminal.shows("... lines 1 to "));
    QVERIFY(terminal.type("\x03"));
    QVERIFY(terminal.wait() >= 0);
}

QTEST_GUILESS_MAIN(TestScreens)
#include "test_screens.moc"
