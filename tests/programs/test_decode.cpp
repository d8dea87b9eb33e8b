#include "program.h"

#include <QTemporaryFile>
#include <QtTest>

/** cnet-panel decode as a program: where its frames come from, and how it ends. */
class TestDecode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void judges_data();
    void judges();
    void readsATrace();
};

namespace {

const int kUsage = 2;
const QByteArray kRead("<ENQ>01rSB08%DW0010002<EOT>EC");

} // namespace

void TestDecode::judges_data()
{
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("firstLine");
    const auto row = [](const char *name, const QList<QByteArray> &arguments, int exitCode,
                        const QByteArray &firstLine) {
        QTest::newRow(name) << arguments << exitCode << firstLine;
    };
    row("names", {kRead}, 0, "request: station 1, read 1/D_W:100*2");
    row("escapes", {"\\x0601wSB\\x0376"}, 0, "answer: station 1, wSB done");
    row("hexadecimal in several arguments",
        {"15", "30", "31", "72", "53", "42", "31", "31", "33", "32", "03", "34", "37"}, 0,
        "refusal: station 1, rSB refused: 1132, no such device, or address outside the device");
    row("wrong check", {"<ENQ>01rSB08%DW0010002<EOT>ED"}, kUsage,
        "request: station 1, read 1/D_W:100*2; wrong check at byte 20: expected EC");
    row("zero bytes", {"05 00 00"}, kUsage,
        "request: no station; malformed at byte 1: the station is missing");
    row("something else", {"hello\x1b[2J"}, kUsage,
        "no frame: a frame begins with ENQ (05), ACK (06) or NAK (15)");
    row("no file of this name", {"/nowhere/trace.log"}, kUsage,
        "no frame: a frame begins with ENQ (05), ACK (06) or NAK (15)");
}

void TestDecode::judges()
{
    QFETCH(QList<QByteArray>, arguments);
    QFETCH(QByteArray, firstLine);
    Program panel;
    QVERIFY(panel.startBytes(CNET_PANEL, QList<QByteArray>{"decode"} + arguments));
    QTEST(panel.exitCode(), "exitCode");
    QCOMPARE(panel.lines().value(0), firstLine);
    QCOMPARE(panel.errors(), QByteArray());
    for (const QByteArray &line : panel.lines()) {
        QVERIFY2(!line.contains('\x1b'), line.toPercentEncoding().constData());
    }
}

// What the program itself shows of its frames, it also explains.
void TestDecode::readsATrace()
{
    Program reader;
    QVERIFY(reader.start(QLatin1String(CNET_PANEL),
                         {QLatin1String("read"), QLatin1String("--trace"),
                          QLatin1String("D_W:100*2"), QLatin1String("M_W:5")}));
    QCOMPARE(reader.exitCode(), 0);
    QTemporaryFile trace;
    QVERIFY(trace.open() && trace.write(reader.errors()) > 0 && trace.flush());
    Program panel;
    QVERIFY(
        panel.start(QLatin1String(CNET_PANEL),
                    {QLatin1String("decode"), QLatin1String("--format=json"), trace.fileName()}));
    QCOMPARE(panel.exitCode(), 0);
    QStringList answers;
    for (const QJsonObject &frame : jsonLines(panel.lines())) {
        if (frame.value(QLatin1String("direction")).toString() == QLatin1String("answer")) {
            answers.append(frame.value(QLatin1String("summary")).toString());
        }
    }
    const QString all = answers.join(QLatin1Char('\n'));
    QVERIFY2(all.contains(QLatin1String("1/D_W:100*2 = 100 0x0064, 101 0x0065")), qPrintable(all));
    QVERIFY2(all.contains(QLatin1String("1/M_W:5 = 5 0x0005")), qPrintable(all));
}

QTEST_GUILESS_MAIN(TestDecode)
#include "test_decode.moc"
