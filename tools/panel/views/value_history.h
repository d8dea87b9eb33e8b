#pragma once

#include "host/monitor/monitor.h"
#include "host/tag/tag.h"

#include <QVector>

#include <optional>

namespace cnet::panel {

/**
 * What the values of a monitor were since it began: extremes of each, when it changed last, and a
 * sample for each of the last seconds.
 */
class ValueHistory
{
public:
    static constexpr int kSamples = 16;
    static constexpr qint64 kSampleMs = 1000;

    struct Value
    {
        double min = 0;
        double max = 0;
        bool known = false;      ///< there was a value
        qint64 changedAtMs = 0;  ///< see wallTime(); 0: never, since the first reading is none
        QVector<double> samples; ///< oldest first; NaN: it was not good then
    };

    /** @param tags what the monitor's items stand for, as many; empty: plain words and bits */
    explicit ValueHistory(const QVector<Tag> &tags = {})
        : m_tags(tags)
    {}

    /** Other tags stand for the items. @param before index that each had; negative: it is new */
    void setTags(const QVector<Tag> &tags, const QVector<int> &before);

    /** Values were read for the first time or have changed. */
    void note(const Monitor &monitor, const QVector<ValueChange> &changes);

    /** Takes the samples that are due. @param nowMs never falling */
    void sample(const Monitor &monitor, qint64 nowMs);

    /** What is known of a value; of one that was never noted: nothing. @param offset its first unit
     */
    Value of(int item, int offset) const;

private:
    void fit(const Monitor &monitor);
    int unitsPerValue(int item) const;
    std::optional<double> numberAt(const Monitor &monitor, int item, int offset) const;

    QVector<Tag> m_tags;
    QVector<QVector<Value>> m_items;
    qint64 m_sampledMs = -kSampleMs;
};

} // namespace cnet::panel
