#pragma once

#include "host/monitor/monitor.h"

#include <QVector>

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

    /** Values were read for the first time or have changed. */
    void note(const Monitor &monitor, const QVector<ValueChange> &changes);

    /** Takes the samples that are due. @param nowMs never falling */
    void sample(const Monitor &monitor, qint64 nowMs);

    /** What is known of a value; of one that was never noted: nothing. */
    Value of(int item, int offset) const;

private:
    void fit(const Monitor &monitor);

    QVector<QVector<Value>> m_items;
    qint64 m_sampledMs = -kSampleMs;
};

} // namespace cnet::panel
