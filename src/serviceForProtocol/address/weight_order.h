#pragma once

#include <QtCore/QVector>

#include "serviceForProtocol/address/address_number.h"

/// Sorts by address. Called while the exchange is idle.

/// @return  the positions 0 .. weights.size() - 1 in ascending order of their weights; the order of
///          equal weights is kept
QVector<int> orderByWeight(const QVector<quint32> &weights);

/// Sorts records that have `stationNo`, `regName` and `startAddr` by `getRegAddressWeight`. Only
/// the weights are compared and moved; each record is copied once.
template <typename List>
void sortByWeight(List &records)
{
    const List unsorted = records;
    QVector<quint32> weights;
    weights.reserve(unsorted.size());
    for (const auto &record : unsorted) {
        weights.append(getRegAddressWeight(record.stationNo, record.regName, record.startAddr));
    }
    const QVector<int> order = orderByWeight(weights);
    records.clear();
    records.reserve(unsorted.size());
    for (const int position : order) {
        records.append(unsorted.at(position));
    }
}
