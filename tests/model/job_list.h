#pragma once

#include <vector>

#include "model/item.h"

namespace model {

/** Writes or one-off reads that wait, oldest first. The first one may be on its way. */
class JobList
{
public:
    /** A range that waits already, but not as the first, is replaced; a full list loses its last.
     */
    void add(const Item &item);

    void clear()
    {
        m_items.clear();
        m_displaced.clear();
    }
    void dropFirst();
    [[nodiscard]] bool empty() const { return m_items.empty(); }
    [[nodiscard]] std::size_t size() const { return m_items.size(); }
    [[nodiscard]] const Item &first() const { return m_items.front(); }
    [[nodiscard]] int countOf(const Range &range) const;

    /** How many requests have taken another one's place since the list was made. */
    [[nodiscard]] int folded() const { return m_folded; }
    /** What a full list has lost since it was cleared. */
    [[nodiscard]] const std::vector<Range> &displaced() const { return m_displaced; }

private:
    std::vector<Item> m_items;
    std::vector<Range> m_displaced;
    int m_folded = 0;
};

/** Cuts a range into pieces of at most `most` units. */
std::vector<Range> cut(const Range &range, int most);

} // namespace model
