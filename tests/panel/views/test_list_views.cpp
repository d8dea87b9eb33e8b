#include "host/support/reports.h"

#include "panel/views/view_body.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

/** The views of stations and of blocks. */
class TestListViews : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void showsStations();
    void showsTheLoad_data();
    void showsTheLoad();
    void showsALostLink();
    void showsBlocks();
    void filters();

private:
    QStringList lines(View view);

    Monitor m_monitor{60};
    MonitorStatus m_status;
    ViewState m_state;
    ValueHistory m_history;
    std::unique_ptr<Statistics> m_statistics;
};

void TestListViews::init()
{
    m_state = ViewState();
    m_statistics = std::make_unique<Statistics>(LineSettings{9600, 8, Parity::Even, 1});
    m_statistics->reset(0);
    for (const double ms : {10.0, 10.0, 30.0}) {
        m_statistics->note(reportOf(Outcome::Answered, ms));
    }
    ExchangeReport other = reportOf(Outcome::Refused, 5);
    other.reply.station = other.range.station = 31;
    m_statistics->note(other);
    m_statistics->sent(960, 100);
    m_status = MonitorStatus();
    m_status.nowMs = 2000;
}

QStringList TestListViews::lines(View view)
{
    m_status.stations = m_statistics->stations();
    m_status.statistics = m_statistics.get();
    m_state.view = view;
    const QStringList log;
    const ViewInput input{m_monitor, m_status, m_state, m_history, log, Glyphs::Ascii};
    const ViewBody body = view == View::Blocks ? blocksView(input) : stationsView(input);
    QStringList texts;
    for (const StyledLine &title : body.titles) {
        texts.append(title.text().simplified());
    }
    for (int row = 0; row < body.rows; ++row) {
        texts.append(body.row(row).text().simplified());
    }
    return texts;
}

void TestListViews::showsStations()
{
    const QStringList shown = lines(View::Stations);
    QCOMPARE(shown.at(1), QLatin1String("STATION STATE ASKED TIMEOUT REFUSED CHECK BAD MEAN P50 "
                                        "P95 P99 MAX ms MIN ANSWERS REPEAT LATE REFUSALS"));
    QCOMPARE(shown.at(2), QLatin1String("2 answers 3 0 0 0 0 16.7 10.0 30.0 30.0 30.0 10.0 3 0 0"));
    QCOMPARE(shown.at(3),
             QLatin1String("! 31 refuses 1 0 1 0 0 5.0 5.0 5.0 5.0 5.0 5.0 0 0 0 1132 (1)"));
}

void TestListViews::showsTheLoad_data()
{
    QTest::addColumn<bool>("known");
    QTest::addColumn<QString>("text");
    QTest::newRow("known") << true
                           << "line load: 55.0 % (480 bytes/s) now, 55.0 % (480 bytes/s) in all of "
                              "9600,8,EVEN,1";
    QTest::newRow("unknown") << false << "line load: 480 bytes/s now, 480 bytes/s in all";
}

void TestListViews::showsTheLoad()
{
    QFETCH(bool, known);
    if (!known) {
        m_statistics = std::make_unique<Statistics>(std::nullopt);
        QCOMPARE(lines(View::Stations).first(), QLatin1String("line load: -"));
        m_statistics->reset(0);
        m_statistics->received(960, 100);
    }
    QTEST(lines(View::Stations).first(), "text");
}

void TestListViews::showsALostLink()
{
    m_status.linkLost = QLatin1String("pulled out");
    QVERIFY(lines(View::Stations).at(2).startsWith(QLatin1String("! 2 line down 3 0")));
}

void TestListViews::showsBlocks()
{
    const QStringList shown = lines(View::Blocks);
    QCOMPARE(static_cast<int>(shown.size()), 3);
    QVERIFY(shown.at(0).startsWith(QLatin1String("BLOCK ASKED TIMEOUT")));
    QVERIFY2(shown.at(1).startsWith(QLatin1String("2/D_W:100*3 3 0 0 0")), qPrintable(shown.at(1)));
    QVERIFY(shown.at(2).startsWith(QLatin1String("! 31/D_W:100*3 1 0 1 0")));
}

void TestListViews::filters()
{
    m_state.filter = QLatin1String("31/");
    QCOMPARE(static_cast<int>(lines(View::Blocks).size()), 2);
    m_state.filter = QLatin1String("REFUSES");
    QCOMPARE(static_cast<int>(lines(View::Stations).size()), 3);
}

QTEST_APPLESS_MAIN(TestListViews)
#include "test_list_views.moc"
