#pragma once

#include <QtGlobal>

#include <random>
#include <vector>

namespace exchange::soak {

/** Chance that is the same with every library, since it uses no distribution of the library. */
class Random
{
public:
    explicit Random(quint64 seed)
        : m_engine(seed)
    {}

    /** 0 .. count - 1; 0 where there is nothing to choose from. */
    int below(int count)
    {
        return count > 0 ? static_cast<int>(m_engine() % static_cast<quint64>(count)) : 0;
    }
    int between(int low, int high) { return low + below(high - low + 1); }
    bool chance(int percent) { return below(100) < percent; }
    quint32 seed() { return static_cast<quint32>(m_engine()); }

    /** @param list not empty */
    template <typename Value>
    const Value &pick(const std::vector<Value> &list)
    {
        return list[static_cast<std::size_t>(below(static_cast<int>(list.size())))];
    }

private:
    std::mt19937_64 m_engine;
};

} // namespace exchange::soak
