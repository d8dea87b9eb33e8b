#include "view/connect/connect_page.h"
#include "view/stations/scan/line_scan.h"
#include "view/stations/scan/scan_panel.h"
#include "view/stations/scan/scan_table.h"
#include "view/stations/stations_page.h"
#include "view/support/child_called.h"
#include "view/support/local_port.h"

#include "plc/servers/tcp_server.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTcpServer>
#include <QtTest>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr int kLongMs = 60000;

/** Stations behind a TCP port. */
class TcpPlc
{
public:
    explicit TcpPlc(const QVector<int> &stations)
        : m_server(m_setup)
    {
        for (const int station : stations) {
            m_bus.add(station);
        }
        m_setup.bus = &m_bus;
        m_setup.clock.start();
        m_isThere = m_server.listen(QHostAddress::LocalHost, 0);
    }

    bool isThere() const { return m_isThere; }

    Connection connection() const
    {
        Connection result = connectionTo(m_server.port());
        result.timeoutMs = 500;
        return result;
    }

private:
    plc::Bus m_bus;
    plc::ServerSetup m_setup;
    plc::TcpServer m_server;
    bool m_isThere = false;
};

QVector<int> stationsOf(const LineScan &scan)
{
    QVector<int> stations;
    for (const FoundStation &found : scan.found()) {
        stations.append(found.station);
    }
    return stations;
}

ScanOptions optionsFor(const QVector<int> &stations)
{
    ScanOptions options;
    options.stations = stations;
    return options;
}

} // namespace

/** A scan from the window, which has the line for itself meanwhile. */
class TestLineScan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void findsTheSimulator();
    void findsStationsBehindAPort();
    void staysClosedWhereItWas();
    void canBeStopped();
    void givesWayToWhoConnects();
    void givesWayToWhoDisconnects();
    void tellsThatTheLineFails();
    void goesWhileItRuns();
    void panelScans();
    void panelKeepsItsChoices();
    void tableGrows();

private:
    std::unique_ptr<Line> m_line;
};

void TestLineScan::init()
{
    m_line = std::make_unique<Line>();
    QCOMPARE(m_line->prepare(), QString());
}

void TestLineScan::findsTheSimulator()
{
    Connection connection;
    connection.station = 3;
    m_line->open(connection);
    LineScan scan(*m_line);
    QSignalSpy states(&scan, &LineScan::stateChanged);
    scan.start(optionsFor({2, 3}));
    QVERIFY(m_line->session() == nullptr);
    QVERIFY(scan.isRunning());
    scan.start(optionsFor({9})); // one at a time
    QTRY_VERIFY_WITH_TIMEOUT(!scan.isRunning(), kLongMs);
    QVERIFY(scan.state() == LineScan::State::Complete);
    QCOMPARE(stationsOf(scan), QVector<int>({3}));
    QCOMPARE(int(states.size()), 2);
    QVERIFY(m_line->session() != nullptr);
    QVERIFY(m_line->connection() == connection);
    QVERIFY(scan.connectionTo(scan.found().at(0)) == connection);
    QTRY_VERIFY_WITH_TIMEOUT(m_line->isOpen(), kLongMs);
}

void TestLineScan::findsStationsBehindAPort()
{
    const TcpPlc plc({1, 3, 7});
    QVERIFY(plc.isThere());
    m_line->open(plc.connection());
    QTRY_VERIFY_WITH_TIMEOUT(m_line->isOpen(), kLongMs);
    LineScan scan(*m_line);
    ScanOptions options = optionsFor({1, 2, 3, 7});
    options.registers = scannedRegisters(m_line->registers());
    QVERIFY(!options.registers.isEmpty());
    scan.start(options);
    QTRY_VERIFY_WITH_TIMEOUT(!scan.isRunning(), kLongMs);
    QCOMPARE(stationsOf(scan), QVector<int>({1, 3, 7}));
    const QString reach = reachWords(scan.found().at(1));
    QVERIFY2(reach.contains(QLatin1String("D_W 0000-9999")) ||
                 reach.contains(QLatin1String("D_W 0-9999")),
             qPrintable(reach));
    const Connection seven = scan.connectionTo(scan.found().at(2));
    QCOMPARE(seven.station, 7);
    QCOMPARE(seven.address.port, plc.connection().address.port);
    QTRY_VERIFY_WITH_TIMEOUT(m_line->isOpen(), kLongMs);
}

void TestLineScan::staysClosedWhereItWas()
{
    LineScan scan(*m_line);
    scan.start(optionsFor({1}));
    QTRY_VERIFY_WITH_TIMEOUT(!scan.isRunning(), kLongMs);
    QCOMPARE(stationsOf(scan), QVector<int>({1}));
    QVERIFY(m_line->session() == nullptr);
}

void TestLineScan::canBeStopped()
{
    m_line->open(Connection());
    LineScan scan(*m_line);
    scan.cancel(); // of nothing
    QVERIFY(scan.state() == LineScan::State::Idle);
    QVector<int> silent;
    for (int station = 2; station < 32; ++station) {
        silent.append(station);
    }
    connect(&scan, &LineScan::progressed, &scan, &LineScan::cancel);
    scan.start(optionsFor(silent));
    QTRY_VERIFY_WITH_TIMEOUT(!scan.isRunning(), kLongMs);
    QVERIFY(scan.state() == LineScan::State::Cancelled);
    QVERIFY(m_line->session() != nullptr);
    scan.disconnect();
    scan.start(optionsFor({1}));
    QTRY_VERIFY_WITH_TIMEOUT(scan.state() == LineScan::State::Complete, kLongMs);
}

void TestLineScan::givesWayToWhoConnects()
{
    m_line->open(Connection());
    LineScan scan(*m_line);
    scan.start(optionsFor({5, 6, 7}));
    Connection other;
    other.station = 9;
    m_line->open(other);
    QVERIFY(scan.state() == LineScan::State::Cancelled);
    QCOMPARE(m_line->connection().station, 9);
    const Session *session = m_line->session();
    QTRY_VERIFY_WITH_TIMEOUT(m_line->isOpen(), kLongMs);
    QVERIFY(m_line->session() == session);
}

void TestLineScan::givesWayToWhoDisconnects()
{
    m_line->open(Connection());
    ConnectPage page(*m_line);
    auto *disconnect = childCalled<QPushButton>(page, "Disconnect");
    LineScan scan(*m_line);
    scan.start(optionsFor({5, 6, 7}));
    QCOMPARE(m_line->stateText(), QLatin1String("being scanned"));
    QVERIFY(disconnect != nullptr && disconnect->isEnabled());
    disconnect->click();
    QVERIFY(scan.state() == LineScan::State::Cancelled);
    QVERIFY(m_line->session() == nullptr && !m_line->isLent());
    QCOMPARE(m_line->stateText(), QLatin1String("not connected"));
    QVERIFY(!disconnect->isEnabled());
    // The next one has no connection to bring back.
    scan.start(optionsFor({1}));
    QTRY_VERIFY_WITH_TIMEOUT(scan.state() == LineScan::State::Complete, kLongMs);
    QVERIFY(m_line->session() == nullptr && !m_line->isLent());
}

void TestLineScan::tellsThatTheLineFails()
{
    quint16 closedPort = 0;
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        closedPort = server.serverPort();
    }
    Connection connection = TcpPlc({}).connection();
    connection.address.port = closedPort;
    m_line->open(connection);
    ScanPanel panel(*m_line);
    QSignalSpy troubles(&panel, &ScanPanel::troubled);
    panel.scan().start(optionsFor({1}));
    QTRY_VERIFY_WITH_TIMEOUT(!panel.scan().isRunning(), kLongMs);
    QVERIFY(panel.scan().state() == LineScan::State::LineFailed);
    QVERIFY(!panel.scan().lineError().isEmpty());
    QCOMPARE(int(troubles.size()), 1);
    QVERIFY(m_line->session() != nullptr);
}

void TestLineScan::goesWhileItRuns()
{
    m_line->open(Connection());
    auto scan = std::make_unique<LineScan>(*m_line);
    scan->start(optionsFor({5, 6}));
    QSignalSpy states(scan.get(), &LineScan::stateChanged);
    scan.reset();
    QCOMPARE(int(states.size()), 0);
    QVERIFY(m_line->session() == nullptr && !m_line->isLent());
    m_line->open(Connection());
    QTRY_VERIFY_WITH_TIMEOUT(m_line->isOpen(), kLongMs);
}

void TestLineScan::panelScans()
{
    m_line->open(Connection());
    StationsPage page(*m_line);
    ScanPanel &panel = page.scanPanel();
    QVector<int> wanted;
    connect(&page, &StationsPage::connectWanted, &page,
            [&wanted](const Connection &connection) { wanted.append(connection.station); });
    auto *stations = panel.findChild<QLineEdit *>();
    auto *start = childCalled<QPushButton>(panel, "Begin the scan");
    QVERIFY(stations != nullptr && start != nullptr);
    stations->setText(QLatin1String("1-99"));
    QVERIFY(!start->isEnabled());
    stations->setText(QLatin1String("1-2"));
    QVERIFY(start->isEnabled());
    start->click();
    QVERIFY(panel.scan().isRunning());
    QVERIFY(!start->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(!panel.scan().isRunning(), kLongMs);
    QVERIFY(start->isEnabled());
    auto *table = panel.findChild<QTableView *>();
    QCOMPARE(table->model()->rowCount(), 1);
    Q_EMIT table->activated(table->model()->index(0, 0));
    QCOMPARE(wanted, QVector<int>({1}));
}

void TestLineScan::panelKeepsItsChoices()
{
    StationsPage page(*m_line);
    auto *stations = page.scanPanel().findChild<QLineEdit *>();
    auto *registers = page.scanPanel().findChild<QCheckBox *>();
    stations->setText(QLatin1String("4-6"));
    registers->setChecked(true);
    const QJsonObject saved = page.saved();
    StationsPage other(*m_line);
    other.restore(saved);
    QCOMPARE(other.saved(), saved);
    QCOMPARE(other.scanPanel().findChild<QLineEdit *>()->text(), QLatin1String("4-6"));
    other.restore({{QLatin1String("scan"), 5}});
    other.restore(
        {{QLatin1String("scan"), QJsonObject{{QLatin1String("stations"), QLatin1String("400")},
                                             {QLatin1String("registers"), QLatin1String("no")}}}});
    QCOMPARE(other.saved(), StationsPage(*m_line).saved());
}

void TestLineScan::tableGrows()
{
    ScanTable table;
    const QAbstractItemModelTester tester(&table);
    FoundStation one;
    one.station = 1;
    one.noteAnswer(12);
    FoundStation two = one;
    two.station = 2;
    table.setFound({one});
    const QPersistentModelIndex first = table.index(0, ScanTable::Registers);
    QCOMPARE(first.data().toString(), QString());
    RegisterReach reach;
    reach.reg.name = QLatin1String("C_W");
    reach.state = RegisterReach::State::Absent;
    one.registers = {reach};
    table.setFound({one, two});
    QCOMPARE(first.data().toString(), QLatin1String("not there: C_W"));
    QCOMPARE(table.index(1, ScanTable::Station).data().toString(), QLatin1String("2"));
    QCOMPARE(table.index(0, ScanTable::Mean).data().toString(), QLatin1String("12.0"));
    table.setFound({});
    QCOMPARE(table.rowCount(), 0);
}

QTEST_MAIN(TestLineScan)
#include "test_line_scan.moc"
