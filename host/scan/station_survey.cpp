#include "host/scan/station_survey.h"

#include "host/wire/frame_words.h"

namespace cnet {

namespace {

const int kAttempts = 3;
const int kMostSilent = 2;
const int kNoSuchAddress = 0x1132;
// So often an address must be refused, by a station that was never caught and by one that was.
const int kBelievedRefusals = 2;
const int kDoubtedRefusals = 3;
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
        questions += kDoubtedRefusals * mostQuestions(reg);
    }
    return questions + 2 * kMostFramesOfQuestion;
}

void StationSurvey::start()
{
    beginRegister();
}

void StationSurvey::beginRegister()
{
    const RegisterInfo &reg = m_reaches.at(m_current).reg;
    m_attempts = 0;
    m_absences = 0;
    m_refusals = 0;
    m_confirmed = false;
    m_search.emplace(reg.lowest, reg.highest);
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
    if (!isRepeating()) {
        Q_EMIT asked();
    }
}

void StationSurvey::handleEnded(const Reply &reply)
{
    if (reply.outcome == Outcome::Answered || reply.outcome == Outcome::Refused) {
        m_silent = 0;
        m_attempts = 0;
        m_form = m_form == ProbeForm::Single ? ProbeForm::Block : ProbeForm::Single;
        handleAnswer(reply);
    } else if (m_attempts < kAttempts) {
        ask();
    } else {
        ++m_silent;
        nextRegister();
    }
}

// At the end one more refusal is enough: the address was refused before.
bool StationSurvey::isAbsent() const
{
    const int enough = m_doubted ? kDoubtedRefusals : kBelievedRefusals;
    return m_absences >= (m_search->next() ? enough : 1);
}

// Any other refusal than that of the address tells nothing of how far a register reaches, unless it
// is that of the lowest one.
void StationSurvey::handleAnswer(const Reply &reply)
{
    const bool answered = reply.outcome == Outcome::Answered;
    if (!answered) {
        ++(refusalCode(reply.answer) == kNoSuchAddress ? m_absences : m_refusals);
        if (!isAbsent() && m_refusals < kDoubtedRefusals) {
            ask();
            return;
        }
    } else if (!m_search->next()) {
        noteContradiction();
        return;
    }
    const bool tells =
        answered || isAbsent() || nextAddress() == m_reaches.at(m_current).reg.lowest;
    m_doubted = m_doubted || (answered && isRepeating());
    m_absences = 0;
    m_refusals = 0;
    if (!tells) {
        nextRegister();
        return;
    }
    if (m_search->next()) {
        m_search->note(answered);
    } else {
        m_confirmed = true;
    }
    ask();
}

// What was refused again and again and then answered tells nothing. Of a station that was trusted
// until then it is found out anew, with less trust.
void StationSurvey::noteContradiction()
{
    if (m_doubted) {
        nextRegister();
        return;
    }
    m_doubted = true;
    beginRegister();
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
    if (m_current == m_reaches.size() || m_silent >= kMostSilent) {
        Q_EMIT ended();
        return;
    }
    beginRegister();
}

} // namespace cnet
