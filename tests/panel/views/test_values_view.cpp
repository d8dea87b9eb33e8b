#include "host/support/test_types.h"
#include "panel/screen_texts.h"
#include "panel/watched_items.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

/** What can be chosen to be seen of the values, and what has changed. */
class TestValuesView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void filters_data();
    void filters();
    void showsNames_data();
    void showsNames();
    void saysWhereNothingIsLeft();
    void showsTrends();
    void showsTrendsOnANarrowTerminal();
    void marksWhatChanged();
    void badValuesStandOut();

private:
    ViewInput input() const { return {*m_monitor, m_status, m_state, m_history, m_log}; }
    QStringList text(int columns, int rows) const;

    std::unique_ptr<Monitor> m_monitor;
    MonitorStatus m_status;
    ViewState m_state;
    ValueHistory m_history;
    QStringList m_log;
};

// D_W:100*2 with values, and D_W:7 without an answer.
void TestValuesView::init()
{
    m_state = ViewState();
    m_history = ValueHistory();
    m_status = MonitorStatus();
    m_monitor = std::make_unique<Monitor>(60);
    m_monitor->setItems({testItem("D_W", 100, 2), testItem("D_W", 7, 1, 2)});
    connect(m_monitor.get(), &Monitor::valuesChanged, this,
            [this](const QVector<ValueChange> &changes) { m_history.note(*m_monitor, changes); });
    for (int i = 0; i < 3; ++i) {
        m_monitor->blockRead(0, 0, {static_cast<quint16>(40 * i), 9}, momentAt(1000 + 1000 * i));
        m_monitor->tell();
        m_history.sample(*m_monitor, 1000 + 1000 * i);
    }
    m_monitor->blockFailed(1, 0, noAnswer(), momentAt(3000));
    m_status.nowMs = 3000;
    m_status.time = wallTime(momentAt(60000).wallMs);
}

QStringList TestValuesView::text(int columns, int rows) const
{
    int scrolled = 0;
    return screenTexts(input(), columns, rows, scrolled);
}

void TestValuesView::filters_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("left"); // the items' first characters
    QTest::newRow("none") << ""
                          << "  1/D_W:100|! 2/D_W:7";
    QTest::newRow("an address") << "w:7"
                                << "! 2/D_W:7";
    QTest::newRow("a station") << "1/"
                               << "  1/D_W:100";
    QTest::newRow("a quality") << "no answer"
                               << "! 2/D_W:7";
    QTest::newRow("all of them") << "d_w"
                                 << "  1/D_W:100|! 2/D_W:7";
}

void TestValuesView::filters()
{
    QFETCH(QString, filter);
    QFETCH(QString, left);
    m_state.filter = filter;
    const QStringList lines = text(120, 30);
    const QStringList begins = left.split(QLatin1Char('|'));
    QCOMPARE(lines.size(), 3 + begins.size());
    for (int i = 0; i < begins.size(); ++i) {
        QVERIFY2(lines.at(2 + i).startsWith(begins.at(i)), qPrintable(lines.at(2 + i)));
    }
    QCOMPARE(lines.first().contains(QLatin1String("filter: ") + filter), !filter.isEmpty());
}

void TestValuesView::showsNames_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("line");   // that is there
    QTest::addColumn<QString>("absent"); // that is not
    const auto row = [](const char *name, int columns, const char *filter, const char *line,
                        const char *absent) {
        QTest::newRow(name) << columns << QString::fromLatin1(filter) << QString::fromLatin1(line)
                            << QString::fromLatin1(absent);
    };
    row("a value of several", 100, "", "  press.oil.pressures[1]  0.9 bar", "1/D_W");
    row("the end of a long name", 40, "", "  ..oil.pressures[1]", "press.oil");
    row("a name is found", 100, "RESSU", "press.oil.pressures[0]", "press.state");
    row("a group is found", 100, "line3", "press.state", "pressures");
    row("an address is found", 100, "d_w:100", "pressures[0]", "press.state");
}

void TestValuesView::showsNames()
{
    QFETCH(int, columns);
    QFETCH(QString, line);
    QFETCH(QString, absent);
    QFETCH(QString, filter);
    Tag pressures = testTag("D_W:100*2@u16*0.1");
    pressures.name = QLatin1String("press.oil.pressures");
    pressures.unit = QLatin1String("bar");
    Tag state = testTag("2/D_W:7");
    state.name = QLatin1String("press.state");
    state.group = QLatin1String("press/line3");
    m_status.tags = {pressures, state};
    m_state.filter = filter;
    const QString screen = text(columns, 20).join(QLatin1Char('\n'));
    QVERIFY2(screen.contains(line), qPrintable(screen));
    QVERIFY2(!screen.contains(absent), qPrintable(screen));
    QVERIFY(screen.contains(QLatin1String("NAME")));
}

void TestValuesView::saysWhereNothingIsLeft()
{
    m_state.filter = QLatin1String("M_W");
    QCOMPARE(text(120, 30).at(2), QLatin1String("nothing here contains the filter"));
}

void TestValuesView::showsTrends()
{
    m_state.trend = Trend::Shown;
    const QStringList lines = text(100, 30);
    QVERIFY(lines.at(1).contains(QLatin1String("MIN    MAX    LAST 16 s ")));
    QVERIFY2(lines.at(2).contains(QLatin1String(" 0      80     _=# ")), qPrintable(lines.at(2)));
    QVERIFY(lines.at(3).startsWith(QLatin1String("  1/D_W:101")));
    QVERIFY2(lines.at(3).contains(QLatin1String(" 9      9      ___")), qPrintable(lines.at(3)));
    QVERIFY2(lines.at(4).contains(QLatin1String("no answer            -      -  ")),
             qPrintable(lines.at(4)));
}

void TestValuesView::showsTrendsOnANarrowTerminal()
{
    m_state.trend = Trend::Shown;
    const QStringList lines = text(40, 30);
    QCOMPARE(lines.size(), 9);
    QCOMPARE(lines.at(3), QLatin1String("    0..80  _=#"));
    QCOMPARE(lines.at(5), QLatin1String("    9..9  ___"));
    QVERIFY(lines.at(6).contains(QLatin1String("no answer")));
}

void TestValuesView::marksWhatChanged()
{
    m_status.time = wallTime(momentAt(3100).wallMs);
    QVERIFY(text(120, 30).at(2).contains(QLatin1String("80 0x0050*    9 0x0009 ")));
    m_status.time = wallTime(momentAt(4600).wallMs);
    QVERIFY(text(120, 30).at(2).contains(QLatin1String("80 0x0050     9 0x0009 ")));
}

// The mark and the words of what is not good, and nothing of what is.
void TestValuesView::badValuesStandOut()
{
    int scrolled = 0;
    const QVector<StyledLine> lines = screenLines(input(), 120, 30, scrolled);
    const StyledLine &good = lines.at(2);
    const StyledLine &bad = lines.at(3);
    QVERIFY(bad.emphasisAt(0) == Emphasis::Bad);
    QVERIFY(bad.emphasisAt(static_cast<int>(bad.text().indexOf(QLatin1String("no answer")))) ==
            Emphasis::Bad);
    for (int column = 0; column < good.size(); ++column) {
        QVERIFY(good.emphasisAt(column) == Emphasis::None);
    }
}

QTEST_APPLESS_MAIN(TestValuesView)
#include "test_values_view.moc"
