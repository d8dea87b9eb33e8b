#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <vector>

/** Chance that is the same with every library, since it uses no distribution of the library. */
class Random
{
public:
    explicit Random(std::uint64_t seed)
        : m_engine(seed)
    {}

    /** 0 .. count - 1; 0 where there is nothing to choose from. */
    int below(int count)
    {
        return count > 0 ? static_cast<int>(m_engine() % static_cast<unsigned>(count)) : 0;
    }
    int between(int low, int high) { return low + below(high - low + 1); }
    bool chance(int percent) { return below(100) < percent; }
    std::uint32_t seed() { return static_cast<std::uint32_t>(m_engine()); }

    /** @param list not empty */
    template <typename Value>
    Value pick(std::initializer_list<Value> list)
    {
        return list.begin()[below(static_cast<int>(list.size()))];
    }
    template <typename Value>
    const Value &pick(const std::vector<Value> &list)
    {
        return list[static_cast<std::size_t>(below(static_cast<int>(list.size())))];
    }

    /** The place of one of the weights; how heavy it is says how often it is drawn. */
    template <typename Weights>
    std::size_t weighed(const Weights &weights)
    {
        int all = 0;
        for (const int weight : weights) {
            all += weight;
        }
        int left = below(all);
        std::size_t place = 0;
        for (const int weight : weights) {
            left -= weight;
            if (left < 0) {
                break;
            }
            ++place;
        }
        return place;
    }

private:
    std::mt19937_64 m_engine;
};
