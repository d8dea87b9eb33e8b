#pragma once

#include <optional>

namespace cnet {

/**
 * Finds the highest address of a row that exists from its lowest address on without gaps, with few
 * questions: the lowest one, the highest one, then always the middle of what is left.
 */
class ReachSearch
{
public:
    /** @param highest not below `lowest` */
    ReachSearch(int lowest, int highest);

    /** The address to be asked for next; nothing when all is known. */
    std::optional<int> next() const;

    /** Whether the address of next() exists. */
    void note(bool exists);

    /** The highest address that is known to exist; nothing where none is. */
    std::optional<int> highest() const;

    /** How many questions it takes at most. */
    static int mostQuestions(int lowest, int highest);

private:
    int m_lowest;
    int m_limit;
    int m_exists; ///< known to; below the lowest: none is
    int m_absent; ///< known to be; above the limit: none is
    bool m_started = false;
    bool m_askedLimit = false;
};

} // namespace cnet
