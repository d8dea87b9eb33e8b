#include "exchange/soak/soak_rest.h"

#include "model/register_name.h"

#include <algorithm>

namespace exchange::soak {

void Rest::run()
{
    m_bench.trace("rest");
    m_bench.setReaction({});
    Plant &plant = m_bench.plant();
    plant.allComeBack();
    for (const StationPlan &station : m_bench.plan().stations) {
        plant.setFaults(station.number, {});
    }
    // What was still under way to the host is over before it goes on.
    m_bench.line().empty(2 * m_bench.plan().longestDelayMs + 1);
    drain();
    readTwice();
    m_bench.lookAtAll();
    plant.compareAll();
    for (const Range &key : m_bench.screen()) {
        for (int i = 0; i < key.count; ++i) {
            checkPlace({key.station, key.name, key.start + i, 1});
        }
    }
}

bool Rest::isOver()
{
    return !m_exchanger.isInFlight() && m_bench.model().writes().empty() &&
           m_bench.model().onceReads().empty() && !m_bench.isRecipeRequested();
}

// Each job takes at most two frames, each of them as often as bad answers are borne; between ten
// jobs goes one cyclic read.
void Rest::drain()
{
    const model::SchedulerModel &model = m_bench.model();
    const auto waiting =
        model.writes().size() + model.onceReads().size() + 2 * model.recipeBlocks();
    const auto frames = 2 * static_cast<std::size_t>(std::max(1, m_bench.plan().maxRetries));
    for (auto left = 2 * frames * (waiting + 1); !isOver(); --left) {
        require(left > 0, "jobs go on waiting without faults");
        m_exchanger.run();
    }
}

void Rest::readTwice()
{
    const std::size_t blocks = m_bench.model().cyclicReads().size();
    for (auto left = 2 * blocks; left > 0;) {
        const auto ended = m_exchanger.run();
        if (!ended) {
            continue;
        }
        checkBlock(*ended);
        if (left <= blocks) {
            m_blocks.push_back(*ended);
        }
        --left;
    }
}

// Without faults a block fails only where the station is missing or has not all of its words.
void Rest::checkBlock(const Ended &ended) const
{
    require(ended.job == Job::Cyclic, "a job that nobody asked for");
    if (ended.good) {
        return;
    }
    const Plant &plant = m_bench.plant();
    const bool isThere = plant.isThere(ended.range.station);
    const bool isWhole =
        isThere && plant.held(ended.range) && plant.held(ended.range, ended.range.count - 1);
    require(!isWhole && ended.wasRefused == isThere, "a block fails without faults");
    m_bench.tally().excuse(isThere ? "at rest: block refused by a PLC that has not all of it"
                                   : "at rest: station that is not there");
}

void Rest::checkPlace(const Range &place)
{
    bool isRead = false;
    bool isGood = false;
    for (const Ended &block : m_blocks) {
        const bool isHere = reaches(block.range, place);
        isRead = isRead || isHere;
        isGood = isGood || (isHere && block.good);
    }
    const std::string where = place.name + ' ' + std::to_string(place.start) + " of station " +
                              std::to_string(place.station);
    require(isRead, [&] { return "no block reads " + where; });
    if (!isGood) {
        return; // the block was counted
    }
    const model::Bytes &bytes = m_bench.look(place);
    const int seen = bytes[0] | (model::isWordRegister(place.name) ? bytes[1] << 8 : 0);
    const int held = m_bench.plant().held(place).value_or(-1);
    if (held == seen) {
        return;
    }
    const std::string excuse = excuseFor(place);
    require(!excuse.empty(), [&] {
        return "at rest the panel shows " + std::to_string(seen) + " and the PLC holds " +
               std::to_string(held) + " in " + where;
    });
    m_bench.tally().excuse("at rest: panel's value shown, " + excuse);
}

// Where no write ends a wait, only a reading with a new value does, and while any write waits not
// even that.
std::string Rest::excuseFor(const Range &place) const
{
    const model::SchedulerModel &model = m_bench.model();
    if (!model.values().isPending(place)) {
        return std::string();
    }
    if (!m_bench.plan().isSent(place.name)) {
        return "writes that are not sent";
    }
    const std::vector<Range> &displaced = model.writes().displaced();
    if (std::any_of(displaced.begin(), displaced.end(),
                    [&place](const Range &written) { return reaches(written, place); })) {
        return "write displaced";
    }
    return model.values().isMarked(place) ? "second mark of a bit left" : std::string();
}

} // namespace exchange::soak
