#include "simulation/link_sim.h"

#include <utility>

namespace cnet {

namespace {

using plc::Point;
using plc::PointKind;

plc::Motion ramp(char device, PointKind kind, int count, int high, int stepMs)
{
    plc::Motion ramp;
    ramp.first = Point{device, kind, 0};
    ramp.count = count;
    ramp.high = high;
    ramp.stepMs = stepMs;
    return ramp;
}

// What an example in the documentation names should move, at a pace that the eye can follow.
std::vector<plc::Motion> livelyValues()
{
    return {
        ramp('D', PointKind::Word, 1000, 9999, 1000), ramp('T', PointKind::Word, 32, 600, 100),
        ramp('T', PointKind::Contact, 32, 1, 3000),   ramp('C', PointKind::Word, 32, 9999, 2000),
        ramp('C', PointKind::Contact, 32, 1, 5000),   ramp('M', PointKind::Word, 16, 65535, 500),
        ramp('P', PointKind::Word, 8, 65535, 250),
    };
}

} // namespace

LinkSim::LinkSim(const QString &name, QObject *parent)
    : Link(parent)
    , m_line(m_bus)
    , m_name(name)
{
    m_clock.start();
    m_due.setSingleShot(true);
    m_due.setTimerType(Qt::PreciseTimer);
    connect(&m_due, &QTimer::timeout, this, &LinkSim::deliver);
}

LinkSim::LinkSim(const QVector<int> &stations, int baud, QObject *parent)
    : LinkSim(QLatin1String("simulated PLC"), parent)
{
    addStations(stations);
    m_line.setBaud(baud);
}

LinkSim::LinkSim(std::shared_ptr<const plc::Replay> replay, const QString &name, QObject *parent)
    : LinkSim(name, parent)
{
    for (const int station : replay->stations()) {
        m_bus.add(station);
    }
    m_bus.setReplay(std::move(replay));
}

void LinkSim::addStations(const QVector<int> &stations)
{
    for (const int station : stations) {
        if (m_bus.find(station) == nullptr) {
            m_bus.add(station).motions = livelyValues();
        }
    }
}

void LinkSim::open()
{
    if (m_open) {
        return;
    }
    m_open = true;
    Q_EMIT opened();
}

void LinkSim::close()
{
    m_open = false;
    m_due.stop();
    m_underway.clear();
}

void LinkSim::send(const QByteArray &bytes)
{
    if (!m_open) {
        return;
    }
    for (const plc::Chunk &chunk : m_line.receive(bytes, m_clock.elapsed())) {
        m_underway.push_back(chunk);
    }
    if (!m_underway.empty() && !m_due.isActive()) {
        m_due.start(m_underway.front().delayMs);
    }
}

void LinkSim::deliver()
{
    if (m_underway.empty()) {
        return;
    }
    const QByteArray bytes = m_underway.front().bytes;
    m_underway.pop_front();
    if (!m_underway.empty()) {
        m_due.start(m_underway.front().delayMs);
    }
    Q_EMIT received(bytes);
}

} // namespace cnet
