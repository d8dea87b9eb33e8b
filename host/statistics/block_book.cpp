#include "host/statistics/block_book.h"

#include <algorithm>
#include <tuple>

namespace cnet {

void BlockBook::note(const ExchangeReport &report)
{
    if (report.purpose == Purpose::Fence || !report.reply.sent) {
        return;
    }
    const qint64 nowMs = report.reply.sentMs;
    if (!m_blocks.contains(report.range) && !makeRoom(nowMs)) {
        m_others.note(report);
        return;
    }
    m_blocks[report.range].note(report);
    m_askedMs[report.range] = nowMs;
}

// All that are idle go at once, so that a changing set of blocks does not have to look each time.
bool BlockBook::makeRoom(qint64 nowMs)
{
    if (m_blocks.size() < kMostBlocks) {
        return true;
    }
    if (nowMs < m_fullUntilMs) {
        return false;
    }
    qint64 oldestMs = nowMs;
    for (auto it = m_askedMs.begin(); it != m_askedMs.end();) {
        if (nowMs - it.value() > kIdleMs) {
            m_others.add(m_blocks.take(it.key()));
            it = m_askedMs.erase(it);
        } else {
            oldestMs = std::min(oldestMs, it.value());
            ++it;
        }
    }
    m_fullUntilMs = oldestMs + kIdleMs;
    return m_blocks.size() < kMostBlocks;
}

QVector<AddressRange> BlockBook::sorted() const
{
    QVector<AddressRange> ranges;
    ranges.reserve(static_cast<int>(m_blocks.size()));
    for (auto it = m_blocks.cbegin(); it != m_blocks.cend(); ++it) {
        ranges.append(it.key());
    }
    std::sort(ranges.begin(), ranges.end(),
              [](const AddressRange &left, const AddressRange &right) {
                  return std::tie(left.station, left.registerName, left.start, left.count) <
                         std::tie(right.station, right.registerName, right.start, right.count);
              });
    return ranges;
}

void BlockBook::clear()
{
    *this = BlockBook();
}

} // namespace cnet
