#include "program.h"

#include <QTemporaryDir>
#include <QtTest>

/** cnet-panel write and read, and cnet-plc, as the programs that a user starts. */
class TestWrites : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsBackWhatItWrote_data();
    void readsBackWhatItWrote();
    void saysWhatThePlcHolds_data();
    void saysWhatThePlcHolds();
    void namesTheRefusedBit();
    void aSilentStation_data();
    void aSilentStation();
    void nothingReachesTheLineWhenRefused();
    void nothingIsWrittenWithoutALink_data();
    void nothingIsWrittenWithoutALink();
    void noLink_data();
    void noLink();

private:
    bool serve(PlcProgram &plc, const QString &kind, const char *arguments);
    int run(const QString &arguments, Program &panel);

    QTemporaryDir m_directory;
    QString m_link;
};

namespace {

QStringList words(const QString &text)
{
    return text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QString joined(const QList<QByteArray> &lines)
{
    return QString::fromLatin1(lines.join("; "));
}

} // namespace

bool TestWrites::serve(PlcProgram &plc, const QString &kind, const char *arguments)
{
    const bool isTcp = kind == QLatin1String("tcp");
    const QStringList place =
        isTcp ? words(QLatin1String("--tcp 127.0.0.1:0"))
              : QStringList{QLatin1String("--pty"), m_directory.filePath(QLatin1String("plc"))};
    const bool ok = plc.serve(place, words(QLatin1String(arguments)));
    m_link = (isTcp ? QLatin1String("tcp:") : QLatin1String("serial:")) + plc.place();
    return ok;
}

int TestWrites::run(const QString &arguments, Program &panel)
{
    if (!panel.start(QLatin1String(CNET_PANEL),
                     words(arguments) + QStringList{QLatin1String("--link"), m_link})) {
        return -1;
    }
    return panel.exitCode();
}

void TestWrites::readsBackWhatItWrote_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("plc");
    QTest::addColumn<QString>("assignments");
    QTest::addColumn<QString>("items");
    QTest::addColumn<QString>("values");
    const auto row = [](const char *name, const char *plc, const char *assignments,
                        const char *items, const char *values) {
        for (const char *kind : {"pty", "tcp"}) {
            QTest::addRow("%s, %s", kind, name)
                << QString::fromLatin1(kind) << QString::fromLatin1(plc)
                << QString::fromLatin1(assignments) << QString::fromLatin1(items)
                << QString::fromLatin1(values);
        }
    };
    row("words", "", "D_W:200=1,-2,0xBEEF", "D_W:200*3",
        "1/D_W:200  1 0x0001; 1/D_W:201  65534 0xFFFE; 1/D_W:202  48879 0xBEEF");
    row("bits of two words", "", "M_bit:3.14=1,0,1", "M_bit:3.14*4",
        "1/M_bit:3.14  1; 1/M_bit:3.15  0; 1/M_bit:4.0  1; 1/M_bit:4.1  0");
    row("bits of a data register", "--set D_W:7=0x8001", "D_bit:7.1=1,0,1", "D_W:7",
        "1/D_W:7  32779 0x800B");
    row("contacts", "", "TX:9=1,1", "TX:8*4", "1/TX:8  0; 1/TX:9  1; 1/TX:10  1; 1/TX:11  0");
    row("two stations", "--station 1 --station 2", "D_W:1=5 2/D_W:1=6", "D_W:1 2/D_W:1",
        "1/D_W:1  5 0x0005; 2/D_W:1  6 0x0006");
    row("one place several times, in order", "", "D_W:1=5 D_bit:1.1=1 D_W:2=9 D_bit:1.0=0",
        "D_W:1*2", "1/D_W:1  6 0x0006; 1/D_W:2  9 0x0009");
    row("answers with noise, byte by byte", "--fault noise-before --fault split=1", "D_W:1=5",
        "D_W:1", "1/D_W:1  5 0x0005");
    row("a lost answer", "--fault truncate=0*1", "D_W:1=5 --timeout 300", "D_W:1",
        "1/D_W:1  5 0x0005");
}

void TestWrites::readsBackWhatItWrote()
{
    QFETCH(QString, kind);
    QFETCH(QString, plc);
    QFETCH(QString, assignments);
    QFETCH(QString, items);
    PlcProgram program;
    QVERIFY(serve(program, kind, plc.toLatin1().constData()));
    Program write;
    QCOMPARE(run(QLatin1String("write ") + assignments, write), 0);
    for (const QByteArray &line : write.lines()) {
        QVERIFY2(line.endsWith(": written"), line.constData());
    }
    QCOMPARE(write.errors(), QByteArray());
    Program read;
    QCOMPARE(run(QLatin1String("read ") + items, read), 0);
    QTEST(joined(read.lines()), "values");
    QCOMPARE(read.errors(), QByteArray());
}

void TestWrites::saysWhatThePlcHolds_data()
{
    QTest::addColumn<QString>("plc");
    QTest::addColumn<QString>("assignments");
    QTest::addColumn<QString>("output");
    const char refusal[] = "refused: 1132, no such device, or address outside the device";
    QTest::newRow("a read-only word, and a good one behind it")
        << "--set F_W:0=77"
        << "F_W:0=5 D_W:1=9"
        << QString::fromLatin1("1/F_W:0=5: not written (%1); it holds 77 0x004D; the special "
                               "relays F can only be read; 1/D_W:1=9: written")
               .arg(QLatin1String(refusal));
    QTest::newRow("a read-only bit")
        << "--set F_W:0=8"
        << "F_bit:0.3=0"
        << QString::fromLatin1("1/F_bit:0.3=0: not written (%1); it holds 1; the special relays "
                               "F can only be read")
               .arg(QLatin1String(refusal));
    QTest::newRow("a row of which the model has a part")
        << "--model k120s --set D_W:4999=3"
        << "D_W:4990*9=1 D_W:4999=4,5"
        << QString::fromLatin1("1/D_W:4990*9=1,1,1,1,1,1,1,1,...: written; "
                               "1/D_W:4999*2=4,5: not written (%1); what it holds is not known "
                               "(%1)")
               .arg(QLatin1String(refusal));
    QTest::newRow("a PLC that is silent for a while")
        << "--fault truncate=0*3"
        << "D_W:1=5 --timeout 100"
        << QString::fromLatin1("1/D_W:1=5: not written (no answer); nothing was sent");
}

// As the operator wrote it, and not as the driver counts bits.
void TestWrites::namesTheRefusedBit()
{
    PlcProgram program;
    QVERIFY(serve(program, QLatin1String("tcp"), "--model k120s"));
    Program write;
    QCOMPARE(run(QLatin1String("write M_bit:200.5=1"), write), 1);
    QVERIFY2(write.errors().startsWith("cnet-panel: station 1 refuses M_bit:200.5*1: 1132, "),
             write.errors().constData());
}

void TestWrites::saysWhatThePlcHolds()
{
    QFETCH(QString, plc);
    QFETCH(QString, assignments);
    PlcProgram program;
    QVERIFY(serve(program, QLatin1String("tcp"), plc.toLatin1().constData()));
    Program write;
    QCOMPARE(run(QLatin1String("write ") + assignments, write), 1);
    QTEST(joined(write.lines()), "output");
}

void TestWrites::aSilentStation_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("output");
    QTest::newRow("read") << "read 2/D_W:0*200 2/TX:0*9 1/D_W:5"
                          << "2/D_W:0*200  -; 2/TX:0*9  -; 1/D_W:5  7 0x0007";
    QTest::newRow("read bits") << "read 2/M_bit:0.0*9"
                               << "2/M_bit:0.0*9  -";
    QTest::newRow("write") << "write 2/D_W:0=1 2/D_W:1=1 1/D_W:6=1"
                           << "2/D_W:0=1: not written (no answer); nothing was sent; 2/D_W:1=1: "
                              "not written (no answer); nothing was sent; 1/D_W:6=1: written";
}

void TestWrites::aSilentStation()
{
    QFETCH(QString, command);
    PlcProgram plc;
    QVERIFY(serve(plc, QLatin1String("tcp"), "--set D_W:5=7"));
    Program panel;
    QCOMPARE(run(command + QLatin1String(" --timeout 50"), panel), 1);
    QTEST(joined(panel.lines()), "output");
    QVERIFY(panel.errors().contains("station 2 does not answer (3 attempts)"));
}

void TestWrites::nothingReachesTheLineWhenRefused()
{
    PlcProgram plc;
    QVERIFY(serve(plc, QLatin1String("tcp"), "--trace"));
    Program write;
    QCOMPARE(run(QLatin1String("write D_W:1=5 D_W:9999=1,2"), write), 2);
    QCOMPARE(write.lines(), QList<QByteArray>());
    QVERIFY(write.errors().contains("'1/D_W:9999*2': out of range"));
    Program read;
    QCOMPARE(run(QLatin1String("read D_W:1"), read), 0);
    QCOMPARE(joined(read.lines()), QLatin1String("1/D_W:1  0 0x0000"));
    QVERIFY(!plc.errors().contains("wSB"));
}

void TestWrites::nothingIsWrittenWithoutALink_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("write") << words(QLatin1String("write D_W:1=5"));
    QTest::newRow("write, bad value") << words(QLatin1String("write D_W:1=x"));
    QTest::newRow("recipe write") << words(QLatin1String("recipe write /dev/null"));
}

// It would have ended in the simulated PLC inside the program, and looked like a success.
void TestWrites::nothingIsWrittenWithoutALink()
{
    QFETCH(QStringList, arguments);
    Program panel;
    QVERIFY(panel.start(QLatin1String(CNET_PANEL), arguments));
    QCOMPARE(panel.exitCode(), 2);
    QCOMPARE(panel.lines(), QList<QByteArray>());
    QCOMPARE(panel.errors(),
             QByteArray("cnet-panel: expected --link, where to write: tcp:HOST:PORT, "
                        "serial:DEVICE, or sim for the simulated PLC\n"));
}

void TestWrites::noLink_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("read") << "read D_W:1";
    QTest::newRow("write") << "write D_W:1=1";
}

void TestWrites::noLink()
{
    QFETCH(QString, command);
    m_link = QLatin1String("serial:") + m_directory.filePath(QLatin1String("nothing"));
    Program panel;
    QCOMPARE(run(command, panel), 3);
    QCOMPARE(panel.lines(), QList<QByteArray>());
    QVERIFY(panel.errors().startsWith("cnet-panel: cannot open serial "));
}

QTEST_GUILESS_MAIN(TestWrites)
#include "test_writes.moc"
