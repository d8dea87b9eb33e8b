#include "program.h"

#include <QTime>
#include <QtTest>

/** How much cnet-panel asks a PLC: as little as does, and no faster than it was told. */
class TestPace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsManyWordsInFewFrames();
    void restsBetweenRounds_data();
    void restsBetweenRounds();
    void aRefusalCostsOnlyItself();
    void aReadRefusalCostsOnlyItself();
};

namespace {

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

bool start(Program &panel, const PlcProgram &plc, const QStringList &arguments)
{
    return panel.start(
        QLatin1String(CNET_PANEL),
        arguments + QStringList{QLatin1String("--link"), QLatin1String("tcp:") + plc.place()});
}

QJsonObject stationOf(Program &panel)
{
    return jsonLines(panel.lines()).last();
}

// The time at the beginning of a line of the trace.
QTime timeOf(const QByteArray &line)
{
    return QTime::fromString(QString::fromLatin1(line.left(12)), QLatin1String("HH:mm:ss.zzz"));
}

} // namespace

void TestPace::readsManyWordsInFewFrames()
{
    PlcProgram plc;
    // An answer like the one before it would be made sure of.
    QVERIFY(plc.serve(words("--tcp 127.0.0.1:0"),
                      words("--set D_W:0=1 --set D_W:60=2 --set D_W:120=3 --set D_W:180=4 --set "
                            "D_W:240=5 --set D_W:300=6 --set D_W:360=8 --set D_W:420=9 --set "
                            "D_W:499=7")));
    QStringList arguments = words("read --trace");
    for (int i = 0; i < 500; ++i) {
        arguments.append(QString::fromLatin1("D_W:%1").arg(i));
    }
    Program panel;
    QVERIFY(start(panel, plc, arguments));
    QCOMPARE(panel.exitCode(), 0);
    QCOMPARE(panel.lines().size(), 500);
    QCOMPARE(panel.lines().last(), QByteArray("1/D_W:499  7 0x0007"));
    const QList<QByteArray> trace = panel.errors().trimmed().split('\n');
    QCOMPARE(panel.errors().count(" -> "), 1 + 9); // the greeting, and 500 words by 60
    const int tookMs = timeOf(trace.first()).msecsTo(timeOf(trace.last()));
    QVERIFY2(tookMs < 1000, qPrintable(QString::number(tookMs)));
}

void TestPace::restsBetweenRounds_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");
    QTest::newRow("by default") << "" << 10 << 3 * 11 + 1;
    QTest::newRow("at once") << "--interval 0" << 100 << 1000000;
    QTest::newRow("every second") << "--interval 1000" << 2 << 4 + 1;
}

void TestPace::restsBetweenRounds()
{
    QFETCH(QString, option);
    QFETCH(int, least);
    QFETCH(int, most);
    PlcProgram plc;
    QVERIFY(plc.serve(words("--tcp 127.0.0.1:0"), {}));
    Program panel;
    QVERIFY(start(panel, plc,
                  words("monitor D_W:1 --for 3 --format json") +
                      option.split(QLatin1Char(' '), Qt::SkipEmptyParts)));
    QCOMPARE(panel.exitCode(), 0);
    const int frames = stationOf(panel).value(QLatin1String("frames")).toInt();
    QVERIFY2(frames >= least && frames <= most, qPrintable(QString::number(frames)));
}

// Both words are in one block, of which the model refuses all. Sorted out once, it is not asked
// again.
void TestPace::aRefusalCostsOnlyItself()
{
    PlcProgram plc;
    QVERIFY(plc.serve(words("--tcp 127.0.0.1:0"), words("--model k120s --set D_W:4990=3")));
    int refusals[2] = {0, 0};
    for (int i = 0; i < 2; ++i) {
        Program panel;
        QVERIFY(
            start(panel, plc,
                  words(i == 0 ? "monitor D_W:4990 D_W:5000 --interval 1 --format json --count 5"
                               : "monitor D_W:4990 D_W:5000 --interval 1 --format json --count "
                                 "50")));
        QCOMPARE(panel.exitCode(), 1);
        const QList<QJsonObject> lines = jsonLines(panel.lines());
        const QJsonObject &good = lines.at(lines.size() - 3);
        const QJsonObject &refused = lines.at(lines.size() - 2);
        QCOMPARE(good.value(QLatin1String("values")).toVariant().toList(), QVariantList{3});
        QCOMPARE(good.value(QLatin1String("quality")).toString(), QLatin1String("good"));
        QCOMPARE(refused.value(QLatin1String("quality")).toString(), QLatin1String("refused"));
        QVERIFY(refused.value(QLatin1String("reason")).toString().contains(QLatin1String("1132")));
        QCOMPARE(panel.errors().count("refuses D_W:5000"), 1);
        refusals[i] = stationOf(panel).value(QLatin1String("refusals")).toInt();
        QVERIFY(stationOf(panel).value(QLatin1String("answers")).toInt() >= 4);
    }
    QVERIFY(refusals[0] > 0 && refusals[0] <= 2);
    QCOMPARE(refusals[1], refusals[0]);
}

void TestPace::aReadRefusalCostsOnlyItself()
{
    PlcProgram plc;
    QVERIFY(plc.serve(words("--tcp 127.0.0.1:0"), words("--model k120s --set D_W:4990=3")));
    Program panel;
    QVERIFY(start(panel, plc, words("read D_W:4990 D_W:5000")));
    QCOMPARE(panel.exitCode(), 1);
    QCOMPARE(panel.lines(), (QList<QByteArray>{"1/D_W:4990  3 0x0003", "1/D_W:5000  -"}));
}

QTEST_GUILESS_MAIN(TestPace)
#include "test_pace.moc"
