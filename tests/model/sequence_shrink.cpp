#include "model/sequence_shrink.h"

#include <algorithm>

namespace model {

namespace {

struct Number
{
    int *number;
    int least; ///< what is plainest
};

std::vector<Number> numbersOf(Operation &operation)
{
    std::vector<Number> numbers = {{&operation.tag, 0}, {&operation.value, 0}};
    for (Range &range : operation.ranges) {
        numbers.insert(numbers.end(), {{&range.count, 0}, {&range.start, 0}, {&range.station, 1}});
    }
    for (int &place : operation.places) {
        numbers.push_back({&place, 0});
    }
    return numbers;
}

/** Steps that differ from one in one thing, and are plainer. */
class Simpler
{
public:
    explicit Simpler(const Operation &operation)
        : m_operation(operation)
    {
        addFewerRanges();
        for (std::size_t i = 0; i < operation.ranges.size(); ++i) {
            add([i](Operation &other) { other.ranges[i].name = "D_W"; },
                operation.ranges[i].name != "D_W");
        }
        for (std::size_t i = 0; i < numbersOf(m_operation).size(); ++i) {
            addLower(i);
        }
        add([](Operation &other) { other.value = 0; }, operation.value < 0);
        // No fault is plainer than silence, and silence than any other.
        add([](Operation &other) { other.fault = Fault::None; }, operation.fault != Fault::None);
        add([](Operation &other) { other.fault = Fault::Silent; },
            operation.fault != Fault::None && operation.fault != Fault::Silent);
        if (operation.act == Act::Start) {
            addPlainerStarts();
        }
    }

    [[nodiscard]] const std::vector<Operation> &steps() const { return m_steps; }

private:
    template <typename Change>
    void add(Change change, bool isPlainer = true)
    {
        if (isPlainer) {
            m_steps.push_back(m_operation);
            change(m_steps.back());
        }
    }

    void addFewerRanges()
    {
        const bool isRecipe = m_operation.act == Act::Recipe;
        const bool isList = isRecipe || m_operation.act == Act::Monitor;
        for (std::size_t i = m_operation.ranges.size(); isList && i > 0; --i) {
            const auto at = static_cast<std::ptrdiff_t>(i - 1);
            add([=](Operation &other) {
                other.ranges.erase(other.ranges.begin() + at);
                if (isRecipe) {
                    other.devices.erase(other.devices.begin() + at);
                    other.places.erase(other.places.begin() + at);
                }
            });
        }
    }

    /** A number falls to what is plainest, else by halves, else by one. */
    void addLower(std::size_t i)
    {
        const Number now = numbersOf(m_operation)[i];
        const int above = *now.number - now.least;
        for (const int other : {now.least, now.least + above / 2, *now.number - 1}) {
            add([=](Operation &step) { *numbersOf(step)[i].number = other; },
                now.least <= other && other < *now.number);
        }
    }

    void addPlainerStarts()
    {
        add([](Operation &other) { other.missing.clear(); }, !m_operation.missing.empty());
        for (const char *plainer : {"7#0#0#3#60", "7#0#0#1#60", "7#0#0#1#1"}) {
            if (m_operation.text == plainer) {
                break;
            }
            add([plainer](Operation &other) { other.text = plainer; });
        }
    }

    Operation m_operation;
    std::vector<Operation> m_steps;
};

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
            for (std::size_t place = 0; place < m_sequence.size(); ++place) {
                while (simplify(place)) {
                    better = true;
                }
            }
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

    bool simplify(std::size_t place)
    {
        const Simpler simpler(m_sequence[place]);
        return std::any_of(simpler.steps().begin(), simpler.steps().end(),
                           [this, place](const Operation &operation) {
                               Sequence other = m_sequence;
                               other[place] = operation;
                               return tryOther(std::move(other));
                           });
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
