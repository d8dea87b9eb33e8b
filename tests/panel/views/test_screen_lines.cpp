#include "host/support/test_types.h"
#include "panel/screen_texts.h"
#include "panel/watched_items.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestScreenLines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void ages_data();
    void ages();
    void showsItems();
    void showsALostLink();
    void marks_data();
    void marks();
    void marksWhatWaits();
    void fits_data();
    void fits();
    void scrolls_data();
    void scrolls();
    void showsTheLog();
    void leavesRoomForItemsWhereStationsAreMany();
    void showsTypedValues();

private:
    void watch(int words);
    QStringList text(int columns, int rows) const;
    QStringList text(int columns, int rows, int &scrolled) const;

    std::unique_ptr<Monitor> m_monitor;
    MonitorStatus m_status;
    ViewState m_state;
    ValueHistory m_history;
    QStringList m_log;
};

// A row of words that hold their addresses, and bits that were never read.
void TestScreenLines::watch(int words)
{
    m_monitor = std::make_unique<Monitor>(1000);
    m_monitor->setItems({testItem("D_W", 100, words), testItem("M_bit", 48, 16, 2)});
    QVector<quint16> values;
    for (int i = 0; i < words; ++i) {
        values.append(static_cast<quint16>(100 + i));
    }
    m_monitor->blockRead(0, 0, values, momentAt(1000));
}

QStringList TestScreenLines::text(int columns, int rows) const
{
    int scrolled = 0;
    return text(columns, rows, scrolled);
}

QStringList TestScreenLines::text(int columns, int rows, int &scrolled) const
{
    const ViewInput input{*m_monitor, m_status, m_state, m_history, m_log, Glyphs::Ascii};
    return screenTexts(input, columns, rows, scrolled);
}

void TestScreenLines::init()
{
    watch(6);
    m_status = MonitorStatus();
    m_state = ViewState();
    m_history = ValueHistory();
    m_log.clear();
    m_status.link = QLatin1String("simulated PLC");
    m_status.rounds = 42;
    m_status.nowMs = 1250;
    m_status.time = QDateTime(QDate(2024, 5, 6), QTime(7, 8, 10));
    m_status.stations[1].state = StationState::Answers;
    m_status.stations[1].frames = 7;
    m_status.stations[2].state = StationState::Away;
}

void TestScreenLines::ages_data()
{
    QTest::addColumn<qint64>("ms");
    QTest::addColumn<QString>("text");
    QTest::newRow("never") << Q_INT64_C(-1) << "-";
    QTest::newRow("now") << Q_INT64_C(0) << "0 ms";
    QTest::newRow("below a second") << Q_INT64_C(999) << "999 ms";
    QTest::newRow("seconds") << Q_INT64_C(1000) << "1.0 s";
    QTest::newRow("two minutes") << Q_INT64_C(120000) << "2 min";
}

void TestScreenLines::ages()
{
    QFETCH(qint64, ms);
    QTEST(ageText(ms), "text");
}

void TestScreenLines::showsItems()
{
    const QStringList lines = text(120, 30);
    QCOMPARE(lines.size(), 8);
    QCOMPARE(lines.at(0), QLatin1String("07:08:10  simulated PLC  round 42"));
    QVERIFY(lines.at(1).startsWith(QLatin1String("  ADDRESS")));
    QVERIFY(lines.at(1).contains(QLatin1String("QUALITY")));
    QVERIFY(lines.at(2).startsWith(QLatin1String("  1/D_W:100 ")));
    QVERIFY(lines.at(2).contains(QLatin1String("100 0x0064")));
    QVERIFY2(lines.at(2).contains(QLatin1String("< 1 s   07:08:09.010")), qPrintable(lines.at(2)));
    QVERIFY(lines.at(3).startsWith(QLatin1String("  1/D_W:104 ")));
    QVERIFY(lines.at(3).contains(QLatin1String("105 0x0069")));
    QVERIFY(lines.at(4).startsWith(QLatin1String("- 2/M_bit:3.0 ")));
    QVERIFY(lines.at(4).contains(QLatin1String("- - - - - - - - - - - - - - - - ")));
    QVERIFY(lines.at(4).contains(QLatin1String("never read")));
    QVERIFY(lines.at(5).startsWith(QLatin1String("STATION")));
    QVERIFY(lines.at(6).startsWith(QLatin1String("1        answers   7 ")));
    QVERIFY(lines.at(7).startsWith(QLatin1String("2        silent    0 ")));
}

// Nobody knows then how anything is: neither a value nor a station.
void TestScreenLines::showsALostLink()
{
    m_status.linkLost = QLatin1String("pulled out");
    m_monitor->look(momentAt(1250, false));
    const QStringList lines = text(120, 30);
    QVERIFY(lines.first().endsWith(QLatin1String("LINK DOWN: pulled out")));
    for (const int line : {2, 3, 4}) {
        QVERIFY2(lines.at(line).startsWith(QLatin1String("! ")), qPrintable(lines.at(line)));
    }
    QVERIFY(lines.at(2).contains(QLatin1String("line down")));
    QVERIFY(lines.at(6).startsWith(QLatin1String("1        line down ")));
    QVERIFY(lines.at(7).startsWith(QLatin1String("2        line down ")));
}

void TestScreenLines::marks_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("begin");
    QTest::addColumn<QString>("quality");
    QTest::newRow("good") << "good"
                          << "  1/D_W:100"
                          << "";
    QTest::newRow("stale") << "stale"
                           << "~ 1/D_W:100"
                           << "stale";
    QTest::newRow("refused") << "refused"
                             << "! 1/D_W:100"
                             << "refused";
    QTest::newRow("no answer") << "no answer"
                               << "! 1/D_W:100"
                               << "no answer";
    QTest::newRow("line down") << "line down"
                               << "! 1/D_W:100"
                               << "line down";
}

// However narrow the terminal is, a value that is not good is told from one that is.
void TestScreenLines::marks()
{
    QFETCH(QString, state);
    QFETCH(QString, begin);
    QFETCH(QString, quality);
    if (state == QLatin1String("refused")) {
        m_monitor->markRefused(0, 0, 0x1132, momentAt(1250));
    } else if (state == QLatin1String("no answer")) {
        m_monitor->blockFailed(0, 0, noAnswer(), momentAt(1250));
    } else {
        m_monitor->look(momentAt(state == QLatin1String("stale") ? 4000 : 1250,
                                 state != QLatin1String("line down")));
    }
    for (const int columns : {120, 80, 60, 40, 20}) {
        const QStringList lines = text(columns, 30);
        QVERIFY2(lines.at(2).startsWith(begin), qPrintable(lines.at(2)));
        QVERIFY2(columns < 40 || lines.at(2).contains(quality), qPrintable(lines.at(2)));
    }
    QVERIFY(text(40, 30).at(2).contains(QLatin1String("100 0x0064")));
}

// What is on its way is shown, and that it is; nothing ever read is shown as 0.
void TestScreenLines::marksWhatWaits()
{
    m_monitor->setItems({testItem("D_W", 200, 2)});
    m_monitor->writeBegun(testItem("D_W", 201, 1), {7}, momentAt(1250));
    const QString waits = text(120, 30).at(2);
    QVERIFY2(waits.startsWith(QLatin1String("> 1/D_W:200")), qPrintable(waits));
    QVERIFY(waits.contains(QLatin1String("7 0x0007")));
    QVERIFY(!waits.contains(QLatin1String("0x0000")));
    QVERIFY(waits.contains(QLatin1String("waiting for the PLC")));
    m_monitor->writeEnded(testItem("D_W", 201, 1), {7}, Confirmation::Missing, momentAt(1250));
    const QString gone = text(120, 30).at(2);
    QVERIFY2(gone.startsWith(QLatin1String("- 1/D_W:200")), qPrintable(gone));
    QVERIFY(!gone.contains(QLatin1String("0x")));
}

void TestScreenLines::fits_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("rows");
    QTest::addColumn<bool>("all");
    QTest::newRow("80 x 24") << 80 << 24 << false;
    QTest::newRow("80 x 80") << 80 << 80 << true;
    QTest::newRow("narrow") << 20 << 24 << false;
    QTest::newRow("as low as it gets") << 80 << 6 << false;
    QTest::newRow("wide") << 500 << 100 << true;
}

void TestScreenLines::fits()
{
    QFETCH(int, columns);
    QFETCH(int, rows);
    QFETCH(bool, all);
    watch(60);
    const QStringList lines = text(columns, rows);
    QVERIFY(lines.size() <= rows);
    for (const QString &line : lines) {
        QVERIFY(line.size() <= columns);
    }
    QCOMPARE(lines.filter(QLatin1String("... lines 1 to ")).isEmpty(), all);
}

void TestScreenLines::scrolls_data()
{
    QTest::addColumn<int>("down");
    QTest::addColumn<int>("first"); // number of the first line shown
    QTest::newRow("top") << 0 << 1;
    QTest::newRow("beyond the top") << -5 << 1;
    QTest::newRow("one line") << 1 << 2;
    QTest::newRow("the middle") << 200 << 201;
    QTest::newRow("the end") << 485 << 486;
    QTest::newRow("beyond the end") << 1000000 << 486;
}

void TestScreenLines::scrolls()
{
    QFETCH(int, down);
    QFETCH(int, first);
    QVector<Item> items;
    for (int i = 0; i < 500; ++i) {
        items.append(testItem("D_W", i, 1));
    }
    m_monitor->setItems(items);
    int scrolled = down;
    const QStringList lines = text(80, 21, scrolled);
    QCOMPARE(lines.size(), 21);
    QCOMPARE(scrolled, first - 1);
    QVERIFY2(lines.at(2).startsWith(QString::fromLatin1("- 1/D_W:%1 ").arg(first - 1)),
             qPrintable(lines.at(2)));
    QCOMPARE(lines.at(17),
             QString::fromLatin1("... lines %1 to %2 of 500").arg(first).arg(first + 14));
    QVERIFY(lines.at(18).startsWith(QLatin1String("STATION")));
}

void TestScreenLines::showsTheLog()
{
    m_state.view = View::Log;
    QCOMPARE(text(80, 20).last(), QLatin1String("nothing was said yet"));
    m_log = QStringList{QLatin1String("first"), QLatin1String("second")};
    QCOMPARE(text(80, 20).mid(2), m_log);
    QVERIFY(text(80, 20).first().contains(QLatin1String("LOG")));
    m_state.filter = QLatin1String("SEC");
    QCOMPARE(text(80, 20).mid(2), QStringList{QLatin1String("second")});
}

void TestScreenLines::leavesRoomForItemsWhereStationsAreMany()
{
    watch(60);
    for (int station = 0; station < 32; ++station) {
        m_status.stations[station].frames = 1;
    }
    const QStringList lines = text(80, 24);
    QCOMPARE(lines.size(), 24);
    QCOMPARE(lines.last(), QLatin1String("... and more, see the view of stations"));
    QVERIFY(lines.filter(QLatin1String("1/D_W:")).size() >= 10);
}

void TestScreenLines::showsTypedValues()
{
    m_status.tags = {testTag("D_W:100*2@f32"), testTag("D_W:110@bcd4")};
    m_monitor->setItems({m_status.tags.at(0).item, m_status.tags.at(1).item});
    m_monitor->blockRead(0, 0, {0, 0x4148, 0, 0x3F80}, momentAt(1000));
    m_monitor->blockRead(1, 0, {0x12A4}, momentAt(1000));
    const QStringList lines = text(80, 24);
    QVERIFY2(lines.at(2).startsWith(QLatin1String("  1/D_W:100  12.5  ")), qPrintable(lines.at(2)));
    QVERIFY2(lines.at(3).startsWith(QLatin1String("  1/D_W:102  1  ")), qPrintable(lines.at(3)));
    QVERIFY2(lines.at(4).startsWith(QLatin1String("? 1/D_W:110  - (wrong BCD ")),
             qPrintable(lines.at(4)));
    QVERIFY2(lines.at(4).contains(QLatin1String(" implausible ")), qPrintable(lines.at(4)));
}

QTEST_APPLESS_MAIN(TestScreenLines)
#include "test_screen_lines.moc"
