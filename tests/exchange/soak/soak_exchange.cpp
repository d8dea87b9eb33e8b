#include "exchange/soak/soak_exchange.h"

#include "model/register_name.h"
#include "plc/faults/fault_kinds.h"
#include "plc/wire/wire.h"

#include <map>

namespace exchange::soak {

namespace {

constexpr int kTimeoutMs = 300;
constexpr int kIdleMs = 10;
// ACK st(2) command type(2)
constexpr int kCommandPosition = 3;
// and behind that blocks(2) bytes(2), the data, ETX check(2)
constexpr int kDataPosition = 10;
constexpr int kEndLength = 3;

bool begins(const QByteArray &answer, char with)
{
    return !answer.isEmpty() && answer.at(0) == with;
}

/** The text behind the station number: the driver does not look at that. */
QByteArray content(const QByteArray &answer)
{
    return answer.mid(kCommandPosition, answer.size() - kCommandPosition - plc::kBlockCheckBytes);
}

std::vector<int> valuesOf(const model::Item &item)
{
    std::vector<int> values;
    for (std::size_t i = 0; i < static_cast<std::size_t>(item.range.count); ++i) {
        const unsigned value = model::isWordRegister(item.range.name)
                                   ? item.byteAt(2 * i) | item.byteAt(2 * i + 1) << 8U
                                   : (item.byteAt(i) != 0 ? 1U : 0U);
        values.push_back(static_cast<int>(value));
    }
    return values;
}

bool isRecipe(Job job)
{
    return job == Job::RecipeWrite || job == Job::RecipeRead;
}

} // namespace

Exchanger::Exchanger(Bench &bench)
    : m_bench(bench)
{
    bench.line().line().setObserver(
        [this](const plc::Exchange &exchange) { takeServed(exchange); });
}

Exchanger::~Exchanger()
{
    m_bench.line().line().setObserver({});
}

void Exchanger::takeServed(const plc::Exchange &exchange)
{
    ++m_served;
    m_seen = exchange;
    for (const plc::Fault &fault : exchange.fired) {
        m_bench.tally().count("fault: " + plc::faultName(fault.kind).toStdString());
    }
}

void Exchanger::begin()
{
    const Job job = m_bench.model().job();
    m_carriedOut = false;
    if (isRecipe(job)) {
        if (m_bench.model().recipeBlocksDone() > 0 && m_transfer != job) {
            m_bench.tally().excuse("recipe transfer begun where another one was");
        }
        m_transfer = job;
    }
}

void Exchanger::checkServed()
{
    require(m_served == 1 || (m_served == 0 && m_frame.text.size() > plc::kMaxFrameBytes),
            "the line saw no request, or several");
    if (!isWrite() || !begins(m_seen.answer, plc::kAck)) {
        return;
    }
    m_carriedOut = true;
    if (isPatched()) {
        require(m_wordsRead.size() == 1, "a PLC took bits of several words");
        m_bench.plant().carryOutBits(range(), m_values, m_wordsRead[0]);
    } else {
        m_bench.plant().carryOut(range(), m_values);
    }
}

std::optional<Ended> Exchanger::run()
{
    const bool isNew = !isInFlight();
    m_bench.step(model::makeStep(Act::Send));
    if (!isInFlight()) {
        m_bench.tally().count("nothing to send");
        m_bench.line().wait(kIdleMs);
        return std::nullopt;
    }
    m_bench.tally().countFrame();
    m_frame = *m_bench.model().inFlight();
    m_values = valuesOf(m_frame.item);
    if (isNew) {
        begin();
    }
    m_served = 0;
    m_seen = plc::Exchange();
    VirtualLine &line = m_bench.line();
    const qint64 deadlineMs = line.nowMs() + kTimeoutMs;
    line.send(QByteArray::fromStdString(m_frame.text));
    checkServed();
    return judge(line.answer(m_frame.answerSize, deadlineMs));
}

void Exchanger::takeStray(const QByteArray &answer)
{
    if (!isInFlight()) {
        m_bench.step(model::makeStep(Act::Answer), answer);
        m_bench.tally().count("answer while no frame was out");
    }
}

std::optional<Ended> Exchanger::judge(const LineAnswer &answer)
{
    const bool good = model::judge(m_frame, answer.bytes.toStdString()) != model::Verdict::Bad;
    require(good || !begins(m_seen.answer, plc::kAck) || answer.bytes != m_seen.answer,
            "a PLC's own answer is none");
    if (good) {
        checkAccepted(answer);
    }
    const auto readsWaiting = static_cast<long long>(m_bench.model().onceReads().size());
    m_bench.step(model::makeStep(Act::Answer), answer.bytes);
    if (!good) {
        m_bench.line().empty(m_bench.plan().quietMs);
    }
    if (isInFlight()) {
        return std::nullopt;
    }
    countEnd(good, readsWaiting - 1);
    return end(good);
}

// An answer has no number: what comes late upon an earlier request of the same kind and length
// passes for this one's. Everything else must be what the PLC has said.
void Exchanger::checkAccepted(const LineAnswer &answer)
{
    const bool isOwn = content(answer.bytes) == content(m_seen.answer);
    require(isOwn || answer.isLate, "an answer was accepted that no PLC has given");
    if (!isWrite()) {
        m_bench.tally().excuse("read answered by the answer to another request", isOwn ? 0 : 1);
        m_wordsRead = valuesIn(answer.bytes);
        checkRead(isOwn);
        return;
    }
    require(m_carriedOut || answer.isLate, "a write was acknowledged that no PLC carried out");
    m_bench.tally().excuse("write acknowledged by the answer to another request",
                           m_carriedOut ? 0 : 1);
    if (!answer.isLate) {
        checkInPlc();
    }
}

void Exchanger::checkRead(bool isOwn) const
{
    Range asked = unitsOf(range());
    asked.count = m_frame.units;
    require(static_cast<int>(m_wordsRead.size()) == asked.count,
            "an answer has other words than asked");
    for (int i = 0; isOwn && i < asked.count; ++i) {
        require(m_bench.plant().held(asked, i) == m_wordsRead[static_cast<std::size_t>(i)],
                "another place of the PLC was read");
    }
}

void Exchanger::checkInPlc()
{
    const int sent = isPatched() ? bitsInFirstWord(range()) : range().count;
    m_bench.tally().excuse("several bits beyond the end of their word, not sent",
                           sent < range().count ? 1 : 0);
    for (int i = 0; i < sent; ++i) {
        require(m_bench.plant().held(range(), i) == m_values[static_cast<std::size_t>(i)],
                "an acknowledged write is not in the PLC");
    }
}

std::vector<int> Exchanger::valuesIn(const QByteArray &answer) const
{
    const bool isContact = model::isContact(range().name);
    plc::FieldReader reader(answer.mid(kDataPosition, answer.size() - kDataPosition - kEndLength));
    std::vector<int> values;
    while (const auto value = reader.takeHex(isContact ? 2 : 4)) {
        values.push_back(isContact ? *value & 1 : *value);
    }
    return values;
}

void Exchanger::countEnd(bool good, long long readsDropped)
{
    static const std::map<Job, const char *> kNames = {{Job::Write, "write"},
                                                       {Job::OnceRead, "condition read"},
                                                       {Job::Cyclic, "cyclic read"},
                                                       {Job::RecipeWrite, "recipe block written"},
                                                       {Job::RecipeRead, "recipe block read"}};
    const Job job = m_bench.model().job();
    Tally &tally = m_bench.tally();
    tally.count(kNames.at(job) + std::string(good ? ": done" : ": given up"));
    if (good) {
        return;
    }
    tally.excuse("condition read dropped with one that was given up",
                 job == Job::OnceRead ? readsDropped : 0);
    tally.excuse("write given up that the PLC had carried out", m_carriedOut ? 1 : 0);
    tally.excuse("several bits in two words, refused by every PLC",
                 isPatched() && m_wordsRead.size() > 1 ? 1 : 0);
    tally.excuse("write of 59 or 60 words, longer than a PLC's frame",
                 m_frame.text.size() > plc::kMaxFrameBytes ? 1 : 0);
}

Ended Exchanger::end(bool good)
{
    const Job job = m_bench.model().job();
    if (!isRecipe(job)) {
        m_bench.look(range());
    }
    return {job, range(), good, begins(m_seen.answer, plc::kNak)};
}

} // namespace exchange::soak
