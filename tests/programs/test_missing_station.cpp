#include "program.h"

#include <QtTest>

/** A station that is not there costs the others next to nothing. */
class TestMissingStation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void othersKeepTheirPace();
};

namespace {

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

int changesOf(int station, Program &panel)
{
    int changes = 0;
    for (const QJsonObject &line : jsonLines(panel.lines())) {
        changes += line.value(QLatin1String("event")).toString() == QLatin1String("change") &&
                           line.value(QLatin1String("station")).toInt() == station
                       ? 1
                       : 0;
    }
    return changes;
}

} // namespace

// Both at the same time, so that a busy machine is as busy for the one as for the other. The value
// counts on faster than it is read: each reading is a change.
void TestMissingStation::othersKeepTheirPace()
{
    PlcProgram plcs[2];
    Program panels[2];
    const char *const items[] = {"D_W:100 3/D_W:100", "D_W:100 2/D_W:100 3/D_W:100"};
    for (int i = 0; i < 2; ++i) {
        QVERIFY(plcs[i].serve(words("--tcp 127.0.0.1:0"),
                              words("--station 1 --station 3 --ramp 1/D_W:100=0..65535@1")));
        QVERIFY(panels[i].start(
            QLatin1String(CNET_PANEL),
            words("monitor --format json --for 10") + words(items[i]) +
                QStringList{QLatin1String("--link"), QLatin1String("tcp:") + plcs[i].place()}));
    }
    QCOMPARE(panels[0].exitCode(), 0);
    QCOMPARE(panels[1].exitCode(), 1);
    const int alone = changesOf(1, panels[0]);
    const int beside = changesOf(1, panels[1]);
    QVERIFY2(alone > 20, qPrintable(QString::number(alone)));
    QVERIFY2(beside >= alone * 0.95, qPrintable(QString::fromLatin1("%1 updates, %2 without the "
                                                                    "missing station")
                                                    .arg(beside)
                                                    .arg(alone)));
    QCOMPARE(panels[1].errors().count("station 2 does not answer"), 1);
}

QTEST_GUILESS_MAIN(TestMissingStation)
#include "test_missing_station.moc"
