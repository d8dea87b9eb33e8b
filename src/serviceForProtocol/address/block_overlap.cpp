#include "serviceForProtocol/address/block_overlap.h"

#include <algorithm>
#include <climits>

#include "ls_master_k_cnet/register_row.h"

namespace {

/// The range of units that one block covers.
struct Span
{
    int stationNo;
    int reg; ///< register index; the registers that are read share no units
    int start;
    qint64 end; ///< one past the last unit
    int block;

    bool isOfSameRegister(const Span &other) const
    {
        return stationNo == other.stationNo && reg == other.reg;
    }

    bool operator<(const Span &other) const
    {
        if (stationNo != other.stationNo) {
            return stationNo < other.stationNo;
        }
        return reg != other.reg ? reg < other.reg : start < other.start;
    }
};

} // namespace

static QVector<Span> spansInOrder(const QVector<MergeKey> &blocks)
{
    QVector<Span> spans;
    spans.reserve(blocks.size());
    int reg = -1;
    for (int i = 0; i < blocks.size(); ++i) {
        const MergeKey &block = blocks.at(i);
        if (i == 0 || block.regName != blocks.at(i - 1).regName) {
            reg = registerIndex(block.regName);
        }
        const Span span = {block.stationNo, reg, block.startAddr,
                           static_cast<qint64>(block.startAddr) + block.count, i};
        spans.append(span);
    }
    if (!std::is_sorted(spans.constBegin(), spans.constEnd())) {
        std::sort(spans.begin(), spans.end());
    }
    return spans;
}

static bool isPlain(const Span &span)
{
    return span.reg >= 0 && span.start >= 0 && span.end > span.start && span.end <= INT_MAX;
}

QVector<bool> blocksOnTheirOwn(const QVector<MergeKey> &blocks)
{
    const QVector<Span> spans = spansInOrder(blocks);
    QVector<bool> alone(blocks.size(), true);
    // The span of the same register that extends farthest so far. A span that overlaps any earlier
    // one also overlaps this one, and those two were found to overlap before.
    const Span *farthest = nullptr;
    for (const Span &span : spans) {
        if (!isPlain(span)) {
            alone[span.block] = false;
        }
        if (span.end <= span.start) {
            continue; // it is empty
        }
        if (farthest == nullptr || !farthest->isOfSameRegister(span)) {
            farthest = &span;
            continue;
        }
        if (span.start < farthest->end) {
            alone[farthest->block] = false;
            alone[span.block] = false;
        }
        if (span.end > farthest->end) {
            farthest = &span;
        }
    }
    return alone;
}
