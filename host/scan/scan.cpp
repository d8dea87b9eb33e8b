#include "host/scan/scan.h"

#include "host/exchange/conversation.h"
#include "host/scan/station_search.h"
#include "host/scan/station_survey.h"
#include "host/wire/fence_frame.h"

#include <algorithm>

namespace cnet {

namespace {

// Of a PLC, while settings are searched for: most answer within a few tens of milliseconds.
const int kGlanceMs = 150;
// What is older than that was lost; no time-out is longer either.
const int kLongestAnswerMs = 10000;
const int kFenceCharacters = 21 + 17;

} // namespace

Scan::Scan(LinkFactory makeLink, const ScanOptions &options, Clock &clock, QObject *parent)
    : QObject(parent)
    , m_makeLink(std::move(makeLink))
    , m_options(options)
    , m_clock(clock)
    , m_step(clock.makeAlarm())
    , m_times(std::make_unique<ResponseTimes>())
{
    static_assert(std::tuple_size<decltype(m_formUsedMs)>::value == kFenceForms, "each form");
    m_formUsedMs.fill(-kLongestAnswerMs);
    connect(m_step.get(), &Alarm::fired, this, &Scan::step);
}

Scan::~Scan() = default;

int Scan::mostSearchFrames() const
{
    const int stations = static_cast<int>(m_options.stations.size());
    const int tries = static_cast<int>(m_options.settings.size());
    // Only the settings with which something answers have a second round.
    return stations * (tries - 1) + StationSearch::mostFrames(stations);
}

int Scan::mostSurveyFrames() const
{
    return m_options.registers.isEmpty() ? 0 : StationSurvey::mostFrames(m_options.registers);
}

void Scan::start()
{
    m_phase = Phase::Searching;
    m_step->set(0);
}

void Scan::cancel()
{
    if (m_phase != Phase::Finished) {
        end();
    }
}

// From the event loop, so that nothing is deleted while it reports.
void Scan::step()
{
    m_search.reset();
    m_survey.reset();
    if (m_phase == Phase::Searching && m_found.isEmpty() && m_tried < m_options.settings.size()) {
        trySettings();
        return;
    }
    m_phase = Phase::Surveying;
    if (m_options.registers.isEmpty() || m_surveyed == m_found.size()) {
        end();
        return;
    }
    survey();
}

void Scan::trySettings()
{
    ++m_tried;
    Q_EMIT trying(line());
    m_conversation.reset();
    m_link = m_makeLink(line());
    const int lineMs = kFenceCharacters * line().characterMicroseconds() / 1000;
    const bool searches = m_options.settings.size() > 1;
    const int glanceMs = searches ? kGlanceMs + 2 * lineMs : 0;
    *m_times = ResponseTimes(
        {m_options.timeoutMs > 0 ? m_options.timeoutMs : glanceMs, line().characterMicroseconds()});
    m_conversation =
        std::make_unique<Conversation>(*m_link, m_clock, *m_times, ConversationSettings());
    wireConversation();
    connect(m_link.get(), &Link::failed, this, &Scan::fail);
    connect(m_link.get(), &Link::opened, this, &Scan::search);
    m_link->open();
}

void Scan::wireConversation()
{
    connect(m_conversation.get(), &Conversation::sent, this, [this](const QByteArray &frame) {
        ++m_frames;
        Q_EMIT frameSent(frame);
    });
    connect(m_conversation.get(), &Conversation::ended, this, &Scan::noteAnswer);
    connect(m_conversation.get(), &Conversation::fenceEnded, this, &Scan::frameEnded);
}

// A form is free again when its last answer, to whatever settings, was lost for certain.
int Scan::takeForm()
{
    const qint64 nowMs = m_clock.nowMs();
    auto form = std::find_if(m_formUsedMs.begin(), m_formUsedMs.end(),
                             [nowMs](qint64 usedMs) { return nowMs - usedMs >= kLongestAnswerMs; });
    if (form == m_formUsedMs.end()) {
        form = std::min_element(m_formUsedMs.begin(), m_formUsedMs.end());
    }
    return static_cast<int>(form - m_formUsedMs.begin());
}

void Scan::search()
{
    m_form = takeForm();
    const auto effort = m_options.settings.size() == 1 ? StationSearch::Effort::Thorough
                                                       : StationSearch::Effort::Once;
    m_search = std::make_unique<StationSearch>(*m_conversation, m_clock, m_options.stations, effort,
                                               m_form);
    connect(m_search.get(), &StationSearch::found, this, &Scan::noteFound);
    connect(m_search.get(), &StationSearch::asked, this, [this] {
        m_formUsedMs.at(static_cast<std::size_t>(m_form)) = m_clock.nowMs();
        noteQuestion();
    });
    connect(m_search.get(), &StationSearch::ended, this, [this] { m_step->set(0); });
    m_search->start();
}

void Scan::noteFound(int station, double tookMs)
{
    FoundStation found;
    found.station = station;
    found.line = line();
    found.noteAnswer(tookMs);
    m_found.append(found);
    Q_EMIT stationFound(station);
}

void Scan::noteAnswer(const Reply &reply)
{
    const bool came = reply.outcome == Outcome::Answered || reply.outcome == Outcome::Refused;
    for (FoundStation &found : m_found) {
        if (came && found.station == reply.station) {
            found.noteAnswer(reply.tookMs);
        }
    }
    Q_EMIT frameEnded(reply);
}

void Scan::noteQuestion()
{
    ++m_questions;
    const int stations = static_cast<int>(m_options.stations.size());
    const int left = m_found.isEmpty() ? stations * static_cast<int>(m_options.settings.size())
                                       : stations * m_tried;
    int registers = 0;
    for (const RegisterInfo &reg : m_options.registers) {
        registers += StationSurvey::mostQuestions(reg);
    }
    const int total = left + registers * static_cast<int>(m_found.size());
    Q_EMIT progressed(std::min(m_questions, total), total);
}

// The stations are known now, and so is what they take.
void Scan::survey()
{
    FoundStation &next = m_found[m_surveyed];
    if (m_surveyed == 0) {
        ResponseTimes usual({m_options.timeoutMs, line().characterMicroseconds()});
        for (const FoundStation &found : m_found) {
            usual.note(found.station, found.worstMs);
        }
        *m_times = usual;
    }
    m_survey = std::make_unique<StationSurvey>(*m_conversation, next.station, m_options.registers);
    connect(m_survey.get(), &StationSurvey::asked, this, &Scan::noteQuestion);
    connect(m_survey.get(), &StationSurvey::ended, this, [this] {
        FoundStation &found = m_found[m_surveyed];
        found.registers = m_survey->reaches();
        ++m_surveyed;
        m_step->set(0);
        Q_EMIT surveyed(found.station);
    });
    m_survey->start();
}

void Scan::fail(const QString &reason)
{
    m_lineError = QString::fromLatin1("%1: %2").arg(m_link->name(), reason);
    end();
}

// What a station did not tell until now stays unknown.
void Scan::end()
{
    if (m_phase == Phase::Finished) {
        return;
    }
    if (m_survey && m_surveyed < m_found.size()) {
        m_found[m_surveyed].registers = m_survey->reaches();
    }
    m_phase = Phase::Finished;
    m_step->cancel();
    if (m_conversation) {
        m_conversation->cancel();
    }
    if (m_link) {
        m_link->disconnect(this);
        m_link->close();
    }
    Q_EMIT finished();
}

} // namespace cnet
