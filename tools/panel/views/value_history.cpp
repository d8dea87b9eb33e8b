#include "panel/views/value_history.h"

#include "host/tag/tag_values.h"
#include "host/tag/typed_item.h"

#include <algorithm>
#include <cmath>

namespace cnet::panel {

void ValueHistory::setTags(const QVector<Tag> &tags, const QVector<int> &before)
{
    QVector<QVector<Value>> items;
    for (const int index : before) {
        items.append(m_items.value(index));
    }
    m_tags = tags;
    m_items = items;
}

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

int ValueHistory::unitsPerValue(int item) const
{
    const Tag tag = m_tags.value(item);
    return isPlain(tag) ? 1 : tag.type.unitsPerValue();
}

// Nothing for what is not read, is no number, or makes no sense.
std::optional<double> ValueHistory::numberAt(const Monitor &monitor, int item, int offset) const
{
    const ItemState &state = monitor.items().at(item);
    const Tag tag = m_tags.value(item);
    if (isPlain(tag)) {
        const ItemValue &value = state.values.at(offset);
        return value.known ? std::optional<double>(value.value) : std::nullopt;
    }
    const TagValue value = readTag(tag, state).value(offset / tag.type.unitsPerValue());
    const bool isTruth = std::holds_alternative<bool>(value.value.value);
    if (!value.value.isGood() || (!isTruth && !isNumber(value.value.value))) {
        return std::nullopt;
    }
    return isTruth ? double(std::get<bool>(value.value.value)) : approximately(value.value.value);
}

void ValueHistory::note(const Monitor &monitor, const QVector<ValueChange> &changes)
{
    fit(monitor);
    for (const ValueChange &change : changes) {
        const int first = change.offset - change.offset % unitsPerValue(change.item);
        Value &value = m_items[change.item][first];
        value.changedAtMs = value.known ? change.atMs : 0;
        if (const std::optional<double> number = numberAt(monitor, change.item, first)) {
            value.min = value.known ? std::min(value.min, *number) : *number;
            value.max = value.known ? std::max(value.max, *number) : *number;
            value.known = true;
        }
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
        for (int offset = 0; offset < state.values.size(); offset += unitsPerValue(i)) {
            QVector<double> &samples = m_items[i][offset].samples;
            if (samples.size() == kSamples) {
                samples.removeFirst();
            }
            const std::optional<double> number = numberAt(monitor, i, offset);
            samples.append(good && number ? *number : std::nan(""));
        }
    }
}

ValueHistory::Value ValueHistory::of(int item, int offset) const
{
    return m_items.value(item).value(offset);
}

} // namespace cnet::panel
