#include "host/scan/station_search.h"

#include "host/wire/characters.h"
#include "host/wire/fence_frame.h"

namespace cnet {

namespace {

const int kRounds = 2;
// The answer of the last station may be late, too.
const int kLingerMs = 500;

} // namespace

StationSearch::StationSearch(Conversation &conversation, Clock &clock, const QVector<int> &stations,
                             Effort effort, int form, QObject *parent)
    : QObject(parent)
    , m_conversation(conversation)
    , m_alarm(clock.makeAlarm())
    , m_stations(stations)
    , m_waiting(stations)
    , m_effort(effort)
    , m_form(form)
{
    connect(&conversation, &Conversation::ended, this, &StationSearch::handleEnded);
    connect(&conversation, &Conversation::answeredLate, this,
            [this](int station, const QByteArray &answer, double lateMs) {
                if (answer.startsWith(kAck)) {
                    note(station, lateMs);
                }
            });
    connect(m_alarm.get(), &Alarm::fired, this, &StationSearch::ended);
}

void StationSearch::start()
{
    askNext();
}

void StationSearch::askNext()
{
    while (!m_waiting.isEmpty() && m_found.contains(m_waiting.constFirst())) {
        m_waiting.removeFirst();
    }
    if (m_waiting.isEmpty() && m_round < kRounds && m_found.size() < m_stations.size() &&
        (m_effort == Effort::Thorough || !m_found.isEmpty())) {
        ++m_round;
        m_waiting = m_stations;
        askNext();
        return;
    }
    if (m_waiting.isEmpty()) {
        m_alarm->set(m_found.size() < m_stations.size() ? kLingerMs : 0);
        return;
    }
    const int station = m_waiting.takeFirst();
    const FenceFrame frame = fenceFrame(station, m_form);
    m_conversation.ask({station, frame.request, frame.answerLength});
    Q_EMIT asked();
}

// All refusals of a command look alike, so only a positive answer has the form that was asked for.
void StationSearch::handleEnded(const Reply &reply)
{
    if (reply.outcome == Outcome::Answered) {
        note(reply.station, reply.tookMs);
    }
    askNext();
}

void StationSearch::note(int station, double tookMs)
{
    if (m_stations.contains(station) && !m_found.contains(station)) {
        m_found.append(station);
        Q_EMIT found(station, tookMs);
    }
}

} // namespace cnet
