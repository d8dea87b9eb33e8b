#pragma once

#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "model/frame_text.h"
#include "model/item.h"

namespace model {

/** What the panel sees of the PLCs' memory, and what it hears about it. */
class ValueModel
{
public:
    /** Takes what is heard; the device number is the driver's own. */
    using Listener = std::function<void(int station, const std::string &name, int address)>;

    explicit ValueModel(Listener listener)
        : m_listener(std::move(listener))
    {}

    void clear() { m_units.clear(); }
    void clearMonitors();
    void monitor(const Range &range);

    /**
     * A panel write: seen at once.
     *
     * @param alike  tells how many writes of just this range wait
     */
    void store(const Range &range, const Bytes &values, const std::function<int()> &alike);

    /** A panel write came to its end. */
    void settle(const Range &range, bool success);

    /** An answer with values. With writes waiting, a word that is being written stays so. */
    void take(const Frame &frame, const std::string &answer,
              const std::function<bool()> &writesWait);

    /** The bytes that the panel gets, at most 1024. */
    Bytes look(const Range &range);

    /** Every word and contact that is kept. */
    [[nodiscard]] std::vector<Range> places() const;
    [[nodiscard]] std::size_t size() const { return m_units.size(); }
    /** The panel shows what it has written to the place, and not what was read. */
    [[nodiscard]] bool isPending(const Range &place) const { return find(place).pending; }
    /** Writes of bits of the word are still to end. */
    [[nodiscard]] bool isMarked(const Range &place) const
    {
        return (find(place).once | find(place).twice) != 0;
    }

private:
    struct Unit
    {
        unsigned read = 0;
        unsigned written = 0;
        bool pending = false;
        unsigned once = 0;  ///< bits with a write on its way
        unsigned twice = 0; ///< bits with a second one behind it
        bool watched = false;
        unsigned watchedBits = 0;

        [[nodiscard]] unsigned current() const { return pending ? written : read; }
    };
    using Place = std::tuple<int, std::string, int>;

    Unit &unit(int station, const std::string &letter, int address)
    {
        return m_units[{station, letter, address}];
    }
    [[nodiscard]] Unit find(const Range &place) const;
    void tellWord(const Place &place, unsigned changedBits);
    void tellContact(const Place &place);
    void storeBit(const Place &place, int bit, bool on, const std::function<int()> &alike);
    void settleBit(const Place &place, int bit, bool success);

    Listener m_listener;
    std::map<Place, Unit> m_units;
};

} // namespace model
