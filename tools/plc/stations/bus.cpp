#include "plc/stations/bus.h"

#include <utility>

namespace plc {

namespace {

/** A seed of its own for each station, so that they do not do all the same. */
quint32 seedOf(quint32 seed, int number)
{
    constexpr quint32 kGolden = 0x9E3779B9U;
    return seed ^ (static_cast<quint32>(number) * kGolden);
}

} // namespace

Unit::Unit(int number, Model model, quint32 sharedSeed)
    : station(number, model)
    , faults(seedOf(sharedSeed, number))
    , seed(seedOf(sharedSeed, number))
{}

Unit &Bus::add(int number, Model model, quint32 seed)
{
    return m_units.insert_or_assign(number, Unit(number, model, seed)).first->second;
}

Unit *Bus::find(int number)
{
    const auto it = m_units.find(number);
    return it == m_units.end() ? nullptr : &it->second;
}

Bus Bus::trial() const
{
    Bus copy = *this;
    for (auto &[number, unit] : copy.m_units) {
        unit.scenario.reset();
    }
    return copy;
}

void Bus::setReplay(std::shared_ptr<const Replay> replay)
{
    m_replay = std::move(replay);
    for (const RecordedValue &value : m_replay->firstValues()) {
        set(value);
    }
}

void Bus::beginReplay(qint64 nowMs)
{
    if (m_replay && !m_replayFromMs) {
        m_replayFromMs = nowMs;
    }
}

// What the model of the station does not have is answered by the capture alone.
void Bus::set(const RecordedValue &value)
{
    if (Unit *const unit = find(value.station)) {
        unit->station.memory().setValue(value.point, value.value);
    }
}

void Bus::advance(qint64 nowMs)
{
    if (m_replayFromMs) {
        const std::vector<RecordedChange> &changes = m_replay->changes();
        while (m_replayed < changes.size() &&
               changes.at(m_replayed).atMs <= nowMs - *m_replayFromMs) {
            set(changes.at(m_replayed).value);
            ++m_replayed;
        }
    }
    for (auto &[number, unit] : m_units) {
        if (unit.scenario) {
            unit.scenario->advance(unit.station.memory(), nowMs);
        }
        for (Motion &motion : unit.motions) {
            motion.advance(unit.station.memory(), nowMs);
        }
    }
}

} // namespace plc
