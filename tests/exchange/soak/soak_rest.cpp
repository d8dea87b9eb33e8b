#include "exchange/soak/soak_rest.h"

#include <algorithm>

namespace exchange::soak {

namespace {

/** The block reads the unit of this place. */
bool covers(const Range &block, const Range &place)
{
    const Register &words = wordsOf(*place.reg);
    const int unit = place.reg->isBit() ? place.address / kBitsPerWord : place.address;
    return block.station == place.station && block.reg == &words && block.address <= unit &&
           unit < block.address + block.count;
}

} // namespace

void Rest::run()
{
    m_bench.trace([] { return QString::fromLatin1("rest"); });
    Plant &plant = m_bench.plant();
    plant.allComeBack();
    for (const StationPlan &station : m_bench.plan().stations) {
        plant.setFaults(station.number, {});
    }
    // What was still under way to the host is over before it goes on.
    m_bench.host().line().empty(2 * m_bench.plan().longestDelayMs + 1);
    drain();
    readTwice();
    m_bench.view().compareAll();
    plant.compareAll();
    checkScreen();
}

bool Rest::isOver()
{
    return !m_exchanger.isInFlight() && m_bench.jobs().writes().empty() &&
           m_bench.jobs().readings().empty() && !m_bench.isRecipeRequested();
}

// Each job takes at most two frames, each of them as often as bad answers are borne; between ten
// jobs goes one cyclic read.
void Rest::drain()
{
    const Jobs &jobs = m_bench.jobs();
    const auto waiting = jobs.writes().size() + jobs.readings().size() + 2 * jobs.recipe().size();
    const auto frames = 2 * static_cast<std::size_t>(std::max(1, m_bench.plan().maxRetries));
    for (auto left = 2 * frames * (waiting + 1); !isOver(); --left) {
        require(left > 0, "jobs go on waiting without faults");
        m_exchanger.run();
    }
}

void Rest::readTwice()
{
    for (auto left = 2 * m_bench.jobs().cyclic().size(); left > 0;) {
        const auto ended = m_exchanger.run();
        if (!ended) {
            continue;
        }
        checkBlock(*ended);
        if (left <= m_bench.jobs().cyclic().size()) {
            m_blocks.push_back(*ended);
        }
        --left;
    }
}

// Without faults a block fails only where the station is missing or has not all of its words.
void Rest::checkBlock(const Ended &ended) const
{
    require(ended.kind == JobKind::CyclicRead, "a job that nobody asked for");
    if (ended.good) {
        return;
    }
    const Plant &plant = m_bench.plant();
    const bool isThere = plant.isThere(ended.range.station);
    const bool isWhole =
        isThere && plant.held(ended.range) && plant.held(ended.range, ended.range.count - 1);
    require(!isWhole && ended.wasRefused == isThere,
            [&] { return QLatin1String("a block fails without faults: ") + text(ended.range); });
    m_bench.tally().count(isThere ? Excuse::BlockRefused : Excuse::StationMissing);
}

void Rest::checkScreen()
{
    for (const KEY_ADDRESS &key : m_bench.screen()) {
        for (int i = 0; i < key.count; ++i) {
            checkPlace(rangeOf(key.stationNo, key.regName, key.startAddr + i, 1));
        }
    }
}

void Rest::checkPlace(const Range &place)
{
    bool isRead = false;
    bool isGood = false;
    for (const Ended &block : m_blocks) {
        isRead = isRead || covers(block.range, place);
        isGood = isGood || (covers(block.range, place) && block.good);
    }
    require(isRead, [&] { return QLatin1String("no block reads ") + text(place); });
    if (!isGood) {
        return; // the block was counted
    }
    const int seen = valuesOnPanel(place).at(0);
    const auto held = m_bench.plant().held(place);
    if (held == seen) {
        return;
    }
    const auto excuse = excuseFor(place);
    require(excuse.has_value(), [&] {
        return QString::fromLatin1("at rest the panel shows %1 and the PLC holds %2 in %3")
            .arg(QString::number(seen), QString::number(held.value_or(-1)), text(place));
    });
    m_bench.tally().count(*excuse);
}

// Where no write ends a wait, only a reading with a new value does, and while any write waits not
// even that.
std::optional<Excuse> Rest::excuseFor(const Range &place) const
{
    if (!m_bench.view().isPending(place)) {
        return std::nullopt;
    }
    if (!m_bench.plan().isSent(*place.reg)) {
        return Excuse::NeverSent;
    }
    if (m_bench.jobs().wasDisplaced(place, 0)) {
        return Excuse::DisplacedStays;
    }
    return m_bench.view().isMarked(place) ? std::optional<Excuse>(Excuse::MarkStays) : std::nullopt;
}

} // namespace exchange::soak
