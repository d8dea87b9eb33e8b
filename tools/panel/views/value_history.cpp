#include "panel/views/value_history.h"

#include <algorithm>
#include <cmath>

namespace cnet::panel {

// Other items are other values.
void ValueHistory::fit(const Monitor &monitor)
{
    const QVector<ItemState> &items = monitor.items();
    m_items.resize(items.size());
    for (int i = 0; i < items.size(); ++i) {
        if (m_items.at(i).size() != items.at(i).values.size()) {
            m_items[i] = QVector<Value>(items.at(i).values.size());
        }
    }
}

void ValueHistory::note(const Monitor &monitor, const QVector<ValueChange> &changes)
{
    fit(monitor);
    for (const ValueChange &change : changes) {
        Value &value = m_items[change.item][change.offset];
        const double number = change.value;
        value.min = value.known ? std::min(value.min, number) : number;
        value.max = value.known ? std::max(value.max, number) : number;
        value.changedAtMs = value.known ? change.atMs : 0;
        value.known = true;
    }
}

void ValueHistory::sample(const Monitor &monitor, qint64 nowMs)
{
    if (nowMs - m_sampledMs < kSampleMs) {
        return;
    }
    m_sampledMs = nowMs;
    fit(monitor);
    for (int i = 0; i < m_items.size(); ++i) {
        const ItemState &state = monitor.items().at(i);
        const bool good = state.quality == Quality::Good || state.quality == Quality::Waiting;
        for (int offset = 0; offset < state.values.size(); ++offset) {
            const ItemValue &now = state.values.at(offset);
            QVector<double> &samples = m_items[i][offset].samples;
            if (samples.size() == kSamples) {
                samples.removeFirst();
            }
            samples.append(good && now.known ? now.value : std::nan(""));
        }
    }
}

ValueHistory::Value ValueHistory::of(int item, int offset) const
{
    return m_items.value(item).value(offset);
}

} // namespace cnet::panel
