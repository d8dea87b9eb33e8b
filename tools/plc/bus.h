#pragma once

#include "faults.h"
#include "ramp.h"
#include "station.h"

#include <map>
#include <vector>

namespace plc {

/** One station with what makes it lively and what makes it misbehave. */
struct Unit
{
    explicit Unit(int number = 1, Model model = Model::Full, quint32 seed = 1);

    Station station;
    Faults faults;
    std::vector<Ramp> ramps;
};

/**
 * The stations wired to one another. Several lines (a pseudo-terminal, TCP clients) may lead to the
 * same bus. Not for several threads.
 */
class Bus
{
public:
    /** Adds a station, or replaces the one of this number. The reference stays good until then. */
    Unit &add(int number, Model model = Model::Full, quint32 seed = 1);

    /** @return nullptr where no station has this number. */
    Unit *find(int number);

    std::map<int, Unit> &units() { return m_units; }

    /** Brings all ramps to time nowMs. */
    void advance(qint64 nowMs);

private:
    std::map<int, Unit> m_units;
};

} // namespace plc
