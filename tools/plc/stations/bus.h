#pragma once

#include "plc/faults/faults.h"
#include "plc/motion/motion.h"
#include "plc/replay/replay.h"
#include "plc/scenario/scenario.h"
#include "plc/stations/station.h"

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace plc {

/** One station with its motions and its faults. */
struct Unit
{
    explicit Unit(int number = 1, Model model = Model::Full, quint32 sharedSeed = 1);

    Station station;
    Faults faults;
    std::vector<Motion> motions;
    std::shared_ptr<Scenario> scenario; ///< null: none. A copy of the unit shares it.
    quint32 seed;                       ///< its own, of all that is random in it
};

/**
 * All stations of one program. Several lines (a pseudo-terminal, TCP clients) may share a bus. To
 * be used on one thread.
 */
class Bus
{
public:
    /** Adds a station. It replaces one with the same number, whose reference becomes invalid. */
    Unit &add(int number, Model model = Model::Full, quint32 seed = 1);

    /** @return nullptr if no station has this number. */
    Unit *find(int number);

    std::map<int, Unit> &units() { return m_units; }

    /** The same stations to try something on: nobody sees them, and their scenarios are left out.
     */
    Bus trial() const;

    /** Answers as a capture has them. Its stations are there; the memory gets its first values. */
    void setReplay(std::shared_ptr<const Replay> replay);

    /** null: none */
    const Replay *replay() const { return m_replay.get(); }

    /** The first request has come: from now on the memory follows the time of the capture. */
    void beginReplay(qint64 nowMs);

    /** Advances the replay, all scenarios and motions to time nowMs; a motion has the last word. */
    void advance(qint64 nowMs);

private:
    void set(const RecordedValue &value);

    std::map<int, Unit> m_units;
    std::shared_ptr<const Replay> m_replay;
    std::optional<qint64> m_replayFromMs; ///< nothing: no request has come yet
    std::size_t m_replayed = 0;           ///< changes of the memory so far
};

} // namespace plc
