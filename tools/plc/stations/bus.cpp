#include "plc/stations/bus.h"

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

void Bus::advance(qint64 nowMs)
{
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
