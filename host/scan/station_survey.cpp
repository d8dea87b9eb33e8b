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

int StationSurvey::mostQuestions(const RegisterInfo &reg)
{
    return ReachSearch::mostQuestions(reg.lowest, reg.highest) + 1;
}

int StationSurvey::mostFrames(const QVector<RegisterInfo> &registers)
{
    int questions = 0;
    for (const RegisterInfo &reg : registers) {
        questions += mostQuestions(reg);
    }
    return 2 * questions + 2 * kMostFramesOfQuestion;
}

void StationSurvey::start()
{
    m_search.emplace(m_reaches.constFirst().reg.lowest, m_reaches.constFirst().reg.highest);
    ask();
}

// What is to be asked for next: at the end once more what was refused.
std::optional<int> StationSurvey::nextAddress() const
{
    const RegisterInfo &reg = m_reaches.at(m_current).reg;
    const auto searched = m_search->next();
    const int refused = m_search->highest().value_or(reg.lowest - 1) + 1;
    return searched || m_confirmed || refused > reg.highest ? searched : refused;
}

// Two answers in a row have different forms, so that none passes for a copy of the one before it.
void StationSurvey::ask()
{
    const auto address = nextAddress();
    if (!address) {
        settle();
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
    if (reply.outcome == Outcome::Answered || reply.outcome == Outcome::Refused) {
        m_silent = 0;
        m_attempts = 0;
        m_form = m_form == ProbeForm::Single ? ProbeForm::Block : ProbeForm::Single;
        handleAnswer(reply);
    } else if (m_attempts < kMostAttempts) {
        ask();
    } else {
        ++m_silent;
        nextRegister();
    }
}

// Any other refusal than that of the address tells nothing of how far a register reaches, unless it
// is that of the lowest one. And what was refused once and then answered tells nothing at all.
void StationSurvey::handleAnswer(const Reply &reply)
{
    const bool answered = reply.outcome == Outcome::Answered;
    const bool tells = answered || refusalCode(reply.answer) == kNoSuchAddress ||
                       nextAddress() == m_reaches.at(m_current).reg.lowest;
    const bool confirms = !m_search->next();
    if (!tells || (confirms && answered)) {
        nextRegister();
        return;
    }
    if (confirms) {
        m_confirmed = true;
    } else {
        m_search->note(answered);
    }
    ask();
}

void StationSurvey::settle()
{
    RegisterReach &reach = m_reaches[m_current];
    const auto highest = m_search->highest();
    reach.state = highest ? RegisterReach::State::Present : RegisterReach::State::Absent;
    reach.highest = highest.value_or(0);
    reach.toLimit = highest == reach.reg.highest;
}

// A station that is gone is not asked for all the rest.
void StationSurvey::nextRegister()
{
    ++m_current;
    m_attempts = 0;
    m_confirmed = false;
    if (m_current == m_reaches.size() || m_silent >= kMostSilent) {
        Q_EMIT ended();
        return;
    }
    const RegisterInfo &reg = m_reaches.at(m_current).reg;
    m_search.emplace(reg.lowest, reg.highest);
    ask();
}

} // namespace cnet
