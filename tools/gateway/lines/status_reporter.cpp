#include "gateway/lines/status_reporter.h"

#include <utility>

namespace cnet::gateway {

namespace {

const QLatin1String kNotRead("not read yet");

QString causeOf(StationState state)
{
    switch (state) {
    case StationState::Away:
        return QLatin1String("no answer");
    case StationState::Disturbed:
        return QLatin1String("answers cannot be used");
    case StationState::Answers:
    case StationState::Refuses:
        return QString();
    case StationState::Unknown:
        break;
    }
    return kNotRead;
}

} // namespace

StatusReporter::StatusReporter(const QString &line, Session &session, Clock &clock, Taker taker)
    : m_session(session)
    , m_clock(clock)
    , m_taker(std::move(taker))
{
    m_line.line = line;
    become(m_line, kNotRead);
    connect(&session, &Session::stateChanged, this, &StatusReporter::lookAtLine);
    connect(&session, &Session::openFailed, this, &StatusReporter::lookAtLine);
    connect(&session, &Session::stationChanged, this, [this](int station) {
        const auto known = m_stations.find(station);
        if (known != m_stations.end()) {
            lookAtStation(station, known->second);
        }
    });
}

void StatusReporter::watch(const QVector<int> &stations)
{
    for (auto known = m_stations.begin(); known != m_stations.end();) {
        if (stations.contains(known->first)) {
            ++known;
        } else {
            become(known->second, QLatin1String("not watched any more"));
            known = m_stations.erase(known);
        }
    }
    for (const int station : stations) {
        const auto [added, isNew] = m_stations.try_emplace(station);
        if (isNew) {
            added->second.line = m_line.line;
            added->second.station = station;
            lookAtStation(station, added->second);
        }
    }
}

void StatusReporter::end(const QString &cause)
{
    become(m_line, cause);
    for (auto &[station, status] : m_stations) {
        become(status, cause);
    }
    m_isEnded = true;
}

void StatusReporter::lookAtLine()
{
    switch (m_session.state()) {
    case Session::State::Open:
        become(m_line, QString());
        break;
    case Session::State::Opening:
    case Session::State::Lost:
    case Session::State::Closed:
        become(m_line, m_session.lineError().isEmpty() ? QString(kNotRead) : m_session.lineError());
        break;
    }
    for (auto &[station, status] : m_stations) {
        lookAtStation(station, status);
    }
}

void StatusReporter::lookAtStation(int station, LineStatus &status)
{
    const bool isOpen = m_session.state() == Session::State::Open;
    const QString noLine = m_line.cause == kNotRead
                               ? QString(kNotRead)
                               : QLatin1String("the line is down: ") + m_line.cause;
    become(status, isOpen ? causeOf(m_session.stations().value(station).state) : noLine);
}

// Since when it is good or bad: another cause makes no other beginning.
void StatusReporter::become(LineStatus &status, const QString &cause)
{
    const LineStatus::State state =
        cause.isEmpty() ? LineStatus::State::Good : LineStatus::State::Bad;
    const bool isFirst = status.atMs == 0;
    if (m_isEnded || (!isFirst && state == status.state && cause == status.cause)) {
        return;
    }
    if (isFirst || state != status.state) {
        status.atMs = m_clock.wallMs();
    }
    status.state = state;
    status.cause = cause;
    m_taker(status);
}

} // namespace cnet::gateway
