#include "serviceForProtocol/address/weight_order.h"

#include <algorithm>

// Sorts single numbers: the weight in the high half, the position in the low half, which keeps
// equal weights in their order.
QVector<int> orderByWeight(const QVector<quint32> &weights)
{
    QVector<quint64> sorted;
    sorted.reserve(weights.size());
    for (int i = 0; i < weights.size(); ++i) {
        sorted.append(static_cast<quint64>(weights.at(i)) << 32 | static_cast<quint32>(i));
    }
    if (!std::is_sorted(sorted.begin(), sorted.end())) {
        std::sort(sorted.begin(), sorted.end());
    }
    QVector<int> order;
    order.reserve(weights.size());
    const QVector<quint64> &inOrder = sorted;
    for (const quint64 entry : inOrder) {
        order.append(static_cast<int>(entry & 0xFFFFFFFFU));
    }
    return order;
}
