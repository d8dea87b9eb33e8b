#include "model/sequence_shrink.h"

#include <algorithm>

namespace model {

namespace {

class Shrinker
{
public:
    Shrinker(Sequence sequence, const StillFails &fails, int most)
        : m_sequence(std::move(sequence))
        , m_fails(fails)
        , m_left(most)
    {}

    Sequence shortest()
    {
        bool better = true;
        while (better && m_left > 0) {
            better = removeSteps();
            better = simplifySteps() || better;
        }
        return m_sequence;
    }

private:
    bool tryOther(Sequence other)
    {
        if (m_left <= 0) {
            return false;
        }
        --m_left;
        if (!m_fails(other)) {
            return false;
        }
        m_sequence = std::move(other);
        return true;
    }

    bool removeSteps()
    {
        bool better = false;
        for (std::size_t chunk = std::max<std::size_t>(m_sequence.size() / 2, 1); chunk > 0;
             chunk /= 2) {
            // From the end: what a step needs stands in front of it.
            for (std::size_t end = m_sequence.size(); end > 0;) {
                const std::size_t begin = end > chunk ? end - chunk : 0;
                Sequence other = m_sequence;
                other.erase(other.begin() + static_cast<std::ptrdiff_t>(begin),
                            other.begin() + static_cast<std::ptrdiff_t>(end));
                better = tryOther(std::move(other)) || better;
                end = begin;
            }
        }
        return better;
    }

    bool tryStep(std::size_t place, const Operation &operation)
    {
        Sequence other = m_sequence;
        other[place] = operation;
        return tryOther(std::move(other));
    }

    bool simplifySteps()
    {
        bool better = false;
        for (std::size_t place = 0; place < m_sequence.size(); ++place) {
            better = dropRanges(place) || better;
            for (std::size_t i = 0; i < m_sequence[place].ranges.size(); ++i) {
                better = simplifyRange(place, i) || better;
            }
            better = simplifyNumbers(place) || better;
        }
        return better;
    }

    bool dropRanges(std::size_t place)
    {
        const Act act = m_sequence[place].act;
        bool better = false;
        for (std::size_t i = m_sequence[place].ranges.size(); i > 0; --i) {
            Operation operation = m_sequence[place];
            if (act != Act::Monitor && act != Act::Recipe) {
                break;
            }
            const auto offset = static_cast<std::ptrdiff_t>(i - 1);
            operation.ranges.erase(operation.ranges.begin() + offset);
            if (act == Act::Recipe) {
                operation.devices.erase(operation.devices.begin() + offset);
                operation.places.erase(operation.places.begin() + offset);
            }
            better = tryStep(place, operation) || better;
        }
        return better;
    }

    /** Lets a number of a step fall to `least`, else by halves, else by one. */
    template <typename Member>
    bool lower(std::size_t place, Member member, int least)
    {
        bool better = false;
        for (bool again = true; again;) {
            again = false;
            const int now = member(m_sequence[place]);
            for (const int other : {least, least + (now - least) / 2, now - 1}) {
                if (other >= now || other < least) {
                    continue;
                }
                Operation operation = m_sequence[place];
                member(operation) = other;
                if (tryStep(place, operation)) {
                    better = true;
                    again = true;
                    break;
                }
            }
        }
        return better;
    }

    bool simplifyRange(std::size_t place, std::size_t i)
    {
        bool better = lower(
            place, [i](Operation &operation) -> int & { return operation.ranges[i].count; }, 0);
        better = lower(
                     place,
                     [i](Operation &operation) -> int & { return operation.ranges[i].start; }, 0) ||
                 better;
        better =
            lower(
                place, [i](Operation &operation) -> int & { return operation.ranges[i].station; },
                1) ||
            better;
        if (m_sequence[place].ranges[i].name != "D_W") {
            Operation operation = m_sequence[place];
            operation.ranges[i].name = "D_W";
            better = tryStep(place, operation) || better;
        }
        if (m_sequence[place].act == Act::Recipe) {
            better =
                lower(
                    place, [i](Operation &operation) -> int & { return operation.places[i]; }, 0) ||
                better;
        }
        return better;
    }

    bool simplifyNumbers(std::size_t place)
    {
        bool better = lower(
            place, [](Operation &operation) -> int & { return operation.tag; }, 0);
        better = lower(
                     place, [](Operation &operation) -> int & { return operation.value; }, 0) ||
                 better;
        if (m_sequence[place].value < 0) {
            better = tryChange(place, [](Operation &operation) { operation.value = 0; }) || better;
        }
        return simplifyFault(place) || simplifyStart(place) || better;
    }

    template <typename Change>
    bool tryChange(std::size_t place, Change change)
    {
        Operation operation = m_sequence[place];
        change(operation);
        return tryStep(place, operation);
    }

    /** No fault is plainer than silence, and silence than any other. */
    bool simplifyFault(std::size_t place)
    {
        const Fault now = m_sequence[place].fault;
        return now > Fault::None &&
               (tryChange(place, [](Operation &operation) { operation.fault = Fault::None; }) ||
                (now != Fault::Silent &&
                 tryChange(place, [](Operation &operation) { operation.fault = Fault::Silent; })));
    }

    bool simplifyStart(std::size_t place)
    {
        if (m_sequence[place].act != Act::Start) {
            return false;
        }
        if (!m_sequence[place].missing.empty() &&
            tryChange(place, [](Operation &operation) { operation.missing.clear(); })) {
            return true;
        }
        for (const char *plainer : {"7#0#0#3#60", "7#0#0#1#60", "7#0#0#1#1"}) {
            if (m_sequence[place].text == plainer) {
                return false;
            }
            if (tryChange(place, [plainer](Operation &operation) { operation.text = plainer; })) {
                return true;
            }
        }
        return false;
    }

    Sequence m_sequence;
    const StillFails &m_fails;
    int m_left;
};

} // namespace

Sequence shrink(Sequence sequence, const StillFails &fails, int most)
{
    return Shrinker(std::move(sequence), fails, most).shortest();
}

} // namespace model
