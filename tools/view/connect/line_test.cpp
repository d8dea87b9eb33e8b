#include "view/connect/line_test.h"

#include "view/connect/connection_link.h"

#include <QStringList>

namespace cnet::view {

namespace {

constexpr int kHighestStation = 31;

QVector<int> stationsFrom(int first)
{
    QVector<int> stations{first};
    for (int station = 0; station <= kHighestStation; ++station) {
        if (station != first) {
            stations.append(station);
        }
    }
    return stations;
}

} // namespace

void LineTest::start(const Connection &connection)
{
    m_scan.reset();
    m_connection = connection;
    ScanOptions options;
    options.settings = {connection.lineSettings()};
    options.stations = stationsFrom(connection.station);
    options.timeoutMs = connection.timeoutMs;
    m_scan = std::make_unique<Scan>(
        [connection](const LineSettings &line) { return makeConnectionLink(connection, line); },
        options, m_clock);
    connect(m_scan.get(), &Scan::stationFound, this, [this] { Q_EMIT said(foundText()); });
    connect(m_scan.get(), &Scan::progressed, this, [this](int done, int total) {
        Q_EMIT said(tr("%1 (asked %2 of %3)").arg(foundText()).arg(done).arg(total));
    });
    // It may be told of from within the scan, which goes with this.
    connect(m_scan.get(), &Scan::finished, this, &LineTest::end, Qt::QueuedConnection);
    Q_EMIT said(tr("Asking..."));
    m_scan->start();
}

void LineTest::cancel()
{
    if (m_scan) {
        m_scan->cancel();
    }
}

void LineTest::end()
{
    if (!m_scan || !m_scan->isFinished()) {
        return; // of the test before
    }
    const bool found = !m_scan->found().isEmpty();
    const QString error = m_scan->lineError();
    const QString text = found || error.isEmpty() ? foundText() : error;
    m_scan.reset();
    Q_EMIT ended(text, found);
}

QString LineTest::foundText() const
{
    if (!m_scan || m_scan->found().isEmpty()) {
        return tr("No station has answered.");
    }
    QStringList stations;
    for (const FoundStation &found : m_scan->found()) {
        stations.append(tr("station %1 (%2 ms)").arg(found.station).arg(found.meanMs, 0, 'f', 0));
    }
    return tr("Answered: %1").arg(stations.join(QLatin1String(", ")));
}

} // namespace cnet::view
