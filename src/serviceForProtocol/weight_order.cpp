#include "serviceForProtocol/weight_order.h"

#include <algorithm>

QVector<int> orderByWeight(const QVector<quint32> &weights)
{
    QVector<int> order;
    order.reserve(weights.size());
    for (int i = 0; i < weights.size(); ++i) {
        order.append(i);
    }
    std::stable_sort(order.begin(), order.end(),
                     [&weights](int a, int b) { return weights.at(a) < weights.at(b); });
    return order;
}
