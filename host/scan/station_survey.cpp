#include "host/scan/station_survey.h"

#include "host/wire/frame_words.h"

namespace cnet {

namespace {

const int kMostAttempts = 3;
const int kMostSilent = 2;
const int kNoSuchAddress = 0x1132;
// A question with the fences that may go out before it and between its repetitions.
const int kMostFramesOfQuestion = 8;

} // namespace

StationSurvey::StationSurvey(Conversation &conversation, int station,
                             const QVector<RegisterInfo> &registers, QObject *parent)
    : QObject(parent)
    , m_conversation(conversation)
    , m_station(station)
    , m_form(ProbeForm::Single)
    , m_framesLeft(mostFrames(registers))
{
    for (const RegisterInfo &reg : registers) {
        RegisterReach reach;
        reach.reg = reg;
        m_reaches.append(reach);
    }
    connect(&conversation, &Conversation::sent, this, [this] { --m_framesLeft; });
    connect(&conversation, &Conversation::ended, this, &StationSurvey::handleEnded);
}

int StationSurvey::mostFrames(const QVector<RegisterInfo> &registers)
{
    int questions = 0;
    for (const RegisterInfo &reg : registers) {
        questions += ReachSearch::mostQuestions(reg.lowest, reg.highest);
    }
    return 2 * questions + 2 * kMostFramesOfQuestion;
}

void StationSurvey::start()
{
    m_search.emplace(m_reaches.constFirst().reg.lowest, m_reaches.constFirst().reg.highest);
    ask();
}

// Two answers in a row have different forms, so that none passes for a copy of the one before it.
void StationSurvey::ask()
{
    const auto address = m_search->next();
    if (!address) {
        settle(*m_search);
        nextRegister();
        return;
    }
    if (m_framesLeft < kMostFramesOfQuestion) {
        Q_EMIT ended();
        return;
    }
    ++m_attempts;
    m_conversation.ask(probeQuestion(m_station, m_reaches.at(m_current).reg, *address, m_form));
    Q_EMIT asked();
}

void StationSurvey::handleEnded(const Reply &reply)
{
    const bool answered = reply.outcome == Outcome::Answered;
    const bool refused = reply.outcome == Outcome::Refused;
    if (!answered && !refused) {
        if (m_attempts < kMostAttempts) {
            ask();
        } else {
            ++m_silent;
            nextRegister();
        }
        return;
    }
    m_silent = 0;
    m_attempts = 0;
    m_form = m_form == ProbeForm::Single ? ProbeForm::Block : ProbeForm::Single;
    // Any other refusal tells nothing of the address, unless it is that of the lowest one.
    const bool tells = answered || refusalCode(reply.answer) == kNoSuchAddress ||
                       m_search->next() == m_reaches.at(m_current).reg.lowest;
    if (!tells) {
        nextRegister();
        return;
    }
    if (refused && m_search->next() == m_reaches.at(m_current).reg.lowest) {
        m_reaches[m_current].state = RegisterReach::State::Absent;
        nextRegister();
        return;
    }
    m_search->note(answered);
    ask();
}

void StationSurvey::settle(const ReachSearch &search)
{
    RegisterReach &reach = m_reaches[m_current];
    reach.state = RegisterReach::State::Present;
    reach.highest = search.highest().value_or(0);
    reach.toLimit = reach.highest == reach.reg.highest;
}

// A station that is gone is not asked for all the rest.
void StationSurvey::nextRegister()
{
    ++m_current;
    m_attempts = 0;
    if (m_current == m_reaches.size() || m_silent >= kMostSilent) {
        Q_EMIT ended();
        return;
    }
    const RegisterInfo &reg = m_reaches.at(m_current).reg;
    m_search.emplace(reg.lowest, reg.highest);
    ask();
}

} // namespace cnet
