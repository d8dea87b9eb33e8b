#include "view/stations/numbers/line_load.h"
#include "view/stations/numbers/station_details.h"
#include "view/stations/numbers/station_table.h"
#include "view/stations/pictures/sparkline.h"
#include "view/stations/stations_page.h"
#include "view/support/unnamed_fields.h"
#include "view/support/watched_line.h"

#include "plc/stations/bus.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTableView>
#include <QTreeWidget>

using namespace cnet;
using namespace cnet::view;

/** The page of stations on a line that is watched. */
class TestStationsPage : public QObject, private WatchedLine
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_page.reset(); }
    void showsALiveLine();
    void keepsEachStationOfALineThatEnded();
    void restsWhileItIsHidden();
    void refusedAddressesAreListed();
    void fieldsHaveNames();

private:
    std::unique_ptr<StationsPage> m_page;
};

void TestStationsPage::init()
{
    begin();
    m_page = std::make_unique<StationsPage>(*m_line);
}

void TestStationsPage::showsALiveLine()
{
    auto *table = m_page->findChild<StationTable *>();
    auto *details = m_page->findChild<StationDetails *>();
    QVERIFY(table != nullptr && details != nullptr);
    m_page->show();
    m_line->open(Connection());
    watch("D_W:110");
    QTRY_COMPARE_WITH_TIMEOUT(table->index(0, StationTable::State).data().toString(),
                              QLatin1String("answers"), kLongMs);
    QTRY_VERIFY_WITH_TIMEOUT(!table->index(0, StationTable::PerSecond).data().toString().isEmpty(),
                             kLongMs);
    QCOMPARE(table->index(0, StationTable::Station).data().toString(), QLatin1String("1"));
    QVERIFY(table->countersAt(0)->times.count() > 0);
    QTRY_COMPARE_WITH_TIMEOUT(details->title(), QLatin1String("Station 1: answers"), kLongMs);
    auto *load = m_page->findChild<LineLoad *>();
    QTRY_VERIFY_WITH_TIMEOUT(load->words().contains(QLatin1String("% busy")), kLongMs);
    m_page->copyTable();
    QVERIFY(QGuiApplication::clipboard()->text().startsWith(QLatin1String("Station\tState\t")));
    QCOMPARE(int(QGuiApplication::clipboard()->text().count(QLatin1Char('\n'))), 2);

    const qint64 sinceMs = m_line->session()->statistics().sinceMs();
    QTRY_VERIFY_WITH_TIMEOUT(m_line->session()->nowMs() > sinceMs, kLongMs);
    m_page->resetNumbers();
    QVERIFY(m_line->session()->statistics().sinceMs() > sinceMs);
    QCOMPARE(table->rowCount(), 1);

    QTRY_VERIFY_WITH_TIMEOUT(m_line->session()->stations().value(1).frames > 0, kLongMs);
    m_line->close();
    QCOMPARE(table->index(0, StationTable::State).data().toString(), QLatin1String("not known"));
    QVERIFY(table->countersAt(0)->frames > 0);
    m_page->resetNumbers(); // of nothing
    QTRY_COMPARE_WITH_TIMEOUT(load->words(), QLatin1String("the line is not open"), kLongMs);
    m_line->open(Connection());
    QCOMPARE(table->rowCount(), 0);
}

void TestStationsPage::keepsEachStationOfALineThatEnded()
{
    auto *table = m_page->findChild<StationTable *>();
    auto *details = m_page->findChild<StationDetails *>();
    m_page->show();
    m_line->open(Connection());
    m_line->simulator()->find(1)->faults.add(plc::usualFault(plc::FaultKind::Refuse));
    QString error;
    m_tags->setTags(TagSet({*m_tags->parse(QLatin1String("1/D_W:110"), error),
                            *m_tags->parse(QLatin1String("2/D_W:110"), error)}));
    QTRY_COMPARE_WITH_TIMEOUT(table->rowCount(), 2, kLongMs);
    QTableView *view = nullptr; // the scan has another one
    const auto views = m_page->findChildren<QTableView *>();
    for (QTableView *one : views) {
        view = one->model() == table ? one : view;
    }
    QVERIFY(view != nullptr);
    const auto refused = details->findChildren<QTreeWidget *>().at(1);
    view->setCurrentIndex(table->index(0, 0));
    QTRY_VERIFY_WITH_TIMEOUT(refused->topLevelItemCount() == 1, kLongMs);
    m_line->close();
    view->setCurrentIndex(table->index(1, 0));
    QVERIFY(details->title().startsWith(QLatin1String("Station 2: ")));
    QCOMPARE(refused->topLevelItemCount(), 0);
    view->setCurrentIndex(table->index(0, 0));
    QVERIFY(details->title().startsWith(QLatin1String("Station 1: ")));
    QCOMPARE(refused->topLevelItemCount(), 1);
}

void TestStationsPage::restsWhileItIsHidden()
{
    auto *table = m_page->findChild<StationTable *>();
    auto *load = m_page->findChild<LineLoad *>();
    m_line->open(Connection());
    watch("D_W:110");
    QTRY_VERIFY_WITH_TIMEOUT(m_line->session()->stations().value(1).answers > 0, kLongMs);
    // The line is looked at twice more, the stations are not.
    const auto before = load->history().values().size();
    QTRY_VERIFY_WITH_TIMEOUT(load->history().values().size() >= before + 2, kLongMs);
    QCOMPARE(table->rowCount(), 0);
    m_page->show();
    QCOMPARE(table->rowCount(), 1);
}

void TestStationsPage::refusedAddressesAreListed()
{
    m_page->show();
    m_line->open(Connection());
    plc::Fault refusal = plc::usualFault(plc::FaultKind::Refuse);
    m_line->simulator()->find(1)->faults.add(refusal);
    watch("D_W:110");
    const auto lists = m_page->findChild<StationDetails *>()->findChildren<QTreeWidget *>();
    QCOMPARE(int(lists.size()), 2);
    for (QTreeWidget *list : lists) {
        QTRY_VERIFY_WITH_TIMEOUT(list->topLevelItemCount() > 0, kLongMs);
    }
    QTRY_COMPARE_WITH_TIMEOUT(lists.at(1)->topLevelItem(0)->text(0), QLatin1String("D_W:110*1"),
                              kLongMs);
}

void TestStationsPage::fieldsHaveNames()
{
    int count = 0;
    QCOMPARE(unnamedFields(*m_page, count), QStringList());
    QVERIFY(count > 5);
}

QTEST_MAIN(TestStationsPage)
#include "test_stations_page.moc"
