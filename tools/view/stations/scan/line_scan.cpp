#include "view/stations/scan/line_scan.h"

#include "view/connect/connection_link.h"

#include "host/time/system_clock.h"

namespace cnet::view {

LineScan::LineScan(Line &line, QObject *parent)
    : QObject(parent)
    , m_line(line)
{
    connect(&line, &Line::recalled, this, &LineScan::cancel);
}

LineScan::~LineScan()
{
    if (m_scan) {
        m_scan->disconnect(this);
        m_scan->cancel();
        m_line.disconnect(this);
        m_line.close();
    }
}

void LineScan::start(const ScanOptions &options)
{
    if (m_scan) {
        return;
    }
    m_connection = m_line.connection();
    m_cancelled = false;
    m_lineError.clear();
    m_found.clear();
    m_line.lend();
    m_scan = std::make_unique<Scan>(
        // The simulated PLC belongs to the session's link; a scan has one just like it.
        [this](const LineSettings &settings) { return makeConnectionLink(m_connection, settings); },
        options, SystemClock::instance());
    connect(m_scan.get(), &Scan::trying, this, &LineScan::trying);
    connect(m_scan.get(), &Scan::progressed, this, &LineScan::progressed);
    connect(m_scan.get(), &Scan::stationFound, this, &LineScan::takeFound);
    connect(m_scan.get(), &Scan::surveyed, this, &LineScan::takeFound);
    connect(m_scan.get(), &Scan::finished, this, &LineScan::finish);
    m_state = State::Running;
    Q_EMIT foundChanged();
    Q_EMIT stateChanged();
    // Who hears that may have cancelled it already.
    if (m_scan) {
        m_scan->start();
    }
}

void LineScan::cancel()
{
    if (m_scan) {
        m_cancelled = true;
        m_scan->cancel();
    }
}

Connection LineScan::connectionTo(const FoundStation &found) const
{
    Connection result = m_connection;
    result.station = found.station;
    if (result.kind == Connection::Kind::Serial) {
        result.address.line = found.line;
    }
    return result;
}

void LineScan::takeFound()
{
    m_found = m_scan->found();
    Q_EMIT foundChanged();
}

void LineScan::finish()
{
    m_found = m_scan->found();
    m_lineError = m_scan->lineError();
    // It is still telling that it has finished.
    m_scan.release()->deleteLater();
    m_state = !m_lineError.isEmpty() ? State::LineFailed
              : m_cancelled          ? State::Cancelled
                                     : State::Complete;
    Q_EMIT foundChanged();
    m_line.takeBack();
    Q_EMIT stateChanged();
}

} // namespace cnet::view
