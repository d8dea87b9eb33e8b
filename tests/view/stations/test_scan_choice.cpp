#include "support/rows.h"
#include "view/stations/scan/scan_choice.h"

using namespace cnet;
using namespace cnet::view;

namespace {

const Case<const char *, QVector<int>> kStations[] = {
    {"one", "5", {5}},
    {"all that are in a span", "8-11", {8, 9, 10, 11}},
    {"several", "1,3,8-9", {1, 3, 8, 9}},
    {"blanks", " 1 , 3 - 4 ", {1, 3, 4}},
    {"each once", "1-3,2,3-4", {1, 2, 3, 4}},
    {"the ends", "0,31", {0, 31}},
    {"nothing", "", {}},
    {"too high", "32", {}},
    {"negative", "-1", {}},
    {"backwards", "5-3", {}},
    {"three ends", "1-2-3", {}},
    {"letters", "one", {}},
    {"a comma too many", "1,", {}},
};

} // namespace

/** What one may choose of a scan: its stations and its speeds. */
class TestScanChoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsStations_data() { addRows(kStations); }
    void readsStations();
    void speedsAreOfSerialLines();
};

void TestScanChoice::readsStations()
{
    const auto &row = currentRow(kStations);
    const auto stations = parseStations(QString::fromLatin1(row.given));
    QCOMPARE(stations.has_value(), !row.expected.isEmpty());
    QCOMPARE(stations.value_or(QVector<int>()), row.expected);
}

void TestScanChoice::speedsAreOfSerialLines()
{
    Connection connection;
    QCOMPARE(int(speedChoices(connection).size()), 1);
    connection.kind = Connection::Kind::Tcp;
    connection.address.line.baud = 0;
    QCOMPARE(int(speedChoices(connection).size()), 1);
    QVERIFY(speedChoices(connection).at(0).settings.at(0).baud > 0);
    connection.kind = Connection::Kind::Serial;
    connection.address.line.baud = 9600;
    connection.address.line.parity = Parity::Even;
    const auto choices = speedChoices(connection);
    QVERIFY(choices.size() > 3);
    QCOMPARE(int(choices.at(0).settings.size()), 1);
    for (const SpeedChoice &choice : choices.mid(0, 2)) {
        QCOMPARE(choice.settings.at(0).text(), connection.address.line.text());
    }
    QStringList texts;
    for (const LineSettings &settings : choices.at(1).settings) {
        texts << settings.text();
    }
    QCOMPARE(int(texts.removeDuplicates()), 0);
    for (const SpeedChoice &choice : choices.mid(2)) {
        for (const LineSettings &settings : choice.settings) {
            QCOMPARE(settings.baud, choice.settings.at(0).baud);
        }
    }
}

QTEST_MAIN(TestScanChoice)
#include "test_scan_choice.moc"
