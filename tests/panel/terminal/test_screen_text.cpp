#include "host/support/test_registers.h"

#include "panel/terminal/screen_text.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestScreenText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ages_data();
    void ages();
    void showsItems();
    void showsALostLink();
    void fits_data();
    void fits();
};

namespace {

Monitor sample(int words)
{
    Monitor monitor({testItem("D_W", 100, words), testItem("M_bit", 48, 16, 2)}, 60,
                    [](int, const RegisterInfo &reg, int start, int count) {
                        QVector<quint16> values;
                        for (int i = 0; i < count; ++i) {
                            values.append(static_cast<quint16>(reg.isBit() ? i % 2 : start + i));
                        }
                        return values;
                    });
    RequestRange block{};
    block.stationNo = 1;
    block.regName = QLatin1String("D_W");
    block.startAddr = 100;
    block.count = words;
    monitor.readEnded(block, true, 1000, QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9, 10)));
    return monitor;
}

MonitorStatus sampleStatus()
{
    MonitorStatus status;
    status.link = QLatin1String("simulated PLC");
    status.rounds = 42;
    status.nowMs = 1250;
    status.time = QDateTime(QDate(2024, 5, 6), QTime(7, 8, 10));
    status.stations[1].state = StationState::Answers;
    status.stations[1].frames = 7;
    status.stations[2].state = StationState::Away;
    return status;
}

} // namespace

void TestScreenText::ages_data()
{
    QTest::addColumn<qint64>("ms");
    QTest::addColumn<QString>("text");
    QTest::newRow("never") << Q_INT64_C(-1) << "-";
    QTest::newRow("now") << Q_INT64_C(0) << "0 ms";
    QTest::newRow("below a second") << Q_INT64_C(999) << "999 ms";
    QTest::newRow("seconds") << Q_INT64_C(1000) << "1.0 s";
    QTest::newRow("two minutes") << Q_INT64_C(120000) << "2 min";
}

void TestScreenText::ages()
{
    QFETCH(qint64, ms);
    QTEST(ageText(ms), "text");
}

void TestScreenText::showsItems()
{
    const QStringList lines = screenText(sample(6), sampleStatus(), 100, 30);
    QCOMPARE(lines.size(), 8);
    QCOMPARE(lines.at(0), QLatin1String("07:08:10  simulated PLC  round 42"));
    QVERIFY(lines.at(1).startsWith(QLatin1String("ADDRESS")));
    QVERIFY(lines.at(2).startsWith(QLatin1String("1/D_W:100 ")));
    QVERIFY(lines.at(2).contains(QLatin1String("100 0x0064")));
    QVERIFY(lines.at(2).contains(QLatin1String("07:08:09.010  250 ms")));
    QVERIFY(lines.at(3).startsWith(QLatin1String("1/D_W:104 ")));
    QVERIFY(lines.at(3).contains(QLatin1String("105 0x0069")));
    QVERIFY(lines.at(4).startsWith(QLatin1String("2/M_bit:3.0 ")));
    QVERIFY(lines.at(4).contains(QLatin1String("- - - - - - - - - - - - - - - - ")));
    QVERIFY(lines.at(5).startsWith(QLatin1String("STATION")));
    QVERIFY(lines.at(6).startsWith(QLatin1String("1        answers   7 ")));
    QVERIFY(lines.at(7).startsWith(QLatin1String("2        silent    0 ")));
}

void TestScreenText::showsALostLink()
{
    MonitorStatus status = sampleStatus();
    status.linkLost = QLatin1String("pulled out");
    QVERIFY(screenText(sample(1), status, 100, 30)
                .first()
                .endsWith(QLatin1String("LINK DOWN: pulled out")));
}

void TestScreenText::fits_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("rows");
    QTest::addColumn<bool>("all");
    QTest::newRow("80 x 24") << 80 << 24 << false;
    QTest::newRow("80 x 40") << 80 << 40 << true;
    QTest::newRow("narrow") << 20 << 24 << false;
    QTest::newRow("as low as it gets") << 80 << 6 << false;
    QTest::newRow("wide") << 500 << 100 << true;
}

void TestScreenText::fits()
{
    QFETCH(int, columns);
    QFETCH(int, rows);
    QFETCH(bool, all);
    const QStringList lines = screenText(sample(60), sampleStatus(), columns, rows);
    QVERIFY(lines.size() <= rows);
    for (const QString &line : lines) {
        QVERIFY(line.size() <= columns);
    }
    QCOMPARE(lines.filter(QLatin1String("more lines")).isEmpty(), all);
}

QTEST_APPLESS_MAIN(TestScreenText)
#include "test_screen_text.moc"
