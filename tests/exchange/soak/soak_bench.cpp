#include "exchange/soak/soak_bench.h"

namespace exchange::soak {

namespace {

constexpr std::size_t kTraced = 80;
constexpr int kLooks = 2; // the host, at each place that it hears of

} // namespace

Bench::Bench(const Plan &plan, Tally &tally)
    : m_plan(plan)
    , m_tally(tally)
    , m_plant(m_line.bus(), tally)
    , m_both(plan.severalThreads ? model::HostThreads::Several : model::HostThreads::One)
{
    m_both.step(model::makeStep(Act::Start, 0, plan.properties()));
    m_both.step(model::makeStep(Act::Listen, kLooks));
    for (const StationPlan &station : plan.stations) {
        if (station.isThere) {
            m_plant.add(station.number, station.model, station.seed);
        }
    }
}

void Bench::step(const Operation &operation, const QByteArray &answer)
{
    const bool mayCallBack = operation.act == Act::Write || operation.act == Act::Answer;
    if (mayCallBack && m_reaction && m_both.waitingWithin() == 0) {
        for (const Operation &within : m_reaction()) {
            trace(textOf(within));
            m_both.step(within);
        }
    }
    if (m_traced) {
        trace(textOf(operation) + ' ' + answer.toPercentEncoding().toStdString());
    }
    m_both.step(operation, answer.toStdString());
}

void Bench::show(const std::vector<Range> &screen)
{
    m_screen = screen;
    step(model::makeStep(Act::Monitor, screen));
    for (const Range &block : model().cyclicReads()) {
        require(block.count <= m_plan.longestBlock(), "a block has more words than it may have");
    }
}

void Bench::restart()
{
    m_tally.count("write cut off by a new start", static_cast<long long>(model().writes().size()));
    m_tally.count("condition read cut off by a new start",
                  static_cast<long long>(model().onceReads().size()));
    m_tally.count("new start of communication");
    step(model::makeStep(Act::Start, 0, m_plan.properties()));
    show(m_screen);
}

const model::Bytes &Bench::look(const Range &range)
{
    step(model::makeStep(Act::Look, {range}));
    return m_both.shown().bytes;
}

void Bench::lookAtAll()
{
    for (const Range &place : model().values().places()) {
        look(place);
    }
}

void Bench::setReaction(const std::function<std::vector<Operation>()> &reaction)
{
    m_reaction = reaction;
    m_both.forgetWithin();
}

void Bench::trace(const std::string &step)
{
    if (!m_traced) {
        return;
    }
    m_trace.push_back(step);
    if (m_trace.size() > kTraced) {
        m_trace.pop_front();
    }
}

std::string Bench::traceText() const
{
    std::string all;
    for (const std::string &step : m_trace) {
        all += step + '\n';
    }
    return all;
}

} // namespace exchange::soak
