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

    void clear() { m_items.clear(); }
    void dropFirst();
    [[nodiscard]] bool empty() const { return m_items.empty(); }
    [[nodiscard]] std::size_t size() const { return m_items.size(); }
    [[nodiscard]] const Item &first() const { return m_items.front(); }
    [[nodiscard]] int countOf(const Range &range) const;

private:
    std::vector<Item> m_items;
};

/** Cuts a range into pieces of at most `most` units. */
std::vector<Range> cut(const Range &range, int most);

} // namespace model
