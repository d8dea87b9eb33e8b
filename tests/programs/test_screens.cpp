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
    void showsTheOtherViews();
    void filtersAsOneTypes();
    void showsTrends();
    void showsWhatChanged();
    void aCaptureIsNotForATerminal();
    void theTableStaysWhileACaptureGoesIntoAPipe();

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
    QVERIFY2(terminal.displays("! 2/D_W:5"), terminal.screen().constData());
    QVERIFY(terminal.type("w2/D_W:5=7\r"));
    QVERIFY2(terminal.shows("2/D_W:5=7: not written (no answer); nothing was sent"),
             terminal.screen().constData());
    QVERIFY(terminal.displays("! 2/D_W:5   -             - "));
    QVERIFY2(!terminal.screen().contains("0x0000"), terminal.screen().constData());
    QVERIFY(terminal.type("\x03"));
    QCOMPARE(terminal.wait(), 1);
}

void TestScreens::aLostLink()
{
    PlcProgram plc;
    const QByteArray link = serve(plc);
    Terminal terminal;
    QVERIFY(terminal.start({CNET_PANEL, "monitor", "D_W:5", "D_W:200", "--link", link}));
    QVERIFY2(terminal.displays("  1/D_W:5    6 0x0006"), terminal.screen().constData());
    plc.signal(SIGTERM);
    QVERIFY2(terminal.displays("LINK DOWN: "), terminal.screen().constData());
    QVERIFY(terminal.displays("! 1/D_W:5    6 0x0006"));
    QVERIFY(terminal.displays("line down"));
    QVERIFY(terminal.displays("! 1/D_W:200"));
    QVERIFY(terminal.displays("1        line down"));
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
    QVERIFY2(terminal.displays("  1/D_W:5   6 0x0006"), terminal.screen().constData());
    QVERIFY2(terminal.displays("! 2/D_W:5   -"), terminal.screen().constData());
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
    QVERIFY2(terminal.displays("1/D_W:5000 "), terminal.screen().constData());
    QVERIFY2(terminal.displays("... lines 1 to "), terminal.screen().constData());
    QVERIFY(terminal.type("\x1b[B"));
    QVERIFY2(terminal.displays("... lines 2 to "), terminal.screen().constData());
    QVERIFY(terminal.type("\x1b[6~"));
    QVERIFY(terminal.displays("... lines 20 to "));
    QVERIFY(terminal.type("\x1b[F"));
    QVERIFY(terminal.displays("1/D_W:5499 "));
    QVERIFY(terminal.displays(" to 500 of 500"));
    QVERIFY(terminal.type("\x1b[H"));
    QVERIFY(terminal.displays("... lines 1 to "));
    QVERIFY(terminal.type("\x03"));
    QVERIFY(terminal.wait() >= 0);
}

void TestScreens::showsTheOtherViews()
{
    PlcProgram plc;
    const QByteArray link = serve(plc);
    Terminal terminal;
    terminal.setSize(200, 24);
    QVERIFY(terminal.start({CNET_PANEL, "monitor", "D_W:5*3", "2/D_W:5", "--timeout", "200",
                            "--retries", "1", "--line", "9600", "--link", link}));
    QVERIFY2(terminal.displays("! 2/D_W:5"), terminal.screen().constData());
    QVERIFY(terminal.type("2"));
    QVERIFY2(terminal.displays("of 9600,8,NONE,1"), terminal.screen().constData());
    QVERIFY(terminal.displays("! 2        silent"));
    QVERIFY(terminal.type("v"));
    QVERIFY2(terminal.displays("  1/D_W:5*3"), terminal.screen().constData());
    QVERIFY(!terminal.screen().contains("STATE"));
    QVERIFY(terminal.type("4"));
    QVERIFY2(terminal.displays("station 2 does not answer"), terminal.screen().constData());
    QVERIFY(terminal.type("1"));
    QVERIFY(terminal.displays("  1/D_W:5 "));
    QVERIFY(terminal.type("\x03"));
    QCOMPARE(terminal.wait(), 1);
}

void TestScreens::filtersAsOneTypes()
{
    Terminal terminal;
    QVERIFY(terminal.start({CNET_PANEL, "monitor", "D_W:5000", "D_W:6000", "M_W:3"}));
    QVERIFY(terminal.displays("1/M_W:3 "));
    QVERIFY(terminal.type("/d_"));
    QVERIFY2(terminal.displays("show only (Esc: all): d__"), terminal.screen().constData());
    QVERIFY(terminal.screen().contains("1/D_W:6000") && !terminal.screen().contains("1/M_W:3"));
    QVERIFY(terminal.type("w:6"));
    QVERIFY(terminal.displays("d_w:6_"));
    QVERIFY(!terminal.screen().contains("1/D_W:5000"));
    QVERIFY(terminal.type("\r"));
    QVERIFY(terminal.displays("w: write"));
    QVERIFY(terminal.screen().contains("filter: d_w:6"));
    QVERIFY(terminal.type("\x1b"));
    QVERIFY(terminal.displays("1/M_W:3 "));
    QVERIFY(terminal.type("\x03"));
    QCOMPARE(terminal.wait(), 0);
}

// A timer's current value goes up ten times a second.
void TestScreens::showsTrends()
{
    Terminal terminal;
    terminal.setSize(120, 24);
    QVERIFY(terminal.start({CNET_PANEL, "monitor", "T_W:0"}));
    QVERIFY(terminal.displays("1/T_W:0 "));
    QVERIFY(terminal.type("m"));
    QVERIFY2(terminal.displays("MIN    MAX    LAST 16 s"), terminal.screen().constData());
    QVERIFY(terminal.type("m"));
    QVERIFY(terminal.shows("\x1b["));
    QVERIFY(terminal.type("\x03"));
    QCOMPARE(terminal.wait(), 0);
}

void TestScreens::showsWhatChanged()
{
    PlcProgram plc;
    const QByteArray link = serve(plc);
    Terminal terminal;
    QVERIFY(terminal.start({CNET_PANEL, "monitor", "D_W:5", "--link", link}));
    QVERIFY(terminal.displays("6 0x0006 "));
    QVERIFY(terminal.type("wD_W:5=7\r"));
    QVERIFY2(terminal.displays("7 0x0007* "), terminal.screen().constData());
    QVERIFY(terminal.shown().contains("\x1b[7m7 0x0007*\x1b[m"));
    QVERIFY(terminal.displays("7 0x0007  "));
    QVERIFY(terminal.type("\x03"));
    QCOMPARE(terminal.wait(), 0);
}

void TestScreens::aCaptureIsNotForATerminal()
{
    Terminal terminal;
    QVERIFY(terminal.start({CNET_PANEL, "read", "D_W:5", "--capture", "-"}));
    QVERIFY2(terminal.shows("standard output: it is a terminal; a capture goes into a pipe, for "
                            "example | wireshark -k -i -"),
             terminal.shown().constData());
    const int usage = 2;
    QCOMPARE(terminal.wait(), usage);
}

// Standard error is the terminal then.
void TestScreens::theTableStaysWhileACaptureGoesIntoAPipe()
{
    PlcProgram plc;
    const QByteArray link = serve(plc);
    Terminal terminal;
    QVERIFY(terminal.start(
        {"/bin/sh", "-c",
         CNET_PANEL " monitor D_W:5 --capture - --link " + link + " | cat >/dev/null"}));
    QVERIFY2(terminal.displays("6 0x0006 "), terminal.shown().constData());
    QVERIFY(terminal.type("w1/D_W:5=7\r"));
    QVERIFY2(terminal.shows("1/D_W:5=7: written"), terminal.shown().constData());
    QVERIFY2(terminal.displays("7 0x0007"), terminal.shown().constData());
}

QTEST_GUILESS_MAIN(TestScreens)
#include "test_screens.moc"
