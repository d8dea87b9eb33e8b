#include "host/monitor/item_state.h"

#include <algorithm>

namespace cnet {

qint64 ItemState::ageMs(qint64 nowMs) const
{
    qint64 oldest = nowMs;
    for (const WatchedBlock &block : blocks) {
        if (block.lastReadMs < 0) {
            return kNeverRead;
        }
        oldest = std::min(oldest, block.lastReadMs);
    }
    return nowMs - oldest;
}

QString ItemState::reason() const
{
    for (const WatchedBlock &block : blocks) {
        if (!block.failure.isNone()) {
            return block.failure.text();
        }
    }
    return QString();
}

QDateTime wallTime(qint64 sinceEpochMs)
{
    if (sinceEpochMs == 0) {
        return QDateTime();
    }
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(sinceEpochMs);
    return local.toOffsetFromUtc(local.offsetFromUtc());
}

} // namespace cnet
