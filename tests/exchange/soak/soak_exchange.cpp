#include "exchange/soak/soak_exchange.h"

#include "plc/wire.h"
#include "support/driver_fixture.h"

namespace exchange::soak {

Exchanger::Exchanger(Bench &bench)
    : m_bench(bench)
{
    bench.host().line().line().setObserver(
        [this](const plc::Exchange &exchange) { takeServed(exchange); });
}

Exchanger::~Exchanger()
{
    m_bench.host().line().line().setObserver({});
}

void Exchanger::takeServed(const plc::Exchange &exchange)
{
    ++m_served;
    m_seen = exchange;
    for (const plc::Fault &fault : exchange.fired) {
        m_bench.tally().countFault(fault.kind);
    }
}

void Exchanger::begin(JobKind kind)
{
    m_kind = kind;
    m_inFlight = kind != JobKind::None;
    m_job = m_bench.jobs().current();
    m_throughWords = kind == JobKind::Write && goesThroughWords(m_job.range);
    m_hasReadHalf = m_throughWords;
    m_wordsRead.clear();
    m_request.clear();
    m_bad = 0;
    m_carriedOut = false;
    if (kind == JobKind::RecipeWrite) {
        m_job.values = m_bench.recipeWords(m_bench.jobs().recipeOffset(), m_job.range.count);
    }
}

bool Exchanger::isWriteFrame() const
{
    return m_kind == JobKind::RecipeWrite || (m_kind == JobKind::Write && !m_hasReadHalf);
}

int Exchanger::wordsInAnswer() const
{
    return m_hasReadHalf ? wordsRead(m_job.range) : m_job.range.count;
}

int Exchanger::goodLength() const
{
    if (isWriteFrame()) {
        return kAcknowledgement;
    }
    const int data = m_job.range.reg->isContact() ? 2 : 4 * wordsInAnswer();
    return kDataPosition + data + kEndLength;
}

void Exchanger::checkFrame() const
{
    const FRAME_PRO &frame = m_bench.host().frame();
    const VARIABLE &var = frame.var;
    const Range served = rangeOf(var.stationNo, var.regName, var.startAddr, var.count);
    require(served == m_job.range, [&] {
        return QString::fromLatin1("the frame serves %1, but it is the turn of %2")
            .arg(text(served), text(m_job.range));
    });
    require(frame.recvLen == goodLength(), "the driver waits for another length of answer");
    int place = 0;
    for (const int value : m_job.values) {
        const int there = m_job.range.reg->isWord()
                              ? var.data[2 * place] | var.data[2 * place + 1] << 8
                              : var.data[place];
        require(there == value, "the frame's request carries other values");
        ++place;
    }
    const QByteArray &request = m_bench.host().lastTurn().request;
    require(m_request.isEmpty() || m_request == request, "a frame changed when it was sent again");
    require((request.at(kCommandPosition) == 'w') == isWriteFrame(),
            "a write was sent as a reading, or a reading as a write");
}

void Exchanger::checkServed()
{
    require(m_served == 1 || (m_served == 0 && m_request.size() > plc::kMaxFrameBytes),
            "the line saw no request, or several");
    if (m_served == 1 && isWriteFrame() && isPositive(m_seen.answer)) {
        m_carriedOut = true;
        if (m_throughWords) {
            require(wordsRead(m_job.range) == 1, "a PLC took bits of several words");
            m_bench.plant().carryOutBits(m_job.range, m_job.values, m_wordsRead.at(0));
        } else {
            m_bench.plant().carryOut(m_job.range, m_job.values);
        }
    }
}

std::optional<Ended> Exchanger::run()
{
    HostLoop &host = m_bench.host();
    if (!m_inFlight) {
        begin(
            m_bench.jobs().begin(host.isRequested(Recipe::Write), host.isRequested(Recipe::Read)));
    }
    m_served = 0;
    m_seen = plc::Exchange();
    if (!host.send()) {
        require(!m_inFlight, [this] {
            return QLatin1String("nothing was sent, but it is the turn of ") + text(m_job.range);
        });
        m_bench.tally().count(Event::Idle);
        return std::nullopt;
    }
    require(m_inFlight, "a frame was sent, but it is the turn of none");
    m_bench.tally().countFrame();
    checkFrame();
    m_request = host.lastTurn().request;
    checkServed();
    m_bench.listen();
    const int result = host.receive();
    m_bench.trace([&] {
        return QString::fromLatin1("%1 = %2: %3")
            .arg(text(m_job.range), QString::number(result),
                 QString::fromLatin1(host.lastTurn().answer.toPercentEncoding()));
    });
    return judge(result);
}

} // namespace exchange::soak
