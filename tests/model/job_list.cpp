#include "model/job_list.h"

#include <algorithm>

namespace model {

namespace {

constexpr std::size_t kLastPlace = 512;

} // namespace

void JobList::add(const Item &item)
{
    for (std::size_t i = m_items.size(); i > 1; --i) {
        if (m_items[i - 1].range == item.range) {
            m_items[i - 1] = item;
            ++m_folded;
            return;
        }
    }
    if (m_items.size() > kLastPlace) {
        m_displaced.push_back(m_items[kLastPlace].range);
        m_items[kLastPlace] = item;
    } else {
        m_items.push_back(item);
    }
}

void JobList::dropFirst()
{
    if (!m_items.empty()) {
        m_items.erase(m_items.begin());
    }
}

int JobList::countOf(const Range &range) const
{
    return static_cast<int>(
        std::count_if(m_items.begin(), m_items.end(),
                      [&range](const Item &item) { return item.range == range; }));
}

std::vector<Range> cut(const Range &range, int most)
{
    std::vector<Range> pieces;
    if (most < 1) {
        return pieces;
    }
    Range piece = range;
    int left = range.count;
    while (left > most) {
        piece.count = most;
        pieces.push_back(piece);
        piece.start += most;
        left -= most;
    }
    piece.count = left;
    pieces.push_back(piece);
    return pieces;
}

} // namespace model
